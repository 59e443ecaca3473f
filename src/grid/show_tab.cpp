// Which builder draws a grid tab: the dispatch of the scope tabs.

#include <stdexcept>
#include <string>

#include "compare/group_merge.h"
#include "grid/chart.h"
#include "grid/grid_builders.h"

namespace zol {

namespace {

GridBuild ShowComparedTab(const Workspace& ws, const GridSelection& sel, std::int32_t tab) {
  const bool coverage = sel.DisplayInfoType == 4;
  switch (tab) {
    case kTabProjects:
    case kTabModules:
      return coverage ? ShowCompareModulesCoverage(ws, sel) : ShowCompareModulesTiming(ws, sel);
    case kTabProcedures:
      return coverage ? ShowCompareProceduresCoverage(ws, sel)
                      : ShowCompareProceduresTiming(ws, sel);
    default:
      if (sel.cs == kComparedGroupsSession)
        return ShowLinesUnavailable(kUnavailableGroups, kClickProcedures);
      if (!ws.fHomogeneous)
        return ShowLinesUnavailable(kUnavailableHeterogeneous, kClickProcedures);
      return ShowCompareLines(ws, sel);
  }
}

}  // namespace

GridBuild ShowTab(Workspace& ws, const GridSelection& sel, SortMemory& sort, std::int32_t tab) {
  if (tab < kTabProjects || tab > kTabLines) {
    throw std::invalid_argument("grid tab " + std::to_string(tab) + " is not 1 to 4");
  }
  if (sel.cs <= -1) return ShowComparedTab(ws, sel, tab);
  const bool coverage = sel.DisplayInfoType == 4;
  switch (tab) {
    case kTabProjects:
      return coverage ? ShowProjectsCoverage(ws, sel, sort) : ShowProjectsTiming(ws, sel, sort);
    case kTabModules:
      return coverage ? ShowModulesCoverage(ws, sel, sort) : ShowModulesTiming(ws, sel, sort);
    case kTabProcedures:
      return coverage ? ShowProceduresCoverage(ws, sel, sort) : ShowProceduresTiming(ws, sel, sort);
    default:
      return ShowLines(ws, sel, sort, false);
  }
}

}  // namespace zol
