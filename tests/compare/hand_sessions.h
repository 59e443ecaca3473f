#pragma once

// Small hand-built sessions for the merge tests: raw line and procedure sums
// set by hand, the derived values computed as a load would, and the session
// marked Loaded.

#include <cstdint>
#include <string>
#include <vector>

#include "profile/gather_info.h"
#include "session/workspace.h"
#include "support/session_builder.h"

namespace zol::testing {

struct LineSum {
  std::int32_t id;
  std::int32_t hits;
  double time;
  double childTime = 0;
};

struct ProcedureSum {
  std::int32_t id;
  std::int32_t hits;
  double time = 0;  // kept only for procedures without line probes
};

inline std::int32_t HandSession(Workspace& ws, std::int32_t cp, const std::string& file,
                                const std::vector<LineSum>& lines,
                                const std::vector<ProcedureSum>& procedures,
                                const std::vector<FlowPair>& pairs = {}) {
  const std::int32_t cs = AddSessionForProject(ws, cp, file);
  Session& s = ws.Session(cs);
  for (const LineSum& l : lines) {
    s.CodeLineValue(l.id).Hits = l.hits;
    s.CodeLineValue(l.id).TotalTime = l.time;
    s.CodeLineValue(l.id).ChildTotalTime = l.childTime;
  }
  for (const ProcedureSum& p : procedures) {
    s.ProcedureValue(p.id).Hits = p.hits;
    s.ProcedureValue(p.id).TotalTime = p.time;
    s.ProcedureValue(p.id).ChildTotalTime = p.time;
  }
  s.FlowPair.Raw() = pairs;
  s.nFlowPair = static_cast<std::int32_t>(pairs.size());
  if (!pairs.empty()) {
    s.FirstProc = pairs.front().FromProc;
    s.LastProc = pairs.back().ToProc;
  }
  GatherInfo(ws, cs);
  ws.Session(cs).Loaded = true;
  return cs;
}

inline Array1<std::int32_t> List(std::initializer_list<std::int32_t> items) {
  Array1<std::int32_t> list;
  list.ReDim(static_cast<int>(items.size()));
  int i = 1;
  for (const std::int32_t v : items) list(i++) = v;
  return list;
}

// Two runs of one small project, every value of which can be worked out by
// hand:
//   module 1 "Main": 1 "Start" (lines 1, 2 and the exit line 3), 2 "Work"
//     (line 4), 3 "Idle" (timed, no line probes), 4 "Old" (dead);
//   module 2 "Calc": 5 "Sum" (critical, line 5).
// Run one ("one"): lines 1 (2 hits, 0.2 s, 0.5 s with children), 2 (1, 0.1),
// 3 (2, 0); Start entered twice, Idle 3 times for 0.3 s, Sum once; calls
// 1 -> 5 and 1 -> 3. Run two ("two"): lines 1 (3 hits, 0.4 s), 4 (1, 0.05);
// Start and Work entered once; calls 1 -> 3 and 3 -> 2.
struct TwoRuns {
  std::int32_t cp = 0;
  std::int32_t one = 0;
  std::int32_t two = 0;
};

inline TwoRuns TwoRunsOfOneProject(Workspace& ws) {
  ProjectBuilder b(ws);
  const auto main = b.Module("Main");
  const auto start = b.Procedure(main, "Start");
  b.Line(start);
  b.Line(start);
  b.Line(start, kExitLine);
  const auto work = b.Procedure(main, "Work");
  b.Line(work);
  b.Procedure(main, "Idle");
  b.Procedure(main, "Old", {.dead = true});
  const auto calc = b.Module("Calc");
  const auto sum = b.Procedure(calc, "Sum", {.critical = true});
  b.Line(sum);
  TwoRuns r;
  r.cp = b.Build();
  r.one = HandSession(ws, r.cp, "/runs/one.pfd", {{1, 2, 0.2, 0.5}, {2, 1, 0.1, 0.1}, {3, 2, 0, 0}},
                      {{1, 2}, {3, 3, 0.3}, {5, 1}}, {{1, 5, 1, 0.2}, {1, 3, 2, 0.3}});
  r.two = HandSession(ws, r.cp, "/runs/two.pfd", {{1, 3, 0.4, 0.4}, {4, 1, 0.05, 0.05}},
                      {{1, 1}, {2, 1}}, {{1, 3, 1, 0.1}, {3, 2, 4, 0.4}});
  return r;
}

}  // namespace zol::testing
