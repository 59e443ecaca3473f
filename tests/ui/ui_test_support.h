#pragma once

// What the window tests share: the demo sessions copied to a fresh folder, a
// window over them, waiting for the event loop, and catching message boxes.

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/scoped_temp_dir.h"
#include "session/workspace.h"
#include "ui/main_window.h"

namespace zol::testing {

// Runs events until `done` holds or `ms` pass; returns whether it held.
inline bool WaitFor(const std::function<bool()>& done, int ms = 10000) {
  QElapsedTimer t;
  t.start();
  while (!done()) {
    if (t.elapsed() > ms) return false;
    QApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  return true;
}

// Lets events run for `ms` milliseconds.
inline void Pump(int ms) {
  QElapsedTimer t;
  t.start();
  while (t.elapsed() < ms) QApplication::processEvents(QEventLoop::AllEvents, 10);
}

// Answers every message box that opens while it lives, keeping its text.
class MessageBoxCatcher {
 public:
  explicit MessageBoxCatcher(QMessageBox::StandardButton answer = QMessageBox::Ok)
      : answer_(answer) {
    timer_.setInterval(10);
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (!box) return;
      texts.push_back(box->text().toStdString());
      titles.push_back(box->windowTitle().toStdString());
      QAbstractButton* button = box->button(answer_);
      if (!button) button = box->buttons().value(0);
      if (button) button->click();
    });
    timer_.start();
  }

  std::vector<std::string> texts;
  std::vector<std::string> titles;

 private:
  QMessageBox::StandardButton answer_;
  QTimer timer_;
};

// The demo's instrumented project and its three runs, copied to a fresh
// folder (a loaded log turns into a .pfd and is deleted), with the settings
// and the temporary folders of the test inside it.
class DemoCopy {
 public:
  DemoCopy();
  std::string File(const std::string& name) const { return dir_ / name; }
  const std::string& Folder() const { return dir_.path(); }
  std::string AppFolder() const { return dir_ / ".zolmark"; }

 private:
  ScopedTempDir dir_;
};

// A workspace in the demo copy's application folder, its run folder made.
std::unique_ptr<Workspace> DemoWorkspace(const DemoCopy& demo);

// A window over the demo with `files` ticked at start (names in the copy).
struct DemoWindow {
  DemoCopy demo;
  std::unique_ptr<Workspace> ws;
  std::unique_ptr<MainWindow> window;

  explicit DemoWindow(const std::vector<std::string>& files, const std::string& selectKey = "");
  ~DemoWindow();
};

}  // namespace zol::testing
