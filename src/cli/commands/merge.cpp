// zolprof merge FILE FILE... [-o OUT.pfd] [--json]: merges sessions as the
// merged view of the tree does, by ID for runs of one project and by module
// and procedure name otherwise. -o saves a merge of one project's runs as a
// session file that loads like any other; --json prints the merged project
// and session. Logs are replayed in memory and left as they are.

#include <iostream>
#include <memory>
#include <vector>

#include "base/cp1252.h"
#include "catalogue/project_tree.h"
#include "cli/command_registry.h"
#include "cli/output_target.h"
#include "cli/tick_sessions.h"
#include "compare/save_merged.h"
#include "session/json_dump.h"

namespace {

struct MergeArgs {
  std::vector<std::string> files;
  std::string output;
  bool json = false;
  bool force = false;
};

void Setup(CLI::App& app) {
  auto args = std::make_shared<MergeArgs>();
  auto* cmd = app.add_subcommand("merge", "Merge two or more sessions into one");
  cmd->add_option("FILE", args->files, "session files (.pfd, or .pfl replayed in memory)")
      ->required()
      ->expected(2, -1);
  cmd->add_option("-o,--output", args->output,
                  "save the merge as this .pfd (runs of one project only)");
  cmd->add_flag("--json", args->json, "print the merged project and session as JSON");
  cmd->add_flag("--force", args->force, zol::cli::kForceHelp);
  cmd->callback([args] {
    if (!args->output.empty() && !zol::cli::MayWriteOutput(args->output, args->files,
                                                           zol::cli::kSessionOutput, args->force)) {
      zol::cli::SetExitCode(1);
      return;
    }
    zol::cli::TickedSessions ticked;
    if (!ticked.Tick(args->files) || !ticked.OpenMerged(zol::kMergeKey)) {
      zol::cli::SetExitCode(1);
      return;
    }
    zol::Workspace& ws = ticked.ws();
    zol::ProjectTree& tree = ticked.tree();
    const zol::Session& merged = ws.Session(0);
    if (args->json) {
      std::cout << zol::SessionToJson(ws.Project(merged.Project), merged) << "\n";
    } else {
      std::cout << zol::Cp1252ToUtf8(tree.Nodes().Find(zol::kMergeKey)->Text) << "\n";
    }
    if (args->output.empty()) return;
    const std::int32_t saved = zol::SaveMergedSession(ws, args->output, &tree);
    if (saved == 0) {
      zol::cli::SetExitCode(1);
      return;
    }
    std::cerr << "zolprof: saved " << ws.Session(saved).SessionFile << "\n";
  });
}

ZOLPROF_COMMAND("merge", Setup);

}  // namespace
