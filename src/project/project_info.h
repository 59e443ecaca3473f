#pragma once

// The project scanner. A profile log speaks only in line and procedure IDs;
// the scanner reads the instrumented copy of the project (its .vbp file and
// every module) and recovers from the instrumenter's probes and marker comments
// what each ID stands for: its text, procedure, module and position in the
// module's cleaned source text. The cleaned text (the original code without
// probes) goes to one side file per module, which the source view shows.
//
// Probes and markers, as they stand at the start of a (trimmed) source line:
//   <prefix>zolExecuteLine N      line probe; stands before its line, or behind
//                                 it when the line ends in 'B
//   <prefix>zolProcIn N           procedure entry; 'C marks it critical, 'D dead
//   <prefix>zolProcOut ...        procedure exit; the next line ends a procedure
//   'zolLine N:<original>         a line the instrumenter rewrote; the next
//                                 logical line (the rewrite) is dropped
//   'zolProcIn N                  a procedure without a timing probe
//   ... 'ID                       a line the instrumenter added
//   Attribute ...                 hidden by the IDE, left out
// <prefix> is "zolProfiler." for this program (see AppPrefixFor).

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/version.h"
#include "session/workspace.h"

namespace zol {

inline constexpr std::string_view kProfilerPrefix = "zolProfiler.";
inline constexpr std::string_view kDebuggerPrefix = "zolDebugger.";

// The probe prefix for an application of the suite: "zolProfiler." when its
// name holds "Profiler" in any case, otherwise "zolDebugger.".
std::string AppPrefixFor(std::string_view appName);

struct ScanOptions {
  // The prefix of the probes to read. By default it follows this program's
  // own name (kAppTitle); a project instrumented for the suite's debugger
  // uses kDebuggerPrefix.
  std::string AppPrefix = AppPrefixFor(kAppTitle);
};

// The one failure of a scan that isn't silent: a probe or marker that doesn't
// fit the source around it (an ID of 0 or beyond kMaxScanId, a procedure head
// position outside the module, a marker without its ":"), or a side file that
// can't be written. The message names the module file and the line.
class ScanError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// IDs above this are taken for corrupt input rather than grown into.
inline constexpr std::int32_t kMaxScanId = 2'000'000;

// The index in ws.Project of the entry for the project file `projectFile`. An
// entry with the same path (compared without regard to case) is reused when
// the file no longer exists or still has the modification time the entry
// recorded; otherwise a new entry is made (a rebuilt project with new IDs gets
// a new entry, and older sessions keep theirs). `cs` is the session asking.
std::int32_t AssignProjectToSession(Workspace& ws, std::int32_t cs, const std::string& projectFile);

// Scans the project of session `cs` into ws.Project(ws.Session(cs).Project):
// modules, procedures, probed lines, the line table of every module, the lists
// of names, and the cleaned side file of every module (see RtfFileName). The
// session's LinesNumber and ProceduresNumber size the tables; IDs above them
// grow the tables and the project's counts. A project file that can't be read
// (at its path, or under its file name beside the session file) leaves
// ModulesNumber at 0 and the entry not Loaded; a module whose source can't be
// read has an empty text and no procedures. Throws ScanError (see above).
// Makes the side-file folder first when ResetRtfPath hasn't run.
void GetProjectInfo(Workspace& ws, std::int32_t cs, const ScanOptions& options = {});

// Makes this process's folder of side files, "Temp/Rtf<pid>/" in the
// application folder (ws.appFolder, or AppFolder() when that is empty), afresh
// with its "Warning.txt", and registers it for deletion at exit. Never fails:
// what can't be done is left undone.
void ResetRtfPath(Workspace& ws);

// Removes the folder of side files, ignoring failures.
void KillRtfPath(Workspace& ws);

// The side file of module `m` of project `projectIndex`: RtfPath, "p", the
// project index, "m", the module index, ".txt".
std::string RtfFileName(const Workspace& ws, std::int32_t projectIndex, std::int32_t m);

inline constexpr std::string_view kRtfWarningText =
    "This directory is temporary. Don't store anything in it or it will be deleted. "
    "Don't erase files while the Zolmark profiler is active.";

}  // namespace zol
