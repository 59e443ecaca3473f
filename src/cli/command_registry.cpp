#include "cli/command_registry.h"

#include <algorithm>
#include <iostream>

#include "base/files.h"
#include "base/vbarray.h"

namespace zol::cli {

namespace {
int g_exitCode = 0;
}

std::vector<CommandInfo>& Registry() {
  static std::vector<CommandInfo> registry;
  return registry;
}

CommandRegistrar::CommandRegistrar(std::string name, CommandSetup setup) {
  Registry().push_back({std::move(name), std::move(setup)});
}

void SetExitCode(int code) {
  g_exitCode = code;
}
void RunCommand(const std::function<int()>& run, const std::string& subject) {
  try {
    SetExitCode(run());
  } catch (const BoundsError& e) {
    std::cerr << "zolprof: " << (subject.empty() ? "" : subject + ": ")
              << "the session and its project don't fit (" << e.what() << ")\n";
    SetExitCode(1);
  } catch (const FileError& e) {
    std::cerr << "zolprof: " << e.what() << "\n";
    SetExitCode(1);
  }
}

int ExitCode() {
  return g_exitCode;
}

}  // namespace zol::cli
