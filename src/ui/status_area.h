#pragma once

// The strip at the bottom of the window: the text of the long
// operation under way, its progress bar, and a button that
// asks the operation to stop.

#include <QWidget>

class QLabel;
class QProgressBar;
class QToolButton;

namespace zol {

class StatusArea : public QWidget {
  Q_OBJECT

 public:
  explicit StatusArea(QWidget* parent = nullptr);

  QLabel* progressLabel() const { return progressLabel_; }
  QProgressBar* progressBar() const { return bar_; }
  QToolButton* cancelButton() const { return cancel_; }

  // Shows or hides the bar and the stop button; the label stays, so that a
  // last word may remain after the bar is gone.
  void ShowProgress(bool visible);

 signals:
  void cancelRequested();

 private:
  QLabel* progressLabel_;
  QProgressBar* bar_;
  QToolButton* cancel_;
};

}  // namespace zol
