#pragma once

// The table builders of the grid tabs. Each builds its table from the records
// of the selection, sorts it on its default column (descending), selects the
// first row, and hands over the chart's arrays and titles. The window passes
// the selection on screen, ShowTab calls the builder that its tab and measure
// call for; the window shows the table and updates the chart (UpdateChart). A
// bad ID in the records gives BoundsError.

#include <string>

#include "grid/grid_build.h"
#include "grid/grid_sort.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

// Timing tables, the time measures.
GridBuild ShowProceduresTiming(const Workspace& ws, const Selection& sel, SortMemory& sort);
GridBuild ShowModulesTiming(const Workspace& ws, const Selection& sel, SortMemory& sort);
GridBuild ShowProjectsTiming(const Workspace& ws, const Selection& sel, SortMemory& sort);

// Coverage tables.
GridBuild ShowProceduresCoverage(const Workspace& ws, const Selection& sel, SortMemory& sort);
GridBuild ShowModulesCoverage(const Workspace& ws, const Selection& sel, SortMemory& sort);
GridBuild ShowProjectsCoverage(const Workspace& ws, const Selection& sel, SortMemory& sort);

// The Lines tab, any measure; progress goes to the Workspace's prompter. With
// `fake` only the headers and one blank row, no data and no chart: the grid
// that stands before any session is picked.
GridBuild ShowLines(Workspace& ws, const Selection& sel, SortMemory& sort, bool fake);
// A one-column notice of two rows where lines can't be listed.
GridBuild ShowLinesUnavailable(const std::string& arg, const std::string& arg2);

// Compared grids, for a compared selection: one run of columns per compared
// session (GetComparedSessions of the selection's project), values from
// Session when the sessions share one project, from CompareSession otherwise.
// Rows are not sorted; Headers says what the header of headers shows.
GridBuild ShowCompareProceduresTiming(const Workspace& ws, const Selection& sel);
GridBuild ShowCompareLines(const Workspace& ws, const Selection& sel);
GridBuild ShowCompareProceduresCoverage(const Workspace& ws, const Selection& sel);
GridBuild ShowCompareModulesTiming(const Workspace& ws, const Selection& sel);
GridBuild ShowCompareModulesCoverage(const Workspace& ws, const Selection& sel);

inline constexpr char kUnavailableGroups[] = "Unavailable (compared group sessions)";
inline constexpr char kUnavailableHeterogeneous[] = "Unavailable (heterogeneous sessions)";
inline constexpr char kClickProcedures[] = "Please click the Procedures tab";

// The table of the selection's grid tab (Projects, Modules, Procedures,
// Lines): the compared grids for compared sessions (the Projects
// and Modules tabs both show the compared modules; lines can be compared only
// for sessions of one project), otherwise the timing or coverage builder of
// the measure. Throws std::invalid_argument for another tab.
GridBuild ShowTab(Workspace& ws, const Selection& sel, SortMemory& sort);

}  // namespace zol
