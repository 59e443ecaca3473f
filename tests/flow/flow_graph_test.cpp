// The call graph on hand-made pairs; every expected value is worked out from
// the rules of the walk, not read back from the code.

#include "flow/flow_graph.h"

#include <gtest/gtest.h>

#include "flow/flow_fixture.h"
#include "flow/flow_json.h"

namespace zol {
namespace {

using test::FlowSession;

std::vector<std::string> Keys(const FlowGraph& g) {
  std::vector<std::string> keys;
  for (const FlowNode& n : g.Nodes) keys.push_back(n.key);
  return keys;
}

std::vector<std::string> LinkKeys(const FlowGraph& g) {
  std::vector<std::string> keys;
  for (const FlowLink& l : g.Links) keys.push_back(l.key);
  return keys;
}

// Procedure k + 1 calls procedure k, for k from 1 to 12: twelve levels of
// callers above procedure 1.
FlowSession CallerChain() {
  FlowSession f(std::vector<std::int32_t>(13, 1));
  for (std::int32_t k = 1; k <= 12; ++k) f.Pair(k + 1, k, k, k / 10.0);
  return f;
}

TEST(FlowGraphWalk, AutomaticDepthFollowsAChainOfTwelveCallersAndEndsOneColumnOut) {
  FlowSession f = CallerChain();
  const FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  ASSERT_EQ(g.NodeCount(), 13);
  EXPECT_EQ(g.Nodes(1).key, "D0P1");
  for (std::int32_t d = 1; d <= 12; ++d) {
    EXPECT_EQ(g.Nodes(d + 1).key, "D-" + std::to_string(d) + "P" + std::to_string(d + 1));
    EXPECT_EQ(g.Nodes(d + 1).Depth, -d);
  }
  // The 13th level is empty: the walk stops with MinDepth beyond the last
  // column, so nobody gets the sums of the outer calls. The callees' side
  // stops at once in the same way.
  EXPECT_EQ(g.MinDepth, -13);
  EXPECT_EQ(g.MaxDepth, 1);
  for (const FlowNode& n : g.Nodes) EXPECT_EQ(n.OtherHits, 0) << n.key;
  ASSERT_EQ(g.LinkCount(), 12);
  EXPECT_EQ(g.Links(1).key, "D-1FD-1P2TD0P1");
  EXPECT_EQ(g.Links(1).FromNode, "D-1P2");
  EXPECT_EQ(g.Links(1).ToNode, "D0P1");
  EXPECT_EQ(g.Links(1).Value, "1 call\r\n0.100000s");
  EXPECT_EQ(g.Links(2).key, "D-2FD-2P3TD-1P2");
  EXPECT_EQ(g.Links(2).Value, "-1");  // only links that touch the procedure are labelled
  EXPECT_DOUBLE_EQ(g.Links(2).NumericValue, 0.2);
  EXPECT_DOUBLE_EQ(g.Nodes(3).SortValue, 0.2);
}

TEST(FlowGraphWalk, ADepthSettingStopsTheWalkAndTheOuterColumnCountsWhatLiesBeyond) {
  FlowSession f = CallerChain();
  const FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {3, 2});
  EXPECT_EQ(g.NodeCount(), 4);
  EXPECT_EQ(g.MinDepth, -3);
  EXPECT_EQ(g.MaxDepth, 1);
  // D-3P4 is called by procedure 5 with 4 hits and 0.4 s.
  const FlowNode& outer = g.Nodes(g.GetNode("D-3P4"));
  EXPECT_EQ(outer.OtherHits, 4);
  EXPECT_DOUBLE_EQ(outer.OtherTime, 0.4);
}

TEST(FlowGraphWalk, AColumnOfElevenCallersIsDrawnAndEndsTheWalk) {
  // Procedures 2 to 12 call 1; procedure 13 calls each of them.
  FlowSession f(std::vector<std::int32_t>(13, 1));
  for (std::int32_t p = 2; p <= 12; ++p) f.Pair(p, 1, 1, 0.5);
  for (std::int32_t p = 2; p <= 12; ++p) f.Pair(13, p, 2, 0.125);
  const FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  EXPECT_EQ(g.NodeCount(), 12);
  EXPECT_EQ(g.MinDepth, -1);
  EXPECT_EQ(g.GetNode("D-2P13"), 0);
  for (std::int32_t p = 2; p <= 12; ++p) {
    const FlowNode& n = g.Nodes(g.GetNode("D-1P" + std::to_string(p)));
    EXPECT_EQ(n.OtherHits, 2);
    EXPECT_DOUBLE_EQ(n.OtherTime, 0.125);
  }
  // A column of ten goes on.
  FlowSession ten(std::vector<std::int32_t>(12, 1));
  for (std::int32_t p = 2; p <= 11; ++p) ten.Pair(p, 1);
  for (std::int32_t p = 2; p <= 11; ++p) ten.Pair(12, p);
  const FlowGraph g10 = BuildFlowGraph(ten.ws, ten.Select(1, 1), {});
  EXPECT_NE(g10.GetNode("D-2P12"), 0);
  EXPECT_EQ(g10.MinDepth, -3);
}

TEST(FlowGraphWalk, ASelfCallIsOneLinkOnItsNodeAndCountsInTheOuterSums) {
  FlowSession f({1, 1});
  f.Pair(1, 1, 3, 0.5);
  f.Pair(1, 2, 1, 0.25);
  const FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  EXPECT_EQ(Keys(g), (std::vector<std::string>{"D0P1", "D1P2"}));
  EXPECT_EQ(LinkKeys(g), (std::vector<std::string>{"D0FD0P1TD0P1", "D1FD0P1TD1P2"}));
  EXPECT_EQ(g.Links(1).Value, "3 calls\r\n0.500000s");
  EXPECT_EQ(g.Links(1).Depth, 0);
  EXPECT_DOUBLE_EQ(g.Nodes(1).SortValue, 0.5);

  // From procedure 2, procedure 1 is the outer caller: its own calls count.
  const FlowGraph from2 = BuildFlowGraph(f.ws, f.Select(1, 2), {1, 0});
  const FlowNode& caller = from2.Nodes(from2.GetNode("D-1P1"));
  EXPECT_EQ(caller.OtherHits, 3);
  EXPECT_DOUBLE_EQ(caller.OtherTime, 0.5);
}

TEST(FlowGraphWalk, RecursionShowsTheProcedureAgainAndFillsEveryColumn) {
  FlowSession f({1, 1});
  f.Pair(1, 2, 4, 1.0);
  f.Pair(2, 1, 3, 0.75);
  const FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {1, 2});
  EXPECT_EQ(Keys(g), (std::vector<std::string>{"D0P1", "D-1P2", "D1P2", "D2P1"}));
  EXPECT_EQ(g.Links(3).key, "D2FD1P2TD2P1");
  EXPECT_EQ(g.Links(3).Value, "-1");
  // Outer columns: D-1P2 is called by 1 (4 hits); D2P1 calls 2 (4 hits).
  EXPECT_EQ(g.Nodes(2).OtherHits, 4);
  EXPECT_EQ(g.Nodes(4).OtherHits, 4);
  EXPECT_EQ(g.Nodes(3).OtherHits, 0);

  const FlowGraph all = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  EXPECT_EQ(all.NodeCount(), 1 + 2 * kAutomaticCallDepth);
  EXPECT_EQ(all.MinDepth, -kAutomaticCallDepth);
  EXPECT_EQ(all.MaxDepth, kAutomaticCallDepth);
  EXPECT_EQ(all.Nodes(all.NodeCount()).key, "D99P2");
}

TEST(FlowGraphWalk, ASessionWithoutPairsShowsOneNode) {
  FlowSession f({1, 1});
  const FlowGraph g = BuildFlowGraph(f.ws, f.Select(0, 0), {});
  EXPECT_EQ(Keys(g), (std::vector<std::string>{"D0P1"}));
  EXPECT_EQ(g.LinkCount(), 0);
  EXPECT_EQ(g.Module, 1);
  EXPECT_EQ(g.Procedure, 1);
  EXPECT_EQ(g.MinDepth, -1);
  EXPECT_EQ(g.MaxDepth, 1);
  EXPECT_EQ(g.Message, "");
}

TEST(FlowGraphChoice, TheProcedureComesFromTheFirstProcedureOrTheFirstPairInTheModule) {
  // Modules: 1 holds procedures 1 and 2, module 2 holds 3 and 4, module 3
  // holds 5, module 4 holds 6.
  FlowSession f({1, 1, 2, 2, 3, 4});
  f.session().FirstProc = 2;
  f.Pair(1, 4);  // the callee lies in module 2
  f.Pair(3, 1);  // the caller lies in module 2, but a later pair
  f.Pair(5, 1);
  EXPECT_EQ(BuildFlowGraph(f.ws, f.Select(0, 0), {}).Procedure, 2);
  EXPECT_EQ(BuildFlowGraph(f.ws, f.Select(0, 0), {}).Module, 1);
  EXPECT_EQ(BuildFlowGraph(f.ws, f.Select(1, 0), {}).Procedure, 2);  // FirstProc's own module
  EXPECT_EQ(BuildFlowGraph(f.ws, f.Select(2, 0), {}).Procedure, 4);
  EXPECT_EQ(BuildFlowGraph(f.ws, f.Select(3, 0), {}).Procedure, 5);
  // A module without calls shows nothing, and the walk doesn't run.
  const FlowGraph none = BuildFlowGraph(f.ws, f.Select(4, 0), {});
  EXPECT_EQ(none.Procedure, 0);
  EXPECT_EQ(none.Module, 4);
  EXPECT_EQ(none.NodeCount(), 0);
  EXPECT_EQ(none.MinDepth, 0);
  EXPECT_EQ(none.MaxDepth, 0);
  EXPECT_EQ(none.Message, "");
  // A procedure given is taken as it stands.
  EXPECT_EQ(BuildFlowGraph(f.ws, f.Select(4, 6), {}).NodeCount(), 1);
}

TEST(FlowGraphChoice, SelectionsWithoutOneSessionGiveTheirMessage) {
  FlowSession f({1});
  Selection sel = f.Select(0, 0);
  sel.session = SessionRef::compared();
  EXPECT_EQ(BuildFlowGraph(f.ws, sel, {}).Message, "Unavailable (compared sessions)");
  sel.session = SessionRef::merged();
  f.ws.fHomogeneous = false;
  EXPECT_EQ(BuildFlowGraph(f.ws, sel, {}).Message, "Unavailable (heterogeneous sessions)");
  f.ws.fHomogeneous = true;
  EXPECT_EQ(BuildFlowGraph(f.ws, sel, {}).Message, "No data");  // slot 0 holds no run
  f.session().FirstProc = 0;
  const FlowGraph noData = BuildFlowGraph(f.ws, f.Select(0, 0), {});
  EXPECT_EQ(noData.Message, "No data");
  EXPECT_EQ(noData.NodeCount(), 0);

  EXPECT_EQ(FlowNoticeText(kFlowComparedMessage),
            "\r\n    Unavailable (compared sessions)\r\n\r\n    Please click the Procedures tab");
  EXPECT_EQ(FlowNoticeText(kFlowNoDataMessage), "\r\n    No data");
  EXPECT_EQ(FlowNoticeText(""), "");
}

TEST(FlowGraphValues, LinkLabelsAndSortValuesFollowTheMeasure) {
  FlowSession f({1, 1, 1});
  f.Pair(1, 2, 4, 1.0);
  f.Pair(1, 3, 1, 0.5);
  f.Pair(3, 2, 2, 0.25);  // puts procedure 2 in column 2 as well

  const FlowGraph avg = BuildFlowGraph(f.ws, f.Select(1, 1, Measure::ChildAverage), {});
  EXPECT_EQ(avg.Links(1).Value, "4 calls\r\n0.250000s");
  EXPECT_DOUBLE_EQ(avg.Links(1).NumericValue, 0.25);
  EXPECT_DOUBLE_EQ(avg.Nodes(avg.GetNode("D1P2")).SortValue, 0.25);
  EXPECT_DOUBLE_EQ(avg.Nodes(avg.GetNode("D1P2")).ProcedureValue, 0.02);  // child average

  const FlowGraph cov = BuildFlowGraph(f.ws, f.Select(1, 1, Measure::Coverage), {});
  EXPECT_EQ(cov.Links(2).Value, "1 call");
  EXPECT_DOUBLE_EQ(cov.Links(2).NumericValue, 1);
  // Hits / 10000 + the coverage of procedure 3 (0.03).
  EXPECT_DOUBLE_EQ(cov.Nodes(cov.GetNode("D1P3")).SortValue, 1 / 10000.0 + 0.03);
  EXPECT_DOUBLE_EQ(cov.Nodes(1).ProcedureValue, 1);  // hits

  // Column 2 holds procedure 2 once more, reached from 3: the last pair
  // that reaches a node sets its sort value.
  const FlowGraph total = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  EXPECT_DOUBLE_EQ(total.Nodes(total.GetNode("D2P2")).SortValue, 0.25);
  EXPECT_DOUBLE_EQ(total.Nodes(total.GetNode("D1P2")).ProcedureValue, 0.02);
}

TEST(FlowGraphValues, TheLastPairThatReachesANodeSetsItsSortValue) {
  // 2 and 3 both call 4; 1 calls 2 and 3. From 1, column 2 holds 4 once,
  // reached first from 2 (0.5 s) and then from 3 (0.125 s).
  FlowSession f({1, 1, 1, 1});
  f.Pair(1, 2);
  f.Pair(1, 3);
  f.Pair(2, 4, 1, 0.5);
  f.Pair(3, 4, 1, 0.125);
  const FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {0, 2});
  EXPECT_DOUBLE_EQ(g.Nodes(g.GetNode("D2P4")).SortValue, 0.125);
  EXPECT_EQ(LinkKeys(g), (std::vector<std::string>{"D1FD0P1TD1P2", "D1FD0P1TD1P3", "D2FD1P2TD2P4",
                                                   "D2FD1P3TD2P4"}));
}

TEST(FlowGraphValues, APairNamingAnUnknownProcedureIsRefusedWithItsNumber) {
  FlowSession f({1, 1});
  f.Pair(1, 9);
  try {
    BuildFlowGraph(f.ws, f.Select(1, 1), {});
    FAIL() << "no error";
  } catch (const FlowDataError& e) {
    EXPECT_STREQ(e.what(), "call pair 1 names procedure 9, beyond the 2 procedures of the session");
  }
}

}  // namespace
}  // namespace zol

namespace zol {
namespace {

TEST(FlowGraphJson, TheGraphIsWrittenInCreationOrderWithShortestDoubles) {
  test::FlowSession f({1, 1});
  f.Pair(1, 2, 2, 0.1);
  const FlowGraph g = BuildFlowGraph(f.ws, f.Select(0, 0), {1, 1});
  EXPECT_EQ(FlowGraphJson(g),
            "{\"Module\":1,\"Procedure\":1,\"Message\":\"\",\"MinDepth\":-1,\"MaxDepth\":1,"
            "\"Nodes\":[{\"key\":\"D0P1\",\"ProcNumber\":1,\"Depth\":0,\"SortValue\":0,"
            "\"ProcedureValue\":0.01,\"OtherHits\":0,\"OtherTime\":0},"
            "{\"key\":\"D1P2\",\"ProcNumber\":2,\"Depth\":1,\"SortValue\":0.1,"
            "\"ProcedureValue\":0.02,\"OtherHits\":0,\"OtherTime\":0}],"
            "\"Links\":[{\"key\":\"D1FD0P1TD1P2\",\"FromNode\":\"D0P1\",\"ToNode\":\"D1P2\","
            "\"Depth\":1,\"Value\":\"2 calls\\r\\n0.100000s\",\"NumericValue\":0.1}]}");
  Selection compared = f.Select(0, 0);
  compared.session = SessionRef::compared();
  EXPECT_EQ(FlowGraphJson(BuildFlowGraph(f.ws, compared, {})),
            "{\"Module\":0,\"Procedure\":0,\"Message\":\"Unavailable (compared sessions)\","
            "\"MinDepth\":0,\"MaxDepth\":0,\"Nodes\":[],\"Links\":[]}");
}

}  // namespace
}  // namespace zol
