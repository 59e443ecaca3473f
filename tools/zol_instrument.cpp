// zol_instrument: the test suite's instrumenter as a program, used to make the
// instrumented copy of the demo project under examples/demo:
//
//   zol_instrument ORIGINAL.vbp OUTPUT.vbp [--plan PLAN.txt] [--debugger]
//
// The output folder gets the instrumented .vbp, its modules (laid out as
// beside the original) and the probe module. --plan names procedures to mark
// critical, dead, untimed or to leave out (see PlanFromText); --debugger
// writes the probes of the suite's debugger instead of the profiler's.

#include <iostream>
#include <string>
#include <vector>

#include "base/files.h"
#include "support/instrumenter.h"

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  std::vector<std::string> files;
  zol::fixture::InstrumentOptions options;
  try {
    for (std::size_t i = 0; i < args.size(); ++i) {
      if (args[i] == "--plan" && i + 1 < args.size()) {
        const std::string plan = zol::LoadFile(args[++i]);
        if (plan.empty()) throw std::runtime_error("Cannot read plan \"" + args[i] + "\"");
        options.plan = zol::fixture::PlanFromText(plan);
      } else if (args[i] == "--debugger") {
        options.AppPrefix = "zolDebugger.";
      } else {
        files.push_back(args[i]);
      }
    }
    if (files.size() != 2) {
      std::cerr << "usage: zol_instrument ORIGINAL.vbp OUTPUT.vbp [--plan PLAN.txt] [--debugger]\n";
      return 2;
    }
    const zol::fixture::InstrumentTruth truth =
        zol::fixture::InstrumentProject(files[0], files[1], options);
    std::cout << files[1] << ": " << truth.Modules.UBound() << " modules, "
              << truth.Procedures.UBound() << " procedures, " << truth.Lines.UBound() << " lines\n";
  } catch (const std::exception& e) {
    std::cerr << "zol_instrument: " << e.what() << "\n";
    return 1;
  }
  return 0;
}
