// zolprof export --callgrind FILE [-o callgrind.out.NAME]
// Writes a session as a callgrind profile for the common call-graph viewers,
// to the file given by -o or to the standard output. Logs are replayed in
// memory; a session file is never written.

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "base/files.h"
#include "base/text.h"
#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "cli/open_session.h"
#include "report/callgrind_export.h"

namespace {

struct ExportArgs {
  std::string file;
  std::string output;
  bool callgrind = false;
};

bool IsSessionFile(const std::string& path) {
  const std::string lower = zol::LCase(path);
  return lower.ends_with(".pfd") || lower.ends_with(".pfl");
}

int Run(const ExportArgs& args) {
  if (!args.callgrind) {
    std::cerr << "zolprof: export: name the format (--callgrind)\n";
    return 1;
  }
  if (!args.output.empty()) {
    std::error_code ec;
    if (IsSessionFile(args.output) || std::filesystem::weakly_canonical(args.output, ec) ==
                                          std::filesystem::weakly_canonical(args.file, ec)) {
      std::cerr << "zolprof: " << args.output << " is a session file; not overwritten\n";
      return 1;
    }
  }
  zol::cli::CliWorkspace cli;
  zol::cli::OpenOptions open;
  open.readOnly = true;
  const auto cs = zol::cli::OpenSession(cli.ws(), args.file, open);
  if (!cs) return 1;
  const std::string text = zol::CallgrindText(cli.ws(), *cs);
  if (args.output.empty()) {
    std::cout << text;
    return 0;
  }
  try {
    zol::WriteFileAtomic(args.output, text);
  } catch (const std::exception& e) {
    std::cerr << "zolprof: " << args.output << ": " << e.what() << "\n";
    return 1;
  }
  std::cerr << "zolprof: wrote " << args.output << "\n";
  return 0;
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<ExportArgs>();
  auto* cmd = app.add_subcommand("export", "Write a session in another profiler format");
  cmd->add_option("FILE", args->file, "session file (.pfd, or .pfl replayed in memory)")
      ->required();
  cmd->add_flag("--callgrind", args->callgrind,
                "the callgrind format: own time (microseconds) and hits per line, and the calls");
  cmd->add_option("-o,--output", args->output, "write to this file instead of the standard output");
  cmd->callback([args] { zol::cli::SetExitCode(Run(*args)); });
}

ZOLPROF_COMMAND("export", Setup);

}  // namespace
