#pragma once

// The main window's toolbar: its buttons by key with their
// tooltips, the five measure buttons as one exclusive group, and the
// drop-down menus of "OPEN" and "ADDSESSION", which the window fills each
// time they open.

#include <QToolBar>
#include <map>
#include <string>

class QActionGroup;
class QMenu;

namespace zol {

class MainToolbar : public QToolBar {
  Q_OBJECT

 public:
  explicit MainToolbar(QWidget* parent = nullptr);

  // The button of `key`; nullptr for an unknown key.
  QAction* Button(const std::string& key) const;
  // The drop-down of "OPEN" or "ADDSESSION".
  QMenu* DropDown(const std::string& key) const;
  QActionGroup* Measures() const { return measures_; }

  // Presses the button of measure index `measure` (IndexOf(Measure)) without any
  // action running.
  void PressMeasure(int measure);

  // The buttons whose action needs the separate instrumenter say so when it
  // is absent.
  void SetInstrumenterInstalled(bool installed);

 signals:
  // A button was pressed (for the measures: a measure was chosen).
  void buttonClicked(const QString& key);

 private:
  QAction* Add(const std::string& key, const QString& text, const QString& tip);

  std::map<std::string, QAction*> buttons_;
  std::map<std::string, QMenu*> menus_;
  QActionGroup* measures_;
};

// The measure buttons' keys by measure index (IndexOf(Measure)).
inline constexpr const char* kMeasureKeys[] = {"TOTALTIME", "AVERAGETIME", "CHILDTOTALTIME",
                                               "CHILDAVERAGETIME", "COVERAGE"};

inline constexpr char kInstrumenterMissing[] =
    "The Zolmark instrumenter is not installed on this computer.\n"
    "Profiling a project and the instrumentation console need it; sessions "
    "that it made elsewhere can still be loaded here.";

}  // namespace zol
