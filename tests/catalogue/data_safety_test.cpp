// A log is the only record of its run: it is deleted only when its session
// file is whole and was computed from every module of the project, and never
// because a question was answered with a blanket Yes.

#include <gtest/gtest.h>

#include <filesystem>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "catalogue/session_catalogue.h"
#include "project/project_info.h"
#include "support/fixture_run.h"

namespace zol {
namespace {

namespace fs = std::filesystem;

class LogKeptTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::SimulatedLogShape shape;
    shape.run.seed = 5;
    shape.run.probes = 3000;
    run_ = testing::MakeFixtureRun(dir_.path(), 3, "run.pfl", shape);
    ASSERT_GE(run_.project.ModulesNumber, 2);
  }

  // The file of module `m` as the project names it, and its path on disk.
  std::string ModuleName(std::int32_t m) const { return run_.project.Module(m).FileName; }
  std::string ModulePath(std::int32_t m) const {
    return (fs::path(run_.vbp).parent_path() / ModuleName(m)).string();
  }

  // Loads the log in a fresh workspace; the messages it gave in `messages`.
  bool Load() {
    auto prompter = std::make_shared<RecordingPrompter>();
    Workspace ws(prompter);
    ws.appFolder = dir_ / "app";
    ResetRtfPath(ws);
    const std::int32_t cs = AddSession(ws, run_.log);
    EXPECT_EQ(cs, 1);
    const bool loaded = LoadSession(ws, cs);
    messages_.clear();
    for (const auto& m : prompter->messages) messages_ += m.text + "\n";
    for (const auto& q : prompter->questions) messages_ += q + "\n";
    return loaded;
  }

  void ExpectLogKept() {
    EXPECT_TRUE(FileExist(run_.log));
    EXPECT_FALSE(fs::exists(run_.log.substr(0, run_.log.size() - 1) + "d"));
  }

  testing::ScopedTempDir dir_;
  testing::FixtureRun run_;
  std::string messages_;
};

TEST_F(LogKeptTest, AMissingModuleFileKeepsTheLogAndIsNamed) {
  fs::remove(ModulePath(2));
  EXPECT_FALSE(Load());
  ExpectLogKept();
  EXPECT_NE(messages_.find(ModuleName(2) + ": missing"), std::string::npos) << messages_;
  EXPECT_EQ(messages_.find("delete"), std::string::npos) << "no deletion is offered";
}

TEST_F(LogKeptTest, AFolderInPlaceOfAModuleKeepsTheLog) {
  fs::remove(ModulePath(1));
  fs::create_directory(ModulePath(1));
  EXPECT_FALSE(Load());
  ExpectLogKept();
  EXPECT_NE(messages_.find(ModuleName(1) + ": a folder"), std::string::npos) << messages_;
}

TEST_F(LogKeptTest, AModuleReplacedByAStubKeepsTheLogBesideItsSession) {
  // A module of the same name without its probes: the lines the run hit in it
  // belong to no procedure any more. The session is shown without them, as
  // one with IDs the instrumenter left unused is, but the log stays.
  const std::string text = LoadFile(ModulePath(2));
  const auto name = text.find("Attribute VB_Name");
  ASSERT_NE(name, std::string::npos);
  WriteFile(ModulePath(2), text.substr(name, text.find('\n', name) + 1 - name));
  EXPECT_TRUE(Load()) << messages_;
  EXPECT_TRUE(FileExist(run_.log));
  EXPECT_NE(messages_.find("that no module of the project"), std::string::npos) << messages_;
}

TEST_F(LogKeptTest, TheLogGoesWhenEveryModuleWasRead) {
  EXPECT_TRUE(Load()) << messages_;
  EXPECT_FALSE(FileExist(run_.log));
}

TEST(DeleteQuestion, IsAskedApartFromOtherQuestions) {
  // A prompter that says Yes to everything else still has to be asked apart,
  // so that a command's --yes can't answer it.
  struct YesButKeep : SilentPrompter {
    Answer AskToDelete(const std::string&) override {
      ++asked;
      return Answer::No;
    }
    int asked = 0;
  };
  testing::ScopedTempDir dir;
  const std::string pfd = dir.Put("lost.pfd", "not a session file at all");
  auto prompter = std::make_shared<YesButKeep>();
  Workspace ws(prompter);
  ws.appFolder = dir / "app";
  const std::string log = dir.Put("cut.pfl", "ZOLMARK");
  AddSession(ws, log);  // a header that can't be read: its deletion is offered
  EXPECT_EQ(prompter->asked, 1);
  EXPECT_TRUE(FileExist(log));
  AddSession(ws, pfd);
  EXPECT_TRUE(FileExist(pfd));
}

}  // namespace
}  // namespace zol
