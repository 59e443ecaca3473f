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

  Add("OPEN", tr("Profile"), tr("Profile project (select default plan in Options)"));
  Add("CONSOLE", tr("Console"), tr("Open Zolmark instrumentation console"));
  addSeparator();
  Add("ADDSESSION", tr("Load"), tr("Load sessions..."));
  Add("SAVEMERGED", tr("Save Merged"), tr("Save merged sessions as one single session ..."));
  Add("CLEAR", tr("Clear"), tr("Clear session pane"));
  addSeparator();
  const QString measureText[] = {tr("Total"), tr("Average"), tr("Child Total"), tr("Child Avg."),
                                 tr("Coverage")};
  const QString measureTip[] = {tr("Display total time values"), tr("Display average time values"),
                                tr("Display total children time values"),
                                tr("Display average children time values"),
                                tr("Display coverage values")};
  for (int m = 0; m < 5; ++m) {
    QAction* a = Add(kMeasureKeys[m], measureText[m], measureTip[m]);
    a->setCheckable(true);
    measures_->addAction(a);
  }
  addSeparator();
  Add("BACK", tr("Back"), tr("Back"))->setShortcut(QKeySequence::Back);
  Add("FWD", tr("Forward"), tr("Forward"))->setShortcut(QKeySequence::Forward);
  addSeparator();
  Add("FILTERS", tr("Filters"), tr("Apply Filters"));
  Add("OPTIONS", tr("Options"), tr("Options..."));
  Add("ABOUT", tr("About"), tr("About the Zolmark Profiler..."));
  Add("HELP", tr("Help"), tr("Help"))->setShortcut(QKeySequence::HelpContents);

  for (const char* key : {"OPEN", "ADDSESSION"}) {
    auto* menu = new QMenu(this);
    menu->setObjectName(QString("%1Menu").arg(key));
    menus_[key] = menu;
    QAction* a = buttons_[key];
    a->setMenu(menu);
    if (auto* b = qobject_cast<QToolButton*>(widgetForAction(a))) {
      b->setPopupMode(QToolButton::MenuButtonPopup);
    }
  }
  Button("BACK")->setEnabled(false);
  Button("FWD")->setEnabled(false);
}

QAction* MainToolbar::Add(const std::string& key, const QString& text, const QString& tip) {
  QAction* a = addAction(ZolIcon(key), text);
  a->setObjectName(QString::fromStdString(key));
  a->setToolTip(tip);
  a->setData(QString::fromStdString(key));
  buttons_[key] = a;
  const QString k = QString::fromStdString(key);
  connect(a, &QAction::triggered, this, [this, k] { emit buttonClicked(k); });
  return a;
}

QAction* MainToolbar::Button(const std::string& key) const {
  const auto it = buttons_.find(key);
  return it == buttons_.end() ? nullptr : it->second;
}

QMenu* MainToolbar::DropDown(const std::string& key) const {
  const auto it = menus_.find(key);
  return it == menus_.end() ? nullptr : it->second;
}

void MainToolbar::PressMeasure(int measure) {
  if (measure < 0 || measure > 4) return;
  // No action runs: the window listens to "triggered", which a check made
  // here doesn't send; the group still hears of it and lets the others go.
  Button(kMeasureKeys[measure])->setChecked(true);
}

void MainToolbar::SetInstrumenterInstalled(bool installed) {
  const QString missing = tr("\n(The Zolmark instrumenter is not installed.)");
  Button("OPEN")->setToolTip(tr("Profile project (select default plan in Options)") +
                             (installed ? QString() : missing));
  Button("CONSOLE")->setToolTip(tr("Open Zolmark instrumentation console") +
                                (installed ? QString() : missing));
  Button("OPEN")->setText(installed ? tr("Profile") : tr("Profile (n/a)"));
  Button("CONSOLE")->setText(installed ? tr("Console") : tr("Console (n/a)"));
}

}  // namespace zol
