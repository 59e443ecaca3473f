// Timing filters on hand-built sessions: which lines lose their time, what
// each session records, the questions asked, and the ticks done again.

#include "catalogue/timing_filters.h"

#include <gtest/gtest.h>

#include "catalogue/dont_show_dialog.h"
#include "catalogue_fixture.h"
#include "profile/gather_info.h"
#include "support/session_builder.h"

namespace zol {
namespace {

using testing::CatalogueTest;

const std::string kDialogText =
    "Filters are use to force timings to 0s for lines of code containing\n"
    "filtered expressions (filters are defined in the options screen).\n"
    "\n"
    "Important: Filters do not apply to children timings since there\n"
    "is no way to know which line was counted as child of others.\n"
    "You will still see the original timings in children views and flow charts.\n"
    "\n"
    "Please note that filters effects are not saved with the session file.\n"
    "You can still revert back to the original timings by unloading and\n"
    "reloading a session.";

class TimingFiltersTest : public CatalogueTest {
 protected:
  void SetUp() override {
    testing::ProjectBuilder b(*ws_);
    const std::int32_t m = b.Module("Module1");
    proc_ = b.Procedure(m, "Main");
    msgBox_ = b.Line(proc_);
    inputBox_ = b.Line(proc_);
    lowerCase_ = b.Line(proc_);
    b.Line(proc_, testing::kExitLine);
    cp_ = b.Build();
    Project& p = ws_->Project(cp_);
    p.CodeLine(msgBox_).Text = "MsgBox \"Saved\"";
    p.CodeLine(inputBox_).Text = "x = InputBox(\"Name?\")";
    p.CodeLine(lowerCase_).Text = "msgbox \"lower case\"";
    cs_ = NewSession("run1");
  }

  // A loaded, ticked session in which the MsgBox line ran twice for 3 s,
  // the InputBox line never ran, and the lower-case line ran once for 1 s.
  std::int32_t NewSession(const std::string& name) {
    const std::int32_t cs = testing::AddSessionForProject(*ws_, cp_, dir_ / (name + ".pfd"));
    Session& s = ws_->Session(cs);
    s.CodeLineValue(msgBox_) = {2, 3.0, 0, 3.5, 0};
    s.CodeLineValue(lowerCase_) = {1, 1.0, 0, 1.0, 0};
    s.ProcedureValue(proc_).Hits = 1;
    GatherInfo(*ws_, cs);
    s.Loaded = true;
    s.Selected = true;
    return cs;
  }

  const CodeLineValue& Line(std::int32_t id) const { return ws_->Session(cs_).CodeLineValue(id); }
  std::vector<std::string> Active(std::int32_t cs) const {
    const Session& s = ws_->Session(cs);
    std::vector<std::string> out;
    for (std::int32_t i = 1; i <= s.nFilters; ++i) out.push_back(s.ActiveFilters(i));
    return out;
  }

  std::int32_t cp_ = 0, cs_ = 0, proc_ = 0, msgBox_ = 0, inputBox_ = 0, lowerCase_ = 0;
};

TEST_F(TimingFiltersTest, AFilteredLineEndsAtTheFloorAndOnlyMatchingLinesWithHitsCount) {
  const std::optional<CatalogueChange> change = ApplyFilter(*ws_, "MsgBox\r\nInputBox");
  ASSERT_TRUE(change);

  EXPECT_DOUBLE_EQ(Line(msgBox_).TotalTime, 2 * kMinimumTimePerHit) << "not exactly 0";
  EXPECT_GT(Line(msgBox_).TotalTime, 0.0);
  EXPECT_DOUBLE_EQ(Line(msgBox_).AverageTime, kMinimumTimePerHit);
  EXPECT_DOUBLE_EQ(Line(msgBox_).ChildTotalTime, 3.5) << "child times are left alone";
  EXPECT_DOUBLE_EQ(Line(lowerCase_).TotalTime, 1.0) << "the search is case-sensitive";
  EXPECT_DOUBLE_EQ(ws_->Session(cs_).ProcedureValue(proc_).TotalTime, 2 * kMinimumTimePerHit + 1.0);
  EXPECT_DOUBLE_EQ(ws_->Session(cs_).SessionValue.TotalTime, 2 * kMinimumTimePerHit + 1.0);
  EXPECT_EQ(Active(cs_), std::vector<std::string>{"MsgBox"})
      << "InputBox matched only a line without hits";

  ASSERT_EQ(prompter_->titles, std::vector<std::string>{"Apply Filters ?"});
  ASSERT_EQ(prompter_->questions.size(), 1u);
  EXPECT_EQ(prompter_->questions[0], kDialogText);
  const RowKey k1{RowKind::Session, cs_};
  EXPECT_EQ(change->ticks, (std::vector<RowTick>{{k1, false, false}, {k1, true, true}}));
  EXPECT_EQ(change->viewReset, ViewReset::ValuesChanged);
  EXPECT_TRUE(ws_->Session(cs_).Selected) << "the row is ticked again";
}

TEST_F(TimingFiltersTest, FilteringTwiceRecordsOnceButCountsLinesAgain) {
  const std::int32_t lines = ws_->Session(cs_).ProcedureValue(proc_).TotalLines;
  const double coverage = ws_->Session(cs_).ProcedureValue(proc_).Coverage;
  ASSERT_TRUE(ApplyFilter(*ws_, "MsgBox"));
  ASSERT_TRUE(ApplyFilter(*ws_, "MsgBox"));
  EXPECT_EQ(Active(cs_), std::vector<std::string>{"MsgBox"});
  EXPECT_EQ(ws_->Session(cs_).ProcedureValue(proc_).TotalLines, 3 * lines)
      << "each run of the statistics adds the lines once more";
  EXPECT_DOUBLE_EQ(ws_->Session(cs_).ProcedureValue(proc_).Coverage, coverage);
  EXPECT_DOUBLE_EQ(Line(msgBox_).TotalTime, 2 * kMinimumTimePerHit);
}

TEST_F(TimingFiltersTest, EveryTickedSessionIsRewrittenAndNoOther) {
  const std::int32_t ticked = NewSession("run2");
  const std::int32_t unticked = NewSession("run3");
  ws_->Session(unticked).Selected = false;
  ASSERT_TRUE(ApplyFilter(*ws_, "MsgBox"));
  EXPECT_EQ(Active(ticked), std::vector<std::string>{"MsgBox"});
  EXPECT_DOUBLE_EQ(ws_->Session(ticked).CodeLineValue(msgBox_).TotalTime, 2 * kMinimumTimePerHit);
  EXPECT_DOUBLE_EQ(ws_->Session(unticked).CodeLineValue(msgBox_).TotalTime, 3.0);
  EXPECT_EQ(ws_->Session(unticked).nFilters, 0);
  EXPECT_FALSE(ws_->Session(unticked).Selected) << "an unticked row stays unticked";
}

TEST_F(TimingFiltersTest, AnEmptyEntryOfTheListIsFoundInEveryLine) {
  ASSERT_TRUE(ApplyFilter(*ws_, "MsgBox\r\n\r\nInputBox"));
  EXPECT_DOUBLE_EQ(Line(lowerCase_).TotalTime, kMinimumTimePerHit);
  EXPECT_EQ(Active(cs_), (std::vector<std::string>{"MsgBox", ""}));
}

TEST_F(TimingFiltersTest, NothingToDoIsToldAndChangesNothing) {
  ASSERT_FALSE(ApplyFilter(*ws_, ""));
  ASSERT_EQ(prompter_->messages.size(), 1u);
  EXPECT_EQ(prompter_->messages[0].text,
            "No filter defined !\nPlease define filters in the options screen.");
  EXPECT_EQ(prompter_->messages[0].kind, MessageKind::Information);

  ws_->Session(cs_).Selected = false;
  ASSERT_FALSE(ApplyFilter(*ws_, "MsgBox"));
  ASSERT_EQ(prompter_->messages.size(), 2u);
  EXPECT_EQ(prompter_->messages[1].text, "No session selected !");
  EXPECT_EQ(prompter_->messages[1].kind, MessageKind::Exclamation);

  ws_->Session(cs_).Selected = true;
  prompter_->answers = {Answer::No};
  EXPECT_FALSE(ApplyFilter(*ws_, "MsgBox"));
  EXPECT_DOUBLE_EQ(Line(msgBox_).TotalTime, 3.0);
}

TEST_F(TimingFiltersTest, DontShowAgainIsRememberedOnlyWithAYes) {
  prompter_->tickDontShowAgain = true;
  prompter_->answers = {Answer::No};
  EXPECT_FALSE(ApplyFilter(*ws_, "MsgBox"));
  EXPECT_TRUE(MustShow(*ws_, kApplyFiltersMessageId)) << "a refusal is never remembered";

  EXPECT_TRUE(ApplyFilter(*ws_, "MsgBox"));
  EXPECT_EQ(Setting("DontShowApplyFilters"), "True");
  EXPECT_TRUE(ApplyFilter(*ws_, "InputBox"));
  EXPECT_EQ(prompter_->questions.size(), 2u) << "not asked a third time";
}

TEST_F(TimingFiltersTest, TheStoredListUsesItsLineBreakMarker) {
  EXPECT_EQ(ReadFiltersSetting(Ini()), "MsgBox\r\nInputBox") << "the default";
  SetSetting("Filters", "DoEvents<vbCrLf>Sleep");
  EXPECT_EQ(ReadFiltersSetting(Ini()), "DoEvents\r\nSleep");
}

}  // namespace
}  // namespace zol
