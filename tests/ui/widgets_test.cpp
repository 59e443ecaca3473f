// The window's parts on their own: the grid's model and view, the tree's
// model while the tree changes, the header of headers, the title strip, the
// prompter's dialogs and progress, the icons and the wrapping strips.

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QToolButton>
#include <utility>

#include "catalogue/project_tree.h"
#include "catalogue/session_catalogue.h"
#include "grid/grid_sort.h"
#include "grid/table.h"
#include "ui/flow_layout.h"
#include "ui/grid_table_model.h"
#include "ui/gui_prompter.h"
#include "ui/icons.h"
#include "ui/project_tree_model.h"
#include "ui/session_header_bar.h"
#include "ui/status_area.h"
#include "ui/title_strip_widget.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

using testing::MessageBoxCatcher;
using testing::WaitFor;

Table SmallTable() {
  Table t;
  t.AddColumn("Module");
  t.AddColumn("Hits", Alignment::Right);
  t.AddColumn("-\x9B Bars ");
  RowRef row = t.AddRow("", "CInvoice", "2TYPE");
  row.SetText(2, "319");
  row.SetColor(2, kColorDarkBlue);
  row.SetText(3, "llll");
  row.SetBold(3, true);
  RowRef total = t.AddRow(std::string(kTotalKey), "TOTAL", "SESSION");
  total.SetRowBold(true);
  total.SetText(2, "1453");
  return t;
}

TEST(GridTableModel, ShowsTextsColoursBoldAndIconsOfTheTable) {
  GridTableModel model;
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.setTable(SmallTable());
  ASSERT_EQ(model.rowCount(), 2);
  ASSERT_EQ(model.columnCount(), 3);
  EXPECT_EQ(model.headerData(2, Qt::Horizontal, Qt::DisplayRole).toString(),
            QString::fromUtf8("-\u203a Bars "));
  EXPECT_EQ(model.barsColumn(), 3);
  EXPECT_EQ(model.data(model.index(0, 1), Qt::DisplayRole).toString(), "319");
  EXPECT_EQ(model.data(model.index(0, 1), Qt::ForegroundRole).value<QColor>(),
            QColor(0x00, 0x00, 0xA5));
  // The standard colour is the theme's text colour.
  EXPECT_FALSE(model.data(model.index(0, 0), Qt::ForegroundRole).isValid());
  EXPECT_TRUE(model.data(model.index(1, 0), Qt::FontRole).value<QFont>().bold());
  EXPECT_TRUE(model.data(model.index(0, 2), Qt::FontRole).value<QFont>().bold());
  EXPECT_EQ(model.data(model.index(0, 1), Qt::TextAlignmentRole).value<Qt::Alignment>() &
                Qt::AlignHorizontal_Mask,
            Qt::AlignRight);
  EXPECT_FALSE(model.data(model.index(0, 0), Qt::DecorationRole).value<QIcon>().isNull());
  EXPECT_FALSE(model.data(model.index(0, 1), Qt::DecorationRole).isValid());
  // A new build replaces the old one whole.
  model.setTable(Table{});
  EXPECT_EQ(model.rowCount(), 0);
}

TEST(GridTableModel, AHugeTableCostsOnlyItsVisibleRows) {
  Table t;
  t.AddColumn("Line");
  t.AddColumn("Hits", Alignment::Right);
  for (int i = 0; i < 200000; ++i) t.AddRow("", "line " + std::to_string(i)).SetText(2, "1");
  QTableView view;
  GridTableModel model;
  view.setModel(&model);
  view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view.resize(400, 300);
  view.show();
  model.setTable(std::move(t));
  QApplication::processEvents();
  EXPECT_EQ(model.rowCount(), 200000);
  view.scrollToBottom();
  QApplication::processEvents();
  EXPECT_EQ(view.rowAt(view.viewport()->height() - 2) >= 199990, true);
}

TEST(GridTableModel, CellsOfNumbersShowTheirTextsThroughSortsAndSearches) {
  Table t;
  t.AddColumn("Procedure");
  t.AddColumn("Hits", Alignment::Right);
  t.AddColumn("Total Time", Alignment::Right);
  t.AddColumn("% Time", Alignment::Right);
  t.AddColumn("-\x9B Bars ");
  for (int i = 0; i < 300; ++i) {
    RowRef row = t.AddRow("", "Proc" + std::to_string(i % 17));
    row.SetCount(2, i);
    row.SetTime(3, i * 0.0012345);
    row.SetPercent(4, i / 299.0);
    row.SetBar(5, i % 21);
  }
  GridTableModel model;
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.setTable(std::move(t));
  const auto text = [&](int row, int column) {
    return model.data(model.index(row, column), Qt::DisplayRole).toString();
  };
  EXPECT_EQ(text(1, 1), "1");
  EXPECT_EQ(text(1, 2), "0.001235");  // half up at the sixth decimal, as the cell shows it
  EXPECT_EQ(text(299, 3), "100%");
  EXPECT_EQ(text(20, 4), "llllllllllllllllllll");
  EXPECT_EQ(text(0, 4), "");
  // A sort moves the rows' order only; the model follows it.
  SortMemory memory;
  SortTable(model.mutableTable(), memory, 3, kSortDescending);
  model.rowsReordered();
  EXPECT_EQ(text(0, 2), "0.369116");
  EXPECT_EQ(text(0, 0), "Proc10");
  // A search shows some rows; the texts stay those of their cells.
  model.showRows({3, 1, 2});
  ASSERT_EQ(model.rowCount(), 3);
  EXPECT_EQ(text(2, 1), "297");
  model.showAllRows();
  EXPECT_EQ(model.rowCount(), 300);
}

TEST(ProjectTreeModel, FollowsTheTreeAndNeverPointsIntoAGoneBranch) {
  testing::DemoCopy demo;
  auto ws = testing::DemoWorkspace(demo);
  const std::int32_t cs = AddSession(*ws, demo.File("Monday.pfl"));
  ASSERT_TRUE(LoadSession(*ws, cs));
  ProjectTree tree(*ws);
  ProjectTreeModel model(tree);
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_FALSE(model.sync());
  tree.SelectSession(cs, "", true);
  EXPECT_TRUE(model.sync());
  const QModelIndex procedure = model.indexOfKey("S1M5P21");
  ASSERT_TRUE(procedure.isValid());
  EXPECT_EQ(model.keyOf(procedure.parent()), "S1M5");
  EXPECT_EQ(model.keyOf(procedure.parent().parent()), "S1");
  EXPECT_TRUE(model.data(procedure, Qt::DisplayRole).toString().startsWith("AddLine ("));
  EXPECT_TRUE(model.data(model.indexOfKey("S1"), Qt::FontRole).value<QFont>().bold());
  // A module with a critical procedure is written in red.
  EXPECT_EQ(model.data(model.indexOfKey("S1M3"), Qt::ForegroundRole).value<QColor>(),
            QColor(255, 0, 0));
  // New colours need no new structure.
  tree.UpdateColors(Measure::Coverage);
  EXPECT_FALSE(model.sync());
  // The branch goes before the model hears of it: its nodes draw empty.
  tree.UnSelectSession(cs);
  EXPECT_FALSE(model.data(procedure, Qt::DisplayRole).isValid());
  EXPECT_TRUE(model.sync());
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_FALSE(model.indexOfKey("S1M5P21").isValid());
}

TEST(SessionHeaderBar, SpansEachRunAndSharesADraggedWidth) {
  QStandardItemModel data(3, 7);
  QTableView grid;
  grid.setModel(&data);
  SessionHeaderBar bar(&grid);
  for (int c = 0; c < 7; ++c) grid.horizontalHeader()->resizeSection(c, 50 + c);
  bar.prepareFakeHeaders(FakeHeaders{{"Monday", "Tuesday", "Friday"}, 1, 2, {}});
  ASSERT_EQ(bar.count(), 4);
  EXPECT_EQ(bar.sectionSize(0), 50);
  EXPECT_EQ(bar.sectionSize(1), 51 + 52);
  EXPECT_EQ(bar.sectionSize(3), 55 + 56);
  // An odd width: the last column of the run takes what the others leave.
  bar.resizeSection(2, 151);
  EXPECT_EQ(grid.horizontalHeader()->sectionSize(3), 76);
  EXPECT_EQ(grid.horizontalHeader()->sectionSize(4), 75);
  EXPECT_EQ(bar.sectionSize(2), 151);
  bar.release();
  EXPECT_TRUE(bar.isHidden());
  // Without sessions nothing follows the grid any more.
  grid.horizontalHeader()->resizeSection(1, 80);
  EXPECT_EQ(bar.sectionSize(1), 51 + 52);
}

TEST(TitleStrip, ShowsWhatIsSelectedAndTheMeasureOfTheColours) {
  TitleStripWidget strip;
  TitleStrip t;
  t.Session = {true, "Monday", "SESSION"};
  t.Module = {true, "CInvoice", "TYPE2"};
  strip.showStrip(t);
  EXPECT_EQ(strip.texts()[0], "");
  EXPECT_EQ(strip.texts()[1], "Monday");
  EXPECT_EQ(strip.texts()[2], "CInvoice");
  EXPECT_EQ(strip.texts()[3], "");
  strip.Clear();
  EXPECT_EQ(strip.texts()[1], "");
  const char* expected[] = {"total time)", "average time)", "total children time)",
                            "avg. children time)", "hits)"};
  for (int m = 0; m < 5; ++m) {
    EXPECT_EQ(analysisText(m), QString("Color scheme:\n(based on ") + expected[m]);
  }
}

TEST(GuiPrompter, AsksWithTheCoresWordsAndKeepsTheBoxTicked) {
  bool abort = false;
  StatusArea status;
  GuiPrompter prompter(nullptr, &status, &abort);
  {
    MessageBoxCatcher no(QMessageBox::No);
    EXPECT_EQ(prompter.Ask("Would you like to delete the session file ?"), Answer::No);
    ASSERT_EQ(no.texts.size(), 1u);
    EXPECT_EQ(no.texts[0], "Would you like to delete the session file ?");
    EXPECT_EQ(no.titles[0], kMessageTitle);
  }
  {
    MessageBoxCatcher cancel(QMessageBox::Cancel);
    EXPECT_EQ(prompter.Ask("Go on ?", true), Answer::Cancel);
  }
  {
    // Tick the box, then answer Yes.
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [] {
      if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        box->checkBox()->setChecked(true);
        box->button(QMessageBox::Yes)->click();
      }
    });
    tick.start(10);
    const DontShowReply reply = prompter.AskDontShowAgain("Apply Filters ?", "Apply them ?");
    EXPECT_EQ(reply.answer, Answer::Yes);
    EXPECT_TRUE(reply.dontShowAgain);
  }
}

TEST(GuiPrompter, TheProgressAreaMovesAndTheStopButtonAsksToStop) {
  bool abort = false;
  StatusArea status;
  status.show();
  GuiPrompter prompter(nullptr, &status, &abort);
  prompter.SetProgressText("Building Tree view...");
  prompter.SetProgressMax(200);
  prompter.ShowProgress(true);
  prompter.SetProgressValue(150);
  EXPECT_EQ(status.progressLabel()->text(), "Building Tree view...");
  EXPECT_EQ(status.progressBar()->value(), 150);
  EXPECT_TRUE(status.progressBar()->isVisible());
  // A value beyond the maximum stays at the end of the bar.
  prompter.SetProgressValue(500);
  EXPECT_EQ(status.progressBar()->value(), 200);
  QObject::connect(&status, &StatusArea::cancelRequested, [&] { prompter.requestAbort(); });
  status.cancelButton()->click();
  EXPECT_TRUE(abort);
  prompter.ShowProgress(false);
  EXPECT_FALSE(status.progressBar()->isVisible());
}

TEST(Icons, EveryKeyOfTheTreeAndTheToolbarHasADrawing) {
  for (const char* key :
       {"SESSION",    "GROUP", "MERGE",     "COMPARE",     "TYPE1",          "TYPE2",
        "TYPE5",      "TYPE7", "TYPE8",     "TYPE9",       "TYPE11",         "PROC1",
        "PROC2",      "PROC3", "GRAPHMORE", "OPEN",        "CONSOLE",        "ADDSESSION",
        "SAVEMERGED", "CLEAR", "TOTALTIME", "AVERAGETIME", "CHILDTOTALTIME", "CHILDAVERAGETIME",
        "COVERAGE",   "BACK",  "FWD",       "FILTERS",     "OPTIONS",        "ABOUT",
        "HELP"}) {
    EXPECT_TRUE(hasZolIcon(key)) << key;
    const QImage image = zolIcon(key).pixmap(16, 16).toImage();
    ASSERT_EQ(image.size(), QSize(16, 16)) << key;
    int painted = 0;
    for (int y = 0; y < 16; ++y) {
      for (int x = 0; x < 16; ++x) painted += qAlpha(image.pixel(x, y)) > 0;
    }
    EXPECT_GT(painted, 20) << key;
  }
  // The grids name module icons the other way round; unknown kinds get the
  // plain drawing of their family; other keys get nothing.
  EXPECT_EQ(zolIcon("5TYPE").pixmap(16, 16).toImage(), zolIcon("TYPE5").pixmap(16, 16).toImage());
  EXPECT_FALSE(zolIcon("PROC7").isNull());
  EXPECT_TRUE(zolIcon("NOSUCHKEY").isNull());
}

TEST(FlowLayout, WrapsOntoAnotherRowWhenTheWidthRunsOut) {
  QWidget strip;
  auto* layout = new FlowLayout(&strip);
  std::vector<QPushButton*> buttons;
  for (int i = 0; i < 6; ++i) {
    buttons.push_back(new QPushButton(QString("Option number %1").arg(i), &strip));
    layout->addWidget(buttons.back());
  }
  const int oneRow = layout->heightForWidth(3000);
  const int narrow = layout->heightForWidth(300);
  EXPECT_GT(narrow, oneRow * 2);
  strip.resize(300, narrow);
  layout->setGeometry(QRect(0, 0, 300, narrow));
  EXPECT_GT(buttons.back()->geometry().top(), buttons.front()->geometry().top());
  for (QPushButton* b : buttons) EXPECT_LE(b->geometry().right(), 300) << b->text().toStdString();
}

// Large tables replace each other and are sorted in place: the model shows
// the new table at once and a sort leaves the shown rows consistent.
TEST(GridTableModel, LargeTablesAreReplacedWhileTheOldOneIsFreedAside) {
  auto big = [](int rows, const std::string& prefix) {
    Table t;
    t.AddColumn("Module");
    t.AddColumn("Hits", Alignment::Right);
    for (int r = 1; r <= rows; ++r) {
      RowRef row = t.AddRow("", prefix + std::to_string(r) + " with a name too long to be short");
      row.SetText(2, std::to_string(r % 997));
    }
    return t;
  };
  GridTableModel model;
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.setTable(big(30000, "a"));
  model.setTable(big(25000, "b"));
  ASSERT_EQ(model.rowCount(), 25000);
  EXPECT_TRUE(model.data(model.index(0, 0), Qt::DisplayRole).toString().startsWith("b1 "));
  SortMemory memory;
  SortTable(model.mutableTable(), memory, 2, kSortDescending);
  model.rowsReordered();
  EXPECT_EQ(model.data(model.index(0, 1), Qt::DisplayRole).toString(), "996");
  model.setTable(SmallTable());
  EXPECT_EQ(model.rowCount(), 2);
}

}  // namespace
}  // namespace zol
