#include "errcapture/trace.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "base/ini_file.h"
#include "base/paths.h"
#include "errcapture/crash_stack.h"
#include "errcapture/fatal_signal.h"

namespace zol {

namespace {

struct TraceState {
  ProtectorSettings settings;
  std::vector<std::string> zolStackCalls{std::string()};  // first index 1
  std::int32_t zolStackCallsNumber = 0;
  std::int32_t zolTraceCallsNumber = 0;
  std::FILE* log = nullptr;
  std::string logName;
  FaultPlace fault;
};

TraceState& State() {
  static TraceState state;
  return state;
}

// Writes one trace line. Whatever happens here must not change what the
// failing code sees afterwards: errno is kept, and nothing is thrown.
void WriteLogLine(const std::string& line) noexcept {
  const int savedErrno = errno;
  try {
    TraceState& s = State();
    if (s.log == nullptr || s.logName != s.settings.zolLogFile) {
      if (s.log != nullptr) std::fclose(s.log);
      s.logName = s.settings.zolLogFile;
      s.log = s.logName.empty() ? nullptr : std::fopen(s.logName.c_str(), "ab");
    }
    if (s.log != nullptr) {
      std::fwrite(line.data(), 1, line.size(), s.log);
      std::fwrite("\r\n", 1, 2, s.log);
      std::fflush(s.log);
    }
  } catch (...) {
  }
  errno = savedErrno;
}

void MirrorPush(std::int32_t depth, std::string_view proc) noexcept {
  crash_stack::Mirror& m = crash_stack::Get();
  if (depth >= 1 && depth <= crash_stack::kMaxDepth) {
    char* slot = m.names[depth - 1];
    const std::size_t n = std::min(proc.size(), crash_stack::kNameLength - 1);
    std::memcpy(slot, proc.data(), n);
    slot[n] = '\0';
  }
  m.depth = depth;
}

}  // namespace

namespace crash_stack {
Mirror& Get() {
  static Mirror mirror{};
  return mirror;
}
}  // namespace crash_stack

ProtectorSettings DefaultProtectorSettings(const std::string& appFolder,
                                           const std::string& exeName) {
  ProtectorSettings s;
  s.zolLogFile = JoinPath(appFolder, "zol" + exeName + ".exe.log");
  s.zolDumpFile = JoinPath(appFolder, "zol" + exeName + ".exe.dmp");
  s.zolLogTraceToFile = s.zolTraceProc || s.zolTraceLine;
  return s;
}

ProtectorSettings ReadProtectorSettings(const std::string& iniFile, const std::string& appFolder,
                                        const std::string& exeName) {
  ProtectorSettings s = DefaultProtectorSettings(appFolder, exeName);
  constexpr const char* kSection = "ErrorCapture";
  auto flag = [&](const char* key, bool fallback) {
    return ReadSettingFlag(kSection, key, fallback, iniFile);
  };
  s.zolCatchException = flag("CatchException", s.zolCatchException);
  s.zolTraceProc = flag("TraceProc", s.zolTraceProc);
  s.zolTraceParameters = flag("TraceParameters", s.zolTraceParameters);
  s.zolTraceLine = flag("TraceLine", s.zolTraceLine);
  s.zolCallStack = flag("CallStack", s.zolCallStack);
  s.zolSystemInfo = flag("SystemInfo", s.zolSystemInfo);
  s.zolScreenshot = flag("Screenshot", s.zolScreenshot);
  s.zolEmailRecipientAdress = VBGetPrivateProfileString(kSection, "EmailRecipientAdress",
                                                        s.zolEmailRecipientAdress, iniFile);
  const std::string maxLength =
      VBGetPrivateProfileString(kSection, "DumpStringMaxLength", "", iniFile);
  if (!maxLength.empty()) {
    try {
      const int n = std::stoi(maxLength);
      if (n > 0) s.zolDumpStringMaxLength = n;
    } catch (const std::exception&) {
    }
  }
  s.zolLogFile = VBGetPrivateProfileString(kSection, "LogFile", s.zolLogFile, iniFile);
  s.zolLogTraceToFile = flag("LogTraceToFile", s.zolTraceProc || s.zolTraceLine || s.zolCallStack);
  s.zolDumpFile = VBGetPrivateProfileString(kSection, "DumpFile", s.zolDumpFile, iniFile);
  return s;
}

void zolInitializeProtector(ProtectorSettings settings, const std::string& crashFile) {
  if (settings.zolCallStack) settings.zolTraceProc = true;
  TraceState& s = State();
  s.settings = std::move(settings);
  s.zolTraceCallsNumber = 0;
  s.zolStackCallsNumber = 0;
  trace_detail::traceOn = s.settings.zolTraceProc;
  trace_detail::traceParameters = s.settings.zolTraceParameters;
  crash_stack::Get().traceOn = s.settings.zolTraceProc ? 1 : 0;
  crash_stack::Get().depth = 0;
  if (s.settings.zolCatchException && !crashFile.empty()) InstallFatalSignalHandlers(crashFile);
}

const ProtectorSettings& CurrentProtectorSettings() {
  return State().settings;
}

void zolProcIn(std::string_view proc, std::string_view params) {
  TraceState& s = State();
  ++s.zolTraceCallsNumber;
  ++s.zolStackCallsNumber;
  if (static_cast<std::size_t>(s.zolStackCallsNumber) >= s.zolStackCalls.size()) {
    s.zolStackCalls.resize(static_cast<std::size_t>(s.zolStackCallsNumber) + 1);
  }
  s.zolStackCalls[static_cast<std::size_t>(s.zolStackCallsNumber)] = std::string(proc);
  MirrorPush(s.zolStackCallsNumber, proc);
  if (s.settings.zolLogTraceToFile) {
    std::string line(static_cast<std::size_t>(s.zolTraceCallsNumber - 1), '\t');
    line.append(proc);
    line.append(params);
    WriteLogLine(line);
  }
}

void zolProcOut(std::string_view /*proc*/) {
  TraceState& s = State();
  if (s.zolTraceCallsNumber > 0) --s.zolTraceCallsNumber;
  if (s.zolStackCallsNumber > 0) --s.zolStackCallsNumber;
  crash_stack::Get().depth = s.zolStackCallsNumber;
}

std::string zolGetStack() {
  const TraceState& s = State();
  if (!s.settings.zolTraceProc) return "{Unavailable}";
  std::string text;
  std::size_t tabs = 0;
  for (std::int32_t i = s.zolStackCallsNumber; i >= 1; --i, ++tabs) {
    text.append(tabs, '\t');
    text += s.zolStackCalls[static_cast<std::size_t>(i)];
    text += "\r\n";
  }
  return text.empty() ? "{Empty}" : text;
}

std::int32_t zolTraceCallsNumber() {
  return State().zolTraceCallsNumber;
}

FaultPlace TakeFault() {
  FaultPlace f = std::move(State().fault);
  State().fault = FaultPlace{};
  return f;
}

void TraceScope::Enter(std::string_view params) noexcept {
  try {
    zolProcIn(proc_, params);
    entered_ = true;
    uncaught_ = std::uncaught_exceptions();
  } catch (...) {
    // Out of memory for the stack: the procedure runs untraced.
  }
}

void TraceScope::Leave() noexcept {
  try {
    TraceState& s = State();
    if (std::uncaught_exceptions() > uncaught_ && !s.fault.found) {
      s.fault.found = true;
      s.fault.procedure = proc_;
      s.fault.line = line_;
      s.fault.stack = zolGetStack();
    }
  } catch (...) {
  }
  zolProcOut(proc_);
}

}  // namespace zol
