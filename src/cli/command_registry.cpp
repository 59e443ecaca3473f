#include "cli/command_registry.h"

#include <algorithm>
#include <iostream>

#include "base/files.h"
#include "base/vbarray.h"
#include "errcapture/err_handler.h"
#include "errcapture/protected_call.h"
#include "errcapture/trace.h"

namespace zol::cli {

namespace {
int g_exitCode = 0;
std::string g_commandName;
}  // namespace

void SetCommandName(std::string name) {
  g_commandName = std::move(name);
}

void ReportFault(const std::exception& e, std::int32_t line) {
  ErrorInfo info{ErrorNumberOf(e), e.what(), "zolprof", "zolprof", g_commandName, line};
  const FaultPlace fault = TakeFault();
  if (fault.found) {
    const std::size_t dot = fault.procedure.find('.');
    info.Module = fault.procedure.substr(0, dot);
    if (dot != std::string::npos) info.Procedure = fault.procedure.substr(dot + 1);
    info.Line = fault.line;
  }
  std::string text = ErrorMessageText(info);
  if (fault.found && CurrentProtectorSettings().zolCallStack) text += "Stack:\r\n" + fault.stack;
  // A terminal wants LF line ends.
  for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at)) {
    text.erase(at, 1);
  }
  std::cerr << text;
}

std::vector<CommandInfo>& Registry() {
  static std::vector<CommandInfo> registry;
  return registry;
}

CommandRegistrar::CommandRegistrar(std::string name, CommandSetup setup) {
  Registry().push_back({std::move(name), std::move(setup)});
}

void SetExitCode(int code) {
  g_exitCode = code;
}
void RunCommand(const std::function<int()>& run, const std::string& subject,
                std::source_location where) {
  const std::string traceName = "zolprof." + g_commandName;
  ZOL_TRACE(traceName.c_str());
  TakeFault();
  try {
    SetExitCode(run());
  } catch (const BoundsError& e) {
    std::cerr << "zolprof: " << (subject.empty() ? "" : subject + ": ")
              << "the session and its project don't fit (" << e.what() << ")\n";
    SetExitCode(1);
  } catch (const FileError& e) {
    std::cerr << "zolprof: " << e.what() << "\n";
    SetExitCode(1);
  } catch (const std::exception& e) {
    ReportFault(e, static_cast<std::int32_t>(where.line()));
    SetExitCode(1);
  }
}

int ExitCode() {
  return g_exitCode;
}

}  // namespace zol::cli
