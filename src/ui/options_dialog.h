#pragma once

// The options of the main window that the user sets by hand: colouring of
// the tree, the timing filters and the default instrumentation plan.

#include <QDialog>

#include "ui/window_options.h"

class QCheckBox;
class QLineEdit;
class QPlainTextEdit;

namespace zol {

class OptionsDialog : public QDialog {
  Q_OBJECT

 public:
  OptionsDialog(const WindowOptions& options, QWidget* parent = nullptr);

  // The options with the user's changes.
  WindowOptions Result() const;

 private:
  WindowOptions options_;
  QCheckBox* colored_;
  QPlainTextEdit* filters_;
  QLineEdit* plan_;
};

}  // namespace zol
