// Sessions of different projects merged by name: the merged project, the line
// blocks, the renumbered compared values and the coverage of the best run.

#include <gtest/gtest.h>

#include "compare/global_sessions.h"
#include "hand_sessions.h"

namespace zol {
namespace {

using testing::HandSession;
using testing::List;
using testing::ProjectBuilder;

class HeterogeneousMergeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ProjectBuilder a(ws_, "C:\\A\\A.vbp");
    const auto aMain = a.Module("Main");
    const auto aForm = a.Module("Form1");
    const auto start = a.Procedure(aMain, "Start");    // 1
    a.Line(start);                                     // 1
    a.Line(start);                                     // 2
    const auto shared = a.Procedure(aMain, "Shared");  // 2
    a.Line(shared);                                    // 3
    const auto load = a.Procedure(aForm, "Load");      // 3
    a.Line(load);                                      // 4
    a.Procedure(aMain, "Legacy", {.dead = true});      // 4
    pa_ = a.Build();
    ws_.Project(pa_).Module(aForm).Type = kModuleForm;

    ProjectBuilder b(ws_, "C:\\B\\B.vbp");
    const auto bUtil = b.Module("Util");
    const auto bMain = b.Module("Main");
    const auto bForm = b.Module("Form1");               // a class of the same name as A's form
    const auto format = b.Procedure(bUtil, "Format");   // 1
    b.Line(format);                                     // 1
    const auto bShared = b.Procedure(bMain, "Shared");  // 2
    b.Line(bShared);                                    // 2
    b.Line(bShared);                                    // 3
    const auto legacy = b.Procedure(bMain, "Legacy");   // 3, alive here
    b.Line(legacy);                                     // 4
    const auto bLoad = b.Procedure(bForm, "Load");      // 4
    b.Line(bLoad);                                      // 5
    pb_ = b.Build();
    ws_.Project(pb_).Module(bForm).Type = kModuleClass;

    sa_ = HandSession(ws_, pa_, "/runs/a.pfd", {{1, 2, 0.2}, {3, 1, 0.1}, {4, 1, 0.3}},
                      {{1, 2}, {2, 1}, {3, 1}});
    sb_ =
        HandSession(ws_, pb_, "/runs/b.pfd", {{1, 1, 0.1}, {2, 4, 0.4}, {3, 4, 0.1}, {4, 1, 0.05}},
                    {{1, 1}, {2, 4}, {3, 1}});
  }

  const Session& Merge(const Array1<std::int32_t>& list, std::int32_t slot = 0,
                       bool keepTrack = true) {
    MakeMergedAndCompareSessions(ws_, slot, ws_.CompareSession, list,
                                 {.keepTrackOfOriginalProject = keepTrack});
    return ws_.Session(slot);
  }

  Workspace ws_;
  std::int32_t pa_ = 0, pb_ = 0, sa_ = 0, sb_ = 0;
};

TEST_F(HeterogeneousMergeTest, ModulesAndProceduresUniteByNameAndType) {
  const Session& m = Merge(List({sa_, sb_}));
  ASSERT_EQ(m.Project, 0) << "the merged view's project is Project(0)";
  const Project& mp = ws_.Project(0);
  EXPECT_TRUE(mp.Loaded);
  ASSERT_EQ(mp.ModulesNumber, 4);
  EXPECT_EQ(mp.Module(1).Name, "Main");
  EXPECT_EQ(mp.Module(2).Name, "Form1");
  EXPECT_EQ(mp.Module(2).Type, kModuleForm);
  EXPECT_EQ(mp.Module(3).Name, "Util");
  EXPECT_EQ(mp.Module(4).Name, "Form1") << "same name, other type: a module of its own";
  EXPECT_EQ(mp.Module(4).Type, kModuleClass);
  EXPECT_EQ(mp.Module(1).BelongToProject, pa_);
  EXPECT_EQ(mp.Module(3).BelongToProject, pb_);

  ASSERT_EQ(mp.ProceduresNumber, 6);
  EXPECT_EQ(mp.Procedure(2).Name, "Shared");
  EXPECT_EQ(mp.Procedure(5).Name, "Format");
  EXPECT_EQ(mp.Procedure(5).BelongToModule, 3);
  EXPECT_EQ(mp.Procedure(6).Name, "Load");
  EXPECT_EQ(mp.Procedure(6).BelongToModule, 4);
  EXPECT_EQ(m.ProceduresNumber, 6);

  const Procedure& legacy = mp.Procedure(4);
  EXPECT_FALSE(legacy.IsDead) << "dead in A only: alive in the merge";
  EXPECT_TRUE(legacy.IsProfiled);
  EXPECT_EQ(m.ModuleValue(1).TotalProcedures, 3) << "Start, Shared and the living Legacy";
}

TEST_F(HeterogeneousMergeTest, EachProjectKeepsABlockOfLines) {
  const Session& m = Merge(List({sa_, sb_}));
  const Project& mp = ws_.Project(0);
  ASSERT_EQ(mp.LinesNumber, 4 + 5);
  EXPECT_EQ(m.LinesNumber, 9);
  // A's lines first, then B's, each pointing at the merged procedure.
  const std::int32_t expectedProcedure[] = {1, 1, 2, 3, 5, 2, 2, 4, 6};
  for (std::int32_t id = 1; id <= 9; ++id) {
    EXPECT_EQ(mp.CodeLine(id).BelongToProcedure, expectedProcedure[id - 1]) << "line " << id;
  }
  EXPECT_EQ(m.CodeLineValue(1).Hits, 2);
  EXPECT_EQ(m.CodeLineValue(6).Hits, 4) << "B's line 2";
  EXPECT_DOUBLE_EQ(m.CodeLineValue(6).AverageTime, 0.1);
  EXPECT_EQ(m.CodeLineValue(9).Hits, 0);
}

TEST_F(HeterogeneousMergeTest, CompareSessionsAreRenumberedToTheMergedProject) {
  Merge(List({sa_, sb_}));
  ASSERT_EQ(ws_.CompareSession.UBound(), ws_.nSession);
  const Session& ca = ws_.CompareSession(sa_);
  const Session& cb = ws_.CompareSession(sb_);
  EXPECT_EQ(ca.ProcedureValue(2), ws_.Session(sa_).ProcedureValue(2));
  EXPECT_EQ(cb.ProcedureValue(2), ws_.Session(sb_).ProcedureValue(2));
  EXPECT_EQ(cb.ProcedureValue(4), ws_.Session(sb_).ProcedureValue(3));
  EXPECT_EQ(ca.ProcedureValue(5), ProcedureValue{}) << "Format is only in B";
  EXPECT_EQ(cb.ProcedureValue(1), ProcedureValue{}) << "Start is only in A";
  EXPECT_EQ(ca.ModuleValue(2), ws_.Session(sa_).ModuleValue(2));
  EXPECT_EQ(ca.ModuleValue(4), ModuleValue{});
  EXPECT_EQ(cb.ModuleValue(4), ws_.Session(sb_).ModuleValue(3));
}

TEST_F(HeterogeneousMergeTest, ProceduresSumByNameAndTakeTheBestCoverage) {
  // Start in A: 2 lines, 1 hit; nothing else has Start.
  const Session& m = Merge(List({sa_, sb_}));
  const ProcedureValue& shared = m.ProcedureValue(2);
  EXPECT_EQ(shared.Hits, 5);
  EXPECT_DOUBLE_EQ(shared.TotalTime, 0.1 + 0.5);
  EXPECT_DOUBLE_EQ(shared.AverageTime, 0.6 / 5);
  // Full coverage in both runs: the later run's counts stand.
  EXPECT_EQ(shared.TotalLines, 2);
  EXPECT_EQ(shared.HitLines, 2);
  EXPECT_DOUBLE_EQ(m.ProcedureValue(1).Coverage, 0.5);
  EXPECT_EQ(m.FlowPair.Count(), 0) << "IDs of two projects can't be paired";
}

TEST_F(HeterogeneousMergeTest, AProjectListedTwiceAddsItsLinesOnce) {
  const std::int32_t sa2 =
      HandSession(ws_, pa_, "/runs/a2.pfd", {{1, 3, 0.3}, {2, 1, 0.1}}, {{1, 3}});
  const Session& m = Merge(List({sa_, sb_, sa2}));
  EXPECT_EQ(ws_.Project(0).LinesNumber, 9);
  EXPECT_EQ(m.CodeLineValue(1).Hits, 5);
  EXPECT_DOUBLE_EQ(m.CodeLineValue(1).TotalTime, 0.5);
  EXPECT_EQ(m.CodeLineValue(2).Hits, 1);
  EXPECT_EQ(m.ProcedureValue(1).Hits, 5);
}

TEST_F(HeterogeneousMergeTest, AMergeIntoAnotherSlotGetsANewProjectEntry) {
  const std::int32_t slot = ++ws_.nSession;
  ws_.SessionSlot(slot);
  const std::int32_t projectsBefore = ws_.nProject;
  const Session& m = Merge(List({sa_, sb_}), slot, false);
  EXPECT_EQ(ws_.nProject, projectsBefore + 1);
  EXPECT_EQ(m.Project, ws_.nProject);
  EXPECT_EQ(ws_.Project(m.Project).Module(1).BelongToProject, 0) << "not asked to keep track";
  EXPECT_EQ(ws_.Project(0).ModulesNumber, 0) << "the merged view's project is untouched";
}

TEST_F(HeterogeneousMergeTest, TheMergedViewStartsOverEachTime) {
  Merge(List({sa_, sb_}));
  const Session& m = Merge(List({sb_, sa_}));
  const Project& mp = ws_.Project(0);
  EXPECT_EQ(mp.ModulesNumber, 4);
  EXPECT_EQ(mp.Module(1).Name, "Util") << "list order decides the numbering";
  EXPECT_EQ(mp.LinesNumber, 9);
  EXPECT_EQ(m.CodeLineValue(2).Hits, 4);
}

TEST_F(HeterogeneousMergeTest, IsNeededReadsTheComparedValues) {
  Merge(List({sa_, sb_}));
  ws_.fHomogeneous = false;
  EXPECT_FALSE(IsNeeded(ws_, 5, kNeededProcedure, List({sa_})));
  EXPECT_TRUE(IsNeeded(ws_, 5, kNeededProcedure, List({sb_})));
  EXPECT_TRUE(IsNeeded(ws_, 5, kNeededProcedure, List({sa_, sb_})));
  EXPECT_TRUE(IsNeeded(ws_, 2, kNeededCoverage, List({sa_})));
}

}  // namespace
}  // namespace zol
