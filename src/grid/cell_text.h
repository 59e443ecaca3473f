#pragma once

// Number texts of the grid cells, made fast. A large table formats hundreds
// of thousands of times and percentages on every rebuild, and the general
// Format (which parses its pattern on each call) dominated the build. These
// produce byte for byte what Format(value, "0.000000") and
// FormatPercentage(value) give (the tests hold them to it), for any value.

#include <string>

namespace zol {

// Format(value, "0" followed by "." and `decimals` zeros), 1 <= decimals <= 15.
std::string FixedText(double value, int decimals);

// A time in seconds as the grids show it: Format(seconds, "0.000000").
inline std::string TimeText(double seconds) {
  return FixedText(seconds, 6);
}

// FormatPercentage(x): "0%", "100%", or the percentage with one decimal.
std::string PercentText(double x);

}  // namespace zol
