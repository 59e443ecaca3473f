// The coverage tables of procedures, modules and projects: how much of the
// code ran. Bars are linear here, a full bar being all lines hit.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "base/vb_format.h"
#include "grid/bars.h"
#include "grid/chart_titles.h"
#include "grid/grid_builders.h"
#include "grid/grid_frame.h"

namespace zol {

namespace {

constexpr char kCriticalHeader[] = "Critical Cov.";

// A count of a record, or "-" when it is 0.
void SetCountOrNone(RowRef row, int column, std::int32_t n) {
  if (n == 0) {
    row.SetLiteral(column, kNoValue);
  } else {
    row.SetCount(column, n);
  }
}

// A sum, or "-" when it is 0.
void SetSumOrNone(RowRef row, int column, double n) {
  if (n == 0) {
    row.SetLiteral(column, kNoValue);
  } else {
    row.SetText(column, CStr(n));
  }
}

// What is left to cover, in 64 bits: counts from a damaged file may be as
// far apart as two 32-bit numbers can be.
void SetLeftCount(RowRef row, int column, std::int32_t total, std::int32_t hit) {
  row.SetCount(column, std::int64_t{total} - hit);
}

// A share as a percentage, or "-" when there is nothing to share.
void SetShareOrNone(RowRef row, int column, double part, double whole) {
  if (whole == 0) {
    row.SetLiteral(column, kNoValue);
  } else {
    row.SetPercent(column, part / whole);
  }
}

// A coverage in whole percent, as the bar chart plots it.
double WholePercent(double fraction) {
  return std::floor(100 * fraction);
}

// The critical coverage column where the project has critical code; 0 without.
int AddCriticalColumn(Table& t, bool containsCritical) {
  return containsCritical ? t.AddColumn(kCriticalHeader, Alignment::Right) : 0;
}

// The line and procedure columns of the module and project tables.
void AddCoverageColumns(Table& t) {
  AddValueColumns(t, {"# Lines", "Hit Lines", "Line Coverage", "Left Lines", "# Proc.", "Hit Proc.",
                      "Proc. Coverage", "Left Proc."});
}

struct CriticalSums {
  double hits = 0;
  double lines = 0;
  void Set(RowRef row, int column) const { SetShareOrNone(row, column, hits, lines); }
};

// Procedures: columns of the table.
enum ProcCol { kPModule = 1, kPProcedure, kPHits, kPLines, kPHitLines, kPCoverage, kPLeft };

void FillProcedureCoverage(RowRef row, const Procedure& proc, const ProcedureValue& pv,
                           int critical, int bars, double& totalHits, CriticalSums& sums) {
  SetCountOrNone(row, kPHits, pv.Hits);
  row.SetCount(kPLines, pv.TotalLines);
  SetCountOrNone(row, kPHitLines, pv.HitLines);
  row.SetPercent(kPCoverage, pv.Coverage);
  SetLeftCount(row, kPLeft, pv.TotalLines, pv.HitLines);
  totalHits += pv.Hits;
  if (critical != 0) {
    if (proc.IsCritical) {
      row.SetPercent(critical, pv.Coverage);
      sums.hits += pv.HitLines;
      sums.lines += pv.TotalLines;
    } else {
      row.SetLiteral(critical, kNoValue);
    }
  }
  row.SetBar(bars, LinearBarLength(pv.HitLines, pv.TotalLines));
}

void AddProcedureCoverageTotal(Table& t, const ModuleValue& rec, double totalHits,
                               const CriticalSums& sums, int critical, int bars) {
  RowRef total = AddTotalRow(t, kPProcedure);
  for (int c = kPHits; c <= kPLeft; ++c) total.SetLiteral(c, kNoValue);
  total.SetLiteral(kPLines, "0");
  if (rec.TotalLines != 0) {
    SetSumOrNone(total, kPHits, totalHits);
    total.SetCount(kPLines, rec.TotalLines);
    SetCountOrNone(total, kPHitLines, rec.HitLines);
    total.SetPercent(kPCoverage, rec.LineCoverage);
    SetLeftCount(total, kPLeft, rec.TotalLines, rec.HitLines);
    total.SetBar(bars, static_cast<std::int32_t>(std::clamp<double>(
                           RoundHalfEven(kMaxBarLength * rec.LineCoverage), 0, kMaxBarLength)));
  }
  if (critical != 0) sums.Set(total, critical);
  MarkTotalRow(total, t.ColumnCount(), bars);
}

// Modules: columns of the table.
enum ModCol {
  kMModule = 1,
  kMLines,
  kMHitLines,
  kMLineCoverage,
  kMLeftLines,
  kMProcedures,
  kMHitProcedures,
  kMProcCoverage,
  kMLeftProcedures
};

// The line and procedure columns of a module row, or of the total row from
// the session's record.
void FillModuleCoverage(RowRef row, const ModuleValue& mv, int bars) {
  if (mv.TotalLines != 0) {
    row.SetCount(kMLines, mv.TotalLines);
    SetCountOrNone(row, kMHitLines, mv.HitLines);
    row.SetPercent(kMLineCoverage, static_cast<double>(mv.HitLines) / mv.TotalLines);
    SetLeftCount(row, kMLeftLines, mv.TotalLines, mv.HitLines);
    row.SetBar(bars, LinearBarLength(mv.HitLines, mv.TotalLines));
  } else {
    for (int c = kMLines; c <= kMLeftLines; ++c) row.SetLiteral(c, kNoValue);
  }
  if (mv.TotalProcedures != 0) {
    row.SetCount(kMProcedures, mv.TotalProcedures);
    SetCountOrNone(row, kMHitProcedures, mv.HitProcedures);
    row.SetPercent(kMProcCoverage, static_cast<double>(mv.HitProcedures) / mv.TotalProcedures);
    SetLeftCount(row, kMLeftProcedures, mv.TotalProcedures, mv.HitProcedures);
  } else {
    for (int c = kMProcedures; c <= kMLeftProcedures; ++c) row.SetLiteral(c, kNoValue);
  }
}

// The critical cell of a module or project: "-" below one critical line.
void SetCritical(RowRef row, int column, const ModuleValue& v, CriticalSums& sums) {
  sums.hits += v.CriticalHitLines;
  sums.lines += v.CriticalTotalLines;
  if (v.CriticalTotalLines < 1) {
    row.SetLiteral(column, kNoValue);
  } else {
    row.SetPercent(column, static_cast<double>(v.CriticalHitLines) / v.CriticalTotalLines);
  }
}

}  // namespace

GridBuild ShowProceduresCoverage(const Workspace& ws, const Selection& sel, SortMemory& sort) {
  const Project& project = ws.Project(sel.project);
  const Session& session = ws.Session(sel.session.sessionIndex());

  GridBuild build;
  Table& t = StartTable(build, ImageListKind::Nothing, {"Module", "Procedure"});
  AddValueColumns(t, {"Hits", "# Lines", "Hit Lines", "Coverage", "Left Lines"});
  const int critical = AddCriticalColumn(t, project.ContainsCritical);
  const int lastValue = critical != 0 ? critical : kPLeft;
  const FrameColumns cols = AddFrameColumns(t, sel, 7);
  const int bars = cols.bars;

  ChartArrays& chart = build.Arrays;
  double totalHits = 0;
  CriticalSums sums;
  for (std::int32_t i = 1; i <= project.ProceduresNumber; ++i) {
    const Procedure& proc = project.Procedure(i);
    const ProcedureValue& pv = session.ProcedureValue(i);
    const bool shown = sel.module != 0 ? proc.BelongToModule == sel.module : pv.TotalLines != 0;
    if (!shown || proc.BelongToModule == 0) continue;  // an ID without a procedure
    chart.Add(proc.Name, WholePercent(pv.Coverage), pv.Hits);

    RowRef row = AddProcedureRow(t, ws, project, i, cols.project);
    if (proc.IsDead) {
      MarkDeadRow(t, row, kPHits, lastValue, 0);
      if (critical != 0 && proc.IsCritical) row.SetLiteral(critical, kNoValue);
    } else if (pv.TotalLines != 0) {
      FillProcedureCoverage(row, proc, pv, critical, bars, totalHits, sums);
    } else {
      for (int c = kPHits; c <= lastValue; ++c) row.SetLiteral(c, kNoValue);
      row.SetLiteral(kPLines, "0");
    }
  }

  if (t.RowCount() > 0) {
    const ModuleValue& rec =
        sel.module == 0 ? session.SessionValue : session.ModuleValue(sel.module);
    AddProcedureCoverageTotal(t, rec, totalHits, sums, critical, bars);
  }
  FinishWithChart(build, sort, kPCoverage, "Procedure Coverage", "Procedure Hits (1 call = 1 hit)");
  return build;
}

GridBuild ShowModulesCoverage(const Workspace& ws, const Selection& sel, SortMemory& sort) {
  const Project& project = ws.Project(sel.project);
  const Session& session = ws.Session(sel.session.sessionIndex());

  GridBuild build;
  Table& t = StartTable(build, ImageListKind::ModuleIcons, {"Module"});
  AddCoverageColumns(t);
  const int critical = AddCriticalColumn(t, project.ContainsCritical);
  const FrameColumns cols = AddFrameColumns(t, sel, 5);
  const int bars = cols.bars;

  ChartArrays& chart = build.Arrays;
  CriticalSums sums;
  for (std::int32_t i = 1; i <= project.ModulesNumber; ++i) {
    const ModuleValue& mv = session.ModuleValue(i);
    chart.Add(project.Module(i).Name, WholePercent(mv.LineCoverage), mv.HitLines);

    RowRef row = AddModuleRow(t, ws, project, i, cols.project);
    FillModuleCoverage(row, mv, bars);
    if (critical != 0 && mv.TotalLines != 0) SetCritical(row, critical, mv, sums);
  }

  if (t.RowCount() > 0) {
    RowRef total = AddTotalRow(t, kMModule, "SESSION");
    FillModuleCoverage(total, session.SessionValue, bars);
    if (critical != 0) sums.Set(total, critical);
    MarkTotalRow(total, t.ColumnCount(), bars);
  }
  FinishWithChart(build, sort, kMLineCoverage, kModuleCoverageTitle,
                  "Module Hits (1 line execution = 1 hit)");
  return build;
}

GridBuild ShowProjectsCoverage(const Workspace& ws, const Selection& sel, SortMemory& sort) {
  enum {
    kProject = 1,
    kModules,
    kLines,
    kHitLines,
    kLineCoverage,
    kLeftLines,
    kProcedures,
    kHitProcedures,
    kProcCoverage,
    kLeftProcedures
  };
  const std::vector<std::int32_t> list = ProjectTableSessions(ws, sel);
  bool hasCritical = false;
  for (const std::int32_t s : list) {
    hasCritical = hasCritical || ws.Project(ws.Session(s).Project).ContainsCritical;
  }

  GridBuild build;
  Table& t = StartTable(build, ImageListKind::Nothing, {"Project"});
  AddValueColumns(t, {"# Modules"});
  AddCoverageColumns(t);
  const int critical = AddCriticalColumn(t, hasCritical);
  const int bars = AddBarsColumn(t, 6);

  // Fills the columns of a project row, or of the total row from the sums.
  const auto fill = [&](RowRef row, double modules, double lines, double hitLines,
                        double procedures, double hitProcedures) {
    row.SetText(kModules, CStr(modules));
    row.SetText(kLines, CStr(lines));
    row.SetText(kHitLines, CStr(hitLines));
    if (lines != 0) {
      row.SetPercent(kLineCoverage, hitLines / lines);
      row.SetBar(bars, LinearBarLength(hitLines, lines));
    } else {
      row.SetLiteral(kLineCoverage, kNoValue);
    }
    row.SetText(kLeftLines, CStr(lines - hitLines));
    row.SetText(kProcedures, CStr(procedures));
    SetSumOrNone(row, kHitProcedures, hitProcedures);
    SetShareOrNone(row, kProcCoverage, hitProcedures, procedures);
    row.SetText(kLeftProcedures, CStr(procedures - hitProcedures));
  };

  ChartArrays& chart = build.Arrays;
  CriticalSums sums;
  double totalModules = 0;
  double totalLines = 0;
  double totalHitLines = 0;
  double totalProcedures = 0;
  double totalHitProcedures = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const Session& s = ws.Session(list[i]);
    const Project& p = ws.Project(s.Project);
    const ModuleValue& sv = s.SessionValue;
    chart.Add(s.Name, WholePercent(sv.LineCoverage), sv.HitLines);

    RowRef row = t.AddRow("", s.Name);
    row.SetTag(static_cast<std::int32_t>(i) + 1);
    fill(row, p.ModulesNumber, sv.TotalLines, sv.HitLines, sv.TotalProcedures, sv.HitProcedures);
    if (critical != 0 && p.ContainsCritical) SetCritical(row, critical, sv, sums);
    totalModules += p.ModulesNumber;
    totalLines += sv.TotalLines;
    totalHitLines += sv.HitLines;
    totalProcedures += sv.TotalProcedures;
    totalHitProcedures += sv.HitProcedures;
  }

  if (t.RowCount() > 0) {
    RowRef total = AddTotalRow(t, kProject);
    fill(total, totalModules, totalLines, totalHitLines, totalProcedures, totalHitProcedures);
    if (critical != 0) sums.Set(total, critical);
    MarkTotalRow(total, t.ColumnCount(), bars);
  }
  FinishWithChart(build, sort, kHitLines, "Project Coverage (% of executed lines)",
                  "Project Hits (1 line execution = 1 hit)");
  return build;
}

}  // namespace zol
