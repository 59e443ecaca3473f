#include "compare/run_diff.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "compare/global_sessions.h"
#include "hand_sessions.h"

namespace zol {
namespace {

using testing::HandSession;
using testing::ProjectBuilder;

// Two versions of one program. Version two makes Main.Slow twice as slow,
// Main.Steady 2.5% slower (noise), Main.Tiny five times slower but by less
// than a millisecond, adds Main.Fresh, drops Main.Old, renames module Calc to
// Maths, and moves Main.Moved below the new procedure with blank lines above
// its lines, which keep their times.
struct Versions {
  std::int32_t base = 0;
  std::int32_t next = 0;
};

Versions TwoVersions(Workspace& ws) {
  ProjectBuilder one(ws, "C:\\v1\\App.vbp");
  const auto main1 = one.Module("Main");
  one.Line(one.Procedure(main1, "Slow"));    // line 1
  one.Line(one.Procedure(main1, "Steady"));  // 2
  one.Line(one.Procedure(main1, "Tiny"));    // 3
  const auto moved1 = one.Procedure(main1, "Moved");
  one.Line(moved1);                                    // 4
  one.Line(moved1);                                    // 5
  one.Line(one.Procedure(main1, "Old"));               // 6
  one.Line(one.Procedure(one.Module("Calc"), "Sum"));  // 7
  const auto cp1 = one.Build();

  ProjectBuilder two(ws, "C:\\v2\\App.vbp");
  const auto main2 = two.Module("Main");
  two.Line(two.Procedure(main2, "Fresh"));   // 1
  two.Line(two.Procedure(main2, "Slow"));    // 2
  two.Line(two.Procedure(main2, "Steady"));  // 3
  two.Line(two.Procedure(main2, "Tiny"));    // 4
  const auto moved2 = two.Procedure(main2, "Moved");
  two.Line(moved2);                                     // 5
  two.Line(moved2);                                     // 6
  two.Line(two.Procedure(two.Module("Maths"), "Sum"));  // 7
  const auto cp2 = two.Build();
  ws.Project(cp2).CodeLine(5).Position += 3;
  ws.Project(cp2).CodeLine(6).Position += 3;

  Versions v;
  v.base = HandSession(ws, cp1, "/runs/v1.pfd",
                       {{1, 10, 0.1},
                        {2, 1, 0.2},
                        {3, 1, 0.0001},
                        {4, 1, 0.01},
                        {5, 2, 0.02},
                        {6, 1, 0.05},
                        {7, 1, 0.03}},
                       {{1, 10}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 1}});
  v.next = HandSession(ws, cp2, "/runs/v2.pfd",
                       {{1, 1, 0.04},
                        {2, 10, 0.2},
                        {3, 1, 0.205},
                        {4, 1, 0.0005},
                        {5, 1, 0.01},
                        {6, 2, 0.02},
                        {7, 1, 0.03}},
                       {{1, 1}, {2, 10}, {3, 1}, {4, 1}, {5, 1}, {6, 1}});
  return v;
}

const DiffRow& Row(const std::vector<DiffRow>& rows, const std::string& module,
                   const std::string& procedure, std::int32_t line = 0) {
  auto it = std::find_if(rows.begin(), rows.end(), [&](const DiffRow& r) {
    return r.module == module && r.procedure == procedure && r.line == line;
  });
  EXPECT_NE(it, rows.end()) << module << "." << procedure << ":" << line;
  static const DiffRow missing;
  return it == rows.end() ? missing : *it;
}

TEST(RunDiff, ProceduresLineUpByNameAcrossVersions) {
  Workspace ws;
  const Versions v = TwoVersions(ws);
  const auto rows = DiffRuns(ws, v.base, v.next, {});

  ASSERT_EQ(rows.size(), 8u);
  // The only regression leads, then the new rows by size, then the gone ones.
  EXPECT_EQ(rows[0].procedure, "Slow");
  EXPECT_EQ(rows[0].state, DiffState::Worse);
  EXPECT_DOUBLE_EQ(*rows[0].ratio, 2.0);
  EXPECT_DOUBLE_EQ(rows[0].difference, 0.1);
  EXPECT_EQ(rows[1].procedure, "Fresh");
  EXPECT_EQ(rows[1].state, DiffState::New);
  EXPECT_EQ(rows[2].module, "Maths");
  EXPECT_EQ(rows[2].state, DiffState::New);
  EXPECT_EQ(rows[3].procedure, "Old");
  EXPECT_EQ(rows[3].state, DiffState::Gone);
  EXPECT_FALSE(rows[3].next.has_value());
  EXPECT_DOUBLE_EQ(rows[3].difference, -0.05);
  EXPECT_EQ(rows[4].module, "Calc");  // a renamed module is gone and new
  EXPECT_EQ(rows[4].state, DiffState::Gone);

  EXPECT_EQ(Row(rows, "Main", "Steady").state, DiffState::Unchanged);
  EXPECT_EQ(Row(rows, "Main", "Tiny").state, DiffState::Unchanged);
  EXPECT_DOUBLE_EQ(*Row(rows, "Main", "Tiny").ratio, 5.0);
  EXPECT_EQ(Row(rows, "Main", "Moved").state, DiffState::Unchanged);
  EXPECT_TRUE(HasRegression(rows));
  EXPECT_EQ(StateName(rows[0].state, DiffQuantity{}), "slower");
}

TEST(RunDiff, BothThresholdsMustBeCleared) {
  Workspace ws;
  const Versions v = TwoVersions(ws);
  DiffOptions o;
  o.absolute = 0;
  EXPECT_EQ(Row(DiffRuns(ws, v.base, v.next, o), "Main", "Tiny").state, DiffState::Worse);
  o = {};
  o.relative = 0.01;
  EXPECT_EQ(Row(DiffRuns(ws, v.base, v.next, o), "Main", "Steady").state, DiffState::Worse);
  o.absolute = 0.01;  // 5 ms more is now within the noise
  EXPECT_EQ(Row(DiffRuns(ws, v.base, v.next, o), "Main", "Steady").state, DiffState::Unchanged);
}

TEST(RunDiff, LinesMatchByPlaceInTheirProcedure) {
  Workspace ws;
  const Versions v = TwoVersions(ws);
  DiffOptions o;
  o.level = DiffLevel::Line;
  const auto rows = DiffRuns(ws, v.base, v.next, o);
  const DiffRow& first = Row(rows, "Main", "Moved", 1);
  EXPECT_DOUBLE_EQ(*first.base, 0.01);
  EXPECT_DOUBLE_EQ(*first.next, 0.01);
  EXPECT_EQ(first.state, DiffState::Unchanged);
  EXPECT_DOUBLE_EQ(*Row(rows, "Main", "Moved", 2).base, 0.02);
  EXPECT_EQ(Row(rows, "Main", "Slow", 1).state, DiffState::Worse);
  EXPECT_EQ(Row(rows, "Main", "Old", 1).state, DiffState::Gone);

  o.quantity.hits = true;
  const auto hits = DiffRuns(ws, v.base, v.next, o);
  EXPECT_EQ(Row(hits, "Main", "Moved", 2).state, DiffState::Unchanged);
  EXPECT_EQ(Row(hits, "Main", "Slow", 1).state, DiffState::Unchanged);
  EXPECT_FALSE(HasRegression(hits));
}

TEST(RunDiff, AMergeOfTwoVersionsAddsTheirLines) {
  Workspace ws;
  const Versions v = TwoVersions(ws);
  const std::int32_t slot = ws.Session.UBound() + 1;
  ws.SessionSlot(slot);
  Array1<Session> compared;
  MakeMergedAndCompareSessions(ws, slot, compared, testing::List({v.base, v.next}), {});
  DiffOptions o;
  o.level = DiffLevel::Line;
  const auto rows = DiffRuns(ws, slot, v.next, o);
  EXPECT_DOUBLE_EQ(*Row(rows, "Main", "Moved", 1).base, 0.02);
  EXPECT_DOUBLE_EQ(*Row(rows, "Main", "Moved", 2).base, 0.04);
  EXPECT_DOUBLE_EQ(*Row(rows, "Main", "Slow", 1).base, 0.3);
  EXPECT_EQ(Row(rows, "Main", "Slow", 1).state, DiffState::Better);
  EXPECT_EQ(Row(rows, "Main", "Fresh", 1).state, DiffState::Unchanged);
  EXPECT_EQ(Row(rows, "Main", "Old", 1).state, DiffState::Gone);
}

TEST(RunDiff, ModulesAndCoverage) {
  Workspace ws;
  const Versions v = TwoVersions(ws);
  DiffOptions o;
  o.level = DiffLevel::Module;
  const auto rows = DiffRuns(ws, v.base, v.next, o);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].module, "Main");
  EXPECT_EQ(rows[0].state, DiffState::Worse);
  EXPECT_EQ(Row(rows, "Maths", "").state, DiffState::New);
  EXPECT_EQ(Row(rows, "Calc", "").state, DiffState::Gone);

  EXPECT_FALSE(DiffAvailable(DiffLevel::Module, DiffQuantity{Measure::Average, false}));
  EXPECT_FALSE(DiffAvailable(DiffLevel::Line, DiffQuantity{Measure::Coverage, false}));
  EXPECT_TRUE(DiffAvailable(DiffLevel::Procedure, DiffQuantity{Measure::Total, true}));
  // Lower coverage is the worse way.
  EXPECT_EQ(StateName(DiffState::Worse, DiffQuantity{Measure::Coverage, false}), "lower");
}

TEST(RunDiff, ARunAgainstItselfHasNoChange) {
  Workspace ws;
  const Versions v = TwoVersions(ws);
  for (const DiffLevel level : {DiffLevel::Module, DiffLevel::Procedure, DiffLevel::Line}) {
    DiffOptions o;
    o.level = level;
    const auto rows = DiffRuns(ws, v.next, v.next, o);
    EXPECT_FALSE(rows.empty());
    for (const DiffRow& r : rows) EXPECT_EQ(r.state, DiffState::Unchanged);
  }
}

}  // namespace
}  // namespace zol
