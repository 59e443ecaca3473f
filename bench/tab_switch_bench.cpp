// bench_tab_switch: whether the desktop program stays responsive on a large
// session. For each size given by --lines (by default 100,000 and then
// 1,000,000 probed statements: modules of 50 procedures of 20 statements, so
// 1,000 modules and 50,000 procedures for the larger), a Visual Basic project
// is written, instrumented and run by the simulator; the main window then
// opens its log (scan, replay, statistics, session file, tree) on Qt's
// offscreen platform, and each scope tab is shown in turn --repeat times,
// with the whole session selected so that the Lines tab lists every line.
// Each switch is timed from the click to the end of the repaint that follows;
// the best and the median per tab and measure are printed, then the sort of
// the Lines grid on each of its columns, the time to open and the peak
// memory of the process.
//
// Each size runs in a process of its own, made after its log is written, so
// that the peak memory is that of the window on that session alone.
//
// Then the Source tab on long modules: a project of two modules of
// --module-lines statements each (20,000 by default, 0 to skip), whose pages
// are shown in turn by clicks on their tree nodes, each click timed from the
// click to the end of the repaint (page built, written, read and laid out).
//
// Targets: a tab switch (median) within 50 ms on 100,000 lines and 200 ms on
// 1,000,000; opening 1,000,000 lines within 5 s and 1 GB; a sort of the
// Lines grid of 1,000,000 rows within 300 ms; the source page of a module of
// 20,000 lines well within 100 ms.
//
//   bench_tab_switch [--lines N]... [--module-lines N] [--repeat N] [--dir FOLDER]

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QTabBar>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/cp1252.h"
#include "base/heap_tuning.h"
#include "big_run.h"
#include "grid/table.h"
#include "project/project_info.h"
#include "ui/grid_page.h"
#include "ui/grid_view.h"
#include "ui/main_window.h"
#include "ui/qt_font_metrics.h"

namespace {

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

using zol::bench::kStatementsPerProcedure;
using zol::bench::Milliseconds;

struct options {
  std::vector<int> sizes;
  int lines = 0;  // the size being measured
  int moduleLines = 20000;
  int repeat = 5;
  std::string dir = "bench-data";
};

options ParseOptions(int argc, char** argv) {
  options o;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--lines" && i + 1 < argc) {
      // --lines 0 measures no whole session (the long modules alone).
      const int lines = std::atoi(argv[++i]);
      o.sizes.push_back(lines <= 0 ? 0 : std::max(kStatementsPerProcedure, lines));
    } else if (arg == "--module-lines" && i + 1 < argc) {
      o.moduleLines = std::max(0, std::atoi(argv[++i]));
    } else if (arg == "--repeat" && i + 1 < argc) {
      o.repeat = std::max(1, std::atoi(argv[++i]));
    } else if (arg == "--dir" && i + 1 < argc) {
      o.dir = argv[++i];
    } else {
      std::fprintf(stderr,
                   "usage: bench_tab_switch [--lines N]... [--module-lines N] [--repeat N] "
                   "[--dir FOLDER]\n");
      std::exit(2);
    }
  }
  if (o.sizes.empty()) o.sizes = {100000, 1000000};
  return o;
}

// The project and its run, made once per size.
std::string PrepareLog(const options& o) {
  // Five events a line are enough for nearly every procedure of the larger
  // projects to run several times; the smaller keep their two million.
  return zol::bench::PrepareBigRunLog(
      fs::absolute(fs::path(o.dir) / ("tabswitch-" + std::to_string(o.lines))), o.lines,
      std::max<std::int64_t>(2'000'000, o.lines * 5LL));
}

// The project of two long modules and its run.
std::string PrepareLongModuleLog(const options& o) {
  const int procedures = std::max(1, o.moduleLines / kStatementsPerProcedure);
  return zol::bench::PrepareBigRunLog(
      fs::absolute(fs::path(o.dir) / ("longmodule-" + std::to_string(o.moduleLines))),
      2 * procedures * kStatementsPerProcedure, 1'000'000, procedures);
}

// The largest resident size of this process so far, in MB.
double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;  // kB on Linux
}

void PrintTimes(std::map<int, std::vector<double>>& times, const std::map<int, int>& rows,
                const char* const* names) {
  for (auto& [key, ms] : times) {
    std::sort(ms.begin(), ms.end());
    std::printf("  %-16s %8.1f %8.1f %8d\n", names[key], ms.front(), ms[ms.size() / 2],
                rows.at(key));
  }
}

// Runs `work` in a child process and waits for it; false if it failed.
template <typename Work>
bool InChild(Work work) {
  std::fflush(nullptr);
  const pid_t pid = fork();
  if (pid < 0) return false;
  if (pid == 0) {
    const int code = work();
    std::fflush(nullptr);
    _exit(code);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// The settings and scratch folders of the measured window sit beside the run.
void UseAppFolderBeside(zol::Workspace& ws, const std::string& log) {
  ws.appFolder = (fs::path(log).parent_path().parent_path() / "app").string();
  fs::create_directories(ws.appFolder);
  zol::ResetRtfPath(ws);
}

// The start files load on a worker: the window is open once they are in.
void WaitUntilLoaded(zol::MainWindow& window) {
  QApplication::processEvents();
  while (window.busy()) QApplication::processEvents(QEventLoop::AllEvents, 5);
}

// The window's start: the log ticked, the node `key` selected, page `tab`.
zol::StartOptions OpenAt(const std::string& log, std::string key, int tab) {
  zol::StartOptions start;
  start.files = {log};
  start.selectKey = std::move(key);
  start.tab = tab;
  return start;
}

int& Offscreen(int& argc) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  return argc;
}

// The measured window on Qt's offscreen platform, opened on `log` at node
// `key` and page `tab`; `openMs` is the time from its creation until the
// start files were in.
struct MeasuredWindow {
  MeasuredWindow(int argc, char** argv, const std::string& log, std::string key, int tab)
      : argCount(argc), app(Offscreen(argCount), argv) {
    zol::installFontSubstitutions();
    UseAppFolderBeside(ws, log);
    const zol::StartOptions start = OpenAt(log, std::move(key), tab);
    const auto openStart = Clock::now();
    window = std::make_unique<zol::MainWindow>(ws, start);
    window->resize(1400, 900);
    window->show();
    WaitUntilLoaded(*window);
    openMs = Milliseconds(openStart);
  }
  ~MeasuredWindow() { window->close(); }

  int argCount;
  QApplication app;
  zol::Workspace ws;
  std::unique_ptr<zol::MainWindow> window;
  double openMs = 0;
};

int MeasureSize(int argc, char** argv, const options& o, const std::string& log) {
  MeasuredWindow measured(argc, argv, log, "S1", 3);
  zol::Workspace& ws = measured.ws;
  zol::MainWindow& window = *measured.window;
  const double openMs = measured.openMs;
  const double openPeak = PeakMegabytes();
  const zol::Project& p = ws.Project(ws.Session(1).Project);
  std::printf(
      "session of %d lines, %d procedures, %d modules: opened in %.0f ms "
      "(scan, replay, statistics, session file, tree, first page), peak memory %.0f MB\n",
      p.LinesNumber, p.ProceduresNumber, p.ModulesNumber, openMs, openPeak);

  const char* names[] = {"", "Projects", "Modules", "Procedures", "Lines", "Source"};
  // Total time lists what ran; coverage lists every probed line and procedure.
  for (const zol::Measure measure : {zol::Measure::Total, zol::Measure::Coverage}) {
    window.setMeasure(measure);
    std::map<int, std::vector<double>> times;
    std::map<int, int> rows;
    for (int r = 0; r < o.repeat; ++r) {
      for (int tab : {1, 2, 3, 4, 5}) {
        const auto t0 = Clock::now();
        window.pageTabs()->setCurrentIndex(tab - 1);  // as a click on the tab does
        QApplication::processEvents();
        window.repaint();
        times[tab].push_back(Milliseconds(t0));
        rows[tab] = tab == 5 ? 0 : window.gridPage()->grid()->table().RowCount();
      }
    }
    std::printf("tab switch, whole session selected, measure %s (best / median of %d, ms; rows):\n",
                measure == zol::Measure::Coverage ? "coverage" : "total time", o.repeat);
    PrintTimes(times, rows, names);
  }

  // A click on each header of the Lines grid, twice, so that both orders
  // are timed.
  window.setMeasure(zol::Measure::Total);
  window.pageTabs()->setCurrentIndex(3);
  QApplication::processEvents();
  zol::GridView* grid = window.gridPage()->grid();
  const zol::Table& table = grid->table();
  std::vector<std::string> headers;
  std::map<int, std::vector<double>> sorts;
  std::map<int, int> sortRows;
  // Headers are kept in the program's code page; the terminal reads UTF-8.
  for (int c = 1; c <= table.ColumnCount(); ++c) {
    headers.push_back(zol::Cp1252ToUtf8(table.ColumnAt(c).Header));
  }
  std::vector<const char*> columnNames{""};
  for (const std::string& h : headers) columnNames.push_back(h.c_str());
  for (int r = 0; r < o.repeat; ++r) {
    for (int c = 1; c <= static_cast<int>(headers.size()); ++c) {
      const auto t0 = Clock::now();
      grid->sortOn(c, false);
      QApplication::processEvents();
      window.repaint();
      sorts[c].push_back(Milliseconds(t0));
      sortRows[c] = grid->table().RowCount();
    }
  }
  std::printf(
      "sort of the Lines grid on a column, measure total time (best / median of %d, ms; "
      "rows):\n",
      o.repeat);
  PrintTimes(sorts, sortRows, columnNames.data());
  std::printf("peak memory: %.0f MB\n\n", PeakMegabytes());
  return 0;
}

// The window on the project of two long modules, the Source tab on display:
// each click on a module's node builds, writes and shows its page.
int MeasureLongModule(int argc, char** argv, const options& o, const std::string& log) {
  MeasuredWindow measured(argc, argv, log, "S1M1", 5);
  zol::Workspace& ws = measured.ws;
  zol::MainWindow& window = *measured.window;
  const zol::Project& p = ws.Project(ws.Session(1).Project);
  std::printf("source page of a long module (%d modules, %d lines, %d procedures in all):\n",
              p.ModulesNumber, p.LinesNumber, p.ProceduresNumber);
  for (const zol::Measure measure : {zol::Measure::Total, zol::Measure::Coverage}) {
    window.setMeasure(measure);
    std::vector<double> times;
    for (int r = 0; r < o.repeat; ++r) {
      for (const char* key : {"S1M2", "S1M1"}) {
        const auto t0 = Clock::now();
        window.clickTreeNode(key);
        QApplication::processEvents();
        window.repaint();
        times.push_back(Milliseconds(t0));
      }
    }
    std::sort(times.begin(), times.end());
    std::printf("  module of %d statements, measure %-10s best %8.1f  median %8.1f ms (of %zu)\n",
                o.moduleLines, measure == zol::Measure::Coverage ? "coverage" : "total time",
                times.front(), times[times.size() / 2], times.size());
  }
  std::printf("\n");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  // The heap as the desktop program sets it up.
  zol::KeepLargeBlocksInHeap();
  options o = ParseOptions(argc, argv);
  bool ok = true;
  for (const int size : o.sizes) {
    if (size == 0) continue;
    o.lines = size;
    std::string log;
    // The log is written in a process of its own too, so that the simulator's
    // memory doesn't count in the window's peak.
    ok = InChild([&] {
           PrepareLog(o);
           return 0;
         }) &&
         ok;
    log = PrepareLog(o);  // made now: only copies the log into place
    ok = InChild([&] { return MeasureSize(argc, argv, o, log); }) && ok;
  }
  if (o.moduleLines > 0) {
    ok = InChild([&] {
           PrepareLongModuleLog(o);
           return 0;
         }) &&
         ok;
    const std::string log = PrepareLongModuleLog(o);
    ok = InChild([&] { return MeasureLongModule(argc, argv, o, log); }) && ok;
  }
  return ok ? 0 : 1;
}
