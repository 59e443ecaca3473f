// Sessions ticked by something other than a click in the list (the files of
// the command line, names left by another program) load on the worker too,
// one after another: the window comes to the same catalogue, ticks and files
// as the catalogue's own synchronous steps, keeps handling events meanwhile,
// and a stop ends the load under way and drops the ones still waiting.

#include <gtest/gtest.h>

#include <QMenu>
#include <QTimer>
#include <QToolButton>
#include <filesystem>
#include <set>

#include "base/app_paths.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"
#include "base/text.h"
#include "catalogue/file_history.h"
#include "catalogue/run_fixture.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_file_lookup.h"
#include "catalogue/session_list.h"
#include "project/project_info.h"
#include "session/json_dump.h"
#include "ui/main_window.h"
#include "ui/project_tree_view.h"
#include "ui/session_list_model.h"
#include "ui/session_list_view.h"
#include "ui/status_area.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

namespace fs = std::filesystem;
using testing::FilesIn;
using testing::Pfd;
using testing::WaitFor;

std::unique_ptr<Workspace> WorkspaceIn(const std::string& appFolder) {
  auto ws = std::make_unique<Workspace>();
  ws->appFolder = appFolder;
  fs::create_directories(appFolder);
  ResetRtfPath(*ws);
  return ws;
}

// What a catalogue holds, as text, with `root` written as "<root>": two
// catalogues of the same runs in two folders of the same length compare
// equal.
std::string Describe(const Workspace& ws, const std::string& root) {
  std::string text = "sessions " + std::to_string(ws.nSession) + ", groups " +
                     std::to_string(ws.nSessionGroup) + ", projects " +
                     std::to_string(ws.nProject) + "\n";
  for (std::int32_t i = 1; i <= ws.nProject; ++i) {
    const Project& p = ws.Project(i);
    text += "P" + std::to_string(i) + " " + p.ProjectFile + " loaded " + std::to_string(p.Loaded) +
            " lines " + std::to_string(p.LinesNumber) + "\n";
  }
  for (std::int32_t i = 1; i <= ws.nSession; ++i) {
    const Session& s = ws.Session(i);
    text += "S" + std::to_string(i) + " selected " + std::to_string(s.Selected) + " invisible " +
            std::to_string(s.Invisible) + " group " + std::to_string(s.Group) + " project " +
            std::to_string(s.Project) + "\n" + SessionToJson(ws.Project(s.Project), s) + "\n";
  }
  for (std::int32_t i = 1; i <= ws.nSessionGroup; ++i) {
    const SessionGroup& g = ws.SessionGroup(i);
    text += "G" + std::to_string(i) + " " + g.SessionFile + " loaded " + std::to_string(g.Loaded) +
            " selected " + std::to_string(g.Selected) + " members " + std::to_string(g.nSession) +
            " merged " + std::to_string(g.GroupMergedSession) + "\n";
  }
  for (const SessionListRow& row : SessionListRows(ws)) {
    text += row.Key + (row.Checked ? " ticked\n" : " unticked\n");
  }
  return Replace(text, root, "<root>");
}

std::string Bytes(const std::string& file, const std::string& root) {
  return Replace(LoadFile(file), root, "<root>");
}

// Two runs of one project and a group file of two more, made alike in two
// folders: one loaded by the catalogue's synchronous steps, one by a window.
class QueuedLoads : public ::testing::Test {
 protected:
  struct Runs {
    std::string root;
    std::vector<std::string> files;  // run1.pfl, the group file, run2.pfl
  };

  Runs MakeRuns(const std::string& root) {
    const testing::FixtureRun run = testing::MakeSmallRun(root);
    testing::GroupFileSpec spec{root + "/runs/Runs.vbg 1.pfd"};
    fs::create_directories(root + "/runs");
    {
      auto scratch = WorkspaceIn(root + "/scratch");
      testing::WriteGroupFile(
          *scratch,
          {testing::AnotherRun(run, "run3.pfl", 3), testing::AnotherRun(run, "run4.pfl", 4)}, spec);
    }
    fs::remove_all(root + "/scratch");
    return {root, {run.log, spec.file, testing::AnotherRun(run, "run2.pfl", 2)}};
  }

  testing::ScopedTempDir dir_;
};

TEST_F(QueuedLoads, StartFilesComeToWhatTheCatalogueMakesOfThem) {
  const Runs sync = MakeRuns(dir_ / "a");
  const Runs queued = MakeRuns(dir_ / "b");

  // The catalogue's own steps, as zolprof takes them: each file entered and
  // ticked, then listed among the recent sessions.
  auto syncWs = WorkspaceIn(sync.root + "/app");
  const CatalogueChange change = EnterLeftSessions(*syncWs, sync.files);
  EXPECT_EQ(change.ticks.size(), 3u);

  auto ws = WorkspaceIn(queued.root + "/app");
  StartOptions start;
  start.files = queued.files;
  start.selectKey = "S1";
  MainWindow window(*ws, start);
  window.show();
  EXPECT_TRUE(window.loading()) << "the first log loads on the worker";
  ASSERT_TRUE(WaitFor([&] { return !window.busy(); }, 60000));

  EXPECT_EQ(Describe(*ws, queued.root), Describe(*syncWs, sync.root));
  for (const char* name : {"run1.pfd", "run2.pfd", "runs/Runs.vbg 1.pfd"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Bytes(queued.root + "/" + name, queued.root),
              Bytes(sync.root + "/" + name, sync.root));
  }
  for (const std::string& folder : {std::string("/"), std::string("/runs")}) {
    std::set<std::string> a;
    std::set<std::string> b;
    for (const std::string& f : FilesIn(sync.root + folder)) a.insert(GetFileName(f));
    for (const std::string& f : FilesIn(queued.root + folder)) b.insert(GetFileName(f));
    EXPECT_EQ(b, a) << folder;
  }
  for (int i = 1; i <= 4; ++i) {
    const std::string key = "HistorySession" + std::to_string(i);
    EXPECT_EQ(Replace(VBGetPrivateProfileString("Profiler", key, "", GetIniFile(ws->appFolder)),
                      queued.root, "<root>"),
              Replace(VBGetPrivateProfileString("Profiler", key, "", GetIniFile(syncWs->appFolder)),
                      sync.root, "<root>"))
        << key;
  }

  // The window shows what it holds: every ticked row in the tree, the node
  // asked for selected once the loads were in.
  for (const char* key : {"S1", "G1", "S5"}) {
    EXPECT_NE(window.tree().Nodes().Find(key), nullptr) << key;
  }
  EXPECT_EQ(window.tree().Nodes().SelectedKey(), "S1");
  EXPECT_EQ(window.sessionList()->typedModel()->rows().size(), 3u);
  window.close();
}

TEST_F(QueuedLoads, AGroupTickedInTheListLoadsOnTheWorker) {
  const Runs runs = MakeRuns(dir_ / "a");
  auto ws = WorkspaceIn(runs.root + "/app");
  MainWindow window(*ws);
  window.show();
  window.addSessionFiles({runs.files[1]});
  SessionListModel* model = window.sessionList()->typedModel();
  ASSERT_EQ(model->rowCount(), 1);
  model->setData(model->index(0, 0), Qt::Checked, Qt::CheckStateRole);
  QApplication::processEvents();  // the tick reaches the window
  EXPECT_TRUE(window.loading());
  EXPECT_FALSE(ws->SessionGroup(1).Loaded) << "the group is read on the worker";
  ASSERT_TRUE(WaitFor([&] { return !window.busy(); }, 60000));
  EXPECT_TRUE(ws->SessionGroup(1).Loaded);
  EXPECT_TRUE(model->rows()[0].Checked);
  EXPECT_NE(window.tree().Nodes().Find("G1"), nullptr);
  EXPECT_EQ(window.tree().Nodes().SelectedKey(), "G1") << "the group's node is shown";
  window.close();
}

TEST_F(QueuedLoads, ARecentSessionLoadsOnTheWorker) {
  // The recent sessions hold session files: the log is loaded once first.
  const testing::FixtureRun run = testing::MakeSmallRun(dir_ / "a");
  const std::string pfd = Pfd(run.log);
  {
    auto scratch = WorkspaceIn(dir_ / "a/scratch");
    ASSERT_TRUE(LoadSession(*scratch, AddSession(*scratch, run.log)));
  }
  auto ws = WorkspaceIn(dir_ / "a/app");
  AddToFileHistory(*ws, pfd);
  MainWindow window(*ws);
  window.show();
  auto* recent = window.findChild<QMenu*>("recentSessions");
  ASSERT_NE(recent, nullptr);
  emit recent->aboutToShow();
  QAction* entry = nullptr;
  for (QAction* a : recent->actions()) {
    if (a->data().toString().toStdString() == pfd) entry = a;
  }
  ASSERT_NE(entry, nullptr);
  entry->trigger();
  EXPECT_TRUE(window.loading());
  EXPECT_FALSE(ws->Session(1).Loaded);
  ASSERT_TRUE(WaitFor([&] { return !window.busy(); }, 60000));
  EXPECT_TRUE(ws->Session(1).Loaded && ws->Session(1).Selected);
  EXPECT_NE(window.tree().Nodes().Find("S1"), nullptr);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "HistorySession1", "", GetIniFile(ws->appFolder)),
            pfd);
  window.close();
}

// Start files of which the second takes long: the first is in before it
// starts, and a stop comes while it runs.
class StoppedQueue : public ::testing::Test {
 protected:
  void SetUp() override {
    first_ = testing::MakeSmallRun(dir_ / "runs");
    testing::SimulatedLogShape longRun;
    longRun.run.seed = 7;
    longRun.run.probes = 8'000'000;
    long_ = testing::WriteFixtureLog(first_, "long.pfl", longRun);
    last_ = testing::AnotherRun(first_, "run3.pfl", 3);
    ws_ = WorkspaceIn(dir_ / "app");
  }

  testing::ScopedTempDir dir_;
  testing::FixtureRun first_;
  std::string long_;
  std::string last_;
  std::unique_ptr<Workspace> ws_;
};

TEST_F(StoppedQueue, AStopKeepsWhatCameInAndLoadsNothingMore) {
  const std::string folder = GetPath(first_.log);
  const std::string longBytes = LoadFile(long_);
  const std::string lastBytes = LoadFile(last_);
  testing::MessageBoxCatcher catcher;
  int ticks = 0;
  QTimer clock;
  QObject::connect(&clock, &QTimer::timeout, [&] { ++ticks; });
  clock.start(5);

  StartOptions start;
  start.files = {first_.log, long_, last_};
  MainWindow window(*ws_, start);
  window.show();
  ASSERT_TRUE(WaitFor([&] { return ws_->Session(1).Loaded && window.loading(); }, 30000));
  ASSERT_EQ(ws_->nSession, 2) << "the last file waits its turn before it is even entered";
  // The window goes on: events run while the long load does, and other
  // commands are held off.
  const int ticksBefore = ticks;
  ASSERT_TRUE(WaitFor([&] { return ticks > ticksBefore + 2 || !window.loading(); }, 30000));
  ASSERT_TRUE(window.loading()) << "the long load ended before events were seen to run";
  window.removeRow("K1");
  EXPECT_TRUE(ws_->Session(1).Loaded) << "a removal waits for the loads";
  window.statusArea()->cancelButton()->click();
  ASSERT_TRUE(WaitFor([&] { return !window.busy(); }, 60000));

  // The first is in, whole; the stopped one is as it was; the last never
  // entered.
  EXPECT_TRUE(ws_->Session(1).Loaded);
  EXPECT_TRUE(ws_->Session(1).Selected);
  EXPECT_EQ(ws_->Session(1).SessionFile, Pfd(first_.log));
  EXPECT_FALSE(ws_->Session(2).Loaded);
  EXPECT_FALSE(ws_->Session(2).Selected);
  EXPECT_EQ(ws_->Session(2).SessionFile, long_);
  EXPECT_EQ(ws_->Session(2).CodeLineValue.UBound(), 0);
  EXPECT_EQ(ws_->nSession, 2);
  const std::set<std::string> expected = {first_.vbp, Pfd(first_.log), long_, last_};
  std::set<std::string> files;
  for (const std::string& f : FilesIn(folder)) {
    if (!EndsWithNoCase(f, ".vbp") && !EndsWithNoCase(f, ".pfd") && !EndsWithNoCase(f, ".pfl"))
      continue;
    files.insert(f);
  }
  EXPECT_EQ(files, expected) << "the first log became its .pfd, nothing else was written";
  EXPECT_EQ(LoadFile(long_), longBytes);
  EXPECT_EQ(LoadFile(last_), lastBytes);
  EXPECT_TRUE(catcher.texts.empty()) << "a stop is not a fault: " << catcher.texts[0];

  const auto& rows = window.sessionList()->typedModel()->rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_NE(window.tree().Nodes().Find("S1"), nullptr);
  EXPECT_EQ(window.tree().Nodes().Find("S2"), nullptr);
  window.close();
}

}  // namespace
}  // namespace zol
