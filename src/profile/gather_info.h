#pragma once

// Derived statistics of a session: from the raw sums that a log replay or a
// live run leaves in CodeLineValue and ProcedureValue, GatherInfo computes the
// averages, coverage, the module and session totals, and the ranks that drive
// colouring. It runs once per session before the session is saved, and again
// whenever timing filters rewrite the times.

#include <cstdint>

#include "session/workspace.h"

namespace zol {

// Every counted execution is worth at least this many seconds, whatever the
// clock said, so that lines faster than its resolution never show as zero.
inline constexpr double kMinimumTimePerHit = 0.00000005;

// Fills every derived field of Session(cs) from its raw sums and its project.
void GatherInfo(Workspace& ws, std::int32_t cs);

// The steps of GatherInfo that a merged session shares. Both expect the
// workspace's counts set from the session's project (LoadProjectCounts).

// Adds b to the 32-bit counter a; a sum that no longer fits throws
// std::overflow_error naming `what`, never wraps.
void AddCount(std::int32_t& a, std::int32_t b, const char* what);

// The floor of one executed item: at least kMinimumTimePerHit per hit, and the
// time with children never below the item's own time.
template <typename Value>
void ApplyTimeFloor(Value& v) {
  const double floor = v.Hits * kMinimumTimePerHit;
  if (floor > v.TotalTime) v.TotalTime = floor;
  if (v.ChildTotalTime < v.TotalTime) v.ChildTotalTime = v.TotalTime;
}

// The averages of an item that was hit; one never hit keeps its former ones.
template <typename Value>
void ApplyAverages(Value& v) {
  if (v.Hits == 0) return;
  v.AverageTime = v.TotalTime / v.Hits;
  v.ChildAverageTime = v.ChildTotalTime / v.Hits;
}

// Counts a line in its procedure's TotalLines, and in HitLines if it was hit.
// `owner` names the procedure in an overflow error ("a procedure").
void CountLineInProcedure(const CodeLineValue& line, ProcedureValue& p, const char* owner);

// A procedure's own derived values from its sums: the time floor, IsProfiled
// from the project, the averages, and the coverage from its line counts where
// `linesCounted` holds; otherwise it is not covered and keeps its Coverage.
void DeriveProcedureValue(const Procedure& proc, ProcedureValue& p, bool linesCounted);

// Which procedures count in a module's TotalProcedures and HitProcedures.
enum class ProcedureCount { ProfiledOnly, All };

// Adds a live procedure's values to the sums of its module. `owner` names the
// module in an overflow error ("a module").
void AddProcedureToModule(const Procedure& proc, const ProcedureValue& p, ModuleValue& m,
                          ProcedureCount counted, const char* owner);

// Module coverages from the module sums, and the session totals from them.
void GatherModulesAndSession(Workspace& ws, Session& s);

// Line positions and the procedure and module ranks by distinct value.
void RankSession(Workspace& ws, const Project& project, Session& s);

// The background colour of a rank, as red + 256 * green + 65536 * blue: white
// for no rank, then green for the fastest through yellow to red for the
// slowest.
std::int32_t RankToBackcolor(float rankValue);

}  // namespace zol
