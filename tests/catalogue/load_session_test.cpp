// Loading single sessions end to end: a generated project, instrumented and
// scanned, a simulated log of a run beside it, and the loader turning the log
// into a .pfd without ever losing the log before the .pfd is whole.

#include "catalogue/session_catalogue.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "project/project_info.h"
#include "session/json_dump.h"
#include "support/fixture_run.h"

namespace zol {
namespace {

namespace fs = std::filesystem;
using testing::FixtureRun;
using testing::Pfd;
using testing::ScopedTempDir;

class LoadSessionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::SimulatedLogShape shape;
    shape.run.seed = 11;
    shape.run.probes = 5000;
    run_ = testing::MakeFixtureRun(dir_.path(), 3, "run1.pfl", shape);
  }

  std::unique_ptr<Workspace> NewWorkspace() {
    return testing::FreshWorkspace(dir_.path(), prompter_);
  }

  std::string Dump(Workspace& ws, std::int32_t cs) {
    return SessionToJson(ws.Project(ws.Session(cs).Project), ws.Session(cs));
  }

  ScopedTempDir dir_;
  FixtureRun run_;
  std::shared_ptr<RecordingPrompter> prompter_ = std::make_shared<RecordingPrompter>();
};

TEST_F(LoadSessionTest, LogBecomesAPfdThatLoadsBackToTheSameValues) {
  auto ws = NewWorkspace();
  const std::int32_t cs = AddSession(*ws, run_.log);
  ASSERT_EQ(cs, 1);
  const Session& s = ws->Session(cs);
  EXPECT_EQ(s.Name, "run1");
  EXPECT_EQ(s.ProjectFile, run_.vbp) << "the Windows path of the header is found beside the log";
  EXPECT_EQ(s.LinesNumber, run_.project.LinesNumber);

  ASSERT_TRUE(LoadSession(*ws, cs))
      << (prompter_->messages.empty() ? "" : prompter_->messages[0].text);
  EXPECT_TRUE(ws->Session(cs).Loaded);
  EXPECT_EQ(ws->Session(cs).SessionFile, Pfd(run_.log));
  EXPECT_FALSE(fs::exists(run_.log));
  EXPECT_TRUE(fs::exists(Pfd(run_.log)));
  EXPECT_GT(ws->Session(cs).SessionValue.HitLines, 0);
  const std::string fromLog = Dump(*ws, cs);

  auto again = NewWorkspace();
  const std::int32_t cs2 = AddSession(*again, run_.log);  // the log is gone: its .pfd enters
  ASSERT_EQ(cs2, 1);
  EXPECT_EQ(again->Session(cs2).SessionFile, Pfd(run_.log));
  ASSERT_TRUE(LoadSession(*again, cs2));
  EXPECT_EQ(Dump(*again, cs2), fromLog);
  EXPECT_TRUE(prompter_->messages.empty());
}

TEST_F(LoadSessionTest, TheSameFileIsEnteredOnce) {
  auto ws = NewWorkspace();
  EXPECT_EQ(AddSession(*ws, run_.log), 1);
  EXPECT_EQ(AddSession(*ws, run_.log), 0);
  EXPECT_EQ(AddSession(*ws, dir_.path() + "/../" + fs::path(dir_.path()).filename().string() +
                                run_.log.substr(dir_.path().size())),
            0)
      << "another name of the same file";
  EXPECT_EQ(ws->nSession, 1);
  EXPECT_EQ(AddSession(*ws, dir_ / "missing.pfl"), 0);
}

TEST_F(LoadSessionTest, ACorruptLogIsRefusedAndKept) {
  const auto size = fs::file_size(run_.log);
  fs::resize_file(run_.log, size / 2);  // cut inside a block
  auto ws = NewWorkspace();
  const std::int32_t cs = AddSession(*ws, run_.log);
  ASSERT_EQ(cs, 1);
  EXPECT_FALSE(LoadSession(*ws, cs));
  ASSERT_EQ(prompter_->messages.size(), 1u);
  EXPECT_EQ(prompter_->messages[0].text.rfind(
                "The session file:\n" + run_.log +
                    "\ncan not be read ! It was either corrupted or not generated properly.",
                0),
            0u)
      << prompter_->messages[0].text;
  const Session& s = ws->Session(cs);
  EXPECT_FALSE(s.Loaded);
  EXPECT_FALSE(s.CodeLineValue.IsDimensioned());
  EXPECT_FALSE(s.ProcedureValue.IsDimensioned());
  EXPECT_EQ(s.nFlowPair, 0);
  EXPECT_EQ(fs::file_size(run_.log), size / 2);
  EXPECT_FALSE(fs::exists(Pfd(run_.log)));
}

TEST_F(LoadSessionTest, ALogStaysWhenItsPfdCannotBeWritten) {
  fs::create_directory(Pfd(run_.log));  // nothing can be renamed over a folder
  auto ws = NewWorkspace();
  const std::int32_t cs = AddSession(*ws, run_.log);
  ASSERT_EQ(cs, 1);
  EXPECT_FALSE(LoadSession(*ws, cs));
  EXPECT_TRUE(FileExist(run_.log));
  EXPECT_FALSE(ws->Session(cs).Loaded);
  EXPECT_EQ(ws->Session(cs).SessionFile, run_.log);
  ASSERT_EQ(prompter_->messages.size(), 1u);
  EXPECT_NE(prompter_->messages[0].text.find(Pfd(run_.log)), std::string::npos);
}

TEST_F(LoadSessionTest, HeaderCountsBeyondAnyTableAreRefused) {
  const std::string lines = "\r\n" + std::to_string(run_.project.LinesNumber) + "\r\n";
  for (const std::string& count :
       std::vector<std::string>{"1e20", "-5", "4294967296", std::string(5000, '9')}) {
    std::string bytes = LoadFile(run_.log);
    bytes.replace(bytes.find(lines), lines.size(), "\r\n" + count + "\r\n");
    WriteFile(dir_ / "huge.pfl", bytes);
    auto ws = NewWorkspace();
    prompter_->messages.clear();
    prompter_->answers = {Answer::No};
    EXPECT_EQ(AddSession(*ws, dir_ / "huge.pfl"), 0) << count.substr(0, 20);
    ASSERT_FALSE(prompter_->messages.empty());
    const std::string& message = prompter_->messages.back().text;
    EXPECT_NE(message.find(" lines and "), std::string::npos) << message;
    EXPECT_LT(message.size(), 400u);
    EXPECT_TRUE(FileExist(dir_ / "huge.pfl"));
  }
}

TEST_F(LoadSessionTest, ASessionWithoutItsProjectIsOfferedForDeletion) {
  const std::string text =
      "Unable to load the session ! The corresponding source code has been removed or "
      "overwritten, or the project you are trying to profile is empty (no procedures) !\n"
      "Would you like to delete the session file ?";

  // Counts that differ from the project's: the log is of another instrumentation.
  {
    std::string bytes = LoadFile(run_.log);
    const std::string lines = "\r\n" + std::to_string(run_.project.LinesNumber) + "\r\n";
    bytes.replace(bytes.find(lines), lines.size(),
                  "\r\n" + std::to_string(run_.project.LinesNumber + 1) + "\r\n");
    WriteFile(dir_ / "other.pfl", bytes);
  }
  auto ws = NewWorkspace();
  const std::int32_t cs = AddSession(*ws, dir_ / "other.pfl");
  prompter_->answers = {Answer::No};
  EXPECT_FALSE(LoadSession(*ws, cs));
  ASSERT_EQ(prompter_->questions.size(), 1u);
  EXPECT_EQ(prompter_->questions[0], text);
  EXPECT_TRUE(FileExist(dir_ / "other.pfl"));

  // The project gone: the user says Yes, and only then is the log deleted.
  fs::remove(run_.vbp);
  auto ws2 = NewWorkspace();
  const std::int32_t cs2 = AddSession(*ws2, run_.log);
  prompter_->answers = {Answer::Yes};
  EXPECT_FALSE(LoadSession(*ws2, cs2));
  EXPECT_EQ(prompter_->questions.back(), text);
  EXPECT_FALSE(ws2->Session(cs2).Loaded);
  EXPECT_FALSE(FileExist(run_.log));
}

TEST_F(LoadSessionTest, ALogWhoseGroupLineIsNotAGroupIsRefusedAtOnce) {
  std::string bytes = LoadFile(run_.log);
  const auto firstEnd = bytes.find("\r\n") + 2;
  bytes.insert(firstEnd, "C:\\Runs\\notagroup.txt");  // line 2 was empty
  WriteFile(dir_ / "bad.pfl", bytes);
  auto ws = NewWorkspace();
  prompter_->answers = {Answer::No};
  EXPECT_EQ(AddSession(*ws, dir_ / "bad.pfl"), 0);
  ASSERT_EQ(prompter_->questions.size(), 1u);
  EXPECT_EQ(prompter_->questions[0].rfind("The session file:\n" + (dir_ / "bad.pfl") +
                                              "\ncan not be read ! It was either corrupted or "
                                              "not generated properly.\nPlease re-instrument",
                                          0),
            0u);
  EXPECT_EQ(ws->nSession, 1) << "the slot stays counted, blank";
  EXPECT_TRUE(ws->Session(1).SessionFile.empty());
  EXPECT_TRUE(FileExist(dir_ / "bad.pfl"));
}

}  // namespace
}  // namespace zol
