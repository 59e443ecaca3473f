#include "ui/main_toolbar.h"

#include <QActionGroup>
#include <QMenu>
#include <QToolButton>

#include "ui/icons.h"

namespace zol {

MainToolbar::MainToolbar(QWidget* parent)
    : QToolBar(tr("Toolbar"), parent), measures_(new QActionGroup(this)) {
  setObjectName("toolbar");
  setMovable(false);
  setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  setIconSize(QSize(24, 24));
  measures_->setExclusive(true);

  Actions& a = actions_;
  a.profileProject =
      addButton("OPEN", tr("Profile"), tr("Profile project (select default plan in Options)"));
  a.console = addButton("CONSOLE", tr("Console"), tr("Open Zolmark instrumentation console"));
  addSeparator();
  a.loadSessions = addButton("ADDSESSION", tr("Load"), tr("Load sessions..."));
  a.saveMerged = addButton("SAVEMERGED", tr("Save Merged"),
                           tr("Save merged sessions as one single session ..."));
  a.clear = addButton("CLEAR", tr("Clear"), tr("Clear session pane"));
  addSeparator();
  const QString measureText[] = {tr("Total"), tr("Average"), tr("Child Total"), tr("Child Avg."),
                                 tr("Coverage")};
  const QString measureTip[] = {tr("Display total time values"), tr("Display average time values"),
                                tr("Display total children time values"),
                                tr("Display average children time values"),
                                tr("Display coverage values")};
  for (std::size_t m = 0; m < kMeasureCount; ++m) {
    QAction* measure = addButton(kMeasureKeys[m], measureText[m], measureTip[m]);
    measure->setCheckable(true);
    measures_->addAction(measure);
    a.measures[m] = measure;
  }
  addSeparator();
  a.back = addButton("BACK", tr("Back"), tr("Back"));
  a.back->setShortcut(QKeySequence::Back);
  a.forward = addButton("FWD", tr("Forward"), tr("Forward"));
  a.forward->setShortcut(QKeySequence::Forward);
  addSeparator();
  a.filters = addButton("FILTERS", tr("Filters"), tr("Apply Filters"));
  a.options = addButton("OPTIONS", tr("Options"), tr("Options..."));
  a.about = addButton("ABOUT", tr("About"), tr("About the Zolmark Profiler..."));
  a.help = addButton("HELP", tr("Help"), tr("Help"));
  a.help->setShortcut(QKeySequence::HelpContents);

  profileMenu_ = addDropDown(a.profileProject);
  loadMenu_ = addDropDown(a.loadSessions);
  a.back->setEnabled(false);
  a.forward->setEnabled(false);
}

QAction* MainToolbar::addButton(const std::string& key, const QString& text, const QString& tip) {
  QAction* a = addAction(zolIcon(key), text);
  a->setObjectName(QString::fromStdString(key));
  a->setToolTip(tip);
  a->setData(QString::fromStdString(key));
  byKey_[key] = a;
  return a;
}

QMenu* MainToolbar::addDropDown(QAction* button) {
  auto* menu = new QMenu(this);
  menu->setObjectName(button->objectName() + "Menu");
  button->setMenu(menu);
  if (auto* b = qobject_cast<QToolButton*>(widgetForAction(button))) {
    b->setPopupMode(QToolButton::MenuButtonPopup);
  }
  return menu;
}

QAction* MainToolbar::button(const std::string& key) const {
  const auto it = byKey_.find(key);
  return it == byKey_.end() ? nullptr : it->second;
}

void MainToolbar::pressMeasure(int measure) {
  if (measure < 0 || measure >= static_cast<int>(kMeasureCount)) return;
  // No action runs: the window listens to "triggered", which a check made
  // here doesn't send; the group still hears of it and lets the others go.
  actions_.measures[static_cast<std::size_t>(measure)]->setChecked(true);
}

void MainToolbar::setInstrumenterInstalled(bool installed) {
  const QString missing = tr("\n(The Zolmark instrumenter is not installed.)");
  actions_.profileProject->setToolTip(tr("Profile project (select default plan in Options)") +
                                      (installed ? QString() : missing));
  actions_.console->setToolTip(tr("Open Zolmark instrumentation console") +
                               (installed ? QString() : missing));
  actions_.profileProject->setText(installed ? tr("Profile") : tr("Profile (n/a)"));
  actions_.console->setText(installed ? tr("Console") : tr("Console (n/a)"));
}

}  // namespace zol
