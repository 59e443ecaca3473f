// The timing tables of procedures, modules and projects.

#include <cstdint>
#include <string>
#include <vector>

#include "base/vb_format.h"
#include "grid/bars.h"
#include "grid/chart_titles.h"
#include "grid/grid_builders.h"
#include "grid/grid_frame.h"

namespace zol {

namespace {

// Procedures: columns of the table.
enum ProcCol { kPModule = 1, kPProcedure, kPHits, kPHitsPct, kPTime, kPTimePct, kPAverage };

void FillProcedureValues(Row& row, const ProcedureValue& pv, std::int32_t dit, int bars,
                         double& totalHits, double& totalTime) {
  const bool child = IsChildMeasure(dit);
  row.At(kPHits).Text = std::to_string(pv.Hits);
  row.At(kPTime).Text = TimeText(child ? pv.ChildTotalTime : pv.TotalTime);
  row.At(kPAverage).Text = TimeText(child ? pv.ChildAverageTime : pv.AverageTime);
  totalHits += pv.Hits;
  totalTime += CellValue(row.Text(kPTime));
  row.At(bars).Text = BarText(GetBarLogValue(TimingMeasure(pv, dit)));
}

void AddProcedureTotal(Table& t, double totalHits, double totalTime, std::int32_t dit, int bars) {
  Row& total = AddTotalRow(t, kPProcedure);
  if (totalHits == 0) {
    for (int c = kPHits; c <= kPAverage; ++c) total.At(c).Text = kNoValue;
  } else {
    total.At(kPHits).Text = CStr(totalHits);
    total.At(kPHitsPct).Text = "100%";
    total.At(kPTime).Text = TimeText(totalTime);
    total.At(kPTimePct).Text = "100%";
    total.At(kPAverage).Text = TimeText(totalTime / totalHits);
    total.At(bars).Text =
        BarText(GetBarLogValue(IsAverageMeasure(dit) ? totalTime / totalHits : totalTime));
  }
  MarkTotalRow(total, t.ColumnCount(), bars);
}

}  // namespace

GridBuild ShowProceduresTiming(const Workspace& ws, const GridSelection& sel, SortMemory& sort) {
  const std::int32_t dit = sel.DisplayInfoType;
  const bool child = IsChildMeasure(dit);
  const Project& project = ws.Project(sel.cp);
  const Session& session = ws.Session(sel.cs);

  GridBuild build;
  Table& t = StartTable(build, ImageListKind::Nothing, {"Module", "Procedure"});
  AddValueColumns(t, {"Hits", "% Hits", child ? "Child Tot. Time" : "Total Time", "% Time",
                      child ? "Child Avg. Time" : "Average Time"});
  const FrameColumns cols = AddFrameColumns(t, sel, IsAverageMeasure(dit) ? 8 : 6);
  const int bars = cols.bars;

  ChartArrays& chart = build.Arrays;
  double totalHits = 0;
  double totalTime = 0;
  for (std::int32_t i = 1; i <= project.ProceduresNumber; ++i) {
    const Procedure& proc = project.Procedure(i);
    const ProcedureValue& pv = session.ProcedureValue(i);
    const bool shown = sel.cMod != 0 ? proc.BelongToModule == sel.cMod : pv.Hits != 0;
    // An ID the instrumenter left without a procedure in the sources has no
    // module and no row, whatever the log counted for it.
    if (!shown || proc.BelongToModule == 0) continue;
    const double measure = TimingMeasure(pv, dit);
    chart.Add(proc.Name, measure, 1000000 * measure);

    Row& row = AddProcedureRow(t, ws, project, i, cols.project);
    if (proc.IsDead) {
      MarkDeadRow(row, kPHits, kPAverage, bars);
    } else if (pv.Hits != 0) {
      FillProcedureValues(row, pv, dit, bars, totalHits, totalTime);
    } else {
      row.At(kPHits).Text = kNoValue;
      row.At(kPTime).Text = kNoValue;
      row.At(kPAverage).Text = kNoValue;
    }
  }

  for (Row& row : t.Rows()) {
    if (!row.Text(kPHitsPct).empty()) continue;  // a dead row keeps its blanks
    row.At(kPHitsPct).Text = ShareText(row.Text(kPHits), totalHits);
    row.At(kPTimePct).Text = ShareText(row.Text(kPTime), totalTime);
  }
  if (t.RowCount() > 0) AddProcedureTotal(t, totalHits, totalTime, dit, bars);

  FinishWithChart(build, sort, kPTime, ProcedureChartTitle(dit), ProcedureChartTitle(dit));
  return build;
}

GridBuild ShowModulesTiming(const Workspace& ws, const GridSelection& sel, SortMemory& sort) {
  enum { kModule = 1, kProcedures, kTime, kTimePct };
  const Project& project = ws.Project(sel.cp);
  const Session& session = ws.Session(sel.cs);

  GridBuild build;
  Table& t = StartTable(build, ImageListKind::ModuleIcons, {"Module"});
  AddValueColumns(t, {"# Procedures", "Total Time", "% Time"});
  const FrameColumns cols = AddFrameColumns(t, sel, 4);
  const int bars = cols.bars;

  ChartArrays& chart = build.Arrays;
  double totalTime = 0;
  for (std::int32_t i = 1; i <= project.ModulesNumber; ++i) {
    const Module& module = project.Module(i);
    const ModuleValue& mv = session.ModuleValue(i);
    chart.Add(module.Name, mv.TotalTime, 1000000 * mv.TotalTime);

    Row& row = AddModuleRow(t, ws, project, i, cols.project);
    row.At(kProcedures).Text = std::to_string(mv.TotalProcedures);
    if (mv.TotalProcedures != 0) {
      if (mv.HitProcedures != 0) {
        row.At(kTime).Text = TimeText(mv.TotalTime);
        totalTime += CellValue(row.Text(kTime));
      } else {
        row.At(kTime).Text = kNoValue;
      }
      row.At(bars).Text = BarText(GetBarLogValue(mv.TotalTime));
    } else {
      for (int c = kProcedures; c <= kTimePct; ++c) row.At(c).Text = kNoValue;
    }
  }
  for (Row& row : t.Rows()) row.At(kTimePct).Text = ShareText(row.Text(kTime), totalTime);

  if (t.RowCount() > 0) {
    const ModuleValue& sv = session.SessionValue;
    Row& total = AddTotalRow(t, kModule, "SESSION");
    if (sv.TotalProcedures != 0) {
      total.At(kProcedures).Text = std::to_string(sv.TotalProcedures);
      total.At(kTime).Text = totalTime != 0 ? TimeText(totalTime) : kNoValue;
      total.At(kTimePct).Text = "100%";
      total.At(bars).Text = BarText(GetBarLogValue(totalTime));
    } else {
      for (int c = kProcedures; c <= kTimePct; ++c) total.At(c).Text = kNoValue;
    }
    MarkTotalRow(total, t.ColumnCount(), bars);
  }

  FinishWithChart(build, sort, kTime, kModuleTimeTitle, kModuleTimeTitle);
  return build;
}

GridBuild ShowProjectsTiming(const Workspace& ws, const GridSelection& sel, SortMemory& sort) {
  enum { kProject = 1, kModules, kProcedures, kLines, kTime, kTimePct };
  GridBuild build;
  Table& t = StartTable(build, ImageListKind::Unchanged, {"Project"});
  AddValueColumns(t, {"# Modules", "# Procedures", "# Lines", "Total Time", "% Time"});
  const int bars = AddBarsColumn(t, 6);

  ChartArrays& chart = build.Arrays;
  double totalModules = 0;
  double totalProcedures = 0;
  double totalLines = 0;
  double totalTime = 0;
  const std::vector<std::int32_t> list = ProjectTableSessions(ws, sel);
  for (std::size_t i = 0; i < list.size(); ++i) {
    const Session& s = ws.Session(list[i]);
    const Project& p = ws.Project(s.Project);
    const ModuleValue& sv = s.SessionValue;
    chart.Add(s.Name, sv.TotalTime, 1000000 * sv.TotalTime);

    Row& row = t.AddRow("", s.Name);
    row.Tag = static_cast<std::int32_t>(i) + 1;
    row.At(kModules).Text = std::to_string(p.ModulesNumber);
    row.At(kProcedures).Text = std::to_string(p.ProceduresNumber);
    row.At(kLines).Text = std::to_string(p.LinesNumber);
    totalModules += p.ModulesNumber;
    totalProcedures += p.ProceduresNumber;
    totalLines += p.LinesNumber;
    row.At(bars).Text = BarText(GetBarLogValue(sv.TotalTime));
    if (sv.HitProcedures != 0) {
      row.At(kTime).Text = TimeText(sv.TotalTime);
      totalTime += CellValue(row.Text(kTime));
    } else {
      row.At(kTime).Text = kNoValue;
    }
  }
  for (Row& row : t.Rows()) row.At(kTimePct).Text = ShareText(row.Text(kTime), totalTime);

  if (t.RowCount() > 0) {
    Row& total = AddTotalRow(t, kProject);
    total.At(kModules).Text = CStr(totalModules);
    total.At(kProcedures).Text = CStr(totalProcedures);
    total.At(kLines).Text = CStr(totalLines);
    if (totalTime == 0) {
      total.At(kTime).Text = kNoValue;
      total.At(kTimePct).Text = kNoValue;
    } else {
      total.At(kTime).Text = TimeText(totalTime);
      total.At(bars).Text = BarText(GetBarLogValue(totalTime));
      total.At(kTimePct).Text = "100%";
    }
    MarkTotalRow(total, t.ColumnCount(), bars);
  }

  FinishWithChart(build, sort, kLines, "Total Time spent in full project (seconds)",
                  "Total Time spent in full project (seconds)");
  return build;
}

}  // namespace zol
