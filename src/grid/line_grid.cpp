// The Lines tab: one row for each probed line with its values, and the
// notice that stands in its place where lines can't be listed.

#include <cstdint>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "base/text.h"
#include "base/vb_format.h"
#include "grid/bars.h"
#include "grid/chart_titles.h"
#include "grid/grid_builders.h"
#include "grid/grid_frame.h"

namespace zol {

namespace {

enum LineCol { kModule = 1, kProcedure, kHits, kHitsPct, kTime, kTimePct, kAverage };

struct LineColumns {
  int line = 0;
  int lineId = 0;
  int project = 0;
  int bars = 0;
};

LineColumns AddLineColumns(Table& t, const GridSelection& sel, bool fake) {
  const std::int32_t dit = sel.DisplayInfoType;
  const bool timing = dit != 4;
  const bool child = IsChildMeasure(dit);
  LineColumns cols;
  t.AddColumn("Module");
  t.AddColumn("Procedure");
  AddValueColumns(t, {"Hits", "% Hits"});
  if (timing) {
    AddValueColumns(t, {child ? "Child Tot. Time" : "Total Time", "% Time",
                        child ? "Child Avg. Time" : "Average Time"});
  }
  cols.line = t.AddColumn("Line");
  cols.lineId = t.AddColumn("Line ID", Alignment::Right);
  if (fake) return cols;
  cols.bars = AddBarsColumn(t, !timing ? 4 : (IsAverageMeasure(dit) ? 8 : 6));
  cols.project = AddProjectColumn(t, sel);
  ShowProjectColumnFirst(t, cols.project);
  return cols;
}

bool ShouldDisplayLine(const Project& project, const Session& session, const GridSelection& sel,
                       std::int32_t i) {
  const CodeLine& line = project.CodeLine(i);
  // A line ID left without a procedure in the sources has no row.
  if (line.BelongToProcedure == 0) return false;
  bool shown;
  if (sel.cPro != 0) {
    shown = line.BelongToProcedure == sel.cPro;
  } else if (sel.cMod != 0) {
    shown = line.BelongToProcedure != 0 &&
            project.Procedure(line.BelongToProcedure).BelongToModule == sel.cMod &&
            session.CodeLineValue(i).Hits != 0;
  } else {
    shown = session.CodeLineValue(i).Hits != 0;
  }
  // The end of a procedure has no time of its own; it counts for coverage only.
  if (sel.DisplayInfoType != 4 && line.IsProcedureExit) return false;
  return shown;
}

// Progress of the row loop: on every line of a tiny project, otherwise in
// twenty steps.
class LineProgress {
 public:
  LineProgress(Prompter& prompter, std::int32_t linesNumber)
      : prompter_(prompter),
        linesNumber_(linesNumber),
        step_(MaxLong2(1, static_cast<std::int32_t>(RoundHalfEven(linesNumber / 20.0)))) {}

  void Line(std::int32_t i) {
    if (linesNumber_ < 10 || i % step_ == 0) prompter_.SetProgressValue(i);
  }
  void Mark(double fraction) {
    prompter_.SetProgressValue(static_cast<long>(linesNumber_ * fraction));
  }

 private:
  Prompter& prompter_;
  std::int32_t linesNumber_;
  std::int32_t step_;
};

struct LineTotals {
  double hits = 0;
  double time = 0;
};

void FillLineValues(Row& row, const CodeLine& line, const CodeLineValue& v, std::int32_t dit,
                    int bars, LineTotals& totals) {
  row.At(kHits).Text = std::to_string(v.Hits);
  totals.hits += v.Hits;
  if (dit == 4) {
    row.At(bars).Text = BarText(HitsBarLength(v.Hits));
    return;
  }
  if (line.IsProcedureExit) {
    row.At(kTime).Text = kNoValue;
    row.At(kAverage).Text = kNoValue;
  } else {
    const bool child = IsChildMeasure(dit);
    row.At(kTime).Text = TimeText(child ? v.ChildTotalTime : v.TotalTime);
    row.At(kAverage).Text = TimeText(child ? v.ChildAverageTime : v.AverageTime);
    totals.time += CellValue(row.Text(kTime));
  }
  row.At(bars).Text = BarText(GetBarLogValue(TimingMeasure(v, dit)));
}

void AddLineTotal(Table& t, const LineTotals& totals, std::int32_t dit, int bars) {
  const bool timing = dit != 4;
  Row& total = AddTotalRow(t, kProcedure);
  const int lastValue = timing ? kAverage : kHitsPct;
  if (totals.hits == 0) {
    for (int c = kHits; c <= lastValue; ++c) total.At(c).Text = kNoValue;
  } else {
    total.At(kHits).Text = CStr(totals.hits);
    total.At(kHitsPct).Text = "100%";
    if (timing) {
      total.At(kTime).Text = TimeText(totals.time);
      total.At(kTimePct).Text = "100%";
      total.At(kAverage).Text = TimeText(totals.time / totals.hits);
      total.At(bars).Text =
          BarText(GetBarLogValue(IsAverageMeasure(dit) ? totals.time / totals.hits : totals.time));
    } else {
      total.At(bars).Text = BarText(HitsBarLength(totals.hits));
    }
  }
  MarkTotalRow(total, t.ColumnCount(), bars);
}

}  // namespace

std::string LineChartName(std::int32_t lineId, std::int32_t numberOfZeros,
                          const std::string& text) {
  // The rightmost numberOfZeros characters of that many zeros and the ID.
  const std::string id = std::to_string(lineId);
  const std::size_t width = static_cast<std::size_t>(MaxLong2(numberOfZeros, 0));
  std::string name;
  name.reserve(width + 1 + 36);
  if (id.size() < width) name.append(width - id.size(), '0');
  name.append(id, id.size() > width ? id.size() - width : 0);
  name.push_back('-');
  // TruncateString(text, 33), without a temporary.
  if (text.size() > 36) {
    name.append(text, 0, 33).append("...");
  } else {
    name.append(text);
  }
  return name;
}

std::int32_t LineIdDigits(std::int32_t linesNumber) {
  // The integer part of the logarithm of linesNumber + 1, plus 1, as the
  // program always took it: just below a whole number where linesNumber + 1
  // is a power of ten, so that 99 lines take 2 digits and 100 take 3. That is
  // the digit count of the largest ID.
  return static_cast<std::int32_t>(std::to_string(MaxLong2(linesNumber, 1)).size());
}

GridBuild ShowLines(Workspace& ws, const GridSelection& sel, SortMemory& sort, bool fake) {
  const std::int32_t dit = sel.DisplayInfoType;
  const bool timing = dit != 4;
  GridBuild build;
  Table& t = build.Grid;
  t.ImageList = ImageListKind::Nothing;
  const LineColumns cols = AddLineColumns(t, sel, fake);
  const int sortColumn = timing ? kTime : kHits;
  if (fake) {
    Row& row = t.AddRow("", " ");
    row.At(cols.lineId).Text = " ";
    FinishGrid(t, sort, sortColumn);
    return build;
  }

  const Project& project = ws.Project(sel.cp);
  const Session& session = ws.Session(sel.cs);
  const std::int32_t linesNumber = project.LinesNumber;
  const std::int32_t numberOfZeros = LineIdDigits(linesNumber);
  Prompter& prompter = ws.prompter();
  if (linesNumber != 0) prompter.SetProgressMax(static_cast<long>(linesNumber * 1.5));
  prompter.ShowProgress(linesNumber > 200 && sel.cPro == 0);
  LineProgress progress(prompter, linesNumber);

  // The rows are counted first so that a table of many thousand lines is
  // built in place.
  std::vector<std::int32_t> shownLines;
  for (std::int32_t i = 1; i <= linesNumber; ++i) {
    if (ShouldDisplayLine(project, session, sel, i)) shownLines.push_back(i);
  }
  t.Rows().reserve(shownLines.size() + 1);
  ChartArrays& chart = build.Arrays;
  chart.ChartArrayBar.reserve(shownLines.size());
  chart.ChartArrayPie.reserve(shownLines.size());
  LineTotals totals;
  auto next = shownLines.begin();
  for (std::int32_t i = 1; i <= linesNumber; ++i) {
    progress.Line(i);
    if (next == shownLines.end() || *next != i) continue;
    ++next;
    const CodeLine& line = project.CodeLine(i);
    const CodeLineValue& v = session.CodeLineValue(i);
    const double value = !timing ? v.Hits : (line.IsProcedureExit ? 0 : TimingMeasure(v, dit));
    chart.Add(LineChartName(i, numberOfZeros, line.Text), value, timing ? 1000000 * value : value);

    const std::int32_t proc = line.BelongToProcedure;
    const Procedure* procedure = proc != 0 ? &project.Procedure(proc) : nullptr;
    Row& row = t.AddRow("", procedure ? project.Module(procedure->BelongToModule).Name : "");
    row.Tag = i;
    if (procedure) {
      row.At(kProcedure).Text = procedure->Name;
      if (cols.project != 0) {
        row.At(cols.project).Text = ModuleProjectName(ws, project, procedure->BelongToModule);
      }
    }
    if (procedure && procedure->IsDead) {
      MarkDeadRow(row, kHits, timing ? kAverage : kHitsPct, cols.bars);
    } else if (v.Hits != 0) {
      FillLineValues(row, line, v, dit, cols.bars, totals);
    } else {
      row.At(kHits).Text = kNoValue;
      if (timing) {
        row.At(kTime).Text = kNoValue;
        row.At(kAverage).Text = kNoValue;
      }
    }
    row.At(cols.line).Text = line.Text;
    row.At(cols.lineId).Text = std::to_string(i);
  }
  progress.Mark(1.0);

  for (Row& row : t.Rows()) {
    if (!row.Text(kHitsPct).empty()) continue;  // a dead row keeps its blanks
    row.At(kHitsPct).Text = ShareText(row.Text(kHits), totals.hits);
    if (timing) row.At(kTimePct).Text = ShareText(row.Text(kTime), totals.time);
  }
  if (t.RowCount() > 0) AddLineTotal(t, totals, dit, cols.bars);

  progress.Mark(1.2);
  FitColumnWidths(t);
  progress.Mark(1.4);
  SortTable(t, sort, sortColumn, kSortDescending);
  t.SelectedRow = t.RowCount() > 0 ? 1 : 0;

  if (chart.ChartArrayBar.empty()) {
    build.Chart = ChartUpdate::Reset;
  } else {
    chart.SetTitles(LineChartTitle(dit), LineChartTitle(dit));
    build.Chart = ChartUpdate::Draw;
  }
  prompter.SetProgressValue(0);
  prompter.ShowProgress(false);
  return build;
}

GridBuild ShowLinesUnavailable(const std::string& arg, const std::string& arg2) {
  GridBuild build;
  Table& t = build.Grid;
  t.ImageList = ImageListKind::Nothing;
  t.AddColumn("", Alignment::Left, 150);
  t.AddRow("", arg);
  t.AddRow("", arg2);
  FitColumnWidths(t);
  build.Chart = ChartUpdate::Reset;
  return build;
}

}  // namespace zol
