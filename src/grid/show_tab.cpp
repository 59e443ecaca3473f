// Which builder draws a grid tab: the dispatch of the scope tabs.

#include <stdexcept>
#include <string>

#include "grid/chart.h"
#include "grid/grid_builders.h"

namespace zol {

namespace {

GridBuild ShowComparedTab(const Workspace& ws, const Selection& sel) {
  const bool coverage = sel.coverage();
  switch (sel.tab) {
    case Tab::Projects:
    case Tab::Modules:
      return coverage ? ShowCompareModulesCoverage(ws, sel) : ShowCompareModulesTiming(ws, sel);
    case Tab::Procedures:
      return coverage ? ShowCompareProceduresCoverage(ws, sel)
                      : ShowCompareProceduresTiming(ws, sel);
    default:
      if (sel.session.isComparedGroups())
        return ShowLinesUnavailable(kUnavailableGroups, kClickProcedures);
      if (!ws.fHomogeneous)
        return ShowLinesUnavailable(kUnavailableHeterogeneous, kClickProcedures);
      return ShowCompareLines(ws, sel);
  }
}

}  // namespace

GridBuild ShowTab(Workspace& ws, const Selection& sel, SortMemory& sort) {
  if (sel.tab < Tab::Projects || sel.tab > Tab::Lines) {
    throw std::invalid_argument("grid tab " + std::to_string(IndexOf(sel.tab)) + " is not 1 to 4");
  }
  if (sel.session.isCompared()) return ShowComparedTab(ws, sel);
  const bool coverage = sel.coverage();
  switch (sel.tab) {
    case Tab::Projects:
      return coverage ? ShowProjectsCoverage(ws, sel, sort) : ShowProjectsTiming(ws, sel, sort);
    case Tab::Modules:
      return coverage ? ShowModulesCoverage(ws, sel, sort) : ShowModulesTiming(ws, sel, sort);
    case Tab::Procedures:
      return coverage ? ShowProceduresCoverage(ws, sel, sort) : ShowProceduresTiming(ws, sel, sort);
    default:
      return ShowLines(ws, sel, sort, false);
  }
}

}  // namespace zol
