#include "ui/live_window.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include "base/app_paths.h"
#include "catalogue/session_list.h"
#include "ui/main_window.h"

namespace zol {

namespace {

// A round lamp: green while the thread runs, grey once it has ended.
QIcon lamp(bool on) {
  QPixmap pixmap(16, 16);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(60, 60, 60), 1));
  painter.setBrush(on ? QColor(40, 180, 60) : QColor(170, 170, 170));
  painter.drawEllipse(QRectF(2.5, 2.5, 11, 11));
  return QIcon(pixmap);
}

}  // namespace

void PaneLiveView::SelectSession(Workspace&, std::int32_t cs) {
  window_.onSessionTicked(SessionRowKey(cs), true);
}

void PaneLiveView::SelectSessionGroup(Workspace&, std::int32_t sg) {
  window_.onSessionTicked(GroupRowKey(sg), true);
}

void PaneLiveView::SessionsChanged(Workspace&) {
  window_.refreshSessionList();
}

LiveWindow::LiveWindow(Workspace& ws, QWidget* mainWindow, LiveRunView& view,
                       ReceiverOptions options)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      ws_(ws),
      mainWindow_(mainWindow),
      view_(view),
      store_(clock_, MeasureCounterOverhead(clock_)),
      status_(new QLabel(this)),
      threads_(new QListWidget(this)) {
  setWindowTitle(QStringLiteral("Zolmark Profiler"));
  if (mainWindow_) setWindowIcon(mainWindow_->windowIcon());
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(status_);
  layout->addWidget(threads_);
  resize(320, 200);
  if (options.settingsFile.empty()) options.settingsFile = GetIniFile(ws.appFolder);
  receiver_ = std::make_unique<LiveReceiver>(store_, std::move(options));
}

LiveWindow::~LiveWindow() {
  notifier_.reset();
  receiver_->Close();
}

std::string LiveWindow::start() {
  try {
    receiver_->Open();
  } catch (const ReceiverError& e) {
    return e.what();
  }
  receiver_->onStatus = [this](const std::string& text) {
    status_->setText(QString::fromStdString(text));
  };
  notifier_ = std::make_unique<QSocketNotifier>(receiver_->pollFd(), QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { serve(); });
  return {};
}

void LiveWindow::serve() {
  const bool due = receiver_->Poll(std::chrono::milliseconds(0));
  if (store_.windowShown && !isVisible()) {
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
      move(screen->availableGeometry().topLeft());
    }
    show();
    if (mainWindow_) mainWindow_->hide();
  }
  if (!store_.autoLoadEnabled && !acquiring_) {
    acquiring_ = true;
    emit acquiringChanged(true);
  }
  showRows();
  if (due) finishRun();
}

void LiveWindow::showRows() {
  for (std::size_t i = 0; i < store_.rows.size(); ++i) {
    const ThreadRow& row = store_.rows[i];
    if (static_cast<int>(i) >= threads_->count()) {
      auto* item = new QListWidgetItem(QString::fromStdString(row.Text), threads_);
      item->setData(Qt::UserRole, QString::fromStdString(row.Key));
    }
    QListWidgetItem* item = threads_->item(static_cast<int>(i));
    item->setIcon(lamp(row.On));
    item->setData(Qt::UserRole + 1, row.On);
  }
}

void LiveWindow::finishRun() {
  // No message reaches the store while the sessions are made.
  notifier_->setEnabled(false);
  const LiveRunOutcome outcome = ComputeThread(ws_, store_, view_);
  threads_->clear();
  status_->clear();
  hide();
  if (mainWindow_) {
    mainWindow_->show();
    mainWindow_->raise();
    mainWindow_->activateWindow();
  }
  acquiring_ = false;
  emit acquiringChanged(false);
  emit runFinished(outcome);
  notifier_->setEnabled(true);
}

}  // namespace zol
