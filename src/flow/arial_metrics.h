#pragma once

// The measures of the chart's sans-serif face (Arial, or a face with the same
// widths) without a font file: the advance of each printable character per
// 1000 units of the em, plain and bold, at 96 pixels per inch. Sizes are
// taken to whole pixels, as on a raster surface. The SVG canvas uses these,
// so a chart written without a display has the layout a viewer's Arial gives.

#include "flow/flow_canvas.h"

namespace zol {

class ArialMetrics : public FlowTextMetrics {
 public:
  double SizeInForce(double size) const override;
  double LineWidth(std::string_view line, double size, bool bold) const override;
  double LineHeight(double size, bool bold) const override;
  double Ascent(double size, bool bold) const override;
};

// Points to whole pixels at 96 pixels per inch, halves to even, at least 1.
double PixelsOfPoints(double size);

}  // namespace zol
