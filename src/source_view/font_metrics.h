#pragma once

// Font measuring for the page styles. The page's line height and the small
// font of the figures in parentheses depend on how the display sets the
// chosen font; the GUI measures with its real fonts, the command line and the
// tests with FixedFontMetrics.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "session/workspace.h"

namespace zol {

class FontMetrics {
 public:
  virtual ~FontMetrics() = default;
  // Height in pixels of `text` set in `font` at `size` points; nothing when
  // the font can't be measured.
  virtual std::optional<double> TextHeight(const std::string& font, double size,
                                           std::string_view text) const = 0;
  // The size the font really takes when `size` points are asked for: a
  // scalable font takes what it is given, a font with fixed sizes the one
  // it has.
  virtual double ActualSize(const std::string& font, double size) const = 0;
};

// A scalable font at 96 pixels per inch whose line is 1.1328 em (the common
// monospaced faces), rounded up to whole pixels: 10 points measure 16 pixels.
class FixedFontMetrics : public FontMetrics {
 public:
  std::optional<double> TextHeight(const std::string& font, double size,
                                   std::string_view text) const override;
  double ActualSize(const std::string& font, double size) const override;
};

// The height of "H" in FontHTML at FontSizeHTML, less the size, plus 2,
// rounded half to even; FontSizeHTML - 2 when the font can't be measured.
std::int32_t GetLineHeightHTML(const Workspace& ws, const FontMetrics& metrics);

// The next size below FontSizeHTML that the font really changes to (one less
// for a scalable font); never below 5, and 5 itself at a size of 5 or less.
std::int32_t GetNextSmallerFontHTML(const Workspace& ws, const FontMetrics& metrics);

// Takes a new page font and derives LineHeightHTML and SmallFontSizeHTML.
void SetFontHTML(Workspace& ws, const FontMetrics& metrics, const std::string& font,
                 std::int32_t size);

}  // namespace zol
