// Entering single files: the rows they get, files entered once whatever their
// spelling, logs that have become session files, and files that are refused.

#include <gtest/gtest.h>

#include <filesystem>

#include "base/files.h"
#include "catalogue/file_history.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_list.h"
#include "catalogue_fixture.h"
#include "run_fixture.h"

namespace zol {
namespace {

namespace fs = std::filesystem;
using testing::FixtureRun;
using testing::Pfd;

std::string Kb(const std::string& file) {
  return std::to_string(fs::file_size(file) / 1024) + " Kb: " + file;
}

class AddSessionTest : public testing::CatalogueTest {
 protected:
  void SetUp() override { run_ = testing::MakeSmallRun(dir_.path()); }

  std::vector<std::string> Keys() const {
    std::vector<std::string> keys;
    for (const SessionListRow& row : SessionListRows(*ws_)) keys.push_back(row.Key);
    return keys;
  }

  FixtureRun run_;
};

TEST_F(AddSessionTest, SessionsAndGroupsHaveTheirRows) {
  const std::string groupFile = dir_ / "Runs.vbg 1.pfd";
  {
    auto scratch = NewWorkspace();
    testing::WriteGroupFile(*scratch, {testing::AnotherRun(run_, "g1.pfl", 5)}, {groupFile});
  }
  ASSERT_EQ(AddSession(*ws_, run_.log), 1);
  EXPECT_EQ(AddSession(*ws_, groupFile), 0) << "a group enters no session";
  ASSERT_EQ(ws_->nSessionGroup, 1);

  const std::vector<SessionListRow> rows = SessionListRows(*ws_);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].Key, "K1");
  const std::string name = ReadProjectTitle(run_.vbp).Name;
  ASSERT_FALSE(name.empty());
  EXPECT_EQ(rows[0].Columns, (std::array<std::string, 5>{"run1", "12/05/2004 14:03:27", "1-" + name,
                                                         "1.0.", Kb(run_.log)}));
  EXPECT_FALSE(rows[0].Checked);
  EXPECT_EQ(rows[1].Key, "G1");
  EXPECT_EQ(rows[1].Columns, (std::array<std::string, 5>{"Runs.vbg 1", "12/05/2004 15:00:00",
                                                         "2-Runs.vbg", "(Group)", Kb(groupFile)}))
      << "the group has a project entry of its own, keyed by its .vbg";
}

TEST_F(AddSessionTest, AFileIsEnteredOnceUnderAnyName) {
  AddSession(*ws_, run_.log);
  AddSession(*ws_, run_.log);
  const std::string other = dir_.path() + "/./" + run_.log.substr(dir_.path().size() + 1);
  AddSessionGroup(*ws_, other, false);
  fs::create_symlink(run_.log, dir_ / "link.pfl");
  AddSession(*ws_, dir_ / "link.pfl");
  EXPECT_EQ(Keys(), std::vector<std::string>{"K1"});

  // Once loaded, the row refers to the .pfd, and the log's name still finds it.
  ASSERT_TRUE(LoadSession(*ws_, 1));
  EXPECT_EQ(AddSession(*ws_, run_.log), 0);
  EXPECT_EQ(Keys(), std::vector<std::string>{"K1"});
  EXPECT_EQ(SessionListRows(*ws_)[0].Columns[4], Kb(Pfd(run_.log)));
}

TEST_F(AddSessionTest, ALogThatIsGoneEntersItsSessionFile) {
  {
    auto first = NewWorkspace();
    ASSERT_TRUE(LoadSession(*first, AddSession(*first, run_.log)));
  }
  ASSERT_FALSE(FileExist(run_.log));
  AddSessionGroup(*ws_, run_.log, false);
  ASSERT_EQ(ws_->nSession, 1);
  EXPECT_EQ(ws_->Session(1).SessionFile, Pfd(run_.log));
  EXPECT_EQ(ws_->Session(1).Name, "run1");
  EXPECT_EQ(ws_->Session(1).ProjectFile, run_.vbp);
  EXPECT_TRUE(prompter_->messages.empty());
}

TEST_F(AddSessionTest, TheRowIsTickedWhenAskedAndLoadsTheSession) {
  const CatalogueChange change = AddSession(*ws_, run_.log, true);
  const RowKey k1{RowKind::Session, 1};
  EXPECT_EQ(change.added, std::vector<RowKey>{k1});
  EXPECT_EQ(change.ticks, (std::vector<RowTick>{{k1, true, true}}));
  EXPECT_TRUE(ws_->Session(1).Loaded);
  EXPECT_TRUE(SessionListRows(*ws_)[0].Checked);
}

TEST_F(AddSessionTest, ASessionWhoseSourcesAreGoneComesBackUnticked) {
  fs::remove(run_.vbp);
  prompter_->answers = {Answer::No};
  const CatalogueChange change = AddSession(*ws_, run_.log, true);
  ASSERT_EQ(change.ticks.size(), 1u);
  EXPECT_TRUE(change.ticks[0].Refused());
  ASSERT_EQ(prompter_->questions.size(), 1u);
  EXPECT_EQ(prompter_->questions[0],
            "Unable to load the session ! The corresponding source code has been removed or "
            "overwritten, or the project you are trying to profile is empty (no procedures) !\n"
            "Would you like to delete the session file ?");
  EXPECT_FALSE(ws_->Session(1).Loaded);
  EXPECT_FALSE(SessionListRows(*ws_)[0].Checked);
  EXPECT_TRUE(FileExist(run_.log)) << "the user said No";
}

TEST_F(AddSessionTest, RefusedFilesGetNoRow) {
  const std::string alien = dir_.Put("alien.pfd", "Version02 and then some");
  EXPECT_EQ(AddSession(*ws_, alien), 0);
  ASSERT_EQ(prompter_->messages.size(), 1u);
  EXPECT_EQ(prompter_->messages[0].text,
            "The following file is not compatible with this version of the profiler:\n" + alien);

  // A session file cut inside its header: the file and the fault are named.
  const std::string cut = dir_.Put("cut.pfd", "Version03" + std::string("\x20\0\0\0", 4) + "12/05");
  EXPECT_EQ(AddSession(*ws_, cut), 0);
  ASSERT_EQ(prompter_->messages.size(), 2u);
  EXPECT_EQ(prompter_->messages[1].text.rfind(
                "The session file:\n" + cut +
                    "\ncan not be read ! It was either corrupted or not generated properly.\n",
                0),
            0u)
      << prompter_->messages[1].text;

  EXPECT_EQ(AddSession(*ws_, dir_.Put("notes.txt", "hello")), 0);
  EXPECT_EQ(ws_->nSession, 2) << "the refused slots stay counted";
  EXPECT_TRUE(SessionListRows(*ws_).empty());
}

TEST_F(AddSessionTest, TheRunsOriginalProjectGoesToTheRecentProjects) {
  // The log names its settings file by a Windows path; it stands beside the log.
  const std::string original = dir_.Put("original/Orders.vbp", "Name=\"Orders\"\r\n");
  dir_.Put(GetPath(run_.log).substr(dir_.path().size() + 1) + "/zolOptions_Demo.ini",
           "[Source]\r\nProject=" + original + "\r\n");
  ASSERT_EQ(AddSession(*ws_, run_.log), 1);
  EXPECT_EQ(ws_->Session(1).OriginalProjectFile, original);
  EXPECT_EQ(Setting("HistoryProject1"), original);
}

TEST(ProjectTitleTest, NameAndVersionComeFromTheirOwnLines) {
  testing::ScopedTempDir dir;
  const std::string vbp =
      dir.Put("P.vbp",
              "Type=Exe\r\nExeName32=\"Other.exe\"\r\nName=\"Billing\"\r\nMajorVer=2\r\n"
              "MinorVer=14\r\nRevisionVer=7\r\n");
  const ProjectTitle title = ReadProjectTitle(vbp);
  EXPECT_EQ(title.Name, "Billing");
  EXPECT_EQ(title.Version, "2.14.7");

  const ProjectTitle missing = ReadProjectTitle(dir / "Gone.vbp");
  EXPECT_EQ(missing.Name, "Gone");
  EXPECT_EQ(missing.Version, "..");
}

}  // namespace
}  // namespace zol
