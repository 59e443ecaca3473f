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
  EXPECT_EQ(pane->goButton()->text(), "GO!");
  EXPECT_EQ(pane->reportWhatBox(0)->text(), "Session summary && Top rankings");

  // The export choice brings its own frame of step 4 forward.
  pane->reportTypeButton(true)->click();
  EXPECT_TRUE(pane->options().DoExport);
  EXPECT_EQ(pane->fineTuneFrames()->currentIndex(), 0);
  pane->reportTypeButton(false)->click();
  EXPECT_EQ(pane->fineTuneFrames()->currentIndex(), 1);

  w.window->selectScopeTab(Tab::Procedures);
  EXPECT_FALSE(pane->isVisible());
  w.window->selectScopeTab(Tab::Reports);
  EXPECT_TRUE(pane->isVisible());
  EXPECT_EQ(tabs->currentIndex(), tabs->count() - 1);
}

TEST(ReportPane, ChoicesAreKeptAndSavedWithTheWindow) {
  DemoWindow w({"Monday.pfl"}, "S1");
  ReportPane* pane = ShowReports(w);
  pane->dataButton(kDataChildren)->click();
  pane->topItemsBox()->setValue(7);
  pane->columnBox(0)->click();
  pane->colorButton(1)->click();
  pane->targetButton(ReportTarget::TempFolder)->click();
  EXPECT_FALSE(pane->options().DataRequested[kDataChildren]);
  EXPECT_EQ(pane->options().TopItems, 7);
  EXPECT_EQ(pane->options().Target, ReportTarget::TempFolder);
  EXPECT_FALSE(w.ws->view.OptionsHtml[kReportPageOptions].Column[0]);
  EXPECT_EQ(w.ws->view.OptionsHtml[kReportPageOptions].ColorScheme, 1);

  w.window->saveOptions();
  Workspace other;
  const ReportOptions saved = LoadReportOptions(other, GetIniFile(w.ws->appFolder));
  EXPECT_EQ(saved, pane->options());
  EXPECT_EQ(other.view.OptionsHtml[kReportPageOptions].ColorScheme, 1);
}

TEST(ReportPane, GoWritesTheReportAndOpensIt) {
  DemoWindow w({"Monday.pfl"}, "S1");
  ReportPane* pane = ShowReports(w);
  std::vector<std::string> opened;
  pane->openFile = [&](const std::string& file) { opened.push_back(file); };
  const std::string folder = w.demo.File("reports");
  pane->targetButton(ReportTarget::UserFolder)->click();
  pane->targetFolderEdit()->setText(QString::fromStdString(folder));
  emit pane->targetFolderEdit()->editingFinished();
  pane->reportWhatBox(1)->click();  // the source pages too
  pane->goButton()->click();
  EXPECT_EQ(opened, std::vector<std::string>{folder + "/Contents.htm"});
  EXPECT_TRUE(FileExist(folder + "/Summary1.htm"));
  EXPECT_TRUE(FileExist(folder + "/SourceTOC1.htm"));
  EXPECT_NE(LoadFile(folder + "/Contents.htm").find("<B>Monday</B>"), std::string::npos);

  opened.clear();
  pane->reportTypeButton(true)->click();
  pane->separateFilesBox()->click();
  pane->openReportBox()->click();  // no opening this time
  pane->goButton()->click();
  EXPECT_TRUE(opened.empty());
  EXPECT_TRUE(FileExist(folder + "/Monday-export-lines.csv"));
}

TEST(ReportPane, ARefusalIsShownAndNothingWritten) {
  DemoWindow w({"Monday.pfl"}, "S1");
  ReportPane* pane = ShowReports(w);
  for (int i = 0; i < 3; ++i) {
    if (pane->dataButton(i)->isChecked()) pane->dataButton(i)->click();
  }
  MessageBoxCatcher catcher;
  const ReportOutcome outcome = pane->generate();
  EXPECT_FALSE(outcome.written);
  EXPECT_EQ(outcome.refusal, "Please select a type of data to report (step 2)");
  testing::WaitFor([&] { return !catcher.texts.empty(); }, 3000);
  ASSERT_FALSE(catcher.texts.empty());
  EXPECT_EQ(catcher.texts[0], "Please select a type of data to report (step 2)");
}

}  // namespace
}  // namespace zol
