#include "errcapture/protected_call.h"

#include <new>
#include <stdexcept>

#include "base/files.h"
#include "base/vbarray.h"
#include "errcapture/dump.h"
#include "errcapture/trace.h"

namespace zol {

std::int32_t ErrorNumberOf(const std::exception& e) {
  if (dynamic_cast<const std::bad_alloc*>(&e) != nullptr) return 7;
  if (dynamic_cast<const std::out_of_range*>(&e) != nullptr) return 9;
  if (dynamic_cast<const FileError*>(&e) != nullptr) return 75;
  if (dynamic_cast<const std::overflow_error*>(&e) != nullptr) return 6;
  return 5;
}

void DumpError(const ErrorInfo& e) {
  zolReportToFile("**** ErrObject Err ****");
  zolDumpVariable("Err.Number", e.Number, 0);
  zolDumpVariable("Err.Source", e.Project, 0);
  zolDumpVariable("Err.Description", e.Description, 0);
  zolDumpVariable("Err.HelpContext", 0, 0);
  zolDumpVariable("Err.HelpFile", std::string(), 0);
  zolDumpVariable("Err.LastDllError", 0, 0);
}

CallOutcome RunProtected(ErrHandler& handler, const CallPlace& place,
                         const std::function<void()>& operation, const StateDump& dump) {
  for (;;) {
    TakeFault();  // nothing left over from an exception caught elsewhere
    ErrorInfo e{0, "", place.project, place.module, place.procedure, place.line};
    try {
      operation();
      return CallOutcome::Done;
    } catch (const std::exception& ex) {
      e.Number = ErrorNumberOf(ex);
      e.Description = ex.what();
    } catch (...) {
      e.Number = 5;
      e.Description = "Unknown error";
    }
    FaultPlace fault = TakeFault();
    if (fault.found) {
      const std::size_t dot = fault.procedure.find('.');
      e.Module = dot == std::string::npos ? place.module : fault.procedure.substr(0, dot);
      e.Procedure = dot == std::string::npos ? fault.procedure : fault.procedure.substr(dot + 1);
      e.Line = fault.line;
    }
    ErrorDecision decision =
        handler.zolErrHandler(e.Number, e.Description, e.Project, e.Module, e.Procedure, e.Line);
    if (decision == ErrorDecision::Report) {
      zolOpenDumpFile();
      zolReportToFile(kLocalVariablesBox);
      DumpGuarded("Err", 0, [&] { DumpError(e); });
      if (dump.locals) DumpGuarded(place.procedure, 0, dump.locals);
      if (dump.module) {
        zolReportToFile(kModuleVariablesBox);
        DumpGuarded(place.module, 0, dump.module);
      }
      if (dump.globals) DumpGuarded("Workspace", 0, dump.globals);
      zolCloseDumpFile();
      if (fault.found && CurrentProtectorSettings().zolCallStack)
        handler.SetFaultStack(fault.stack);
      decision = handler.zolErrHandler(kReportedErrorNumber, e.Description, e.Project, e.Module,
                                       e.Procedure, e.Line);
    }
    switch (decision) {
      case ErrorDecision::Retry:
        continue;
      case ErrorDecision::Abort:
        return CallOutcome::Abort;
      default:
        return CallOutcome::Skipped;
    }
  }
}

}  // namespace zol
