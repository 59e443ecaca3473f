#include "ui/status_area.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

namespace zol {

StatusArea::StatusArea(QWidget* parent)
    : QWidget(parent),
      progressLabel_(new QLabel(this)),
      bar_(new QProgressBar(this)),
      cancel_(new QToolButton(this)) {
  setObjectName("statusArea");
  progressLabel_->setObjectName("progressLabel");
  progressLabel_->setTextFormat(Qt::PlainText);
  bar_->setObjectName("progressBar");
  cancel_->setObjectName("cancelOperation");
  bar_->setTextVisible(false);
  bar_->setMaximumWidth(260);
  bar_->setMaximumHeight(14);
  cancel_->setText(tr("Stop"));
  cancel_->setToolTip(tr("Stop the operation under way (Esc)"));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(6, 2, 6, 2);
  layout->addWidget(progressLabel_, 1);
  layout->addWidget(bar_);
  layout->addWidget(cancel_);
  connect(cancel_, &QToolButton::clicked, this, &StatusArea::cancelRequested);
  ShowProgress(false);
}

void StatusArea::ShowProgress(bool visible) {
  bar_->setVisible(visible);
  cancel_->setVisible(visible);
}

}  // namespace zol
