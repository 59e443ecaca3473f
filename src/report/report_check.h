#pragma once

// What must hold before a report is written: a sensible set of options, and
// sessions to report. Each refusal is the user's message; nothing is written
// then.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "report/report_options.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

inline constexpr char kNoSessionSelected[] = "No session selected !";
inline constexpr char kNoDataRequested[] = "Please select a type of data to report (step 2)";
inline constexpr char kNothingToExport[] =
    "Please select something to export: modules, procedures and/or lines (step 4)";
inline constexpr char kNothingToReport[] =
    "Please select something to report: session summary and/or source code view (step 4)";
inline constexpr char kNoReportFormat[] =
    "Please select a format for your report: HTM and/or CHM (step 4)";
inline constexpr char kCannotMakeFolder[] = "Impossible to create or access the target folder:";
inline constexpr char kCannotReportCompared[] = "Cannot report compared sessions !";
inline constexpr char kSelectAnotherSession[] = "Please select another session.";

// The first fault of the options, in this order: no data asked for; an export
// of nothing; a report of nothing; a report in no format; a user folder that
// MakeDir can't make (the message, a line break and the folder). Nothing when
// all is well. A user folder is made here when missing. `anySession` says
// whether a session is loaded at all; without one the answer is
// "No session selected !" before anything else.
std::optional<std::string> CheckReport(const ReportOptions& options, bool anySession);

// The sessions to write, by their slot in Session.
struct SessionChoice {
  std::vector<std::int32_t> sessions;  // empty when refused
  std::string refusal;                 // the user's message when refused
};

// Whether any session or group is ticked and loaded.
bool AnySessionLoaded(const Workspace& ws);

// The sessions that `options.Scope` asks for: the session of `current`; every
// ticked session and group (a group by its merged session, which stands for
// the group and its members); or those and the merged session of the ticks.
// Refusals: "No session selected !" when nothing is left, and for the
// current session of a compared selection "Cannot report compared sessions !",
// a line break and "Please select another session.".
SessionChoice SelectSessionsToReport(const Workspace& ws, const ReportOptions& options,
                                     const SessionRef& current);

}  // namespace zol
