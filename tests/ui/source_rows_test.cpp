// The source browser on a page too long to lay out whole: a window of rows
// from the row scroll bar's value, links and anchors reached in rows never
// laid out, and the page shown whole again when a short one follows.

#include <gtest/gtest.h>

#include <QApplication>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>
#include <QWheelEvent>
#include <QtTest/QTest>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "ui/page_display.h"
#include "ui/source_pane.h"

namespace zol {
namespace {

std::string GoldenPage() {
  return LoadFile(std::string(ZOL_SOURCE_DIR) + "/tests/cli/source_links/out/work/page.htm");
}

// The head and legend of a page the writer made, around `count` statements
// of one line each, linked "|1|2|i" and named "Pi" every hundredth.
std::string LongPage(int count) {
  const std::string page = GoldenPage();
  const std::optional<PageRows> parts = splitPageRows(page);
  std::string text(parts->head);
  for (int i = 1; i <= count; ++i) {
    const std::string n = std::to_string(i);
    text += "         <TR>\r\n         <TD bgcolor=DDDDDD>" + n + "</TD>\r\n         <TD>\r\n";
    text += "            ";
    if (i % 100 == 0) text += "<A NAME=\"P" + n + "\"></A>";
    text += "<A HREF=\"|1|2|" + n + "\"><FONT COLOR=#0000FF><PRE>x = Statement" + n +
            "</PRE></FONT></A>\r\n         </TD>\r\n      </TR>\r\n";
  }
  text += parts->tail;
  return text;
}

// The statement rows laid out now: the table's rows less its caption row.
int RowsLaidOut(SourceBrowser& browser) {
  for (QTextBlock b = browser.document()->begin(); b.isValid(); b = b.next()) {
    QTextCursor cursor(b);
    if (QTextTable* table = cursor.currentTable()) return table->rows() - 1;
  }
  return 0;
}

struct LongPageBrowser {
  testing::ScopedTempDir dir;
  SourcePane pane;
  SourceBrowser& browser = *pane.browser();
  std::string file = dir / "code.htm";

  explicit LongPageBrowser(int count) {
    WriteFile(file, LongPage(count));
    pane.resize(800, 600);
    pane.show();
    browser.Navigate(file);
    QApplication::processEvents();
  }
  QString Text() const { return browser.toPlainText(); }
};

TEST(SourceRows, ALongPageLaysOutAboutAScreenOfRows) {
  LongPageBrowser b(20000);
  ASSERT_EQ(b.browser.rowCount(), 20000u);
  QScrollBar* rows = b.browser.rowScrollBar();
  EXPECT_TRUE(rows->isVisible());
  EXPECT_EQ(rows->maximum(), 19999);
  const int laidOut = RowsLaidOut(b.browser);
  EXPECT_GE(laidOut * 12, b.browser.viewport()->height()) << "the screen is not filled";
  EXPECT_LT(laidOut, 200);
  EXPECT_TRUE(b.Text().contains(QRegularExpression("\\bStatement1\\b")));
  EXPECT_FALSE(b.Text().contains("Statement19999"));
  // The caption row stays on top of every window.
  EXPECT_TRUE(b.Text().contains("Lines"));
  // The file itself is left as it was written.
  EXPECT_EQ(LoadFile(b.file), LongPage(20000));

  // The scroll bar, the wheel and the keys move the window by rows.
  rows->setValue(5000);
  EXPECT_EQ(b.browser.firstRow(), 5000u);
  EXPECT_TRUE(b.Text().contains("x = Statement5001"));
  EXPECT_FALSE(b.Text().contains(QRegularExpression("\\bStatement5000\\b")));
  QWheelEvent down(QPointF(10, 10), QPointF(10, 10), QPoint(), QPoint(0, -120), Qt::NoButton,
                   Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(b.browser.viewport(), &down);
  EXPECT_EQ(b.browser.firstRow(), 5003u);
  QTest::keyClick(&b.browser, Qt::Key_PageDown);
  EXPECT_GT(b.browser.firstRow(), 5003u + 10);
  QTest::keyClick(&b.browser, Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(b.browser.firstRow(), 19999u);
  EXPECT_TRUE(b.Text().contains("Color legend"));
  // Past the last row the wheel scrolls the legend into view, and back, in
  // a window too low to hold it.
  b.pane.resize(800, 160);
  QApplication::processEvents();
  QScrollBar* inside = b.browser.verticalScrollBar();
  ASSERT_EQ(inside->value(), 0);
  for (int i = 0; i < 20; ++i) QApplication::sendEvent(b.browser.viewport(), &down);
  EXPECT_EQ(b.browser.firstRow(), 19999u);
  const int scrolled = inside->value();
  EXPECT_GT(scrolled, 0) << "the legend's foot can't be reached";
  QWheelEvent up(QPointF(10, 10), QPointF(10, 10), QPoint(), QPoint(0, 120), Qt::NoButton,
                 Qt::NoModifier, Qt::NoScrollPhase, false);
  for (int i = 0; i < 40; ++i) QApplication::sendEvent(b.browser.viewport(), &up);
  EXPECT_EQ(inside->value(), 0);
  EXPECT_LT(b.browser.firstRow(), 19999u);
}

TEST(SourceRows, StatementsAndAnchorsFarDownAreBroughtIntoView) {
  LongPageBrowser b(20000);
  ASSERT_TRUE(b.browser.scrollToStatement(1, 2, 15000));
  EXPECT_EQ(b.browser.firstRow(), 14996u);
  ASSERT_EQ(b.browser.extraSelections().size(), 1);
  EXPECT_TRUE(b.browser.extraSelections()[0].cursor.block().text().contains("Statement15000"));
  EXPECT_FALSE(b.browser.scrollToStatement(1, 2, 20001));
  EXPECT_EQ(b.browser.firstRow(), 14996u);

  b.browser.followAnchor("#p1200");
  EXPECT_EQ(b.browser.firstRow(), 1199u);
  b.browser.followAnchor("#legend");
  EXPECT_EQ(b.browser.firstRow(), 19999u);
  EXPECT_TRUE(b.Text().contains("Color legend"));
  b.browser.followAnchor("#nowhere");
  EXPECT_EQ(b.browser.firstRow(), 19999u);
}

TEST(SourceRows, AShortPageAfterALongOneIsShownWholeAgain) {
  LongPageBrowser b(SourceBrowser::kRowsShownWhole + 1);
  ASSERT_EQ(b.browser.rowCount(), SourceBrowser::kRowsShownWhole + 1);
  b.browser.rowScrollBar()->setValue(100);

  WriteFile(b.file, LongPage(SourceBrowser::kRowsShownWhole));
  b.browser.Navigate(b.file);
  QApplication::processEvents();
  EXPECT_EQ(b.browser.rowCount(), 0u);
  EXPECT_FALSE(b.browser.rowScrollBar()->isVisible());
  EXPECT_EQ(RowsLaidOut(b.browser), static_cast<int>(SourceBrowser::kRowsShownWhole));
  EXPECT_TRUE(b.browser.scrollToStatement(1, 2, 300));

  b.browser.showNotice("Nothing to show");
  EXPECT_EQ(b.browser.rowCount(), 0u);
  EXPECT_TRUE(b.browser.pageFile().empty());
}

}  // namespace
}  // namespace zol
