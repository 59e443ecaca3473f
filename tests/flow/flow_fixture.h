#pragma once

// A hand-made session for the flow chart: a project of modules and
// procedures, the procedures' values and the call pairs, with nothing read
// from a file.

#include <cstdint>
#include <string>
#include <vector>

#include "session/selection.h"
#include "session/workspace.h"

namespace zol::test {

class FlowSession {
 public:
  // One procedure per entry of `moduleOf`, procedure p in module
  // moduleOf[p - 1]; procedure p has p hits and p / 100 seconds.
  explicit FlowSession(std::vector<std::int32_t> moduleOf) {
    ws.Project.ReDimPreserve(1);
    Project& p = ws.Project(1);
    ws.nProject = 1;
    std::int32_t modules = 0;
    for (std::int32_t m : moduleOf) modules = m > modules ? m : modules;
    p.ModulesNumber = modules;
    p.Module.ReDim(modules);
    for (std::int32_t m = 1; m <= modules; ++m) {
      p.Module(m).Name = "Module" + std::to_string(m);
      p.Module(m).Type = m % 2 == 0 ? 2 : 1;
    }
    const auto count = static_cast<std::int32_t>(moduleOf.size());
    p.ProceduresNumber = count;
    p.Procedure.ReDim(count);
    for (std::int32_t i = 1; i <= count; ++i) {
      p.Procedure(i).Name = "Proc" + std::to_string(i);
      p.Procedure(i).BelongToModule = moduleOf[static_cast<std::size_t>(i - 1)];
    }
    Session& s = ws.SessionSlot(1);
    ws.nSession = 1;
    s.Name = "Run";
    s.Project = 1;
    s.Loaded = true;
    s.ProceduresNumber = count;
    s.ProcedureValue.ReDim(count);
    for (std::int32_t i = 1; i <= count; ++i) {
      ProcedureValue& v = s.ProcedureValue(i);
      v.Hits = i;
      v.TotalTime = i / 100.0;
      v.AverageTime = v.TotalTime / i;
      v.ChildTotalTime = 2 * v.TotalTime;
      v.ChildAverageTime = v.ChildTotalTime / i;
      v.Coverage = i / 100.0;
    }
    s.FirstProc = 1;
  }

  Session& session() { return ws.Session(1); }

  void Pair(std::int32_t from, std::int32_t to, std::int32_t hits = 1, double childTime = 0.25) {
    Session& s = session();
    s.nFlowPair += 1;
    s.FlowPair.ReDimPreserve(s.nFlowPair);
    s.FlowPair(s.nFlowPair) = FlowPair{from, to, hits, childTime};
  }

  Selection Select(std::int32_t module, std::int32_t procedure,
                   Measure measure = Measure::Total) const {
    Selection sel;
    sel.session = SessionRef::single(1);
    sel.project = 1;
    sel.module = module;
    sel.procedure = procedure;
    sel.tab = Tab::Flow;
    sel.measure = measure;
    return sel;
  }

  Workspace ws;
};

}  // namespace zol::test
