#include "ui/session_loader.h"

#include <QMetaObject>

namespace zol {

SessionLoader::SessionLoader(QObject* parent) : QObject(parent) {
  poll_.setInterval(40);
  connect(&poll_, &QTimer::timeout, this, &SessionLoader::progressed);
}

SessionLoader::~SessionLoader() {
  if (!worker_.joinable()) return;
  stop_ = true;
  worker_.join();
}

void SessionLoader::start(SessionLoad load) {
  if (running()) return;
  load_ = std::move(load);
  progress_.Reset();
  stop_ = false;
  // The worker owns load_ and progress_ until it posts its end; the window's
  // thread reads only the progress (under its lock) meanwhile.
  worker_ = std::thread([this] {
    RunSessionLoad(load_, progress_, [this] { return stop_.load(); });
    QMetaObject::invokeMethod(this, &SessionLoader::onWorkerDone, Qt::QueuedConnection);
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
