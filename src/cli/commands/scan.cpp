// zolprof scan PROJECT.vbp: what the scanner recovers from an instrumented
// project: modules, procedures with their flags, probed lines with their
// procedure and position. --json prints the project record as the dump does.

#include <iostream>
#include <memory>

#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "project/project_info.h"
#include "project/scan_report.h"
#include "session/json_dump.h"

namespace {

struct ScanArgs {
  std::string project;
  bool json = false;
  bool debugger = false;
};

void Run(const ScanArgs& args) {
  zol::cli::CliWorkspace cli;
  zol::Workspace& ws = cli.ws();
  // A session that names the project and tells no counts: the tables take
  // the size of the highest IDs in the source.
  ws.nSession = 1;
  zol::Session& s = ws.SessionSlot(1);
  s.ProjectFile = args.project;
  s.Project = zol::AssignProjectToSession(ws, 1, args.project);

  zol::ScanOptions options;
  if (args.debugger) options.AppPrefix = std::string(zol::kDebuggerPrefix);
  zol::GetProjectInfo(ws, 1, options);
  const zol::Project& p = ws.Project(s.Project);
  if (args.json) {
    std::cout << zol::ProjectToJson(p) << "\n";
  } else if (p.ModulesNumber > 0) {
    std::cout << zol::FormatProjectScan(p);
  }
  for (const zol::UnreadModule& u : p.UnreadModules) {
    std::cerr << "zolprof: " << args.project << ": module " << u.FileName
              << " not read: " << u.Fault << "\n";
  }
  if (!p.UnreadModules.empty()) zol::cli::SetExitCode(1);
  if (p.ModulesNumber == 0) {
    std::cerr << "zolprof: no module read from \"" << args.project
              << "\" (the file is missing or unreadable, or names no module)\n";
    zol::cli::SetExitCode(1);
  }
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<ScanArgs>();
  auto* cmd = app.add_subcommand("scan", "Print what the scan of an instrumented project finds");
  cmd->add_option("PROJECT", args->project, "the instrumented .vbp file")->required();
  cmd->add_flag("--json", args->json, "print the project record as JSON");
  cmd->add_flag("--debugger", args->debugger,
                "read the probes of a project instrumented for the debugger (zolDebugger.)");
  cmd->callback([args] { Run(*args); });
}

ZOLPROF_COMMAND("scan", Setup);

}  // namespace
