#pragma once

// The Flow page: the call graph around the selected procedure, in
// a scrolling view, under its option strip: spacing, font size,
// the depth on each side ("A: Automatic" or 1 to 5), the colour scheme and
// the module row. A click on a node asks the window to select that
// procedure; the window rebuilds the graph and the page shows it.
//
// The chart is painted once into a list of operations; the view replays only
// the ones that meet the exposed region, so a chart of a thousand nodes
// scrolls as smoothly as a small one.

#include <QScrollArea>
#include <QWidget>
#include <memory>

#include "flow/flow_chart.h"
#include "flow/flow_graph.h"
#include "flow/flow_options.h"
#include "flow/recorded_chart.h"
#include "ui/qt_flow_canvas.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QSpinBox;

namespace zol {

class FlowChartView : public QWidget {
  Q_OBJECT

 public:
  explicit FlowChartView(QWidget* parent = nullptr);

  // Lays out and paints the graph (which keeps the boxes of its nodes).
  void showChart(const Workspace& ws, FlowGraph graph, const FlowOptions& options, Measure measure);
  void clearChart();

  const FlowGraph& graph() const { return graph_; }
  const ChartLayout& chartLayout() const { return layout_; }
  // The box of the selected node, empty when there is none.
  QRect selectedNodeRect() const;

 signals:
  // A click on the node of `procedure`.
  void nodeClicked(int procedure);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  QtFlowTextMetrics metrics_;
  std::unique_ptr<RecordingCanvas> recording_;
  FlowGraph graph_;
  ChartLayout layout_;
};

class FlowPane : public QWidget {
  Q_OBJECT

 public:
  explicit FlowPane(QWidget* parent = nullptr);

  FlowChartView* chart() const { return chart_; }
  QScrollArea* scrollArea() const { return scroll_; }
  QWidget* optionStrip() const { return strip_; }

  // Puts the settings into the controls, without a change signal.
  void setOptions(const FlowOptions& options);
  FlowOptions options() const;

  // Shows the chart and brings the selected procedure into view.
  void showChart(const Workspace& ws, FlowGraph graph, Measure measure);
  // Shows a notice (lines separated by CR LF) in place of a chart; an empty
  // text leaves the page blank.
  void showNotice(const std::string& text);
  bool showsChart() const;
  // Scrolls so that the selected node is seen.
  void ensureVisible();

 signals:
  void optionsChanged();
  void nodeClicked(int procedure);

 private:
  QWidget* makeOptionStrip();

  QWidget* strip_ = nullptr;
  QSpinBox* horizontal_ = nullptr;
  QSpinBox* vertical_ = nullptr;
  QSpinBox* fontSize_ = nullptr;
  QComboBox* depthLeft_ = nullptr;
  QComboBox* depthRight_ = nullptr;
  QComboBox* scheme_ = nullptr;
  QCheckBox* showModule_ = nullptr;
  QScrollArea* scroll_ = nullptr;
  FlowChartView* chart_ = nullptr;
  QLabel* notice_ = nullptr;
  bool showing_ = false;
};

}  // namespace zol
