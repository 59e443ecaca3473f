// Writing whole reports: the folder a target gives, the files of an export
// and of an HTML report, and the contents page.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "base/files.h"
#include "base/paths.h"
#include "base/text.h"
#include "report/report_driver.h"
#include "report/report_pages.h"
#include "report/report_templates.h"
#include "report_fixture.h"

namespace zol {
namespace {

namespace fs = std::filesystem;

class ReportDriverTest : public ::testing::Test {
 protected:
  ReportDriverTest() {
    f.ws.SetPrompter(prompter);
    request.current = SessionRef::single(testing::PageFixture::kSession);
  }
  ReportOutcome Run() { return CreateReport(f.ws, request); }
  std::string Runs() const { return f.dir / "runs"; }

  testing::ReportFixture f;
  std::shared_ptr<RecordingPrompter> prompter = std::make_shared<RecordingPrompter>();
  ReportRequest request;
};

TEST_F(ReportDriverTest, ASecondSubfolderReportTakesTheNextNumber) {
  const ReportOutcome first = Run();
  ASSERT_TRUE(first.written) << first.refusal;
  EXPECT_EQ(first.ReportPath, Runs() + "/Run 1 Report 1");
  const ReportOutcome second = Run();
  EXPECT_EQ(second.ReportPath, Runs() + "/Run 1 Report 2");
  EXPECT_EQ(second.FileToOpen, std::vector<std::string>{second.ReportPath + "/Contents.htm"});
  EXPECT_EQ(prompter->progressTexts.front(), "Generating report for Run 1...");
}

TEST_F(ReportDriverTest, TargetsSessionFolderTempAndUser) {
  request.options.Target = ReportTarget::SessionFolder;
  EXPECT_EQ(Run().ReportPath, Runs());

  request.options.Target = ReportTarget::TempFolder;
  const ReportOutcome temp = Run();
  EXPECT_EQ(GetFileName(temp.ReportPath).rfind("Session Report ", 0), 0u) << temp.ReportPath;
  ASSERT_EQ(f.ws.tempFiles.nDeleteOnExit(), 1);
  EXPECT_EQ(f.ws.tempFiles.DeleteOnExit()[0], temp.ReportPath + "/");
  f.ws.tempFiles.DeleteTempFiles();
  EXPECT_FALSE(FolderExist(temp.ReportPath));

  request.options.Target = ReportTarget::UserFolder;
  request.options.ReportFolder = f.dir / "user/reports";
  EXPECT_EQ(Run().ReportPath, f.dir / "user/reports");
}

TEST_F(ReportDriverTest, RefusalsWriteNothing) {
  request.current = SessionRef::compared();
  const ReportOutcome refused = Run();
  EXPECT_FALSE(refused.written);
  ASSERT_EQ(prompter->messages.size(), 1u);
  EXPECT_EQ(prompter->messages[0].text,
            "Cannot report compared sessions !\r\nPlease select another session.");
  request.current = SessionRef::single(1);
  request.options.DataRequested = {false, false, false};
  EXPECT_FALSE(Run().written);
  EXPECT_EQ(prompter->messages.back().text, "Please select a type of data to report (step 2)");
  EXPECT_TRUE(fs::is_empty(Runs()) || !FolderExist(Runs() + "/Run 1 Report 1"));
}

TEST_F(ReportDriverTest, ExportsGoToOneFileOrSeparateFilesAndReplaceThem) {
  request.options.DoExport = true;
  request.options.Target = ReportTarget::SessionFolder;
  const std::string one = Runs() + "/Run 1-export.csv";
  WriteFile(one, "old content");
  const ReportOutcome out = Run();
  EXPECT_EQ(out.files, (std::vector<std::string>{one, Runs() + "/Contents.htm"}));
  EXPECT_NE(LoadFile(Runs() + "/Contents.htm").find("Detailed Reports</B></FONT></TD><TD></TD>"),
            std::string::npos);
  const std::string text = LoadFile(one);
  EXPECT_EQ(text.rfind("MODULES:\r\n\"Project\",\"Module\"", 0), 0u);
  EXPECT_NE(text.find("\r\n\r\nPROCEDURES:\r\n\"Project\""), std::string::npos);
  EXPECT_NE(text.find("\r\n\r\nLINES:\r\n\"Project\""), std::string::npos);
  EXPECT_EQ(text.find("old content"), std::string::npos);
  EXPECT_TRUE(prompter->messages.empty()) << "no question before replacing";

  request.options.ExportCreateSeparateFile = true;
  request.options.ExportWhat = {true, false, true, true};
  const ReportOutcome separate = Run();
  EXPECT_EQ(separate.FileToOpen, (std::vector<std::string>{Runs() + "/Run 1-export-modules.csv",
                                                           Runs() + "/Run 1-export-lines.csv",
                                                           Runs() + "/Contents.htm"}));
  EXPECT_EQ(StrCount(LoadFile(Runs() + "/Run 1-export-lines.csv"), "\r\n"), 7)
      << "heads, five lines with hits, the total";
}

TEST_F(ReportDriverTest, HtmlReportPagesAndContents) {
  request.options.IncludeHTMLProject = true;
  request.options.ReporttoChm = true;
  request.options.TopItems = 5;
  f.ws.Session(1).CodeLineValue(4).Hits = 9;  // the line with quotes is the most called
  const ReportOutcome out = Run();
  ASSERT_TRUE(out.written) << out.refusal;
  const std::string& dir = out.ReportPath;
  EXPECT_EQ(LoadFile(dir + "/more.gif"), MoreGifBytes());
  EXPECT_EQ(MoreGifBytes().size(), 55u);
  EXPECT_EQ(MoreGifBytes().rfind("GIF89a", 0), 0u);
  EXPECT_EQ(MoreGifHex().size(), 110u);
  EXPECT_TRUE(FileExist(dir + "/SourceTOC1_M1.htm"));
  EXPECT_EQ(prompter->messages.back().text, kNoHelpCompiler);

  const std::string contents = LoadFile(dir + "/Contents.htm");
  EXPECT_NE(
      contents.find("<TABLE CELLPADDING=2 CELLSPACING=0 BORDER=1 RULES=ALL BGCOLOR=D9D9D9>\r\n"
                    "<TR><TD BGCOLOR=666666><FONT COLOR=white><B>Session</B></FONT></TD>"
                    "<TD><B>Run 1</B></TD></TR>\r\n"),
      std::string::npos);
  EXPECT_NE(contents.find("<TD>Run 1.pfd</TD>"), std::string::npos);
  EXPECT_NE(contents.find("<TD>Demo.vbp</TD>"), std::string::npos);
  EXPECT_NE(contents.find("<TD>150.750004</TD>"), std::string::npos);
  EXPECT_NE(contents.find("<TD>71.4%</TD>"), std::string::npos);
  EXPECT_NE(
      contents.find("<A HREF=\"Summary1.htm\">Session Summary<A> - "
                    "<A HREF=\"SourceTOC1.htm\">Source Code<A></TD></TR>\r\n</TABLE>\r\n<HR>"),
      std::string::npos);
  EXPECT_NE(contents.find(ReportFooter()), std::string::npos);
  EXPECT_EQ(contents.substr(contents.size() - 20), "</BODY>\r\n</HTML>\r\n\r\n");

  const std::string summary = LoadFile(dir + "/Summary1.htm");
  for (const char* title :
       {"Project Summary", "Module Summary", "Most called procedures: Top 5",
        "Most called lines: Top 5", "Modules Non 100% Covered:", "Procedures Non 100% Covered:",
        "Top 5: Total Time spent in Procedure", "Top 5: Total Time spent in Line"}) {
    EXPECT_NE(summary.find(std::string("<DIV CLASS=\"tocHead\" onclick=\"fnFlash(this)\" "
                                       "BORDER=\"0\">") +
                           title + "</DIV> <P CLASS=\"tocItemHide\">"),
              std::string::npos)
        << title;
  }
  for (const char* script : {"function fnFlash", "function fnCollapseAll", "function fnExpandAll",
                             "function fnSave", "function fnLoad"}) {
    EXPECT_NE(summary.find(script), std::string::npos) << script;
  }
  // The line with quotes is escaped in the table.
  EXPECT_NE(summary.find("MsgBox &quot;a, &quot;&quot;b&quot;&quot;&quot;, vbOK"),
            std::string::npos);
}

TEST_F(ReportDriverTest, SourcePagesUseTheReportsColumnsWithoutLinks) {
  f.ws.view.OptionsHtml[kReportPageOptions] = {{true, false, false, false, false}, 1};
  std::vector<std::string> written;
  const std::string toc =
      MakeSourceCodeReport(f.ws, 1, Measure::Total, f.dir.path(), "SourceTOC1", written);
  ASSERT_EQ(written, std::vector<std::string>{f.dir / "SourceTOC1_M1.htm"});
  EXPECT_NE(toc.find("<A HREF=\"SourceTOC1_M1.htm\">Module1</A>"), std::string::npos) << toc;
  const std::string page = LoadFile(written[0]);
  EXPECT_EQ(page.find("HREF=\"|"), std::string::npos) << "no links in a report";
  EXPECT_NE(page.find("COLOR=FFFFFF>Hits</FONT>"), std::string::npos);
  EXPECT_EQ(page.find("Tot.Time"), std::string::npos);
  EXPECT_EQ(page.find("<FONT COLOR=#"), std::string::npos) << "no colours with scheme 1";
}

TEST(ReportTitles, TopTimesFollowTheMeasure) {
  EXPECT_EQ(TopTimesTitle(20, Measure::Average, false), "Top 20: Average Time spent in Procedure");
  EXPECT_EQ(TopTimesTitle(3, Measure::ChildTotal, true),
            "Top 3: Total Time spent in Line and children");
  EXPECT_EQ(TopTimesTitle(3, Measure::ChildAverage, false),
            "Top 3: Average Time spent in Procedure and children");
  EXPECT_EQ(TopTimesTitle(9, Measure::Coverage, true), "Top 9: Total Time spent in Line");
}

}  // namespace
}  // namespace zol
