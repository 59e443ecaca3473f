// The options of a report, what CheckReport refuses and in which order, and
// which sessions a report takes.

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/ini_file.h"
#include "report/report_check.h"
#include "report/report_options.h"
#include "report_fixture.h"

namespace zol {
namespace {

TEST(ReportOptions, DefaultsSaveAndLoadBackWithClamps) {
  testing::ReportFixture f;
  const std::string ini = f.dir / "Zolmark.ini";
  ReportOptions o = LoadReportOptions(f.ws, ini);
  EXPECT_EQ(o, DefaultReportOptions(f.dir.path()));
  EXPECT_EQ(o.ReportFolder, f.dir / "Reports");
  EXPECT_EQ(f.ws.view.OptionsHtml[kReportPageOptions].ColorScheme, 3);
  EXPECT_EQ(f.ws.view.OptionsHtml[kReportPageOptions].Column, (std::array<bool, 5>{1, 1, 1, 1, 1}));

  o.Scope = ReportScope::AllTickedAndMerged;
  o.DataRequested = {false, true, false};
  o.ExportWhat = {false, true, true, true};
  o.TopItems = 7;
  o.Target = ReportTarget::UserFolder;
  o.ReportFolder = f.dir / "mine";
  f.ws.view.OptionsHtml[kReportPageOptions] = {{true, false, true, false, false}, 2};
  SaveReportOptions(f.ws, o, ini);
  EXPECT_EQ(VBGetPrivateProfileString("ProfilerReport", "DataRequested0", "", ini), "False");
  EXPECT_EQ(VBGetPrivateProfileString("ProfilerReport", "HTMLProjectColumn2", "", ini), "True");
  f.ws.view.OptionsHtml[kReportPageOptions] = {};
  EXPECT_EQ(LoadReportOptions(f.ws, ini), o);
  EXPECT_EQ(f.ws.view.OptionsHtml[kReportPageOptions].ColorScheme, 2);

  VBWritePrivateProfileString("ProfilerReport", "Scope", "7", ini);
  VBWritePrivateProfileString("ProfilerReport", "ReportTarget", "-2", ini);
  VBWritePrivateProfileString("ProfilerReport", "TopItems", "12.8", ini);
  VBWritePrivateProfileString("ProfilerReport", "HTMLColorScheme", "9", ini);
  VBWritePrivateProfileString("ProfilerReport", "DoExport", "maybe", ini);
  const ReportOptions clamped = LoadReportOptions(f.ws, ini);
  EXPECT_EQ(clamped.Scope, ReportScope::AllTickedAndMerged);
  EXPECT_EQ(clamped.Target, ReportTarget::SessionFolder);
  EXPECT_EQ(clamped.TopItems, 12);
  EXPECT_FALSE(clamped.DoExport);
  EXPECT_EQ(f.ws.view.OptionsHtml[kReportPageOptions].ColorScheme, 3);
  EXPECT_EQ(TopItemsFromText(" 15 ", 20), 15);
  EXPECT_EQ(TopItemsFromText("0", 20), 1);
  EXPECT_EQ(TopItemsFromText("lots", 20), 20);
}

// Each fault, put right in turn, uncovers the next message.
TEST(CheckReport, MessagesComeInTheirOrder) {
  testing::ScopedTempDir dir;
  const std::string blocker = dir.Put("file", "x");
  ReportOptions o;
  o.DataRequested = {false, false, false};
  o.DoExport = true;
  o.ExportWhat = {false, false, false, true};
  o.IncludeReportSummary = o.IncludeHTMLProject = false;
  o.ReporttoHtm = o.ReporttoChm = false;
  o.Target = ReportTarget::UserFolder;
  o.ReportFolder = blocker + "/sub";

  EXPECT_EQ(CheckReport(o, false), "No session selected !");
  EXPECT_EQ(CheckReport(o, true), "Please select a type of data to report (step 2)");
  o.DataRequested[kDataChildren] = true;
  EXPECT_EQ(CheckReport(o, true),
            "Please select something to export: modules, procedures and/or lines (step 4)");
  o.DoExport = false;
  EXPECT_EQ(CheckReport(o, true),
            "Please select something to report: session summary and/or source code view (step "
            "4)");
  o.IncludeHTMLProject = true;
  EXPECT_EQ(CheckReport(o, true),
            "Please select a format for your report: HTM and/or CHM (step 4)");
  o.ReporttoChm = true;
  EXPECT_EQ(CheckReport(o, true),
            "Impossible to create or access the target folder:\r\n" + blocker + "/sub");
  o.ReportFolder = dir / "made/here";
  EXPECT_EQ(CheckReport(o, true), std::nullopt);
  EXPECT_TRUE(FolderExist(dir / "made/here"));
  o.DoExport = true;
  o.ExportWhat[kExportLines] = true;
  o.Target = ReportTarget::Subfolder;
  EXPECT_EQ(CheckReport(o, true), std::nullopt);
}

TEST(SelectSessionsToReport, ScopesGroupsAndComparedSelections) {
  testing::ReportFixture f;
  Workspace& ws = f.ws;
  const std::int32_t second = f.AddSecondSession();
  ReportOptions o;
  EXPECT_EQ(SelectSessionsToReport(ws, o, SessionRef::single(second)).sessions,
            std::vector<std::int32_t>{second});
  const SessionChoice compared = SelectSessionsToReport(ws, o, SessionRef::compared());
  EXPECT_TRUE(compared.sessions.empty());
  EXPECT_EQ(compared.refusal,
            "Cannot report compared sessions !\r\nPlease select another session.");
  EXPECT_EQ(SelectSessionsToReport(ws, o, SessionRef::none()).refusal, "No session selected !");

  o.Scope = ReportScope::AllTicked;
  EXPECT_EQ(SelectSessionsToReport(ws, o, SessionRef::compared()).sessions,
            (std::vector<std::int32_t>{1, second}));
  o.Scope = ReportScope::AllTickedAndMerged;
  EXPECT_EQ(SelectSessionsToReport(ws, o, SessionRef::none()).sessions,
            (std::vector<std::int32_t>{1, second}))
      << "no merged view is loaded";
  ws.Session(0).Loaded = true;
  EXPECT_EQ(SelectSessionsToReport(ws, o, SessionRef::none()).sessions,
            (std::vector<std::int32_t>{1, second, 0}));

  // A ticked group counts once, by its merged session; its members don't.
  Session member = ws.Session(second);
  member.Group = 1;
  member.Invisible = true;
  const std::int32_t m = ++ws.nSession;
  ws.SessionSlot(m) = member;
  Session merged = ws.Session(second);
  merged.Invisible = true;
  merged.IsMergedGroupSession = true;
  const std::int32_t g = ++ws.nSession;
  ws.SessionSlot(g) = merged;
  ws.SessionGroup.ReDimPreserve(1);
  ws.nSessionGroup = 1;
  ws.SessionGroup(1).Selected = true;
  ws.SessionGroup(1).GroupMergedSession = g;
  ws.Session(second).Selected = false;
  ws.Session(0).Loaded = false;
  o.Scope = ReportScope::AllTicked;
  EXPECT_EQ(SelectSessionsToReport(ws, o, SessionRef::none()).sessions,
            (std::vector<std::int32_t>{1, g}));
  ws.Session(1).Selected = false;
  ws.SessionGroup(1).Selected = false;
  EXPECT_EQ(SelectSessionsToReport(ws, o, SessionRef::none()).refusal, "No session selected !");
  EXPECT_FALSE(AnySessionLoaded(ws));
}

}  // namespace
}  // namespace zol
