// Groups of sessions: entered from their group file, loaded with their
// members and merged session, and taken out with them.

#include <gtest/gtest.h>

#include <filesystem>

#include "base/files.h"
#include "catalogue/group_load.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_list.h"
#include "catalogue_fixture.h"
#include "run_fixture.h"

namespace zol {
namespace {

namespace fs = std::filesystem;
using testing::FixtureRun;

class GroupLoadTest : public testing::CatalogueTest {
 protected:
  void SetUp() override {
    run_ = testing::MakeSmallRun(dir_.path());
    original_ = dir_.Put("original/Runs.vbg", "VBGROUP 5.0\r\n");
    testing::GroupFileSpec spec{groupFile_};
    spec.IniFile = dir_.Put("runs/zolRuns.vbg.ini", "[Source]\r\nProject=" + original_ + "\r\n");
    auto scratch = NewWorkspace();
    testing::WriteGroupFile(*scratch, {run_.log, testing::AnotherRun(run_, "run2.pfl", 2)}, spec);
  }

  FixtureRun run_;
  std::string original_;
  std::string groupFile_ = dir_ / "runs/Runs.vbg 1.pfd";
};

TEST_F(GroupLoadTest, TickingAGroupLoadsItsMembersBehindOneRow) {
  const CatalogueChange added = AddSession(*ws_, groupFile_, true);
  const RowKey g1{RowKind::Group, 1};
  EXPECT_EQ(added.added, std::vector<RowKey>{g1});
  EXPECT_EQ(added.ticks, (std::vector<RowTick>{{g1, true, true}}));
  const SessionGroup& g = ws_->SessionGroup(1);
  ASSERT_TRUE(g.Loaded) << (prompter_->messages.empty() ? "" : prompter_->messages[0].text);
  ASSERT_EQ(g.nSession, 2);
  for (std::int32_t i = 1; i <= g.nSession; ++i) {
    const Session& m = ws_->Session(g.Sessions(i));
    EXPECT_TRUE(m.Loaded && m.Invisible && m.Selected);
    EXPECT_EQ(m.Group, 1);
    EXPECT_EQ(m.ProjectFile, run_.vbp) << "found beside the group file's project";
    EXPECT_TRUE(ws_->Project(m.Project).Loaded) << "the member's project is scanned";
    EXPECT_EQ(ws_->Project(m.Project).LinesNumber, m.LinesNumber);
  }
  EXPECT_EQ(ws_->Session(g.Sessions(1)).Project, ws_->Session(g.Sessions(2)).Project);
  ASSERT_NE(g.GroupMergedSession, 0);
  EXPECT_TRUE(ws_->Session(g.GroupMergedSession).Invisible);
  EXPECT_TRUE(ws_->Session(g.GroupMergedSession).Loaded);

  const std::vector<SessionListRow> rows = SessionListRows(*ws_);
  ASSERT_EQ(rows.size(), 1u) << "members and the merged session have no rows";
  EXPECT_EQ(rows[0].Key, "G1");
  EXPECT_TRUE(rows[0].Checked);
  EXPECT_EQ(Setting("HistoryProject1"), original_);

  const std::int32_t merged = g.GroupMergedSession;
  const std::int32_t first = g.Sessions(1);
  const CatalogueChange destroyed = DestroySessionGroup(*ws_, 1);
  EXPECT_FALSE(FileExist(groupFile_));
  EXPECT_EQ(destroyed.sessionsTakenOut, (std::vector<std::int32_t>{1, 2}))
      << "the ticked members leave the tree; the merged session never was in it";
  EXPECT_EQ(destroyed.groupsTakenOut, std::vector<std::int32_t>{1});
  EXPECT_FALSE(destroyed.viewReset);
  EXPECT_TRUE(ws_->Session(first).SessionFile.empty());
  EXPECT_FALSE(ws_->Session(merged).Loaded);
  EXPECT_TRUE(ws_->SessionGroup(1).SessionFile.empty());
  EXPECT_TRUE(SessionListRows(*ws_).empty());
}

TEST_F(GroupLoadTest, ADamagedGroupIsReportedAndStaysUnloaded) {
  fs::resize_file(groupFile_, fs::file_size(groupFile_) - 100);
  AddSession(*ws_, groupFile_, true);
  ASSERT_EQ(ws_->nSessionGroup, 1) << "the header is whole";
  EXPECT_FALSE(ws_->SessionGroup(1).Loaded);
  EXPECT_EQ(ws_->SessionGroup(1).nSession, 0);
  ASSERT_EQ(prompter_->messages.size(), 1u);
  EXPECT_EQ(prompter_->messages[0].text.rfind("The session file:\n" + groupFile_ +
                                                  "\ncan not be read ! It was either corrupted "
                                                  "or not generated properly.\n",
                                              0),
            0u)
      << prompter_->messages[0].text;
  EXPECT_FALSE(SessionListRows(*ws_)[0].Checked);
}

TEST_F(GroupLoadTest, AGroupLoadedInItsOwnWorkspaceComesInOnlyWhenFinished) {
  AddSession(*ws_, groupFile_);
  AddSession(*ws_, run_.log);  // a project entry already in the catalogue
  const std::int32_t projects = ws_->nProject;

  // Stopped: the group stays as it was, without a word, its file untouched.
  const std::string bytes = LoadFile(groupFile_);
  GroupLoad stopped = BeginGroupLoad(*ws_, 1);
  RunGroupLoad(stopped, *prompter_, [] { return true; });
  EXPECT_FALSE(ws_->SessionGroup(1).Loaded) << "nothing changes before the last step";
  EXPECT_FALSE(FinishGroupLoad(*ws_, std::move(stopped)));
  EXPECT_FALSE(ws_->SessionGroup(1).Loaded);
  EXPECT_EQ(ws_->SessionGroup(1).nSession, 0);
  for (std::int32_t cs = 2; cs <= ws_->nSession; ++cs) {
    EXPECT_TRUE(ws_->Session(cs).SessionFile.empty()) << "member " << cs << " is left behind";
  }
  EXPECT_TRUE(prompter_->messages.empty()) << "a stop is not a fault";
  EXPECT_EQ(LoadFile(groupFile_), bytes);

  // Run to its end: the members share the project entry the catalogue had,
  // scanned by the load, and the group's merged session is made.
  GroupLoad load = BeginGroupLoad(*ws_, 1);
  RunGroupLoad(load, *prompter_, [] { return false; });
  EXPECT_FALSE(ws_->Project(ws_->Session(1).Project).Loaded);
  ASSERT_TRUE(FinishGroupLoad(*ws_, std::move(load)));
  const SessionGroup& g = ws_->SessionGroup(1);
  ASSERT_EQ(g.nSession, 2);
  EXPECT_EQ(ws_->nProject, projects + 1) << "the merged session's project is the one new entry";
  for (std::int32_t i = 1; i <= g.nSession; ++i) {
    EXPECT_EQ(ws_->Session(g.Sessions(i)).Project, ws_->Session(1).Project);
  }
  EXPECT_TRUE(ws_->Project(ws_->Session(1).Project).Loaded);
  EXPECT_TRUE(ws_->Session(g.GroupMergedSession).Loaded);
  EXPECT_EQ(TickRowAfterLoad(*ws_, {RowKind::Group, 1}, true),
            (RowTick{{RowKind::Group, 1}, true, true}));
  EXPECT_TRUE(ws_->Session(g.Sessions(2)).Selected) << "a group is ticked with its members";
  EXPECT_EQ(Setting("HistoryProject1"), original_);
}

}  // namespace
}  // namespace zol
