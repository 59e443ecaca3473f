#include "base/numbers.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace zol {
namespace {

TEST(RoundHalfEven, HalvesGoToTheEvenNeighbour) {
  EXPECT_EQ(RoundHalfEven(0.5), 0);
  EXPECT_EQ(RoundHalfEven(1.5), 2);
  EXPECT_EQ(RoundHalfEven(2.5), 2);
  EXPECT_EQ(RoundHalfEven(-1.5), -2);
  EXPECT_EQ(RoundHalfEven(-2.5), -2);
  EXPECT_EQ(RoundHalfEven(2.4999999), 2);
  EXPECT_EQ(RoundHalfEven(2.5000001), 3);
  EXPECT_EQ(RoundHalfEven(-0.7), -1);
}

// ln(1000) / ln(10) lands just below 3; FormatSignificant depends on it.
TEST(Log10, IsTheRatioOfNaturalLogs) {
  EXPECT_LT(Log10(1000), 3.0);
  EXPECT_DOUBLE_EQ(Log10(100), 2.0);
  EXPECT_THROW(Log10(0), std::domain_error);
}

TEST(FormatPercentage, ExactEndsHaveNoDecimal) {
  EXPECT_EQ(FormatPercentage(0), "0%");
  EXPECT_EQ(FormatPercentage(1), "100%");
  EXPECT_EQ(FormatPercentage(0.999999), "100.0%");
  EXPECT_EQ(FormatPercentage(0.5), "50.0%");
}

// Two roundings: 1234.5 basis points to even (1234), then 12.34 to one
// decimal; 0.1225 gives exactly 12.25, which the display rounds up.
TEST(FormatPercentage, RoundsBasisPointsToEvenThenDisplaysOneDecimal) {
  EXPECT_EQ(FormatPercentage(0.12345), "12.3%");
  EXPECT_EQ(FormatPercentage(0.1225), "12.3%");
  EXPECT_EQ(FormatPercentage(0.00004), "0.0%");
}

TEST(FormatSignificant, ZeroAndLargeValuesAreWholeNumbers) {
  EXPECT_EQ(FormatSignificant(0, 7, true), "0.000000");
  EXPECT_EQ(FormatSignificant(0, 7, false), "0");
  EXPECT_EQ(FormatSignificant(1234567.5, 7, true), "1234568");
  EXPECT_EQ(FormatSignificant(1234568.5, 7, false), "1234568");  // half to even
  EXPECT_EQ(FormatSignificant(2.5, 1, true), "2");
}

TEST(FormatSignificant, KeepsSignificantDigitsPaddedOrPlain) {
  EXPECT_EQ(FormatSignificant(1.5, 7, true), "1.500000");
  EXPECT_EQ(FormatSignificant(1.5, 7, false), "1.5");
  EXPECT_EQ(FormatSignificant(12.3456789, 7, true), "12.34568");
  EXPECT_EQ(FormatSignificant(12.3456789, 7, false), "12.34568");
  EXPECT_EQ(FormatSignificant(123456.7, 7, true), "123456.7");
  EXPECT_EQ(FormatSignificant(999999.96, 7, true), "1000000.0");
}

// Below 1 the digits count from the decimal mark, not from the first
// significant digit.
TEST(FormatSignificant, SmallValuesKeepNMinusOneDecimals) {
  EXPECT_EQ(FormatSignificant(0.0123456789, 7, true), "0.012346");
  EXPECT_EQ(FormatSignificant(0.0123456789, 7, false), "0.012346");
  EXPECT_EQ(FormatSignificant(0.00000012, 7, true), "0.000000");
  EXPECT_EQ(FormatSignificant(0.00000012, 7, false), "0");
}

// The value is rounded half to even in binary before it is formatted: 2.5
// tenths stay 2, where formatting 0.25 alone with "0.0" would give 0.3.
TEST(FormatSignificant, RoundsInBinaryBeforeFormatting) {
  EXPECT_EQ(FormatSignificant(0.25, 2, true), "0.2");
  EXPECT_EQ(FormatSignificant(0.25, 2, false), "0.2");
}

// Log10(1000) falls below 3, so 1000 is taken for a 3-digit number and gets
// one decimal more than 999.5 would.
TEST(FormatSignificant, PowersOfTenFollowTheLogarithm) {
  EXPECT_EQ(FormatSignificant(1000, 7, true), "1000.0000");
  EXPECT_EQ(FormatSignificant(1000, 7, false), "1000");
}

TEST(Prorata, MapsLinearlyAndLimitsToTheTargetRange) {
  EXPECT_DOUBLE_EQ(Prorata(5, 0, 0, 100, 10), 50);
  EXPECT_DOUBLE_EQ(Prorata(20, 0, 0, 100, 10), 200);
  EXPECT_DOUBLE_EQ(Prorata(20, 0, 0, 100, 10, true), 100);
  EXPECT_DOUBLE_EQ(Prorata(-5, 0, 0, 100, 10, true), 0);
  // A falling map, as used for the coverage shading.
  EXPECT_DOUBLE_EQ(Prorata(75, 230, 0, 50, 150, true), 140);
  EXPECT_DOUBLE_EQ(Prorata(200, 230, 0, 50, 150, true), 50);
  EXPECT_DOUBLE_EQ(Prorata(-10, 230, 0, 50, 150, true), 230);
  EXPECT_THROW(Prorata(1, 0, 3, 1, 3), std::domain_error);
}

TEST(VersionToDouble, ThreePartsMakeOneComparableNumber) {
  EXPECT_EQ(VersionToDouble("2.05.0007"), 200050007);
  EXPECT_EQ(VersionToDouble("1.2.3"), 100020003);
  EXPECT_EQ(VersionToDouble("1.2.3 beta"), 100020003);
  EXPECT_EQ(VersionToDouble("x.2.3"), 20003);
  EXPECT_EQ(VersionToDouble("1.2"), 0);
  EXPECT_EQ(VersionToDouble(""), 0);
}

TEST(MinMaxClamp, ListsAndWrongWayBounds) {
  EXPECT_EQ(Max(3, 7.5, 2), 7.5);
  EXPECT_EQ(Min({4, 1, 9}), 1);
  EXPECT_EQ(Min(4, -2), -2);
  EXPECT_EQ(MaxLong2(-3, -7), -3);
  EXPECT_EQ(Clamp(5, 20, 1), 5);
  EXPECT_EQ(Clamp(5, 1, 20), 5);
  EXPECT_EQ(Clamp(25, 20, 1), 20);
  EXPECT_EQ(Clamp(-3, 1, 20), 1);
  EXPECT_EQ(Clamp(0.5, 0, 1), 0.5);

  double sum = 1.5;
  Increment(sum, 2);
  EXPECT_EQ(sum, 3.5);
}

}  // namespace
}  // namespace zol
