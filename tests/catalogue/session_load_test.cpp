// A session loaded on a worker thread: the same session file as a load in
// place, progress readable while it runs, and a stop at any point leaving the
// catalogue, the log and the folder as they were.

#include "catalogue/session_load.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <thread>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "catalogue/session_catalogue.h"
#include "project/project_info.h"
#include "support/fixture_run.h"

namespace zol {
namespace {

namespace fs = std::filesystem;
using testing::FilesIn;
using testing::FixtureRun;
using testing::Pfd;
using testing::ScopedTempDir;

class SessionLoadTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::SimulatedLogShape shape;
    shape.run.seed = 5;
    // Several blocks of the log, so that a stop can come between them.
    shape.run.probes = 160000;
    run_ = testing::MakeFixtureRun(dir_.path(), 3, "run1.pfl", shape);
  }

  std::unique_ptr<Workspace> NewWorkspace() {
    return testing::FreshWorkspace(dir_.path(), prompter_);
  }

  ScopedTempDir dir_;
  FixtureRun run_;
  std::shared_ptr<RecordingPrompter> prompter_ = std::make_shared<RecordingPrompter>();
};

TEST_F(SessionLoadTest, OnAWorkerThreadItWritesTheSameSessionFileAsInPlace) {
  const std::string twin = (fs::path(run_.log).parent_path() / "twin.pfl").string();
  fs::copy_file(run_.log, twin);

  auto inPlace = NewWorkspace();
  const std::int32_t first = AddSession(*inPlace, twin);
  ASSERT_TRUE(LoadSession(*inPlace, first));

  auto ws = NewWorkspace();
  const std::int32_t cs = AddSession(*ws, run_.log);
  SessionLoad load = BeginSessionLoad(*ws, cs);
  LoadProgress progress;
  std::atomic<bool> done = false;
  std::thread worker([&] {
    RunSessionLoad(load, progress, [] { return false; });
    done = true;
  });
  // The window reads the progress while the load runs; nothing of the
  // catalogue changes meanwhile.
  std::set<long> values;
  while (!done) {
    values.insert(progress.Progress().value);
    EXPECT_FALSE(ws->Session(cs).Loaded);
    EXPECT_FALSE(ws->Project(ws->Session(cs).Project).Loaded);
    std::this_thread::yield();
  }
  worker.join();
  EXPECT_EQ(progress.Progress().text.rfind("Reading profile data from run1.pfl (", 0), 0u);
  EXPECT_TRUE(fs::exists(run_.log)) << "the log goes only once the result is in place";
  EXPECT_TRUE(fs::exists(Pfd(run_.log)));

  ASSERT_TRUE(FinishSessionLoad(*ws, std::move(load)));
  EXPECT_TRUE(progress.TakeMessages().empty());
  const Session& s = ws->Session(cs);
  EXPECT_TRUE(s.Loaded);
  EXPECT_EQ(s.Name, "run1");
  EXPECT_EQ(s.SessionFile, Pfd(run_.log));
  EXPECT_TRUE(ws->Project(s.Project).Loaded);
  EXPECT_EQ(ws->Project(s.Project).LinesNumber, run_.project.LinesNumber);
  EXPECT_FALSE(fs::exists(run_.log));
  EXPECT_EQ(LoadFile(Pfd(run_.log)), LoadFile(Pfd(twin)));
  EXPECT_EQ(s.SessionValue.HitLines, inPlace->Session(first).SessionValue.HitLines);
  EXPECT_TRUE(prompter_->messages.empty());
}

// A stop asked for at the n-th chance, for every n until the load runs
// through: each ends as cancelled, silently, with nothing left behind.
TEST_F(SessionLoadTest, AStopAtAnyPointLeavesTheLogTheFolderAndTheCatalogueAsTheyWere) {
  const std::string folder = fs::path(run_.log).parent_path().string();
  const std::set<std::string> before = FilesIn(folder);
  const std::string log = LoadFile(run_.log);
  int stops = 0;
  for (int n = 1;; ++n) {
    auto ws = NewWorkspace();
    const std::int32_t cs = AddSession(*ws, run_.log);
    ASSERT_EQ(cs, 1);
    SessionLoad load = BeginSessionLoad(*ws, cs);
    LoadProgress progress;
    int chances = 0;
    std::thread worker([&] { RunSessionLoad(load, progress, [&] { return ++chances >= n; }); });
    worker.join();
    if (load.result == SessionLoad::Result::Loaded) {
      ASSERT_TRUE(FinishSessionLoad(*ws, std::move(load)));
      break;
    }
    ++stops;
    EXPECT_EQ(load.result, SessionLoad::Result::Failed) << n;
    EXPECT_TRUE(load.message.empty()) << n << ": " << load.message;
    EXPECT_FALSE(FinishSessionLoad(*ws, std::move(load))) << n;
    EXPECT_TRUE(prompter_->messages.empty()) << n;
    EXPECT_TRUE(prompter_->questions.empty()) << n << ": a cancelled load offers no deletion";
    EXPECT_FALSE(ws->Session(cs).Loaded);
    EXPECT_EQ(ws->Session(cs).CodeLineValue.UBound(), 0) << n;
    EXPECT_EQ(ws->Session(cs).SessionFile, run_.log);
    EXPECT_EQ(FilesIn(folder), before) << n << ": a file was left behind";
    EXPECT_EQ(LoadFile(run_.log), log) << n;
    ASSERT_LT(n, 100) << "the load never ran through";
  }
  // At the start, between blocks of the log, after the replay and after the
  // statistics.
  EXPECT_GE(stops, 4);
  EXPECT_FALSE(fs::exists(run_.log));
  EXPECT_TRUE(fs::exists(Pfd(run_.log)));
}

// Something no reader expects, thrown on the worker: it reaches the window's
// thread at the end instead of ending the process, and nothing is left half
// done.
TEST_F(SessionLoadTest, AnUnexpectedFailureOnTheWorkerIsRaisedWhenTheLoadIsFinished) {
  class Breaking : public LoadProgress {
   public:
    void SetProgressText(const std::string&) override { throw std::length_error("broken"); }
  };
  auto ws = NewWorkspace();
  const std::int32_t cs = AddSession(*ws, run_.log);
  SessionLoad load = BeginSessionLoad(*ws, cs);
  Breaking progress;
  std::thread worker([&] { RunSessionLoad(load, progress, [] { return false; }); });
  worker.join();
  ASSERT_TRUE(load.unexpected);
  EXPECT_THROW(FinishSessionLoad(*ws, std::move(load)), std::length_error);
  EXPECT_FALSE(ws->Session(cs).Loaded);
  EXPECT_EQ(ws->Session(cs).SessionFile, run_.log);
  EXPECT_TRUE(fs::exists(run_.log));
  EXPECT_FALSE(fs::exists(Pfd(run_.log)));
}

TEST_F(SessionLoadTest, MessagesOfAWorkerWaitForTheWindowAndQuestionsAreAnsweredNo) {
  LoadProgress progress;
  progress.ShowMessage("one", MessageKind::Information);
  EXPECT_EQ(progress.AskToDelete("Would you like to delete the session file ?"), Answer::No);
  progress.ShowMessage("two", MessageKind::Exclamation);
  const auto messages = progress.TakeMessages();
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_EQ(messages[0].first, "one");
  EXPECT_EQ(messages[1].second, MessageKind::Exclamation);
  EXPECT_TRUE(progress.TakeMessages().empty());
  progress.SetProgressValue(3);
  EXPECT_TRUE(progress.Progress().visible);
  progress.ShowMessage("three", MessageKind::Information);
  progress.Reset();
  EXPECT_FALSE(progress.Progress().visible);
  EXPECT_TRUE(progress.TakeMessages().empty());
}

}  // namespace
}  // namespace zol
