// The values of a merged session: raw sums of the listed sessions, then every
// derived value computed afresh from the sums. Averages are recomputed from
// summed hits and times, never averaged.

#include <vector>

#include "compare/merge_steps.h"
#include "profile/flow_pair_table.h"
#include "profile/gather_info.h"

namespace zol::merge_detail {

namespace {

template <typename Value>
void AddRawSums(Value& to, const Value& from, const char* what) {
  AddCount(to.Hits, from.Hits, what);
  to.TotalTime += from.TotalTime;
  to.ChildTotalTime += from.ChildTotalTime;
}

// Call pairs go in by (caller, callee), new ones at the end in order of first
// sight, as a replay adds them.
void SumFlowPairs(Session& merged, const Session& s, FlowPairTable& pairs) {
  for (std::int32_t i = 1; i <= s.nFlowPair; ++i) {
    const FlowPair& from = s.FlowPair(i);
    FlowPair& to = pairs[pairs.FindOrAdd(from.FromProc, from.ToProc)];
    AddCount(to.Hits, from.Hits, "Hits of a merged call pair");
    to.ChildTime += from.ChildTime;
  }
  merged.FirstProc = s.FirstProc;
  merged.LastProc = s.LastProc;
}

void StoreFlowPairs(Session& merged, FlowPairTable& pairs) {
  std::vector<FlowPair> all = pairs.Take();
  merged.nFlowPair = static_cast<std::int32_t>(all.size());
  merged.FlowPair.Raw() = std::move(all);
}

// Lines: floors and averages, and each line counted for its procedure's
// coverage. Line times stay out of the procedures, whose times were summed.
void DeriveLines(Workspace& ws, const Project& project, Session& merged) {
  for (std::int32_t id = 1; id <= ws.LinesNumber; ++id) {
    CodeLineValue& line = merged.CodeLineValue(id);
    ApplyTimeFloor(line);
    const std::int32_t proc = project.CodeLine(id).BelongToProcedure;
    ProcedureValue* p =
        proc >= 1 && proc <= ws.ProceduresNumber ? &merged.ProcedureValue(proc) : nullptr;
    if (p) AddCount(p->TotalLines, 1, "TotalLines of a merged procedure");
    if (line.Hits == 0) continue;
    if (p) AddCount(p->HitLines, 1, "HitLines of a merged procedure");
    line.AverageTime = line.TotalTime / line.Hits;
    line.ChildAverageTime = line.ChildTotalTime / line.Hits;
  }
}

// Sessions of different projects have no common lines to count, so the best
// coverage of any listed session stands for the merge; of equal ones the
// later wins.
void TakeBestCoverage(Workspace& ws, Session& merged, const Array1<std::int32_t>& list,
                      const Array1<Session>& CompareSession) {
  for (std::int32_t id = 1; id <= ws.ProceduresNumber; ++id) {
    ProcedureValue& p = merged.ProcedureValue(id);
    for (std::int32_t k = 1; k <= list.UBound(); ++k) {
      const ProcedureValue& c = CompareSession(list(k)).ProcedureValue(id);
      if (c.TotalLines == 0 || c.Coverage < p.Coverage) continue;
      p.Coverage = c.Coverage;
      p.TotalLines = c.TotalLines;
      p.HitLines = c.HitLines;
    }
  }
}

void AddToModule(const Procedure& proc, const ProcedureValue& p, ModuleValue& m) {
  m.TotalTime += p.TotalTime;
  AddCount(m.TotalLines, p.TotalLines, "TotalLines of a merged module");
  AddCount(m.HitLines, p.HitLines, "HitLines of a merged module");
  AddCount(m.TotalProcedures, 1, "TotalProcedures of a merged module");
  if (p.Hits != 0) AddCount(m.HitProcedures, 1, "HitProcedures of a merged module");
  m.IsProfiled = m.IsProfiled || p.IsProfiled;
  m.IsCovered = m.IsCovered || p.IsCovered;
  if (proc.IsCritical) {
    AddCount(m.CriticalTotalLines, p.TotalLines, "CriticalTotalLines of a merged module");
    AddCount(m.CriticalHitLines, p.HitLines, "CriticalHitLines of a merged module");
  }
}

// Procedures: floors, averages and coverage, and the module sums, which leave
// dead code out.
void DeriveProcedures(Workspace& ws, const Project& project, Session& merged) {
  for (std::int32_t id = 1; id <= ws.ProceduresNumber; ++id) {
    ProcedureValue& p = merged.ProcedureValue(id);
    const Procedure& proc = project.Procedure(id);
    ApplyTimeFloor(p);
    p.IsProfiled = proc.IsProfiled;
    if (p.Hits != 0) {
      p.AverageTime = p.TotalTime / p.Hits;
      p.ChildAverageTime = p.ChildTotalTime / p.Hits;
    }
    if (p.TotalLines != 0) {
      p.Coverage = static_cast<double>(p.HitLines) / p.TotalLines;
      p.IsCovered = true;
    } else {
      p.IsCovered = false;
    }
    const std::int32_t m = proc.BelongToModule;
    if (proc.IsDead || m < 1 || m > ws.ModulesNumber) continue;
    AddToModule(proc, p, merged.ModuleValue(m));
  }
}

}  // namespace

void SumSessions(Workspace& ws, std::int32_t MergeIndex, bool fHomogeneous,
                 const Array1<std::int32_t>& list, const Array1<Session>& CompareSession) {
  Session& merged = ws.Session(MergeIndex);
  FlowPairTable pairs;
  for (std::int32_t k = 1; k <= list.UBound(); ++k) {
    const Session& s = fHomogeneous ? ws.Session(list(k)) : CompareSession(list(k));
    if (fHomogeneous) {
      for (std::int32_t id = 1; id <= ws.LinesNumber; ++id) {
        AddRawSums(merged.CodeLineValue(id), s.CodeLineValue(id), "Hits of a merged line");
      }
    }
    for (std::int32_t id = 1; id <= ws.ProceduresNumber; ++id) {
      AddRawSums(merged.ProcedureValue(id), s.ProcedureValue(id), "Hits of a merged procedure");
    }
    if (fHomogeneous) SumFlowPairs(merged, s, pairs);
  }
  if (fHomogeneous) StoreFlowPairs(merged, pairs);
}

void DeriveMergedValues(Workspace& ws, std::int32_t MergeIndex, bool fHomogeneous,
                        const Array1<std::int32_t>& list, const Array1<Session>& CompareSession) {
  Session& merged = ws.Session(MergeIndex);
  const Project& project = ws.Project(merged.Project);
  DeriveLines(ws, project, merged);
  if (!fHomogeneous) TakeBestCoverage(ws, merged, list, CompareSession);
  DeriveProcedures(ws, project, merged);
  GatherModulesAndSession(ws, merged);
  RankSession(ws, project, merged);
}

}  // namespace zol::merge_detail
