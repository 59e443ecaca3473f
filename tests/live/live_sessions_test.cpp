// The end of a live run on disk: generated projects, a store played through
// the handlers, and the sessions, files, settings entries and group that the
// end of the run makes of it; recordings of such runs computed again.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "base/app_paths.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"
#include "live/compute_thread.h"
#include "live/live_run_fixture.h"
#include "live/recording.h"
#include "profile/session_files.h"
#include "project/project_info.h"
#include "session/json_dump.h"

namespace zol {
namespace {

namespace fs = std::filesystem;
using testing::LiveThreadPlan;
using testing::ScopedTempDir;
using testing::ScriptedClock;

class LiveSessionsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    a_ = testing::MakeInstrumentedProject(dir_ / "pa", 3);
    b_ = testing::MakeInstrumentedProject(dir_ / "pb", 5);
    vbg_ = dir_ / "Suite.vbg";
    WriteFile(vbg_, "VBGROUP 5.0\r\nStartupProject=" + a_.vbp + "\r\nProject=" + b_.vbp + "\r\n");
  }

  std::unique_ptr<Workspace> NewWorkspace() {
    auto ws = std::make_unique<Workspace>(prompter_);
    ws->appFolder = dir_ / "app";
    ResetRtfPath(*ws);
    return ws;
  }

  std::vector<LiveThreadPlan> GroupPlans() {
    return {
        {&a_, "Main", vbg_, 1, 400}, {&a_, "Worker", vbg_, 2, 300}, {&b_, "Billing", vbg_, 3, 300}};
  }

  std::string Dump(Workspace& ws, std::int32_t cs) {
    return SessionToJson(ws.Project(ws.Session(cs).Project), ws.Session(cs));
  }

  ScopedTempDir dir_;
  testing::FixtureRun a_;
  testing::FixtureRun b_;
  std::string vbg_;
  std::shared_ptr<RecordingPrompter> prompter_ = std::make_shared<RecordingPrompter>();
  ScriptedClock clock_{1'000'000'000'000'000, 37};
};

TEST_F(LiveSessionsTest, AGroupRunMakesASessionPerThreadAndOneMemberPerProject) {
  auto ws = NewWorkspace();
  EventStore store(clock_, 3);
  testing::PlayRun(store, GroupPlans());
  ASSERT_TRUE(store.resultsDue);
  LiveRunView view;
  const LiveRunOutcome outcome = ComputeThread(*ws, store, view);
  for (const auto& m : prompter_->messages) ADD_FAILURE() << m.text;
  EXPECT_TRUE(outcome.faults.empty());

  const std::string pa = fs::path(a_.vbp).parent_path().string();
  const std::string pb = fs::path(b_.vbp).parent_path().string();
  ASSERT_EQ(outcome.filesWritten,
            (std::vector<std::string>{pa + "/Main 1.pfd", pa + "/Worker 1.pfd",
                                      pb + "/Billing 1.pfd", vbg_ + " 1.pfd"}));
  for (const std::string& f : outcome.filesWritten) EXPECT_TRUE(fs::exists(f)) << f;
  EXPECT_EQ(outcome.sessions, (std::vector<std::int32_t>{1, 2, 3}));
  ASSERT_EQ(outcome.group, 1);

  const Session& main = ws->Session(1);
  EXPECT_EQ(main.Name, "Main 1");
  EXPECT_TRUE(main.Loaded);
  EXPECT_FALSE(main.Selected);  // the group is ticked, not its threads
  EXPECT_GT(main.SessionValue.HitLines, 0);
  EXPECT_EQ(main.ProjectFile, a_.vbp);

  const SessionGroup& g = ws->SessionGroup(1);
  EXPECT_EQ(g.Name, "Suite.vbg 1");
  EXPECT_EQ(g.IniFile, dir_ / "zolSuite.vbg.ini");
  EXPECT_TRUE(g.Selected);
  ASSERT_EQ(g.nSession, 2);
  const Session& merged = ws->Session(g.Sessions(1));
  EXPECT_EQ(merged.Name, "Main");
  EXPECT_TRUE(merged.Invisible);
  EXPECT_EQ(merged.Group, 1);
  // The first member sums the two threads of project A, line by line.
  for (std::int32_t l = 1; l <= merged.CodeLineValue.UBound(); ++l) {
    EXPECT_EQ(merged.CodeLineValue(l).Hits,
              ws->Session(1).CodeLineValue(l).Hits + ws->Session(2).CodeLineValue(l).Hits);
  }
  const Session& copy = ws->Session(g.Sessions(2));
  EXPECT_EQ(copy.Name, "Billing");
  EXPECT_EQ(copy.CodeLineValue, ws->Session(3).CodeLineValue);
  EXPECT_NE(g.GroupMergedSession, 0);

  // Entries of the run's settings files, and back to idle.
  EXPECT_EQ(VBGetPrivateProfileString("Profiler Sessions", "1.2.3 " + main.DateTime, "",
                                      testing::IniOf(b_)),
            pb + "/Billing 1.pfd");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler Sessions", g.DateTime, "", g.IniFile),
            vbg_ + " 1.pfd");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "ID", "", GetIniFile(ws->appFolder)), "1");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "HistorySession1", "", GetIniFile(ws->appFolder)),
            vbg_ + " 1.pfd");
  EXPECT_EQ(store.nThread, 0);
  EXPECT_EQ(store.ProfileIndex, 0);

  // The saved session reads back to what was computed.
  auto again = NewWorkspace();
  again->nSession = 1;
  again->SessionSlot(1);
  ASSERT_TRUE(LoadSessionInfo(*again, 1, pa + "/Worker 1.pfd"));
  EXPECT_EQ(again->Session(1).CodeLineValue, ws->Session(2).CodeLineValue);
  EXPECT_EQ(again->Session(1).ProcedureValue, ws->Session(2).ProcedureValue);

  // A second run of the same threads takes the next free names.
  EventStore second(clock_, 3);
  testing::PlayRun(second, GroupPlans());
  const LiveRunOutcome next = ComputeThread(*ws, second, view);
  EXPECT_EQ(next.filesWritten[0], pa + "/Main 2.pfd");
  EXPECT_EQ(next.filesWritten[3], vbg_ + " 2.pfd");
}

TEST_F(LiveSessionsTest, AThreadWhoseSourceDoesntMatchIsToldAndTheOthersGoOn) {
  auto ws = NewWorkspace();
  EventStore store(clock_, 3);
  std::vector<LiveThreadPlan> plans = GroupPlans();
  plans.resize(2);
  plans[1].linesNumber = a_.project.LinesNumber + 1;  // another build of the project
  testing::PlayRun(store, plans);
  LiveRunView view;
  const LiveRunOutcome outcome = ComputeThread(*ws, store, view);
  ASSERT_GE(prompter_->messages.size(), 1u);
  EXPECT_EQ(prompter_->messages[0].text,
            "Unable to compute timings for Worker !\n"
            "The corresponding source code has been removed or overwritten, or the project you "
            "are trying to profile is empty (no procedures) !\n"
            "Source: " +
                a_.vbp);
  // Its events address the empty slot 0 and are reported as such.
  EXPECT_EQ(outcome.sessions, (std::vector<std::int32_t>{1}));
  EXPECT_EQ(outcome.group, 0);
  EXPECT_EQ(ws->nSession, 1);
  EXPECT_EQ(ws->nSessionGroup, 0);
  EXPECT_TRUE(ws->Session(1).Selected);  // no group: the thread's own row is ticked
}

TEST_F(LiveSessionsTest, OneThreadOrDifferentGroupsMakeNoGroup) {
  auto ws = NewWorkspace();
  std::vector<LiveThreadPlan> plans = GroupPlans();
  plans[2].vbg = dir_ / "Other.vbg";  // never written: no such file either
  EventStore store(clock_, 3);
  testing::PlayRun(store, plans);
  LiveRunView view;
  EXPECT_EQ(ComputeThread(*ws, store, view).group, 0);
  EventStore alone(clock_, 3);
  testing::PlayRun(alone, {GroupPlans()[0]});
  const LiveRunOutcome outcome = ComputeThread(*ws, alone, view);
  EXPECT_EQ(outcome.group, 0);
  EXPECT_EQ(outcome.filesWritten.size(), 1u);
  EXPECT_EQ(ws->nSessionGroup, 0);
  EXPECT_TRUE(ws->Session(4).Selected);
}

TEST_F(LiveSessionsTest, ARecordingComputesAgainToTheSameSessions) {
  EventStore store(clock_, 3);
  testing::PlayRun(store, GroupPlans());
  const std::string zle = dir_ / "run.zle";
  SaveRecording(store, zle);
  EventStore loaded(clock_, 0);
  LoadRecording(loaded, zle);
  EXPECT_EQ(loaded.nThread, 3);
  EXPECT_EQ(loaded.ProfileIndex, store.ProfileIndex);
  EXPECT_EQ(loaded.ProfileEvent.UBound(), store.ProfileEvent.UBound());
  EXPECT_EQ(loaded.ProfileEvent, store.ProfileEvent);
  EXPECT_EQ(loaded.Thread, store.Thread);
  EXPECT_EQ(loaded.QueryPerformanceCounterOverhead, 3);
  EXPECT_EQ(RecordingImage(loaded), RecordingImage(store));

  LiveRunView view;
  auto live = NewWorkspace();
  ComputeThread(*live, store, view);
  auto replayed = NewWorkspace();
  ComputeThread(*replayed, loaded, view);
  for (std::int32_t cs = 1; cs <= live->nSession; ++cs) {
    EXPECT_EQ(live->Session(cs).CodeLineValue, replayed->Session(cs).CodeLineValue) << cs;
    EXPECT_EQ(live->Session(cs).ProcedureValue, replayed->Session(cs).ProcedureValue) << cs;
    EXPECT_EQ(live->Session(cs).FlowPair, replayed->Session(cs).FlowPair) << cs;
  }
}

#ifdef ZOLPROF_PATH
// The command line computes a recording as the end of the run would, and
// prints each file it wrote.
TEST_F(LiveSessionsTest, ZolprofReplaysARecordingIntoItsFiles) {
  EventStore store(clock_, 3);
  testing::PlayRun(store, GroupPlans());
  const std::string zle = dir_ / "run.zle";
  SaveRecording(store, zle);
  fs::create_directories(dir_ / "home");
  const std::string out = dir_ / "out.txt";
  const std::string command = "ZOLMARK_HOME='" + (dir_ / "home") + "' " + ZOLPROF_PATH +
                              " live --replay '" + zle + "' > '" + out + "'";
  ASSERT_EQ(std::system(command.c_str()), 0) << command;
  const std::string pa = fs::path(a_.vbp).parent_path().string();
  const std::string pb = fs::path(b_.vbp).parent_path().string();
  EXPECT_EQ(LoadFile(out), pa + "/Main 1.pfd\n" + pa + "/Worker 1.pfd\n" + pb + "/Billing 1.pfd\n" +
                               vbg_ + " 1.pfd\n");
  const std::string bad = dir_ / "bad.zle";
  WriteFile(bad, "ZOLEVT1");
  EXPECT_NE(std::system(("ZOLMARK_HOME='" + (dir_ / "home") + "' " + ZOLPROF_PATH +
                         " live --replay '" + bad + "' 2> '" + out + "'")
                            .c_str()),
            0);
  EXPECT_NE(LoadFile(out).find("not a recording of a live run"), std::string::npos)
      << LoadFile(out);
}
#endif

TEST_F(LiveSessionsTest, BrokenRecordingsAreRefusedNamingTheFileAndTheFault) {
  EventStore store(clock_, 3);
  testing::PlayRun(store, {GroupPlans()[0]});
  const std::string image = RecordingImage(store);
  struct Case {
    std::string bytes;
    std::string fault;
  };
  std::string badThread = image;
  const std::size_t firstEvent = 8 + 8 + 8 + 4 + (3360 + 12) + 4;
  badThread[firstEvent] = 9;  // thread 9 of 1
  std::string zeroTime = image;
  for (int k = 8; k < 16; ++k) zeroTime[firstEvent + k] = 0;
  const std::vector<Case> cases = {
      {"ZOLEVT2" + image.substr(7), "not a recording"},
      {image.substr(0, image.size() - 5), "events need"},
      {image.substr(0, 40), "truncated"},
      {badThread, "names thread 9 of 1"},
      {zeroTime, "has time 0"},
  };
  for (const Case& c : cases) {
    const std::string file = dir_ / "bad.zle";
    WriteFile(file, c.bytes);
    EventStore target(clock_, 0);
    try {
      LoadRecording(target, file);
      ADD_FAILURE() << "accepted: " << c.fault;
    } catch (const RecordingError& e) {
      EXPECT_NE(std::string(e.what()).find(file), std::string::npos) << e.what();
      EXPECT_NE(std::string(e.what()).find(c.fault), std::string::npos) << e.what();
    }
    EXPECT_EQ(target.nThread, 0);
  }
}

}  // namespace
}  // namespace zol
