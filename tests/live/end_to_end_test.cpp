// A whole live run: the example program's threads (two projects of a group,
// one of them in two threads) send through libzolprobe to the receiver; the
// end of the run makes the sessions, files, settings entries and group; and
// the recording of the run, computed again, gives the same sessions.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <future>

#include "base/files.h"
#include "base/ini_file.h"
#include "base/paths.h"
#include "base/scoped_temp_dir.h"
#include "live/compute_thread.h"
#include "live/receiver.h"
#include "live/recording.h"
#include "project/project_info.h"
#include "support/fixture_run.h"

namespace zol {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

TEST(LiveEndToEnd, TheExampleProgramsRunBecomesSessionsAndItsRecordingTheSame) {
  testing::ScopedTempDir dir;
  const testing::FixtureRun a = testing::MakeInstrumentedProject(dir / "pa", 3);
  const testing::FixtureRun b = testing::MakeInstrumentedProject(dir / "pb", 5);
  const std::string vbg = dir / "Suite.vbg";
  WriteFile(vbg, "VBGROUP 5.0\r\nStartupProject=" + a.vbp + "\r\nProject=" + b.vbp + "\r\n");

  MonotonicClock clock;
  EventStore store(clock, MeasureCounterOverhead(clock));
  ReceiverOptions options;
  options.socketPath = dir / "live.sock";
  options.settingsFile = dir / "app/Zolmark.ini";
  fs::create_directories(dir / "app");
  LiveReceiver receiver(store, options);
  receiver.Open();
  auto served = std::async(std::launch::async, [&] { return receiver.Run(60s); });
  const std::string command = std::string(ZOL_LIVE_DEMO) + " --socket '" + options.socketPath +
                              "' --vbg '" + vbg + "' --probes 1500 '" + a.vbp + ":2' '" + b.vbp +
                              ":1'";
  EXPECT_EQ(std::system(command.c_str()), 0) << command;
  ASSERT_EQ(served.wait_for(10s), std::future_status::ready);
  ASSERT_EQ(served.get(), LiveReceiver::End::ResultsDue);
  for (const std::string& fault : receiver.closedForFaults()) ADD_FAILURE() << fault;
  receiver.Close();
  ASSERT_EQ(store.nThread, 3);
  EXPECT_GT(store.Thread(1).Overhead, 0);
  const std::string zle = dir / "run.zle";
  SaveRecording(store, zle);

  auto prompter = std::make_shared<RecordingPrompter>();
  Workspace ws(prompter);
  ws.appFolder = dir / "app";
  ResetRtfPath(ws);
  LiveRunView view;
  const LiveRunOutcome live = ComputeThread(ws, store, view);
  for (const auto& m : prompter->messages) ADD_FAILURE() << m.text;
  const std::string pa = GetFileBody(a.vbp);
  const std::string pb = GetFileBody(b.vbp);
  const std::string fa = fs::path(a.vbp).parent_path().string();
  const std::string fb = fs::path(b.vbp).parent_path().string();
  ASSERT_EQ(live.filesWritten,
            (std::vector<std::string>{fa + "/" + pa + " 1 1.pfd", fa + "/" + pa + " 2 1.pfd",
                                      fb + "/" + pb + " 1 1.pfd", vbg + " 1.pfd"}));
  for (const std::string& f : live.filesWritten) EXPECT_TRUE(fs::exists(f)) << f;
  ASSERT_EQ(live.group, 1);
  EXPECT_EQ(ws.SessionGroup(1).nSession, 2);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler Sessions", "1.0.7 " + ws.Session(3).DateTime, "",
                                      fb + "/zolOptions_" + pb + ".ini"),
            fb + "/" + pb + " 1 1.pfd");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler Sessions", ws.SessionGroup(1).DateTime, "",
                                      dir / "zolSuite.vbg.ini"),
            vbg + " 1.pfd");
  // Each thread ran its lines: hits add up to the lines the threads sent.
  for (std::int32_t cs = 1; cs <= 3; ++cs) EXPECT_GT(ws.Session(cs).SessionValue.HitLines, 0);

  EventStore replayed(clock, 0);
  LoadRecording(replayed, zle);
  Workspace again(prompter);
  again.appFolder = dir / "app2";
  ResetRtfPath(again);
  const LiveRunOutcome second = ComputeThread(again, replayed, view);
  ASSERT_EQ(second.filesWritten.size(), 4u);
  EXPECT_EQ(second.filesWritten[0], fa + "/" + pa + " 1 2.pfd");
  for (std::int32_t cs = 1; cs <= ws.nSession; ++cs) {
    EXPECT_EQ(again.Session(cs).CodeLineValue, ws.Session(cs).CodeLineValue) << cs;
    EXPECT_EQ(again.Session(cs).ProcedureValue, ws.Session(cs).ProcedureValue) << cs;
    EXPECT_EQ(again.Session(cs).FlowPair, ws.Session(cs).FlowPair) << cs;
    EXPECT_EQ(again.Session(cs).ModuleValue, ws.Session(cs).ModuleValue) << cs;
  }
  KillRtfPath(ws);
  KillRtfPath(again);
}

}  // namespace
}  // namespace zol
