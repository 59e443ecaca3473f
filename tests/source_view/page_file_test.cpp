#include "source_view/page_file.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/files.h"
#include "base/text.h"
#include "source_view/page_fixture.h"
#include "source_view/page_header.h"

namespace zol {
namespace {

using testing::Crlf;
using testing::PageFixture;

struct RecordingBrowser : PageBrowser {
  void Navigate(const std::string& file) override { shown.push_back(file); }
  std::vector<std::string> shown;
};

std::string Style(const std::string& font, int size, int lineHeight, int small) {
  const std::string f = "\"" + font + "\", \"Courier New\";\n";
  const std::string s = std::to_string(size);
  const std::string l = std::to_string(lineHeight);
  return "PRE { font-family : " + f + "font-size : " + s +
         ".0pt;\ntext-decoration: none;\nline-height : " + l +
         ".0pt;\nmargin-top : 0.0pt;\nmargin-bottom : 1.0pt;\ntext-align: left;}\n"
         "TD { font-family : " +
         f + "font-size : " + s + ".0pt;\nline-height : " + l +
         ".0pt;\nmargin-top : 0.0pt;\nmargin-bottom : 1.0pt;\ntext-align: right;}\n"
         "VAR { font-family : " +
         f + "font-size : " + std::to_string(small) +
         ".0pt;\nfont-style: normal;\nline-height : " + l +
         ".0pt;\nmargin-top : 0.0pt;\nmargin-bottom : 1.0pt;\ncolor : 0000FF;\ntext-align: "
         "right;}\n";
}

TEST(PageHeader, StyleBetweenMarkersThenBody) {
  PageFixture f;
  const std::string header = GetHeaderCode(f.ws, PageFixture::kSession);
  const std::string tail =
      Crlf(" <STYLE TYPE=\"text/css\">\n<!-- BEGIN STYLE -->" + Style("Courier New", 10, 8, 9) +
           "<!-- END STYLE -->\n</STYLE>\n\n<BODY BGCOLOR=\"WHITE\">\n");
  ASSERT_GE(header.size(), tail.size());
  EXPECT_EQ(header.substr(header.size() - tail.size()), tail);
  EXPECT_NE(header.find("<TITLE>Run 1</TITLE>\r\n</HEAD>\r\n\r\n <STYLE"), std::string::npos);
}

TEST(PageFile, LoadFileWritesTheLinkedPageAndShowsIt) {
  PageFixture f;
  f.ws.view.OptionsHtml[4] = HtmlPageOptions{{true, false, false, false, false}, 3};
  RecordingBrowser browser;
  std::int32_t module = 1;
  std::int32_t procedure = 3;
  ShowSourcePage(f.ws, PageFixture::kSession, module, procedure, Measure::Coverage, browser);

  EXPECT_EQ(SourcePageFile(f.ws), f.dir / "code.htm");
  ASSERT_EQ(browser.shown, std::vector<std::string>{SourcePageFile(f.ws)});
  std::int32_t m = 1;
  std::int32_t p = 3;
  const std::string page =
      BuildSourcePage(f.ws, PageFixture::kSession, m, p, Measure::Coverage, true);
  EXPECT_EQ(LoadFile(SourcePageFile(f.ws)), page + "\r\n");
  EXPECT_EQ(page.substr(page.size() - 18), "</BODY>\r\n</HTML>\r\n");
  EXPECT_NE(page.find("<A HREF=\"|1|3|6\">"), std::string::npos);
}

TEST(PageFile, UpdateHtmlChangesOnlyTheStyle) {
  PageFixture f;
  f.ws.view.OptionsHtml[0] = HtmlPageOptions{{true, false, true, false, false}, 3};
  RecordingBrowser browser;
  std::int32_t module = 1;
  std::int32_t procedure = 0;
  ShowSourcePage(f.ws, PageFixture::kSession, module, procedure, Measure::Coverage, browser);
  const std::string before = LoadFile(SourcePageFile(f.ws));

  f.ws.view.FontHTML = "Lucida Console";
  f.ws.view.FontSizeHTML = 12;
  f.ws.view.LineHeightHTML = 9;
  f.ws.view.SmallFontSizeHTML = 11;
  UpdateHtml(f.ws, browser);
  const std::string after = LoadFile(SourcePageFile(f.ws));
  EXPECT_EQ(browser.shown.size(), 2U);
  // The page file gains one line end each time it is written out.
  EXPECT_EQ(after, Replace(before, Crlf(Style("Courier New", 10, 8, 9)),
                           Crlf(Style("Lucida Console", 12, 9, 11))) +
                       "\r\n");

  WriteFile(SourcePageFile(f.ws), "<HTML><!-- BEGIN STYLE --></HTML>");
  UpdateHtml(f.ws, browser);
  EXPECT_EQ(LoadFile(SourcePageFile(f.ws)), "<HTML><!-- BEGIN STYLE --></HTML>");
  EXPECT_EQ(browser.shown.size(), 2U);
}

}  // namespace
}  // namespace zol
