#include "profile/gather_info.h"

#include <limits>
#include <stdexcept>
#include <string>

#include "base/arrays.h"
#include "profile/rank_walk.h"

namespace zol {

namespace {

// Adds b to a where the sum fits in 32 bits; false, leaving a, where not.
bool TryAddCount(std::int32_t& a, std::int32_t b) {
  const std::int64_t sum = static_cast<std::int64_t>(a) + b;
  if (sum > std::numeric_limits<std::int32_t>::max() ||
      sum < std::numeric_limits<std::int32_t>::min()) {
    return false;
  }
  a = static_cast<std::int32_t>(sum);
  return true;
}

// Adds b to the counter a like AddCount; an overflow names `field` of `owner`.
void AddCountOf(std::int32_t& a, std::int32_t b, const char* field, const char* owner) {
  if (!TryAddCount(a, b)) {
    throw std::overflow_error(std::string("overflow in ") + field + " of " + owner);
  }
}

// A procedure with line probes gets its time from its lines; the time that
// the replay measured at procedure level is dropped.
void ClearLineProbedProcedureTimes(Workspace& ws, const Project& project, Session& s) {
  for (std::int32_t id = 1; id <= ws.ProceduresNumber; ++id) {
    if (!project.Procedure(id).IsCovered) continue;
    s.ProcedureValue(id).TotalTime = 0;
    s.ProcedureValue(id).ChildTotalTime = 0;
  }
}

// Lines: floors and averages, and their counts and times summed into their
// procedures. A line that ends a procedure counts for coverage, but its time
// stays out of the procedure's time.
void GatherLines(Workspace& ws, const Project& project, Session& s) {
  for (std::int32_t id = 1; id <= ws.LinesNumber; ++id) {
    CodeLineValue& line = s.CodeLineValue(id);
    ApplyTimeFloor(line);
    const CodeLine& code = project.CodeLine(id);
    if (code.BelongToProcedure == 0) continue;
    ProcedureValue& p = s.ProcedureValue(code.BelongToProcedure);
    CountLineInProcedure(line, p, "a procedure");
    if (line.Hits == 0) continue;
    if (!code.IsProcedureExit && project.Procedure(code.BelongToProcedure).IsCovered) {
      p.TotalTime += line.TotalTime;
      p.ChildTotalTime += line.ChildTotalTime;
    }
    ApplyAverages(line);
  }
}

// Procedures: floors, averages and coverage, and the module sums. Dead code
// counts towards no module, though its own values are computed all the same.
void GatherProcedures(Workspace& ws, const Project& project, Session& s) {
  for (std::int32_t id = 1; id <= ws.ProceduresNumber; ++id) {
    ProcedureValue& p = s.ProcedureValue(id);
    const Procedure& proc = project.Procedure(id);
    DeriveProcedureValue(proc, p, p.TotalLines > 0);
    if (proc.IsDead || proc.BelongToModule == 0) continue;
    AddProcedureToModule(proc, p, s.ModuleValue(proc.BelongToModule), ProcedureCount::ProfiledOnly,
                         "a module");
  }
}

// One line rank: each line's position, from 1, among all lines in rising
// order of the measure. Lines that end a procedure stay at 0 in the scratch
// array; ties keep whatever order the index sort leaves.
void RankLines(const Project& project, const Session& s, std::int32_t lineCount,
               double CodeLineValue::*measure, Array1<double>& scratch,
               Array1<std::int32_t>& rank) {
  for (std::int32_t id = 1; id <= lineCount; ++id) {
    if (!project.CodeLine(id).IsProcedureExit) scratch(id) = s.CodeLineValue(id).*measure;
  }
  rank.ReDim(lineCount);
  NdxShellSortDouble(scratch, rank, lineCount, false);
  rank = InverseArrayLong(rank);
}

void RankAllLines(Workspace& ws, const Project& project, Session& s) {
  if (ws.LinesNumber == 0) return;
  Array1<double> scratch;
  scratch.ReDim(ws.LinesNumber);
  RankLines(project, s, ws.LinesNumber, &CodeLineValue::TotalTime, scratch, s.LineTotalTimeRank);
  RankLines(project, s, ws.LinesNumber, &CodeLineValue::AverageTime, scratch,
            s.LineAverageTimeRank);
  RankLines(project, s, ws.LinesNumber, &CodeLineValue::ChildTotalTime, scratch,
            s.LineChildTotalTimeRank);
  RankLines(project, s, ws.LinesNumber, &CodeLineValue::ChildAverageTime, scratch,
            s.LineChildAverageTimeRank);
}

constexpr RankWalk kProcedureTimeWalk{.descending = false, .firstRankAsThousandth = true};
constexpr RankWalk kProcedureCoverageWalk{.descending = true, .firstRankAsThousandth = true};
constexpr RankWalk kModuleTimeWalk{.descending = false, .firstRankAsThousandth = false};
constexpr RankWalk kModuleCoverageWalk{.descending = true, .firstRankAsThousandth = false};

// Procedure time ranks over the procedures that were hit; procedures without
// hits keep what their rank field held, 0 for a fresh session.
template <typename Rank>
void RankProcedureTime(Workspace& ws, Session& s, double ProcedureValue::*measure,
                       Rank ProcedureValue::*rankField) {
  auto& pv = s.ProcedureValue;
  RankByDistinctValue(
      ws.ProceduresNumber, kProcedureTimeWalk, [&](std::int32_t i) { return pv(i).Hits > 0; },
      [&](std::int32_t i) { return pv(i).*measure; },
      [&](std::int32_t i) -> Rank& { return pv(i).*rankField; });
}

void RankProcedures(Workspace& ws, Session& s) {
  RankProcedureTime(ws, s, &ProcedureValue::AverageTime, &ProcedureValue::AverageTimingRank);
  RankProcedureTime(ws, s, &ProcedureValue::TotalTime, &ProcedureValue::TotalTimingRank);
  RankProcedureTime(ws, s, &ProcedureValue::ChildAverageTime,
                    &ProcedureValue::ChildAverageTimingRank);
  RankProcedureTime(ws, s, &ProcedureValue::ChildTotalTime, &ProcedureValue::ChildTotalTimingRank);
  // The highest coverage gets the lowest rank.
  auto& pv = s.ProcedureValue;
  RankByDistinctValue(
      ws.ProceduresNumber, kProcedureCoverageWalk,
      [&](std::int32_t i) { return static_cast<bool>(pv(i).IsCovered); },
      [&](std::int32_t i) { return pv(i).Coverage; },
      [&](std::int32_t i) -> float& { return pv(i).CoverageRank; });
}

void RankModules(Workspace& ws, Session& s) {
  auto& mv = s.ModuleValue;
  RankByDistinctValue(
      ws.ModulesNumber, kModuleTimeWalk, [&](std::int32_t i) { return mv(i).TotalTime > 0; },
      [&](std::int32_t i) { return mv(i).TotalTime; },
      [&](std::int32_t i) -> float& { return mv(i).TotalTimingRank; });
  RankByDistinctValue(
      ws.ModulesNumber, kModuleCoverageWalk,
      [&](std::int32_t i) { return static_cast<bool>(mv(i).IsCovered); },
      [&](std::int32_t i) { return mv(i).LineCoverage; },
      [&](std::int32_t i) -> float& { return mv(i).CoverageRank; });
}

}  // namespace

// Counters are 32-bit in the file images; a sum that no longer fits is an
// error, not a silent wrap.
void AddCount(std::int32_t& a, std::int32_t b, const char* what) {
  if (!TryAddCount(a, b)) throw std::overflow_error(std::string("overflow in ") + what);
}

void CountLineInProcedure(const CodeLineValue& line, ProcedureValue& p, const char* owner) {
  AddCountOf(p.TotalLines, 1, "TotalLines", owner);
  if (line.Hits != 0) AddCountOf(p.HitLines, 1, "HitLines", owner);
}

void DeriveProcedureValue(const Procedure& proc, ProcedureValue& p, bool linesCounted) {
  ApplyTimeFloor(p);
  p.IsProfiled = proc.IsProfiled;
  ApplyAverages(p);
  if (linesCounted) {
    p.Coverage = static_cast<double>(p.HitLines) / p.TotalLines;
    p.IsCovered = true;
  } else {
    p.IsCovered = false;
  }
}

// The flags are ORed as truth values; records hold them as -1 or 0.
void AddProcedureToModule(const Procedure& proc, const ProcedureValue& p, ModuleValue& m,
                          ProcedureCount counted, const char* owner) {
  m.TotalTime += p.TotalTime;
  AddCountOf(m.TotalLines, p.TotalLines, "TotalLines", owner);
  AddCountOf(m.HitLines, p.HitLines, "HitLines", owner);
  if (counted == ProcedureCount::All || proc.IsProfiled) {
    AddCountOf(m.TotalProcedures, 1, "TotalProcedures", owner);
    if (p.Hits != 0) AddCountOf(m.HitProcedures, 1, "HitProcedures", owner);
  }
  m.IsProfiled = m.IsProfiled || p.IsProfiled;
  m.IsCovered = m.IsCovered || p.IsCovered;
  if (proc.IsCritical) {
    AddCountOf(m.CriticalTotalLines, p.TotalLines, "CriticalTotalLines", owner);
    AddCountOf(m.CriticalHitLines, p.HitLines, "CriticalHitLines", owner);
  }
}

// Module coverage and the session's totals. The critical totals of the
// session are not cleared first: a fresh session starts from zero, and a
// second run adds to them again.
void GatherModulesAndSession(Workspace& ws, Session& s) {
  ModuleValue& total = s.SessionValue;
  total.HitLines = 0;
  total.TotalLines = 0;
  total.HitProcedures = 0;
  total.TotalProcedures = 0;
  total.TotalTime = 0;
  for (std::int32_t id = 1; id <= ws.ModulesNumber; ++id) {
    ModuleValue& m = s.ModuleValue(id);
    if (m.TotalLines != 0) m.LineCoverage = static_cast<double>(m.HitLines) / m.TotalLines;
    if (m.TotalProcedures != 0) {
      m.ProcedureCoverage = static_cast<double>(m.HitProcedures) / m.TotalProcedures;
    }
    AddCount(total.HitLines, m.HitLines, "HitLines of the session");
    AddCount(total.TotalLines, m.TotalLines, "TotalLines of the session");
    AddCount(total.HitProcedures, m.HitProcedures, "HitProcedures of the session");
    AddCount(total.TotalProcedures, m.TotalProcedures, "TotalProcedures of the session");
    total.TotalTime += m.TotalTime;
    AddCount(total.CriticalHitLines, m.CriticalHitLines, "CriticalHitLines of the session");
    AddCount(total.CriticalTotalLines, m.CriticalTotalLines, "CriticalTotalLines of the session");
  }
  if (total.TotalLines != 0) {
    total.LineCoverage = static_cast<double>(total.HitLines) / total.TotalLines;
  }
  if (total.TotalProcedures != 0) {
    total.ProcedureCoverage = static_cast<double>(total.HitProcedures) / total.TotalProcedures;
  }
}

void RankSession(Workspace& ws, const Project& project, Session& s) {
  RankAllLines(ws, project, s);
  RankProcedures(ws, s);
  RankModules(ws, s);
}

void GatherInfo(Workspace& ws, std::int32_t cs) {
  Session& s = ws.Session(cs);
  ws.LoadProjectCounts(s.Project);
  const Project& project = ws.Project(s.Project);

  ClearLineProbedProcedureTimes(ws, project, s);
  s.ModuleValue.ReDim(ws.ModulesNumber);
  GatherLines(ws, project, s);
  GatherProcedures(ws, project, s);
  GatherModulesAndSession(ws, s);
  RankSession(ws, project, s);
}

std::int32_t RankToBackcolor(float rankValue) {
  struct Band {
    double upTo;
    bool inclusive;
    std::int32_t r, g, b;
  };
  // The first band that holds the rank wins.
  static constexpr Band kBands[] = {
      {0.0, true, 255, 255, 255}, {0.01, false, 0, 170, 0}, {0.1, true, 0, 220, 0},
      {0.2, true, 0, 255, 0},     {0.3, true, 180, 255, 0}, {0.4, true, 220, 255, 0},
      {0.5, true, 255, 255, 0},   {0.6, true, 255, 220, 0}, {0.7, true, 255, 195, 0},
      {0.8, true, 255, 170, 0},   {0.9, true, 255, 145, 0}, {0.99, false, 255, 120, 0},
  };
  // The comparison is made in double, as the single rank widened.
  const double rank = rankValue;
  for (const Band& band : kBands) {
    if (band.inclusive ? rank <= band.upTo : rank < band.upTo) {
      return band.r + 256 * band.g + 65536 * band.b;
    }
  }
  return 255;  // red: (255, 0, 0)
}

}  // namespace zol
