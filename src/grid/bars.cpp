#include "grid/bars.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "base/numbers.h"

namespace zol {

std::int32_t TimeBarLengthByFormula(double value) {
  if (!(value > 0)) return 0;
  const double length = RoundHalfEven(20 * (Log10(value * 10000000) / 10));
  // A value so large that the length leaves the range of a whole number
  // counts as the longest bar.
  if (!std::isfinite(length) || length > 2147483647.0) return kMaxBarLength;
  return Clamp(static_cast<std::int32_t>(length), 1, kMaxBarLength);
}

std::int32_t HitsBarLengthByFormula(double hits) {
  if (!(hits > 0)) return 0;
  const double length = RoundHalfEven(3 * Log10(hits));
  return Clamp(static_cast<std::int32_t>(std::min(length, 1e9)), 1, kMaxBarLength);
}

namespace {

// A logarithmic bar grows by a letter where its scaled logarithm passes a
// half: the formula's logarithm costs more than the rest of a million-row
// table's row together, while comparing with the twenty values where the
// length steps up is a few comparisons. A value so near a step that the
// formula's rounding errors might put it on either side is left to the
// formula itself, so every length is the formula's.
class LogBarSteps {
 public:
  // `step(j)` is the value where the length goes from j to j + 1.
  template <typename Step>
  explicit LogBarSteps(Step step) {
    for (std::int32_t j = 0; j < kMaxBarLength; ++j) steps_[static_cast<std::size_t>(j)] = step(j);
  }

  // The length of a value above 0, or nothing where the formula must tell.
  std::optional<std::int32_t> Length(double value) const {
    // The formula is off by a few units in the last place of a double; a
    // millionth of a millionth leaves ample room.
    constexpr double kNear = 1e-12;
    const auto above = std::upper_bound(steps_.begin(), steps_.end(), value);
    if (above != steps_.end() && *above - value <= *above * kNear) return std::nullopt;
    if (above != steps_.begin() && value - above[-1] <= above[-1] * kNear) return std::nullopt;
    return Clamp(static_cast<std::int32_t>(above - steps_.begin()), 1, kMaxBarLength);
  }

 private:
  std::array<double, kMaxBarLength> steps_{};
};

}  // namespace

std::int32_t GetBarLogValue(double value) {
  // 2 * Log10(value * 10^7) is j + 1/2 at 10^((j + 1/2) / 2 - 7).
  static const LogBarSteps steps([](std::int32_t j) { return std::pow(10.0, (j + 0.5) / 2 - 7); });
  if (!(value > 0)) return 0;
  if (const auto length = steps.Length(value)) return *length;
  return TimeBarLengthByFormula(value);
}

std::int32_t HitsBarLength(double hits) {
  // 3 * Log10(hits) is j + 1/2 at 10^((j + 1/2) / 3).
  static const LogBarSteps steps([](std::int32_t j) { return std::pow(10.0, (j + 0.5) / 3); });
  if (!(hits > 0)) return 0;
  if (const auto length = steps.Length(hits)) return *length;
  return HitsBarLengthByFormula(hits);
}

std::int32_t LinearBarLength(double hit, double total) {
  if (total == 0) return 0;
  const double length = RoundHalfEven(kMaxBarLength * hit / total);
  // More hit than there is (a damaged file) still fits the column.
  if (!(length > 0)) return 0;
  return length >= kMaxBarLength ? kMaxBarLength : static_cast<std::int32_t>(length);
}

std::string BarText(std::int32_t length) {
  return std::string(static_cast<std::size_t>(Clamp(length, 0, kMaxBarLength)), 'l');
}

}  // namespace zol
