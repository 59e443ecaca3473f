// The window's pages as the user meets them: links of the source page
// clicked, the splitters kept from one start to the next, a new table shown
// from its left edge, the highlight that follows its item through a sort, and
// the leading columns of a compared grid that stay while the sessions scroll.

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>
#include <QSplitter>
#include <QTabBar>
#include <QTest>
#include <QTextBlock>
#include <cstdlib>
#include <functional>

#include "grid/grid_differences.h"
#include "grid/table.h"
#include "ui/grid_page.h"
#include "ui/grid_view.h"
#include "ui/main_window.h"
#include "ui/session_header_bar.h"
#include "ui/source_pane.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

using testing::DemoWindow;
using testing::WaitFor;

// A point of the browser's viewport on the first link whose target
// satisfies `match`, the page scrolled to show it; the target goes to `href`.
QPoint LinkPoint(SourceBrowser* browser, const std::function<bool(const QString&)>& match,
                 QString* href) {
  QTextDocument* doc = browser->document();
  for (QTextBlock block = doc->begin(); block.isValid(); block = block.next()) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextFragment fragment = it.fragment();
      if (!fragment.isValid() || !fragment.charFormat().isAnchor()) continue;
      const QString target = fragment.charFormat().anchorHref();
      if (!match(target) || fragment.length() < 2) continue;
      QTextCursor cursor(doc);
      cursor.setPosition(fragment.position() + 1);
      browser->setTextCursor(cursor);
      browser->ensureCursorVisible();
      QApplication::processEvents();
      *href = target;
      // The middle of the first character of the link.
      const QRect caret = browser->cursorRect(cursor);
      return QPoint(caret.left() - 2, caret.center().y());
    }
  }
  return {};
}

// Makes sure the grid's columns are wider than its page.
void WidenLastColumn(GridView* grid) {
  QHeaderView* header = grid->horizontalHeader();
  const int last = header->logicalIndex(header->count() - 1);
  header->resizeSection(last, header->sectionSize(last) + grid->viewport()->width());
  QApplication::processEvents();
}

int Ratio1000(const QSplitter* split) {
  const QList<int> s = split->sizes();
  return s.value(0) * 1000 / std::max(1, s.value(0) + s.value(1));
}

TEST(WindowViews, ClickingAStatementOpensItsMenuAndTheLegendLinkJumps) {
  DemoWindow w({"Monday.pfl"}, "S1M5");
  w.window->selectScopeTab(Tab::Source);
  SourceBrowser* browser = w.window->sourcePane()->browser();
  ASSERT_FALSE(browser->toPlainText().isEmpty());
  auto* menu = w.window->findChild<QMenu*>("gridMenu");
  ASSERT_NE(menu, nullptr);
  ASSERT_FALSE(menu->isVisible());

  QString href;
  const QPoint statement = LinkPoint(
      browser, [](const QString& t) { return t.startsWith('|'); }, &href);
  ASSERT_FALSE(href.isEmpty()) << "the page has no statement links";
  ASSERT_EQ(browser->anchorAt(statement), href);
  QTest::mouseClick(browser->viewport(), Qt::LeftButton, {}, statement);
  ASSERT_TRUE(WaitFor([&] { return menu->isVisible(); }, 3000));
  const QStringList parts = href.split('|');
  EXPECT_EQ(w.window->menuTarget().module, parts.value(1).toInt());
  EXPECT_EQ(w.window->menuTarget().procedure, parts.value(2).toInt());
  EXPECT_EQ(w.window->menuTarget().line, parts.value(3).toInt());
  EXPECT_EQ(w.window->menuTarget().module, 5);
  menu->close();

  // "See Color Legend" brings the legend at the end of the page into view.
  const QPoint legendLink = LinkPoint(
      browser, [](const QString& t) { return t == "#legend"; }, &href);
  ASSERT_EQ(href, "#legend");
  QScrollBar* scroll = browser->verticalScrollBar();
  ASSERT_GT(scroll->maximum(), 0) << "the page fits without scrolling";
  const int before = scroll->value();
  QTest::mouseClick(browser->viewport(), Qt::LeftButton, {}, legendLink);
  EXPECT_TRUE(WaitFor([&] { return scroll->value() > before; }, 3000));
  EXPECT_FALSE(menu->isVisible());
  EXPECT_GT(scroll->value(), scroll->maximum() / 2);
}

TEST(WindowViews, BothSplittersComeBackAsTheyWereLeft) {
  testing::DemoCopy demo;
  auto ws = testing::DemoWorkspace(demo);
  int widthShare = 0;
  int treeShare = 0;
  {
    MainWindow window(*ws);
    window.resize(1200, 800);
    window.show();
    QApplication::processEvents();
    auto* vertical = window.findChild<QSplitter*>("mainSplitter");
    auto* left = window.findChild<QSplitter*>("leftSplitter");
    ASSERT_NE(vertical, nullptr);
    ASSERT_NE(left, nullptr);
    vertical->setSizes({380, 820});
    left->setSizes({500, 200});
    QApplication::processEvents();
    widthShare = Ratio1000(vertical);
    treeShare = Ratio1000(left);
    ASSERT_GT(treeShare, 600);
    window.close();
  }
  // Twice over: a restart that changes nothing must not flip anything.
  for (int start = 0; start < 2; ++start) {
    auto again = testing::DemoWorkspace(demo);
    MainWindow window(*again);
    window.resize(1200, 800);
    window.show();
    QApplication::processEvents();
    EXPECT_NEAR(Ratio1000(window.findChild<QSplitter*>("mainSplitter")), widthShare, 15) << start;
    EXPECT_NEAR(Ratio1000(window.findChild<QSplitter*>("leftSplitter")), treeShare, 15) << start;
    window.close();
  }
}

TEST(WindowViews, ANewTableStartsAtItsLeftEdge) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl"}, "COMPARE");
  w.window->resize(900, 700);
  w.window->selectScopeTab(Tab::Lines);
  GridView* grid = w.window->gridPage()->grid();
  WidenLastColumn(grid);
  QScrollBar* bar = grid->horizontalScrollBar();
  ASSERT_GT(bar->maximum(), 0) << "the compared lines fit the page";
  bar->setValue(bar->maximum());
  w.window->clickTreeNode("S1");
  QApplication::processEvents();
  EXPECT_EQ(grid->table().ColumnAt(1).Header, "Module");
  EXPECT_EQ(bar->value(), 0);
  EXPECT_EQ(grid->columnAt(grid->frozenWidth() + 2), 0);
}

TEST(WindowViews, TheHighlightFollowsItsItemThroughASort) {
  DemoWindow w({"Monday.pfl"}, "S1");
  w.window->selectScopeTab(Tab::Procedures);
  GridView* grid = w.window->gridPage()->grid();
  const Table& t = grid->table();
  const int procedure = t.FindColumn("Procedure");
  ASSERT_GT(procedure, 0);
  ASSERT_GT(t.RowCount(), 4);
  grid->selectRow(1);
  const std::string chosen = t.RowAt(2).Text(procedure);
  const int hits = t.FindColumn("Hits");
  ASSERT_GT(hits, 0);
  for (int click = 0; click < 3; ++click) {
    grid->horizontalHeader()->sectionClicked(click == 2 ? procedure - 1 : hits - 1);
    const QModelIndexList rows = grid->selectionModel()->selectedRows();
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(t.RowAt(rows.front().row() + 1).Text(procedure), chosen) << click;
  }
  // The sorted column shows the order in its header.
  EXPECT_TRUE(grid->horizontalHeader()->isSortIndicatorShown());
  EXPECT_EQ(grid->horizontalHeader()->sortIndicatorSection(), procedure - 1);
}

TEST(WindowViews, TheLeadingColumnsOfACompareGridStayWhileTheSessionsScroll) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl", "Friday.pfl"}, "COMPARE");
  w.window->resize(1000, 700);
  w.window->selectScopeTab(Tab::Lines);
  QApplication::processEvents();
  GridView* grid = w.window->gridPage()->grid();
  SessionHeaderBar* bar = w.window->gridPage()->headers();
  const FakeHeaders& h = bar->shown();
  ASSERT_EQ(h.FirstColumn, grid->frozenColumns());
  ASSERT_GE(h.FirstColumn, 3);
  const Table& t = grid->table();
  EXPECT_EQ(t.ColumnAt(1).Header, "Module");
  EXPECT_EQ(t.ColumnAt(2).Header, "Procedure");

  WidenLastColumn(grid);
  QScrollBar* scroll = grid->horizontalScrollBar();
  ASSERT_GT(scroll->maximum(), 0);
  scroll->setValue(scroll->maximum());
  QApplication::processEvents();
  FrozenColumnsView* frozen = grid->frozen();
  ASSERT_TRUE(frozen->isVisible());
  int leading = 0;
  for (int c = 0; c < h.FirstColumn; ++c) {
    EXPECT_FALSE(frozen->isColumnHidden(c)) << c;
    leading += grid->horizontalHeader()->sectionSize(c);
  }
  EXPECT_TRUE(frozen->isColumnHidden(h.FirstColumn));
  // Hiding them there takes nothing from the grid's own columns.
  for (int c = 0; c < grid->horizontalHeader()->count(); ++c) {
    EXPECT_GT(grid->horizontalHeader()->sectionSize(c), 20) << t.ColumnAt(c + 1).Header;
  }
  EXPECT_EQ(grid->frozenWidth(), leading);
  // The frozen columns stand on the grid's left edge, over the rows shown.
  EXPECT_LE(frozen->geometry().left(), grid->frameWidth());
  EXPECT_GE(frozen->width(), leading);
  EXPECT_EQ(frozen->columnAt(5), 0);
  EXPECT_EQ(frozen->verticalScrollBar()->value(), grid->verticalScrollBar()->value());
  // The session columns scroll on beside them.
  EXPECT_GT(grid->columnAt(leading + 5), h.FirstColumn);
  // However wide the line's text, the frozen columns leave room beside them.
  EXPECT_LE(leading, grid->viewport()->width() * 7 / 10);

  // A press on a frozen cell counts for its row and column.
  const QModelIndex cell = frozen->model()->index(0, 1);
  QTest::mousePress(frozen->viewport(), Qt::LeftButton, {}, frozen->visualRect(cell).center());
  EXPECT_EQ(grid->lastHit().Index, 1);
  EXPECT_EQ(grid->lastHit().ColumnText, "Procedure");
  QTest::mouseRelease(frozen->viewport(), Qt::LeftButton, {}, frozen->visualRect(cell).center());

  // A table of one session has none.
  w.window->clickTreeNode("S1");
  EXPECT_FALSE(frozen->isVisible());
  EXPECT_EQ(grid->frozenWidth(), 0);
}

TEST(WindowViews, ShowDifferencesAddsChangeColumnsToTheComparedGridAndTakesThemAway) {
  DemoWindow w({"Monday.pfl", "Tuesday.pfl"}, "COMPARE");
  w.window->resize(1280, 800);
  w.window->selectScopeTab(Tab::Procedures);
  QApplication::processEvents();
  GridPage* page = w.window->gridPage();
  auto* show = page->findChild<QCheckBox*>("showDifferences");
  auto* changedOnly = page->findChild<QCheckBox*>("changedOnly");
  ASSERT_TRUE(show && changedOnly);
  EXPECT_TRUE(show->isEnabled());
  EXPECT_FALSE(show->isChecked());
  EXPECT_FALSE(changedOnly->isEnabled());
  const Table before = page->grid()->table();
  const FakeHeaders headersBefore = page->headers()->shown();
  ASSERT_EQ(before.FindColumn("Diff."), 0);

  show->click();
  QApplication::processEvents();
  const Table& t = page->grid()->table();
  ASSERT_EQ(t.ColumnAt(2).Header, "Procedure");
  const int diff = t.FindColumn("Diff.");
  ASSERT_GT(diff, 0);
  EXPECT_EQ(t.ColumnAt(diff + 1).Header, "Ratio");
  EXPECT_EQ(t.ColumnCount(), before.ColumnCount() + 2);
  EXPECT_EQ(t.RowCount(), before.RowCount());
  EXPECT_EQ(page->headers()->shown().RunColumns(1), headersBefore.NumberOfColumnsPerSession + 2);
  EXPECT_EQ(page->grid()->model()->columnCount(), t.ColumnCount());
  // Every change is coloured; the total row stays last.
  for (const Row& row : t.Rows()) {
    if (row.Text(diff).empty() || row.Key == kTotalKey) continue;
    const VbColor color = row.Cells[diff - 1].Color;
    EXPECT_TRUE(color == kColorRed || color == kColorGreen || color == kColorGrey ||
                row.Text(diff) == "new" || row.Text(diff) == "gone")
        << row.Text(diff);
  }
  EXPECT_EQ(t.RowAt(t.RowCount()).Key, kTotalKey);
  if (const char* dir = std::getenv("ZOL_SCREENSHOT_DIR")) {
    w.window->grab().save(QString(dir) + "/compared-differences.png");
  }

  ASSERT_TRUE(changedOnly->isEnabled());
  changedOnly->click();
  QApplication::processEvents();
  EXPECT_LE(page->grid()->table().RowCount(), before.RowCount());

  // Off again, the grid is the one built without the option.
  show->click();
  QApplication::processEvents();
  EXPECT_FALSE(changedOnly->isEnabled());
  const Table& after = page->grid()->table();
  ASSERT_EQ(after.ColumnCount(), before.ColumnCount());
  ASSERT_EQ(after.RowCount(), before.RowCount());
  for (int r = 1; r <= after.RowCount(); ++r) {
    EXPECT_EQ(after.RowAt(r).Cells.size(), before.RowAt(r).Cells.size());
    for (int c = 1; c <= after.ColumnCount(); ++c) {
      EXPECT_EQ(after.RowAt(r).Text(c), before.RowAt(r).Text(c));
    }
  }
  EXPECT_EQ(page->headers()->shown(), headersBefore);
}

}  // namespace
}  // namespace zol
