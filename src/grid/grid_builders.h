#pragma once

// The table builders of the grid tabs. Each builds its table from the records
// of the selection, sorts it on its default column (descending), selects the
// first row, and hands over the chart's arrays and titles. The GUI takes the
// selection with GetTreeSelection and GridSelectionOf, calls the builder that
// the tab and the measure call for, shows the table and updates the chart
// (UpdateChart). A bad ID in the records gives BoundsError.

#include <string>

#include "grid/grid_build.h"
#include "grid/grid_selection.h"
#include "grid/grid_sort.h"
#include "session/workspace.h"

namespace zol {

// Timing tables, DisplayInfoType 0 to 3.
GridBuild ShowProceduresTiming(const Workspace& ws, const GridSelection& sel, SortMemory& sort);
GridBuild ShowModulesTiming(const Workspace& ws, const GridSelection& sel, SortMemory& sort);
GridBuild ShowProjectsTiming(const Workspace& ws, const GridSelection& sel, SortMemory& sort);

// Coverage tables, DisplayInfoType 4.
GridBuild ShowProceduresCoverage(const Workspace& ws, const GridSelection& sel, SortMemory& sort);
GridBuild ShowModulesCoverage(const Workspace& ws, const GridSelection& sel, SortMemory& sort);
GridBuild ShowProjectsCoverage(const Workspace& ws, const GridSelection& sel, SortMemory& sort);

// The Lines tab, any measure; progress goes to the Workspace's prompter. With
// `fake` only the headers and one blank row, no data and no chart: the grid
// that stands before any session is picked.
GridBuild ShowLines(Workspace& ws, const GridSelection& sel, SortMemory& sort, bool fake);
// A one-column notice of two rows where lines can't be listed.
GridBuild ShowLinesUnavailable(const std::string& arg, const std::string& arg2);

// Compared grids, for the "COMPARE" selection (cs negative): one run of
// columns per compared session (GetComparedSessions), values from Session when
// the sessions share one project, from CompareSession otherwise. The selection
// must be the Workspace's own (GetComparedSessions reads ws.cp). Rows are not
// sorted; Headers says what the header of headers shows.
GridBuild ShowCompareProceduresTiming(const Workspace& ws, const GridSelection& sel);
GridBuild ShowCompareLines(const Workspace& ws, const GridSelection& sel);
GridBuild ShowCompareProceduresCoverage(const Workspace& ws, const GridSelection& sel);
GridBuild ShowCompareModulesTiming(const Workspace& ws, const GridSelection& sel);
GridBuild ShowCompareModulesCoverage(const Workspace& ws, const GridSelection& sel);

// The grid tabs.
inline constexpr std::int32_t kTabProjects = 1;
inline constexpr std::int32_t kTabModules = 2;
// kTabProcedures (3) and kTabLines (4) stand in chart.h.

inline constexpr char kUnavailableGroups[] = "Unavailable (compared group sessions)";
inline constexpr char kUnavailableHeterogeneous[] = "Unavailable (heterogeneous sessions)";
inline constexpr char kClickProcedures[] = "Please click the Procedures tab";

// The table of grid tab `tab` (1 Projects, 2 Modules, 3 Procedures, 4 Lines)
// for the selection: the compared grids for compared sessions (the Projects
// and Modules tabs both show the compared modules; lines can be compared only
// for sessions of one project), otherwise the timing or coverage builder of
// the measure. Throws std::invalid_argument for another tab.
GridBuild ShowTab(Workspace& ws, const GridSelection& sel, SortMemory& sort, std::int32_t tab);

}  // namespace zol
