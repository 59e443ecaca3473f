#include "session/json_dump.h"

#include <gtest/gtest.h>

namespace zol {
namespace {

TEST(JsonDump, TextsAreLatin1ReadAndEscaped) {
  // "é" in Windows-1252 is the single byte 0xE9; it must come out as U+00E9.
  EXPECT_EQ(JsonQuoteLatin1("caf\xE9"), "\"caf\xC3\xA9\"");
  EXPECT_EQ(JsonQuoteLatin1("a\"b\\c\r\n\x01"), "\"a\\\"b\\\\c\\r\\n\\u0001\"");
}

TEST(JsonDump, ProjectArraysRunInIdOrderFromOne) {
  Project p;
  p.Name = "Demo";
  p.LinesNumber = 1;
  p.ProceduresNumber = 1;
  p.ModulesNumber = 1;
  p.Module.ReDim(1);
  p.Module(1).FileName = "Util.bas";
  p.Module(1).Name = "Util";
  p.Module(1).Type = kModuleStandard;
  p.Module(1).RTFLine.ReDim(2);
  p.Module(1).RTFLine(1) = {kRtfProcedureHead, 1};
  p.Module(1).RTFLine(2) = {kRtfCodeLine, 1};
  p.Procedure.ReDim(1);
  p.Procedure(1) = {1, "Go", 2, 1, true, true, false, false};
  p.CodeLine.ReDim(1);
  p.CodeLine(1) = {1, "x = 1", 2, false};

  EXPECT_EQ(
      ProjectToJson(p),
      R"({"Project":{"Name":"Demo","LinesNumber":1,"ProceduresNumber":1,"ModulesNumber":1,)"
      R"("ContainsCritical":false,"Module":[{"FileName":"Util.bas","Name":"Util","Type":1,)"
      R"("RTFLine":[[1,1],[2,1]]}],"Procedure":[{"BelongToModule":1,"Name":"Go","Type":2,)"
      R"("Position":1,"IsProfiled":true,"IsCovered":true,"IsCritical":false,"IsDead":false}],)"
      R"("CodeLine":[{"BelongToProcedure":1,"Text":"x = 1","Position":2,)"
      R"("IsProcedureExit":false}]}})");
}

TEST(JsonDump, NumbersReadBackExactlyAndFlowPairsStopAtTheirCount) {
  Project p;
  Session s;
  s.FlowPair.ReDim(3);  // only nFlowPair of them are in use
  s.nFlowPair = 1;
  s.FlowPair(1) = {1, 2, 3, 0.1 + 0.2};
  s.SessionValue.TotalTimingRank = 0.1f;
  std::string json = SessionToJson(p, s);
  EXPECT_NE(
      json.find(
          R"("FlowPair":[{"FromProc":1,"ToProc":2,"Hits":3,"ChildTime":0.30000000000000004}])"),
      std::string::npos)
      << json;
  EXPECT_NE(json.find(R"("TotalTimingRank":0.1,)"), std::string::npos) << json;
}

}  // namespace
}  // namespace zol
