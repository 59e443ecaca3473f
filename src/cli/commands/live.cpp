// zolprof live [--record FILE.zle] [--timeout S]: the receiver of a live run
// without a window. It opens the socket, writes the rendezvous into the
// settings file, serves the run's threads until the last one has ended, then
// computes and saves the sessions and prints each file written.
//
// zolprof live --replay FILE.zle: computes the sessions of a recorded run
// exactly as the end of the live run did (a .pfd per thread beside its
// project, the "[Profiler Sessions]" entries, the group file).

#include <iostream>
#include <memory>
#include <string>

#include "base/app_paths.h"
#include "base/cp1252.h"
#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "live/compute_thread.h"
#include "live/receiver.h"
#include "live/recording.h"

#include <csignal>

namespace {

struct LiveArgs {
  std::string replay;
  std::string record;
  std::string socket;
  double timeout = 0;
};

zol::LiveReceiver* g_receiver = nullptr;

extern "C" void StopOnSignal(int) {
  if (g_receiver) g_receiver->Stop();
}

// Prints each file that the end of the run wrote; 1 when something of the
// run couldn't be made (the reason was printed).
int Finish(zol::Workspace& ws, zol::EventStore& store) {
  const std::int32_t threads = store.nThread;
  zol::LiveRunView view;
  const zol::LiveRunOutcome outcome = zol::ComputeThread(ws, store, view);
  for (const std::string& file : outcome.filesWritten) {
    std::cout << zol::Cp1252ToUtf8(file) << "\n";
  }
  const bool whole =
      outcome.faults.empty() && static_cast<std::int32_t>(outcome.sessions.size()) == threads;
  return whole ? 0 : 1;
}

int Replay(const LiveArgs& args) {
  zol::cli::CliWorkspace cli;
  zol::MonotonicClock clock;
  zol::EventStore store(clock, 0);
  try {
    zol::LoadRecording(store, args.replay);
  } catch (const zol::RecordingError& e) {
    std::cerr << "zolprof: " << e.what() << "\n";
    return 1;
  }
  if (store.nThread == 0) {
    std::cerr << "zolprof: " << args.replay << ": the recording holds no thread\n";
    return 1;
  }
  return Finish(cli.ws(), store);
}

int Receive(const LiveArgs& args) {
  zol::cli::CliWorkspace cli;
  zol::Workspace& ws = cli.ws();
  zol::MonotonicClock clock;
  zol::EventStore store(clock, zol::MeasureCounterOverhead(clock));
  zol::ReceiverOptions options;
  options.socketPath = args.socket;
  options.settingsFile = zol::GetIniFile(ws.appFolder);
  zol::LiveReceiver receiver(store, options);
  receiver.onStatus = [](const std::string& text) { std::cerr << text << "\n"; };
  try {
    receiver.Open();
  } catch (const zol::ReceiverError& e) {
    std::cerr << "zolprof: " << e.what() << "\n";
    return 1;
  }
  std::cerr << "Waiting for a run on " << receiver.socketPath() << "\n";
  g_receiver = &receiver;
  std::signal(SIGINT, StopOnSignal);
  std::signal(SIGTERM, StopOnSignal);
  const auto timeout = std::chrono::milliseconds(static_cast<std::int64_t>(args.timeout * 1000));
  zol::LiveReceiver::End end = receiver.Run(timeout);
  g_receiver = nullptr;
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
  if (end != zol::LiveReceiver::End::ResultsDue) {
    if (store.nThread == 0) {
      std::cerr << "zolprof: no run came"
                << (end == zol::LiveReceiver::End::TimedOut ? " within the time given" : "")
                << "\n";
      return 1;
    }
    // The run is given up waiting for: its threads count as ended now.
    std::cerr << "zolprof: the run is taken as ended; threads still running are counted as ended\n";
    receiver.EndActiveThreads();
  }
  receiver.Close();
  if (!args.record.empty()) {
    try {
      zol::SaveRecording(store, args.record);
      std::cerr << "Recording saved: " << args.record << "\n";
    } catch (const std::exception& e) {
      std::cerr << "zolprof: " << e.what() << "\n";
    }
  }
  return Finish(ws, store);
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<LiveArgs>();
  auto* cmd = app.add_subcommand(
      "live", "Receive a live run and save its sessions, or compute those of a recording");
  auto* replay = cmd->add_option("--replay", args->replay, "a recording (.zle) of a live run");
  cmd->add_option("--record", args->record, "also save the run's events as this recording (.zle)")
      ->excludes(replay);
  cmd->add_option("--timeout", args->timeout,
                  "give up waiting after this many seconds (the run so far is computed)")
      ->excludes(replay);
  cmd->add_option("--socket", args->socket,
                  "the socket to listen on (default: the user's runtime folder)")
      ->excludes(replay);
  cmd->callback(
      [args] { zol::cli::SetExitCode(args->replay.empty() ? Receive(*args) : Replay(*args)); });
}

ZOLPROF_COMMAND("live", Setup);

}  // namespace
