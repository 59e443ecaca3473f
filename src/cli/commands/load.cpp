// zolprof load LOG.pfl: replays a log, derives its statistics and stores the
// session as a .pfd beside it; the log is deleted once the .pfd is whole.

#include <iostream>
#include <memory>

#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "cli/open_session.h"

namespace {

struct LoadArgs {
  std::string file;
  zol::cli::OpenOptions options;
  bool literal = false;
};

void Setup(CLI::App& app) {
  auto args = std::make_shared<LoadArgs>();
  auto* cmd = app.add_subcommand(
      "load", "Replay a .pfl log (or read a .pfd) and store the session as a .pfd beside it");
  cmd->add_option("FILE", args->file, "the .pfl log or .pfd session file")->required();
  cmd->add_option("--project", args->options.projectOverride,
                  "the instrumented .vbp to use instead of the one the log names");
  cmd->add_flag("--literal", args->literal,
                "replay with the step-by-step reference reader (slow; for checking)");
  cmd->callback([args] {
    zol::cli::CliWorkspace cli;
    if (args->literal) args->options.replay = zol::ReplayKind::Literal;
    auto cs = zol::cli::OpenSession(cli.ws(), args->file, args->options);
    if (!cs) {
      zol::cli::SetExitCode(1);
      return;
    }
    std::cout << zol::cli::SessionSummary(cli.ws(), *cs) << "\n";
  });
}

ZOLPROF_COMMAND("load", Setup);

}  // namespace
