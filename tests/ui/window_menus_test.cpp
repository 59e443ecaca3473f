// The menu bar and what it brings: the usual shortcuts, rows copied as
// tab-separated text, the search over a grid, the window's title, the help
// text, and a picture-taking run that leaves the settings alone.

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSpinBox>
#include <QTabBar>
#include <QTest>

#include "base/app_paths.h"
#include "base/ini_file.h"
#include "grid/table.h"
#include "ui/busy_scope.h"
#include "ui/grid_page.h"
#include "ui/grid_table_model.h"
#include "ui/grid_view.h"
#include "ui/main_toolbar.h"
#include "ui/main_window.h"
#include "ui/session_list_model.h"
#include "ui/session_list_view.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

using testing::DemoWindow;
using testing::MessageBoxCatcher;

QAction* Action(MainWindow& window, const char* name) {
  return window.menuBar()->findChild<QAction*>(name);
}

TEST(WindowMenus, TheMenuBarHasTheUsualEntriesAndShortcuts) {
  DemoWindow w({"Monday.pfl"}, "S1");
  MainWindow& window = *w.window;
  QStringList menus;
  for (QAction* a : window.menuBar()->actions()) menus << a->text().remove('&');
  EXPECT_EQ(menus, (QStringList{"File", "Edit", "View", "Help"}));
  const std::pair<const char*, QKeySequence> expected[] = {
      {"openSessions", QKeySequence(Qt::CTRL | Qt::Key_O)},
      {"quit", QKeySequence(Qt::CTRL | Qt::Key_Q)},
      {"copyRows", QKeySequence(Qt::CTRL | Qt::Key_C)},
      {"find", QKeySequence(Qt::CTRL | Qt::Key_F)},
      {"showTab1", QKeySequence(Qt::CTRL | Qt::Key_1)},
      {"showTab7", QKeySequence(Qt::CTRL | Qt::Key_7)}};
  for (const auto& [name, keys] : expected) {
    QAction* a = Action(window, name);
    ASSERT_NE(a, nullptr) << name;
    EXPECT_EQ(a->shortcut(), keys) << name;
  }
  EXPECT_EQ(window.toolbar()->button("HELP")->shortcut(), QKeySequence(Qt::Key_F1));
  EXPECT_TRUE(
      window.findChild<QMenu*>("helpMenu")->actions().contains(window.toolbar()->button("HELP")));
  EXPECT_NE(window.findChild<QMenu*>("recentSessions"), nullptr);
  EXPECT_NE(window.findChild<QMenu*>("recentProjects"), nullptr);

  // Ctrl+2 shows the second tab, whatever tab strip the window has; tabs
  // it lacks have no entry.
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  QTest::keyClick(&window, Qt::Key_2, Qt::ControlModifier);
  EXPECT_EQ(window.pageTabs()->currentIndex(), 1);
  Action(window, "showTab4")->trigger();
  EXPECT_EQ(window.pageTabs()->currentIndex(), 3);
  EXPECT_EQ(Action(window, "showTab4")->text(), "Lines");
  for (int i = 1; i <= 7; ++i) {
    QAction* a = Action(window, QString("showTab%1").arg(i).toLatin1().constData());
    EXPECT_EQ(a->isVisible(), i <= window.pageTabs()->count()) << i;
  }
  // The measures are the toolbar's buttons.
  QAction* coverage = window.toolbar()->button("COVERAGE");
  EXPECT_TRUE(window.findChild<QMenu*>("viewMenu")->actions().contains(coverage));
}

TEST(WindowMenus, RowsAreCopiedAsTabSeparatedText) {
  DemoWindow w({"Monday.pfl"}, "S1M5");
  w.window->selectScopeTab(Tab::Procedures);
  GridView* grid = w.window->gridPage()->grid();
  const Table& t = grid->table();
  ASSERT_GT(t.RowCount(), 3);
  grid->selectionModel()->select(grid->model()->index(0, 0),
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  grid->selectionModel()->select(grid->model()->index(2, 0),
                                 QItemSelectionModel::Select | QItemSelectionModel::Rows);
  const QStringList lines = grid->copyText(false).split('\n', Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 3);
  EXPECT_TRUE(lines[0].startsWith("Module\tProcedure\t")) << lines[0].toStdString();
  EXPECT_TRUE(lines[1].startsWith(QString::fromStdString(t.RowAt(1).Text(1)) + "\t"));
  EXPECT_EQ(lines[2].split('\t').value(1), QString::fromStdString(t.RowAt(3).Text(2)));
  EXPECT_FALSE(lines[0].contains("Bars"));

  // Ctrl+C on the grid puts the chosen rows on the clipboard, not a cell.
  grid->setFocus();
  QApplication::clipboard()->clear();
  QTest::keyClick(grid, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts).size(), 3);
  // The whole table: a line per row, the total row included.
  Action(*w.window, "copyTable")->trigger();
  EXPECT_EQ(QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts).size(),
            t.RowCount() + 1);
}

TEST(WindowMenus, TheSearchKeepsTheRowsThatHoldTheWords) {
  DemoWindow w({"Monday.pfl"}, "S1");
  w.window->selectScopeTab(Tab::Procedures);
  GridView* grid = w.window->gridPage()->grid();
  QAbstractItemModelTester tester(grid->model(),
                                  QAbstractItemModelTester::FailureReportingMode::Fatal);
  const int all = grid->model()->rowCount();
  const int width = grid->horizontalHeader()->sectionSize(1);
  Action(*w.window, "find")->trigger();
  QLineEdit* box = w.window->gridPage()->searchBox();
  box->setText("invoice ADD");
  const int shown = grid->model()->rowCount();
  ASSERT_GT(shown, 0);
  ASSERT_LT(shown, all);
  const Table& t = grid->table();
  for (int r = 0; r < shown; ++r) {
    const int row = grid->typedModel()->tableRow(r);
    if (t.RowAt(row).Key == "TOTAL") continue;
    EXPECT_EQ(t.RowAt(row).Text(1), "CInvoice");
    EXPECT_NE(t.RowAt(row).Text(2).find("Add"), std::string::npos);
  }
  EXPECT_EQ(grid->horizontalHeader()->sectionSize(1), width);
  // A sort and a new table keep the search; a click finds its procedure.
  grid->horizontalHeader()->sectionClicked(t.FindColumn("Hits") - 1);
  EXPECT_EQ(grid->model()->rowCount(), shown);
  const int addLine = [&] {
    for (int r = 0; r < shown; ++r) {
      if (t.RowAt(grid->typedModel()->tableRow(r)).Text(2) == "AddLine") return r;
    }
    return -1;
  }();
  ASSERT_GE(addLine, 0);
  QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {},
                     grid->visualRect(grid->model()->index(addLine, 1)).center());
  EXPECT_EQ(w.window->pageTabs()->currentIndex(), 4);
  EXPECT_EQ(w.window->selection().procedure, 21);
  w.window->selectScopeTab(Tab::Procedures);
  EXPECT_LT(grid->model()->rowCount(), grid->table().RowCount());
  box->clear();
  EXPECT_EQ(grid->model()->rowCount(), grid->table().RowCount());
}

TEST(WindowMenus, TheTitleNamesTheSessionOnDisplay) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl"}, "S2");
  EXPECT_EQ(w.window->windowTitle(), "Tuesday - Zolmark Profiler");
  w.window->clickTreeNode("COMPARE");
  EXPECT_EQ(w.window->windowTitle(), "Compared Sessions - Zolmark Profiler");
  w.window->removeAllSessions();
  EXPECT_EQ(w.window->windowTitle(), "Zolmark Profiler");
}

TEST(WindowMenus, AnActionIsIgnoredWhileAnOperationRunsAndThenDoesItsOwnAct) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl"});
  const auto rows = [&] { return w.window->sessionList()->typedModel()->rowCount(); };
  {
    BusyScope busy(*w.window);
    w.window->toolbar()->actions().clear->trigger();
    Action(*w.window, "clearSessions")->trigger();
    EXPECT_EQ(rows(), 2);
  }
  Action(*w.window, "clearSessions")->trigger();
  EXPECT_EQ(rows(), 0);
  EXPECT_EQ(w.window->tree().Nodes().Count(), 0u);
}

TEST(WindowMenus, TheHelpTellsWhereTheMergedNodesAre) {
  DemoWindow w({"Monday.pfl"});
  MessageBoxCatcher catcher;
  w.window->toolbar()->button("HELP")->trigger();
  ASSERT_EQ(catcher.texts.size(), 1u);
  EXPECT_NE(catcher.texts[0].find("at the bottom of the tree"), std::string::npos);
  EXPECT_EQ(catcher.texts[0].find("top of the tree"), std::string::npos);
}

TEST(WindowMenus, MaxItemsStaysBesideItsSpinBox) {
  DemoWindow w({});
  auto* spin = w.window->gridPage()->findChild<QSpinBox*>("chartMaxItems");
  ASSERT_NE(spin, nullptr);
  QLabel* label = nullptr;
  for (QLabel* l : w.window->gridPage()->findChildren<QLabel*>()) {
    if (l->text() == "Max Items:") label = l;
  }
  ASSERT_NE(label, nullptr);
  // One unit of the strip: they wrap together.
  EXPECT_EQ(label->parentWidget(), spin->parentWidget());
  EXPECT_NE(spin->parentWidget(), w.window->gridPage()->optionStrip());
}

TEST(WindowMenus, APictureTakingRunLeavesTheSettingsAlone) {
  testing::DemoCopy demo;
  auto ws = testing::DemoWorkspace(demo);
  const std::string ini = GetIniFile(ws->appFolder);
  VBWritePrivateProfileString("Profiler", "Width", "612", ini);
  {
    StartOptions start;
    start.saveSettings = false;
    MainWindow window(*ws, start);
    window.resize(1280, 800);
    window.show();
    window.selectScopeTab(Tab::Modules);
    window.close();
  }
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Width", "", ini), "612");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Active_tbsTab", "none", ini), "none");
}

}  // namespace
}  // namespace zol
