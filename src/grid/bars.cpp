#include "grid/bars.h"

#include <algorithm>
#include <cmath>

#include "base/numbers.h"

namespace zol {

std::int32_t GetBarLogValue(double value) {
  if (!(value > 0)) return 0;
  const double length = RoundHalfEven(20 * (Log10(value * 10000000) / 10));
  // A value so large that the length leaves the range of a whole number
  // counts as the longest bar.
  if (!std::isfinite(length) || length > 2147483647.0) return kMaxBarLength;
  return Clamp(static_cast<std::int32_t>(length), 1, kMaxBarLength);
}

std::int32_t LinearBarLength(double hit, double total) {
  if (total == 0) return 0;
  const double length = RoundHalfEven(kMaxBarLength * hit / total);
  // More hit than there is (a damaged file) still fits the column.
  if (!(length > 0)) return 0;
  return length >= kMaxBarLength ? kMaxBarLength : static_cast<std::int32_t>(length);
}

std::int32_t HitsBarLength(double hits) {
  if (!(hits > 0)) return 0;
  const double length = RoundHalfEven(3 * Log10(hits));
  return Clamp(static_cast<std::int32_t>(std::min(length, 1e9)), 1, kMaxBarLength);
}

std::string BarText(std::int32_t length) {
  return std::string(static_cast<std::size_t>(Clamp(length, 0, kMaxBarLength)), 'l');
}

}  // namespace zol
