#include "report_fixture.h"

#include "base/files.h"

namespace zol::testing {

ReportFixture::ReportFixture() {
  Project& p = ws.Project(kProject);
  p.ProjectFile = "/work/Demo.vbp";
  p.CodeLine.ReDim(7);
  const char* texts[] = {"total = Add(1, 2, 3)",
                         "If total > 0 Then",
                         "Exit Sub",
                         "MsgBox \"a, \"\"b\"\"\", vbOK",
                         "End Sub",
                         "Twice = x * 2",
                         "End Function"};
  const std::int32_t owner[] = {1, 1, 1, 1, 1, 3, 3};
  for (int i = 0; i < 7; ++i) {
    p.CodeLine(i + 1).Text = texts[i];
    p.CodeLine(i + 1).BelongToProcedure = owner[i];
  }
  Session& s = ws.Session(kSession);
  sessionFile = dir / "runs/Run 1.pfd";
  dir.Put("runs/Run 1.pfd", "");
  s.SessionFile = sessionFile;
  s.DateTime = "2024-03-01 10:00:00";
  s.Loaded = true;
  s.Selected = true;
  s.ProcedureValue(1).TotalLines = 5;
  s.ProcedureValue(1).HitLines = 3;
  s.ProcedureValue(3).TotalLines = 2;
  s.ProcedureValue(3).HitLines = 2;
  s.ModuleValue.ReDim(1);
  ModuleValue& m = s.ModuleValue(1);
  m.TotalLines = 7;
  m.HitLines = 5;
  m.TotalProcedures = 2;
  m.HitProcedures = 2;
  m.TotalTime = 150.750004;
  s.SessionValue.TotalTime = 150.750004;
  s.SessionValue.LineCoverage = 5.0 / 7;
  ws.nSession = 1;
}

std::int32_t ReportFixture::AddSecondSession() {
  const std::int32_t cs = ++ws.nSession;
  Session copy = ws.Session(kSession);
  copy.Name = "Run 2";
  copy.SessionFile = dir / "runs/Run 2.pfd";
  ws.SessionSlot(cs) = copy;
  return cs;
}

}  // namespace zol::testing
