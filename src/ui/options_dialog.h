#pragma once

// The options of the main window that the user sets by hand: colouring of
// the tree, the timing filters and the default instrumentation plan.

#include <QDialog>

#include "session/view_settings.h"

class QCheckBox;
class QLineEdit;
class QPlainTextEdit;

namespace zol {

class OptionsDialog : public QDialog {
  Q_OBJECT

 public:
  OptionsDialog(const ViewSettings& settings, QWidget* parent = nullptr);

  // The settings with the user's changes.
  ViewSettings chosenSettings() const;

 private:
  ViewSettings settings_;
  QCheckBox* colored_;
  QPlainTextEdit* filters_;
  QLineEdit* plan_;
};

}  // namespace zol
