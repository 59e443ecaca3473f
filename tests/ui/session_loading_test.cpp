// A session ticked in the list loads on a worker thread: the window goes on
// handling events and moving the bar while it runs, other commands wait, and
// Stop ends the load with nothing half-written and the log where it was.

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <QToolButton>
#include <filesystem>
#include <set>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "project/project_info.h"
#include "support/fixture_run.h"
#include "ui/main_window.h"
#include "ui/session_list_model.h"
#include "ui/session_list_view.h"
#include "ui/status_area.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

namespace fs = std::filesystem;
using testing::FilesIn;
using testing::WaitFor;

// A run long enough (dozens of blocks of the log) for a load to be seen
// under way, entered in a window but not ticked.
class SessionLoading : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::SimulatedLogShape shape;
    shape.run.seed = 3;
    shape.run.probes = Probes();
    run_ = testing::MakeFixtureRun(dir_ / "run", 4, "long.pfl", shape);
    ws_ = std::make_unique<Workspace>();
    ws_->appFolder = dir_ / "app";
    fs::create_directories(ws_->appFolder);
    ResetRtfPath(*ws_);
    window_ = std::make_unique<MainWindow>(*ws_);
    window_->resize(1000, 700);
    window_->show();
    window_->addSessionFiles({run_.log});
    QApplication::processEvents();
  }
  void TearDown() override {
    WaitFor([&] { return !window_->busy(); }, 60000);
    window_->close();
    window_.reset();
  }

  // Enough for the load to take a while: a stop must come before its end.
  virtual std::int64_t Probes() const { return 2'500'000; }

  void Tick() {
    SessionListModel* model = window_->sessionList()->typedModel();
    ASSERT_EQ(model->rowCount(), 1);
    model->setData(model->index(0, 0), Qt::Checked, Qt::CheckStateRole);
    ASSERT_TRUE(WaitFor([&] { return window_->loading(); }, 5000));
  }

  testing::ScopedTempDir dir_;
  testing::FixtureRun run_;
  std::unique_ptr<Workspace> ws_;
  std::unique_ptr<MainWindow> window_;
};

TEST_F(SessionLoading, TheWindowKeepsHandlingEventsWhileALoadRuns) {
  int ticks = 0;
  QTimer clock;
  QObject::connect(&clock, &QTimer::timeout, [&] { ++ticks; });
  clock.start(5);
  Tick();
  QProgressBar* bar = window_->statusArea()->progressBar();
  int ticksWhileLoading = 0;
  // Every value the bar takes, not only those it has when the loop looks:
  // on a busy machine a look can fall just after the bar was reset.
  int highest = 0;
  QObject::connect(bar, &QProgressBar::valueChanged,
                   [&](int value) { highest = std::max(highest, value); });
  bool refused = false;
  while (window_->loading()) {
    // A command that would touch the catalogue is held off while it loads.
    window_->removeRow("K1");
    refused = ws_->Session(1).SessionFile == run_.log;
    ASSERT_TRUE(refused);
    EXPECT_FALSE(ws_->Session(1).Loaded);
    QApplication::processEvents(QEventLoop::AllEvents, 5);
    if (window_->loading()) ticksWhileLoading = ticks;
  }
  EXPECT_GT(ticksWhileLoading, 2) << "the event loop stood still during the load";
  EXPECT_GT(highest, 0) << "the bar never moved";
  EXPECT_TRUE(refused);

  // The result is in place: loaded, in the tree, the log turned into a .pfd.
  ASSERT_TRUE(WaitFor([&] { return !window_->busy(); }));
  EXPECT_TRUE(ws_->Session(1).Loaded);
  EXPECT_NE(window_->tree().Nodes().Find("S1"), nullptr);
  EXPECT_TRUE(window_->sessionList()->typedModel()->rows()[0].Checked);
  EXPECT_FALSE(fs::exists(run_.log));
  EXPECT_EQ(ws_->Session(1).SessionFile, run_.log.substr(0, run_.log.size() - 1) + "d");
  EXPECT_TRUE(fs::exists(ws_->Session(1).SessionFile));
  EXPECT_FALSE(bar->isVisible());
}

class StoppedLoading : public SessionLoading {
 protected:
  std::int64_t Probes() const override { return 8'000'000; }
};

TEST_F(StoppedLoading, StopEndsTheLoadWithNothingHalfWrittenAndTheLogKept) {
  const std::string folder = fs::path(run_.log).parent_path().string();
  const std::set<std::string> before = FilesIn(folder);
  const std::string log = LoadFile(run_.log);
  testing::MessageBoxCatcher catcher;
  Tick();
  QToolButton* stop = window_->statusArea()->cancelButton();
  ASSERT_TRUE(WaitFor([&] { return stop->isVisible(); }, 5000));
  stop->click();
  ASSERT_TRUE(WaitFor([&] { return !window_->busy(); }, 60000));

  EXPECT_FALSE(ws_->Session(1).Loaded);
  EXPECT_EQ(ws_->Session(1).CodeLineValue.UBound(), 0);
  EXPECT_EQ(ws_->Session(1).SessionFile, run_.log);
  EXPECT_EQ(window_->tree().Nodes().Find("S1"), nullptr);
  EXPECT_FALSE(window_->sessionList()->typedModel()->rows()[0].Checked);
  EXPECT_EQ(FilesIn(folder), before) << "a file was written or deleted";
  EXPECT_EQ(LoadFile(run_.log), log);
  EXPECT_TRUE(catcher.texts.empty()) << "a stop is not a fault: " << catcher.texts[0];

  // Ticked again, it loads whole.
  Tick();
  ASSERT_TRUE(WaitFor([&] { return !window_->busy(); }, 60000));
  EXPECT_TRUE(ws_->Session(1).Loaded);
}

}  // namespace
}  // namespace zol
