#include "profile/gather_info.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/session_builder.h"

namespace zol {
namespace {

using testing::AddSessionForProject;
using testing::kExitLine;
using testing::ProjectBuilder;

void SetLine(Session& s, std::int32_t id, std::int32_t hits, double total, double child) {
  s.CodeLineValue(id).Hits = hits;
  s.CodeLineValue(id).TotalTime = total;
  s.CodeLineValue(id).ChildTotalTime = child;
}

void SetProc(Session& s, std::int32_t id, std::int32_t hits, double total, double child) {
  s.ProcedureValue(id).Hits = hits;
  s.ProcedureValue(id).TotalTime = total;
  s.ProcedureValue(id).ChildTotalTime = child;
}

// A small run worked out by hand.
//
// Module1 (M1): P1 "Main" critical, line-probed: L1, L2, L3, L4 (End Sub)
//               P2 "Helper" without line probes
// Class1  (M2): P3 "Calc" line-probed: L5, L6
//               P4 "Old" dead, line-probed: L7
//               P5 "Unused" without line probes, never called
// L8 stands outside any procedure.
//
// Raw sums as a replay leaves them (hits, own time, time with children):
//   P1 2, 9.0, 9.5 (dropped: P1's time comes from its lines)
//   L1 2, 0.5, 0.5   L2 2, 0.25, 1.0   L3 0   L4 2, 0.0625, 0.0625 (exit: time left out)
//   P2 1, 0.25, 0.5 (kept: no line probes)
//   P3 4, 5.0, 5.0 (dropped)   L5 4, 0, 0 -> floor 4 x 5e-8 = 2e-7   L6 0
//   P4 1, 7.0, 7.0 (dropped)   L7 1, 0.375, 0.375
//   L8 3, 0, 0 -> floor 1.5e-7; no averages, it belongs to no procedure
//
// (Times are binary fractions, so that sums and ties are exact.)
//
// Procedures after GatherInfo:
//   P1 TotalLines 4, HitLines 3, Coverage 0.75, TotalTime 0.75, Child 1.5,
//      Average 0.375, ChildAverage 0.75
//   P2 TotalLines 0, IsCovered false, TotalTime 0.25, Average 0.25, ChildAverage 0.5
//   P3 TotalLines 2, HitLines 1, Coverage 0.5, TotalTime 2e-7, Child 2e-7, Average 5e-8
//   P4 TotalLines 1, HitLines 1, Coverage 1, TotalTime 0.375, Average 0.375, Child 0.375
//   P5 all 0, IsCovered false
// Modules (P4 is dead and counts nowhere):
//   M1 = P1 + P2: TotalTime 1.0, Lines 3/4, Procedures 2/2, Critical 3/4
//   M2 = P3 + P5: TotalTime 2e-7, Lines 1/2, Procedures 1/2
// Session: Lines 4/6, Procedures 3/4, TotalTime 1.0 + 2e-7, Critical 3/4.
class GatherInfoExample : public ::testing::Test {
 protected:
  void SetUp() override {
    ProjectBuilder b(ws);
    const auto m1 = b.Module("Module1");
    const auto m2 = b.Module("Class1");
    p1 = b.Procedure(m1, "Main", {.critical = true});
    p2 = b.Procedure(m1, "Helper");
    p3 = b.Procedure(m2, "Calc");
    p4 = b.Procedure(m2, "Old", {.dead = true});
    p5 = b.Procedure(m2, "Unused");
    for (int i = 0; i < 3; ++i) b.Line(p1);
    b.Line(p1, kExitLine);
    b.Line(p3);
    b.Line(p3);
    b.Line(p4);
    b.Line(0);
    cs = AddSessionForProject(ws, b.Build(), "/tmp/run.pfl");

    Session& s = ws.Session(cs);
    SetProc(s, p1, 2, 9.0, 9.5);
    SetLine(s, 1, 2, 0.5, 0.5);
    SetLine(s, 2, 2, 0.25, 1.0);
    SetLine(s, 4, 2, 0.0625, 0.0625);
    SetProc(s, p2, 1, 0.25, 0.5);
    SetProc(s, p3, 4, 5.0, 5.0);
    SetLine(s, 5, 4, 0, 0);
    SetProc(s, p4, 1, 7.0, 7.0);
    SetLine(s, 7, 1, 0.375, 0.375);
    SetLine(s, 8, 3, 0, 0);
  }

  const Session& S() { return ws.Session(cs); }
  const ProcedureValue& P(std::int32_t id) { return S().ProcedureValue(id); }

  Workspace ws;
  std::int32_t cs = 0, p1 = 0, p2 = 0, p3 = 0, p4 = 0, p5 = 0;
};

TEST_F(GatherInfoExample, LinesGetFloorsAndAverages) {
  GatherInfo(ws, cs);
  const auto& l = S().CodeLineValue;
  EXPECT_DOUBLE_EQ(l(1).AverageTime, 0.25);
  EXPECT_DOUBLE_EQ(l(2).ChildAverageTime, 0.5);
  EXPECT_DOUBLE_EQ(l(4).AverageTime, 0.03125);  // an exit line still gets its averages
  EXPECT_DOUBLE_EQ(l(5).TotalTime, 2e-7);
  EXPECT_DOUBLE_EQ(l(5).ChildTotalTime, 2e-7);
  EXPECT_DOUBLE_EQ(l(5).AverageTime, 5e-8);
  EXPECT_DOUBLE_EQ(l(8).TotalTime, 1.5e-7);
  EXPECT_EQ(l(8).AverageTime, 0);  // outside any procedure: no averages
  EXPECT_EQ(l(3), CodeLineValue{});
}

TEST_F(GatherInfoExample, ProceduresTakeLineTimesAndCoverage) {
  GatherInfo(ws, cs);
  EXPECT_EQ(P(p1).TotalLines, 4);
  EXPECT_EQ(P(p1).HitLines, 3);
  EXPECT_DOUBLE_EQ(P(p1).Coverage, 0.75);
  EXPECT_DOUBLE_EQ(P(p1).TotalTime, 0.75);
  EXPECT_DOUBLE_EQ(P(p1).ChildTotalTime, 1.5);
  EXPECT_DOUBLE_EQ(P(p1).AverageTime, 0.375);
  EXPECT_DOUBLE_EQ(P(p1).ChildAverageTime, 0.75);
  EXPECT_TRUE(P(p1).IsCovered);
  EXPECT_TRUE(P(p1).IsProfiled);

  EXPECT_DOUBLE_EQ(P(p2).TotalTime, 0.25);
  EXPECT_DOUBLE_EQ(P(p2).ChildAverageTime, 0.5);
  EXPECT_FALSE(P(p2).IsCovered);
  EXPECT_EQ(P(p2).Coverage, 0);

  EXPECT_DOUBLE_EQ(P(p3).TotalTime, 2e-7);
  EXPECT_DOUBLE_EQ(P(p3).AverageTime, 5e-8);
  EXPECT_DOUBLE_EQ(P(p3).Coverage, 0.5);

  // Dead, but computed all the same.
  EXPECT_DOUBLE_EQ(P(p4).TotalTime, 0.375);
  EXPECT_DOUBLE_EQ(P(p4).Coverage, 1.0);
  EXPECT_FALSE(P(p4).IsProfiled);

  EXPECT_EQ(P(p5).TotalTime, 0);
  EXPECT_FALSE(P(p5).IsCovered);
}

TEST_F(GatherInfoExample, ModulesAndSessionSumLiveProcedures) {
  GatherInfo(ws, cs);
  const ModuleValue& m1 = S().ModuleValue(1);
  EXPECT_DOUBLE_EQ(m1.TotalTime, 1.0);
  EXPECT_EQ(m1.TotalLines, 4);
  EXPECT_EQ(m1.HitLines, 3);
  EXPECT_DOUBLE_EQ(m1.LineCoverage, 0.75);
  EXPECT_EQ(m1.TotalProcedures, 2);
  EXPECT_EQ(m1.HitProcedures, 2);
  EXPECT_DOUBLE_EQ(m1.ProcedureCoverage, 1.0);
  EXPECT_EQ(m1.CriticalTotalLines, 4);
  EXPECT_EQ(m1.CriticalHitLines, 3);
  EXPECT_TRUE(m1.IsProfiled);
  EXPECT_TRUE(m1.IsCovered);

  // P4's line and time are nowhere in Class1.
  const ModuleValue& m2 = S().ModuleValue(2);
  EXPECT_DOUBLE_EQ(m2.TotalTime, 2e-7);
  EXPECT_EQ(m2.TotalLines, 2);
  EXPECT_EQ(m2.HitLines, 1);
  EXPECT_EQ(m2.TotalProcedures, 2);
  EXPECT_EQ(m2.HitProcedures, 1);
  EXPECT_DOUBLE_EQ(m2.ProcedureCoverage, 0.5);
  EXPECT_EQ(m2.CriticalTotalLines, 0);

  const ModuleValue& total = S().SessionValue;
  EXPECT_EQ(total.TotalLines, 6);
  EXPECT_EQ(total.HitLines, 4);
  EXPECT_DOUBLE_EQ(total.LineCoverage, 4.0 / 6.0);
  EXPECT_EQ(total.TotalProcedures, 4);
  EXPECT_EQ(total.HitProcedures, 3);
  EXPECT_DOUBLE_EQ(total.ProcedureCoverage, 0.75);
  EXPECT_DOUBLE_EQ(total.TotalTime, 1.0 + 2e-7);
  EXPECT_EQ(total.CriticalTotalLines, 4);
  EXPECT_EQ(total.CriticalHitLines, 3);
  EXPECT_EQ(total.TotalTimingRank, 0);
}

// Ranks of the hit procedures P1..P4, ascending by distinct value, the first
// stored as 0.001, all divided by the final counter 5:
//   Average   P3 5e-8 (0.001), P2 0.25 (2), P1 = P4 0.375 (3, a tie) -> rank 5
//   Total     P3 2e-7, P2 0.25, P4 0.375, P1 0.75                    -> 1, 2, 3, 4
//   ChildAvg  P3 5e-8, P4 0.375, P2 0.5, P1 0.75
//   ChildTot  P3 2e-7, P4 0.375, P2 0.5, P1 1.5
// Coverage, descending over the line-probed P1 0.75, P3 0.5, P4 1.0:
//   P4 (0.001), P1 (2), P3 (3) -> rank 4
// P5 was never hit and keeps 0 everywhere; P2 has no coverage rank.
TEST_F(GatherInfoExample, ProcedureRanksByDistinctValue) {
  GatherInfo(ws, cs);
  EXPECT_FLOAT_EQ(P(p3).AverageTimingRank, 0.001f / 5);
  EXPECT_FLOAT_EQ(P(p2).AverageTimingRank, 0.4f);
  EXPECT_FLOAT_EQ(P(p1).AverageTimingRank, 0.6f);
  EXPECT_FLOAT_EQ(P(p4).AverageTimingRank, 0.6f);

  EXPECT_FLOAT_EQ(P(p3).TotalTimingRank, 0.0002f);
  EXPECT_FLOAT_EQ(P(p2).TotalTimingRank, 0.4f);
  EXPECT_FLOAT_EQ(P(p4).TotalTimingRank, 0.6f);
  EXPECT_FLOAT_EQ(P(p1).TotalTimingRank, 0.8f);

  for (auto rank :
       {&ProcedureValue::ChildAverageTimingRank, &ProcedureValue::ChildTotalTimingRank}) {
    EXPECT_DOUBLE_EQ(P(p3).*rank, 0.0002);
    EXPECT_DOUBLE_EQ(P(p4).*rank, 0.4);
    EXPECT_DOUBLE_EQ(P(p2).*rank, 0.6);
    EXPECT_DOUBLE_EQ(P(p1).*rank, 0.8);
  }

  EXPECT_FLOAT_EQ(P(p4).CoverageRank, 0.00025f);
  EXPECT_FLOAT_EQ(P(p1).CoverageRank, 0.5f);
  EXPECT_FLOAT_EQ(P(p3).CoverageRank, 0.75f);
  EXPECT_EQ(P(p2).CoverageRank, 0);

  EXPECT_EQ(P(p5).TotalTimingRank, 0);
  EXPECT_EQ(P(p5).AverageTimingRank, 0);
  EXPECT_EQ(P(p5).ChildTotalTimingRank, 0);
  EXPECT_EQ(P(p5).ChildAverageTimingRank, 0);
  EXPECT_EQ(P(p5).CoverageRank, 0);
}

// Modules keep a plain 1 for their first value: time M2 (1), M1 (2); coverage
// M1 0.75 (1), M2 0.5 (2); both divided by 3.
TEST_F(GatherInfoExample, ModuleRanksKeepAPlainFirstRank) {
  GatherInfo(ws, cs);
  EXPECT_FLOAT_EQ(S().ModuleValue(2).TotalTimingRank, 1.0f / 3);
  EXPECT_FLOAT_EQ(S().ModuleValue(1).TotalTimingRank, 2.0f / 3);
  EXPECT_FLOAT_EQ(S().ModuleValue(1).CoverageRank, 1.0f / 3);
  EXPECT_FLOAT_EQ(S().ModuleValue(2).CoverageRank, 2.0f / 3);
}

// Line TotalTime after the floors, with the exit line L4 counted as 0:
//   L1 0.5, L2 0.25, L3 0, L4 0, L5 2e-7, L6 0, L7 0.375, L8 1.5e-7
// The index sort (gaps 4, then 1) orders them L6, L3, L4, L8, L5, L2, L7, L1:
// the gap-4 pass moves L6 ahead of L2, so of the three zeros L6 comes first.
TEST_F(GatherInfoExample, LineRanksFollowTheIndexSort) {
  GatherInfo(ws, cs);
  const std::vector<std::int32_t> expected{8, 6, 2, 3, 5, 1, 7, 4};
  EXPECT_EQ(S().LineTotalTimeRank.Raw(), expected);

  // Every rank array is a permutation of the positions.
  for (auto* ranks :
       {&S().LineAverageTimeRank, &S().LineChildTotalTimeRank, &S().LineChildAverageTimeRank}) {
    std::vector<std::int32_t> sorted = ranks->Raw();
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, (std::vector<std::int32_t>{1, 2, 3, 4, 5, 6, 7, 8}));
  }
  EXPECT_EQ(S().LineAverageTimeRank(7), 8);       // L7 0.375 is the slowest on average
  EXPECT_EQ(S().LineChildTotalTimeRank(2), 8);    // L2 1.0 with children
  EXPECT_EQ(S().LineChildAverageTimeRank(2), 8);  // L2 0.5 with children
}

// A second run, as a filter does: line-probed procedures rebuild their time,
// counters add up again, module values start afresh, and the session's
// critical totals are never cleared.
TEST_F(GatherInfoExample, SecondRunAddsToCountersOnly) {
  GatherInfo(ws, cs);
  GatherInfo(ws, cs);
  EXPECT_EQ(P(p1).TotalLines, 8);
  EXPECT_EQ(P(p1).HitLines, 6);
  EXPECT_DOUBLE_EQ(P(p1).Coverage, 0.75);
  EXPECT_DOUBLE_EQ(P(p1).TotalTime, 0.75);
  EXPECT_DOUBLE_EQ(P(p2).TotalTime, 0.25);
  EXPECT_EQ(S().ModuleValue(1).TotalLines, 8);
  EXPECT_DOUBLE_EQ(S().ModuleValue(1).TotalTime, 1.0);
  EXPECT_EQ(S().SessionValue.TotalLines, 12);
  EXPECT_EQ(S().SessionValue.HitLines, 8);
  EXPECT_DOUBLE_EQ(S().SessionValue.LineCoverage, 4.0 / 6.0);
  EXPECT_DOUBLE_EQ(S().SessionValue.TotalTime, 1.0 + 2e-7);
  EXPECT_EQ(S().SessionValue.CriticalTotalLines, 4 + 8);
  EXPECT_EQ(S().SessionValue.CriticalHitLines, 3 + 6);
  EXPECT_FLOAT_EQ(P(p1).TotalTimingRank, 0.8f);
}

TEST(GatherInfo, EmptyRunGivesZeros) {
  Workspace ws;
  ProjectBuilder b(ws);
  const auto m = b.Module("Module1");
  const auto p = b.Procedure(m, "Main");
  b.Line(p);
  b.Line(p, kExitLine);
  const auto other = b.Procedure(m, "Other");
  const std::int32_t cs = AddSessionForProject(ws, b.Build(), "/tmp/empty.pfl");
  GatherInfo(ws, cs);

  const Session& s = ws.Session(cs);
  for (const CodeLineValue& l : s.CodeLineValue) EXPECT_EQ(l, CodeLineValue{});
  for (const ProcedureValue& v : s.ProcedureValue) {
    EXPECT_EQ(v.Hits + v.HitLines, 0);
    EXPECT_EQ(v.TotalTime + v.ChildTotalTime + v.Coverage, 0);
    EXPECT_EQ(v.TotalTimingRank + v.AverageTimingRank, 0);
    EXPECT_EQ(v.ChildTotalTimingRank + v.ChildAverageTimingRank, 0);
  }
  EXPECT_EQ(s.SessionValue.HitLines, 0);
  EXPECT_EQ(s.SessionValue.TotalLines, 2);
  EXPECT_EQ(s.SessionValue.HitProcedures, 0);
  EXPECT_EQ(s.SessionValue.TotalProcedures, 2);
  EXPECT_EQ(s.SessionValue.LineCoverage, 0);
  EXPECT_EQ(s.SessionValue.ProcedureCoverage, 0);
  EXPECT_EQ(s.SessionValue.TotalTime, 0);
  EXPECT_EQ(s.ModuleValue(1).TotalTimingRank, 0);

  // Coverage of 0 is still a value to rank: the line-probed procedure is the
  // one candidate (0.001 / 2), and so is the module (1 / 2).
  EXPECT_FLOAT_EQ(s.ProcedureValue(p).CoverageRank, 0.0005f);
  EXPECT_EQ(s.ProcedureValue(other).CoverageRank, 0);
  EXPECT_FLOAT_EQ(s.ModuleValue(1).CoverageRank, 0.5f);
}

TEST(GatherInfo, SingleHitProcedureRanksAtHalfAThousandth) {
  Workspace ws;
  ProjectBuilder b(ws);
  const auto m = b.Module("Module1");
  const auto hit = b.Procedure(m, "Hit");
  b.Procedure(m, "NotHit");
  const std::int32_t cs = AddSessionForProject(ws, b.Build(), "/tmp/one.pfl");
  SetProc(ws.Session(cs), hit, 3, 0.5, 0.5);
  GatherInfo(ws, cs);

  const ProcedureValue& v = ws.Session(cs).ProcedureValue(hit);
  EXPECT_FLOAT_EQ(v.TotalTimingRank, 0.0005f);
  EXPECT_FLOAT_EQ(v.AverageTimingRank, 0.0005f);
  EXPECT_DOUBLE_EQ(v.ChildTotalTimingRank, 0.0005);
  EXPECT_DOUBLE_EQ(v.ChildAverageTimingRank, 0.0005);
  // No lines: no line rank arrays at all.
  EXPECT_FALSE(ws.Session(cs).LineTotalTimeRank.IsDimensioned());
}

// Every hit is worth at least 50 ns: a line-probed procedure whose line ran
// 1,000 times in no measurable time, and a procedure without line probes whose
// own time came out negative (time between probes below their cost).
TEST(GatherInfo, TimeFloorOfFiftyNanosecondsPerHit) {
  Workspace ws;
  ProjectBuilder b(ws);
  const auto m = b.Module("Module1");
  const auto probed = b.Procedure(m, "Probed");
  b.Line(probed);
  const auto plain = b.Procedure(m, "Plain");
  const std::int32_t cs = AddSessionForProject(ws, b.Build(), "/tmp/floor.pfl");
  SetLine(ws.Session(cs), 1, 1000, 0, 0);
  SetProc(ws.Session(cs), probed, 10, 0, 0);
  SetProc(ws.Session(cs), plain, 10, -0.001, -0.002);
  GatherInfo(ws, cs);

  const CodeLineValue& line = ws.Session(cs).CodeLineValue(1);
  EXPECT_DOUBLE_EQ(line.TotalTime, 0.00005);
  EXPECT_DOUBLE_EQ(line.AverageTime, 0.00000005);
  EXPECT_DOUBLE_EQ(line.ChildTotalTime, 0.00005);
  // Rebuilt from the line; its own 10 hits give a lower floor.
  EXPECT_DOUBLE_EQ(ws.Session(cs).ProcedureValue(probed).TotalTime, 0.00005);
  const ProcedureValue& v = ws.Session(cs).ProcedureValue(plain);
  EXPECT_DOUBLE_EQ(v.TotalTime, 5e-7);
  EXPECT_DOUBLE_EQ(v.ChildTotalTime, 5e-7);
  EXPECT_DOUBLE_EQ(v.AverageTime, 5e-8);
}

TEST(RankToBackcolor, BandsFromWhiteThroughGreenToRed) {
  auto rgb = [](int r, int g, int b) { return r + 256 * g + 65536 * b; };
  EXPECT_EQ(RankToBackcolor(0.0f), rgb(255, 255, 255));
  EXPECT_EQ(RankToBackcolor(-0.5f), rgb(255, 255, 255));
  EXPECT_EQ(RankToBackcolor(0.0005f), rgb(0, 170, 0));
  // The single 0.01 lies just below the double 0.01, the single 0.99 above.
  EXPECT_EQ(RankToBackcolor(0.01f), rgb(0, 170, 0));
  EXPECT_EQ(RankToBackcolor(0.05f), rgb(0, 220, 0));
  // The single 0.1 lies just above the double 0.1: it falls in the next band.
  EXPECT_EQ(RankToBackcolor(0.1f), rgb(0, 255, 0));
  EXPECT_EQ(RankToBackcolor(0.25f), rgb(180, 255, 0));
  EXPECT_EQ(RankToBackcolor(0.5f), rgb(255, 255, 0));
  EXPECT_EQ(RankToBackcolor(0.75f), rgb(255, 170, 0));
  EXPECT_EQ(RankToBackcolor(0.95f), rgb(255, 120, 0));
  EXPECT_EQ(RankToBackcolor(0.99f), rgb(255, 0, 0));
  EXPECT_EQ(RankToBackcolor(1.0f), rgb(255, 0, 0));
}

}  // namespace
}  // namespace zol
