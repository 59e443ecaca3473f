#pragma once

// The bars column: a bar is a run of letters "l" drawn in the grid's own font,
// so bold letters side by side make the bar. Time bars are on a logarithmic
// scale (a tenth of a microsecond to many seconds all stay visible), coverage
// bars are linear.

#include <cstdint>
#include <string>

namespace zol {

// The header of the bars column; the export leaves out every column whose
// header holds "Bars". The arrow is one Windows-1252 character (0x9B).
inline constexpr char kBarsHeader[] = "-\x9B Bars ";

// The longest bar, in letters.
inline constexpr std::int32_t kMaxBarLength = 20;

// Bar length of a time in seconds: 2 * Log10(value * 10^7), halves to even,
// kept within 1 to 20; 0 for a value of 0 or below. One second gives 14, a
// microsecond 2, a tenth of a microsecond or less 1.
std::int32_t GetBarLogValue(double value);

// Bar length of a coverage: round(20 * hit / total), halves to even, kept
// within 0 to 20; 0 when `total` is 0.
std::int32_t LinearBarLength(double hit, double total);

// Bar length of a hit count: 3 * Log10(hits), rounded, kept within 1 to 20;
// 0 for no hits.
std::int32_t HitsBarLength(double hits);

// The two logarithmic lengths straight from their formulas, as the fast
// ones above must give them.
std::int32_t TimeBarLengthByFormula(double value);
std::int32_t HitsBarLengthByFormula(double hits);

// `length` letters "l", at most kMaxBarLength: a bar never leaves its column.
std::string BarText(std::int32_t length);

}  // namespace zol
