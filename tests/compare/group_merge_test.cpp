// Groups: each group's merged session, the merge of ticked groups member by
// member, the selection state that InitGlobalSessions keeps, and the lookups
// that compared grids use.

#include "compare/group_merge.h"

#include <gtest/gtest.h>

#include "compare/global_sessions.h"
#include "hand_sessions.h"

namespace zol {
namespace {

using testing::HandSession;
using testing::List;
using testing::ProjectBuilder;

// A project of one module with one procedure of one line, named `name`.
std::int32_t OneProcedureProject(Workspace& ws, const std::string& name) {
  ProjectBuilder b(ws, "C:\\" + name + "\\" + name + ".vbp");
  b.Line(b.Procedure(b.Module("mod" + name), "Run"));
  return b.Build();
}

class GroupMergeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    pa_ = OneProcedureProject(ws_, "A");
    pb_ = OneProcedureProject(ws_, "B");
    pc_ = OneProcedureProject(ws_, "C");
    groupProject_ = OneProcedureProject(ws_, "Suite");  // stands for the .vbg's entry
    a1_ = HandSession(ws_, pa_, "/g1/a.pfd", {{1, 2, 0.2}}, {{1, 2}});
    b1_ = HandSession(ws_, pb_, "/g1/b.pfd", {{1, 1, 0.1}}, {{1, 1}});
    a2_ = HandSession(ws_, pa_, "/g2/a.pfd", {{1, 3, 0.3}}, {{1, 3}});
    c2_ = HandSession(ws_, pc_, "/g2/c.pfd", {{1, 5, 0.5}}, {{1, 5}});
    g1_ = AddGroup("Run1", {a1_, b1_});
    g2_ = AddGroup("Run2", {a2_, c2_});
  }

  // A loaded group of the given members, ticked with its members as the
  // session pane leaves them.
  std::int32_t AddGroup(const std::string& name, std::initializer_list<std::int32_t> members) {
    const std::int32_t g = ++ws_.nSessionGroup;
    ws_.SessionGroup.ReDimPreserve(g);
    SessionGroup& group = ws_.SessionGroup(g);
    group.Name = name;
    group.GroupFile = "C:\\Suite\\Suite.vbg";
    group.Project = groupProject_;
    group.Sessions = List(members);
    group.nSession = static_cast<std::int32_t>(members.size());
    group.Loaded = true;
    group.Selected = true;
    for (const std::int32_t cs : members) {
      ws_.Session(cs).Group = g;
      ws_.Session(cs).Selected = true;
    }
    return g;
  }

  Workspace ws_;
  std::int32_t pa_ = 0, pb_ = 0, pc_ = 0, groupProject_ = 0;
  std::int32_t a1_ = 0, b1_ = 0, a2_ = 0, c2_ = 0, g1_ = 0, g2_ = 0;
};

TEST_F(GroupMergeTest, AGroupsMergedSessionUnitesItsMembersByName) {
  const std::int32_t before = ws_.nSession;
  CreateGroupSession(ws_, g1_);
  const std::int32_t gm = ws_.SessionGroup(g1_).GroupMergedSession;
  EXPECT_EQ(gm, before + 1);
  const Session& m = ws_.Session(gm);
  EXPECT_TRUE(m.Invisible);
  EXPECT_TRUE(m.Loaded);
  EXPECT_FALSE(m.Selected);
  const Project& mp = ws_.Project(m.Project);
  ASSERT_EQ(mp.ModulesNumber, 2);
  EXPECT_EQ(mp.Module(1).BelongToProject, pa_);
  EXPECT_EQ(mp.Module(2).BelongToProject, pb_);
  EXPECT_EQ(m.SessionValue.HitProcedures, 2);
}

TEST_F(GroupMergeTest, GroupsWithACommonProjectMergeMemberByMember) {
  ws_.fOnlyGroups = true;
  MakeMergedAndCompareSessionsGroups(ws_, nullptr);
  const SessionGroup& g0 = ws_.SessionGroup(0);
  EXPECT_EQ(g0.Name, "Merged Groups");
  EXPECT_TRUE(g0.Selected);
  EXPECT_EQ(g0.GroupFile, "C:\\Suite\\Suite.vbg");
  ASSERT_EQ(g0.nSession, 2) << "as many members as the first group";

  const Session& mergedA = ws_.Session(g0.Sessions(1));
  EXPECT_EQ(mergedA.Project, pa_);
  EXPECT_EQ(mergedA.Name, "a");
  EXPECT_TRUE(mergedA.Loaded && mergedA.Selected && mergedA.IsMergedGroupSession);
  EXPECT_EQ(mergedA.Group, 0);
  EXPECT_EQ(mergedA.CodeLineValue(1).Hits, 5) << "A of both runs";
  EXPECT_DOUBLE_EQ(mergedA.CodeLineValue(1).TotalTime, 0.5);

  const Session& onlyB = ws_.Session(g0.Sessions(2));
  EXPECT_EQ(onlyB.Project, pb_);
  EXPECT_EQ(onlyB.CodeLineValue(1).Hits, 1) << "B is only in the first group: a merge of one";

  ASSERT_GT(g0.GroupMergedSession, 0);
  EXPECT_EQ(ws_.Project(ws_.Session(g0.GroupMergedSession).Project).ModulesNumber, 2);
  EXPECT_EQ(GetGroupMergedSession(ws_, g0.GroupMergedSession), 0) << "slot 0 counts";
}

TEST_F(GroupMergeTest, GroupMergedSessionIsFoundForTickedGroupsOnly) {
  EXPECT_EQ(GetGroupMergedSession(ws_, a1_), -1);
  CreateGroupSession(ws_, g2_);
  const std::int32_t gm = ws_.SessionGroup(g2_).GroupMergedSession;
  EXPECT_EQ(GetGroupMergedSession(ws_, gm), g2_);
  ws_.SessionGroup(g2_).Selected = false;
  EXPECT_EQ(GetGroupMergedSession(ws_, gm), -1);

  Workspace empty;
  EXPECT_EQ(GetGroupMergedSession(empty, 0), -1) << "no groups at all";
}

TEST_F(GroupMergeTest, ComparedSessionsOfGroupsAreTheMembersOfTheProjectAtHand) {
  Array1<std::int32_t> list;
  ws_.fOnlyGroups = true;
  EXPECT_EQ(GetComparedSessions(ws_, pa_, list), 2);
  EXPECT_EQ(list, List({a1_, a2_}));
  ws_.SessionGroup(g2_).Selected = false;
  EXPECT_EQ(GetComparedSessions(ws_, pa_, list), 1);

  ws_.fOnlyGroups = false;
  EXPECT_EQ(GetComparedSessions(ws_, pa_, list), 4) << "every ticked session";
  EXPECT_EQ(list, List({a1_, b1_, a2_, c2_}));
}

TEST_F(GroupMergeTest, InitGlobalSessionsDecidesTheKindOfSelection) {
  InitGlobalSessions(ws_, nullptr);
  EXPECT_TRUE(ws_.fHomogeneous) << "both groups are runs of one project group";
  EXPECT_TRUE(ws_.fOnlyGroups);
  EXPECT_TRUE(ws_.Session(0).Selected);
  EXPECT_FALSE(ws_.Session(0).Loaded);

  // A single session of another project ticked beside them.
  const std::int32_t single = HandSession(ws_, pc_, "/single/c.pfd", {}, {{1, 1}});
  ws_.Session(single).Selected = true;
  InitGlobalSessions(ws_, nullptr);
  EXPECT_FALSE(ws_.fHomogeneous);
  EXPECT_FALSE(ws_.fOnlyGroups);

  // One thing ticked: no merged view.
  ws_.SessionGroup(g1_).Selected = false;
  ws_.SessionGroup(g2_).Selected = false;
  InitGlobalSessions(ws_, nullptr);
  EXPECT_FALSE(ws_.Session(0).Selected);
}

TEST_F(GroupMergeTest, ANewSelectionReleasesTheFormerMergedGroups) {
  InitGlobalSessions(ws_, nullptr);
  MakeMergedAndCompareSessionsGroups(ws_, nullptr);
  const SessionGroup g0 = ws_.SessionGroup(0);
  InitGlobalSessions(ws_, nullptr);
  EXPECT_TRUE(ws_.Session(g0.Sessions(1)).SessionFile.empty());
  EXPECT_FALSE(ws_.Session(g0.Sessions(1)).Selected);
  EXPECT_FALSE(ws_.Session(g0.GroupMergedSession).Loaded);
  EXPECT_FALSE(ws_.SessionGroup(0).Selected);
  EXPECT_EQ(ws_.SessionGroup(0).nSession, 0);
  EXPECT_TRUE(ws_.Session(a1_).Loaded) << "the groups' own members stay";
}

}  // namespace
}  // namespace zol
