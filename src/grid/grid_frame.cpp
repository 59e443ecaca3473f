#include "grid/grid_frame.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "base/text.h"
#include "grid/bars.h"

namespace zol {

namespace {
const std::string kNoName;
}  // namespace

void FitColumnWidths(Table& table) {
  std::vector<std::size_t> best(static_cast<std::size_t>(table.ColumnCount()));
  for (int c = 1; c <= table.ColumnCount(); ++c) best[c - 1] = table.ColumnAt(c).Header.size();
  for (const Row& row : table.Rows()) {
    const std::size_t n = std::min(row.Cells.size(), best.size());
    for (std::size_t c = 0; c < n; ++c) best[c] = std::max(best[c], row.Cells[c].Text.size());
  }
  for (int c = 1; c <= table.ColumnCount(); ++c) {
    table.ColumnAt(c).Width = static_cast<std::int32_t>(best[c - 1]);
  }
}

std::optional<double> ParseCellNumber(std::string_view text) {
  // Cells are mostly plain numbers such as "12" or "0.004567": read those
  // straight away, and anything else the long way.
  double value = 0;
  const char* end = text.data() + text.size();
  if (!text.empty() && text.front() != '-' && text.front() != '+') {
    const auto res = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    if (res.ec == std::errc() && res.ptr == end) return value;
  }
  return ParseNumberText(text);
}

double CellValue(std::string_view text) {
  return ParseCellNumber(text).value_or(0);
}

int AddProjectColumn(Table& table, const GridSelection& sel) {
  if (sel.Group == -1) return 0;
  return table.AddColumn("Project", Alignment::Left);
}

void ShowProjectColumnFirst(Table& table, int projectColumn) {
  if (projectColumn != 0) table.SetPosition(projectColumn, 1);
}

int AddBarsColumn(Table& table, int position) {
  const int column = table.AddColumn(kBarsHeader, Alignment::Left);
  table.SetPosition(column, position);
  return column;
}

Table& StartTable(GridBuild& build, ImageListKind images,
                  std::initializer_list<const char*> leading) {
  Table& table = build.Grid;
  table.ImageList = images;
  for (const char* header : leading) table.AddColumn(header);
  return table;
}

void AddValueColumns(Table& table, std::initializer_list<const char*> headers) {
  for (const char* header : headers) table.AddColumn(header, Alignment::Right);
}

FrameColumns AddFrameColumns(Table& table, const GridSelection& sel, int barsPosition) {
  FrameColumns cols;
  cols.project = AddProjectColumn(table, sel);
  cols.bars = AddBarsColumn(table, barsPosition);
  ShowProjectColumnFirst(table, cols.project);
  return cols;
}

const std::string& ModuleProjectName(const Workspace& ws, const Project& project,
                                     std::int32_t module) {
  if (!project.Module.InRange(module)) return kNoName;
  const std::int32_t p = project.Module(module).BelongToProject;
  return ws.Project.InRange(p) ? ws.Project(p).Name : kNoName;
}

std::string ModuleIcon(const Module& module) {
  return std::to_string(module.Type) + "TYPE";
}

Row& AddProcedureRow(Table& table, const Workspace& ws, const Project& project, std::int32_t id,
                     int projectColumn) {
  const Procedure& proc = project.Procedure(id);
  Row& row = table.AddRow("", project.Module(proc.BelongToModule).Name);
  row.Tag = id;
  row.At(2).Text = proc.Name;
  if (projectColumn != 0) {
    row.At(projectColumn).Text = ModuleProjectName(ws, project, proc.BelongToModule);
  }
  return row;
}

Row& AddModuleRow(Table& table, const Workspace& ws, const Project& project, std::int32_t id,
                  int projectColumn) {
  const Module& module = project.Module(id);
  Row& row = table.AddRow("", module.Name, ModuleIcon(module));
  row.Tag = id;
  if (projectColumn != 0) row.At(projectColumn).Text = ModuleProjectName(ws, project, id);
  return row;
}

Row& AddTotalRow(Table& table, int totalColumn, std::string icon) {
  Row& total = table.AddRow(std::string(kTotalKey), "", std::move(icon));
  total.At(totalColumn).Text = kTotalKey;
  return total;
}

std::vector<std::int32_t> ProjectTableSessions(const Workspace& ws, const GridSelection& sel) {
  if (sel.Group < 0) return {sel.cs};
  const SessionGroup& group = ws.SessionGroup(sel.Group);
  std::vector<std::int32_t> list;
  for (std::int32_t i = 1; i <= group.nSession; ++i) list.push_back(group.Sessions(i));
  return list;
}

void MarkDeadRow(Row& row, int from, int to, int barsColumn) {
  for (int c = from; c <= to; ++c) row.At(c) = {kDeadValue, true, kColorGrey};
  if (barsColumn > 0) row.At(barsColumn) = {kDeadValue, true, kColorGrey};
  for (Cell& cell : row.Cells) cell.Color = kColorGrey;
}

void MarkTotalRow(Row& row, int columnCount, int barsColumn) {
  row.SetBold(true);
  row.SetColor(kColorBlue);
  for (int c = 2; c <= columnCount; ++c) {
    Cell& cell = row.At(c);
    cell.Color = kColorBlue;
    cell.Bold = c != barsColumn;
  }
}

std::string ShareText(std::string_view valueText, double total) {
  if (total == 0 || valueText == kNoValue) return kNoValue;
  return PercentText(CellValue(valueText) / total);
}

void FinishGrid(Table& table, SortMemory& sort, int defaultColumn, bool comparedTable) {
  FitColumnWidths(table);
  SortTable(table, sort, defaultColumn, kSortDescending, comparedTable);
  table.SelectedRow = table.RowCount() > 0 ? 1 : 0;
}

void FinishWithChart(GridBuild& build, SortMemory& sort, int defaultColumn, std::string barTitle,
                     std::string pieTitle) {
  build.Arrays.SetTitles(std::move(barTitle), std::move(pieTitle));
  build.Chart = ChartUpdate::Draw;
  FinishGrid(build.Grid, sort, defaultColumn);
}

}  // namespace zol
