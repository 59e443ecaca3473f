// The logarithmic bar lengths are found by comparing with the values where
// they step up; these hold them to their formulas, above all right at and
// around each step, where a comparison and a logarithm could disagree.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "grid/bars.h"

namespace zol {
namespace {

using LengthFn = std::int32_t (*)(double);

struct LogBar {
  const char* name;
  LengthFn fast;
  LengthFn formula;
  // The value where the length goes from j to j + 1.
  double (*step)(int j);
};

const LogBar kLogBars[] = {
    {"time", GetBarLogValue, TimeBarLengthByFormula,
     [](int j) { return std::pow(10.0, (j + 0.5) / 2 - 7); }},
    {"hits", HitsBarLength, HitsBarLengthByFormula,
     [](int j) { return std::pow(10.0, (j + 0.5) / 3); }},
};

// Every double within `ulps` of `x`, both ways.
std::vector<double> Around(double x, int ulps) {
  std::vector<double> values{x};
  double down = x;
  double up = x;
  for (int k = 0; k < ulps; ++k) {
    down = std::nextafter(down, 0.0);
    up = std::nextafter(up, std::numeric_limits<double>::infinity());
    values.push_back(down);
    values.push_back(up);
  }
  return values;
}

TEST(LogBarLengths, AgreeWithTheirFormulasAroundEveryStepAndEverywhereElse) {
  std::mt19937_64 random(20261125);
  std::uniform_real_distribution<double> exponent(-14, 10);
  for (const LogBar& bar : kLogBars) {
    SCOPED_TRACE(bar.name);
    std::vector<double> values{0.0,
                               -1.0,
                               std::numeric_limits<double>::denorm_min(),
                               std::numeric_limits<double>::min(),
                               std::numeric_limits<double>::max(),
                               std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN(),
                               1.0,
                               1e-7,
                               1e-6};
    // Each step with the doubles next to it, and a little further off: the
    // formula's own rounding decides there, and just outside its reach.
    for (int j = -1; j <= kMaxBarLength; ++j) {
      const double step = bar.step(j);
      for (double v : Around(step, 2000)) values.push_back(v);
      for (double off : {1e-13, 1e-12, 1e-11, 1e-9}) {
        values.push_back(step * (1 + off));
        values.push_back(step * (1 - off));
      }
    }
    for (int k = 0; k < 200000; ++k) values.push_back(std::pow(10.0, exponent(random)));
    // Whole hit counts, the usual values of the hits bars.
    for (double h = 1; h < 5e6; h = std::floor(h * 1.01) + 1) values.push_back(h);
    int steps = 0;
    for (double v : values) {
      ASSERT_EQ(bar.fast(v), bar.formula(v)) << "value " << v;
      steps += bar.fast(v) != bar.fast(std::nextafter(v, 0.0)) ? 1 : 0;
    }
    // The neighbourhoods above do cross the steps.
    EXPECT_GE(steps, 19);
  }
}

}  // namespace
}  // namespace zol
