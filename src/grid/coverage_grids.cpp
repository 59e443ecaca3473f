// The coverage tables of procedures, modules and projects: how much of the
// code ran. Bars are linear here, a full bar being all lines hit.

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

// A count, or "-" when it is 0.
std::string CountOrNone(double n) {
  return n == 0 ? std::string(kNoValue) : CStr(n);
}

// What is left to cover, in 64 bits: counts from a damaged file may be as
// far apart as two 32-bit numbers can be.
std::string LeftCount(std::int32_t total, std::int32_t hit) {
  return std::to_string(std::int64_t{total} - hit);
}

// A share as a percentage, or "-" when there is nothing to share.
std::string ShareOrNone(double part, double whole) {
  return whole == 0 ? std::string(kNoValue) : PercentText(part / whole);
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
  std::string Text() const { return ShareOrNone(hits, lines); }
};

// Procedures: columns of the table.
enum ProcCol { kPModule = 1, kPProcedure, kPHits, kPLines, kPHitLines, kPCoverage, kPLeft };

void FillProcedureCoverage(Row& row, const Procedure& proc, const ProcedureValue& pv, int critical,
                           int bars, double& totalHits, CriticalSums& sums) {
  row.At(kPHits).Text = CountOrNone(pv.Hits);
  row.At(kPLines).Text = std::to_string(pv.TotalLines);
  row.At(kPHitLines).Text = CountOrNone(pv.HitLines);
  row.At(kPCoverage).Text = PercentText(pv.Coverage);
  row.At(kPLeft).Text = LeftCount(pv.TotalLines, pv.HitLines);
  totalHits += pv.Hits;
  if (critical != 0) {
    if (proc.IsCritical) {
      row.At(critical).Text = row.Text(kPCoverage);
      sums.hits += pv.HitLines;
      sums.lines += pv.TotalLines;
    } else {
      row.At(critical).Text = kNoValue;
    }
  }
  row.At(bars).Text = BarText(LinearBarLength(pv.HitLines, pv.TotalLines));
}

void AddProcedureCoverageTotal(Table& t, const ModuleValue& rec, double totalHits,
                               const CriticalSums& sums, int critical, int bars) {
  Row& total = AddTotalRow(t, kPProcedure);
  for (int c = kPHits; c <= kPLeft; ++c) total.At(c).Text = kNoValue;
  total.At(kPLines).Text = "0";
  if (rec.TotalLines != 0) {
    total.At(kPHits).Text = CountOrNone(totalHits);
    total.At(kPLines).Text = std::to_string(rec.TotalLines);
    total.At(kPHitLines).Text = CountOrNone(rec.HitLines);
    total.At(kPCoverage).Text = PercentText(rec.LineCoverage);
    total.At(kPLeft).Text = LeftCount(rec.TotalLines, rec.HitLines);
    total.At(bars).Text =
        BarText(static_cast<std::int32_t>(RoundHalfEven(kMaxBarLength * rec.LineCoverage)));
  }
  if (critical != 0) total.At(critical).Text = sums.Text();
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
void FillModuleCoverage(Row& row, const ModuleValue& mv, int bars) {
  if (mv.TotalLines != 0) {
    row.At(kMLines).Text = std::to_string(mv.TotalLines);
    row.At(kMHitLines).Text = CountOrNone(mv.HitLines);
    row.At(kMLineCoverage).Text = PercentText(static_cast<double>(mv.HitLines) / mv.TotalLines);
    row.At(kMLeftLines).Text = LeftCount(mv.TotalLines, mv.HitLines);
    row.At(bars).Text = BarText(LinearBarLength(mv.HitLines, mv.TotalLines));
  } else {
    for (int c = kMLines; c <= kMLeftLines; ++c) row.At(c).Text = kNoValue;
  }
  if (mv.TotalProcedures != 0) {
    row.At(kMProcedures).Text = std::to_string(mv.TotalProcedures);
    row.At(kMHitProcedures).Text = CountOrNone(mv.HitProcedures);
    row.At(kMProcCoverage).Text =
        PercentText(static_cast<double>(mv.HitProcedures) / mv.TotalProcedures);
    row.At(kMLeftProcedures).Text = LeftCount(mv.TotalProcedures, mv.HitProcedures);
  } else {
    for (int c = kMProcedures; c <= kMLeftProcedures; ++c) row.At(c).Text = kNoValue;
  }
}

// The critical cell of a module or project: "-" below one critical line.
std::string CriticalText(const ModuleValue& v, CriticalSums& sums) {
  sums.hits += v.CriticalHitLines;
  sums.lines += v.CriticalTotalLines;
  if (v.CriticalTotalLines < 1) return kNoValue;
  return PercentText(static_cast<double>(v.CriticalHitLines) / v.CriticalTotalLines);
}

}  // namespace

GridBuild ShowProceduresCoverage(const Workspace& ws, const GridSelection& sel, SortMemory& sort) {
  const Project& project = ws.Project(sel.cp);
  const Session& session = ws.Session(sel.cs);

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
    const bool shown = sel.cMod != 0 ? proc.BelongToModule == sel.cMod : pv.TotalLines != 0;
    if (!shown || proc.BelongToModule == 0) continue;  // an ID without a procedure
    chart.Add(proc.Name, WholePercent(pv.Coverage), pv.Hits);

    Row& row = AddProcedureRow(t, ws, project, i, cols.project);
    if (proc.IsDead) {
      MarkDeadRow(row, kPHits, lastValue, 0);
      if (critical != 0 && proc.IsCritical) row.At(critical).Text = kNoValue;
    } else if (pv.TotalLines != 0) {
      FillProcedureCoverage(row, proc, pv, critical, bars, totalHits, sums);
    } else {
      for (int c = kPHits; c <= lastValue; ++c) row.At(c).Text = kNoValue;
      row.At(kPLines).Text = "0";
    }
  }

  if (t.RowCount() > 0) {
    const ModuleValue& rec = sel.cMod == 0 ? session.SessionValue : session.ModuleValue(sel.cMod);
    AddProcedureCoverageTotal(t, rec, totalHits, sums, critical, bars);
  }
  FinishWithChart(build, sort, kPCoverage, "Procedure Coverage", "Procedure Hits (1 call = 1 hit)");
  return build;
}

GridBuild ShowModulesCoverage(const Workspace& ws, const GridSelection& sel, SortMemory& sort) {
  const Project& project = ws.Project(sel.cp);
  const Session& session = ws.Session(sel.cs);

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

    Row& row = AddModuleRow(t, ws, project, i, cols.project);
    FillModuleCoverage(row, mv, bars);
    if (critical != 0 && mv.TotalLines != 0) row.At(critical).Text = CriticalText(mv, sums);
  }

  if (t.RowCount() > 0) {
    Row& total = AddTotalRow(t, kMModule, "SESSION");
    FillModuleCoverage(total, session.SessionValue, bars);
    if (critical != 0) total.At(critical).Text = sums.Text();
    MarkTotalRow(total, t.ColumnCount(), bars);
  }
  FinishWithChart(build, sort, kMLineCoverage, kModuleCoverageTitle,
                  "Module Hits (1 line execution = 1 hit)");
  return build;
}

GridBuild ShowProjectsCoverage(const Workspace& ws, const GridSelection& sel, SortMemory& sort) {
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
  const auto fill = [&](Row& row, double modules, double lines, double hitLines, double procedures,
                        double hitProcedures) {
    row.At(kModules).Text = CStr(modules);
    row.At(kLines).Text = CStr(lines);
    row.At(kHitLines).Text = CStr(hitLines);
    if (lines != 0) {
      row.At(kLineCoverage).Text = PercentText(hitLines / lines);
      row.At(bars).Text = BarText(LinearBarLength(hitLines, lines));
    } else {
      row.At(kLineCoverage).Text = kNoValue;
    }
    row.At(kLeftLines).Text = CStr(lines - hitLines);
    row.At(kProcedures).Text = CStr(procedures);
    row.At(kHitProcedures).Text = CountOrNone(hitProcedures);
    row.At(kProcCoverage).Text = ShareOrNone(hitProcedures, procedures);
    row.At(kLeftProcedures).Text = CStr(procedures - hitProcedures);
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

    Row& row = t.AddRow("", s.Name);
    row.Tag = static_cast<std::int32_t>(i) + 1;
    fill(row, p.ModulesNumber, sv.TotalLines, sv.HitLines, sv.TotalProcedures, sv.HitProcedures);
    if (critical != 0 && p.ContainsCritical) row.At(critical).Text = CriticalText(sv, sums);
    totalModules += p.ModulesNumber;
    totalLines += sv.TotalLines;
    totalHitLines += sv.HitLines;
    totalProcedures += sv.TotalProcedures;
    totalHitProcedures += sv.HitProcedures;
  }

  if (t.RowCount() > 0) {
    Row& total = AddTotalRow(t, kProject);
    fill(total, totalModules, totalLines, totalHitLines, totalProcedures, totalHitProcedures);
    if (critical != 0) total.At(critical).Text = sums.Text();
    MarkTotalRow(total, t.ColumnCount(), bars);
  }
  FinishWithChart(build, sort, kHitLines, "Project Coverage (% of executed lines)",
                  "Project Hits (1 line execution = 1 hit)");
  return build;
}

}  // namespace zol
