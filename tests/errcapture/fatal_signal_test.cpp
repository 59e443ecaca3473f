#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "errcapture/dump.h"
#include "errcapture/fatal_signal.h"
#include "errcapture/recording_error_prompter.h"
#include "errcapture/report_files.h"
#include "errcapture/trace.h"

namespace zol {
namespace {

using testing::RecordingErrorPrompter;
using testing::Reply;

TEST(FatalSignal, SignalsMapToTheFaultTexts) {
  auto text = [](int sig, int code) {
    return std::string(ExceptionDescription(ExceptionCodeOfSignal(sig, code)));
  };
  EXPECT_EQ(text(SIGSEGV, SEGV_MAPERR), "Exception: Access Violation");
  EXPECT_EQ(text(SIGBUS, BUS_ADRALN), "Exception: Datatype Misalignment");
  EXPECT_EQ(text(SIGBUS, BUS_OBJERR), "Exception: In Page Error");
  EXPECT_EQ(text(SIGFPE, FPE_INTDIV), "Exception: Integer Divide By Zero");
  EXPECT_EQ(text(SIGFPE, FPE_FLTDIV), "Exception: Float Divide By Zero");
  EXPECT_EQ(text(SIGFPE, FPE_FLTUND), "Exception: Float Underflow");
  EXPECT_EQ(text(SIGILL, ILL_ILLOPC), "Exception: Illegal Instruction");
  EXPECT_EQ(text(SIGILL, ILL_PRVOPC), "Exception: Priv Instruction");
  EXPECT_EQ(text(SIGABRT, 0), "Unknown Exception");
  EXPECT_STREQ(ExceptionDescription(0), "Unknown Exception");
  EXPECT_STREQ(ExceptionDescription(0xC00000FD), "Exception: Stack Overflow");
}

// Dereferences a null pointer that the compiler can't see is null, and that
// the sanitizers let through: the fault itself is what is tested.
__attribute__((no_sanitize_address, no_sanitize_undefined, noinline)) void WriteThroughNull() {
  volatile int* volatile p = nullptr;
  *p = 1;
}

TEST(FatalSignal, ACrashLeavesARecordThatTheNextStartReports) {
  testing::ScopedTempDir dir;
  const std::string crashFile = CrashFileIn(dir.path(), "zoltest");
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ProtectorSettings s = DefaultProtectorSettings(dir.path(), "zoltest");
    s.zolCallStack = true;
    zolInitializeProtector(s, crashFile);
    ZOL_TRACE("MainWindow.showCurrentPage");
    ZOL_TRACE("FlowChart.Layout");
    WriteThroughNull();
    ::_exit(0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status)) << "exit status " << status;
  EXPECT_EQ(WTERMSIG(status), SIGSEGV);

  const std::optional<CrashRecord> crash = TakeCrashRecord(crashFile);
  ASSERT_TRUE(crash.has_value());
  EXPECT_FALSE(FileExist(crashFile));
  EXPECT_EQ(crash->description, "Exception: Access Violation");
  EXPECT_EQ(crash->signal, SIGSEGV);
  EXPECT_EQ(crash->procedure, "FlowChart.Layout");
  EXPECT_EQ(crash->stack, "FlowChart.Layout\r\n\tMainWindow.showCurrentPage\r\n");
  EXPECT_FALSE(TakeCrashRecord(crashFile).has_value());

  // The next start: the dialog with the fault, then a report of it.
  ProtectorSettings s = DefaultProtectorSettings(dir.path(), "zoltest");
  zolInitializeProtector(s);
  zolSetDumpFile(s.zolDumpFile);
  RecordingErrorPrompter prompter;
  prompter.replies = {Reply(ErrorDecision::Report, "Opened the flow tab"),
                      Reply(ErrorDecision::Ignore)};
  ErrHandler handler(prompter, dir.path());
  EXPECT_EQ(handler.OfferCrashReport(*crash, "zolmark-profiler"), ErrorDecision::Ignore);
  EXPECT_NE(
      prompter.dialogs[0].message.find("Error 65535\r\nDescription: Exception: Access Violation\r\n"
                                       "Project: zolmark-profiler\r\nModule: FlowChart\r\n"
                                       "Procedure: Layout\r\n"),
      std::string::npos);
  std::vector<std::string> entries = ZipEntries(handler.ArchiveFile());
  std::sort(entries.begin(), entries.end());
  EXPECT_EQ(entries, (std::vector<std::string>{"Error.txt", "Stack.txt", "System.txt",
                                               "Variables.txt", "Version.txt"}));
  zolInitializeProtector(ProtectorSettings{});
}

TEST(FatalSignal, ADamagedRecordIsStillOffered) {
  testing::ScopedTempDir dir;
  const std::string file = dir.Put("zolx.crash", "garbage");
  const std::optional<CrashRecord> crash = TakeCrashRecord(file);
  ASSERT_TRUE(crash.has_value());
  EXPECT_EQ(crash->description, "Unknown Exception");
  EXPECT_EQ(crash->stack, "garbage");
}

}  // namespace
}  // namespace zol
