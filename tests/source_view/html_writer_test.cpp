#include "source_view/html_writer.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "base/version.h"

namespace zol {
namespace {

TEST(HtmlWriter, PageFrame) {
  CConcatString cc;
  HtmlWriteHeader(cc, "");
  HtmlWriteStyle(cc, "X {}");
  HtmlWriteBody(cc, "BGCOLOR=\"WHITE\"");
  HtmlWriteString(cc, "<P>", 0);
  HtmlWriteString(cc, "<B>", 2);
  HtmlWriteEnd(cc);
  const std::string generator = std::string(kAppTitle) + " " + std::to_string(kAppMajor) + "." +
                                std::to_string(kAppMinor) + "." + std::to_string(kAppRevision);
  EXPECT_EQ(cc.Value(),
            "<HTML>\r\n<HEAD>\r\n"
            "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\">\r\n"
            "<meta name=\"GENERATOR\" content=\"" +
                generator +
                "\">\r\n"
                "<TITLE></TITLE>\r\n</HEAD>\r\n\r\n"
                " <STYLE TYPE=\"text/css\">\r\nX {}\r\n</STYLE>\r\n\r\n"
                "<BODY BGCOLOR=\"WHITE\">\r\n"
                "<P>\r\n      <B>\r\n"
                "</BODY>\r\n</HTML>\r\n");
}

TEST(HtmlWriter, PrepareStringEscapesOnceAndBreaksOnlyAtCrLf) {
  EXPECT_EQ(HtmlPrepareString("a &lt; \"b\" <c>"), "a &amp;lt; &quot;b&quot; &lt;c&gt;");
  EXPECT_EQ(HtmlPrepareString("x _\r\ny\nz\r"), "x _<BR>y\nz\r");
}

TEST(HtmlWriter, OutputAddsOneLineEndAndKeepsBytes) {
  testing::ScopedTempDir dir;
  CConcatString cc;
  cc.Append("caf\xE9");
  HtmlOutputTofile(cc, dir / "p.htm");
  HtmlOutputTofile(cc, dir / "p.htm");  // replaces, doesn't append
  EXPECT_EQ(LoadFile(dir / "p.htm"), "caf\xE9\r\n");
  EXPECT_THROW(HtmlOutputTofile(cc, dir / "no/such/folder/p.htm"), FileError);
}

TEST(HtmlWriter, ArrayTableWithAndWithoutTitle) {
  TextTable t(0, 1, 0, 1);
  t(0, 0) = "Name";
  t(1, 0) = "Hits";
  t(0, 1) = "Main";
  t(1, 1) = "3";
  const std::string rows =
      "<TR BGCOLOR=666666>\r\n<TD CLASS=\"alcenter\">Name</TD>\r\n<TD "
      "CLASS=\"alcenter\">Hits</TD>\r\n"
      "</TR>\r\n<TR>\r\n<TD>Main</TD>\r\n<TD>3</TD>\r\n</TR>\r\n";
  const std::string open =
      "<TABLE CELLPADDING=2 CELLSPACING=0 BORDER=1 RULES=COLS BGCOLOR=D9D9D9>\r\n";
  EXPECT_EQ(HtmlGetArray(t, ""), open + rows + "</TABLE>\r\n");
  EXPECT_EQ(HtmlGetArray(t, "Top"),
            open +
                "<TR BGCOLOR=000000><TD  CLASS=\"alcenter\" COLSPAN=1><FONT COLOR=white><B>Top</B>"
                "</FONT></TD></TR>" +
                rows + "</TABLE>\r\n");
  EXPECT_THROW(t(2, 0), BoundsError);
}

}  // namespace
}  // namespace zol
