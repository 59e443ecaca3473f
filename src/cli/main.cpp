// zolprof: the command line over the profiler's core. Everything the desktop
// program computes can be reached from here, so that it can be scripted and
// tested.

#include <algorithm>
#include <iostream>

#include <CLI/CLI.hpp>

#include "base/files.h"
#include "base/heap_tuning.h"
#include "base/version.h"
#include "cli/command_registry.h"

int main(int argc, char** argv) {
  zol::KeepLargeBlocksInHeap();
  CLI::App app{std::string(zol::kAppTitle) + " " + zol::kAppVersion +
                   ": command-line results browser for VB6 profiling runs",
               "zolprof"};
  app.set_version_flag("--version",
                       std::string("zolprof (") + zol::kAppTitle + ") " + zol::kAppVersion);
  app.require_subcommand(0, 1);

  auto& registry = zol::cli::Registry();
  std::sort(registry.begin(), registry.end(),
            [](const auto& a, const auto& b) { return a.name < b.name; });
  for (auto& command : registry) command.setup(app);
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (std::any_of(registry.begin(), registry.end(),
                    [&](const auto& c) { return c.name == word; })) {
      zol::cli::SetCommandName(word);
      break;
    }
  }

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e);
  } catch (const zol::FileError& e) {
    std::cerr << "zolprof: " << e.what() << "\n";
    return 1;
  } catch (const std::exception& e) {
    zol::cli::ReportFault(e, __LINE__);
    return 1;
  }
  if (app.get_subcommands().empty()) {
    std::cout << app.help();
    return 0;
  }
  return zol::cli::ExitCode();
}
