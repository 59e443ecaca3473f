// More of the window's behaviour: files dropped on it, files left by another
// start, the measure buttons, the chart's option strip and the grids' sort.

#include <gtest/gtest.h>

#include <QActionGroup>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QMimeData>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabBar>
#include <QUrl>

#include "base/app_paths.h"
#include "base/ini_file.h"
#include "base/text.h"
#include "grid/chart.h"
#include "ui/chart_pane.h"
#include "ui/grid_page.h"
#include "ui/grid_view.h"
#include "ui/main_toolbar.h"
#include "ui/qt_text.h"
#include "ui/session_list_model.h"
#include "ui/session_list_view.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

using testing::DemoWindow;
using testing::MessageBoxCatcher;
using testing::WaitFor;

TEST(WindowActions, DroppedFilesEnterTheListUnticked) {
  DemoWindow w({});
  auto* mime = new QMimeData();
  mime->setUrls({QUrl::fromLocalFile(QPath(w.demo.File("Monday.pfl"))),
                 QUrl::fromLocalFile(QPath(w.demo.File("Friday.pfl")))});
  // A drop comes after the drag has entered the window and been accepted.
  QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, mime, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(w.window.get(), &enter);
  ASSERT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(100, 100), Qt::CopyAction, mime, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(w.window.get(), &drop);
  const auto& rows = w.window->sessionList()->typedModel()->rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_FALSE(rows[0].Checked);
  // Entering reads headers only: the logs are still there.
  EXPECT_TRUE(QFileInfo::exists(QPath(w.demo.File("Monday.pfl"))));
  delete mime;
}

TEST(WindowActions, FilesLeftInTheSettingsAreTakenUpAndTicked) {
  DemoWindow w({});
  const std::string ini = GetIniFile(w.ws->appFolder);
  VBWritePrivateProfileString("Profiler", "Session0", w.demo.File("Tuesday.pfl"), ini);
  SessionListModel* model = w.window->sessionList()->typedModel();
  ASSERT_TRUE(WaitFor([&] { return model->rowCount() == 1; }));
  EXPECT_TRUE(model->rows()[0].Checked);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Session0", "?", ini), "");
  EXPECT_NE(w.window->tree().Nodes().Find("S1"), nullptr);
}

TEST(WindowActions, TheMeasureButtonsAreOneChoiceAndRedrawTheView) {
  DemoWindow w({"Monday.pfl"}, "S1");
  w.window->selectScopeTab(Tab::Procedures);
  MainToolbar* bar = w.window->toolbar();
  EXPECT_TRUE(bar->button("TOTALTIME")->isChecked());
  EXPECT_EQ(bar->button("COVERAGE")->toolTip(), "Display coverage values");
  bar->button("COVERAGE")->trigger();
  EXPECT_EQ(w.window->selection().measure, Measure::Coverage);
  EXPECT_TRUE(bar->button("COVERAGE")->isChecked());
  EXPECT_FALSE(bar->button("TOTALTIME")->isChecked());
  EXPECT_EQ(w.window->lastDisplay(), "S1-3-1");
  const Table& grid = w.window->gridPage()->grid()->table();
  EXPECT_EQ(grid.FindColumn("Total Time"), 0);
  // Back to the total times, through the history.
  w.window->toolbar()->button("BACK")->trigger();
  EXPECT_EQ(w.window->selection().measure, Measure::Total);
  EXPECT_TRUE(bar->button("TOTALTIME")->isChecked());
}

TEST(WindowActions, TheChartOptionsAreKeptAndRedrawTheChart) {
  DemoWindow w({"Monday.pfl"}, "S1");
  w.window->selectScopeTab(Tab::Procedures);
  GridPage* page = w.window->gridPage();
  EXPECT_EQ(page->chart()->shown().ChartType, kChartTypeBar2d);
  page->findChild<QRadioButton*>("chartType2")->click();
  EXPECT_EQ(page->chart()->shown().ChartType, kChartTypePie2d);
  page->findChild<QSpinBox*>("chartMaxItems")->setValue(5);
  // Five slices and the rest summed as "{Other}".
  ASSERT_EQ(page->chart()->shown().Items.size(), 6u);
  EXPECT_EQ(page->chart()->shown().Items.back().Name, "{Other}");
  page->findChild<QRadioButton*>("chartType0")->click();
  EXPECT_FALSE(page->chart()->isVisibleTo(page));
  const std::string ini = GetIniFile(w.ws->appFolder);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "GraphType", "", ini), "0");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "GraphMaxItems", "", ini), "5");
}

TEST(WindowActions, AHeaderClickSortsAndASecondReverses) {
  DemoWindow w({"Monday.pfl"}, "S1");
  w.window->selectScopeTab(Tab::Procedures);
  GridView* grid = w.window->gridPage()->grid();
  const int hits = grid->table().FindColumn("Hits");
  ASSERT_GT(hits, 0);
  auto column = [&] {
    std::vector<double> values;
    const Table& t = grid->table();
    for (int r = 1; r <= t.RowCount(); ++r) {
      const std::string& text = t.RowAt(r).Text(hits);
      if (t.RowAt(r).Key.empty() && !Trim(text).empty()) values.push_back(std::stod(text));
    }
    return values;
  };
  emit grid->horizontalHeader()->sectionClicked(hits - 1);
  const std::vector<double> first = column();
  ASSERT_GT(first.size(), 2u);
  emit grid->horizontalHeader()->sectionClicked(hits - 1);
  std::vector<double> second = column();
  std::reverse(second.begin(), second.end());
  EXPECT_EQ(first, second);
  EXPECT_TRUE(std::is_sorted(first.begin(), first.end()) ||
              std::is_sorted(first.rbegin(), first.rend()));
  // The total row stays last in both orders.
  EXPECT_EQ(grid->table().Rows().back().Key, "TOTAL");
}

TEST(WindowActions, AppliedFiltersRedrawTheViewWithTheNewTimes) {
  DemoWindow w({"Monday.pfl"}, "S1M5P21");
  w.window->selectScopeTab(Tab::Lines);
  GridView* grid = w.window->gridPage()->grid();
  auto timeOf = [&](const std::string& line) {
    const Table& t = grid->table();
    const int text = t.FindColumn("Line");
    const int time = t.FindColumn("Total Time");
    for (int r = 1; r <= t.RowCount(); ++r) {
      if (t.RowAt(r).Text(text) == line) return std::stod(t.RowAt(r).Text(time));
    }
    return -1.0;
  };
  const double before = timeOf("mLines.Add item");
  ASSERT_GT(before, 0.01);
  w.ws->view.Filters = "mLines.Add";
  MessageBoxCatcher yes(QMessageBox::Yes);
  w.window->toolbar()->button("FILTERS")->trigger();
  ASSERT_FALSE(yes.texts.empty());
  EXPECT_EQ(yes.titles[0], "Apply Filters ?");
  // The same page, drawn anew from the filtered values.
  EXPECT_EQ(w.window->pageTabs()->currentIndex() + 1, 4);
  EXPECT_EQ(w.window->tree().Nodes().SelectedKey(), "S1M5P21");
  const double after = timeOf("mLines.Add item");
  EXPECT_GE(after, 0.0);
  EXPECT_LT(after, before / 100);
}

}  // namespace
}  // namespace zol
