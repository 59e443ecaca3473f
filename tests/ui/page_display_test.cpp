#include "ui/page_display.h"

#include <gtest/gtest.h>

#include "base/files.h"

namespace zol {
namespace {

TEST(PageDisplay, BareHexColoursGetTheirHashEverywhereButInTheCode) {
  const std::string page =
      "<TABLE bgcolor=F9F9F9><TR BGCOLOR=666666><TD bgcolor=DDDDDD>1</TD>"
      "<FONT FACE=\"Arial\" COLOR=FFFFFF>Hits</FONT><FONT COLOR=#FF9100>"
      "<PRE>Me.BackColor = 123456: tColor=ABCDEF</PRE></FONT><BODY BGCOLOR=\"WHITE\">";
  const std::string shown = pageForDisplay(page);
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
  const std::string shown = pageForDisplay(page);
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
  const std::string shown = pageForDisplay(page);
  EXPECT_NE(shown.find("Color legend&nbsp;</TD>"), std::string::npos);
  EXPECT_NE(shown.find("Time &lt; 0.001s</FONT>"), std::string::npos);
  EXPECT_NE(shown.find("a&nbsp;b"), std::string::npos);
  EXPECT_EQ(shown.find("&nbsp;;"), std::string::npos);
}

// Pages as the writer makes them: with and without links, a procedure head in
// bold, continued statements, and the legend after the table.
TEST(PageRows, TheCutPartsMakeThePageAgainToTheByte) {
  for (const char* name : {"source_module", "source_links", "source_scheme_none"}) {
    const std::string page =
        LoadFile(std::string(ZOL_SOURCE_DIR) + "/tests/cli/" + name + "/out/work/page.htm");
    ASSERT_FALSE(page.empty()) << name;
    const std::optional<PageRows> parts = splitPageRows(page);
    ASSERT_TRUE(parts) << name;
    ASSERT_GT(parts->rows.size(), 20u) << name;
    EXPECT_EQ(parts->slice(0, parts->rows.size()), page) << name;
    EXPECT_NE(parts->head.find("<TR BGCOLOR=666666>"), std::string_view::npos) << name;
    EXPECT_EQ(parts->tail.rfind("   </TABLE>", 0), 0u) << name;
    for (std::string_view row : parts->rows) {
      EXPECT_EQ(row.rfind("         <TR>", 0), 0u) << name;
      EXPECT_EQ(row.substr(row.size() - 13), "      </TR>\r\n") << name;
      EXPECT_EQ(row.find("</TABLE>"), std::string_view::npos) << name;
    }
    // A window of rows in the middle ends the table and the page, legend aside.
    const std::string middle = parts->slice(3, 7);
    EXPECT_EQ(middle.rfind(std::string(parts->head), 0), 0u);
    EXPECT_EQ(middle.find("<A NAME=\"Legend\">"), std::string::npos) << name;
    EXPECT_NE(middle.find(std::string(parts->rows[6])), std::string::npos);
    EXPECT_EQ(middle.find(std::string(parts->rows[7])), std::string::npos);
    EXPECT_EQ(middle.substr(middle.size() - 9), "</HTML>\r\n") << name;
  }
}

TEST(PageRows, LinksAnchorsAndLinesAreFoundByRow) {
  const std::string page =
      LoadFile(std::string(ZOL_SOURCE_DIR) + "/tests/cli/source_links/out/work/page.htm");
  const std::optional<PageRows> parts = splitPageRows(page);
  ASSERT_TRUE(parts);
  std::optional<std::size_t> head;
  for (std::size_t i = 0; i < parts->rows.size() && !head; ++i) {
    if (parts->rows[i].rfind("         <TR><B>", 0) == 0) head = i;
  }
  ASSERT_TRUE(head) << "the page has no procedure head";
  const std::string_view row = parts->rows[*head];
  const std::size_t name = row.find("<A NAME=\"");
  ASSERT_NE(name, std::string_view::npos);
  const std::string anchor(row.substr(name + 9, row.find('"', name + 9) - name - 9));
  EXPECT_EQ(parts->rowNamed(anchor), head);
  std::string lower = anchor;
  lower[0] = 'p';
  EXPECT_EQ(parts->rowNamed(lower), head);
  // The legend stands after the last row.
  EXPECT_EQ(parts->rowNamed("legend"), parts->rows.size() - 1);
  EXPECT_FALSE(parts->rowNamed("P99999"));

  const std::size_t href = row.find("<A HREF=\"");
  ASSERT_NE(href, std::string_view::npos);
  const std::string link(row.substr(href + 9, row.find('"', href + 9) - href - 9));
  EXPECT_EQ(parts->rowLinkedTo(link), head);
  EXPECT_FALSE(parts->rowLinkedTo("|1|2|99999"));
  // A link is matched whole: "|3|11|0" is not the row of "|3|11|01".
  EXPECT_FALSE(parts->rowLinkedTo(link + "1"));

  // A procedure head continued over two physical lines takes two lines.
  const std::optional<std::size_t> continued = parts->rowNamed("P11");
  ASSERT_TRUE(continued);
  EXPECT_NE(parts->rows[*continued].find("_<BR>"), std::string_view::npos);
  EXPECT_EQ(parts->linesOf(*continued), 2);
  EXPECT_EQ(parts->linesOf(0), 1);
}

TEST(PageRows, APageWithoutStatementRowsIsShownWhole) {
  EXPECT_FALSE(splitPageRows(""));
  EXPECT_FALSE(splitPageRows("<html><body><br><br><p align=center><b>x</b></p></body></html>"));
  // A table that was never closed is not cut either.
  EXPECT_FALSE(splitPageRows("<TABLE>\r\n         <TR>\r\n      </TR>\r\n"));
}

}  // namespace
}  // namespace zol
