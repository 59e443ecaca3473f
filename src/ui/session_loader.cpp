#include "ui/session_loader.h"

namespace zol {

SessionLoader::SessionLoader(QObject* parent) : QObject(parent) {
  poll_.setInterval(40);
  connect(&poll_, &QTimer::timeout, this, [this] {
    if (done_.load(std::memory_order_acquire)) {
      onWorkerDone();
    } else {
      emit progressed();
    }
  });
}

SessionLoader::~SessionLoader() {
  if (!worker_.joinable()) return;
  stop_ = true;
  worker_.join();
}

void SessionLoader::start(Load load) {
  if (running()) return;
  load_ = std::move(load);
  progress_.Reset();
  stop_ = false;
  done_ = false;
  // The worker owns load_ and progress_ until it says it is done; the
  // window's thread reads only the progress (under its lock) meanwhile, and
  // hears of the end at its next look, with no Qt object crossing threads.
  worker_ = std::thread([this] {
    const std::function<bool()> stopRequested = [this] { return stop_.load(); };
    if (auto* session = std::get_if<SessionLoad>(&load_)) {
      RunSessionLoad(*session, progress_, stopRequested);
    } else {
      RunGroupLoad(std::get<GroupLoad>(load_), progress_, stopRequested);
    }
    done_.store(true, std::memory_order_release);
  });
  poll_.start();
}

void SessionLoader::onWorkerDone() {
  if (!worker_.joinable()) return;
  worker_.join();
  poll_.stop();
  emit finished();
}

}  // namespace zol
