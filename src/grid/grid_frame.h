#pragma once

// The frame that every table builder shares: the "Project" column of a
// group's merged session, the bars column, the look of dead rows and of the
// total row, the texts of times and their reading back, the percentage pass,
// and the finish (widths, first sort, selection).

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "grid/cell_text.h"
#include "grid/grid_build.h"
#include "grid/grid_sort.h"
#include "grid/table.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

// The text of a value cell with nothing measured.
inline constexpr char kNoValue[] = "-";
// The text of a value cell of a dead row.
inline constexpr char kDeadValue[] = "  ";
// The share of a total row.
inline constexpr char kFullShare[] = "100%";

// Sets every column's width to its widest text (header or cell), in characters.
// The widths of numbers come from the extremes of each column, not from
// making every text.
void FitColumnWidths(Table& table);
// The same in two steps: the widths found, which only read the table, and
// then set.
std::vector<std::int32_t> FittedColumnWidths(const Table& table);
void SetColumnWidths(Table& table, const std::vector<std::int32_t>& widths);

// The time of a value record (procedure or line) that the measure shows: total,
// average, child total or child average for time measure index 0 to 3.
template <typename Value>
double TimingMeasure(const Value& v, std::int32_t displayInfoType) {
  switch (displayInfoType) {
    case 1:
      return v.AverageTime;
    case 2:
      return v.ChildTotalTime;
    case 3:
      return v.ChildAverageTime;
    default:
      return v.TotalTime;
  }
}

// Measures 2 and 3 show times with children.
inline bool IsChildMeasure(std::int32_t displayInfoType) {
  return displayInfoType == 2 || displayInfoType == 3;
}
// Measures 1 and 3 show averages.
inline bool IsAverageMeasure(std::int32_t displayInfoType) {
  return displayInfoType == 1 || displayInfoType == 3;
}

// A cell's number as displayed, read back (ParseCellNumber in cell_text.h):
// 0 for a text that is no number.
double CellValue(std::string_view text);

// Adds the "Project" column of a group's merged session (left aligned) and
// returns its index; 0 when the session isn't one.
int AddProjectColumn(Table& table, const Selection& sel);
// Adds the bars column at display position `position` and returns its index.
int AddBarsColumn(Table& table, int position);
// Shows the "Project" column first (nothing for column 0). Done after the bars
// column has its place, so that the bars keep their neighbours.
void ShowProjectColumnFirst(Table& table, int projectColumn);
// The build's table with its image list and its leading, left-aligned columns.
Table& StartTable(GridBuild& build, ImageListKind images,
                  std::initializer_list<const char*> leading);
// Adds a right-aligned value column for each header, in order.
void AddValueColumns(Table& table, std::initializer_list<const char*> headers);

// The columns that follow a table's own: "Project" (0 without) and the bars.
struct FrameColumns {
  int project = 0;
  int bars = 0;
};
// Adds the "Project" column of a group's merged session, then the bars column
// at display position `barsPosition`, and shows the "Project" column first.
FrameColumns AddFrameColumns(Table& table, const Selection& sel, int barsPosition);

// The name of the project that module `module` of `project` came from, for
// the "Project" column; empty when unknown.
const std::string& ModuleProjectName(const Workspace& ws, const Project& project,
                                     std::int32_t module);

// The icon key of a module's row: its type, then "TYPE".
std::string ModuleIcon(const Module& module);
// The row of procedure `id` of `project`: its module's name as the row text,
// the ID as tag, its name in column 2, and the name of the project its module
// came from in `projectColumn` (none for 0).
RowRef AddProcedureRow(Table& table, const Workspace& ws, const Project& project, std::int32_t id,
                       int projectColumn);
// The row of module `id` of `project`: its name and icon, the ID as tag, and
// the name of the project it came from in `projectColumn` (none for 0).
RowRef AddModuleRow(Table& table, const Workspace& ws, const Project& project, std::int32_t id,
                    int projectColumn);
// The total row: key "TOTAL", and the text "TOTAL" in column `totalColumn`
// (the row text for 1).
RowRef AddTotalRow(Table& table, int totalColumn, std::string_view icon = {});

// The sessions of the project tables: the session alone, or the members of
// the group whose merged session it is.
std::vector<std::int32_t> ProjectTableSessions(const Workspace& ws, const Selection& sel);

// A dead row: the cells of columns `from` to `to` and of the bars column are
// two blanks and bold; the row and every cell are grey.
void MarkDeadRow(Table& table, RowRef row, int from, int to, int barsColumn);
// The total row's look: bold and blue, every cell from column 2 on blue and
// bold, but the bars cell plain.
void MarkTotalRow(RowRef row, int columnCount, int barsColumn);

// The number a cell shows, read back from its text: a count, a time as
// rounded for display, a text's number (0 for none).
double DisplayedValue(const Table& table, const CellData& cell);
// Whether a cell shows "-", nothing measured.
bool IsNoValue(const Table& table, const CellData& cell);
// Sets the percentage of a value cell: "-" when `total` is 0 or the cell is
// "-", else the share of the number it shows.
void SetShare(const Table& table, RowRef row, int column, const CellData& value, double total);
// Fills the percentage columns `shares` (each from the value column beside
// it in `values`) of every row whose first percentage cell is still empty;
// a dead row keeps its blanks.
void FillShares(Table& table, std::initializer_list<int> shares, std::initializer_list<int> values,
                std::initializer_list<double> totals);

// The digits of the largest line ID of a project of `linesNumber` lines.
std::int32_t LineIdDigits(std::int32_t linesNumber);
// A line's name in the chart: its ID padded with zeros to `numberOfZeros`
// digits, "-", and its text cut to 33 characters; so a sort by name is a sort
// by line ID.
std::string LineChartName(std::int32_t lineId, std::int32_t numberOfZeros, const std::string& text);
// The same name written at the end of `name`.
void AppendLineChartName(std::string& name, std::int32_t lineId, std::int32_t numberOfZeros,
                         std::string_view text);

// Widths, the sort on `defaultColumn` in descending order, and the first row
// selected.
void FinishGrid(Table& table, SortMemory& sort, int defaultColumn, bool comparedTable = false);
// The chart of a build drawn with these titles, and its table finished as by
// FinishGrid.
void FinishWithChart(GridBuild& build, SortMemory& sort, int defaultColumn, std::string barTitle,
                     std::string pieTitle);

}  // namespace zol
