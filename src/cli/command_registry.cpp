#include "cli/command_registry.h"

#include <algorithm>

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
int ExitCode() {
  return g_exitCode;
}

}  // namespace zol::cli
