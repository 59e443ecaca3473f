// A group's report, end to end: the group file of two runs entered and
// ticked as the session pane does it, then reported once for the group and
// once per member, its source pages made from the members' sources.

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/text.h"
#include "catalogue/catalogue_fixture.h"
#include "catalogue/run_fixture.h"
#include "report/report_driver.h"
#include "report/report_pages.h"
#include "source_view/font_metrics.h"
#include "source_view/timing_colours.h"

namespace zol {
namespace {

class GroupReportTest : public testing::CatalogueTest {
 protected:
  void SetUp() override {
    run_ = testing::MakeSmallRun(dir_.path());
    MakeDir(dir_ / "runs");
    testing::GroupFileSpec spec{dir_ / "runs/Runs.vbg 1.pfd"};
    auto scratch = NewWorkspace();
    testing::WriteGroupFile(*scratch, {run_.log, testing::AnotherRun(run_, "run2.pfl", 2)}, spec);
    ASSERT_EQ(AddSession(*ws_, spec.file, true).ticks.size(), 1u);
    ASSERT_TRUE(ws_->SessionGroup(1).Loaded);
    LoadColors(*ws_, true, "");
    SetFontHTML(*ws_, FixedFontMetrics(), ws_->view.FontHTML, ws_->view.FontSizeHTML);
  }

  testing::FixtureRun run_;
};

TEST_F(GroupReportTest, OnceForTheGroupAndOncePerMember) {
  const SessionGroup& g = ws_->SessionGroup(1);
  ReportRequest request;
  request.options.Scope = ReportScope::AllTicked;
  request.options.IncludeHTMLProject = true;
  request.options.Target = ReportTarget::UserFolder;
  request.options.ReportFolder = dir_ / "report";
  const ReportOutcome out = CreateReport(*ws_, request);
  ASSERT_TRUE(out.written) << out.refusal;

  const std::string contents = LoadFile(dir_ / "report/Contents.htm");
  EXPECT_EQ(StrCount(contents, "<TD><B>"), 1) << "one table, for the group";
  EXPECT_NE(contents.find("<B>Runs.vbg 1</B>"), std::string::npos);
  EXPECT_NE(contents.find("<TD>Runs.vbg 1.pfd</TD>"), std::string::npos);

  const std::string summary = LoadFile(dir_ / "report/Summary1.htm");
  EXPECT_NE(summary.find("Group: Runs.vbg 1"), std::string::npos);
  EXPECT_EQ(StrCount(summary, ">Project Summary</DIV>"), 1 + g.nSession);
  for (std::int32_t k = 1; k <= g.nSession; ++k) {
    const std::string name = ws_->Session(g.Sessions(k)).Name;
    EXPECT_NE(summary.find("Member: " + name), std::string::npos) << name;
  }
  const std::int32_t modules = ws_->Project(ws_->Session(g.Sessions(1)).Project).ModulesNumber;
  ASSERT_GT(modules, 0);
  for (std::int32_t k = 1; k <= g.nSession; ++k) {
    const std::string page = dir_ / ("report/SourceTOC1_S" + std::to_string(k) + "_M1.htm");
    EXPECT_TRUE(FileExist(page)) << page;
    EXPECT_NE(LoadFile(page).find("<PRE>"), std::string::npos) << "the member's source is shown";
  }
  EXPECT_FALSE(FileExist(dir_ / "report/SourceTOC1_M1.htm")) << "the merged group has no source";
}

}  // namespace
}  // namespace zol
