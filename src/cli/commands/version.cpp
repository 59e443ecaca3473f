// zolprof version: the program's title and version, as the pages it writes
// name them.

#include <iostream>

#include "base/version.h"
#include "cli/command_registry.h"

namespace {

void Setup(CLI::App& app) {
  auto* cmd = app.add_subcommand("version", "Print the program's title and version");
  cmd->callback([] { std::cout << zol::kAppTitle << " " << zol::kAppVersion << "\n"; });
}

ZOLPROF_COMMAND("version", Setup);

}  // namespace
