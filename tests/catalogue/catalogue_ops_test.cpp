// Taking sessions out, starting over, and taking over the names that another
// program of the suite leaves in the settings.

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/ini_file.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_list.h"
#include "catalogue/session_load.h"
#include "catalogue_fixture.h"
#include "run_fixture.h"

namespace zol {
namespace {

using testing::FixtureRun;

class CatalogueOpsTest : public testing::CatalogueTest {
 protected:
  void SetUp() override {
    run_ = testing::MakeSmallRun(dir_.path());
    run2_ = testing::AnotherRun(run_, "run2.pfl", 2);
  }

  std::vector<std::string> Keys() const {
    std::vector<std::string> keys;
    for (const SessionListRow& row : SessionListRows(*ws_)) keys.push_back(row.Key);
    return keys;
  }

  FixtureRun run_;
  std::string run2_;
};

TEST_F(CatalogueOpsTest, RemovingASessionKeepsTheOtherIndicesAndItsFile) {
  AddSession(*ws_, run_.log, true);
  AddSession(*ws_, run2_, true);

  const CatalogueChange removed = RemoveSession(*ws_, 1);
  EXPECT_EQ(removed.sessionsTakenOut, std::vector<std::int32_t>{1}) << "its branch goes";
  EXPECT_TRUE(removed.ClearsViewsOf(1)) << "a window showing it clears its views";
  EXPECT_FALSE(removed.ClearsViewsOf(2)) << "one showing another keeps them";
  EXPECT_EQ(Keys(), std::vector<std::string>{"K2"});
  EXPECT_EQ(ws_->nSession, 2);
  EXPECT_EQ(ws_->Session(2).Name, "run2");
  EXPECT_TRUE(ws_->Session(1).SessionFile.empty());
  EXPECT_TRUE(FileExist(ws_->Session(2).SessionFile));

  ws_->Session(2).Selected = false;
  const std::string file = ws_->Session(2).SessionFile;
  EXPECT_TRUE(DestroySession(*ws_, 2).Empty())
      << "an unticked session leaves no branch to take down";
  EXPECT_FALSE(FileExist(file));
  EXPECT_TRUE(Keys().empty());

  EXPECT_EQ(AddSession(*ws_, run_.log), 3) << "slots aren't reused";
  EXPECT_TRUE(prompter_->messages.empty());
}

TEST_F(CatalogueOpsTest, ATickLoadsOnceAndAnUntickKeepsTheValues) {
  AddSession(*ws_, run_.log);
  const RowKey k1{RowKind::Session, 1};
  ws_->Session(0).Selected = ws_->Session(0).Loaded = true;
  EXPECT_EQ(TickRow(*ws_, k1, true), (RowTick{k1, true, true}));
  EXPECT_TRUE(ws_->Session(1).Selected && ws_->Session(1).Loaded);
  EXPECT_FALSE(ws_->Session(0).Loaded) << "the merged data of the former ticks is stale";

  EXPECT_EQ(TickRow(*ws_, k1, false), (RowTick{k1, false, false}));
  EXPECT_FALSE(ws_->Session(1).Selected);
  EXPECT_TRUE(ws_->Session(1).Loaded) << "ticking again costs nothing";
  EXPECT_FALSE(TickRow(*ws_, {RowKind::Session, 9}, true));
  EXPECT_FALSE(TickRow(*ws_, {RowKind::Group, 1}, true));
}

TEST_F(CatalogueOpsTest, ALoadEndedElsewhereTicksTheRowOnlyWhenItIsIn) {
  AddSession(*ws_, run_.log);
  const RowKey k1{RowKind::Session, 1};
  ws_->Session(0).Selected = ws_->Session(0).Loaded = true;

  SessionLoad stopped = BeginSessionLoad(*ws_, 1);
  RunSessionLoad(stopped, *prompter_, [] { return true; });
  const bool stoppedLoaded = FinishSessionLoad(*ws_, std::move(stopped));
  EXPECT_EQ(TickRowAfterLoad(*ws_, k1, stoppedLoaded), (RowTick{k1, true, false}));
  EXPECT_FALSE(ws_->Session(1).Selected);
  EXPECT_FALSE(ws_->Session(0).Loaded) << "the merged data of the former ticks is stale";
  EXPECT_TRUE(FileExist(run_.log)) << "a stopped load keeps the log";

  SessionLoad load = BeginSessionLoad(*ws_, 1);
  RunSessionLoad(load, *prompter_, [] { return false; });
  const bool loaded = FinishSessionLoad(*ws_, std::move(load));
  EXPECT_EQ(TickRowAfterLoad(*ws_, k1, loaded), (RowTick{k1, true, true}));
  EXPECT_TRUE(ws_->Session(1).Selected && ws_->Session(1).Loaded);
}

TEST_F(CatalogueOpsTest, ABulkChangeKeepsItsPartsInOrderAndTheFurthestReset) {
  AddSession(*ws_, run_.log, true);
  AddSession(*ws_, run2_, true);
  CatalogueChange change = RemoveSession(*ws_, 2);
  change.Append(RemoveSession(*ws_, 1));
  EXPECT_EQ(change.sessionsTakenOut, (std::vector<std::int32_t>{2, 1}));
  change.Append(ClearSessions(*ws_));
  CatalogueChange filtered;
  filtered.viewReset = ViewReset::ValuesChanged;
  change.Append(filtered);
  EXPECT_EQ(change.viewReset, ViewReset::SessionsGone);
  filtered.Append(change);
  EXPECT_EQ(filtered.viewReset, ViewReset::SessionsGone);
}

TEST_F(CatalogueOpsTest, ClearingStartsTheTablesOver) {
  AddSession(*ws_, run_.log);
  AddSession(*ws_, run2_);
  ws_->fOnlyGroups = true;
  const CatalogueChange cleared = ClearSessions(*ws_);
  EXPECT_EQ(cleared.viewReset, ViewReset::SessionsGone);
  EXPECT_TRUE(cleared.ClearsViewsOf(0));
  EXPECT_EQ(ws_->nSession, 0);
  EXPECT_EQ(ws_->nProject, 0);
  EXPECT_FALSE(ws_->fOnlyGroups);
  EXPECT_EQ(AddSession(*ws_, run2_), 1);
  EXPECT_EQ(ws_->Session(1).Project, 1);
}

TEST_F(CatalogueOpsTest, NamesLeftInTheSettingsAreTakenOnceAndTicked) {
  SetSetting("Session0", run_.log);
  SetSetting("Session1", run2_);
  const std::vector<std::string> names = TakeLeftSessionNames(*ws_);
  EXPECT_EQ(names, (std::vector<std::string>{run_.log, run2_}));
  const CatalogueChange change = EnterLeftSessions(*ws_, names);
  const RowKey k1{RowKind::Session, 1}, k2{RowKind::Session, 2};
  EXPECT_EQ(change.added, (std::vector<RowKey>{k1, k2}));
  EXPECT_EQ(change.ticks, (std::vector<RowTick>{{k1, true, true}, {k2, true, true}}));
  EXPECT_TRUE(ws_->Session(1).Loaded && ws_->Session(2).Loaded);
  EXPECT_EQ(Setting("Session0"), "");
  EXPECT_EQ(Setting("Session1"), "");
  EXPECT_EQ(Setting("HistorySession1"), ws_->Session(2).SessionFile) << "the .pfd of the log";
  EXPECT_EQ(Setting("HistorySession2"), ws_->Session(1).SessionFile);

  EXPECT_TRUE(TakeLeftSessionNames(*ws_).empty()) << "the keys are empty now";
}

TEST_F(CatalogueOpsTest, TheWalkEndsAtTheFirstNumberTheSettingsDontHold) {
  SetSetting("Session1", run2_);
  EXPECT_TRUE(TakeLeftSessionNames(*ws_).empty());
  EXPECT_EQ(Setting("Session1"), run2_) << "left for a writer that begins at 0";
  EXPECT_EQ(ws_->nSession, 0);

  SetSetting("Session0", "");  // present but empty: the walk goes on
  EXPECT_EQ(TakeLeftSessionNames(*ws_), std::vector<std::string>{run2_});
}

}  // namespace
}  // namespace zol
