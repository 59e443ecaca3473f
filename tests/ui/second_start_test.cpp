// The program itself, started twice on one application folder: the second
// start hands its file to the first and ends at once; the first takes the
// file up, ticks it and lists it among the recent sessions.

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QProcess>

#include "base/app_paths.h"
#include "base/ini_file.h"
#include "ui/qt_text.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

#ifdef ZOLMARK_PROFILER_PATH

using testing::DemoCopy;
using testing::WaitFor;

QProcessEnvironment Environment(const DemoCopy& demo) {
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("ZOLMARK_HOME", QPath(demo.AppFolder()));
  env.insert("QT_QPA_PLATFORM", "offscreen");
  return env;
}

TEST(SecondStart, HandsItsFileToTheRunningCopyAndEnds) {
  DemoCopy demo;
  const std::string ini = GetIniFile(demo.AppFolder());
  QProcess first;
  first.setProcessEnvironment(Environment(demo));
  first.start(ZOLMARK_PROFILER_PATH, {});
  ASSERT_TRUE(first.waitForStarted(10000));
  // The first copy holds the lock once it has started.
  ASSERT_TRUE(
      WaitFor([&] { return QFileInfo::exists(QPath(demo.AppFolder() + "/zolmark-profiler.lock")); },
              30000));

  QProcess second;
  second.setProcessEnvironment(Environment(demo));
  second.start(ZOLMARK_PROFILER_PATH, {QPath(demo.File("Tuesday.pfl"))});
  ASSERT_TRUE(second.waitForFinished(30000));
  EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(second.exitCode(), 0);

  // The running copy takes the name up within its 500 ms round, loads the
  // log (it becomes a .pfd) and lists the session among the recent ones.
  const bool taken = WaitFor(
      [&] {
        return VBGetPrivateProfileString("Profiler", "HistorySession1", "", ini) ==
               demo.File("Tuesday.pfd");
      },
      30000);
  EXPECT_TRUE(taken);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Session0", "?", ini), "");
  first.kill();
  first.waitForFinished(10000);
}

#endif

}  // namespace
}  // namespace zol
