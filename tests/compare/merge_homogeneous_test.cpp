// Sessions of one project merged by ID: sums, recomputed averages, floors,
// coverage, module totals, call pairs and ranks, on the hand-built runs of
// TwoRunsOfOneProject, whose every number can be worked out on paper.

#include <gtest/gtest.h>

#include "compare/global_sessions.h"
#include "hand_sessions.h"

namespace zol {
namespace {

using testing::HandSession;
using testing::List;
using testing::ProjectBuilder;

class HomogeneousMergeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const testing::TwoRuns runs = testing::TwoRunsOfOneProject(ws_);
    cp_ = runs.cp;
    s1_ = runs.one;
    s2_ = runs.two;
  }

  const Session& Merge() {
    MakeMergedAndCompareSessions(ws_, 0, ws_.CompareSession, List({s1_, s2_}),
                                 {.homogeneous = true});
    return ws_.Session(0);
  }

  Workspace ws_;
  std::int32_t cp_ = 0;
  std::int32_t s1_ = 0;
  std::int32_t s2_ = 0;
};

TEST_F(HomogeneousMergeTest, LinesSumHitsAndTimesAndRecomputeAverages) {
  const Session& m = Merge();
  EXPECT_EQ(m.Name, "Merged Sessions");
  EXPECT_EQ(m.Project, cp_);
  EXPECT_EQ(m.LinesNumber, 5);
  EXPECT_EQ(m.ProceduresNumber, 5);
  const CodeLineValue& l1 = m.CodeLineValue(1);
  EXPECT_EQ(l1.Hits, 5);
  EXPECT_DOUBLE_EQ(l1.TotalTime, 0.6);
  EXPECT_DOUBLE_EQ(l1.ChildTotalTime, 0.9);
  EXPECT_DOUBLE_EQ(l1.AverageTime, 0.12) << "0.6 / 5, not the mean of 0.1 and 0.133";
  EXPECT_DOUBLE_EQ(l1.ChildAverageTime, 0.18);
  EXPECT_EQ(m.CodeLineValue(4).Hits, 1);
  EXPECT_EQ(m.CodeLineValue(5).Hits, 0);
  EXPECT_EQ(m.CodeLineValue(5).AverageTime, 0);
}

TEST_F(HomogeneousMergeTest, ProceduresModulesAndSessionTotals) {
  const Session& m = Merge();
  const ProcedureValue& start = m.ProcedureValue(1);
  EXPECT_EQ(start.Hits, 3);
  EXPECT_DOUBLE_EQ(start.TotalTime, 0.7);  // 0.2 + 0.1 from run one, 0.4 from run two
  EXPECT_DOUBLE_EQ(start.AverageTime, 0.7 / 3);
  EXPECT_EQ(start.TotalLines, 3);
  EXPECT_EQ(start.HitLines, 3) << "the exit line was hit in run one only";
  EXPECT_DOUBLE_EQ(start.Coverage, 1.0);
  EXPECT_TRUE(start.IsCovered);
  EXPECT_TRUE(start.IsProfiled);

  const ProcedureValue& idle = m.ProcedureValue(3);
  EXPECT_EQ(idle.Hits, 3);
  EXPECT_DOUBLE_EQ(idle.TotalTime, 0.3);
  EXPECT_FALSE(idle.IsCovered);

  const ModuleValue& main = m.ModuleValue(1);
  EXPECT_EQ(main.TotalProcedures, 3) << "the dead procedure stays out";
  EXPECT_EQ(main.HitProcedures, 3);
  EXPECT_EQ(main.TotalLines, 4);
  EXPECT_EQ(main.HitLines, 4);
  EXPECT_DOUBLE_EQ(main.TotalTime, 0.7 + 0.05 + 0.3);
  EXPECT_DOUBLE_EQ(main.LineCoverage, 1.0);

  const ModuleValue& calc = m.ModuleValue(2);
  EXPECT_EQ(calc.CriticalTotalLines, 1);
  EXPECT_EQ(calc.CriticalHitLines, 0);
  EXPECT_EQ(calc.HitProcedures, 1);

  EXPECT_EQ(m.SessionValue.TotalLines, 5);
  EXPECT_EQ(m.SessionValue.HitLines, 4);
  EXPECT_DOUBLE_EQ(m.SessionValue.LineCoverage, 0.8);
  EXPECT_EQ(m.SessionValue.TotalProcedures, 4);
  EXPECT_EQ(m.SessionValue.CriticalTotalLines, 1);
}

TEST_F(HomogeneousMergeTest, CallPairsAddUpInOrderOfFirstSightAndTheLastRunEnds) {
  const Session& m = Merge();
  ASSERT_EQ(m.nFlowPair, 3);
  EXPECT_EQ(m.FlowPair(1), (FlowPair{1, 5, 1, 0.2}));
  EXPECT_EQ(m.FlowPair(2).Hits, 3);
  EXPECT_DOUBLE_EQ(m.FlowPair(2).ChildTime, 0.4);
  EXPECT_EQ(m.FlowPair(3), (FlowPair{3, 2, 4, 0.4}));
  EXPECT_EQ(m.FirstProc, ws_.Session(s2_).FirstProc);
  EXPECT_EQ(m.LastProc, 2);
}

TEST_F(HomogeneousMergeTest, RanksComeFromTheMergedValues) {
  const Session& m = Merge();
  // Hit procedures by total time: Sum (5e-8, the floor), Work, Idle, Start;
  // four ranks and a counter of 5.
  EXPECT_FLOAT_EQ(m.ProcedureValue(5).TotalTimingRank, 0.001f / 5);
  EXPECT_FLOAT_EQ(m.ProcedureValue(2).TotalTimingRank, 2.0f / 5);
  EXPECT_FLOAT_EQ(m.ProcedureValue(3).TotalTimingRank, 3.0f / 5);
  EXPECT_FLOAT_EQ(m.ProcedureValue(1).TotalTimingRank, 4.0f / 5);
  EXPECT_EQ(m.ProcedureValue(4).TotalTimingRank, 0) << "never entered";
  ASSERT_EQ(m.LineTotalTimeRank.UBound(), 5);
  EXPECT_EQ(m.LineTotalTimeRank(1), 5) << "the slowest line is last";
}

TEST_F(HomogeneousMergeTest, AMergedLineKeepsTheTimeFloor) {
  ws_.Session(s1_).CodeLineValue(5) = {1000, 0, 0, 0, 0};
  const Session& m = Merge();
  EXPECT_DOUBLE_EQ(m.CodeLineValue(5).TotalTime, 5e-05);
  EXPECT_DOUBLE_EQ(m.CodeLineValue(5).ChildTotalTime, 5e-05);
  EXPECT_DOUBLE_EQ(m.CodeLineValue(5).AverageTime, 5e-08);
}

TEST_F(HomogeneousMergeTest, MergingAgainStartsFromAnEmptySlotAndKeepsTheProject) {
  Merge();
  const Session first = ws_.Session(0);
  const Session& again = Merge();
  EXPECT_EQ(again.CodeLineValue, first.CodeLineValue);
  EXPECT_EQ(again.ProcedureValue, first.ProcedureValue);
  EXPECT_EQ(again.nFlowPair, 3);
  EXPECT_EQ(ws_.Project(cp_).ProceduresNumber, 5) << "a scanned project is never cleared";
  EXPECT_TRUE(ws_.Project(cp_).Loaded);
}

TEST_F(HomogeneousMergeTest, SessionsThatCantTakePartAreRefused) {
  ws_.Session(s2_).Loaded = false;
  EXPECT_THROW(Merge(), MergeError);
  ws_.Session(s2_).Loaded = true;
  const MergeOptions byId{.homogeneous = true};
  EXPECT_THROW(MakeMergedAndCompareSessions(ws_, 0, ws_.CompareSession, List({s1_, 9}), byId),
               MergeError);
  EXPECT_THROW(MakeMergedAndCompareSessions(ws_, 0, ws_.CompareSession, List({}), byId),
               MergeError);

  ProjectBuilder other(ws_, "C:\\Other\\Other.vbp");
  other.Procedure(other.Module("Main"), "Start");
  const std::int32_t s3 = HandSession(ws_, other.Build(), "/runs/three.pfd", {}, {{1, 1}});
  EXPECT_THROW(MakeMergedAndCompareSessions(ws_, 0, ws_.CompareSession, List({s1_, s3}), byId),
               MergeError)
      << "sessions of two projects have no common IDs";
}

TEST_F(HomogeneousMergeTest, IsNeededLooksAtTheListedSessionsOnly) {
  ws_.fHomogeneous = true;
  EXPECT_TRUE(IsNeeded(ws_, 4, kNeededLine, List({s2_})));
  EXPECT_FALSE(IsNeeded(ws_, 4, kNeededLine, List({s1_})));
  EXPECT_TRUE(IsNeeded(ws_, 4, kNeededLine, List({s1_, s2_})));
  EXPECT_TRUE(IsNeeded(ws_, 3, kNeededProcedure, List({s1_})));
  EXPECT_FALSE(IsNeeded(ws_, 3, kNeededCoverage, List({s1_, s2_}))) << "no probed lines";
  EXPECT_TRUE(IsNeeded(ws_, 1, kNeededCoverage, List({s2_})));
  EXPECT_FALSE(IsNeeded(ws_, 1, 7, List({s1_, s2_}))) << "an unknown kind";
  EXPECT_FALSE(IsNeeded(ws_, 99, kNeededLine, List({s1_, s2_}))) << "no such line";
}

}  // namespace
}  // namespace zol
