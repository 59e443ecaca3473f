#pragma once

// A flow chart as an SVG document, for reports and the command line. Texts
// are set in Arial (measured with ArialMetrics, so the layout matches what a
// viewer draws); the images are the program's icons drawn as vectors.

#include <string>

#include "flow/arial_metrics.h"
#include "flow/flow_canvas.h"

namespace zol {

class SvgCanvas : public FlowCanvas {
 public:
  SvgCanvas();

  void Clear() override;
  void FillRect(int x1, int y1, int x2, int y2, PackedColour colour) override;
  void OutlineRect(int x1, int y1, int x2, int y2) override;
  void Polyline(const std::vector<CanvasPoint>& points) override;
  void DrawImage(std::string_view key, int x, int y) override;
  void FillImageInside(std::string_view key, int x, int y, PackedColour colour) override;

  // The whole document, UTF-8.
  std::string Document() const;

 protected:
  void PaintTextLine(std::string_view line, double x, double top) override;

 private:
  ArialMetrics arial_;
  std::string body_;
};

// "#RRGGBB" of a packed colour.
std::string SvgColour(PackedColour colour);

}  // namespace zol
