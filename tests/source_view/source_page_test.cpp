#include "source_view/source_page.h"

#include <gtest/gtest.h>

#include "source_view/page_fixture.h"

namespace zol {
namespace {

using testing::Crlf;
using testing::PageFixture;

constexpr const char* kTableHead =
    R"(   <TABLE WIDTH="100%" CELLPADDING="2" CELLSPACING="0" BORDER="1" RULES=COLS bgcolor=F9F9F9>
      <TR BGCOLOR=666666>
)";
constexpr const char* kLinesCaption =
    R"(         <TD>
            <P ALIGN=LEFT><B><FONT FACE="Arial" COLOR=FFFFFF>Lines</FONT><B>
         </TD>
      </TR>
)";

std::string Caption(const std::string& caption) {
  return "         <TD>\n            <P ALIGN=CENTER><B><FONT FACE=\"Arial\" COLOR=FFFFFF>" +
         caption + "</FONT><B>\n         </TD>\n";
}

// One table row as the page lays it out: the row tag, the numeric cells, and
// the code cell.
std::string Row(const std::string& tr, const std::string& cells, const std::string& code) {
  return "         " + tr + "\n         " + cells + "\n         <TD>\n            " + code +
         "\n         </TD>\n      </TR>\n";
}

class SourcePage : public ::testing::Test {
 protected:
  std::string Page(std::int32_t measure, std::int32_t procedure, bool links) {
    std::int32_t module = PageFixture::kModule;
    return GetHtmlCode(f.ws, PageFixture::kSession, module, procedure, measure,
                       MeasureFromIndex(measure), links);
  }
  void Options(std::int32_t measure, std::array<bool, 5> columns, std::int32_t scheme) {
    f.ws.view.OptionsHtml[static_cast<std::size_t>(measure)] = HtmlPageOptions{columns, scheme};
  }
  PageFixture f;
};

// Procedure page by value in the total time view: the statement over three
// lines is one row, the Exit Sub doesn't end the page, the End Sub does.
TEST_F(SourcePage, ProcedurePageColouredByValue) {
  Options(0, {true, false, true, false, false}, 3);
  const std::string expected = Crlf(
      std::string(
          R"(<A HREF="#legend"><B><FONT FACE="Arial" COLOR=666666 SIZE=1>See Color Legend (based on total time)</FONT></B></A><BR><BR>
)") + kTableHead +
      Caption("Hits") + Caption("Tot.Time") + kLinesCaption +
      R"(         <TR><B>
         <TD bgcolor=CCCCCC>1</TD><TD bgcolor=CCCCCC>0.750000</TD>
         <TD>
            <A NAME="P1"></A><FONT COLOR=#FF9100><PRE><B>Public Sub Main()</B></PRE></FONT>
         </TD>
      </TR>
         <TR>
         <TD bgcolor=EEEEEE></TD><TD bgcolor=DDDDDD></TD>
         <TD>
            <FONT COLOR=#0000FF><PRE>    ' counts</PRE></FONT>
         </TD>
      </TR>
         <TR>
         <TD bgcolor=EEEEEE>1</TD><TD bgcolor=DDDDDD>0.500000</TD>
         <TD>
            <FONT COLOR=#FF9100><PRE>    total = Add(1, _<BR>        2, _<BR>        3)</PRE></FONT>
         </TD>
      </TR>
         <TR>
         <TD bgcolor=EEEEEE>1</TD><TD bgcolor=DDDDDD>0.001235</TD>
         <TD>
            <FONT COLOR=#00AA00><PRE>    If total &gt; 0 Then</PRE></FONT>
         </TD>
      </TR>
         <TR>
         <TD bgcolor=EEEEEE><VAR>(1)</VAR></TD><TD bgcolor=DDDDDD><VAR>(0.000020)</VAR></TD>
         <TD>
            <FONT COLOR=#0000FF><PRE>        Exit Sub</PRE></FONT>
         </TD>
      </TR>
         <TR>
         <TD bgcolor=EEEEEE></TD><TD bgcolor=DDDDDD></TD>
         <TD>
            <FONT COLOR=#0000FF><PRE>    End If</PRE></FONT>
         </TD>
      </TR>
         <TR>
         <TD bgcolor=EEEEEE>-</TD><TD bgcolor=DDDDDD>-</TD>
         <TD>
            <FONT COLOR=#0000FF><PRE>    total = 0</PRE></FONT>
         </TD>
      </TR>
         <TR>
         <TD bgcolor=EEEEEE><VAR>(-)</VAR></TD><TD bgcolor=DDDDDD><VAR>(-)</VAR></TD>
         <TD>
            <FONT COLOR=#0000FF><PRE>End Sub</PRE></FONT>
         </TD>
      </TR>
   </TABLE>
<A NAME="Legend"></A><BR><TABLE CELLPADDING="2" CELLSPACING="0" BORDER="1" RULES=COLS bgcolor=F9F9F9>
   <TR BGCOLOR=666666><TD><P ALIGN=LEFT><B><FONT FACE="Arial" COLOR=FFFFFF>Color legend (based on total time)&nbsp</FONT><B></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#808080>Comments</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#0000FF>Neutral/Unexecuted code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#FF0000>Time > 100s</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#FF2800>10.000000 To 100.000000s</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#FF6400>1.000000 To 10.000000s</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#FF9100>0.100000 To 1.000000s</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#AFAF00>0.010000 To 0.100000s</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#00AA00>0.001000 To 0.010000s</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#008000>Time < 0.001s</FONT></P></TD></TR>
</TABLE><BR>

)");
  EXPECT_EQ(Page(0, 1, false), expected);
}

// Without colour and without columns: no legend link, no FONT tags, no legend,
// and the numeric cells leave an indented empty line. With links every
// statement opens an anchor, and plain rows close one they never opened.
TEST_F(SourcePage, UncolouredPageWithoutColumnsWithLinks) {
  Options(1, {false, false, false, false, false}, 1);
  const std::string page = Page(1, 3, true);
  const std::string expected =
      Crlf(std::string(kTableHead) + kLinesCaption +
           Row("<TR><B>", "",
               R"(<A NAME="P3"></A><A HREF="|1|3|0"><PRE><B>Function Twice(x)</B></PRE></A>)") +
           Row("<TR>", "", R"(<A HREF="|1|3|6"><PRE>    Twice = x * 2</PRE></A>)") +
           Row("<TR>", "", R"(<A HREF="|1|3|7"><PRE>End Function</PRE></A>)") + "   </TABLE>\n\n");
  EXPECT_EQ(page, expected);
}

// Rank colours on all five columns: the shades alternate leftwards from the
// last column, and a procedure head takes the darker "CCCCCC" everywhere.
TEST_F(SourcePage, ProcedurePageColouredByRank) {
  Options(1, {true, true, true, true, true}, 2);
  const std::string page = Page(1, 3, false);
  const std::string expected = Crlf(
      std::string(
          R"(<A HREF="#legend"><B><FONT FACE="Arial" COLOR=666666 SIZE=1>See Color Legend (based on average time)</FONT></B></A><BR><BR>
)") + kTableHead +
      Caption("Hits") + Caption("Avg.Time") + Caption("Tot.Time") + Caption("Avg.Child") +
      Caption("Tot.Child") + kLinesCaption +
      Row("<TR><B>",
          "<TD bgcolor=CCCCCC>2</TD><TD bgcolor=CCCCCC>75.00000</TD><TD "
          "bgcolor=CCCCCC>150.0000</TD>"
          "<TD bgcolor=CCCCCC>0.000000</TD><TD bgcolor=CCCCCC>0.000000</TD>",
          R"(<A NAME="P3"></A><FONT COLOR=#FF0000><PRE><B>Function Twice(x)</B></PRE></FONT>)") +
      Row("<TR>",
          "<TD bgcolor=DDDDDD>2</TD><TD bgcolor=EEEEEE>75.00000</TD><TD "
          "bgcolor=DDDDDD>150.0000</TD>"
          "<TD bgcolor=EEEEEE>0.000000</TD><TD bgcolor=DDDDDD>0.000000</TD>",
          R"(<FONT COLOR=#FF0000><PRE>    Twice = x * 2</PRE></FONT>)") +
      Row("<TR>",
          "<TD bgcolor=DDDDDD><VAR>(2)</VAR></TD><TD bgcolor=EEEEEE><VAR>(0.000002)</VAR></TD>"
          "<TD bgcolor=DDDDDD><VAR>(0.000004)</VAR></TD><TD "
          "bgcolor=EEEEEE><VAR>(0.000000)</VAR></TD>"
          "<TD bgcolor=DDDDDD><VAR>(0.000000)</VAR></TD>",
          R"(<FONT COLOR=#0000FF><PRE>End Function</PRE></FONT>)") +
      R"(   </TABLE>
<A NAME="Legend"></A><BR><TABLE CELLPADDING="2" CELLSPACING="0" BORDER="1" RULES=COLS bgcolor=F9F9F9>
   <TR BGCOLOR=666666><TD><P ALIGN=LEFT><B><FONT FACE="Arial" COLOR=FFFFFF>Color legend (based on average time)&nbsp</FONT><B></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#808080>Comments</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#0000FF>Neutral/Unexecuted code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#FF0000>1% slowest code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#FF2800>1% to 2% slowest code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#FF6400>2% to 5% slowest code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#FF9100>5% to 10% slowest code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#AFAF00>10% to 20% slowest code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#00AA00>20% to 50% slowest code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#008000>50% fastest code</FONT></P></TD></TR>
</TABLE><BR>

)");
  EXPECT_EQ(page, expected);
}

// The whole module in the coverage view: executed rows green, unhit rows red,
// the dead procedure black with empty cells down to the next live head, and
// the empty line behind the last line end as a row of its own.
TEST_F(SourcePage, ModulePageInCoverageView) {
  Options(4, {true, false, false, false, false}, 2);
  const std::string page = Page(4, 0, true);
  const std::string none = "<TD bgcolor=DDDDDD></TD>";
  auto hits = [](const std::string& n) { return "<TD bgcolor=DDDDDD>" + n + "</TD>"; };
  const std::string expected = Crlf(
      std::string(
          R"(<A HREF="#legend"><B><FONT FACE="Arial" COLOR=666666 SIZE=1>See Color Legend</FONT></B></A><BR><BR>
)") + kTableHead +
      Caption("Hits") + kLinesCaption +
      Row("<TR>", none,
          "<FONT COLOR=#0000FF><PRE>Attribute VB_Name = &quot;Module1&quot;</PRE></FONT></A>") +
      Row("<TR>", none, "<FONT COLOR=#808080><PRE>' Demo</PRE></FONT></A>") +
      Row("<TR><B>", "<TD bgcolor=CCCCCC>1</TD>",
          R"(<A NAME="P1"></A><A HREF="|1|1|0"><FONT COLOR=#008000><PRE><B>Public Sub Main()</B></PRE></FONT></A>)") +
      Row("<TR>", none, "<FONT COLOR=#0000FF><PRE>    ' counts</PRE></FONT></A>") +
      Row("<TR>", hits("1"),
          R"(<A HREF="|1|1|1"><FONT COLOR=#008000><PRE>    total = Add(1, _<BR>        2, _<BR>        3)</PRE></FONT></A>)") +
      Row("<TR>", hits("1"),
          R"(<A HREF="|1|1|2"><FONT COLOR=#008000><PRE>    If total &gt; 0 Then</PRE></FONT></A>)") +
      Row("<TR>", hits("1"),
          R"(<A HREF="|1|1|3"><FONT COLOR=#0000FF><PRE>        Exit Sub</PRE></FONT></A>)") +
      Row("<TR>", none, "<FONT COLOR=#0000FF><PRE>    End If</PRE></FONT></A>") +
      Row("<TR>", hits("-"),
          R"(<A HREF="|1|1|4"><FONT COLOR=#FF0000><PRE>    total = 0</PRE></FONT></A>)") +
      Row("<TR>", hits("-"),
          R"(<A HREF="|1|1|5"><FONT COLOR=#0000FF><PRE>End Sub</PRE></FONT></A>)") +
      Row("<TR><B>", "<TD bgcolor=CCCCCC></TD>",
          R"(<A NAME="P2"></A><A HREF="|1|2|0"><FONT COLOR=#000000><PRE><B>Private Sub Unused()</B></PRE></FONT></A>)") +
      Row("<TR>", none, "<FONT COLOR=#000000><PRE> </PRE></FONT></A>") +
      Row("<TR>", none, "<FONT COLOR=#000000><PRE>    Beep</PRE></FONT></A>") +
      Row("<TR>", none, "<FONT COLOR=#000000><PRE>End Sub</PRE></FONT></A>") +
      Row("<TR><B>", "<TD bgcolor=CCCCCC>2</TD>",
          R"(<A NAME="P3"></A><A HREF="|1|3|0"><FONT COLOR=#008000><PRE><B>Function Twice(x)</B></PRE></FONT></A>)") +
      Row("<TR>", hits("2"),
          R"(<A HREF="|1|3|6"><FONT COLOR=#008000><PRE>    Twice = x * 2</PRE></FONT></A>)") +
      Row("<TR>", hits("2"),
          R"(<A HREF="|1|3|7"><FONT COLOR=#0000FF><PRE>End Function</PRE></FONT></A>)") +
      Row("<TR>", none, "<FONT COLOR=#0000FF><PRE> </PRE></FONT></A>") +
      R"(   </TABLE>
<A NAME="Legend"></A><BR><TABLE CELLPADDING="2" CELLSPACING="0" BORDER="1" RULES=COLS bgcolor=F9F9F9>
   <TR BGCOLOR=666666><TD><P ALIGN=LEFT><B><FONT FACE="Arial" COLOR=FFFFFF>Color legend&nbsp</FONT><B></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#808080>Comments</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#0000FF>Neutral code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#008000>Executed code</FONT></P></TD></TR>
<TR><TD><P ALIGN=LEFT><FONT COLOR=#FF0000>Unexecuted code</FONT></P></TD></TR>
</TABLE><BR>

)");
  EXPECT_EQ(page, expected);
}

TEST_F(SourcePage, ProcedureBeyondTheProjectShowsTheFirstOne) {
  Options(0, {false, false, false, false, false}, 1);
  std::int32_t module = 1;
  std::int32_t procedure = 9;
  const std::string page =
      GetHtmlCode(f.ws, PageFixture::kSession, module, procedure, 0, Measure::Total, false);
  EXPECT_EQ(procedure, 1);
  EXPECT_EQ(module, 1);
  EXPECT_NE(page.find("Public Sub Main()"), std::string::npos);
  EXPECT_EQ(page.find("Function Twice"), std::string::npos);
}

TEST_F(SourcePage, MissingSideFileGivesHeadRowAndLegendOnly) {
  Options(0, {true, false, false, false, false}, 3);
  f.ws.RtfPath = f.dir.path() + "/nowhere/";
  const std::string page = Page(0, 0, false);
  EXPECT_EQ(page.find("         <TR>"), std::string::npos);
  EXPECT_NE(page.find("   </TABLE>\r\n<A NAME=\"Legend\">"), std::string::npos);
}

TEST_F(SourcePage, ModuleOutsideTheTablesIsABoundsError) {
  Options(0, {true, false, false, false, false}, 3);
  std::int32_t module = 0;
  std::int32_t procedure = 0;
  EXPECT_THROW(GetHtmlCode(f.ws, 1, module, procedure, 0, Measure::Total, false), BoundsError);
  module = 1;
  EXPECT_THROW(GetHtmlCode(f.ws, 7, module, procedure, 0, Measure::Total, false), BoundsError);
}

}  // namespace
}  // namespace zol
