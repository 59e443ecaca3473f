#pragma once

// The window's loading state: one session or group loaded on a worker thread
// at a time. The worker computes (scan, replay, statistics, session file) in a
// workspace of its own; the window keeps drawing, reads the progress as it
// likes, and puts the result into the catalogue once the worker is done.
// While a load runs, the window holds off every command that would touch the
// catalogue.

#include <QObject>
#include <QTimer>
#include <atomic>
#include <memory>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#include "catalogue/group_load.h"
#include "catalogue/session_load.h"

namespace zol {

class SessionLoader : public QObject {
  Q_OBJECT

 public:
  explicit SessionLoader(QObject* parent = nullptr);
  // A load still running is stopped and waited for: a worker never outlives
  // the window that started it.
  ~SessionLoader() override;

  bool running() const { return worker_.joinable(); }
  // What a worker loads: a session (BeginSessionLoad's) or a group
  // (BeginGroupLoad's).
  using Load = std::variant<SessionLoad, GroupLoad>;

  // Starts the worker on `load`; no other load may run.
  void start(Load load);
  // Asks the load under way to stop at its next chance.
  void requestStop() { stop_ = true; }
  // Whether a stop was asked for since the last load started.
  bool stopRequested() const { return stop_; }
  LoadProgress::State progress() const { return progress_.Progress(); }

  // Once `finished` is emitted: the result, for FinishSessionLoad or
  // FinishGroupLoad, and what the worker had to say, in its order, to be
  // shown before it.
  Load takeResult() { return std::move(load_); }
  std::vector<std::pair<std::string, MessageKind>> takeMessages() {
    return progress_.TakeMessages();
  }

 signals:
  // Now and then while the load runs: time to show its progress.
  void progressed();
  // The worker is done (loaded, failed or stopped) and has been joined.
  void finished();

 private:
  void onWorkerDone();

  Load load_;
  LoadProgress progress_;
  std::atomic<bool> stop_ = false;
  std::atomic<bool> done_ = false;
  std::thread worker_;
  QTimer poll_;
};

}  // namespace zol
