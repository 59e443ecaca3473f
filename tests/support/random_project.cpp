#include "support/random_project.h"

#include <string>

#include "support/session_builder.h"
#include "support/sim_random.h"

namespace zol::testing {

std::int32_t AddRandomProject(Workspace& ws, const ProjectShape& shape) {
  SimRandom random(shape.seed);
  ProjectBuilder builder(ws, "C:\\Work\\Sim" + std::to_string(shape.seed) + "\\Sim.vbp");
  for (std::int32_t m = 1; m <= shape.modules; ++m) {
    const std::int32_t module = builder.Module("Module" + std::to_string(m));
    for (std::int32_t i = 1; i <= shape.proceduresPerModule; ++i) {
      const std::int32_t proc =
          builder.Procedure(module, "Proc" + std::to_string(m) + "_" + std::to_string(i));
      if (!random.Chance(shape.lineProbedShare)) continue;
      const auto lines = random.Between(shape.minLines, shape.maxLines);
      for (std::int64_t l = 1; l < lines; ++l) builder.Line(proc);
      builder.Line(proc, kExitLine);
    }
  }
  return builder.Build();
}

}  // namespace zol::testing
