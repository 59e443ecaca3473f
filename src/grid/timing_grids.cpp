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

void FillProcedureValues(RowRef row, const ProcedureValue& pv, std::int32_t dit, int bars,
                         double& totalHits, double& totalTime) {
  const bool child = IsChildMeasure(dit);
  const double time = child ? pv.ChildTotalTime : pv.TotalTime;
  row.SetCount(kPHits, pv.Hits);
  row.SetTime(kPTime, time);
  row.SetTime(kPAverage, child ? pv.ChildAverageTime : pv.AverageTime);
  totalHits += pv.Hits;
  totalTime += DisplayedTime(time);
  row.SetBar(bars, GetBarLogValue(TimingMeasure(pv, dit)));
}

void AddProcedureTotal(Table& t, double totalHits, double totalTime, std::int32_t dit, int bars) {
  RowRef total = AddTotalRow(t, kPProcedure);
  if (totalHits == 0) {
    for (int c = kPHits; c <= kPAverage; ++c) total.SetLiteral(c, kNoValue);
  } else {
    total.SetText(kPHits, CStr(totalHits));
    total.SetLiteral(kPHitsPct, kFullShare);
    total.SetTime(kPTime, totalTime);
    total.SetLiteral(kPTimePct, kFullShare);
    total.SetTime(kPAverage, totalTime / totalHits);
    total.SetBar(bars, GetBarLogValue(IsAverageMeasure(dit) ? totalTime / totalHits : totalTime));
  }
  MarkTotalRow(total, t.ColumnCount(), bars);
}

}  // namespace

GridBuild ShowProceduresTiming(const Workspace& ws, const Selection& sel, SortMemory& sort) {
  const std::int32_t dit = IndexOf(sel.measure);
  const bool child = IsChildMeasure(dit);
  const Project& project = ws.Project(sel.project);
  const Session& session = ws.Session(sel.session.sessionIndex());

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
    const bool shown = sel.module != 0 ? proc.BelongToModule == sel.module : pv.Hits != 0;
    // An ID the instrumenter left without a procedure in the sources has no
    // module and no row, whatever the log counted for it.
    if (!shown || proc.BelongToModule == 0) continue;
    const double measure = TimingMeasure(pv, dit);
    chart.Add(proc.Name, measure, 1000000 * measure);

    RowRef row = AddProcedureRow(t, ws, project, i, cols.project);
    if (proc.IsDead) {
      MarkDeadRow(t, row, kPHits, kPAverage, bars);
    } else if (pv.Hits != 0) {
      FillProcedureValues(row, pv, dit, bars, totalHits, totalTime);
    } else {
      row.SetLiteral(kPHits, kNoValue);
      row.SetLiteral(kPTime, kNoValue);
      row.SetLiteral(kPAverage, kNoValue);
    }
  }

  FillShares(t, {kPHitsPct, kPTimePct}, {kPHits, kPTime}, {totalHits, totalTime});
  if (t.RowCount() > 0) AddProcedureTotal(t, totalHits, totalTime, dit, bars);

  FinishWithChart(build, sort, kPTime, ProcedureChartTitle(dit), ProcedureChartTitle(dit));
  return build;
}

GridBuild ShowModulesTiming(const Workspace& ws, const Selection& sel, SortMemory& sort) {
  enum { kModule = 1, kProcedures, kTime, kTimePct };
  const Project& project = ws.Project(sel.project);
  const Session& session = ws.Session(sel.session.sessionIndex());

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

    RowRef row = AddModuleRow(t, ws, project, i, cols.project);
    row.SetCount(kProcedures, mv.TotalProcedures);
    if (mv.TotalProcedures != 0) {
      if (mv.HitProcedures != 0) {
        row.SetTime(kTime, mv.TotalTime);
        totalTime += DisplayedTime(mv.TotalTime);
      } else {
        row.SetLiteral(kTime, kNoValue);
      }
      row.SetBar(bars, GetBarLogValue(mv.TotalTime));
    } else {
      for (int c = kProcedures; c <= kTimePct; ++c) row.SetLiteral(c, kNoValue);
    }
  }
  for (int r = 1; r <= t.RowCount(); ++r) {
    RowRef row = t.EditRow(r);
    SetShare(t, row, kTimePct, row.CellAt(kTime), totalTime);
  }

  if (t.RowCount() > 0) {
    const ModuleValue& sv = session.SessionValue;
    RowRef total = AddTotalRow(t, kModule, "SESSION");
    if (sv.TotalProcedures != 0) {
      total.SetCount(kProcedures, sv.TotalProcedures);
      if (totalTime != 0) {
        total.SetTime(kTime, totalTime);
      } else {
        total.SetLiteral(kTime, kNoValue);
      }
      total.SetLiteral(kTimePct, kFullShare);
      total.SetBar(bars, GetBarLogValue(totalTime));
    } else {
      for (int c = kProcedures; c <= kTimePct; ++c) total.SetLiteral(c, kNoValue);
    }
    MarkTotalRow(total, t.ColumnCount(), bars);
  }

  FinishWithChart(build, sort, kTime, kModuleTimeTitle, kModuleTimeTitle);
  return build;
}

GridBuild ShowProjectsTiming(const Workspace& ws, const Selection& sel, SortMemory& sort) {
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

    RowRef row = t.AddRow("", s.Name);
    row.SetTag(static_cast<std::int32_t>(i) + 1);
    row.SetCount(kModules, p.ModulesNumber);
    row.SetCount(kProcedures, p.ProceduresNumber);
    row.SetCount(kLines, p.LinesNumber);
    totalModules += p.ModulesNumber;
    totalProcedures += p.ProceduresNumber;
    totalLines += p.LinesNumber;
    row.SetBar(bars, GetBarLogValue(sv.TotalTime));
    if (sv.HitProcedures != 0) {
      row.SetTime(kTime, sv.TotalTime);
      totalTime += DisplayedTime(sv.TotalTime);
    } else {
      row.SetLiteral(kTime, kNoValue);
    }
  }
  for (int r = 1; r <= t.RowCount(); ++r) {
    RowRef row = t.EditRow(r);
    SetShare(t, row, kTimePct, row.CellAt(kTime), totalTime);
  }

  if (t.RowCount() > 0) {
    RowRef total = AddTotalRow(t, kProject);
    total.SetText(kModules, CStr(totalModules));
    total.SetText(kProcedures, CStr(totalProcedures));
    total.SetText(kLines, CStr(totalLines));
    if (totalTime == 0) {
      total.SetLiteral(kTime, kNoValue);
      total.SetLiteral(kTimePct, kNoValue);
    } else {
      total.SetTime(kTime, totalTime);
      total.SetBar(bars, GetBarLogValue(totalTime));
      total.SetLiteral(kTimePct, kFullShare);
    }
    MarkTotalRow(total, t.ColumnCount(), bars);
  }

  FinishWithChart(build, sort, kLines, "Total Time spent in full project (seconds)",
                  "Total Time spent in full project (seconds)");
  return build;
}

}  // namespace zol
