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

}  // namespace zol::testing
