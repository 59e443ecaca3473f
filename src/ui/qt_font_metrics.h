#pragma once

// Font measuring for the source page's styles with the fonts this desktop
// really has.

#include "source_view/font_metrics.h"

namespace zol {

class QtFontMetrics : public FontMetrics {
 public:
  std::optional<double> TextHeight(const std::string& font, double size,
                                   std::string_view text) const override;
  double ActualSize(const std::string& font, double size) const override;
};

// Makes the faces that pages and saved settings name ("Courier New",
// "Arial") stand for the closest faces this desktop has, so a page keeps a
// fixed-width font for its code whatever is installed.
void installFontSubstitutions();

}  // namespace zol
