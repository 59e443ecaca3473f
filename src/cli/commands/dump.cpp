// zolprof dump FILE --json: everything a session holds, as JSON. A .pfl is
// replayed in memory; dump never writes or deletes a session file.

#include <iostream>
#include <memory>

#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "cli/open_session.h"
#include "session/json_dump.h"

namespace {

struct DumpArgs {
  std::string file;
  bool json = false;
  bool literal = false;
  zol::cli::OpenOptions options;
};

void Setup(CLI::App& app) {
  auto args = std::make_shared<DumpArgs>();
  auto* cmd = app.add_subcommand("dump", "Print a session (.pfd, or a .pfl replayed in memory)");
  cmd->add_option("FILE", args->file, "the .pfd session file or .pfl log")->required();
  cmd->add_flag("--json", args->json, "print the project and all session values as JSON");
  cmd->add_option("--project", args->options.projectOverride,
                  "the instrumented .vbp to use instead of the one the file names");
  cmd->add_flag("--literal", args->literal, "replay a log with the step-by-step reference reader");
  cmd->callback([args] {
    zol::cli::CliWorkspace cli;
    args->options.readOnly = true;
    if (args->literal) args->options.replay = zol::ReplayKind::Literal;
    auto cs = zol::cli::OpenSession(cli.ws(), args->file, args->options);
    if (!cs) {
      zol::cli::SetExitCode(1);
      return;
    }
    const zol::Session& s = cli.ws().Session(*cs);
    if (args->json) {
      std::cout << zol::SessionToJson(cli.ws().Project(s.Project), s) << "\n";
    } else {
      std::cout << zol::cli::SessionSummary(cli.ws(), *cs) << "\n";
    }
  });
}

ZOLPROF_COMMAND("dump", Setup);

}  // namespace
