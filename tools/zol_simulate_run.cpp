// zol_simulate_run: writes the .pfl log of a simulated run of an instrumented
// project, as its logger would have written it. Used to make the demo
// sessions under examples/demo and logs of any size for trying things out:
//
//   zol_simulate_run PROJECT.vbp OUT.pfl [--seed N] [--probes N]
//                    [--max-ticks N] [--date "dd/mm/yyyy hh:mm:ss"] [--end-inside-calls]
//                    [--windows-path C:\Path\Project.vbp]
//
// The log's header names the project by --windows-path (default
// "C:\Zolmark\Demo\" and the project's file name), as a log written on
// Windows does; the loader finds the project beside the log.

#include <iostream>
#include <string>
#include <vector>

#include "base/files.h"
#include "base/paths.h"
#include "base/temp_files.h"
#include "support/fixture_run.h"

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  std::vector<std::string> files;
  zol::testing::SimulatedLogShape shape;
  std::string windowsPath;
  try {
    for (std::size_t i = 0; i < args.size(); ++i) {
      const bool hasValue = i + 1 < args.size();
      if (args[i] == "--seed" && hasValue) {
        shape.run.seed = std::stoull(args[++i]);
      } else if (args[i] == "--probes" && hasValue) {
        shape.run.probes = std::stoll(args[++i]);
      } else if (args[i] == "--max-ticks" && hasValue) {
        shape.run.maxTicks = std::stoll(args[++i]);
      } else if (args[i] == "--date" && hasValue) {
        shape.dateTime = args[++i];
      } else if (args[i] == "--windows-path" && hasValue) {
        windowsPath = args[++i];
      } else if (args[i] == "--end-inside-calls") {
        shape.run.endInsideCalls = true;
      } else {
        files.push_back(args[i]);
      }
    }
    if (files.size() != 2) {
      std::cerr << "usage: zol_simulate_run PROJECT.vbp OUT.pfl [--seed N] [--probes N] "
                   "[--max-ticks N] [--date TEXT] [--end-inside-calls] [--windows-path PATH]\n";
      return 2;
    }
    zol::TempFileRegistry temp;
    const std::string scratch = zol::GetTempFileName("", "zolsim", false, temp) + ".d";
    zol::Project project = zol::testing::ScanFixtureProject(files[0], scratch);
    zol::DeleteFolder(scratch);
    if (project.ModulesNumber == 0) {
      std::cerr << "zol_simulate_run: " << files[0] << ": no modules could be read\n";
      return 1;
    }
    project.ProjectFile =
        windowsPath.empty() ? "C:\\Zolmark\\Demo\\" + zol::GetFileName(files[0]) : windowsPath;
    const auto size = zol::testing::WriteSimulatedLog(files[1], project, shape);
    std::cout << files[1] << ": " << size.probes << " probes in " << size.blocks << " blocks, "
              << size.bytes << " bytes\n";
  } catch (const std::exception& e) {
    std::cerr << "zol_simulate_run: " << e.what() << "\n";
    return 1;
  }
  return 0;
}
