// The compared grids: one run of columns per compared session, side by side.

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "base/vb_format.h"
#include "compare/global_sessions.h"
#include "grid/chart_titles.h"
#include "grid/compared_grid.h"
#include "grid/grid_builders.h"
#include "grid/grid_frame.h"

namespace zol {

namespace {

std::string QualifiedName(const std::string& module, const std::string& procedure) {
  return module + "." + procedure;
}

// Time cells of a run: the measure's total and average.
void SetTimes(const ComparedGrid& g, RowRef row, int k, int first, double total, double average) {
  row.SetTime(g.RunColumn(k, first), total);
  row.SetTime(g.RunColumn(k, first + 1), average);
}

// A session's whole time for the total row: that of the selected procedure or
// module, or of the whole session.
double SelectionTime(const ComparedGrid& g, int k, const Selection& sel, bool procedureLevel) {
  if (procedureLevel && sel.procedure != 0) {
    const ProcedureValue* p = g.Procedure(k, sel.procedure);
    return p ? p->TotalTime : 0;
  }
  if (sel.module != 0) {
    const ModuleValue* m = g.Module(k, sel.module);
    return m ? m->TotalTime : 0;
  }
  return g.Own(k).SessionValue.TotalTime;
}

void SetPercentOrEmpty(RowRef row, int column, double part, double whole) {
  if (whole != 0) row.SetPercent(column, part / whole);
}

// A row for each procedure of the selection that has a value of kind `Obj` in
// a compared session: module and procedure names, the ID as tag, and a chart
// row named "module.procedure". `fill(row, chartValues, procedure, id)` puts
// in the sessions' values; the chart row follows the row.
template <typename Fill>
void AddProcedureRows(ComparedGrid& g, const Selection& sel, std::int32_t Obj, Fill fill) {
  const Project& project = g.ShownProject();
  for (std::int32_t i = 1; i <= project.ProceduresNumber; ++i) {
    const Procedure& proc = project.Procedure(i);
    if (sel.module != 0 && proc.BelongToModule != sel.module) continue;
    if (proc.BelongToModule == 0 || !g.Needed(i, Obj)) continue;  // no procedure, no row
    const std::string& moduleName = project.Module(proc.BelongToModule).Name;
    RowRef row = g.AddRow(moduleName);
    row.SetTag(i);
    row.SetText(2, proc.Name);
    ChartRow chart{QualifiedName(moduleName, proc.Name), std::vector<double>(g.SessionCount(), 0)};
    fill(row, chart.Values, proc, i);
    g.Chart().ChartArrayBar.push_back(std::move(chart));
  }
}

// A row for every module of the shown project, with its icon (the table takes
// module icons), the ID as tag, and a chart row of its name.
// `fill(row, chartValues, id)` puts in the sessions' values.
template <typename Fill>
void AddModuleRows(ComparedGrid& g, Fill fill) {
  g.Grid().ImageList = ImageListKind::ModuleIcons;
  const Project& project = g.ShownProject();
  for (std::int32_t m = 1; m <= project.ModulesNumber; ++m) {
    const Module& module = project.Module(m);
    RowRef row = g.AddRow(module.Name, ModuleIcon(module));
    row.SetTag(m);
    ChartRow chart{module.Name, std::vector<double>(g.SessionCount(), 0)};
    fill(row, chart.Values, m);
    g.Chart().ChartArrayBar.push_back(std::move(chart));
  }
}

}  // namespace

GridBuild ShowCompareProceduresTiming(const Workspace& ws, const Selection& sel) {
  const std::int32_t dit = IndexOf(sel.measure);
  const bool child = dit > 1;
  ComparedGrid g(ws, sel, {"Module", "Procedure"},
                 {child ? "Child Tot." : "Tot. Time", child ? "Child Avg." : "Avg. Time"});

  const int n = g.SessionCount();
  std::vector<double> hits(n, 0);
  std::vector<double> totalTime(n, 0);
  AddProcedureRows(g, sel, kNeededProcedure,
                   [&](RowRef row, std::vector<double>& chart, const Procedure&, std::int32_t i) {
                     for (int k = 0; k < n; ++k) {
                       const ProcedureValue* pv = g.Procedure(k, i);
                       if (!pv) continue;
                       chart[k] = TimingMeasure(*pv, dit);
                       if (pv->Hits == 0) continue;
                       SetTimes(g, row, k, 0, child ? pv->ChildTotalTime : pv->TotalTime,
                                child ? pv->ChildAverageTime : pv->AverageTime);
                       hits[k] += pv->Hits;
                       totalTime[k] += DisplayedTime(child ? pv->ChildTotalTime : pv->TotalTime);
                     }
                   });

  if (g.Grid().RowCount() > 0 && dit <= 1) {
    RowRef total = g.AddTotalRow(2);
    for (int k = 0; k < n; ++k) {
      if (hits[k] == 0) continue;
      const double time = SelectionTime(g, k, sel, false);
      SetTimes(g, total, k, 0, time, time / hits[k]);
    }
  }
  return g.Finish(ProcedureChartTitle(dit), true);
}

GridBuild ShowCompareLines(const Workspace& ws, const Selection& sel) {
  const std::int32_t dit = IndexOf(sel.measure);
  const bool child = dit == 2 || dit == 3;
  ComparedGrid g(ws, sel, {"Module", "Procedure", "Line", "Line ID"},
                 {"Hits", child ? "Child Tot." : "Tot. Time", child ? "Child Avg." : "Avg. Time"});
  const Project& project = g.ShownProject();
  const std::int32_t numberOfZeros = LineIdDigits(project.LinesNumber);

  const int n = g.SessionCount();
  std::vector<double> hits(n, 0);
  for (std::int32_t i = 1; i <= project.LinesNumber; ++i) {
    const CodeLine& line = project.CodeLine(i);
    const std::int32_t proc = line.BelongToProcedure;
    const zol::Procedure* procedure =
        project.Procedure.InRange(proc) ? &project.Procedure(proc) : nullptr;
    const bool inSelection = sel.procedure != 0 ? proc == sel.procedure
                             : sel.module != 0
                                 ? procedure && procedure->BelongToModule == sel.module
                                 : true;
    if (!inSelection || procedure == nullptr || !g.Needed(i, kNeededLine)) continue;

    RowRef row = g.AddRow(procedure ? project.Module(procedure->BelongToModule).Name : "");
    row.SetTag(i);
    if (procedure) row.SetText(2, procedure->Name);
    row.SetText(3, line.Text);
    row.SetCount(4, i);
    ChartRow chart{LineChartName(i, numberOfZeros, line.Text), std::vector<double>(n, 0)};
    int zeros = 0;
    for (int k = 0; k < n; ++k) {
      const CodeLineValue* v = g.Line(k, i);
      if (v && dit == 4) chart.Values[k] = v->Hits;
      if (v && dit != 4 && !line.IsProcedureExit) chart.Values[k] = TimingMeasure(*v, dit);
      if (chart.Values[k] == 0) ++zeros;
      if (!v || v->Hits == 0) continue;
      row.SetCount(g.RunColumn(k, 0), v->Hits);
      hits[k] += v->Hits;
      if (line.IsProcedureExit) {
        // The end of a procedure has no time of its own.
        row.SetLiteral(g.RunColumn(k, 1), kNoValue);
        row.SetLiteral(g.RunColumn(k, 2), kNoValue);
      } else {
        SetTimes(g, row, k, 1, child ? v->ChildTotalTime : v->TotalTime,
                 child ? v->ChildAverageTime : v->AverageTime);
      }
    }
    // A line with nothing to plot in any session stays out of the chart.
    if (zeros < n) g.Chart().ChartArrayBar.push_back(std::move(chart));
  }

  if (g.Grid().RowCount() > 0 && dit <= 1) {
    RowRef total = g.AddTotalRow(2);
    for (int k = 0; k < n; ++k) {
      if (hits[k] == 0) continue;
      const double time = SelectionTime(g, k, sel, true);
      total.SetText(g.RunColumn(k, 0), CStr(hits[k]));
      SetTimes(g, total, k, 1, time, time / hits[k]);
    }
  }
  return g.Finish(LineChartTitle(dit), true);
}

GridBuild ShowCompareProceduresCoverage(const Workspace& ws, const Selection& sel) {
  ComparedGrid g(ws, sel, {"Module", "Procedure"}, {"Coverage", "Critical Cov."});

  const int n = g.SessionCount();
  std::vector<double> lines(n, 0);
  std::vector<double> criticalHits(n, 0);
  std::vector<double> criticalLines(n, 0);
  AddProcedureRows(
      g, sel, kNeededCoverage,
      [&](RowRef row, std::vector<double>& chart, const Procedure& proc, std::int32_t i) {
        for (int k = 0; k < n; ++k) {
          const ProcedureValue* pv = g.Procedure(k, i);
          if (!pv || pv->TotalLines == 0) continue;
          chart[k] = std::floor(100 * pv->Coverage);
          row.SetPercent(g.RunColumn(k, 0), pv->Coverage);
          lines[k] += pv->TotalLines;
          if (proc.IsCritical) {
            row.SetPercent(g.RunColumn(k, 1), pv->Coverage);
            criticalHits[k] += pv->HitLines;
            criticalLines[k] += pv->TotalLines;
          }
        }
      });

  if (g.Grid().RowCount() > 0) {
    RowRef total = g.AddTotalRow(2);
    for (int k = 0; k < n; ++k) {
      if (lines[k] == 0) continue;
      const ModuleValue* rec = sel.module != 0 ? g.Module(k, sel.module) : &g.Own(k).SessionValue;
      if (rec && rec->TotalLines != 0) total.SetPercent(g.RunColumn(k, 0), rec->LineCoverage);
      SetPercentOrEmpty(total, g.RunColumn(k, 1), criticalHits[k], criticalLines[k]);
    }
  }
  return g.Finish("Procedure coverage", true);
}

GridBuild ShowCompareModulesTiming(const Workspace& ws, const Selection& sel) {
  ComparedGrid g(ws, sel, {"Module"}, {"Tot.Time"});

  const int n = g.SessionCount();
  std::vector<bool> timed(n, false);
  AddModuleRows(g, [&](RowRef row, std::vector<double>& chart, std::int32_t m) {
    for (int k = 0; k < n; ++k) {
      const ModuleValue* mv = g.Module(k, m);
      if (!mv) continue;
      chart[k] = mv->TotalTime;
      if (mv->HitProcedures == 0) continue;
      row.SetTime(g.RunColumn(k, 0), mv->TotalTime);
      timed[k] = true;
    }
  });

  if (g.Grid().RowCount() > 0) {
    RowRef total = g.AddTotalRow(1, "SESSION");
    for (int k = 0; k < n; ++k) {
      if (timed[k]) total.SetTime(g.RunColumn(k, 0), g.Own(k).SessionValue.TotalTime);
    }
  }
  return g.Finish(kModuleTimeTitle, false);
}

GridBuild ShowCompareModulesCoverage(const Workspace& ws, const Selection& sel) {
  ComparedGrid g(ws, sel, {"Module"}, {"Line Cov.", "Proc. Cov.", "Crit. Cov."});

  const auto fill = [&](RowRef row, int k, const ModuleValue& v) {
    SetPercentOrEmpty(row, g.RunColumn(k, 0), v.HitLines, v.TotalLines);
    SetPercentOrEmpty(row, g.RunColumn(k, 1), v.HitProcedures, v.TotalProcedures);
    SetPercentOrEmpty(row, g.RunColumn(k, 2), v.CriticalHitLines, v.CriticalTotalLines);
  };
  const int n = g.SessionCount();
  AddModuleRows(g, [&](RowRef row, std::vector<double>& chart, std::int32_t m) {
    for (int k = 0; k < n; ++k) {
      const ModuleValue* mv = g.Module(k, m);
      if (!mv) continue;
      chart[k] = std::floor(100 * mv->LineCoverage);
      fill(row, k, *mv);
    }
  });

  if (g.Grid().RowCount() > 0) {
    RowRef total = g.AddTotalRow(1, "SESSION");
    for (int k = 0; k < n; ++k) fill(total, k, g.Own(k).SessionValue);
  }
  return g.Finish(kModuleCoverageTitle, true);
}

}  // namespace zol
