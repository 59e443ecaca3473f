// bench_live_receive: how many events a second the live receiver takes from
// 1, 4 and 16 sending threads (each sends through libzolprobe and waits for
// every answer), and the round-trip cost of one probe message. The receiver
// must keep up with the fastest sender: at least 200,000 events a second.
// A last row sends bursts without waiting for each answer: the receiver's own
// pace, apart from the round trip of a waiting sender.
//
//   bench_live_receive [EVENTS_PER_THREAD]

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "live/receiver.h"
#include "zolprobe.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Result {
  double seconds = 0;
  long events = 0;
};

Result RunWith(int senders, long perThread, const std::string& socket) {
  zol::MonotonicClock clock;
  zol::EventStore store(clock, zol::MeasureCounterOverhead(clock));
  zol::ReceiverOptions options;
  options.socketPath = socket;
  zol::LiveReceiver receiver(store, options);
  receiver.Open();
  auto served =
      std::async(std::launch::async, [&] { return receiver.Run(std::chrono::minutes(5)); });
  zolprobe_set_socket(socket.c_str());
  const auto start = Clock::now();
  std::vector<std::thread> threads;
  for (int t = 1; t <= senders; ++t) {
    threads.emplace_back([t, perThread] {
      zolprobe_registration r{};
      r.profiler_id = t;
      r.title = "bench";
      r.vbp = "/nowhere/bench.vbp";
      if (zolprobe_register_thread(&r) < 0) return;
      for (long i = 0; i < perThread; i += 2) {
        zolprobe_proc_in(1);
        zolprobe_proc_out(1);
      }
      zolprobe_thread_end();
    });
  }
  for (std::thread& t : threads) t.join();
  served.wait();
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  return {seconds, store.ProfileIndex};
}

// The receiver's own pace: one sender that writes bursts of 1,000 messages
// before it reads their answers, so the round trip doesn't bound the rate.
Result RunPipelined(long events, const std::string& socket) {
  zol::MonotonicClock clock;
  zol::EventStore store(clock, zol::MeasureCounterOverhead(clock));
  zol::ReceiverOptions options;
  options.socketPath = socket;
  zol::LiveReceiver receiver(store, options);
  receiver.Open();
  auto served =
      std::async(std::launch::async, [&] { return receiver.Run(std::chrono::minutes(5)); });
  const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un addr{};
  addr.sun_family = AF_UNIX;
  std::snprintf(addr.sun_path, sizeof addr.sun_path, "%s", socket.c_str());
  if (::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0) return {};
  auto frame = [](std::uint32_t msg, std::int32_t w, std::int32_t l) {
    std::string f(12, '\0');
    for (int i = 0; i < 4; ++i) {
      f[static_cast<std::size_t>(i)] = static_cast<char>(msg >> (8 * i));
      f[static_cast<std::size_t>(4 + i)] =
          static_cast<char>(static_cast<std::uint32_t>(w) >> (8 * i));
      f[static_cast<std::size_t>(8 + i)] =
          static_cast<char>(static_cast<std::uint32_t>(l) >> (8 * i));
    }
    return f;
  };
  auto exchange = [fd](const std::string& out, std::size_t answers) {
    for (std::size_t sent = 0; sent < out.size();) {
      const ssize_t n = ::send(fd, out.data() + sent, out.size() - sent, MSG_NOSIGNAL);
      if (n <= 0) return false;
      sent += static_cast<std::size_t>(n);
    }
    std::vector<char> in(answers * 4);
    for (std::size_t got = 0; got < in.size();) {
      const ssize_t n = ::recv(fd, in.data() + got, in.size() - got, 0);
      if (n <= 0) return false;
      got += static_cast<std::size_t>(n);
    }
    return true;
  };
  zol::Pds pds;
  pds.ProfilerID = 1;
  zol::SetPdsText(pds.Title, "bench");
  const zol::PdsImage image = zol::EncodePds(pds);
  exchange(
      frame(0x401, 0, 0) + std::string(reinterpret_cast<const char*>(image.data()), image.size()),
      1);
  std::string burst;
  for (int i = 0; i < 500; ++i) burst += frame(0x403, 1, 1) + frame(0x404, 1, 1);
  const auto start = Clock::now();
  for (long sent = 0; sent < events; sent += 1000) {
    if (!exchange(burst, 1000)) break;
  }
  exchange(frame(0x408, 1, 0), 1);
  served.wait();
  ::close(fd);
  return {std::chrono::duration<double>(Clock::now() - start).count(), store.ProfileIndex};
}

}  // namespace

int main(int argc, char** argv) {
  const long perThread = argc > 1 ? std::atol(argv[1]) : 200000;
  const std::string folder = zol::DefaultSocketFolder();
  const std::string socket = folder + "/bench-" + std::to_string(::getpid()) + ".sock";
  std::printf("%-10s %12s %10s %14s %14s\n", "senders", "events", "seconds", "events/s",
              "round trip");
  for (int senders : {1, 4, 16}) {
    const long each = senders == 1 ? perThread : perThread / senders * 2;
    const Result r = RunWith(senders, each, socket);
    const double rate = static_cast<double>(r.events) / r.seconds;
    // Each sender waits for every answer: its round trip is the time per
    // message it sent.
    const double roundTripUs = r.seconds * 1e6 / (static_cast<double>(r.events) / senders);
    std::printf("%-10d %12ld %10.3f %14.0f %11.2f us\n", senders, r.events, r.seconds, rate,
                roundTripUs);
  }
  const Result p = RunPipelined(perThread * 4, socket);
  std::printf("%-10s %12ld %10.3f %14.0f %14s\n", "1 (bursts)", p.events, p.seconds,
              static_cast<double>(p.events) / p.seconds, "-");
  return 0;
}
