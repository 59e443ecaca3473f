// The Reports page in the window: its steps, its choices kept as the user
// makes them, and "GO!" writing a report of the session on display and
// handing what it wrote to the desktop.

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>

#include "base/app_paths.h"
#include "base/files.h"
#include "report/report_options.h"
#include "ui/report_pane.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

using testing::DemoWindow;
using testing::MessageBoxCatcher;

ReportPane* ShowReports(DemoWindow& w) {
  QTabBar* tabs = w.window->pageTabs();
  tabs->setCurrentIndex(tabs->count() - 1);
  QApplication::processEvents();
  return w.window->reportPane();
}

TEST(ReportPane, TheLastTabShowsTheSevenSteps) {
  DemoWindow w({"Monday.pfl"}, "S1");
  QTabBar* tabs = w.window->pageTabs();
  EXPECT_EQ(tabs->tabText(tabs->count() - 1), "Reports");
  ReportPane* pane = ShowReports(w);
  EXPECT_TRUE(pane->isVisible());
  EXPECT_EQ(w.window->selection().tab, Tab::Reports);
  QStringList titles;
  for (QGroupBox* box : pane->findChildren<QGroupBox*>()) titles << box->title();
  EXPECT_EQ(
      titles,
      (QStringList{"Step 1: Select sessions to report", "Step 2: Select the type of data to report",
                   "Step 3: Select Excel export or HTML report", "Step 4: Fine tune report ",
                   "Step 5: Select Target Folder", "Step 6: Miscellaneous", "Step 7: Generate"}));
  EXPECT_EQ(pane->GoButton()->text(), "GO!");
  EXPECT_EQ(pane->ReportWhatBox(0)->text(), "Session summary && Top rankings");

  // The export choice brings its own frame of step 4 forward.
  pane->ReportTypeButton(true)->click();
  EXPECT_TRUE(pane->Options().DoExport);
  EXPECT_EQ(pane->FineTuneFrames()->currentIndex(), 0);
  pane->ReportTypeButton(false)->click();
  EXPECT_EQ(pane->FineTuneFrames()->currentIndex(), 1);

  w.window->SelectScopeTab(Tab::Procedures);
  EXPECT_FALSE(pane->isVisible());
  w.window->SelectScopeTab(Tab::Reports);
  EXPECT_TRUE(pane->isVisible());
  EXPECT_EQ(tabs->currentIndex(), tabs->count() - 1);
}

TEST(ReportPane, ChoicesAreKeptAndSavedWithTheWindow) {
  DemoWindow w({"Monday.pfl"}, "S1");
  ReportPane* pane = ShowReports(w);
  pane->DataButton(kDataChildren)->click();
  pane->TopItemsBox()->setValue(7);
  pane->ColumnBox(0)->click();
  pane->ColorButton(1)->click();
  pane->TargetButton(ReportTarget::TempFolder)->click();
  EXPECT_FALSE(pane->Options().DataRequested[kDataChildren]);
  EXPECT_EQ(pane->Options().TopItems, 7);
  EXPECT_EQ(pane->Options().Target, ReportTarget::TempFolder);
  EXPECT_FALSE(w.ws->view.OptionsHtml[kReportPageOptions].Column[0]);
  EXPECT_EQ(w.ws->view.OptionsHtml[kReportPageOptions].ColorScheme, 1);

  w.window->SaveOptions();
  Workspace other;
  const ReportOptions saved = LoadReportOptions(other, GetIniFile(w.ws->appFolder));
  EXPECT_EQ(saved, pane->Options());
  EXPECT_EQ(other.view.OptionsHtml[kReportPageOptions].ColorScheme, 1);
}

TEST(ReportPane, GoWritesTheReportAndOpensIt) {
  DemoWindow w({"Monday.pfl"}, "S1");
  ReportPane* pane = ShowReports(w);
  std::vector<std::string> opened;
  pane->openFile = [&](const std::string& file) { opened.push_back(file); };
  const std::string folder = w.demo.File("reports");
  pane->TargetButton(ReportTarget::UserFolder)->click();
  pane->TargetFolderEdit()->setText(QString::fromStdString(folder));
  emit pane->TargetFolderEdit()->editingFinished();
  pane->ReportWhatBox(1)->click();  // the source pages too
  pane->GoButton()->click();
  EXPECT_EQ(opened, std::vector<std::string>{folder + "/Contents.htm"});
  EXPECT_TRUE(FileExist(folder + "/Summary1.htm"));
  EXPECT_TRUE(FileExist(folder + "/SourceTOC1.htm"));
  EXPECT_NE(LoadFile(folder + "/Contents.htm").find("<B>Monday</B>"), std::string::npos);

  opened.clear();
  pane->ReportTypeButton(true)->click();
  pane->SeparateFilesBox()->click();
  pane->OpenReportBox()->click();  // no opening this time
  pane->GoButton()->click();
  EXPECT_TRUE(opened.empty());
  EXPECT_TRUE(FileExist(folder + "/Monday-export-lines.csv"));
}

TEST(ReportPane, ARefusalIsShownAndNothingWritten) {
  DemoWindow w({"Monday.pfl"}, "S1");
  ReportPane* pane = ShowReports(w);
  for (int i = 0; i < 3; ++i) {
    if (pane->DataButton(i)->isChecked()) pane->DataButton(i)->click();
  }
  MessageBoxCatcher catcher;
  const ReportOutcome outcome = pane->Generate();
  EXPECT_FALSE(outcome.written);
  EXPECT_EQ(outcome.refusal, "Please select a type of data to report (step 2)");
  testing::WaitFor([&] { return !catcher.texts.empty(); }, 3000);
  ASSERT_FALSE(catcher.texts.empty());
  EXPECT_EQ(catcher.texts[0], "Please select a type of data to report (step 2)");
}

}  // namespace
}  // namespace zol
