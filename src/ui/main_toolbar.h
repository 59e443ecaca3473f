#pragma once

// The main window's toolbar: its buttons with their tooltips, the five
// measure buttons as one exclusive group, and the drop-down menus of
// "Profile" and "Load", which the window fills each time they open. Each
// button is an action of its own that the window connects to its slot; the
// keys ("OPEN", "ADDSESSION", ...) are only the actions' object names, by
// which tests and the help find them.

#include <QToolBar>
#include <array>
#include <map>
#include <string>

class QActionGroup;
class QMenu;

namespace zol {

inline constexpr std::size_t kMeasureCount = 5;

class MainToolbar : public QToolBar {
  Q_OBJECT

 public:
  // The buttons, by what they do.
  struct Actions {
    QAction* profileProject = nullptr;  // "OPEN"
    QAction* console = nullptr;         // "CONSOLE"
    QAction* loadSessions = nullptr;    // "ADDSESSION"
    QAction* saveMerged = nullptr;      // "SAVEMERGED"
    QAction* clear = nullptr;           // "CLEAR"
    // By DisplayInfoType: "TOTALTIME", "AVERAGETIME", "CHILDTOTALTIME",
    // "CHILDAVERAGETIME", "COVERAGE".
    std::array<QAction*, kMeasureCount> measures{};
    QAction* back = nullptr;     // "BACK"
    QAction* forward = nullptr;  // "FWD"
    QAction* filters = nullptr;  // "FILTERS"
    QAction* options = nullptr;  // "OPTIONS"
    QAction* about = nullptr;    // "ABOUT"
    QAction* help = nullptr;     // "HELP"
  };

  explicit MainToolbar(QWidget* parent = nullptr);

  const Actions& actions() const { return actions_; }
  // The button whose key (object name) is `key`; nullptr for an unknown key.
  QAction* button(const std::string& key) const;
  // The drop-downs of the profile and load buttons.
  QMenu* profileMenu() const { return profileMenu_; }
  QMenu* loadMenu() const { return loadMenu_; }
  QActionGroup* measures() const { return measures_; }

  // Presses the button of measure index `measure` (IndexOf(Measure)) without any
  // action running.
  void pressMeasure(int measure);

  // The buttons whose action needs the separate instrumenter say so when it
  // is absent.
  void setInstrumenterInstalled(bool installed);

 private:
  QAction* addButton(const std::string& key, const QString& text, const QString& tip);
  QMenu* addDropDown(QAction* button);

  Actions actions_;
  std::map<std::string, QAction*> byKey_;
  QMenu* profileMenu_ = nullptr;
  QMenu* loadMenu_ = nullptr;
  QActionGroup* measures_;
};

// The measure buttons' keys by measure index (IndexOf(Measure)).
inline constexpr const char* kMeasureKeys[kMeasureCount] = {
    "TOTALTIME", "AVERAGETIME", "CHILDTOTALTIME", "CHILDAVERAGETIME", "COVERAGE"};

inline constexpr char kInstrumenterMissing[] =
    "The Zolmark instrumenter is not installed on this computer.\n"
    "Profiling a project and the instrumentation console need it; sessions "
    "that it made elsewhere can still be loaded here.";

}  // namespace zol
