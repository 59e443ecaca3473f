// zolprof live --replay FILE.zle: computes the sessions of a recorded live run
// exactly as the end of the run did (a .pfd per thread beside its project, the
// "[Profiler Sessions]" entries, the group file) and prints each file written.

#include <iostream>
#include <memory>
#include <string>

#include "base/cp1252.h"
#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "live/compute_thread.h"
#include "live/recording.h"

namespace {

struct LiveArgs {
  std::string replay;
};

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

void Setup(CLI::App& app) {
  auto args = std::make_shared<LiveArgs>();
  auto* cmd = app.add_subcommand("live", "Compute the sessions of a recorded live run");
  cmd->add_option("--replay", args->replay, "a recording (.zle) of a live run")->required();
  cmd->callback([args] { zol::cli::SetExitCode(Replay(*args)); });
}

ZOLPROF_COMMAND("live", Setup);

}  // namespace
