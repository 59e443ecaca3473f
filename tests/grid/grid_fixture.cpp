#include "grid/grid_fixture.h"

#include "support/session_builder.h"

namespace zol::testing {

namespace {

void SetProcedure(Session& s, std::int32_t id, std::int32_t hits, double total, double child,
                  std::int32_t lines, std::int32_t hitLines) {
  ProcedureValue& p = s.ProcedureValue(id);
  p.Hits = hits;
  p.TotalTime = total;
  p.ChildTotalTime = child;
  if (hits != 0) {
    p.AverageTime = total / hits;
    p.ChildAverageTime = child / hits;
  }
  p.TotalLines = lines;
  p.HitLines = hitLines;
  p.Coverage = lines == 0 ? 0 : static_cast<double>(hitLines) / lines;
  p.IsCovered = lines != 0;
}

void SetLine(Session& s, std::int32_t id, std::int32_t hits, double total) {
  CodeLineValue& l = s.CodeLineValue(id);
  l.Hits = hits;
  l.TotalTime = total;
  l.ChildTotalTime = total;
  if (hits != 0) {
    l.AverageTime = total / hits;
    l.ChildAverageTime = total / hits;
  }
}

void SetModule(ModuleValue& m, std::int32_t lines, std::int32_t hitLines, std::int32_t procs,
               std::int32_t hitProcs, double time, std::int32_t critLines,
               std::int32_t critHitLines) {
  m.TotalLines = lines;
  m.HitLines = hitLines;
  m.LineCoverage = lines == 0 ? 0 : static_cast<double>(hitLines) / lines;
  m.TotalProcedures = procs;
  m.HitProcedures = hitProcs;
  m.ProcedureCoverage = procs == 0 ? 0 : static_cast<double>(hitProcs) / procs;
  m.TotalTime = time;
  m.CriticalTotalLines = critLines;
  m.CriticalHitLines = critHitLines;
  m.IsCovered = lines != 0;
  m.IsProfiled = procs != 0;
}

}  // namespace

GridFixture::GridFixture() {
  ProjectBuilder b(ws);
  const auto m1 = b.Module("Module1");
  const auto f1 = b.Module("Form1");
  const auto empty = b.Module("Empty");
  const auto main = b.Procedure(m1, "Main", {.critical = true});
  const auto helper = b.Procedure(m1, "Helper");
  const auto unused = b.Procedure(m1, "Unused");
  const auto load = b.Procedure(f1, "Form_Load");
  const auto old = b.Procedure(f1, "OldCode", {.dead = true});
  b.Line(main);
  b.Line(main);
  b.Line(main, kExitLine);
  b.Line(helper);
  b.Line(helper, kExitLine);
  b.Line(unused);
  b.Line(unused, kExitLine);
  b.Line(load);
  b.Line(load, kExitLine);
  b.Line(old);
  b.Line(old, kExitLine);
  cp = b.Build();
  ws.Project(cp).Module(f1).Type = kModuleForm;
  ws.Project(cp).Module(empty).Type = kModuleClass;
  cs = AddSessionForProject(ws, cp, "/tmp/run1.pfl");

  Session& s = ws.Session(cs);
  SetProcedure(s, main, 3, 0.1234564, 0.5, 3, 2);
  SetProcedure(s, helper, 10, 0.0000015, 0.00002, 2, 2);
  SetProcedure(s, unused, 0, 0, 0, 2, 0);
  SetProcedure(s, load, 1, 2.5, 3, 2, 2);
  SetProcedure(s, old, 0, 0, 0, 2, 0);
  SetLine(s, 1, 3, 0.12);
  SetLine(s, 3, 3, 0.0034564);
  SetLine(s, 4, 10, 0.0000015);
  SetLine(s, 5, 10, 0);
  SetLine(s, 8, 1, 2.5);
  SetLine(s, 9, 1, 0);
  s.ModuleValue.ReDim(3);
  SetModule(s.ModuleValue(m1), 7, 4, 3, 2, 0.1234579, 3, 2);
  SetModule(s.ModuleValue(f1), 2, 2, 1, 1, 2.5, 0, 0);
  SetModule(s.SessionValue, 9, 6, 4, 3, 2.6234579, 3, 2);
  s.Loaded = true;
}

zol::Selection GridFixture::Select(Measure measure, std::int32_t module,
                                   std::int32_t procedure) const {
  return {.session = SessionRef::single(cs),
          .project = cp,
          .module = module,
          .procedure = procedure,
          .measure = measure};
}

}  // namespace zol::testing
