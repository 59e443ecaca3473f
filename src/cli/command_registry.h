#pragma once

// zolprof's subcommands register themselves: each file under commands/ defines
// one registrar, so a new command is a new file and no central switch changes.

#include <cstdint>
#include <exception>
#include <functional>
#include <source_location>
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

// Runs a command's work and takes its exit code. A session that doesn't fit
// its project, or a file that can't be read or written, ends the command with
// a line on stderr and exit code 1; `subject`, when given, is the file the
// first of those messages names. Any other failure is a fault of the program:
// the error text of the error capture goes to stderr, with the place of the
// call, and the exit code is 1.
void RunCommand(const std::function<int()>& run, const std::string& subject = "",
                std::source_location where = std::source_location::current());

// The subcommand that runs, for the error text ("Procedure: dump").
void SetCommandName(std::string name);

// Writes the error text of an unexpected failure to stderr.
void ReportFault(const std::exception& e, std::int32_t line);

// Exit code of the command that ran (0 unless a command sets it).
void SetExitCode(int code);
int ExitCode();

}  // namespace zol::cli

#define ZOLPROF_CONCAT_INNER(a, b) a##b
#define ZOLPROF_CONCAT(a, b) ZOLPROF_CONCAT_INNER(a, b)
#define ZOLPROF_COMMAND(name, fn) \
  static const ::zol::cli::CommandRegistrar ZOLPROF_CONCAT(zolprof_command_, __LINE__)(name, fn)
