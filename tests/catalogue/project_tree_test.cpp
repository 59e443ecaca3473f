// The project tree as a node model: branches of ticked sessions and groups,
// the merged and compared branches, colours, and the selection read back from
// node keys. The runs are the hand-built ones of TwoRunsOfOneProject, so
// every text below is worked out by hand.

#include "catalogue/project_tree.h"

#include <gtest/gtest.h>

#include <vector>

#include "compare/global_sessions.h"
#include "compare/group_merge.h"
#include "compare/hand_sessions.h"

namespace zol {
namespace {

using testing::HandSession;
using testing::List;
using testing::ProjectBuilder;

std::vector<std::string> Keys(const TreeNodes& nodes) {
  std::vector<std::string> keys;
  nodes.ForEach([&](const TreeNode& n) { keys.push_back(n.Key); });
  return keys;
}

class ProjectTreeTest : public ::testing::Test {
 protected:
  void SetUp() override { runs_ = testing::TwoRunsOfOneProject(ws_); }

  const TreeNode& Node(const std::string& key) {
    const TreeNode* n = tree_.Nodes().Find(key);
    if (!n) throw std::runtime_error("no node " + key);
    return *n;
  }
  const std::string& Text(const std::string& key) { return Node(key).Text; }
  // The place of the selected node, as the window takes it.
  Selection Place() const { return tree_.TreeSelection({}); }

  void TickBoth() {
    tree_.SelectSession(runs_.one, "", true);
    tree_.SelectSession(runs_.two, "", true);
    InitGlobalSessions(ws_, &tree_);
  }

  Workspace ws_{std::make_shared<RecordingPrompter>()};
  testing::TwoRuns runs_;
  ProjectTree tree_{ws_};
};

TEST_F(ProjectTreeTest, ASessionBranchHasANodePerModuleAndProcedure) {
  tree_.SelectSession(runs_.one, "", true);
  EXPECT_TRUE(ws_.Session(runs_.one).Selected);
  EXPECT_EQ(Keys(tree_.Nodes()), (std::vector<std::string>{"S1", "S1M1", "S1M1P1", "S1M1P2",
                                                           "S1M1P3", "S1M1P4", "S1M2", "S1M2P5"}));
  EXPECT_EQ(Text("S1"), "one (LC:60.0% - TT:0.6s)");
  EXPECT_EQ(Text("S1M1"), "Main (LC:75.0% - TT:0.60s)");
  EXPECT_EQ(Text("S1M1P1"), "Start (LC:100% - TT:0.300s - AT:0.150s)");
  EXPECT_EQ(Text("S1M1P2"), "Work (LC:0% - No hits)");
  EXPECT_EQ(Text("S1M1P3"), "Idle (Not covered - TT:0.300s - AT:0.100s)");
  EXPECT_EQ(Text("S1M1P4"), "Old (Dead code)");
  EXPECT_EQ(Text("S1M2"), "Calc (LC:0% - TT:0.00s)");
  EXPECT_EQ(Text("S1M2P5"), "Sum (LC:0% - TT:0.000s - AT:0.000s)");

  EXPECT_EQ(Node("S1").Image, "SESSION");
  EXPECT_TRUE(Node("S1").Bold);
  EXPECT_TRUE(Node("S1").Expanded);
  EXPECT_EQ(Node("S1M1").Image, "TYPE1");
  EXPECT_EQ(Node("S1M1P1").Image, "PROC0");
  EXPECT_TRUE(Node("S1M1").Expanded) << "the first module is opened";
  EXPECT_FALSE(Node("S1M2").Expanded);
  EXPECT_EQ(Node("S1M2").ForeColor, kTreeRed) << "it holds a critical procedure";
  EXPECT_EQ(Node("S1M1").ForeColor, kTreeBlack);
  EXPECT_EQ(tree_.Nodes().SelectedKey(), "") << "not clicked";
}

TEST_F(ProjectTreeTest, AModuleWithoutProbesShowsWhatItLacks) {
  ProjectBuilder b(ws_, "C:\\Bare\\Bare.vbp");
  const auto empty = b.Module("Empty");
  b.Procedure(empty, "Bare", {.profiled = false});
  const std::int32_t cs = HandSession(ws_, b.Build(), "/runs/bare.pfd", {}, {});
  tree_.SelectSession(cs, "", false);
  const std::string key = "S" + std::to_string(cs);
  EXPECT_EQ(Text(key + "M1"), "Empty (Not covered - Not profiled)");
  EXPECT_EQ(Text(key + "M1P1"), "Bare");
  EXPECT_EQ(tree_.Nodes().SelectedKey(), key) << "clicked";
  EXPECT_EQ(Place().session, SessionRef::single(cs));
}

TEST_F(ProjectTreeTest, ABranchIsAddedOnceAndTakenAwayWhole) {
  tree_.SelectSession(runs_.one, "", true);
  tree_.SelectSession(runs_.one, "", true);
  EXPECT_EQ(tree_.Nodes().Count(), 8u);
  ws_.Session(runs_.two).Loaded = false;
  tree_.SelectSession(runs_.two, "", true);
  EXPECT_EQ(tree_.Nodes().Count(), 8u) << "a session that isn't loaded gets no branch";
  tree_.UnSelectSession(runs_.one);
  EXPECT_EQ(tree_.Nodes().Count(), 0u);
  EXPECT_FALSE(ws_.Session(runs_.one).Selected);
  tree_.UnSelectSession(runs_.one);  // nothing left to remove
}

TEST_F(ProjectTreeTest, ColoursFollowTheMeasureShown) {
  ws_.view.colored = true;
  tree_.SelectSession(runs_.one, "", true);
  // Total time: Sum (5e-8) ranks first, then Idle (0.3 s), then Start (0.2 s
  // + 0.1 s, a hair above 0.3 in doubles): 0.001 / 4, 2 / 4 and 3 / 4.
  EXPECT_EQ(Node("S1M2P5").BackColor, 0x00AA00);
  EXPECT_EQ(Node("S1M1P3").BackColor, 0x00FFFF);
  EXPECT_EQ(Node("S1M1P1").BackColor, 0x00AAFF);
  EXPECT_EQ(Node("S1M1P2").BackColor, kTreeWhite) << "never entered";
  EXPECT_EQ(Node("S1M1P4").BackColor, kTreeBlack);
  EXPECT_EQ(Node("S1M1P4").ForeColor, kTreeWhite);
  EXPECT_EQ(Node("S1").BackColor, kTreeWhite) << "the session's yellow is painted over";

  tree_.UpdateColors(Measure::Coverage);
  EXPECT_EQ(Node("S1M1").BackColor, 0x00FFB4) << "75% covered: rank 0.25";
  EXPECT_EQ(Node("S1M1P1").BackColor, kTreeWhite) << "fully covered";
  EXPECT_EQ(Node("S1M1P2").BackColor, 0x0000FF) << "not covered at all";
  EXPECT_EQ(Node("S1M1P3").BackColor, kTreeWhite) << "no line probes";
  EXPECT_EQ(Node("S1M1P4").BackColor, kTreeBlack) << "dead code never takes a rank colour";

  ws_.view.colored = false;
  tree_.UpdateColors(Measure::Coverage);
  tree_.Nodes().ForEach([](const TreeNode& n) { EXPECT_EQ(n.BackColor, kTreeWhite) << n.Key; });
  EXPECT_EQ(Node("S1M1P4").ForeColor, kTreeBlack);
  EXPECT_EQ(Node("S1M2").ForeColor, kTreeRed);
}

TEST_F(ProjectTreeTest, TwoTickedSessionsOfferMergedAndComparedRoots) {
  TickBoth();
  EXPECT_EQ(Keys(tree_.Nodes()).size(), 18u);
  const auto& roots = tree_.Nodes().Roots();
  ASSERT_EQ(roots.size(), 4u);
  EXPECT_EQ(roots[2]->Key, "COMPARE");
  EXPECT_EQ(roots[3]->Key, "MERGE");
  EXPECT_EQ(Text("COMPARE"), "Compared Sessions (Homogeneous)");
  EXPECT_EQ(Text("MERGE"), "Merged Sessions (Homogeneous)");
  EXPECT_EQ(Node("MERGE").Image, "MERGE");
  EXPECT_TRUE(Node("MERGE").Bold);
  EXPECT_TRUE(ws_.Session(0).Selected);
  EXPECT_FALSE(ws_.Session(0).Loaded);
  EXPECT_FALSE(ws_.fOnlyGroups);

  tree_.UnSelectSession(runs_.two);
  tree_.RemoveMergeRoots();
  InitGlobalSessions(ws_, &tree_);
  EXPECT_EQ(tree_.Nodes().Find("MERGE"), nullptr);
  EXPECT_FALSE(ws_.Session(0).Selected);

  tree_.UnSelectSession(runs_.one);
  InitGlobalSessions(ws_, &tree_);
  EXPECT_EQ(tree_.Nodes().Count(), 0u);
}

TEST_F(ProjectTreeTest, OpeningMergeBuildsTheMergedAndComparedBranches) {
  TickBoth();
  tree_.NodeClicked("MERGE");
  EXPECT_TRUE(ws_.Session(0).Loaded);
  EXPECT_TRUE(Node("MERGE").Expanded);
  EXPECT_EQ(Text("MERGE"), "Merged Sessions (Hom.) (LC:80.0% - TT:1.1s)");
  EXPECT_EQ(Text("S0"), "Merged Sessions (LC:80.0% - TT:1.1s)");
  EXPECT_EQ(Text("S0M1"), "Main (LC:100% - TT:1.05s)");
  EXPECT_EQ(Text("S0M1P1"), "Start (LC:100% - TT:0.70s - AT:0.233s)");
  EXPECT_EQ(Text("S0M1P2"), "Work (LC:100% - TT:0.05s - AT:0.050s)");
  EXPECT_EQ(Text("S0M1P3"), "Idle (Not covered - TT:0.30s - AT:0.100s)");
  EXPECT_EQ(Text("S0M1P4"), "Old (Not covered - Not profiled)");

  EXPECT_EQ(Text("COMPARE"), "Compared Sessions (Hom.) (LC:80.0% - TT:1.1s)");
  EXPECT_EQ(Text("S-1"), "Merged Sessions (LC:80.0% - TT:1.1s)");
  EXPECT_EQ(Text("S-1M1"), "Main");
  EXPECT_EQ(Text("S-1M1P1"), "Start");
  EXPECT_EQ(Text("S-1M1P3"), "Idle (Not covered)");
  EXPECT_EQ(Text("S-1M1P4"), "Old (Not covered - Not profiled)");
  EXPECT_EQ(Node("S-1M2P5").Image, "PROC0");

  EXPECT_EQ(Place().session, SessionRef::merged());
  EXPECT_EQ(Place().project, runs_.cp);
  const std::size_t count = tree_.Nodes().Count();
  tree_.NodeClicked("COMPARE");  // already built: nothing is merged again
  EXPECT_EQ(tree_.Nodes().Count(), count);
  EXPECT_EQ(Place().session, SessionRef::compared());
}

TEST_F(ProjectTreeTest, NodeKeysGiveTheSelection) {
  TickBoth();
  tree_.NodeClicked("MERGE");
  EXPECT_TRUE(tree_.NodeClicked("S2M1P2"));
  Selection expected{
      .session = SessionRef::single(2), .project = runs_.cp, .module = 1, .procedure = 2};
  EXPECT_EQ(Place(), expected);
  EXPECT_EQ(tree_.PreviousKey(), "MERGE");
  tree_.NodeClicked("S-1M2P5");
  expected = {.session = SessionRef::compared(), .project = runs_.cp, .module = 2, .procedure = 5};
  EXPECT_EQ(Place(), expected);
  tree_.NodeClicked("S1M2");
  expected = {.session = SessionRef::single(1), .project = runs_.cp, .module = 2};
  EXPECT_EQ(Place(), expected);
  EXPECT_FALSE(tree_.NodeClicked("S9M1"));  // no such node: nothing changes
  EXPECT_EQ(Place(), expected);
  // Line, tab and measure are the window's: the tree leaves them as they are.
  const Selection shown{.line = 7, .tab = Tab::Source, .measure = Measure::Coverage};
  const Selection moved = tree_.TreeSelection(shown);
  EXPECT_EQ(moved.session, SessionRef::single(1));
  EXPECT_EQ(moved.line, 7);
  EXPECT_EQ(moved.tab, Tab::Source);
  EXPECT_EQ(moved.measure, Measure::Coverage);

  tree_.UpdateSelectedItem("S-1M1P3");
  EXPECT_EQ(tree_.Nodes().SelectedKey(), "COMPARE");
  tree_.UpdateSelectedItem("S0");
  EXPECT_EQ(tree_.Nodes().SelectedKey(), "MERGE");
  tree_.UpdateSelectedItem("S2M1");
  EXPECT_EQ(tree_.Nodes().SelectedKey(), "S2M1");
  tree_.UpdateSelectedItem("S7");
  EXPECT_EQ(tree_.Nodes().SelectedKey(), "S2M1") << "a key that is gone leaves the selection";
}

TEST_F(ProjectTreeTest, SessionsOfDifferentProjectsAreMergedByName) {
  ProjectBuilder b(ws_, "C:\\Other\\Other.vbp");
  b.Line(b.Procedure(b.Module("Main"), "Start"));
  const std::int32_t other =
      HandSession(ws_, b.Build(), "/runs/other.pfd", {{1, 1, 0.1}}, {{1, 1}});
  tree_.SelectSession(runs_.one, "", true);
  tree_.SelectSession(other, "", true);
  InitGlobalSessions(ws_, &tree_);
  EXPECT_EQ(Text("MERGE"), "Merged Sessions (Heterogeneous)");
  tree_.NodeClicked("COMPARE");
  EXPECT_EQ(ws_.Session(0).Project, 0);
  EXPECT_EQ(Text("MERGE").rfind("Merged Sessions (Het.) (LC:", 0), 0u);
  EXPECT_EQ(Text("S0M1P1").rfind("Start (LC:", 0), 0u);
  EXPECT_EQ(ws_.Session(0).ProcedureValue(1).Hits, 3) << "Start of both projects";
  EXPECT_EQ(Place().session, SessionRef::compared());
  EXPECT_EQ(Place().project, 0) << "the merged project of heterogeneous sessions";
}

class GroupTreeTest : public ProjectTreeTest {
 protected:
  void SetUp() override {
    ProjectTreeTest::SetUp();
    ProjectBuilder b(ws_, "C:\\Tools\\Tools.vbp");
    b.Line(b.Procedure(b.Module("modTools"), "Run"));
    tools_ = b.Build();
    const std::int32_t t1 = HandSession(ws_, tools_, "/g1/tools.pfd", {{1, 1, 0.1}}, {{1, 1}});
    const std::int32_t t2 = HandSession(ws_, tools_, "/g2/tools.pfd", {{1, 2, 0.2}}, {{1, 2}});
    AddGroup("Monday", {runs_.one, t1});
    AddGroup("Tuesday", {runs_.two, t2});
  }

  void AddGroup(const std::string& name, std::initializer_list<std::int32_t> members) {
    const std::int32_t g = ++ws_.nSessionGroup;
    ws_.SessionGroup.ReDimPreserve(g);
    SessionGroup& group = ws_.SessionGroup(g);
    group.Name = name;
    group.GroupFile = "C:\\Suite\\Suite.vbg";
    group.Project = 99;  // the project group's own entry
    group.Sessions = List(members);
    group.nSession = static_cast<std::int32_t>(members.size());
    group.Loaded = true;
    for (const std::int32_t cs : members) ws_.Session(cs).Group = g;
    CreateGroupSession(ws_, g);
  }

  std::int32_t tools_ = 0;
};

TEST_F(GroupTreeTest, AGroupNodeHoldsItsMembersBranches) {
  tree_.SelectSession(runs_.one, "", true);  // shown alone first
  tree_.SelectSessionGroup(1, false);
  EXPECT_TRUE(ws_.SessionGroup(1).Selected);
  const TreeNode& g = Node("G1");
  EXPECT_EQ(g.Text, "Monday");
  EXPECT_EQ(g.Image, "GROUP");
  EXPECT_TRUE(g.Bold);
  EXPECT_EQ(g.ForeColor, kTreeBlue);
  ASSERT_EQ(g.Children.size(), 2u);
  EXPECT_EQ(g.Children[0]->Key, "S1") << "moved below its group";
  EXPECT_EQ(tree_.Nodes().Roots().size(), 1u);
  EXPECT_EQ(tree_.Nodes().SelectedKey(), "G1");
  const std::int32_t merged = ws_.SessionGroup(1).GroupMergedSession;
  EXPECT_EQ(Place().session, SessionRef::group(1, merged));
  EXPECT_EQ(Place().project, ws_.Session(merged).Project);

  tree_.UnSelectSessionGroup(1);
  EXPECT_EQ(tree_.Nodes().Count(), 0u);
  EXPECT_FALSE(ws_.SessionGroup(1).Selected);
  EXPECT_FALSE(ws_.Session(runs_.one).Selected);
}

TEST_F(GroupTreeTest, TickedGroupsOfOneProjectGroupMergeMemberByMember) {
  tree_.SelectSessionGroup(1, true);
  tree_.SelectSessionGroup(2, true);
  InitGlobalSessions(ws_, &tree_);
  EXPECT_TRUE(ws_.fOnlyGroups);
  EXPECT_TRUE(ws_.fHomogeneous);
  tree_.NodeClicked("MERGE");

  const SessionGroup& g0 = ws_.SessionGroup(0);
  ASSERT_EQ(g0.nSession, 2);
  EXPECT_EQ(Text("MERGE"), "Merged Sessions Suite.vbg (Homogeneous)");
  EXPECT_EQ(Text("COMPARE"), "Compared Sessions Suite.vbg (Homogeneous)");
  const std::string merged = "S" + std::to_string(g0.Sessions(1));
  EXPECT_EQ(Text(merged), "one (LC:80.0% - TT:1.1s)") << "named after the first group's member";
  EXPECT_EQ(Node(merged).Parent->Key, "MERGE");
  EXPECT_EQ(Text("S" + std::to_string(g0.Sessions(2))), "tools (LC:100% - TT:0.3s)");
  const std::string compared = "S-" + std::to_string(runs_.cp);
  EXPECT_EQ(Node(compared).Parent->Key, "COMPARE");
  EXPECT_NE(tree_.Nodes().Find("S-" + std::to_string(tools_)), nullptr);

  EXPECT_EQ(Place().session, SessionRef::group(0, g0.GroupMergedSession));
  tree_.NodeClicked(compared + "M1");
  EXPECT_EQ(Place().session, SessionRef::compared());
  EXPECT_EQ(Place().project, runs_.cp) << "the compared member's project";
  EXPECT_EQ(Place().module, 1);
  tree_.NodeClicked("COMPARE");
  EXPECT_EQ(Place().session, SessionRef::comparedGroups());
  EXPECT_EQ(Place().project, 0);
}

}  // namespace
}  // namespace zol
