#include "base/vb_format.h"

#include <gtest/gtest.h>

#include "base/text.h"

namespace zol {
namespace {

// The value is rounded in its 15-digit decimal form, halves away from zero;
// the binary double behind it would round the other way in every case here.
TEST(Format, RoundsTheDecimalFormHalfAwayFromZero) {
  EXPECT_EQ(Format(0.0000005, "0.000000"), "0.000001");
  EXPECT_EQ(Format(17.65, "0.0"), "17.7");
  EXPECT_EQ(Format(2.675, "0.00"), "2.68");
  EXPECT_EQ(Format(1.005, "0.00"), "1.01");
  EXPECT_EQ(Format(0.125, "0.00"), "0.13");
  EXPECT_EQ(Format(2.5, "0"), "3");
  EXPECT_EQ(Format(0.5, "0"), "1");
  EXPECT_EQ(Format(0.00049, "0.000"), "0.000");
}

TEST(Format, CarriesIntoANewLeadingDigit) {
  EXPECT_EQ(Format(9.99, "0.0"), "10.0");
  EXPECT_EQ(Format(0.9996, "0.000"), "1.000");
  EXPECT_EQ(Format(99999.96, "0.0"), "100000.0");
}

TEST(Format, PadsWithZeroPlaceholders) {
  EXPECT_EQ(Format(3, "0.000000"), "3.000000");
  EXPECT_EQ(Format(0, "0.000"), "0.000");
  EXPECT_EQ(Format(12.5, "00000.00000"), "00012.50000");
  EXPECT_EQ(Format(1234.5678, "00000000.000000"), "00001234.567800");
  EXPECT_EQ(Format(123456789.5, "00000000.000000"), "123456789.500000");
}

TEST(Format, HashPlaceholdersWriteOnlyDigitsThatExist) {
  EXPECT_EQ(Format(1.5, "0.0#"), "1.5");
  EXPECT_EQ(Format(1.25, "0.0#"), "1.25");
  EXPECT_EQ(Format(0.5, "#.00"), ".50");
  EXPECT_EQ(Format(1234, "##"), "1234");  // wider numbers spill left
  EXPECT_EQ(Format(12345, "0 00"), "123 45");
  // The decimal mark stays even when nothing follows it.
  EXPECT_EQ(Format(1, "0.##"), "1.");
  EXPECT_EQ(Format(3.7, "0."), "4.");
}

// File sizes are shown with blank-separated groups. Groups left of the first
// digit write nothing, but the blanks between them stay; callers trim.
TEST(Format, BlankGroupingKeepsTheLiteralBlanks) {
  const char* grouping = "### ### ### ### ###";
  EXPECT_EQ(Format(1234567, grouping), "  1 234 567");
  EXPECT_EQ(Format(999, grouping), "    999");
  EXPECT_EQ(Format(123456789012345, grouping), "123 456 789 012 345");
  EXPECT_EQ(Format(0, grouping), "    ");  // zero has no digit for a "#"
  EXPECT_EQ(Trim(Format(1234567.5, grouping)), "1 234 568");
}

TEST(Format, PercentMultipliesByAHundredInDecimal) {
  EXPECT_EQ(Format(0.5, "0%"), "50%");
  EXPECT_EQ(Format(1, "0%"), "100%");
  EXPECT_EQ(Format(0.125, "0%"), "13%");
  EXPECT_EQ(Format(0.005, "0%"), "1%");
  EXPECT_EQ(Format(0.004, "0%"), "0%");
  EXPECT_EQ(Format(0.12345, "0.0%"), "12.3%");
}

TEST(Format, WritesLiteralsWhereThePatternHasThem) {
  EXPECT_EQ(Format(0.25, "0.000000s"), "0.250000s");
  EXPECT_EQ(Format(5, "0\"kb\""), "5kb");
  EXPECT_EQ(Format(5, "\\#0"), "#5");
}

// A negative value keeps its sign even when it rounds to zero ("-0.0"), as
// the original formatting did; a negative zero itself has no sign.
TEST(Format, NegativeValues) {
  EXPECT_EQ(Format(-1.25, "0.0"), "-1.3");
  EXPECT_EQ(Format(-1234567, "### ### ### ### ###"), "-  1 234 567");
  EXPECT_EQ(Format(-0.01, "0.0"), "-0.0");
  EXPECT_EQ(Format(-0.0, "0.0"), "0.0");
}

TEST(Format, EmptyPatternGivesThePlainForm) {
  EXPECT_EQ(Format(2.5, ""), "2.5");
}

TEST(CStr, FifteenSignificantDigitsAndExponentOutsideTheUsualRange) {
  EXPECT_EQ(CStr(0.5), "0.5");
  EXPECT_EQ(CStr(-2.5), "-2.5");
  EXPECT_EQ(CStr(1234567), "1234567");
  EXPECT_EQ(CStr(0.1 + 0.2), "0.3");
  EXPECT_EQ(CStr(0.0001), "0.0001");
  EXPECT_EQ(CStr(0.00001), "1E-05");
  EXPECT_EQ(CStr(123456789012345), "123456789012345");
  EXPECT_EQ(CStr(1e15), "1E+15");
  EXPECT_EQ(CStr(-0.0), "0");
}

}  // namespace
}  // namespace zol
