#pragma once

// The flow chart on a QPainter: the window's chart view and PNG files. Only
// Qt GUI is used here (no widgets), so the command line can draw PNG charts.

#include <QFont>
#include <QFontMetricsF>
#include <map>
#include <string>
#include <utility>

#include "flow/flow_canvas.h"
#include "flow/flow_graph.h"
#include "flow/flow_options.h"
#include "session/selection.h"
#include "session/workspace.h"

class QPainter;

namespace zol {

// Arial (or the face that stands for it) at whole pixel sizes, 96 pixels per
// inch, whatever the screen's resolution.
class QtFlowTextMetrics : public FlowTextMetrics {
 public:
  double SizeInForce(double size) const override;
  double LineWidth(std::string_view line, double size, bool bold) const override;
  double LineHeight(double size, bool bold) const override;
  double Ascent(double size, bool bold) const override;

  QFont font(double size, bool bold) const;

 private:
  const QFontMetricsF& metricsOf(double size, bool bold) const;
  mutable std::map<std::pair<int, bool>, QFontMetricsF> cache_;
};

class QtFlowCanvas : public FlowCanvas {
 public:
  // Paints with `painter`, which must stay active while the canvas is used.
  QtFlowCanvas(QPainter& painter, const QtFlowTextMetrics& metrics);

  void Clear() override;
  void FillRect(int x1, int y1, int x2, int y2, PackedColour colour) override;
  void OutlineRect(int x1, int y1, int x2, int y2) override;
  void Polyline(const std::vector<CanvasPoint>& points) override;
  void DrawImage(std::string_view key, int x, int y) override;
  void FillImageInside(std::string_view key, int x, int y, PackedColour colour) override;

 protected:
  void PaintTextLine(std::string_view line, double x, double top) override;

 private:
  QPainter& painter_;
  const QtFlowTextMetrics& qtMetrics_;
};

QColor toQColor(PackedColour colour);

// Draws the chart of `graph` into a PNG file. Makes a GUI application for
// the fonts when none runs (offscreen when there is no display). False, with
// the reason in `error`, when the image can't be made or written.
bool WriteFlowPng(const Workspace& ws, FlowGraph& graph, const FlowOptions& options,
                  Measure measure, const std::string& file, std::string* error);

}  // namespace zol
