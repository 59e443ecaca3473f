#pragma once

// Number texts of the grid cells, made fast. A large table formats hundreds
// of thousands of times and percentages on every rebuild, and the general
// Format (which parses its pattern on each call) dominated the build. These
// produce byte for byte what Format(value, "0.000000") and
// FormatPercentage(value) give (the tests hold them to it), for any value.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zol {

// Format(value, "0" followed by "." and `decimals` zeros), 1 <= decimals <= 15.
std::string FixedText(double value, int decimals);

// A time in seconds as the grids show it: Format(seconds, "0.000000").
inline std::string TimeText(double seconds) {
  return FixedText(seconds, 6);
}

// FormatPercentage(x): "0%", "100%", or the percentage with one decimal.
std::string PercentText(double x);

// A cell's number as displayed, read back: nothing for a text that is no
// number. "." or "," as decimal mark.
std::optional<double> ParseCellNumber(std::string_view text);

// The number that FixedText(value, decimals) reads back as (the cell's text
// parsed), found without making the text in the common case: the later
// passes that sum or sort what the grid shows work on these.
double DisplayedFixed(double value, int decimals);
inline double DisplayedTime(double seconds) {
  return DisplayedFixed(seconds, 6);
}
// The number of PercentText(x) without its "%", read back.
double DisplayedPercent(double x);

// The length of TimeText(seconds) and PercentText(x), without the text.
std::size_t TimeTextLength(double seconds);
std::size_t PercentTextLength(double x);

}  // namespace zol
