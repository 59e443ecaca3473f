#pragma once

// Faults that no error handling sees (an access violation, a division by
// zero in integer code, an illegal instruction, an abort) end the process;
// before that, a signal handler writes the error text and the call stack into
// a crash record, and the next start offers to report that crash.

#include <cstdint>
#include <optional>
#include <string>

namespace zol {

// The error number under which a fatal fault is reported.
inline constexpr std::int32_t kFatalFaultNumber = 0xFFFF;

// The text of a fault code, "Exception: Access Violation" and so on;
// "Unknown Exception" for a code not in the table. Safe in a signal handler.
const char* ExceptionDescription(std::uint32_t code);

// The fault code of a signal and its si_code: SIGSEGV an access violation,
// SIGBUS a misalignment or a page that can't be read, SIGFPE the kind of
// arithmetic fault, SIGILL an illegal or privileged instruction, SIGTRAP a
// breakpoint or a single step. 0 (unknown) for the rest, such as SIGABRT.
std::uint32_t ExceptionCodeOfSignal(int signal, int siCode);

// Installs the handlers of SIGSEGV, SIGBUS, SIGFPE, SIGILL and SIGABRT (on a
// stack of their own, so that a stack overflow is caught too). A fault writes
// `crashFile`, and the process then ends by the same signal.
void InstallFatalSignalHandlers(const std::string& crashFile);

struct CrashRecord {
  std::string description;  // "Exception: Access Violation"
  int signal = 0;
  std::string procedure;  // the innermost traced procedure, "Module.Procedure"
  std::string stack;      // as zolGetStack wrote it
};

// The record that a fault of an earlier run left, which is then removed;
// nothing when there is none. A record that can't be parsed still gives its
// text as the stack, with "Unknown Exception".
std::optional<CrashRecord> TakeCrashRecord(const std::string& crashFile);

// The crash record of the application folder.
std::string CrashFileIn(const std::string& appFolder, const std::string& exeName);

}  // namespace zol
