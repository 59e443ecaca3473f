#include "ui/app_main.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QLockFile>
#include <QTimer>
#include <cstdio>
#include <memory>
#include <optional>

#include "base/app_paths.h"
#include "base/heap_tuning.h"
#include "base/version.h"
#include "errcapture/fatal_signal.h"
#include "errcapture/trace.h"
#include "project/project_info.h"
#include "ui/gui_error_capture.h"
#include "ui/live_window.h"
#include "ui/main_window.h"
#include "ui/qt_font_metrics.h"
#include "ui/qt_text.h"
#include "ui/screenshots.h"
#include "ui/startup.h"

namespace zol {

namespace {

struct CommandLine {
  StartOptions start;
  QString screenshotDir;
  QSize size;
};

CommandLine parseCommandLine(const QApplication& app) {
  std::vector<std::string> words;
  for (const QString& a : app.arguments().mid(1)) words.push_back(a.toStdString());
  QCommandLineParser parser;
  parser.setApplicationDescription("Results browser of the Zolmark profiler");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument("files", "Session files (.pfl, .pfd) to load and tick");
  QCommandLineOption select("select", "Tree node to show once loaded (S1M2P3, MERGE, COMPARE)",
                            "key");
  QCommandLineOption tab("tab", "Scope tab to show: 1 Projects ... 5 Source, 6 Flow", "n");
  QCommandLineOption shots("screenshot", "Save one PNG per tab into the folder, then end",
                           "folder");
  QCommandLineOption size("size", "Window size for the screenshots, WxH", "size", "1400x900");
  parser.addOptions({select, tab, shots, size});
  parser.process(app);

  CommandLine cl;
  cl.start.minimised = commandLineHasNoShow(words);
  for (const QString& f : parser.positionalArguments()) {
    // "noshow" is a word of the command line, not a file.
    if (f.contains("noshow", Qt::CaseInsensitive)) continue;
    cl.start.files.push_back(fromQPath(QDir::current().absoluteFilePath(f)));
  }
  cl.start.selectKey = parser.value(select).toStdString();
  cl.start.tab = parser.value(tab).toInt();
  cl.screenshotDir = parser.value(shots);
  cl.start.saveSettings = cl.screenshotDir.isEmpty();
  const QStringList wh = parser.value(size).split('x');
  if (wh.size() == 2) cl.size = QSize(wh[0].toInt(), wh[1].toInt());
  return cl;
}

}  // namespace

int runProfiler(int argc, char** argv) {
  KeepLargeBlocksInHeap();
  QApplication app(argc, argv);
  QApplication::setApplicationName(kAppTitle);
  QApplication::setApplicationVersion(kAppVersion);
  QApplication::setOrganizationName("Zolmark");
  const CommandLine cl = parseCommandLine(app);

  std::string appFolder;
  try {
    appFolder = AppFolder();
  } catch (const std::exception& e) {
    std::fprintf(stderr, "zolmark-profiler: %s\n", e.what());
    return 1;
  }
  const std::string ini = GetIniFile(appFolder);

  // One copy at a time: a second start hands its files over and ends without
  // a word. The lock dies with its process, so a crash leaves nothing in the
  // way of the next start.
  QLockFile lock(QPath(appFolder) + "/zolmark-profiler.lock");
  lock.setStaleLockTime(0);
  if (!lock.tryLock(0)) {
    handOverFiles(ini, cl.start.files, "");
    return 0;
  }
  clearCancelOperations(ini);
  cleanOldRtfFolders(appFolder);
  // The error capture as soon as this copy is the one that runs: a fault from here on leaves its
  // record.
  constexpr const char* kProgram = "zolmark-profiler";
  const std::string crashFile = CrashFileIn(appFolder, kProgram);
  std::optional<CrashRecord> lastCrash = TakeCrashRecord(crashFile);
  zolInitializeProtector(ReadProtectorSettings(ini, appFolder, kProgram), crashFile);

  installFontSubstitutions();
  Workspace ws;
  ws.appFolder = appFolder;
  ResetRtfPath(ws);

  GuiErrorCapture errorCapture(ws, appFolder, kProgram);
  auto window = std::make_unique<MainWindow>(ws, cl.start);
  if (!cl.screenshotDir.isEmpty()) {
    // The start files load on a worker; the pictures are of what they show,
    // taken once they are in, with the tree placed as it is before the window
    // first shows (so that the pictures of a run are the same whatever the
    // machine's speed).
    bool loaded = false;
    QEventLoop untilLoaded;
    window->whenLoaded([&] {
      loaded = true;
      untilLoaded.quit();
    });
    if (!loaded) untilLoaded.exec();
    window->resize(cl.size.isValid() ? cl.size : QSize(1400, 900));
    window->show();
    QApplication::processEvents();
    const QStringList files = saveTabScreenshots(*window, cl.screenshotDir);
    for (const QString& f : files) std::printf("%s\n", f.toLocal8Bit().constData());
    window->close();
    return files.isEmpty() ? 1 : 0;
  }
  // The receiver of live runs waits, hidden, for a program to register.
  PaneLiveView liveView(*window);
  LiveWindow live(ws, window.get(), liveView);
  QObject::connect(&live, &LiveWindow::acquiringChanged, window.get(),
                   [w = window.get()](bool acquiring) { w->setAutoLoadPaused(acquiring); });
  if (const std::string fault = live.start(); !fault.empty()) {
    std::fprintf(stderr, "Live runs can't be received: %s\n", fault.c_str());
  }
  if (cl.start.minimised) {
    window->showMinimized();
  } else {
    window->show();
  }
  QApplication::processEvents();
  // The last run ended on a fault: offer to report it.
  if (lastCrash && !errorCapture.offerCrashReport(*lastCrash)) return 1;
  const int code = app.exec();
  window.reset();
  return code;
}

}  // namespace zol
