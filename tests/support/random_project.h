#pragma once

// Projects of random shape for replay tests and benchmarks: how many lines
// each procedure has, and which procedures are line-probed, are drawn from a
// seed. Built with ProjectBuilder, so the tables are those a scan leaves.

#include <cstdint>

#include "session/workspace.h"

namespace zol::testing {

struct ProjectShape {
  std::uint64_t seed = 1;
  std::int32_t modules = 3;
  std::int32_t proceduresPerModule = 6;
  std::int32_t minLines = 2;  // of a line-probed procedure, its exit line included
  std::int32_t maxLines = 8;
  double lineProbedShare = 0.7;  // of the procedures
};

// Appends the project to ws.Project and returns its index.
std::int32_t AddRandomProject(Workspace& ws, const ProjectShape& shape);

}  // namespace zol::testing
