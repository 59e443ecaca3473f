// bench_live_receive: how many events a second the live receiver takes from
// 1, 4 and 16 sending threads (each sends through libzolprobe and waits for
// every answer), and the round-trip cost of one probe message. The receiver
// must keep up with the fastest sender: at least 200,000 events a second.
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
  return 0;
}
