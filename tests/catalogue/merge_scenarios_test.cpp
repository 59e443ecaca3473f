// Merging real runs end to end: generated projects, instrumented and scanned,
// simulated logs loaded through the catalogue, ticked into the project tree,
// and the merged branch opened as a click would.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "base/scoped_temp_dir.h"
#include "catalogue/project_tree.h"
#include "catalogue/session_catalogue.h"
#include "compare/global_sessions.h"
#include "compare/group_merge.h"
#include "compare/save_merged.h"
#include "project/project_info.h"
#include "support/fixture_run.h"
#include "support/instrumenter.h"
#include "support/vb_fixture_project.h"

namespace zol {
namespace {

using testing::FixtureRun;
using testing::ScopedTempDir;
using testing::SimulatedLogShape;

SimulatedLogShape Shape(std::uint64_t seed) {
  SimulatedLogShape shape;
  shape.run.seed = seed;
  shape.run.probes = 3000;
  return shape;
}

// A run of the project of `seed` instrumented by `plan`, scanned, with a log
// beside it.
FixtureRun PlannedRun(const std::string& root, std::uint32_t seed, fixture::PlanFn plan,
                      const std::string& logName, const SimulatedLogShape& shape) {
  const fixture::VbProjectFiles files = fixture::GenerateVbProject(seed);
  const std::string original = fixture::WriteVbProject(files, root + "/original");
  FixtureRun run;
  run.vbp = root + "/instrumented/" + files.Name + "/" + files.Name + ".vbp";
  fixture::InstrumentOptions options;
  options.plan = std::move(plan);
  run.truth = fixture::InstrumentProject(original, run.vbp, options);
  Workspace scan;
  scan.appFolder = root + "/scan-app";
  scan.nSession = 1;
  Session& s = scan.SessionSlot(1);
  s.ProjectFile = run.vbp;
  s.LinesNumber = run.truth.Lines.Count();
  s.ProceduresNumber = run.truth.Procedures.Count();
  s.Project = AssignProjectToSession(scan, 1, run.vbp);
  ResetRtfPath(scan);
  GetProjectInfo(scan, 1);
  run.project = scan.Project(s.Project);
  KillRtfPath(scan);
  run.log = testing::WriteFixtureLog(run, logName, shape);
  return run;
}

std::int64_t TotalProcedureHits(const Session& s) {
  std::int64_t hits = 0;
  for (const ProcedureValue& p : s.ProcedureValue) hits += p.Hits;
  return hits;
}

class MergeScenarioTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ws_.appFolder = dir_ / "app";
    ResetRtfPath(ws_);
  }

  std::int32_t Load(const std::string& log) {
    const std::int32_t cs = AddSession(ws_, log);
    if (cs == 0 || !LoadSession(ws_, cs)) throw std::runtime_error("can't load " + log);
    return cs;
  }

  // Ticks the sessions, offers the merged roots and opens "MERGE".
  void TickAndOpenMerge(std::initializer_list<std::int32_t> sessions) {
    for (const std::int32_t cs : sessions) tree_.SelectSession(cs, "", true);
    InitGlobalSessions(ws_, &tree_);
    tree_.NodeClicked(kMergeKey);
    ASSERT_TRUE(prompter_->messages.empty()) << prompter_->messages[0].text;
  }

  ScopedTempDir dir_;
  std::shared_ptr<RecordingPrompter> prompter_ = std::make_shared<RecordingPrompter>();
  Workspace ws_{prompter_};
  ProjectTree tree_{ws_};
};

TEST_F(MergeScenarioTest, TwoRunsOfOneProjectSumAndSaveAsOneSession) {
  const FixtureRun run = testing::MakeFixtureRun(dir_ / "p", 3, "monday.pfl", Shape(11));
  const std::string tuesday = testing::WriteFixtureLog(run, "tuesday.pfl", Shape(12));
  const std::int32_t a = Load(run.log);
  const std::int32_t b = Load(tuesday);
  TickAndOpenMerge({a, b});
  EXPECT_TRUE(ws_.fHomogeneous);
  EXPECT_EQ(tree_.Nodes().Find(kMergeKey)->Text.rfind("Merged Sessions (Hom.) (LC:", 0), 0u);

  const Session& m = ws_.Session(0);
  const Session& sa = ws_.Session(a);
  const Session& sb = ws_.Session(b);
  ASSERT_EQ(m.LinesNumber, run.project.LinesNumber);
  std::int64_t lineHits = 0;
  for (std::int32_t id = 1; id <= m.LinesNumber; ++id) {
    const CodeLineValue& l = m.CodeLineValue(id);
    ASSERT_EQ(l.Hits, sa.CodeLineValue(id).Hits + sb.CodeLineValue(id).Hits) << "line " << id;
    EXPECT_DOUBLE_EQ(l.TotalTime, sa.CodeLineValue(id).TotalTime + sb.CodeLineValue(id).TotalTime);
    if (l.Hits != 0) {
      EXPECT_DOUBLE_EQ(l.AverageTime, l.TotalTime / l.Hits) << "line " << id;
    }
    lineHits += l.Hits;
  }
  EXPECT_GT(lineHits, 0);
  for (std::int32_t id = 1; id <= m.ProceduresNumber; ++id) {
    const ProcedureValue& p = m.ProcedureValue(id);
    ASSERT_EQ(p.Hits, sa.ProcedureValue(id).Hits + sb.ProcedureValue(id).Hits);
    if (p.Hits != 0) {
      EXPECT_DOUBLE_EQ(p.AverageTime, p.TotalTime / p.Hits);
    }
  }
  EXPECT_NEAR(m.SessionValue.TotalTime, sa.SessionValue.TotalTime + sb.SessionValue.TotalTime,
              1e-9 * m.SessionValue.TotalTime);
  EXPECT_GE(m.SessionValue.HitLines, std::max(sa.SessionValue.HitLines, sb.SessionValue.HitLines));

  // Saved, the merge is an ordinary session of the project.
  const std::string saved = run.vbp.substr(0, run.vbp.rfind('/')) + "/week.pfd";
  const std::int32_t n = SaveMergedSession(ws_, saved, &tree_);
  ASSERT_GT(n, 0) << (prompter_->messages.empty() ? "" : prompter_->messages[0].text);
  Workspace fresh;
  fresh.appFolder = dir_ / "app2";
  const std::int32_t back = AddSession(fresh, saved);
  ASSERT_EQ(back, 1);
  ASSERT_TRUE(LoadSession(fresh, back));
  const Session& loaded = fresh.Session(back);
  EXPECT_EQ(loaded.Name, "week");
  EXPECT_EQ(loaded.CodeLineValue, m.CodeLineValue);
  EXPECT_EQ(loaded.ProcedureValue, m.ProcedureValue);
  EXPECT_EQ(loaded.ModuleValue, m.ModuleValue);
  EXPECT_EQ(loaded.nFlowPair, m.nFlowPair);
  EXPECT_EQ(loaded.FlowPair, m.FlowPair);
}

TEST_F(MergeScenarioTest, TwoProjectsMergeByNameWithALineBlockEach) {
  const FixtureRun runA = testing::MakeFixtureRun(dir_ / "a", 3, "a.pfl", Shape(21));
  const FixtureRun runB = testing::MakeFixtureRun(dir_ / "b", 5, "b.pfl", Shape(22));
  const std::int32_t a = Load(runA.log);
  const std::int32_t b = Load(runB.log);
  TickAndOpenMerge({a, b});
  EXPECT_FALSE(ws_.fHomogeneous);
  EXPECT_EQ(tree_.Nodes().Find(kCompareKey)->Text.rfind("Compared Sessions (Het.) (LC:", 0), 0u);

  const Project& pa = ws_.Project(ws_.Session(a).Project);
  const Project& pb = ws_.Project(ws_.Session(b).Project);
  const Project& mp = ws_.Project(0);
  const Session& m = ws_.Session(0);
  std::set<std::pair<std::string, std::int32_t>> modules;
  for (const Project* p : {&pa, &pb}) {
    for (std::int32_t j = 1; j <= p->ModulesNumber; ++j) {
      modules.insert({p->Module(j).Name, p->Module(j).Type});
    }
  }
  EXPECT_EQ(mp.ModulesNumber, static_cast<std::int32_t>(modules.size()));
  ASSERT_EQ(mp.LinesNumber, pa.LinesNumber + pb.LinesNumber);
  // B's lines stand behind A's, with their values and their procedures' names.
  for (std::int32_t id = 1; id <= pb.LinesNumber; ++id) {
    const std::int32_t at = pa.LinesNumber + id;
    EXPECT_EQ(m.CodeLineValue(at).Hits, ws_.Session(b).CodeLineValue(id).Hits) << "line " << id;
    const std::int32_t own = pb.CodeLine(id).BelongToProcedure;
    if (own == 0) continue;
    EXPECT_EQ(mp.Procedure(mp.CodeLine(at).BelongToProcedure).Name, pb.Procedure(own).Name);
  }
  for (std::int32_t id = 1; id <= pa.LinesNumber; ++id) {
    ASSERT_EQ(m.CodeLineValue(id).Hits, ws_.Session(a).CodeLineValue(id).Hits);
  }
  EXPECT_EQ(TotalProcedureHits(m),
            TotalProcedureHits(ws_.Session(a)) + TotalProcedureHits(ws_.Session(b)))
      << "every procedure lands in exactly one merged procedure";
}

TEST_F(MergeScenarioTest, AProjectListedTwiceAddsItsLinesOnce) {
  const FixtureRun runA = testing::MakeFixtureRun(dir_ / "a", 3, "a1.pfl", Shape(31));
  const std::string a2log = testing::WriteFixtureLog(runA, "a2.pfl", Shape(32));
  const FixtureRun runB = testing::MakeFixtureRun(dir_ / "b", 5, "b.pfl", Shape(33));
  const std::int32_t a1 = Load(runA.log);
  const std::int32_t b = Load(runB.log);
  const std::int32_t a2 = Load(a2log);
  TickAndOpenMerge({a1, b, a2});
  const std::int32_t la = runA.project.LinesNumber;
  ASSERT_EQ(ws_.Project(0).LinesNumber, la + runB.project.LinesNumber);
  for (std::int32_t id = 1; id <= la; ++id) {
    ASSERT_EQ(ws_.Session(0).CodeLineValue(id).Hits,
              ws_.Session(a1).CodeLineValue(id).Hits + ws_.Session(a2).CodeLineValue(id).Hits);
  }
}

TEST_F(MergeScenarioTest, AProcedureDeadInOneProjectAndAliveInAnotherIsAlive) {
  const FixtureRun alive = testing::MakeFixtureRun(dir_ / "alive", 7, "alive.pfl", Shape(51));
  const fixture::TruthProcedure* target = nullptr;
  for (const fixture::TruthProcedure& p : alive.truth.Procedures) {
    if (p.isProfiled && p.isCovered) {
      target = &p;
      break;
    }
  }
  ASSERT_NE(target, nullptr);
  const std::string moduleName = alive.truth.Modules(target->module).Name;
  const std::string name = target->name;
  const FixtureRun dead = PlannedRun(
      dir_ / "dead", 7,
      [&](const std::string& module, const std::string& procedure) {
        fixture::ProcedurePlan plan;
        plan.dead = module == moduleName && procedure == name;
        return plan;
      },
      "dead.pfl", Shape(52));
  const std::int32_t d = Load(dead.log);
  const std::int32_t a = Load(alive.log);
  ws_.view.colored = true;
  TickAndOpenMerge({d, a});
  EXPECT_FALSE(ws_.fHomogeneous) << "two instrumentations are two projects";

  const auto find = [&](const Project& p) -> std::int32_t {
    for (std::int32_t id = 1; id <= p.ProceduresNumber; ++id) {
      const Procedure& proc = p.Procedure(id);
      if (proc.Name == name && p.Module(proc.BelongToModule).Name == moduleName) return id;
    }
    return 0;
  };
  const Project& deadProject = ws_.Project(ws_.Session(d).Project);
  const std::int32_t inDead = find(deadProject);
  ASSERT_GT(inDead, 0);
  ASSERT_TRUE(deadProject.Procedure(inDead).IsDead);
  const Project& mp = ws_.Project(0);
  const std::int32_t inMerge = find(mp);
  ASSERT_GT(inMerge, 0);
  EXPECT_FALSE(mp.Procedure(inMerge).IsDead);
  EXPECT_TRUE(mp.Procedure(inMerge).IsProfiled);
  const std::int32_t m = mp.Procedure(inMerge).BelongToModule;
  std::int32_t living = 0;
  for (std::int32_t id = 1; id <= mp.ProceduresNumber; ++id) {
    if (mp.Procedure(id).BelongToModule == m && !mp.Procedure(id).IsDead) ++living;
  }
  EXPECT_EQ(ws_.Session(0).ModuleValue(m).TotalProcedures, living) << "it counts in its module";

  // Black in the dead run's branch, coloured like any other in the merge.
  const std::string deadKey = "S" + std::to_string(d) + "M" +
                              std::to_string(deadProject.Procedure(inDead).BelongToModule) + "P" +
                              std::to_string(inDead);
  EXPECT_EQ(tree_.Nodes().Find(deadKey)->BackColor, kTreeBlack);
  EXPECT_EQ(tree_.Nodes().Find(deadKey)->Text, name + " (Dead code)");
  const std::string mergedKey = "S0M" + std::to_string(m) + "P" + std::to_string(inMerge);
  EXPECT_NE(tree_.Nodes().Find(mergedKey)->BackColor, kTreeBlack);
}

TEST_F(MergeScenarioTest, GroupsWithACommonProjectMergeMemberByMember) {
  const FixtureRun runA = testing::MakeFixtureRun(dir_ / "a", 3, "a1.pfl", Shape(41));
  const std::string a2log = testing::WriteFixtureLog(runA, "a2.pfl", Shape(42));
  const FixtureRun runB = testing::MakeFixtureRun(dir_ / "b", 5, "b.pfl", Shape(43));
  const FixtureRun runC = testing::MakeFixtureRun(dir_ / "c", 9, "c.pfl", Shape(44));
  const std::int32_t a1 = Load(runA.log);
  const std::int32_t b = Load(runB.log);
  const std::int32_t a2 = Load(a2log);
  const std::int32_t c = Load(runC.log);
  const std::int32_t suite = 99;  // the project group's own entry; groups compare it only
  for (const auto& [name, members] : std::map<std::string, std::vector<std::int32_t>>{
           {"1 Monday", {a1, b}}, {"2 Tuesday", {a2, c}}}) {
    const std::int32_t g = ++ws_.nSessionGroup;
    ws_.SessionGroup.ReDimPreserve(g);
    SessionGroup& group = ws_.SessionGroup(g);
    group.Name = name;
    group.GroupFile = dir_ / "Suite.vbg";
    group.Project = suite;
    group.nSession = static_cast<std::int32_t>(members.size());
    group.Sessions.ReDim(group.nSession);
    for (std::int32_t i = 1; i <= group.nSession; ++i) {
      group.Sessions(i) = members[static_cast<std::size_t>(i - 1)];
      ws_.Session(group.Sessions(i)).Group = g;
      ws_.Session(group.Sessions(i)).Invisible = true;
    }
    group.Loaded = true;
    CreateGroupSession(ws_, g);
  }
  tree_.SelectSessionGroup(1, true);
  tree_.SelectSessionGroup(2, true);
  InitGlobalSessions(ws_, &tree_);
  tree_.NodeClicked(kMergeKey);
  ASSERT_TRUE(prompter_->messages.empty());

  const SessionGroup& g0 = ws_.SessionGroup(0);
  ASSERT_EQ(g0.nSession, 2);
  EXPECT_EQ(tree_.Nodes().Find(kMergeKey)->Text, "Merged Sessions Suite.vbg (Homogeneous)");
  const Session& mergedA = ws_.Session(g0.Sessions(1));
  const Session& onlyB = ws_.Session(g0.Sessions(2));
  EXPECT_EQ(mergedA.Project, ws_.Session(a1).Project);
  for (std::int32_t id = 1; id <= mergedA.LinesNumber; ++id) {
    ASSERT_EQ(mergedA.CodeLineValue(id).Hits,
              ws_.Session(a1).CodeLineValue(id).Hits + ws_.Session(a2).CodeLineValue(id).Hits);
  }
  EXPECT_EQ(onlyB.CodeLineValue, ws_.Session(b).CodeLineValue) << "a merge of one session";
  EXPECT_EQ(TotalProcedureHits(onlyB), TotalProcedureHits(ws_.Session(b)));

  // The merged group's own merged session unites both members by name.
  const Session& all = ws_.Session(g0.GroupMergedSession);
  EXPECT_EQ(ws_.Project(all.Project).LinesNumber,
            runA.project.LinesNumber + runB.project.LinesNumber);
  EXPECT_EQ(tree_.Nodes().SelectedKey(), kMergeKey);
  EXPECT_EQ(tree_.TreeSelection({}).session, SessionRef::group(0, g0.GroupMergedSession));
}

}  // namespace
}  // namespace zol
