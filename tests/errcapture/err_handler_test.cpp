#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include <zip.h>
#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "base/version.h"
#include "errcapture/dump.h"
#include "errcapture/protected_call.h"
#include "errcapture/recording_error_prompter.h"
#include "errcapture/report_files.h"
#include "errcapture/trace.h"
#include "session/workspace.h"

namespace zol {
namespace {

using testing::RecordingErrorPrompter;
using testing::Reply;

// The text of one entry of a zip archive, read back with libzip.
std::string EntryText(const std::string& archive, const std::string& name) {
  int error = 0;
  zip_t* z = zip_open(archive.c_str(), ZIP_RDONLY, &error);
  if (z == nullptr) return "{no archive}";
  std::string text;
  zip_stat_t st;
  if (zip_stat(z, name.c_str(), 0, &st) == 0) {
    if (zip_file_t* f = zip_fopen(z, name.c_str(), 0)) {
      text.resize(st.size);
      zip_fread(f, text.data(), st.size);
      zip_fclose(f);
    }
  }
  zip_close(z);
  return text;
}

class ErrHandlerTest : public ::testing::Test {
 protected:
  void SetUp() override { Start(false); }
  void TearDown() override { zolInitializeProtector(ProtectorSettings{}); }
  void Start(bool callStack) {
    ProtectorSettings s = DefaultProtectorSettings(dir_.path(), "zoltest");
    s.zolCallStack = callStack;
    s.zolLogTraceToFile = callStack;
    zolInitializeProtector(s);
    zolSetDumpFile(s.zolDumpFile);
  }
  ErrorDecision Fail(std::int32_t number, std::int32_t line) {
    return handler_.zolErrHandler(number, "Subscript out of range", "zolmark-profiler",
                                  "MainWindow", "openSessions", line);
  }
  std::string ReportFolder() const { return dir_ / "Error Report Files"; }

  testing::ScopedTempDir dir_;
  RecordingErrorPrompter prompter_;
  ErrHandler handler_{prompter_, dir_.path()};
};

TEST_F(ErrHandlerTest, TheMessageTextAndTheErrorKey) {
  ErrorInfo e{9, "Subscript out of range", "zolmark-profiler", "MainWindow", "openSessions", 120};
  EXPECT_EQ(ErrorMessageText(e),
            "An unexpected error has occurred in this application: \r\n\r\nError 9\r\n"
            "Description: Subscript out of range\r\nProject: zolmark-profiler\r\n"
            "Module: MainWindow\r\nProcedure: openSessions\r\nLine: 120\r\nVersion: " +
                std::to_string(kAppMajor) + "." + std::to_string(kAppMinor) + "." +
                std::to_string(kAppRevision) + "\r\n");
}

TEST_F(ErrHandlerTest, EachAnswerIsTheDecisionAndTimersStayOffOnlyAfterAbort) {
  const std::string key = ErrorKey("MainWindow", 9, 120);
  EXPECT_EQ(key, std::string("\0MainWindow\x01"
                             "9\x01"
                             "120\0",
                             18));

  prompter_.replies = {Reply(ErrorDecision::Retry), Reply(ErrorDecision::Ignore),
                       Reply(ErrorDecision::Abort)};
  EXPECT_EQ(Fail(9, 120), ErrorDecision::Retry);
  EXPECT_TRUE(prompter_.timersRunning);
  EXPECT_EQ(Fail(9, 120), ErrorDecision::Ignore);
  EXPECT_TRUE(prompter_.timersRunning);
  EXPECT_EQ(Fail(9, 120), ErrorDecision::Abort);
  EXPECT_FALSE(prompter_.timersRunning);
  EXPECT_EQ(prompter_.timerStops, 3);
  ASSERT_EQ(prompter_.dialogs.size(), 3u);
  EXPECT_FALSE(prompter_.dialogs[0].hasReported);
  EXPECT_EQ(prompter_.dialogs[0].message, handler_.zolMessageString());
}

TEST_F(ErrHandlerTest, AlwaysIgnoreIsIgnoreAndSilencesThatErrorOnThatLineOnly) {
  prompter_.replies = {Reply(ErrorDecision::AlwaysIgnore), Reply(ErrorDecision::Retry)};
  EXPECT_EQ(Fail(9, 120), ErrorDecision::Ignore);
  EXPECT_EQ(prompter_.timerRestarts, 1);

  EXPECT_EQ(Fail(9, 120), ErrorDecision::Ignore);  // no dialog, no timer change
  EXPECT_EQ(prompter_.dialogs.size(), 1u);
  EXPECT_EQ(prompter_.timerStops, 1);

  EXPECT_EQ(Fail(9, 121), ErrorDecision::Retry);    // another line: another key
  EXPECT_EQ(Fail(11, 120), ErrorDecision::Ignore);  // another number too (default reply)
  EXPECT_EQ(prompter_.dialogs.size(), 3u);
}

TEST_F(ErrHandlerTest, RetryRunsTheOperationAgainAndIgnoreGivesItUp) {
  int runs = 0;
  prompter_.replies = {Reply(ErrorDecision::Retry)};
  const CallPlace place{"zolmark-profiler", "MainWindow", "openSessions", 10};
  EXPECT_EQ(RunProtected(handler_, place,
                         [&] {
                           if (++runs == 1) throw std::out_of_range("index 7");
                         }),
            CallOutcome::Done);
  EXPECT_EQ(runs, 2);
  EXPECT_NE(prompter_.dialogs[0].message.find("Error 9\r\nDescription: index 7"),
            std::string::npos);

  prompter_.replies = {Reply(ErrorDecision::Ignore)};
  EXPECT_EQ(RunProtected(handler_, place, [] { throw FileError("Cannot read file", "a.pfd", 5); }),
            CallOutcome::Skipped);
  prompter_.replies = {Reply(ErrorDecision::Abort)};
  EXPECT_EQ(RunProtected(handler_, place, [] { throw std::runtime_error("x"); }),
            CallOutcome::Abort);
}

TEST_F(ErrHandlerTest, AReportDumpsTheStateArchivesTheFilesAndAsksForTheFinalDecision) {
  Start(true);
  const std::string stale = dir_.Put("Error Report Files/old.txt", "from an earlier report");
  Workspace ws;
  ws.nSession = 2;  // more than the table holds: the dump must go on past it
  ws.SessionSlot(1).Name = "Monday";
  const Selection shown{.session = SessionRef::single(1)};
  prompter_.replies = {Reply(ErrorDecision::Report, "Clicked a session"),
                       Reply(ErrorDecision::Ignore)};
  prompter_.answers = {Answer::No, Answer::Yes};  // the mail wasn't sent; copy the instructions
  prompter_.clipboardDrops = 2;

  const CallPlace place{"zolmark-profiler", "MainWindow", "openSessions", 10};
  const CallOutcome outcome =
      RunProtected(handler_, place,
                   [] {
                     ZOL_TRACE("MainWindow.openSessions");
                     ZOL_TRACE("Catalogue.LoadSession");
                     throw std::runtime_error("the log ends early");
                   },
                   {[] { zolDumpVariable("file", std::string("Monday.pfl"), 0); },
                    [] { zolDumpVariable("MainWindow.busy", false, 0); },
                    [&] {
                      DumpWorkspace(ws);
                      DumpSelection(shown);
                    }});
  EXPECT_EQ(outcome, CallOutcome::Skipped);

  ASSERT_EQ(prompter_.dialogs.size(), 2u);
  EXPECT_TRUE(prompter_.dialogs[1].hasReported);
  EXPECT_EQ(prompter_.dialogs[1].circumstances, "Clicked a session");
  EXPECT_NE(prompter_.dialogs[0].message.find("Module: Catalogue\r\nProcedure: LoadSession\r\n"),
            std::string::npos);
  EXPECT_TRUE(prompter_.timersRunning);

  // The folder holds the archive alone; the archive holds the files.
  EXPECT_FALSE(FileExist(stale));
  const std::string archive = ReportFolder() + "/Error Report Files.zip";
  ASSERT_TRUE(FileExist(archive));
  std::vector<std::string> entries = ZipEntries(archive);
  std::sort(entries.begin(), entries.end());
  EXPECT_EQ(entries, (std::vector<std::string>{"Error.txt", "Stack.txt", "System.txt", "Trace.txt",
                                               "Variables.txt", "Version.txt"}));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(ReportFolder()),
                          std::filesystem::directory_iterator()),
            1);

  EXPECT_EQ(EntryText(archive, "Error.txt"),
            prompter_.dialogs[0].message + "\r\n\r\nCircumstances:\r\nClicked a session");
  EXPECT_EQ(EntryText(archive, "Stack.txt"),
            "Catalogue.LoadSession\r\n\tMainWindow.openSessions\r\n");
  EXPECT_EQ(EntryText(archive, "Trace.txt"),
            "MainWindow.openSessions\r\n\tCatalogue.LoadSession\r\n");
  const std::string variables = EntryText(archive, "Variables.txt");
  for (const std::string& part :
       {std::string(kLocalVariablesBox) +
            "\r\n**** ErrObject Err ****\r\nErr.Number = 5 (Long)\r\n",
        std::string("file = Monday.pfl (String)\r\n"),
        std::string(kModuleVariablesBox) + "\r\nMainWindow.busy = False (Boolean)\r\n",
        std::string(kGlobalVariablesBox) + "\r\nWorkspace.appFolder = ",
        std::string("Selection.session.sessionIndex = 1 (Long)\r\n"),
        std::string("Array Workspace.Session(0 To 1) As (User Defined Type Array)\r\n"),
        std::string("\tWorkspace.Session(1).Name = Monday (String)\r\n"),
        std::string("\tWorkspace.Session(1).ProcedureValue(Undimensioned Array)\r\n"),
        std::string("\tWorkspace.Session(2) = {Variable Dumping Error}\r\nArray "
                    "Workspace.CompareSession")}) {
    EXPECT_NE(variables.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(variables.find("CodeLineValue"), std::string::npos);
  EXPECT_NE(EntryText(archive, "System.txt").find("Screen: test 800x600\r\n"), std::string::npos);
  EXPECT_NE(EntryText(archive, "System.txt").find("Kernel: Linux "), std::string::npos);

  // The mail, then the manual way with the clipboard, which took the third try.
  ASSERT_EQ(prompter_.mails.size(), 1u);
  EXPECT_EQ(
      prompter_.mails[0].rfind("mailto:support@zolmark.com?subject=Error%20report%20for%20", 0),
      0u);
  ASSERT_EQ(prompter_.questions.size(), 2u);
  EXPECT_EQ(
      prompter_.questions[1].rfind("Impossible to send the error report automatically !\r\n\r\n"
                                   "Please open your email messenger and send a message with "
                                   "the following parameters:\r\nAddress: support@zolmark.com\r\n",
                                   0),
      0u);
  EXPECT_EQ(prompter_.clipboardSets, 3);
  EXPECT_NE(prompter_.clipboard.find("Attached file: " + ReportFolder() +
                                     "/Error Report Files.zip (Size: "),
            std::string::npos);
}

}  // namespace
}  // namespace zol
