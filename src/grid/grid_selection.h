#pragma once

// What a table shows: the selection that GetTreeSelection leaves in the
// Workspace, taken once so that a builder reads one consistent state.

#include <cstdint>

#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

struct GridSelection {
  std::int32_t cs = 0;    // session; negative for compared sessions
  std::int32_t cp = 0;    // its project
  std::int32_t cMod = 0;  // module, 0 for the whole session
  std::int32_t cPro = 0;  // procedure, 0 for the whole module or session
  std::int32_t DisplayInfoType =
      0;  // 0 total, 1 average, 2 child total, 3 child average, 4 coverage
  // The group whose merged session cs is (GetGroupMergedSession), -1 if none.
  std::int32_t Group = -1;
};

// The selection of the Workspace: cs, cp, cMod, cPro, DisplayInfoType, and the
// group of a group's merged session.
GridSelection GridSelectionOf(const Workspace& ws);

// The selection of the Workspace as a value: the session as a typed reference
// (single, merged, compared, compared groups, or a group's merged session),
// with module, procedure, line, page and measure.
Selection SelectionOf(const Workspace& ws);

}  // namespace zol
