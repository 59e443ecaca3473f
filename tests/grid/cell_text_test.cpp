#include "grid/cell_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "base/numbers.h"
#include "base/vb_format.h"

namespace zol {
namespace {

TEST(CellText, SameTextsAsFormatOnEdgesOfRounding) {
  const double values[] = {0,         -0.0,       0.5,         0.0000005,     0.00000049999,
                           0.0000015, 1.0000005,  9.9999995,   99999.9999995, 0.1234565,
                           -0.01,     -0.0000001, 123456789.5, 1e15,          1e-300,
                           17.65,     2.675,      1e22,        4.35,          0.0000004999999999};
  for (const double v : values) {
    for (const int d : {1, 6}) {
      EXPECT_EQ(FixedText(v, d), Format(v, "0." + std::string(d, '0'))) << v << " " << d;
    }
  }
  EXPECT_EQ(TimeText(0.0000015), "0.000002");
  EXPECT_EQ(FixedText(std::nan(""), 6), Format(std::nan(""), "0.000000"));
}

// Leaves digits on the stack where the next call's buffers will lie, so that
// a text read past its end runs into them.
[[gnu::noinline]] void LeaveDigitsOnTheStack() {
  volatile char junk[4096];
  for (auto& c : junk) c = '7';
}

TEST(CellText, HugeAndNegativeValuesReadOnlyTheirOwnDigits) {
  for (const double v : {1e300, -1e300, 1e100, -2.5e7, 1e6, 123456789012.25, -0.000001}) {
    LeaveDigitsOnTheStack();
    const std::string text = FixedText(v, 6);
    EXPECT_EQ(text, Format(v, "0.000000")) << v;
  }
  LeaveDigitsOnTheStack();
  EXPECT_EQ(FixedText(1e300, 1).size(), 301u + 2u);
}

TEST(CellText, SameTextsAsFormatAndFormaterPourcentageOnRandomValues) {
  std::mt19937_64 rng(42);
  std::uniform_real_distribution<double> exponent(-9, 9);
  std::uniform_real_distribution<double> unit(0, 1);
  for (int i = 0; i < 40000; ++i) {
    const double v = std::pow(10.0, exponent(rng)) * (i % 7 == 0 ? -1 : 1);
    ASSERT_EQ(TimeText(v), Format(v, "0.000000")) << v;
    const double share = unit(rng);
    ASSERT_EQ(PercentText(share), FormatPercentage(share)) << share;
    // Values on a grid of halves of the last place shown.
    const double half = std::floor(unit(rng) * 1e6) / 1e6 + 5e-7;
    ASSERT_EQ(TimeText(half), Format(half, "0.000000")) << half;
  }
  EXPECT_EQ(PercentText(1), "100%");
  EXPECT_EQ(PercentText(0), "0%");
  EXPECT_EQ(PercentText(0.999999), "100.0%");
}

}  // namespace
}  // namespace zol
