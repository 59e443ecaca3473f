#include "base/cp1252.h"

#include <gtest/gtest.h>

namespace zol {
namespace {

TEST(Cp1252, CaseInsensitiveComparisonCoversAccentedLetters) {
  EXPECT_TRUE(EqualsNoCase1252("D\xC9TAIL \x8A\x8C\x8E\x9F", "d\xE9tail \x9A\x9C\x9E\xFF"));
  EXPECT_FALSE(EqualsNoCase1252("\xD7", "\xF7"));  // multiplication and division signs
  EXPECT_FALSE(EqualsNoCase1252("ab", "abc"));
}

TEST(Cp1252, ConvertsToAndFromUtf8) {
  const std::string cp1252 = "\x80 D\xE9tail \x9F\x81";
  const std::string utf8 = "\xE2\x82\xAC D\xC3\xA9tail \xC5\xB8\xC2\x81";
  EXPECT_EQ(Cp1252ToUtf8(cp1252), utf8);
  EXPECT_EQ(Utf8ToCp1252(utf8), cp1252);
  EXPECT_EQ(Utf8ToCp1252("\xE4\xB8\xAD"), std::nullopt);  // not in the code page
  EXPECT_EQ(Utf8ToCp1252("D\xE9tail"), std::nullopt);     // not UTF-8
  EXPECT_EQ(Utf8ToCp1252("\xC3"), std::nullopt);          // cut short
  EXPECT_EQ(Utf8ToCp1252("\xC1\x81"), std::nullopt);      // overlong "A"
}

}  // namespace
}  // namespace zol
