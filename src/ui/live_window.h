#pragma once

// The small window of a live run: a status line and one row per registered
// thread with an ON or OFF icon. It stays hidden until the first thread
// registers; then it shows at the top left corner while the main window
// steps aside, and it can't be closed by its title bar. When the last thread
// has ended it computes the run's sessions, hides, and brings the main
// window back.
//
// The receiver's event loop is driven from Qt's: a notifier on the
// receiver's descriptor serves messages as they come, so the window stays
// responsive and nothing waits.

#include <QLabel>
#include <QListWidget>
#include <QSocketNotifier>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "live/compute_thread.h"
#include "live/event_store.h"
#include "live/receiver.h"
#include "session/workspace.h"

namespace zol {

class MainWindow;

// Takes a run's sessions into the window that shows the session list: a
// session or group is ticked as a click on its row would tick it.
class PaneLiveView : public LiveRunView {
 public:
  explicit PaneLiveView(MainWindow& window) : window_(window) {}
  void SelectSession(Workspace& ws, std::int32_t cs) override;
  void SelectSessionGroup(Workspace& ws, std::int32_t sg) override;
  void SessionsChanged(Workspace& ws) override;

 private:
  MainWindow& window_;
};

class LiveWindow : public QWidget {
  Q_OBJECT

 public:
  // `mainWindow` steps aside during a run; `view` takes the run's sessions
  // into the main window's list and tree.
  LiveWindow(Workspace& ws, QWidget* mainWindow, LiveRunView& view, ReceiverOptions options = {});
  ~LiveWindow() override;

  // Opens the socket and the rendezvous. Returns the failure's text, or
  // nothing when the receiver is up.
  std::string start();

  const EventStore& store() const { return store_; }
  const LiveReceiver& receiver() const { return *receiver_; }
  QString statusText() const { return status_->text(); }
  const QListWidget& threadList() const { return *threads_; }

 signals:
  // A run has begun (true) or its sessions are made (false): the main
  // window's timer that takes up session files pauses meanwhile.
  void acquiringChanged(bool acquiring);
  // The end of a run made these files.
  void runFinished(const LiveRunOutcome& outcome);

 private:
  void serve();
  void showRows();
  void finishRun();

  Workspace& ws_;
  QWidget* mainWindow_;
  LiveRunView& view_;
  MonotonicClock clock_;
  EventStore store_;
  std::unique_ptr<LiveReceiver> receiver_;
  QLabel* status_;
  QListWidget* threads_;
  std::unique_ptr<QSocketNotifier> notifier_;
  bool acquiring_ = false;
};

}  // namespace zol
