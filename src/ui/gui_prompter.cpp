#include "ui/gui_prompter.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <algorithm>
#include <climits>

#include "ui/qt_text.h"

namespace zol {

namespace {

QMessageBox::Icon iconOf(MessageKind kind) {
  switch (kind) {
    case MessageKind::Information:
      return QMessageBox::Information;
    case MessageKind::Exclamation:
      return QMessageBox::Warning;
    case MessageKind::Critical:
      return QMessageBox::Critical;
    case MessageKind::Question:
      return QMessageBox::Question;
  }
  return QMessageBox::NoIcon;
}

Answer answerOf(int button) {
  if (button == QMessageBox::Yes) return Answer::Yes;
  if (button == QMessageBox::No) return Answer::No;
  return Answer::Cancel;
}

int Clamp(long value) {
  return static_cast<int>(std::clamp<long>(value, 0, INT_MAX));
}

}  // namespace

GuiPrompter::GuiPrompter(QWidget* parent, StatusArea* status, bool* abortFlag)
    : parent_(parent), status_(status), abort_(abortFlag) {
  sincePump_.start();
}

void GuiPrompter::ShowMessage(const std::string& text, MessageKind kind) {
  QMessageBox box(iconOf(kind), kMessageTitle, Q(text), QMessageBox::Ok, parent_);
  // Messages quote names and file paths; they are never markup.
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

Answer GuiPrompter::Ask(const std::string& text, bool withCancel) {
  QMessageBox box(QMessageBox::Question, kMessageTitle, Q(text),
                  QMessageBox::Yes | QMessageBox::No |
                      (withCancel ? QMessageBox::Cancel : QMessageBox::NoButton),
                  parent_);
  box.setTextFormat(Qt::PlainText);
  return answerOf(box.exec());
}

DontShowReply GuiPrompter::AskDontShowAgain(const std::string& title, const std::string& text) {
  QMessageBox box(QMessageBox::Question, Q(title), Q(text), QMessageBox::Yes | QMessageBox::No,
                  parent_);
  box.setTextFormat(Qt::PlainText);
  auto* dontShow = new QCheckBox(QObject::tr("Don't show this message again"), &box);
  box.setCheckBox(dontShow);
  const Answer answer = answerOf(box.exec());
  return {answer, dontShow->isChecked()};
}

void GuiPrompter::ShowProgress(bool visible) {
  if (!status_) return;
  // Work that shows a bar is given a while before the first repaint: most
  // of it (a table built on a switch of tab) is done before then, and its
  // page is painted once, finished, instead of also half-way.
  if (visible && !status_->progressBar()->isVisible()) sincePump_.restart();
  status_->ShowProgress(visible);
  if (!visible) status_->progressBar()->setValue(0);
}

void GuiPrompter::SetProgressText(const std::string& text) {
  if (!status_) return;
  status_->progressLabel()->setText(Q(text));
  pumpPaintsNowAndThen();
}

void GuiPrompter::SetProgressMax(long max) {
  if (status_) status_->progressBar()->setMaximum(std::max(1, Clamp(max)));
}

void GuiPrompter::SetProgressValue(long value) {
  if (!status_) return;
  QProgressBar* bar = status_->progressBar();
  if (!bar->isVisible() && value > 0) ShowProgress(true);
  bar->setValue(std::min(Clamp(value), bar->maximum()));
  pumpPaintsNowAndThen();
}

void GuiPrompter::DoEvents() {
  QCoreApplication::processEvents();
  sincePump_.restart();
}

void GuiPrompter::requestAbort() {
  if (abort_) *abort_ = true;
}

void GuiPrompter::pumpPaintsNowAndThen() {
  if (sincePump_.elapsed() < 40) return;
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  sincePump_.restart();
}

}  // namespace zol
