#include "base/text.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace zol {
namespace {

using Strings = std::vector<std::string>;

TEST(InStr, FindsFromStartWithBinaryOrTextCompare) {
  EXPECT_EQ(InStr("abcabc", "bc"), 2);
  EXPECT_EQ(InStr(3, "abcabc", "bc"), 5);
  EXPECT_EQ(InStr(6, "abcabc", "bc"), 0);
  EXPECT_EQ(InStr(1, "xABC", "b"), 0);
  EXPECT_EQ(InStr(1, "xABC", "b", CompareMethod::Text), 3);
  EXPECT_EQ(InStr(2, "abc", ""), 2);
  EXPECT_EQ(InStr(1, "", ""), 0);
  EXPECT_EQ(InStr(9, "abc", "a"), 0);
}

TEST(InStrRev, MatchMustEndWithinStart) {
  EXPECT_EQ(InStrRev("abcabc", "bc"), 5);
  EXPECT_EQ(InStrRev("abcabc", "abc", 5), 1);
  EXPECT_EQ(InStrRev("abcabc", "ABC", -1, CompareMethod::Text), 4);
  EXPECT_EQ(InStrRev("abc", "a", 4), 0);
  EXPECT_EQ(InStrRev("C:\\dir\\file.txt", "\\"), 7);
}

TEST(Substrings, MidLeftRightStopAtTheEnds) {
  EXPECT_EQ(Mid("abcdef", 2, 3), "bcd");
  EXPECT_EQ(Mid("abc", 2), "bc");
  EXPECT_EQ(Mid("abc", 2, 10), "bc");
  EXPECT_EQ(Mid("abc", 5), "");
  EXPECT_EQ(Left("abc", 5), "abc");
  EXPECT_EQ(Left("abc", 0), "");
  EXPECT_EQ(Right("abc", 2), "bc");
  EXPECT_EQ(Right("abc", 9), "abc");
}

TEST(CaseAndTrim, OnlyAsciiLettersAndBlanks) {
  EXPECT_EQ(LCase("AbZ\xC0"), "abz\xC0");
  EXPECT_EQ(UCase("abz\xE0"), "ABZ\xE0");
  EXPECT_EQ(Trim("  a b \t "), "a b \t");
  EXPECT_EQ(LTrim("  a "), "a ");
  EXPECT_EQ(RTrim("  a "), "  a");
  EXPECT_TRUE(TextEquals("Module", "MODULE"));
  EXPECT_FALSE(TextEquals("Module", "MODULE", CompareMethod::Binary));
}

TEST(ReplaceAndSplit, EveryOccurrenceAndEmptyParts) {
  EXPECT_EQ(Replace("aaaa", "aa", "b"), "bb");
  EXPECT_EQ(Replace("a.b.c", ".", ""), "abc");
  EXPECT_EQ(Replace("abc", "", "x"), "abc");
  EXPECT_EQ(Split("a,,b", ","), (Strings{"a", "", "b"}));
  EXPECT_EQ(Split("a,", ","), (Strings{"a", ""}));
  EXPECT_EQ(Split("a\r\nb", "\r\n"), (Strings{"a", "b"}));
  EXPECT_EQ(Split("", ","), Strings{});
  EXPECT_EQ(Split("abc", ""), Strings{"abc"});
}

TEST(Val, ReadsTheLeadingNumberIgnoringBlanks) {
  EXPECT_EQ(Val("  12.5abc"), 12.5);
  EXPECT_EQ(Val("1 2 3"), 123);
  EXPECT_EQ(Val("- 5"), -5);
  EXPECT_EQ(Val("-3e2x"), -300);
  EXPECT_EQ(Val("1D2"), 100);
  EXPECT_EQ(Val("1e"), 1);
  EXPECT_EQ(Val(".5"), 0.5);
  EXPECT_EQ(Val("0007"), 7);
  EXPECT_EQ(Val("abc"), 0);
  EXPECT_EQ(Val("1.2.3"), 1.2);
  EXPECT_EQ(Val("1e-400"), 0);
  EXPECT_THROW(Val("1e400"), std::range_error);
}

TEST(CDblText, AcceptsPointOrCommaAndRejectsOtherText) {
  EXPECT_EQ(CDblText("0.125"), 0.125);
  EXPECT_EQ(CDblText("0,125"), 0.125);
  EXPECT_EQ(CDblText(" -1.5e3 "), -1500);
  EXPECT_EQ(CDblText("+12"), 12);
  EXPECT_EQ(CDblText("3."), 3);
  for (const char* bad : {"", "  ", "abc", "1.2.3", "1,2,3", "1e", "12x", "-", "1e400"}) {
    EXPECT_FALSE(ParseNumberText(bad).has_value()) << bad;
  }
  EXPECT_THROW(CDblText("12x"), std::invalid_argument);
}

TEST(Parse, FindsWordsOfLettersDigitsUnderscoreAndAccents) {
  const std::string text = "  If x_1 = \xC4g then";
  std::string word;
  EXPECT_EQ(Parse(1, text, word), 3);
  EXPECT_EQ(word, "If");
  EXPECT_EQ(Parse(4, text, word), 4);  // starting inside a word
  EXPECT_EQ(word, "f");
  EXPECT_EQ(Parse(5, text, word), 6);
  EXPECT_EQ(word, "x_1");
  EXPECT_EQ(Parse(9, text, word), 12);
  EXPECT_EQ(word, "\xC4g");
  EXPECT_EQ(Parse(19, text, word), 0);
  EXPECT_EQ(word, "");
  // 215 and 247 (multiplication and division signs) separate words.
  EXPECT_EQ(Parse(1,
                  "a\xD7"
                  "b\xF7",
                  word),
            1);
  EXPECT_EQ(word, "a");
  EXPECT_EQ(Parse(2,
                  "a\xD7"
                  "b\xF7",
                  word),
            3);
  EXPECT_EQ(word, "b");
}

TEST(TrimEx, RemovesRepeatsAtTheEnds) {
  EXPECT_EQ(TrimEx("\"\"My App\"", "\""), "My App");
  EXPECT_EQ(TrimEx("xyxyaxyx", "xy"), "axyx");
  EXPECT_EQ(TrimEx("xyxy", "xy"), "");
  EXPECT_EQ(RTrimEx("C:\\a\\\\\\", "\\"), "C:\\a");
  EXPECT_EQ(RTrimEx("\\a", "\\"), "\\a");
  EXPECT_EQ(TrimEx("abc", ""), "abc");
}

TEST(StringEx, Repeats) {
  EXPECT_EQ(StringEx(3, "ab"), "ababab");
  EXPECT_EQ(StringEx(0, "ab"), "");
}

TEST(StrCount, OverlappingHitsCount) {
  EXPECT_EQ(StrCount("aaaa", "aa"), 3);
  EXPECT_EQ(StrCount("..\\..\\x", "..\\"), 2);
  EXPECT_EQ(StrCount("abcabc", "abc", 2), 1);
  EXPECT_EQ(StrCount("abcABC", "abc"), 1);
  EXPECT_EQ(StrCount("abcABC", "abc", 1, CompareMethod::Text), 2);
  EXPECT_EQ(StrCount("abc", ""), 0);
}

TEST(TruncateString, CutsOnlyWhenLongerThanNPlusThree) {
  EXPECT_EQ(TruncateString("abcdefgh", 5), "abcdefgh");  // exactly n + 3
  EXPECT_EQ(TruncateString("abcdefghi", 5), "abcde...");
  EXPECT_EQ(TruncateString("abc", 5), "abc");
}

TEST(GetLine, WalksCrLfLines) {
  const std::string text = "one\r\ntwo\r\nthree";
  int pos = 1;
  EXPECT_EQ(GetLine(pos, text), "one");
  EXPECT_EQ(pos, 6);
  EXPECT_EQ(GetLine(pos, text), "two");
  EXPECT_EQ(pos, 11);
  EXPECT_EQ(GetLine(pos, text), "three");
  EXPECT_EQ(pos, 0);
  EXPECT_EQ(GetLine(pos, text), "");
  EXPECT_EQ(pos, 0);
}

TEST(GetLine, TrailingCrLfYieldsAnEmptyLastLineAndLoneLfIsNoBreak) {
  int pos = 1;
  EXPECT_EQ(GetLine(pos, "a\nb\r\n"), "a\nb");
  EXPECT_EQ(pos, 6);
  EXPECT_EQ(GetLine(pos, "a\nb\r\n"), "");
  EXPECT_EQ(pos, 0);
}

}  // namespace
}  // namespace zol
