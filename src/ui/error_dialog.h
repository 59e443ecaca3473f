#pragma once

// The error dialog: what went wrong, and the ways on: end the program, try
// the operation again, skip it, skip this error for good, or report it. shown
// a second time after a report, thanking, with the report button off.

#include <QDialog>

#include "errcapture/err_handler.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace zol {

class ErrorDialog : public QDialog {
  Q_OBJECT
 public:
  // `reportFolder` is what "Look at report" opens.
  ErrorDialog(const ErrorDialogState& state, QString reportFolder, QWidget* parent = nullptr);

  ErrorDialogReply reply() const { return reply_; }

  QLabel* errorText() const { return errorText_; }
  QLabel* reportText() const { return reportText_; }
  QPlainTextEdit* describe() const { return describe_; }
  QPushButton* button(ErrorDecision d) const;
  QPushButton* reportButton() const { return report_; }
  QPushButton* lookButton() const { return look_; }

 private:
  void choose(ErrorDecision d);
  void startReport();
  void lookAtReport();

  QString reportFolder_;
  ErrorDialogReply reply_;
  QLabel* errorText_ = nullptr;
  QLabel* reportText_ = nullptr;
  QPlainTextEdit* describe_ = nullptr;
  QPushButton* abort_ = nullptr;
  QPushButton* retry_ = nullptr;
  QPushButton* ignore_ = nullptr;
  QPushButton* alwaysIgnore_ = nullptr;
  QPushButton* report_ = nullptr;
  QPushButton* look_ = nullptr;
};

}  // namespace zol
