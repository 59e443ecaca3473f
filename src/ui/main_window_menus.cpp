// The main window's menu bar: what the toolbar offers, and what a user of a
// desktop program looks for in menus with their usual shortcuts: opening and
// recent files, saving the merged sessions, the export, quitting; copying
// rows and finding them; the measures and the tabs; the help.

#include <QActionGroup>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QStackedWidget>
#include <QTabBar>

#include "ui/grid_page.h"
#include "ui/grid_view.h"
#include "ui/main_toolbar.h"
#include "ui/main_window.h"

namespace zol {

namespace {

// The tabs reached by Ctrl+1 and on: as many as the window can have.
constexpr int kTabShortcuts = 7;

QAction* AddAction(QMenu* menu, const char* name, const QString& text,
                   const QKeySequence& shortcut = {}) {
  QAction* a = menu->addAction(text);
  a->setObjectName(name);
  if (!shortcut.isEmpty()) a->setShortcut(shortcut);
  return a;
}

}  // namespace

void MainWindow::buildMenuBar() {
  QMenuBar* bar = menuBar();

  QMenu* file = bar->addMenu(tr("&File"));
  file->setObjectName("fileMenu");
  connectAction(AddAction(file, "openSessions", tr("&Open Sessions..."), QKeySequence::Open),
                &MainWindow::openSessions);
  QMenu* recentSessions = file->addMenu(tr("Recent &Sessions"));
  recentSessions->setObjectName("recentSessions");
  connect(recentSessions, &QMenu::aboutToShow, this, [this, recentSessions] {
    recentSessions->clear();
    fillHistoryMenu(recentSessions, "HistorySession");
    if (recentSessions->isEmpty()) recentSessions->addAction(tr("(none)"))->setEnabled(false);
  });
  QMenu* recentProjects = file->addMenu(tr("Recent &Projects"));
  recentProjects->setObjectName("recentProjects");
  recentProjects->setToolTip(tr("Loads all sessions of an original project"));
  connect(recentProjects, &QMenu::aboutToShow, this, [this, recentProjects] {
    recentProjects->clear();
    fillHistoryMenu(recentProjects, "HistoryProject");
    if (recentProjects->isEmpty()) recentProjects->addAction(tr("(none)"))->setEnabled(false);
  });
  file->addSeparator();
  connectAction(AddAction(file, "profileProject", tr("P&rofile Project...")),
                &MainWindow::profileProject);
  connectAction(AddAction(file, "saveMerged", tr("Save &Merged Sessions..."), QKeySequence::Save),
                &MainWindow::saveMergedSession);
  QAction* exportTable =
      AddAction(file, "exportTable", tr("&Export Table..."), QKeySequence(Qt::CTRL | Qt::Key_E));
  connect(exportTable, &QAction::triggered, this, [this] {
    if (!busy() && pages_->currentWidget() == gridPage_) runGuarded(this, [this] { exportGrid(); });
  });
  file->addSeparator();
  connectAction(AddAction(file, "clearSessions", tr("&Clear Session Pane")),
                &MainWindow::removeAllSessions);
  file->addSeparator();
  connect(AddAction(file, "quit", tr("&Quit"), QKeySequence(Qt::CTRL | Qt::Key_Q)),
          &QAction::triggered, this, &QWidget::close);

  QMenu* edit = bar->addMenu(tr("&Edit"));
  edit->setObjectName("editMenu");
  // The copies belong to the grid: elsewhere (the source page) Ctrl+C
  // copies the text chosen there.
  QAction* copyRows = AddAction(edit, "copyRows", tr("&Copy Rows"), QKeySequence::Copy);
  QAction* copyTable = AddAction(edit, "copyTable", tr("Copy &Whole Table"),
                                 QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C));
  for (QAction* a : {copyRows, copyTable}) {
    a->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    gridPage_->addAction(a);
  }
  connect(copyRows, &QAction::triggered, this,
          [this] { gridPage_->grid()->copyToClipboard(false); });
  connect(copyTable, &QAction::triggered, this,
          [this] { gridPage_->grid()->copyToClipboard(true); });
  edit->addSeparator();
  connect(AddAction(edit, "find", tr("&Find..."), QKeySequence::Find), &QAction::triggered, this,
          [this] {
            if (pages_->currentWidget() == gridPage_) gridPage_->focusSearch();
          });
  connect(edit, &QMenu::aboutToShow, this, [this, copyRows, copyTable, exportTable] {
    const bool grid = pages_->currentWidget() == gridPage_;
    copyRows->setEnabled(grid);
    copyTable->setEnabled(grid);
    exportTable->setEnabled(grid);
  });
  connect(file, &QMenu::aboutToShow, this,
          [this, exportTable] { exportTable->setEnabled(pages_->currentWidget() == gridPage_); });
  // The shortcuts work with the menus closed; the actions look at the page.
  for (QMenu* menu : {file, edit}) {
    connect(menu, &QMenu::aboutToHide, this, [copyRows, copyTable, exportTable] {
      for (QAction* a : {copyRows, copyTable, exportTable}) a->setEnabled(true);
    });
  }

  QMenu* view = bar->addMenu(tr("&View"));
  view->setObjectName("viewMenu");
  // The measures are the toolbar's own buttons: one choice, in step.
  for (QAction* measure : toolbar_->measures()->actions()) view->addAction(measure);
  view->addSeparator();
  QList<QAction*> tabActions;
  for (int i = 0; i < kTabShortcuts; ++i) {
    QAction* a = view->addAction(QString());
    a->setObjectName(QString("showTab%1").arg(i + 1));
    a->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + i)));
    connect(a, &QAction::triggered, this, [this, i] { showTabAt(i); });
    tabActions << a;
  }
  auto nameTabs = [this, tabActions] {
    for (int i = 0; i < tabActions.size(); ++i) {
      QAction* a = tabActions[i];
      a->setVisible(i < tabs_->count());
      if (i < tabs_->count()) a->setText(tabs_->tabText(i));
    }
  };
  nameTabs();
  connect(view, &QMenu::aboutToShow, this, nameTabs);
  view->addSeparator();
  QAction* back = toolbar_->actions().back;
  QAction* forward = toolbar_->actions().forward;
  back->setShortcut(QKeySequence::Back);
  forward->setShortcut(QKeySequence::Forward);
  view->addAction(back);
  view->addAction(forward);

  QMenu* help = bar->addMenu(tr("&Help"));
  help->setObjectName("helpMenu");
  help->addAction(toolbar_->actions().help);  // F1
  connectAction(AddAction(help, "about", tr("&About the Zolmark Profiler...")),
                &MainWindow::showAbout);
}

void MainWindow::showTabAt(int index) {
  if (busy() || index < 0 || index >= tabs_->count()) return;
  // A change of tab draws its page (showCurrentPage).
  tabs_->setCurrentIndex(index);
}

}  // namespace zol
