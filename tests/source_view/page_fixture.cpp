#include "source_view/page_fixture.h"

#include "base/text.h"
#include "source_view/timing_colours.h"

namespace zol::testing {

namespace {

constexpr const char* kSource =
    "Attribute VB_Name = \"Module1\"\r\n"
    "' Demo\r\n"
    "Public Sub Main()\r\n"
    "    ' counts\r\n"
    "    total = Add(1, _\r\n"
    "        2, _\r\n"
    "        3)\r\n"
    "    If total > 0 Then\r\n"
    "        Exit Sub\r\n"
    "    End If\r\n"
    "    total = 0\r\n"
    "End Sub\r\n"
    "Private Sub Unused()\r\n"
    "\r\n"
    "    Beep\r\n"
    "End Sub\r\n"
    "Function Twice(x)\r\n"
    "    Twice = x * 2\r\n"
    "End Function\r\n";

struct LineSpec {
  std::int32_t type;
  std::int32_t id;
};
constexpr LineSpec kLines[] = {{0, 0}, {0, 0}, {1, 1}, {0, 0}, {2, 1}, {0, 0}, {0, 0},
                               {2, 2}, {5, 3}, {0, 0}, {2, 4}, {5, 5}, {1, 2}, {0, 0},
                               {0, 0}, {0, 0}, {1, 3}, {2, 6}, {5, 7}, {0, 0}};

CodeLineValue LineValue(std::int32_t hits, double total, double childTotal) {
  const double n = hits == 0 ? 1 : hits;
  return CodeLineValue{hits, total, total / n, childTotal, childTotal / n};
}

}  // namespace

std::string Crlf(std::string_view text) {
  return Replace(text, "\n", "\r\n");
}

PageFixture::PageFixture() {
  ws.RtfPath = dir.path() + "/";
  dir.Put("p1m1.txt", kSource);
  LoadColors(ws, true, "");

  ws.Project.ReDimPreserve(kProject);
  Project& p = ws.Project(kProject);
  p.Name = "Demo";
  p.ModulesNumber = 1;
  p.ProceduresNumber = 3;
  p.LinesNumber = 7;
  p.Module.ReDim(1);
  p.Module(1).Name = "Module1";
  p.Module(1).RTFLine.ReDim(20);
  for (int i = 0; i < 20; ++i) p.Module(1).RTFLine(i + 1) = RTFLine{kLines[i].type, kLines[i].id};
  p.Procedure.ReDim(3);
  p.Procedure(1) = {1, "Main", 2, 3, true, true, false, false};
  p.Procedure(2) = {1, "Unused", 2, 13, false, false, false, true};
  p.Procedure(3) = {1, "Twice", 1, 17, true, true, false, false};

  Session& s = ws.SessionSlot(kSession);
  s.Name = "Run 1";
  s.Project = kProject;
  s.CodeLineValue.ReDim(7);
  s.CodeLineValue(1) = LineValue(1, 0.5, 0.25);
  s.CodeLineValue(2) = LineValue(1, 0.0012345678, 0);
  s.CodeLineValue(3) = LineValue(1, 0.00002, 0);
  s.CodeLineValue(4) = LineValue(0, 0, 0);
  s.CodeLineValue(5) = LineValue(0, 0, 0);
  s.CodeLineValue(6) = LineValue(2, 150, 0);
  s.CodeLineValue(7) = LineValue(2, 0.000004, 0);
  s.ProcedureValue.ReDim(3);
  s.ProcedureValue(1).Hits = 1;
  s.ProcedureValue(1).TotalTime = s.ProcedureValue(1).AverageTime = 0.75;
  s.ProcedureValue(1).ChildTotalTime = s.ProcedureValue(1).ChildAverageTime = 0.25;
  s.ProcedureValue(1).TotalTimingRank = s.ProcedureValue(1).AverageTimingRank = 0.5F;
  s.ProcedureValue(3).Hits = 2;
  s.ProcedureValue(3).TotalTime = 150.000004;
  s.ProcedureValue(3).AverageTime = 75.000002;
  s.ProcedureValue(3).TotalTimingRank = s.ProcedureValue(3).AverageTimingRank = 0.99F;

  // Five of the seven lines were hit; the two unhit ones (4, 5) rank first,
  // then the hit ones by time: L7, L3, L2, L1, L6.
  s.SessionValue.TotalLines = 7;
  s.SessionValue.HitLines = 5;
  for (Array1<std::int32_t>* rank : {&s.LineTotalTimeRank, &s.LineAverageTimeRank,
                                     &s.LineChildTotalTimeRank, &s.LineChildAverageTimeRank}) {
    rank->ReDim(7);
    const std::int32_t order[] = {6, 5, 4, 1, 2, 7, 3};  // rank of lines 1..7
    for (int i = 0; i < 7; ++i) (*rank)(i + 1) = order[i];
  }
}

}  // namespace zol::testing
