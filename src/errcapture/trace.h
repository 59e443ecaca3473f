#pragma once

// The call trace: every procedure of note reports its entry and exit, so that
// an error report can say where the program was and how it got there. With
// tracing off a hook costs one flag test on entry and one on exit; the
// settings are read once at start by zolInitializeProtector. The stack is
// one for the process: hooks go on procedures of the thread that runs the
// window or the command, never on the workers of a parallel replay.

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "errcapture/value_text.h"

namespace zol {

struct ProtectorSettings {
  bool zolCatchException = true;    // install the fatal-signal handlers
  bool zolTraceProc = false;        // keep the call stack (forced on by zolCallStack)
  bool zolTraceParameters = false;  // build the argument text on entry
  bool zolTraceLine = false;
  bool zolCallStack = false;  // put the stack into the report
  std::string zolEmailRecipientAdress = "support@zolmark.com";
  std::int32_t zolDumpStringMaxLength = 128;
  bool zolSystemInfo = true;
  bool zolScreenshot = false;
  std::string zolLogFile;
  bool zolLogTraceToFile = false;  // by default zolTraceProc OR zolTraceLine
  std::string zolDumpFile;
};

// The defaults for a program whose executable is `exeName` (no folder) and
// whose files live in `appFolder`: the log and the dump file are
// "zol<exe>.exe.log" and "zol<exe>.exe.dmp" there.
ProtectorSettings DefaultProtectorSettings(const std::string& appFolder,
                                           const std::string& exeName);

// The defaults, with the keys of section "ErrorCapture" of `iniFile` over them
// (the names of the settings without their "zol"; "True"/"False" for flags).
ProtectorSettings ReadProtectorSettings(const std::string& iniFile, const std::string& appFolder,
                                        const std::string& exeName);

// Takes the settings for the life of the process (zolCallStack forces
// zolTraceProc) and, if zolCatchException, installs the fatal-signal handlers
// whose crash record goes into `crashFile` (see fatal_signal.h).
void zolInitializeProtector(ProtectorSettings settings, const std::string& crashFile = "");

const ProtectorSettings& CurrentProtectorSettings();

namespace trace_detail {
// The one flag a hook tests when tracing is off.
inline bool traceOn = false;
inline bool traceParameters = false;
}  // namespace trace_detail

void zolProcIn(std::string_view proc, std::string_view params);
void zolProcOut(std::string_view proc);

// The stack from its top, one more tab a line: "{Unavailable}" with tracing
// off, "{Empty}" at depth 0.
std::string zolGetStack();
std::int32_t zolTraceCallsNumber();

// Where the last exception started, as the first traced procedure that it
// unwound saw it: that procedure, the line of its hook, and the stack at that
// moment. Found is false when no traced procedure was unwound since the last
// TakeFault (tracing off, or the exception was caught where it was thrown).
struct FaultPlace {
  bool found = false;
  std::string procedure;  // "Module.Procedure"
  std::int32_t line = 0;
  std::string stack;
};
FaultPlace TakeFault();

// The hooks of one procedure: entry when made, exit on every way out.
class TraceScope {
 public:
  TraceScope(const char* proc, std::int32_t line) noexcept : proc_(proc), line_(line) {
    if (trace_detail::traceOn) [[unlikely]]
      Enter("");
  }
  // `params` builds the argument text ("(a = 1, b = 2) ") only when the
  // arguments are traced.
  template <typename ParamsFn>
  TraceScope(const char* proc, std::int32_t line, ParamsFn&& params) noexcept
      : proc_(proc), line_(line) {
    if (trace_detail::traceOn) [[unlikely]] {
      std::string text;
      if (trace_detail::traceParameters) {
        try {
          text = params();
        } catch (...) {
          text = "({Parameter Dumping Error}) ";
        }
      }
      Enter(text);
    }
  }
  ~TraceScope() {
    if (entered_) [[unlikely]]
      Leave();
  }
  TraceScope(const TraceScope&) = delete;
  TraceScope& operator=(const TraceScope&) = delete;

 private:
  void Enter(std::string_view params) noexcept;
  void Leave() noexcept;

  const char* proc_;
  std::int32_t line_;
  bool entered_ = false;
  int uncaught_ = 0;
};

}  // namespace zol

#define ZOL_TRACE_CONCAT_INNER(a, b) a##b
#define ZOL_TRACE_CONCAT(a, b) ZOL_TRACE_CONCAT_INNER(a, b)
// ZOL_TRACE("Module.Procedure"); at the top of a procedure of note.
#define ZOL_TRACE(proc) \
  const ::zol::TraceScope ZOL_TRACE_CONCAT(zolTraceScope_, __LINE__)(proc, __LINE__)
// ZOL_TRACE_ARGS("Module.Procedure", [&] { return zol::zolParamsText({...}); });
#define ZOL_TRACE_ARGS(proc, params) \
  const ::zol::TraceScope ZOL_TRACE_CONCAT(zolTraceScope_, __LINE__)(proc, __LINE__, params)
