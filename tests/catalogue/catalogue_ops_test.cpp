// Taking sessions out, starting over, and taking over the names that another
// program of the suite leaves in the settings.

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/ini_file.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_list.h"
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
  AddSession(*ws_, pane_, run_.log, true);
  AddSession(*ws_, pane_, run2_, true);
  pane_.shown = 1;
  pane_.calls.clear();

  RemoveSession(*ws_, pane_, 1);
  EXPECT_EQ(pane_.calls, (std::vector<std::string>{"reset gone", "unselect K1"}))
      << "the current session clears the views";
  EXPECT_EQ(Keys(), std::vector<std::string>{"K2"});
  EXPECT_EQ(ws_->nSession, 2);
  EXPECT_EQ(ws_->Session(2).Name, "run2");
  EXPECT_TRUE(ws_->Session(1).SessionFile.empty());
  EXPECT_TRUE(FileExist(ws_->Session(2).SessionFile));

  pane_.calls.clear();
  ws_->Session(2).Selected = false;
  const std::string file = ws_->Session(2).SessionFile;
  DestroySession(*ws_, pane_, 2);
  EXPECT_TRUE(pane_.calls.empty()) << "an unticked session leaves no branch to take down";
  EXPECT_FALSE(FileExist(file));
  EXPECT_TRUE(Keys().empty());

  EXPECT_EQ(AddSession(*ws_, run_.log), 3) << "slots aren't reused";
  EXPECT_TRUE(prompter_->messages.empty());
}

TEST_F(CatalogueOpsTest, ClearingStartsTheTablesOver) {
  AddSession(*ws_, run_.log);
  AddSession(*ws_, run2_);
  ws_->fOnlyGroups = true;
  ClearSessions(*ws_, pane_);
  EXPECT_EQ(pane_.calls, std::vector<std::string>{"reset gone"});
  EXPECT_EQ(ws_->nSession, 0);
  EXPECT_EQ(ws_->nProject, 0);
  EXPECT_FALSE(ws_->fOnlyGroups);
  EXPECT_EQ(AddSession(*ws_, run2_), 1);
  EXPECT_EQ(ws_->Session(1).Project, 1);
}

TEST_F(CatalogueOpsTest, NamesLeftInTheSettingsAreTakenOnceAndTicked) {
  SetSetting("Session0", run_.log);
  SetSetting("Session1", run2_);
  EXPECT_EQ(AutoLoadSessions(*ws_, pane_), 2);
  EXPECT_EQ(pane_.calls, (std::vector<std::string>{"front", "check K1", "check K2", "refresh"}));
  EXPECT_TRUE(ws_->Session(1).Loaded && ws_->Session(2).Loaded);
  EXPECT_EQ(Setting("Session0"), "");
  EXPECT_EQ(Setting("Session1"), "");
  EXPECT_EQ(Setting("HistorySession1"), ws_->Session(2).SessionFile) << "the .pfd of the log";
  EXPECT_EQ(Setting("HistorySession2"), ws_->Session(1).SessionFile);

  pane_.calls.clear();
  EXPECT_EQ(AutoLoadSessions(*ws_, pane_), 0) << "the keys are empty now";
  EXPECT_TRUE(pane_.calls.empty());
}

TEST_F(CatalogueOpsTest, TheWalkEndsAtTheFirstNumberTheSettingsDontHold) {
  SetSetting("Session1", run2_);
  EXPECT_EQ(AutoLoadSessions(*ws_, pane_), 0);
  EXPECT_EQ(Setting("Session1"), run2_) << "left for a writer that begins at 0";
  EXPECT_EQ(ws_->nSession, 0);

  SetSetting("Session0", "");  // present but empty: the walk goes on
  EXPECT_EQ(AutoLoadSessions(*ws_, pane_), 1);
  EXPECT_EQ(ws_->Session(1).Name, "run2");
}

}  // namespace
}  // namespace zol
