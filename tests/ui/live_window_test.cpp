// The live window on a real socket: hidden until a thread registers, then
// shown with its row while the main window steps aside; the end of the run
// makes the sessions and brings the main window back.

#include "ui/live_window.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "base/scoped_temp_dir.h"
#include "live/live_fixture.h"
#include "live/socket_client.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

TEST(LiveWindow, ShowsTheRunWhileItLastsAndHandsBackToTheMainWindow) {
  testing::ScopedTempDir dir;
  auto prompter = std::make_shared<RecordingPrompter>();
  Workspace ws(prompter);
  ws.appFolder = dir / "app";
  std::filesystem::create_directories(ws.appFolder);
  QWidget main;
  main.show();
  LiveRunView view;
  ReceiverOptions options;
  options.socketPath = dir / "live.sock";
  LiveWindow window(ws, &main, view, options);
  bool acquiring = false;
  QObject::connect(&window, &LiveWindow::acquiringChanged, [&](bool on) { acquiring = on; });
  int finished = 0;
  QObject::connect(&window, &LiveWindow::runFinished, [&](const LiveRunOutcome&) { ++finished; });
  ASSERT_EQ(window.start(), "");
  EXPECT_FALSE(window.isVisible());
  EXPECT_FALSE(window.windowFlags() & Qt::WindowCloseButtonHint);
  EXPECT_EQ(window.windowTitle(), "Zolmark Profiler");

  std::atomic<int> step{0};
  std::thread sender([&] {
    testing::SocketClient client(options.socketPath);
    Pds pds = testing::MakePds(1, "Main", dir / "gone/Demo.vbp");
    pds.ProcessID = ::getpid();
    pds.ThreadID = static_cast<std::int32_t>(::syscall(SYS_gettid));
    client.Register(pds);
    client.Call(LiveMsg::ProcedureIn, 1, 1);
    step = 1;
    while (step < 2) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    client.Call(LiveMsg::ThreadEnd, 1, 0);
  });
  ASSERT_TRUE(testing::WaitFor([&] { return step == 1 && window.isVisible(); }));
  EXPECT_FALSE(main.isVisible());
  EXPECT_TRUE(acquiring);
  ASSERT_EQ(window.threadList().count(), 1);
  EXPECT_EQ(window.threadList().item(0)->text(), "1-Main");
  EXPECT_EQ(window.statusText(), "Data acquisition (0 events)...");
  step = 2;
  ASSERT_TRUE(testing::WaitFor([&] { return finished == 1; }));
  sender.join();
  EXPECT_FALSE(window.isVisible());
  EXPECT_TRUE(main.isVisible());
  EXPECT_FALSE(acquiring);
  EXPECT_EQ(window.threadList().count(), 0);
  // The project named is gone: the thread's session can't be made.
  ASSERT_FALSE(prompter->messages.empty());
  EXPECT_EQ(prompter->messages[0].text.rfind("Unable to compute timings for Main !\n", 0), 0u);
}

}  // namespace
}  // namespace zol
