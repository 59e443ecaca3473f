// Entering the sessions related to a file: those its run's settings list,
// those beside a project, those of a project group.

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/paths.h"
#include "catalogue/run_settings.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_list.h"
#include "catalogue_fixture.h"
#include "run_fixture.h"

namespace zol {
namespace {

using testing::FixtureRun;

class RelatedSessionsTest : public testing::CatalogueTest {
 protected:
  void SetUp() override {
    run_ = testing::MakeSmallRun(dir_.path());
    folder_ = GetPath(run_.vbp);
    run2_ = testing::AnotherRun(run_, "run2.pfl", 2);
    run3_ = testing::AnotherRun(run_, "run3.pfl", 3);
    name_ = ReadProjectTitle(run_.vbp).Name;
  }

  // The run's settings as the logs name them ("zolOptions_Demo.ini") and as
  // the project names them, both beside the project.
  void WriteSettings(const std::string& text) {
    WriteFile(JoinPath(folder_, "zolOptions_Demo.ini"), text);
    WriteFile(ProjectSettingsFile(run_.vbp, name_), text);
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const SessionListRow& row : SessionListRows(*ws_)) names.push_back(row.Columns[0]);
    return names;
  }

  FixtureRun run_;
  std::string folder_, run2_, run3_, name_;
};

// Sessions listed as the instrumenter writes them, on Windows.
const std::string kListed =
    "[Source]\r\nProject=C:\\Dev\\Orders.vbp\r\n"
    "[Profiler Sessions]\r\n"
    "Session C:\\Runs\\run2.pfl=1\r\n"
    "Session C:\\Runs\\run1.pfl=2\r\n"
    "Session C:\\Runs\\RUN2.PFL=3\r\n"
    "Session C:\\Runs\\gone.pfl=4\r\n"
    "\r\n"
    "Session C:\\Runs\\run3.pfl=5\r\n";

TEST(ProfilerSessionPathsTest, TheSectionEndsAtAnEmptyLineOrTheNextSection) {
  EXPECT_EQ(ProfilerSessionPaths(kListed),
            (std::vector<std::string>{"C:\\Runs\\run2.pfl", "C:\\Runs\\run1.pfl",
                                      "C:\\Runs\\RUN2.PFL", "C:\\Runs\\gone.pfl"}));
  EXPECT_EQ(
      ProfilerSessionPaths("[profiler sessions]\nA b c.pfl=x\nnoblank=y\nA =z\n[Next]\nA d=1"),
      std::vector<std::string>{"b c.pfl"})
      << "any case; the path runs from the first blank to the next \"=\"";
  EXPECT_TRUE(ProfilerSessionPaths("[Other]\r\nA b=c\r\n").empty());
}

TEST_F(RelatedSessionsTest, TheSettingsListDecidesWhatEntersAndInWhichOrder) {
  WriteSettings(kListed);
  const CatalogueChange change =
      AddSessionGroup(*ws_, JoinPath(folder_, "zolOptions_Demo.ini"), false);
  EXPECT_EQ(Names(), (std::vector<std::string>{"run1", "run2"}))
      << "run2 is named again further down and takes its last place; gone.pfl and the "
         "line behind the empty one are passed over";
  EXPECT_EQ(change.added, (std::vector<RowKey>{{RowKind::Session, 1}, {RowKind::Session, 2}}));
  EXPECT_TRUE(change.ticks.empty()) << "entered, not loaded";
  EXPECT_TRUE(prompter_->messages.empty());
}

TEST_F(RelatedSessionsTest, ALogListedInItsSettingsBringsItsWholeRun) {
  WriteSettings(kListed);
  AddSessionGroup(*ws_, run_.log, false);
  EXPECT_EQ(Names(), (std::vector<std::string>{"run1", "run2"}));

  // A log that its settings don't list enters alone.
  auto other = NewWorkspace();
  AddSessionGroup(*other, run3_, false);
  ASSERT_EQ(other->nSession, 1);
  EXPECT_EQ(other->Session(1).Name, "run3");
}

TEST_F(RelatedSessionsTest, ASessionFileFindsItselfListedUnderItsLogsName) {
  WriteSettings(kListed);
  {
    auto first = NewWorkspace();
    ASSERT_TRUE(LoadSession(*first, AddSession(*first, run_.log)));  // run1.pfl -> run1.pfd
  }
  AddSessionGroup(*ws_, run_.log.substr(0, run_.log.size() - 1) + "d", false);
  EXPECT_EQ(Names(), (std::vector<std::string>{"run1", "run2"}));
}

TEST_F(RelatedSessionsTest, AProjectBringsTheSessionFilesBesideIt) {
  WriteSettings("[Profiler Sessions]\r\n");
  WriteFile(JoinPath(folder_, "notes.pfx"), "not a session");
  AddSessionGroup(*ws_, run_.vbp, false);
  EXPECT_EQ(Names(), (std::vector<std::string>{"run1", "run2", "run3"}));
  EXPECT_TRUE(prompter_->messages.empty());

  // Settings without the section (the search is case-sensitive): nothing.
  WriteSettings("[profiler sessions]\r\n");
  auto other = NewWorkspace();
  AddSessionGroup(*other, run_.vbp, false);
  EXPECT_EQ(other->nSession, 0);
  EXPECT_TRUE(prompter_->messages.empty());
}

TEST_F(RelatedSessionsTest, NothingToEnterIsToldUnlessQuiet) {
  const std::string noSection = dir_.Put("plain.ini", "[Source]\r\nProject=x\r\n");
  AddSessionGroup(*ws_, noSection, true);
  EXPECT_TRUE(prompter_->messages.empty());
  AddSessionGroup(*ws_, noSection, false);
  AddSessionGroup(*ws_, dir_ / "gone.pfl", false);

  std::string bytes = LoadFile(run_.log);
  bytes.replace(0, 2, "03");
  const std::string newer = dir_.Put("newer.pfl", bytes);
  AddSessionGroup(*ws_, newer, true);
  AddSessionGroup(*ws_, newer, false);

  ASSERT_EQ(prompter_->messages.size(), 3u);
  EXPECT_EQ(prompter_->messages[0].text,
            "Error in loading session or couldn't find any session to load !");
  EXPECT_EQ(prompter_->messages[1].text,
            "Error in loading session or couldn't find any session to load !");
  EXPECT_EQ(prompter_->messages[2].text,
            "The following file is not compatible with this version of the profiler:\n" + newer);
  EXPECT_EQ(ws_->nSession, 0);
}

TEST_F(RelatedSessionsTest, AProjectGroupBringsTheSessionsOfEachProject) {
  WriteSettings("[Profiler Sessions]\r\n");
  const std::string vbg = JoinPath(GetPath(folder_), "Runs.vbg");
  WriteFile(vbg, "VBGROUP 5.0\r\nStartupProject=" + GetFileName(folder_) + "\\" +
                     GetFileName(run_.vbp) + "\r\nProject=Missing\\Missing.vbp\r\n");
  AddSessionFromVBG(*ws_, vbg);
  EXPECT_EQ(Names(), (std::vector<std::string>{"run1", "run2", "run3"}));
  EXPECT_TRUE(prompter_->messages.empty()) << "a group is entered quietly";
  EXPECT_EQ(Setting("HistoryProject1"), vbg);
}

}  // namespace
}  // namespace zol
