#include "errcapture/fatal_signal.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/files.h"
#include "base/paths.h"
#include "errcapture/crash_stack.h"

namespace zol {

namespace {

struct Description {
  std::uint32_t code;
  const char* text;
};

constexpr Description kDescriptions[] = {
    {0xC0000005, "Exception: Access Violation"},
    {0x80000002, "Exception: Datatype Misalignment"},
    {0x80000003, "Exception: Breakpoint"},
    {0x80000004, "Exception: Single Step"},
    {0xC000008C, "Exception: Array Bounds Exceeded"},
    {0xC000008D, "Exception: Float Denormal Operand"},
    {0xC000008E, "Exception: Float Divide By Zero"},
    {0xC000008F, "Exception: Float Inexact Result"},
    {0xC0000090, "Exception: Float Invalid Operation"},
    {0xC0000091, "Exception: Float Overflow"},
    {0xC0000092, "Exception: Float Stack Check"},
    {0xC0000093, "Exception: Float Underflow"},
    {0xC0000094, "Exception: Integer Divide By Zero"},
    {0xC0000095, "Exception: Integer Overflow"},
    {0xC0000096, "Exception: Priv Instruction"},
    {0xC0000006, "Exception: In Page Error"},
    {0xC000001D, "Exception: Illegal Instruction"},
    {0xC0000025, "Exception: Non Continuable Exception"},
    {0xC00000FD, "Exception: Stack Overflow"},
    {0xC0000026, "Exception: Invalid Disposition"},
    {0x80000001, "Exception: Guard Page"},
    {0xC0000008, "Exception: Invalid Handle"},
    {0xC000013A, "Exception: Control C Exit"},
};

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

// Filled at installation; the handler only reads them.
char g_crashFile[4096];
alignas(16) char g_altStack[64 * 1024];

// --- async-signal-safe writing: write(2) only, no allocation ---

void Put(int fd, const char* text) {
  std::size_t n = 0;
  while (text[n] != '\0') ++n;
  while (n > 0) {
    const ssize_t w = ::write(fd, text, n);
    if (w <= 0) return;
    text += w;
    n -= static_cast<std::size_t>(w);
  }
}

void PutNumber(int fd, long value) {
  char buf[24];
  char* p = buf + sizeof buf;
  *--p = '\0';
  const bool negative = value < 0;
  unsigned long v =
      negative ? 0UL - static_cast<unsigned long>(value) : static_cast<unsigned long>(value);
  do {
    *--p = static_cast<char>('0' + v % 10);
    v /= 10;
  } while (v != 0);
  if (negative) *--p = '-';
  Put(fd, p);
}

void OnFatalSignal(int sig, siginfo_t* info, void* /*context*/) {
  const int savedErrno = errno;
  const int fd = ::open(g_crashFile, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd >= 0) {
    const std::uint32_t code = ExceptionCodeOfSignal(sig, info != nullptr ? info->si_code : 0);
    Put(fd, "Description: ");
    Put(fd, ExceptionDescription(code));
    Put(fd, "\nSignal: ");
    PutNumber(fd, sig);
    Put(fd, "\nStack:\n");
    crash_stack::Mirror& m = crash_stack::Get();
    if (m.traceOn == 0) {
      Put(fd, "{Unavailable}");
    } else if (m.depth <= 0) {
      Put(fd, "{Empty}");
    } else {
      const int depth =
          m.depth < crash_stack::kMaxDepth ? static_cast<int>(m.depth) : crash_stack::kMaxDepth;
      for (int i = depth, tabs = 0; i >= 1; --i, ++tabs) {
        for (int t = 0; t < tabs; ++t) Put(fd, "\t");
        m.names[i - 1][crash_stack::kNameLength - 1] = '\0';
        Put(fd, m.names[i - 1]);
        Put(fd, "\r\n");
      }
    }
    ::close(fd);
  }
  errno = savedErrno;
  // End by the same signal, as if nothing had been caught.
  ::signal(sig, SIG_DFL);
  ::raise(sig);
}

}  // namespace

const char* ExceptionDescription(std::uint32_t code) {
  for (const Description& d : kDescriptions) {
    if (d.code == code) return d.text;
  }
  return "Unknown Exception";
}

std::uint32_t ExceptionCodeOfSignal(int signal, int siCode) {
  switch (signal) {
    case SIGSEGV:
      return 0xC0000005;
    case SIGBUS:
      return siCode == BUS_ADRALN ? 0x80000002 : 0xC0000006;
    case SIGFPE:
      switch (siCode) {
        case FPE_INTDIV:
          return 0xC0000094;
        case FPE_INTOVF:
          return 0xC0000095;
        case FPE_FLTDIV:
          return 0xC000008E;
        case FPE_FLTOVF:
          return 0xC0000091;
        case FPE_FLTUND:
          return 0xC0000093;
        case FPE_FLTRES:
          return 0xC000008F;
        case FPE_FLTINV:
          return 0xC0000090;
        case FPE_FLTSUB:
          return 0xC000008C;
        default:
          return 0xC0000090;
      }
    case SIGILL:
      return siCode == ILL_PRVOPC || siCode == ILL_PRVREG ? 0xC0000096 : 0xC000001D;
    case SIGTRAP:
      return siCode == TRAP_TRACE ? 0x80000004 : 0x80000003;
    default:
      return 0;
  }
}

void InstallFatalSignalHandlers(const std::string& crashFile) {
  const std::size_t n = std::min(crashFile.size(), sizeof g_crashFile - 1);
  std::memcpy(g_crashFile, crashFile.data(), n);
  g_crashFile[n] = '\0';

  stack_t alt{};
  alt.ss_sp = g_altStack;
  alt.ss_size = sizeof g_altStack;
  ::sigaltstack(&alt, nullptr);

  struct sigaction action {};
  action.sa_sigaction = OnFatalSignal;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESETHAND;
  sigemptyset(&action.sa_mask);
  for (int sig : kSignals) ::sigaction(sig, &action, nullptr);
}

std::optional<CrashRecord> TakeCrashRecord(const std::string& crashFile) {
  if (!FileExist(crashFile)) return std::nullopt;
  const std::string text = LoadFile(crashFile);
  std::remove(crashFile.c_str());
  CrashRecord record;
  record.description = "Unknown Exception";
  const std::size_t stackAt = text.find("\nStack:\n");
  if (text.rfind("Description: ", 0) != 0 || stackAt == std::string::npos) {
    record.stack = text;
    return record;
  }
  const std::size_t descriptionEnd = text.find('\n');
  record.description = text.substr(13, descriptionEnd - 13);
  const std::size_t signalAt = text.find("\nSignal: ");
  if (signalAt != std::string::npos && signalAt < stackAt) {
    record.signal = std::atoi(text.c_str() + signalAt + 9);
  }
  record.stack = text.substr(stackAt + 8);
  if (!record.stack.empty() && record.stack[0] != '{') {
    record.procedure = record.stack.substr(0, record.stack.find('\r'));
  }
  return record;
}

std::string CrashFileIn(const std::string& appFolder, const std::string& exeName) {
  return JoinPath(appFolder, "zol" + exeName + ".crash");
}

}  // namespace zol
