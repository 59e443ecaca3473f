#include "grid/grid_frame.h"

#include <algorithm>
#include <charconv>
#include <future>
#include <system_error>

#include "base/text.h"
#include "grid/bars.h"
#include "grid/cell_text.h"

namespace zol {

namespace {
const std::string kNoName;
}  // namespace

namespace {

// The widest text of a column's cells. Counts, times and shares grow longer
// with their size, each sign apart, so the longest is that of the largest or
// the smallest; a share of exactly 0 or 1 ("0%", "100%") is measured apart.
class ColumnWidth {
 public:
  void Add(const Table& table, const CellData& cell) {
    switch (cell.Kind) {
      case CellKind::Empty:
        break;
      case CellKind::Text:
        best_ = std::max<std::size_t>(best_, cell.V.Text.Length);
        break;
      case CellKind::Literal:
        best_ = std::max(best_, table.StoredText(cell).size());
        break;
      case CellKind::Bar:
        best_ = std::max(best_, static_cast<std::size_t>(cell.V.Integer));
        break;
      case CellKind::Count:
        Extremes(counts_, static_cast<double>(cell.V.Integer), cell);
        break;
      case CellKind::Time:
        Extremes(times_, cell.V.Number, cell);
        break;
      case CellKind::Percent:
        if (cell.V.Number == 0 || cell.V.Number == 1) {
          best_ = std::max<std::size_t>(best_, cell.V.Number == 0 ? 2 : 4);
        } else {
          Extremes(percents_, cell.V.Number, cell);
        }
        break;
    }
  }

  std::size_t Widest(const Table& table) const {
    std::size_t w = best_;
    for (const Range* range : {&counts_, &times_, &percents_}) {
      if (range->any) {
        w = std::max(w, table.CellText(range->smallest).size());
        w = std::max(w, table.CellText(range->largest).size());
      }
    }
    return w;
  }

 private:
  struct Range {
    bool any = false;
    double low = 0;
    double high = 0;
    CellData smallest;
    CellData largest;
  };
  void Extremes(Range& range, double value, const CellData& cell) {
    // A value that is no number has a text of its own length.
    if (value != value) {
      best_ = std::max(best_, CellTextLength(cell));
      return;
    }
    if (!range.any || value < range.low) {
      range.low = value;
      range.smallest = Uncoloured(cell);
    }
    if (!range.any || value > range.high) {
      range.high = value;
      range.largest = Uncoloured(cell);
    }
    range.any = true;
  }
  // What a cell's text is made of, and nothing else: the widths may be
  // found while the cells' colours change.
  static CellData Uncoloured(const CellData& cell) { return {.V = cell.V, .Kind = cell.Kind}; }
  static std::size_t CellTextLength(const CellData& cell) {
    return cell.Kind == CellKind::Time ? TimeTextLength(cell.V.Number)
                                       : PercentTextLength(cell.V.Number);
  }

  std::size_t best_ = 0;
  Range counts_;
  Range times_;
  Range percents_;
};

}  // namespace

std::vector<std::int32_t> FittedColumnWidths(const Table& table) {
  std::vector<std::int32_t> widths;
  for (int c = 1; c <= table.ColumnCount(); ++c) {
    // Cells as they are stored: the widest text doesn't depend on the order
    // shown.
    ColumnWidth width;
    for (const CellData& cell : table.StoredColumn(c)) width.Add(table, cell);
    widths.push_back(
        static_cast<std::int32_t>(std::max(table.ColumnAt(c).Header.size(), width.Widest(table))));
  }
  return widths;
}

void SetColumnWidths(Table& table, const std::vector<std::int32_t>& widths) {
  for (int c = 1; c <= table.ColumnCount(); ++c) {
    table.ColumnAt(c).Width = widths.at(static_cast<std::size_t>(c - 1));
  }
}

void FitColumnWidths(Table& table) {
  SetColumnWidths(table, FittedColumnWidths(table));
}

double CellValue(std::string_view text) {
  return ParseCellNumber(text).value_or(0);
}

int AddProjectColumn(Table& table, const Selection& sel) {
  if (sel.session.groupIndex() == -1) return 0;
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

FrameColumns AddFrameColumns(Table& table, const Selection& sel, int barsPosition) {
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

RowRef AddProcedureRow(Table& table, const Workspace& ws, const Project& project, std::int32_t id,
                       int projectColumn) {
  const Procedure& proc = project.Procedure(id);
  RowRef row = table.AddRow("", project.Module(proc.BelongToModule).Name);
  row.SetTag(id);
  row.SetText(2, proc.Name);
  if (projectColumn != 0) {
    row.SetText(projectColumn, ModuleProjectName(ws, project, proc.BelongToModule));
  }
  return row;
}

RowRef AddModuleRow(Table& table, const Workspace& ws, const Project& project, std::int32_t id,
                    int projectColumn) {
  const Module& module = project.Module(id);
  RowRef row = table.AddRow("", module.Name, ModuleIcon(module));
  row.SetTag(id);
  if (projectColumn != 0) row.SetText(projectColumn, ModuleProjectName(ws, project, id));
  return row;
}

RowRef AddTotalRow(Table& table, int totalColumn, std::string_view icon) {
  RowRef total = table.AddRow(kTotalKey, "", icon);
  total.SetText(totalColumn, kTotalKey);
  return total;
}

std::vector<std::int32_t> ProjectTableSessions(const Workspace& ws, const Selection& sel) {
  if (sel.session.groupIndex() < 0) return {sel.session.sessionIndex()};
  const SessionGroup& group = ws.SessionGroup(sel.session.groupIndex());
  std::vector<std::int32_t> list;
  for (std::int32_t i = 1; i <= group.nSession; ++i) list.push_back(group.Sessions(i));
  return list;
}

void MarkDeadRow(Table& table, RowRef row, int from, int to, int barsColumn) {
  const auto dead = [&](int c) {
    row.SetLiteral(c, kDeadValue);
    row.SetBold(c, true);
  };
  for (int c = from; c <= to; ++c) dead(c);
  if (barsColumn > 0) dead(barsColumn);
  for (int c = 1; c <= table.ColumnCount(); ++c) row.SetColor(c, kColorGrey);
}

void MarkTotalRow(RowRef row, int columnCount, int barsColumn) {
  row.SetRowBold(true);
  row.SetRowColor(kColorBlue);
  for (int c = 2; c <= columnCount; ++c) {
    row.SetColor(c, kColorBlue);
    row.SetBold(c, c != barsColumn);
  }
}

double DisplayedValue(const Table& table, const CellData& cell) {
  switch (cell.Kind) {
    case CellKind::Count:
      return static_cast<double>(cell.V.Integer);
    case CellKind::Time:
      return DisplayedTime(cell.V.Number);
    case CellKind::Percent:
    case CellKind::Bar:
      return CellValue(table.CellText(cell));
    default:
      return CellValue(table.StoredText(cell));
  }
}

bool IsNoValue(const Table& table, const CellData& cell) {
  return (cell.Kind == CellKind::Literal || cell.Kind == CellKind::Text) &&
         table.StoredText(cell) == kNoValue;
}

void SetShare(const Table& table, RowRef row, int column, const CellData& value, double total) {
  if (total == 0 || IsNoValue(table, value)) {
    row.SetLiteral(column, kNoValue);
  } else {
    row.SetPercent(column, DisplayedValue(table, value) / total);
  }
}

void FillShares(Table& table, std::initializer_list<int> shares, std::initializer_list<int> values,
                std::initializer_list<double> totals) {
  // Rows as they are stored: each row's shares are its own.
  const auto rows = static_cast<std::uint32_t>(table.RowCount());
  for (std::uint32_t stored = 0; stored < rows; ++stored) {
    RowRef row(table, stored);
    if (row.CellAt(*shares.begin()).Kind != CellKind::Empty) continue;  // a dead row's blanks
    auto value = values.begin();
    auto total = totals.begin();
    for (const int share : shares) {
      const CellData cell = row.CellAt(*value++);
      SetShare(table, row, share, cell, *total++);
    }
  }
}

void FinishGrid(Table& table, SortMemory& sort, int defaultColumn, bool comparedTable) {
  // The widths and the order each walk the cells of what can be a million
  // rows, and both only read them: a long table has its widths found on a
  // second thread while it is ordered. The colours, the one thing in the
  // cells that sorting writes, are set once both are done.
  constexpr int kRowsWorthAThread = 20000;
  SortDone sorted;
  if (table.RowCount() >= kRowsWorthAThread) {
    auto widths = std::async(std::launch::async, [&table] { return FittedColumnWidths(table); });
    sorted = OrderTable(table, sort, defaultColumn, kSortDescending);
    SetColumnWidths(table, widths.get());
  } else {
    FitColumnWidths(table);
    sorted = OrderTable(table, sort, defaultColumn, kSortDescending);
  }
  if (!comparedTable) MarkSortedColumn(table, sorted);
  table.SelectedRow = table.RowCount() > 0 ? 1 : 0;
}

void FinishWithChart(GridBuild& build, SortMemory& sort, int defaultColumn, std::string barTitle,
                     std::string pieTitle) {
  build.Arrays.SetTitles(std::move(barTitle), std::move(pieTitle));
  build.Chart = ChartUpdate::Draw;
  FinishGrid(build.Grid, sort, defaultColumn);
}

}  // namespace zol
