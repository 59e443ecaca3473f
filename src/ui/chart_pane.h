#pragma once

// The chart beside the grid, drawn with Qt Charts from the chart
// description that the core's DoChart makes: what is plotted, in which order,
// with which title, is all decided there; this pane only draws it.
//
// Every name comes from a session and is plain text, though the chart draws
// its titles and labels as rich text: they are escaped on the way in. A bar
// chart gives every bar its own readable label: long names are shortened in
// the middle (the whole name is in the bar's tooltip), and when the pane is
// too low for all labels the chart grows and the pane scrolls. A pie has a
// list for its legend beside it, with each slice's colour, value and share.

#include <QWidget>
#include <vector>

#include "grid/chart.h"

class QChart;
class QChartView;
class QScrollArea;
class QTableView;

namespace zol {

class ChartLegendModel;

class ChartPane : public QWidget {
  Q_OBJECT

 public:
  explicit ChartPane(QWidget* parent = nullptr);

  void draw(const ChartDescription& chart);
  const ChartDescription& shown() const { return shown_; }

  QChartView* chartView() const { return view_; }
  QScrollArea* scroller() const { return scroller_; }
  QTableView* legend() const { return legend_; }
  ChartLegendModel* legendModel() const { return legendModel_; }
  // The labels of the bar chart's categories, as drawn (after shortening).
  const QStringList& barLabels() const { return barLabels_; }

  // The colour of slice `i` of `count`: no two slices share one.
  static QColor sliceColour(std::size_t i, std::size_t count);
  // `text` shortened in the middle to `width` pixels of `metrics`.
  static QString elideLabel(const QString& text, const QFontMetrics& metrics, int width);

 private:
  void drawBar(QChart* chart, const ChartDescription& d);
  void drawPie(QChart* chart, const ChartDescription& d);
  void drawEmpty(QChart* chart, const ChartDescription& d);

  ChartDescription shown_;
  QScrollArea* scroller_;
  QChartView* view_;
  QTableView* legend_;
  ChartLegendModel* legendModel_;
  QStringList barLabels_;
};

}  // namespace zol
