#include "ui/page_display.h"

#include <gtest/gtest.h>

namespace zol {
namespace {

TEST(PageDisplay, BareHexColoursGetTheirHashEverywhereButInTheCode) {
  const std::string page =
      "<TABLE bgcolor=F9F9F9><TR BGCOLOR=666666><TD bgcolor=DDDDDD>1</TD>"
      "<FONT FACE=\"Arial\" COLOR=FFFFFF>Hits</FONT><FONT COLOR=#FF9100>"
      "<PRE>Me.BackColor = 123456: tColor=ABCDEF</PRE></FONT><BODY BGCOLOR=\"WHITE\">";
  const std::string shown = PageForDisplay(page);
  EXPECT_NE(shown.find("bgcolor=#F9F9F9"), std::string::npos);
  EXPECT_NE(shown.find("BGCOLOR=#666666"), std::string::npos);
  EXPECT_NE(shown.find("bgcolor=#DDDDDD"), std::string::npos);
  EXPECT_NE(shown.find("COLOR=#FFFFFF>Hits"), std::string::npos);
  EXPECT_NE(shown.find("COLOR=#FF9100>"), std::string::npos);
  EXPECT_EQ(shown.find("##"), std::string::npos);
  EXPECT_NE(shown.find("BGCOLOR=\"WHITE\""), std::string::npos);
  // Source text is text, even when it looks like a colour.
  EXPECT_NE(shown.find("Me.BackColor = 123456: tColor=ABCDEF"), std::string::npos);
}

TEST(PageDisplay, TheStyleKeepsItsPreRuleAndLosesItsLineHeights) {
  const std::string page =
      "<STYLE TYPE=\"text/css\">\r\n<!-- BEGIN STYLE -->PRE { font-size : 10.0pt;\r\n"
      "line-height : 8.0pt;\r\ntext-align: left;}\r\nVAR { color : 0000FF;\r\n"
      "line-height : 8.0pt;}\r\n<!-- END STYLE -->\r\n</STYLE>\r\n"
      "<PRE>x = \"line-height : 2pt;\"</PRE>";
  const std::string shown = PageForDisplay(page);
  EXPECT_EQ(shown.find("BEGIN STYLE"), std::string::npos);
  EXPECT_EQ(shown.find("END STYLE"), std::string::npos);
  EXPECT_NE(shown.find("\r\nPRE { font-size : 10.0pt;"), std::string::npos);
  EXPECT_EQ(shown.find("8.0pt"), std::string::npos);
  EXPECT_NE(shown.find("color : #0000FF;"), std::string::npos);
  EXPECT_NE(shown.find("<PRE>x = \"line-height : 2pt;\"</PRE>"), std::string::npos);
}

TEST(PageDisplay, StrayLessThanAndShortSpacesAreMadeValid) {
  const std::string page =
      "<TD>Color legend&nbsp</TD><TD><FONT COLOR=#008000>Time < 0.001s</FONT></TD>"
      "<TD>a&nbsp;b</TD>";
  const std::string shown = PageForDisplay(page);
  EXPECT_NE(shown.find("Color legend&nbsp;</TD>"), std::string::npos);
  EXPECT_NE(shown.find("Time &lt; 0.001s</FONT>"), std::string::npos);
  EXPECT_NE(shown.find("a&nbsp;b"), std::string::npos);
  EXPECT_EQ(shown.find("&nbsp;;"), std::string::npos);
}

}  // namespace
}  // namespace zol
