#pragma once

// zolprof's subcommands register themselves: each file under commands/ defines
// one registrar, so a new command is a new file and no central switch changes.

#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace zol::cli {

// Adds a subcommand to `app`. The function sets the subcommand's options and
// its callback; the callback's exit code goes to SetExitCode.
using CommandSetup = std::function<void(CLI::App& app)>;

struct CommandInfo {
  std::string name;
  CommandSetup setup;
};

std::vector<CommandInfo>& Registry();

struct CommandRegistrar {
  CommandRegistrar(std::string name, CommandSetup setup);
};

// Exit code of the command that ran (0 unless a command sets it).
void SetExitCode(int code);
int ExitCode();

}  // namespace zol::cli

#define ZOLPROF_CONCAT_INNER(a, b) a##b
#define ZOLPROF_CONCAT(a, b) ZOLPROF_CONCAT_INNER(a, b)
#define ZOLPROF_COMMAND(name, fn) \
  static const ::zol::cli::CommandRegistrar ZOLPROF_CONCAT(zolprof_command_, __LINE__)(name, fn)
