// zolprof load LOG.pfl: replays a log, derives its statistics and stores the
// session as a .pfd beside it; the log is deleted once the .pfd is whole.

#include <iostream>
#include <memory>

#include "base/files.h"
#include "catalogue/session_file_lookup.h"
#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "cli/open_session.h"

namespace {

struct LoadArgs {
  std::string file;
  zol::cli::OpenOptions options;
  bool literal = false;
  bool deleteUnreadable = false;
  bool force = false;
};

// A log's session is stored beside it under its name with a "d" for the "l";
// a .pfd of an earlier run there is kept unless --force.
bool MayStoreBeside(const std::string& file, bool force) {
  if (!zol::EndsWithNoCase(file, ".pfl") || !zol::FileExist(file)) return true;
  const std::string pfd = zol::WithLastCharD(file);
  if (force || !zol::FileExist(pfd)) return true;
  std::cerr << "zolprof: " << pfd
            << ": a session file is already stored beside the log; it would be replaced "
               "(--force to do so)\n";
  return false;
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<LoadArgs>();
  auto* cmd = app.add_subcommand(
      "load", "Replay a .pfl log (or read a .pfd) and store the session as a .pfd beside it");
  cmd->add_option("FILE", args->file, "the .pfl log or .pfd session file")->required();
  cmd->add_option("--project", args->options.projectOverride,
                  "the instrumented .vbp to use instead of the one the log names");
  cmd->add_flag("--literal", args->literal,
                "replay with the step-by-step reference reader (slow; for checking)");
  cmd->add_flag("--delete-unreadable", args->deleteUnreadable,
                "delete the file when it can't be read or loaded and that is offered");
  cmd->add_flag("--force", args->force, "replace a .pfd of an earlier run beside the log");
  cmd->callback([args] {
    if (!MayStoreBeside(args->file, args->force)) {
      zol::cli::SetExitCode(1);
      return;
    }
    zol::cli::CliWorkspace cli;
    cli.prompter().SetDeleteUnreadable(args->deleteUnreadable);
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
