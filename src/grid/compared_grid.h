#pragma once

// The frame of the compared grids: leading columns, then a run of columns
// per compared session; values looked up in each session's own numbering of
// the shown project. Internal to the grid builders.

#include <cstdint>
#include <string>
#include <vector>

#include "base/vbarray.h"
#include "grid/grid_build.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

class ComparedGrid {
 public:
  ComparedGrid(const Workspace& ws, const Selection& sel, const std::vector<std::string>& leading,
               const std::vector<std::string>& run);

  int SessionCount() const { return list_.Count(); }
  // IsNeeded over the compared sessions: item `id` of kind `Obj` has a value
  // in at least one of them.
  bool Needed(std::int32_t id, std::int32_t Obj) const;
  const Project& ShownProject() const { return ws_.Project(sel_.project); }
  // The session itself, and the record that holds its values numbered like
  // the shown project (itself when all sessions share one project).
  const Session& Own(int k) const { return ws_.Session(list_(k + 1)); }
  const Session& Values(int k) const;
  // Value records of session k, nullptr where the session has none.
  const ProcedureValue* Procedure(int k, std::int32_t id) const;
  const ModuleValue* Module(int k, std::int32_t id) const;
  const CodeLineValue* Line(int k, std::int32_t id) const;

  RowRef AddRow(std::string_view text, std::string_view icon = {});
  // The column of cell j (from 0) of session k's run.
  int RunColumn(int k, int j) const { return leading_ + k * perSession_ + j + 1; }
  Table& Grid() { return build_.Grid; }
  ChartArrays& Chart() { return build_.Arrays; }

  // The total row: bold, "TOTAL" in blue in column `totalColumn`.
  RowRef AddTotalRow(int totalColumn, std::string_view icon = {});

  // Colours the runs (first cell green, the others dark red), sizes the
  // columns, selects the first row, and sets the chart titles and headers.
  GridBuild Finish(const std::string& title, bool pieUnavailable);

 private:
  const Workspace& ws_;
  Selection sel_;
  Array1<std::int32_t> list_;
  int leading_ = 0;
  int perSession_ = 0;
  GridBuild build_;
};

}  // namespace zol
