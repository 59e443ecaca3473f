#include <gtest/gtest.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <algorithm>
#include <stdexcept>

#include "base/files.h"
#include "errcapture/report_files.h"
#include "errcapture/trace.h"
#include "ui/error_dialog.h"
#include "ui/gui_error_capture.h"
#include "ui_test_support.h"

namespace zol {
namespace {

ErrorDialogState FirstShowing() {
  return {"An unexpected error has occurred in this application: \r\n\r\nError 9\r\n", false, ""};
}

TEST(ErrorDialog, FirstShowingAsksForAReportAndStaysOnTop) {
  ErrorDialog dialog(FirstShowing(), "/tmp");
  EXPECT_EQ(dialog.objectName(), "zolFrmErrHandler");
  EXPECT_TRUE(dialog.windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(dialog.errorText()->text(),
            "An unexpected error has occurred in this application: \n\nError 9\n");
  EXPECT_EQ(dialog.reportText()->text().toStdString(), kErrorDialogReportText);
  EXPECT_EQ(dialog.describe()->toPlainText(),
            "< Please describe here what you were doing exactly when this error occurred >\n");
  EXPECT_EQ(dialog.button(ErrorDecision::Abort)->text(), "&Abort");
  EXPECT_EQ(dialog.button(ErrorDecision::Retry)->text(), "&Retry");
  EXPECT_EQ(dialog.button(ErrorDecision::Ignore)->text(), "&Ignore");
  EXPECT_EQ(dialog.button(ErrorDecision::AlwaysIgnore)->text(), "Always i&gnore this error");
  EXPECT_EQ(dialog.reportButton()->text(), "Report &Error");
  EXPECT_EQ(dialog.lookButton()->text(), "Look at report");
  EXPECT_TRUE(dialog.reportButton()->isEnabled());

  dialog.describe()->setPlainText("Opened a session");
  dialog.reportButton()->click();
  EXPECT_EQ(dialog.reply().decision, ErrorDecision::Report);
  EXPECT_EQ(dialog.reply().circumstances, "Opened a session");
}

TEST(ErrorDialog, SecondShowingThanksAndOffersNoSecondReport) {
  ErrorDialog dialog({"Error 9", true, "Opened a session"}, "/tmp");
  EXPECT_EQ(dialog.reportText()->text(),
            "Thanks for having reported this error !\nPlease select a continuation below...");
  EXPECT_EQ(dialog.describe()->toPlainText(), "Opened a session");
  EXPECT_FALSE(dialog.reportButton()->isEnabled());
  EXPECT_TRUE(dialog.lookButton()->isEnabled());
  dialog.button(ErrorDecision::AlwaysIgnore)->click();
  EXPECT_EQ(dialog.reply().decision, ErrorDecision::AlwaysIgnore);
}

// Answers the error dialogs as they come: the first with a report, the
// second with `last`; message boxes with Yes. Keeps whether the window's
// timer ran behind each dialog.
class DialogDriver {
 public:
  DialogDriver(QTimer& watched, ErrorDecision first, ErrorDecision last) {
    timer_.setInterval(10);
    QObject::connect(&timer_, &QTimer::timeout, [this, &watched, first, last] {
      QWidget* modal = QApplication::activeModalWidget();
      if (auto* dialog = qobject_cast<ErrorDialog*>(modal)) {
        timerRanBehind.push_back(watched.isActive());
        if (dialog->reportButton()->isEnabled() && first == ErrorDecision::Report) {
          dialog->describe()->setPlainText("Loaded a damaged log");
        }
        dialog->button(dialog->reportButton()->isEnabled() ? first : last)->click();
      } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        boxes.push_back(box->text().toStdString());
        QAbstractButton* b = box->button(QMessageBox::Yes);
        (b ? b : box->buttons().value(0))->click();
      }
    });
    timer_.start();
  }
  std::vector<bool> timerRanBehind;
  std::vector<std::string> boxes;

 private:
  QTimer timer_;
};

class GuiErrorCaptureTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ProtectorSettings s = DefaultProtectorSettings(dir_.path(), "zoltest");
    s.zolCallStack = true;
    s.zolScreenshot = true;
    s.zolLogTraceToFile = true;
    zolInitializeProtector(s);
    ws_.appFolder = dir_.path();
    window_.setObjectName("frmTest");
    window_.resize(200, 100);
    ticker_ = new QTimer(&window_);
    ticker_->start(1000);
    window_.show();
    QApplication::setActiveWindow(&window_);
  }
  void TearDown() override { zolInitializeProtector(ProtectorSettings{}); }

  testing::ScopedTempDir dir_;
  Workspace ws_;
  GuiErrorCapture capture_{ws_, dir_.path(), "zolmark-profiler"};
  QWidget window_;
  QTimer* ticker_ = nullptr;
};

TEST_F(GuiErrorCaptureTest, RetryRunsTheEntryPointAgainWithTheTimersStoppedBehindTheDialog) {
  DialogDriver driver(*ticker_, ErrorDecision::Retry, ErrorDecision::Retry);
  int runs = 0;
  runGuarded(&window_, [&] {
    if (++runs == 1) throw std::out_of_range("row 12");
  });
  EXPECT_EQ(runs, 2);
  EXPECT_EQ(driver.timerRanBehind, std::vector<bool>{false});
  EXPECT_TRUE(ticker_->isActive());
}

TEST_F(GuiErrorCaptureTest, AFaultInAnEntryPointGivesTheReportFolderAndItsArchive) {
  DialogDriver driver(*ticker_, ErrorDecision::Report, ErrorDecision::Ignore);
  bool after = false;
  runGuarded(&window_, [&] {
    ZOL_TRACE("Catalogue.LoadSession");
    throw std::runtime_error("the log ends early");
    after = true;
  });
  EXPECT_FALSE(after);
  EXPECT_EQ(driver.timerRanBehind, (std::vector<bool>{false, false}));
  EXPECT_TRUE(ticker_->isActive());
  ASSERT_FALSE(driver.boxes.empty());
  EXPECT_EQ(driver.boxes[0].rfind("This application will now retrieve some data needed to fix this "
                                  "error, open your email messenger and prepare a message to send. "
                                  "Then please press the \"Send Message\" button.\n",
                                  0),
            0u);

  const std::string archive = dir_ / "Error Report Files/Error Report Files.zip";
  ASSERT_TRUE(FileExist(archive));
  std::vector<std::string> entries = ZipEntries(archive);
  std::sort(entries.begin(), entries.end());
  EXPECT_EQ(entries,
            (std::vector<std::string>{"Error.txt", "Screenshot.bmp", "Stack.txt", "System.txt",
                                      "Trace.txt", "Variables.txt", "Version.txt"}));
  EXPECT_FALSE(FileExist(dir_ / "Error Report Files/Error.txt"));
}

}  // namespace
}  // namespace zol
