// The main window driven as a user drives it, on the demo sessions: ticks,
// clicks in the grids, the source page, back and forward, renames, the
// header of headers of compared grids, and the settings kept at the end.

#include "ui/main_window.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QMenu>
#include <QTabBar>
#include <QTest>

#include "base/app_paths.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "grid/table.h"
#include "ui/grid_page.h"
#include "ui/grid_table_model.h"
#include "ui/grid_view.h"
#include "ui/main_toolbar.h"
#include "ui/project_tree_model.h"
#include "ui/project_tree_view.h"
#include "ui/session_header_bar.h"
#include "ui/session_list_model.h"
#include "ui/session_list_view.h"
#include "ui/source_pane.h"
#include "ui/title_strip_widget.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

using testing::DemoWindow;
using testing::MessageBoxCatcher;
using testing::WaitFor;

int ActiveTab(const DemoWindow& w) {
  return w.window->pageTabs()->currentIndex() + 1;
}

// The row (from 1) whose cell under `header` reads `text`; 0 if none.
int FindRow(const Table& t, const std::string& header, const std::string& text) {
  const int column = t.FindColumn(header);
  for (int r = 1; r <= t.RowCount() && column > 0; ++r) {
    if (t.RowAt(r).Text(column) == text) return r;
  }
  return 0;
}

QPoint CellCentre(GridView* grid, int row, int column) {
  grid->scrollTo(grid->model()->index(row - 1, column - 1));
  return grid->visualRect(grid->model()->index(row - 1, column - 1)).center();
}

TEST(MainWindow, TwoTickedSessionsOfferMergedAndComparedViews) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl"});
  const TreeNodes& nodes = w.window->tree().Nodes();
  ASSERT_NE(nodes.Find("MERGE"), nullptr);
  ASSERT_NE(nodes.Find("COMPARE"), nullptr);
  EXPECT_TRUE(w.window->projectTreeView()->typedModel()->indexOfKey("MERGE").isValid());
  EXPECT_TRUE(w.window->projectTreeView()->typedModel()->indexOfKey("COMPARE").isValid());
  const auto& rows = w.window->sessionList()->typedModel()->rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_TRUE(rows[0].Checked);
  EXPECT_TRUE(rows[1].Checked);
  // The logs were loaded and stored as session files.
  EXPECT_TRUE(FileExist(w.demo.File("Monday.pfd")));

  // Unticking one takes the merged views away again.
  w.window->onSessionTicked(rows[1].Key, false);
  EXPECT_EQ(nodes.Find("MERGE"), nullptr);
  EXPECT_EQ(nodes.Find("COMPARE"), nullptr);
  EXPECT_FALSE(w.window->sessionList()->typedModel()->rows()[1].Checked);
}

TEST(MainWindow, AClickOnAModuleRowShowsItsProcedures) {
  DemoWindow w({"Monday.pfl"}, "S1");
  w.window->selectScopeTab(Tab::Modules);
  GridView* grid = w.window->gridPage()->grid();
  const int row = FindRow(grid->table(), "Module", "CInvoice");
  ASSERT_GT(row, 0);
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, CellCentre(grid, row, 1));
  // A single click counts once the double-click time has passed.
  ASSERT_TRUE(WaitFor([&] { return ActiveTab(w) == 3; }));
  EXPECT_EQ(w.window->selection().module, 5);
  EXPECT_EQ(w.window->selection().procedure, 0);
  EXPECT_EQ(w.window->tree().Nodes().SelectedKey(), "S1M5");
  EXPECT_EQ(w.window->titleStrip()->texts()[2], "CInvoice");
  const Table& procedures = grid->table();
  const int module = procedures.FindColumn("Module");
  for (int r = 1; r <= procedures.RowCount(); ++r) {
    if (procedures.RowAt(r).Key.empty()) {
      EXPECT_EQ(procedures.RowAt(r).Text(module), "CInvoice");
    }
  }
}

TEST(MainWindow, ADoubleClickOpensTheSourceAndBackReturns) {
  DemoWindow w({"Monday.pfl"}, "S1M5");
  w.window->selectScopeTab(Tab::Procedures);
  GridView* grid = w.window->gridPage()->grid();
  const int row = FindRow(grid->table(), "Procedure", "AddLine");
  ASSERT_GT(row, 0);
  QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, CellCentre(grid, row, 2));
  ASSERT_TRUE(WaitFor([&] { return ActiveTab(w) == 5; }));
  EXPECT_EQ(w.window->selection().procedure, 21);
  EXPECT_EQ(w.window->titleStrip()->texts()[3], "AddLine");
  const QString page = w.window->sourcePane()->browser()->toPlainText();
  EXPECT_TRUE(page.contains("Public Sub AddLine(")) << page.left(200).toStdString();
  EXPECT_FALSE(page.contains("Public Sub Class_Initialize"));
  // The single click's action never ran first: no stop on the Lines tab.
  testing::Pump(GridView::doubleClickTime() + 100);
  EXPECT_EQ(ActiveTab(w), 5);

  QAction* back = w.window->toolbar()->button("BACK");
  ASSERT_TRUE(back->isEnabled());
  back->trigger();
  EXPECT_EQ(ActiveTab(w), 3);
  EXPECT_EQ(w.window->selection().module, 5);
  EXPECT_EQ(w.window->selection().procedure, 0);
  EXPECT_EQ(w.window->tree().Nodes().SelectedKey(), "S1M5");
  QAction* forward = w.window->toolbar()->button("FWD");
  ASSERT_TRUE(forward->isEnabled());
  forward->trigger();
  EXPECT_EQ(ActiveTab(w), 5);
  EXPECT_EQ(w.window->selection().procedure, 21);
}

TEST(MainWindow, ARightClickOpensTheMenuThatLeadsToTheSource) {
  DemoWindow w({"Monday.pfl"}, "S1M5");
  w.window->selectScopeTab(Tab::Procedures);
  GridView* grid = w.window->gridPage()->grid();
  const int row = FindRow(grid->table(), "Procedure", "SubTotal");
  ASSERT_GT(row, 0);
  QTest::mouseClick(grid->viewport(), Qt::RightButton, {}, CellCentre(grid, row, 2));
  auto* menu = w.window->findChild<QMenu*>("gridMenu");
  ASSERT_NE(menu, nullptr);
  ASSERT_TRUE(WaitFor([&] { return menu->isVisible(); }));
  QAction* source = menu->findChild<QAction*>("viewInSource");
  ASSERT_NE(source, nullptr);
  EXPECT_EQ(source->text(), "View in Source");
  menu->close();
  source->trigger();
  EXPECT_EQ(ActiveTab(w), 5);
  EXPECT_EQ(w.window->titleStrip()->texts()[3], "SubTotal");
}

TEST(MainWindow, ANameWithAColonIsRefusedWithTheExactMessage) {
  DemoWindow w({"Monday.pfl"});
  SessionListModel* model = w.window->sessionList()->typedModel();
  MessageBoxCatcher catcher;
  model->setData(model->index(0, 0), "Mon:day", Qt::EditRole);
  ASSERT_TRUE(WaitFor([&] { return !catcher.texts.empty(); }));
  EXPECT_EQ(catcher.texts[0],
            "A session name can not contain any of the following characters:\n/\\<>*?|:\"");
  EXPECT_EQ(w.ws->Session(1).Name, "Monday");
  EXPECT_EQ(model->rows()[0].Columns[0], "Monday");

  // An accepted name reaches the list, the tree and the title.
  model->setData(model->index(0, 0), "Lundi", Qt::EditRole);
  ASSERT_TRUE(WaitFor([&] { return model->rows()[0].Columns[0] == "Lundi"; }));
  EXPECT_EQ(w.window->tree().Nodes().Find("S1")->Text.rfind("Lundi (", 0), 0u);
  EXPECT_TRUE(FileExist(w.demo.File("Lundi.pfd")));
  EXPECT_EQ(catcher.texts.size(), 1u);
}

TEST(MainWindow, TheSourcePageIsShownInColourAndItsFileStaysAsWritten) {
  DemoWindow w({"Monday.pfl"}, "S1M5P21");
  w.window->selectScopeTab(Tab::Source);
  const std::string file = SourcePageFile(*w.ws);
  ASSERT_TRUE(FileExist(file));
  const std::string bytes = LoadFile(file);
  EXPECT_NE(bytes.find("bgcolor=DDDDDD"), std::string::npos);
  EXPECT_NE(bytes.find("<!-- BEGIN STYLE -->PRE {"), std::string::npos);
  const QString shown = w.window->sourcePane()->browser()->toHtml();
  EXPECT_TRUE(shown.contains("#dddddd", Qt::CaseInsensitive));
  EXPECT_TRUE(shown.contains("#666666", Qt::CaseInsensitive));
  // Showing it changed nothing on disk.
  EXPECT_EQ(LoadFile(file), bytes);

  // A statement's link opens its menu instead of a page.
  MainWindow& window = *w.window;
  SourceBrowser* browser = window.sourcePane()->browser();
  ASSERT_TRUE(browser->beforeNavigate);
  EXPECT_FALSE(browser->beforeNavigate("|5|21|40"));
  EXPECT_EQ(window.menuTarget().module, 5);
  EXPECT_EQ(window.menuTarget().line, 40);
  window.findChild<QMenu*>("gridMenu")->close();
  EXPECT_TRUE(browser->beforeNavigate("#legend"));
}

TEST(MainWindow, TheHeaderOfHeadersFollowsTheColumnsBothWays) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl"}, "COMPARE");
  w.window->selectScopeTab(Tab::Procedures);
  SessionHeaderBar* bar = w.window->gridPage()->headers();
  ASSERT_TRUE(bar->isVisible());
  const FakeHeaders& h = bar->shown();
  ASSERT_EQ(h.SessionNames, (std::vector<std::string>{"Monday", "Tuesday"}));
  ASSERT_GT(h.NumberOfColumnsPerSession, 0);
  ASSERT_EQ(bar->count(), 3);
  EXPECT_EQ(bar->model()->headerData(1, Qt::Horizontal).toString(), "Monday");
  QHeaderView* columns = w.window->gridPage()->grid()->horizontalHeader();
  auto runWidth = [&](int session) {
    int width = 0;
    for (int k = 0; k < h.NumberOfColumnsPerSession; ++k) {
      width += columns->sectionSize(h.FirstColumn + session * h.NumberOfColumnsPerSession + k);
    }
    return width;
  };
  int leading = 0;
  for (int c = 0; c < h.FirstColumn; ++c) leading += columns->sectionSize(c);
  EXPECT_EQ(bar->sectionSize(0), leading);
  EXPECT_EQ(bar->sectionSize(1), runWidth(0));
  EXPECT_EQ(bar->sectionSize(2), runWidth(1));

  // A grid column grows: its session's header grows with it.
  columns->resizeSection(h.FirstColumn, columns->sectionSize(h.FirstColumn) + 40);
  EXPECT_EQ(bar->sectionSize(1), runWidth(0));
  // A session's header is dragged: its columns share the new width.
  bar->resizeSection(2, 301);
  EXPECT_EQ(runWidth(1), 301);
  EXPECT_EQ(bar->sectionSize(1), runWidth(0));

  // A table of one session has no header of headers.
  w.window->clickTreeNode("S1");
  EXPECT_FALSE(bar->isVisible());
}

TEST(MainWindow, DestroyingAllAsksFirst) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl"});
  {
    MessageBoxCatcher cancel(QMessageBox::Cancel);
    w.window->destroyAllSessions();
    ASSERT_EQ(cancel.texts.size(), 1u);
    EXPECT_EQ(cancel.texts[0], "Destroy 2 sessions ?\n\nThis will also destroy the session files.");
    EXPECT_EQ(cancel.titles[0], "Warning");
  }
  EXPECT_TRUE(FileExist(w.demo.File("Monday.pfd")));
  EXPECT_EQ(w.window->sessionList()->typedModel()->rowCount(), 2);
  {
    MessageBoxCatcher ok(QMessageBox::Ok);
    w.window->destroyAllSessions();
  }
  EXPECT_FALSE(FileExist(w.demo.File("Monday.pfd")));
  EXPECT_FALSE(FileExist(w.demo.File("Tuesday.pfd")));
  EXPECT_EQ(w.window->sessionList()->typedModel()->rowCount(), 0);
  EXPECT_EQ(w.window->tree().Nodes().Count(), 0u);
}

TEST(MainWindow, RemovingTheSessionOnDisplayKeepsTheOtherTicked) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl"}, "S1");
  w.window->removeRow("K1");
  const TreeNodes& nodes = w.window->tree().Nodes();
  EXPECT_EQ(nodes.Find("S1"), nullptr);
  ASSERT_NE(nodes.Find("S2"), nullptr);
  EXPECT_TRUE(w.ws->Session(2).Selected);
  EXPECT_EQ(nodes.Find("MERGE"), nullptr);
  EXPECT_EQ(w.window->sessionList()->typedModel()->rowCount(), 1);
  EXPECT_FALSE(w.window->toolbar()->button("BACK")->isEnabled());
}

TEST(MainWindow, ModelsStayConsistentThroughTicksAndRemovals) {
  DemoWindow w({});
  QAbstractItemModelTester treeTester(w.window->projectTreeView()->model(),
                                      QAbstractItemModelTester::FailureReportingMode::Warning);
  QAbstractItemModelTester listTester(w.window->sessionList()->model(),
                                      QAbstractItemModelTester::FailureReportingMode::Warning);
  QAbstractItemModelTester gridTester(w.window->gridPage()->grid()->model(),
                                      QAbstractItemModelTester::FailureReportingMode::Warning);
  int warnings = 0;
  static int* counter = nullptr;
  counter = &warnings;
  const QtMessageHandler previous =
      qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type != QtDebugMsg && text.contains("FAIL")) ++*counter;
      });
  w.window->addSessionFiles({w.demo.File("Monday.pfl"), w.demo.File("Tuesday.pfl")});
  w.window->selectAllRows(true);
  ASSERT_TRUE(testing::WaitFor([&] { return !w.window->busy(); }));
  w.window->clickTreeNode("MERGE");
  w.window->selectScopeTab(Tab::Lines);
  w.window->clickTreeNode("S0M2");
  w.window->selectAllRows(false);
  w.window->removeAllSessions();
  qInstallMessageHandler(previous);
  EXPECT_EQ(warnings, 0);
}

TEST(MainWindow, TheSettingsKeepTheMeasureTabAndChartAtTheEnd) {
  DemoWindow w({"Monday.pfl"}, "S1");
  w.window->setMeasure(Measure::ChildTotal);
  w.window->selectScopeTab(Tab::Lines);
  EXPECT_EQ(w.window->lastDisplay(), "S1-4-3");
  w.window->close();
  const std::string ini = GetIniFile(w.ws->appFolder);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "DisplayInfoType", "", ini), "2");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Active_tbsTab", "", ini), "4");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Filters", "", ini), "MsgBox<vbCrLf>InputBox");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "GraphType", "", ini), "1");
  // The run's folder of cleaned source went with the window.
  EXPECT_FALSE(FolderExist(w.ws->RtfPath));
}

}  // namespace
}  // namespace zol
