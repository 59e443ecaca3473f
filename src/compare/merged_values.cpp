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
// Unlike a single session's, a line outside any procedure gets its averages
// too, and a procedure ID out of range is passed over.
void DeriveLines(Workspace& ws, const Project& project, Session& merged) {
  for (std::int32_t id = 1; id <= ws.LinesNumber; ++id) {
    CodeLineValue& line = merged.CodeLineValue(id);
    ApplyTimeFloor(line);
    const std::int32_t proc = project.CodeLine(id).BelongToProcedure;
    if (proc >= 1 && proc <= ws.ProceduresNumber) {
      CountLineInProcedure(line, merged.ProcedureValue(proc), "a merged procedure");
    }
    ApplyAverages(line);
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

// Procedures: floors, averages and coverage, and the module sums, which leave
// dead code out. Two rules differ from a single session's: coverage is taken
// for any line count but 0 (a best coverage taken from a compared session may
// carry any count), and every live procedure counts in its module's
// TotalProcedures, profiled or not. A module ID out of range is passed over.
void DeriveProcedures(Workspace& ws, const Project& project, Session& merged) {
  for (std::int32_t id = 1; id <= ws.ProceduresNumber; ++id) {
    ProcedureValue& p = merged.ProcedureValue(id);
    const Procedure& proc = project.Procedure(id);
    DeriveProcedureValue(proc, p, p.TotalLines != 0);
    const std::int32_t m = proc.BelongToModule;
    if (proc.IsDead || m < 1 || m > ws.ModulesNumber) continue;
    AddProcedureToModule(proc, p, merged.ModuleValue(m), ProcedureCount::All, "a merged module");
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
