// The Lines tab: one row for each probed line with its values, and the
// notice that stands in its place where lines can't be listed.

#include <algorithm>
#include <charconv>
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

LineColumns AddLineColumns(Table& t, const Selection& sel, bool fake) {
  const std::int32_t dit = IndexOf(sel.measure);
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

bool ShouldDisplayLine(const Project& project, const Session& session, const Selection& sel,
                       std::int32_t i) {
  const CodeLine& line = project.CodeLine(i);
  // A line ID left without a procedure in the sources has no row.
  if (line.BelongToProcedure == 0) return false;
  bool shown;
  if (sel.procedure != 0) {
    shown = line.BelongToProcedure == sel.procedure;
  } else if (sel.module != 0) {
    shown = line.BelongToProcedure != 0 &&
            project.Procedure(line.BelongToProcedure).BelongToModule == sel.module &&
            session.CodeLineValue(i).Hits != 0;
  } else {
    shown = session.CodeLineValue(i).Hits != 0;
  }
  // The end of a procedure has no time of its own; it counts for coverage only.
  if (!sel.coverage() && line.IsProcedureExit) return false;
  return shown;
}

// Progress of the row loop: on every line of a tiny project, otherwise in
// twenty steps.
class LineProgress {
 public:
  LineProgress(Prompter& prompter, std::int32_t linesNumber)
      : prompter_(prompter),
        linesNumber_(linesNumber),
        step_(linesNumber < 10
                  ? 1
                  : MaxLong2(1, static_cast<std::int32_t>(RoundHalfEven(linesNumber / 20.0)))),
        untilNext_(step_) {}

  // Called for line 1, 2, ... in turn; reports lines step_, 2 * step_, ...
  // (a count down spares a division on each of a million lines).
  void Line(std::int32_t i) {
    if (--untilNext_ > 0) return;
    prompter_.SetProgressValue(i);
    untilNext_ = step_;
  }
  void Mark(double fraction) {
    prompter_.SetProgressValue(static_cast<long>(linesNumber_ * fraction));
  }

 private:
  Prompter& prompter_;
  std::int32_t linesNumber_;
  std::int32_t step_;
  std::int32_t untilNext_;
};

// The names of a procedure's lines, kept once in the table: its module's, its
// own, and that of the project its module came from.
struct ProcedureTexts {
  bool made = false;
  TextRef module;
  TextRef procedure;
  TextRef project;
};

class ProcedureTextCache {
 public:
  ProcedureTextCache(Table& table, const Workspace& ws, const Project& project)
      : table_(table),
        ws_(ws),
        project_(project),
        texts_(static_cast<std::size_t>(std::max(project.Procedure.UBound(), 0)) + 1) {}

  const ProcedureTexts& For(std::int32_t id, const Procedure& procedure) {
    ProcedureTexts& texts = texts_.at(static_cast<std::size_t>(id));
    if (!texts.made) {
      texts.module = table_.AddText(project_.Module(procedure.BelongToModule).Name);
      texts.procedure = table_.AddText(procedure.Name);
      texts.project = table_.AddText(ModuleProjectName(ws_, project_, procedure.BelongToModule));
      texts.made = true;
    }
    return texts;
  }

 private:
  Table& table_;
  const Workspace& ws_;
  const Project& project_;
  std::vector<ProcedureTexts> texts_;
};

struct LineTotals {
  double hits = 0;
  double time = 0;
};

// Adds a listed line's values to the totals, in line order as the rows are
// listed: dead procedures and lines that never ran count for nothing, and
// the end of a procedure has hits but no time.
void AddToTotals(LineTotals& totals, const Procedure& procedure, const CodeLine& line,
                 const CodeLineValue& v, std::int32_t dit) {
  if (procedure.IsDead || v.Hits == 0) return;
  totals.hits += v.Hits;
  if (dit != 4 && !line.IsProcedureExit) {
    totals.time += DisplayedTime(IsChildMeasure(dit) ? v.ChildTotalTime : v.TotalTime);
  }
}

void FillLineValues(RowRef row, const CodeLine& line, const CodeLineValue& v, std::int32_t dit,
                    int bars) {
  row.SetCount(kHits, v.Hits);
  if (dit == 4) {
    row.SetBar(bars, HitsBarLength(v.Hits));
    return;
  }
  if (line.IsProcedureExit) {
    row.SetLiteral(kTime, kNoValue);
    row.SetLiteral(kAverage, kNoValue);
  } else {
    const bool child = IsChildMeasure(dit);
    const double time = child ? v.ChildTotalTime : v.TotalTime;
    row.SetTime(kTime, time);
    row.SetTime(kAverage, child ? v.ChildAverageTime : v.AverageTime);
  }
  row.SetBar(bars, GetBarLogValue(TimingMeasure(v, dit)));
}

void AddLineTotal(Table& t, const LineTotals& totals, std::int32_t dit, int bars) {
  const bool timing = dit != 4;
  RowRef total = AddTotalRow(t, kProcedure);
  const int lastValue = timing ? kAverage : kHitsPct;
  if (totals.hits == 0) {
    for (int c = kHits; c <= lastValue; ++c) total.SetLiteral(c, kNoValue);
  } else {
    total.SetText(kHits, CStr(totals.hits));
    total.SetLiteral(kHitsPct, kFullShare);
    if (timing) {
      total.SetTime(kTime, totals.time);
      total.SetLiteral(kTimePct, kFullShare);
      total.SetTime(kAverage, totals.time / totals.hits);
      total.SetBar(bars,
                   GetBarLogValue(IsAverageMeasure(dit) ? totals.time / totals.hits : totals.time));
    } else {
      total.SetBar(bars, HitsBarLength(totals.hits));
    }
  }
  MarkTotalRow(total, t.ColumnCount(), bars);
}

}  // namespace

void AppendLineChartName(std::string& name, std::int32_t lineId, std::int32_t numberOfZeros,
                         std::string_view text) {
  // The rightmost numberOfZeros characters of that many zeros and the ID.
  char digits[16];
  const auto end = std::to_chars(digits, digits + sizeof digits, lineId).ptr;
  const std::string_view id(digits, static_cast<std::size_t>(end - digits));
  const std::size_t width = static_cast<std::size_t>(MaxLong2(numberOfZeros, 0));
  if (id.size() < width) name.append(width - id.size(), '0');
  name.append(id.substr(id.size() > width ? id.size() - width : 0));
  name.push_back('-');
  // TruncateString(text, 33), without a temporary.
  if (text.size() > 36) {
    name.append(text.substr(0, 33)).append("...");
  } else {
    name.append(text);
  }
}

std::string LineChartName(std::int32_t lineId, std::int32_t numberOfZeros,
                          const std::string& text) {
  std::string name;
  name.reserve(static_cast<std::size_t>(MaxLong2(numberOfZeros, 0)) + 1 + 36);
  AppendLineChartName(name, lineId, numberOfZeros, text);
  return name;
}

std::int32_t LineIdDigits(std::int32_t linesNumber) {
  // The integer part of the logarithm of linesNumber + 1, plus 1, as the
  // program always took it: just below a whole number where linesNumber + 1
  // is a power of ten, so that 99 lines take 2 digits and 100 take 3. That is
  // the digit count of the largest ID.
  return static_cast<std::int32_t>(std::to_string(MaxLong2(linesNumber, 1)).size());
}

GridBuild ShowLines(Workspace& ws, const Selection& sel, SortMemory& sort, bool fake) {
  const std::int32_t dit = IndexOf(sel.measure);
  const bool timing = dit != 4;
  GridBuild build;
  Table& t = build.Grid;
  t.ImageList = ImageListKind::Nothing;
  const LineColumns cols = AddLineColumns(t, sel, fake);
  const int sortColumn = timing ? kTime : kHits;
  if (fake) {
    RowRef row = t.AddRow("", " ");
    row.SetText(cols.lineId, " ");
    FinishGrid(t, sort, sortColumn);
    return build;
  }

  const Project& project = ws.Project(sel.project);
  const Session& session = ws.Session(sel.session.sessionIndex());
  const std::int32_t linesNumber = project.LinesNumber;
  const std::int32_t numberOfZeros = LineIdDigits(linesNumber);
  Prompter& prompter = ws.prompter();
  if (linesNumber != 0) prompter.SetProgressMax(static_cast<long>(linesNumber * 1.5));
  prompter.ShowProgress(linesNumber > 200 && sel.procedure == 0);
  LineProgress progress(prompter, linesNumber);

  // The rows are counted first so that a table of many thousand lines is
  // built in place, and totalled so that each row gets its shares at once.
  std::vector<std::int32_t> shownLines;
  std::size_t lineTexts = 0;
  LineTotals totals;
  for (std::int32_t i = 1; i <= linesNumber; ++i) {
    if (!ShouldDisplayLine(project, session, sel, i)) continue;
    shownLines.push_back(i);
    const CodeLine& line = project.CodeLine(i);
    lineTexts += line.Text.size();
    AddToTotals(totals, project.Procedure(line.BelongToProcedure), line, session.CodeLineValue(i),
                dit);
  }
  t.Reserve(shownLines.size() + 1, lineTexts);
  ChartArrays& chart = build.Arrays;
  chart.PackedLines.reserve(shownLines.size());
  chart.PackedBar.reserve(shownLines.size());
  chart.PackedPie.reserve(shownLines.size());
  chart.PackedIdDigits = numberOfZeros;
  ProcedureTextCache procedureTexts(t, ws, project);
  auto next = shownLines.begin();
  for (std::int32_t i = 1; i <= linesNumber; ++i) {
    progress.Line(i);
    if (next == shownLines.end() || *next != i) continue;
    ++next;
    const CodeLine& line = project.CodeLine(i);
    const CodeLineValue& v = session.CodeLineValue(i);

    // A line's procedure always exists: ShouldDisplayLine leaves out the
    // others. Its names are kept once in the table for all of its lines.
    const std::int32_t proc = line.BelongToProcedure;
    const Procedure& procedure = project.Procedure(proc);
    const ProcedureTexts& names = procedureTexts.For(proc, procedure);
    RowRef row = t.AddRow("", "");
    row.SetText(kModule, names.module);
    row.SetTag(i);
    row.SetText(kProcedure, names.procedure);
    if (cols.project != 0) row.SetText(cols.project, names.project);
    if (procedure.IsDead) {
      MarkDeadRow(t, row, kHits, timing ? kAverage : kHitsPct, cols.bars);
    } else if (v.Hits != 0) {
      FillLineValues(row, line, v, dit, cols.bars);
    } else {
      row.SetLiteral(kHits, kNoValue);
      if (timing) {
        row.SetLiteral(kTime, kNoValue);
        row.SetLiteral(kAverage, kNoValue);
      }
    }
    if (!procedure.IsDead) {
      SetShare(t, row, kHitsPct, row.CellAt(kHits), totals.hits);
      if (timing) SetShare(t, row, kTimePct, row.CellAt(kTime), totals.time);
    }
    const TextRef text = t.AddText(line.Text);
    row.SetText(cols.line, text);
    row.SetCount(cols.lineId, i);
    const double value = !timing ? v.Hits : (line.IsProcedureExit ? 0 : TimingMeasure(v, dit));
    chart.AddPackedLine(i, text, value, timing ? 1000000 * value : value);
  }
  progress.Mark(1.0);

  if (t.RowCount() > 0) AddLineTotal(t, totals, dit, cols.bars);

  progress.Mark(1.2);
  FinishGrid(t, sort, sortColumn);

  // The chart's names are made from the table's texts, which no longer grow.
  chart.PackedTexts = t.Texts();
  if (!chart.HasBarItems()) {
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
