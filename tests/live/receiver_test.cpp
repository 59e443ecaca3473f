// The receiver on a real socket: well-behaved senders beside garbage, floods
// and senders that vanish, and threads that die without saying so.

#include "live/receiver.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <future>
#include <thread>

#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"
#include "live/live_fixture.h"
#include "live/socket_client.h"

namespace zol {
namespace {

using namespace std::chrono_literals;
using testing::MakePds;
using testing::SocketClient;

Pds ThisThread(std::int32_t id, const std::string& title) {
  Pds pds = MakePds(id, title);
  pds.ProcessID = ::getpid();
  pds.ThreadID = static_cast<std::int32_t>(::syscall(SYS_gettid));
  return pds;
}

class ReceiverTest : public ::testing::Test {
 protected:
  void SetUp() override {
    options_.socketPath = dir_ / "live.sock";
    options_.settingsFile = dir_ / "Zolmark.ini";
    options_.maxPendingAnswerBytes = 4096;
    receiver_ = std::make_unique<LiveReceiver>(store_, options_);
    receiver_->Open();
  }
  // Serves in the background until the run ends or 10 s pass.
  void Start() {
    served_ = std::async(std::launch::async, [this] { return receiver_->Run(10s); });
  }

  testing::ScopedTempDir dir_;
  MonotonicClock clock_;
  EventStore store_{clock_, 0};
  ReceiverOptions options_;
  std::unique_ptr<LiveReceiver> receiver_;
  std::future<LiveReceiver::End> served_;
};

TEST_F(ReceiverTest, TheSocketIsPrivateAndTheRendezvousNamesIt) {
  struct stat st {};
  ASSERT_EQ(::stat(options_.socketPath.c_str(), &st), 0);
  EXPECT_TRUE(S_ISSOCK(st.st_mode));
  EXPECT_EQ(st.st_mode & 0777, 0600u);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "hWnd", "", options_.settingsFile),
            std::to_string(::getpid()));
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "ID", "", options_.settingsFile), "1");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Socket", "", options_.settingsFile),
            options_.socketPath);
  receiver_->Close();
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "hWnd", "", options_.settingsFile), "0");
  EXPECT_NE(::stat(options_.socketPath.c_str(), &st), 0);
}

TEST_F(ReceiverTest, GarbageAndFloodsCloseOnlyTheirOwnConnections) {
  Start();
  SocketClient good(options_.socketPath);
  ASSERT_TRUE(good.connected());
  ASSERT_EQ(good.Register(ThisThread(1, "Main")), kRegisteredAnswer);
  ASSERT_EQ(good.Call(LiveMsg::ProcedureIn, 1, 1), 0);

  {  // an unknown message
    SocketClient bad(options_.socketPath);
    EXPECT_EQ(bad.Call(static_cast<LiveMsg>(0x409), 1, 1), std::nullopt);
  }
  {  // an ID beyond the run
    SocketClient bad(options_.socketPath);
    EXPECT_EQ(bad.Call(LiveMsg::Line, 7, 1), std::nullopt);
  }
  {  // random bytes
    SocketClient bad(options_.socketPath);
    std::string noise;
    for (int i = 0; i < 5000; ++i) noise += static_cast<char>((i * 7919) % 251);
    bad.SendRaw(noise);
    EXPECT_EQ(bad.Answer(), std::nullopt);
  }
  {  // a registration cut short, then gone
    SocketClient bad(options_.socketPath);
    bad.SendRaw(SocketClient::Frame(0x401, 1, 0) + std::string(100, 'x'));
  }
  {  // a flood: messages sent without ever reading an answer
    SocketClient flood(options_.socketPath);
    const std::string frame = SocketClient::Frame(0x402, 1, 1);
    std::string burst;
    for (int i = 0; i < 2000; ++i) burst += frame;
    int sent = 0;
    for (int k = 0; k < 200 && flood.SendRaw(burst); ++k) sent += 2000;
    // What was answered before the cut can still be read; then the end.
    int answers = 0;
    while (flood.Answer()) ++answers;
    EXPECT_LT(answers, sent);
  }
  {  // the first half of a frame, and a sender that stays
    SocketClient slow(options_.socketPath);
    slow.SendRaw(std::string(5, '\0'));
    // The good sender is served all the while.
    for (int i = 0; i < 100; ++i) ASSERT_EQ(good.Call(LiveMsg::Line, 1, 1), 0);
  }
  ASSERT_EQ(good.Call(LiveMsg::ProcedureOut, 1, 1), 0);
  ASSERT_EQ(good.Call(LiveMsg::ThreadEnd, 1, 0), 0);
  ASSERT_EQ(served_.wait_for(5s), std::future_status::ready);
  EXPECT_EQ(served_.get(), LiveReceiver::End::ResultsDue);

  const std::vector<std::string>& faults = receiver_->closedForFaults();
  ASSERT_GE(faults.size(), 5u);
  EXPECT_NE(faults[0].find("an unknown message 0x409"), std::string::npos) << faults[0];
  EXPECT_NE(faults[1].find("names thread 7"), std::string::npos) << faults[1];
  EXPECT_EQ(faults[0].rfind("Closed connection ", 0), 0u) << faults[0];
  bool midMessage = false;
  bool flooded = false;
  for (const std::string& f : faults) {
    midMessage |= f.find("in the middle of a message") != std::string::npos;
    flooded |= f.find("without reading its answers") != std::string::npos;
  }
  EXPECT_TRUE(midMessage);
  EXPECT_TRUE(flooded);
  // Only the good sender's events are in the store (the flood may have got
  // some of its lines in before it was cut off).
  EXPECT_EQ(store_.nThread, 1);
  EXPECT_FALSE(store_.Thread(1).Active);
}

TEST_F(ReceiverTest, AThreadThatDiesWithoutSayingSoIsFoundWithinASecond) {
  Start();
  std::thread worker([&] {
    SocketClient c(options_.socketPath);
    ASSERT_EQ(c.Register(ThisThread(1, "Worker")), kRegisteredAnswer);
    ASSERT_EQ(c.Call(LiveMsg::ProcedureIn, 1, 1), 0);
    // The thread ends here with its connection still open: /proc tells.
    c.SendRaw("");
    std::thread([fd = ::dup(c.fd())] {
      std::this_thread::sleep_for(3s);
      ::close(fd);
    }).detach();
  });
  worker.join();
  const auto gone = std::chrono::steady_clock::now();
  ASSERT_EQ(served_.wait_for(5s), std::future_status::ready);
  EXPECT_EQ(served_.get(), LiveReceiver::End::ResultsDue);
  // Found by the tick that follows (at most a second; a little more on a busy machine).
  EXPECT_LT(std::chrono::steady_clock::now() - gone, 2500ms);
  EXPECT_FALSE(store_.Thread(1).Active);
  // The tick ended the run: the last event is the procedure entry, no pair after it.
  EXPECT_EQ(store_.ProfileEvent(store_.ProfileIndex).Action, kActionProcedureIn);
}

TEST_F(ReceiverTest, AClosedConnectionCountsAsADeadThread) {
  Start();
  {
    SocketClient c(options_.socketPath);
    ASSERT_EQ(c.Register(ThisThread(1, "Main")), kRegisteredAnswer);
  }
  ASSERT_EQ(served_.wait_for(5s), std::future_status::ready);
  EXPECT_EQ(served_.get(), LiveReceiver::End::ResultsDue);
}

}  // namespace
}  // namespace zol
