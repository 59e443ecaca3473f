// The Flow tab on the demo sessions: reached from the grids' menu, a click on
// a node moves the chart to that procedure, the option strip redraws and is
// kept in the settings, and selections without one session say why.

#include "ui/flow_pane.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QTabBar>
#include <QTest>

#include "base/app_paths.h"
#include "base/ini_file.h"
#include "ui/grid_page.h"
#include "ui/grid_view.h"
#include "ui/title_strip_widget.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

using testing::DemoWindow;
using testing::WaitFor;

int ActiveTab(const DemoWindow& w) {
  return w.window->pageTabs()->currentIndex() + 1;
}

std::int32_t ProcedureNamed(const DemoWindow& w, const std::string& name) {
  const Project& p = w.ws->Project(w.window->selection().project);
  for (std::int32_t i = 1; i <= p.ProceduresNumber; ++i)
    if (p.Procedure(i).Name == name) return i;
  return 0;
}

TEST(FlowTab, ViewInFlowDrawsTheProcedureOfTheRowAndANodeClickMovesTheChart) {
  DemoWindow w({"Monday.pfl"}, "S1M5");
  w.window->selectScopeTab(Tab::Procedures);
  GridView* grid = w.window->gridPage()->grid();
  const Table& t = grid->table();
  int row = 0;
  for (int r = 1; r <= t.RowCount(); ++r)
    if (t.RowAt(r).Text(t.FindColumn("Procedure")) == "AsText") row = r;
  ASSERT_GT(row, 0);
  grid->scrollTo(grid->model()->index(row - 1, 1));
  QTest::mouseClick(grid->viewport(), Qt::RightButton, {},
                    grid->visualRect(grid->model()->index(row - 1, 1)).center());
  auto* menu = w.window->findChild<QMenu*>("gridMenu");
  ASSERT_TRUE(WaitFor([&] { return menu->isVisible(); }));
  QAction* flow = menu->findChild<QAction*>("viewInFlow");
  ASSERT_NE(flow, nullptr);
  EXPECT_EQ(flow->text(), "View in Flow");
  EXPECT_TRUE(flow->isEnabled());
  menu->close();
  flow->trigger();

  EXPECT_EQ(ActiveTab(w), 6);
  FlowPane* pane = w.window->flowPane();
  const std::int32_t asText = ProcedureNamed(w, "AsText");
  ASSERT_TRUE(pane->showsChart());
  const FlowGraph& graph = pane->chart()->graph();
  EXPECT_EQ(graph.Procedure, asText);
  EXPECT_EQ(w.window->selection().procedure, asText);
  EXPECT_EQ(pane->chart()->width(), pane->chart()->chartLayout().Width);
  // The selected procedure is in view.
  const QRect selected = pane->chart()->selectedNodeRect();
  const QRect seen(-pane->chart()->pos(), pane->scrollArea()->viewport()->size());
  EXPECT_TRUE(seen.intersects(selected));

  // A click on a callee's node makes it the chart's procedure.
  std::int32_t callee = 0;
  QPoint where;
  for (const FlowNode& n : graph.Nodes) {
    if (n.Depth == 1) {
      callee = n.Procedure;
      where = QRect(n.x, n.Y, n.w, n.h).center();
      break;
    }
  }
  ASSERT_NE(callee, 0);
  QTest::mouseClick(pane->chart(), Qt::LeftButton, {}, where);
  ASSERT_TRUE(WaitFor([&] { return pane->chart()->graph().Procedure == callee; }));
  EXPECT_EQ(w.window->selection().procedure, callee);
  EXPECT_EQ(w.window->titleStrip()->texts()[3].toStdString(),
            w.ws->Project(w.window->selection().project).Procedure(callee).Name);
  EXPECT_EQ(pane->chart()->graph().Nodes(1).key, "D0P" + std::to_string(callee));
}

TEST(FlowTab, TheOptionStripRedrawsAndIsKeptInTheSettings) {
  DemoWindow w({"Monday.pfl"}, "S1");
  w.window->selectScopeTab(Tab::Flow);
  FlowPane* pane = w.window->flowPane();
  ASSERT_TRUE(pane->showsChart());
  auto* left = pane->findChild<QComboBox*>("flowDepthLeft");
  ASSERT_NE(left, nullptr);
  EXPECT_EQ(left->itemText(0), "A: Automatic");
  left->setCurrentIndex(1);
  EXPECT_EQ(pane->chart()->graph().MinDepth, -1);
  for (const FlowNode& n : pane->chart()->graph().Nodes) EXPECT_GE(n.Depth, -1);
  const std::string ini = GetIniFile(w.ws->appFolder);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "CallDepth0", "", ini), "1");

  auto* scheme = pane->findChild<QComboBox*>("flowColorScheme");
  scheme->setCurrentIndex(0);
  EXPECT_EQ(pane->chart()->chartLayout().DrawWidth, 1);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "ColorSchemeFlow", "", ini), "1");
}

TEST(FlowTab, ComparedSessionsShowWhyThereIsNoChart) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl"}, "COMPARE");
  w.window->selectScopeTab(Tab::Flow);
  FlowPane* pane = w.window->flowPane();
  EXPECT_FALSE(pane->showsChart());
  auto* notice = pane->findChild<QLabel*>("flowNotice");
  ASSERT_NE(notice, nullptr);
  EXPECT_TRUE(notice->isVisibleTo(pane));
  EXPECT_EQ(notice->text().toStdString(),
            "\n    Unavailable (compared sessions)\n\n    Please click the Procedures tab");
}

TEST(FlowTab, CallPairsThatDoNotFitTheProjectAreNamedOnThePage) {
  DemoWindow w({"Monday.pfl"}, "S1");
  w.ws->Session(1).FlowPair(1).ToProc = 999;
  w.window->selectScopeTab(Tab::Flow);
  FlowPane* pane = w.window->flowPane();
  EXPECT_FALSE(pane->showsChart());
  const std::string text = pane->findChild<QLabel*>("flowNotice")->text().toStdString();
  EXPECT_NE(text.find("Monday.pfd: call pair 1 names procedure 999"), std::string::npos) << text;
}

}  // namespace
}  // namespace zol
