#pragma once

// The pages of an HTML report: the session's table of the contents page, the
// sections of the summary page, and the source code pages with their table of
// contents. Each takes the session and the report's choices explicitly; none
// changes the workspace's selection.

#include <cstdint>
#include <string>
#include <vector>

#include "report/data_export.h"
#include "report/report_options.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

// What the sections of one session are written with.
struct SummaryContext {
  std::int32_t session = 0;
  ReportDataFlags data{true, true, true};
  std::int32_t topItems = 20;
  Measure measure = Measure::Total;  // the time that sections 7 and 8 rank by
  // What the project summary names the session by, when not its own record's
  // (a group's merged session is named after the group).
  std::string name;
  std::string dateTime;
  std::string sessionFile;
  std::string projectFile;
};

// The eight sections, each the body of its collapsible block: tables made
// with HtmlGetArray, their numbers as the grids write them.
std::string GetProjectSummary(const Workspace& ws, const SummaryContext& c);
std::string GetModuleSummary(const Workspace& ws, const SummaryContext& c);
std::string GetMostCalledProcedures(const Workspace& ws, const SummaryContext& c);
std::string GetMostCalledLines(const Workspace& ws, const SummaryContext& c);
std::string GetModulesNonCovered(const Workspace& ws, const SummaryContext& c);
std::string GetProceduresNonCovered(const Workspace& ws, const SummaryContext& c);
std::string GetTopTimesProcedures(const Workspace& ws, const SummaryContext& c);
std::string GetTopTimesLines(const Workspace& ws, const SummaryContext& c);

// The title of section 7 or 8 for the measure: "Top <n>: Total Time spent in
// Procedure" and the like (coverage ranks by total time).
std::string TopTimesTitle(std::int32_t topItems, Measure measure, bool lines);

// Every section of one session, each behind its collapsible title. Sections
// whose data wasn't asked for are left out.
std::string SummarySections(const Workspace& ws, const SummaryContext& c);

// The session's table of the contents page, placeholders filled in:
// `name`, `sessionFile` and `projectFile` are the group's for a group.
// `pageNumber` numbers its Summary and SourceTOC pages.
struct ContentsEntry {
  std::int32_t session = 0;
  std::string name;
  std::string dateTime;
  std::string sessionFile;
  std::string projectFile;
  std::int32_t pageNumber = 1;
  bool summary = false;
  bool source = false;
};
std::string ContentsTable(const Workspace& ws, const ContentsEntry& entry);

// The source pages of session `sessionId`: one page per module with source
// text, written into `folder` as "<prefix>_M<module>.htm", without links,
// with the columns and colours of OptionsHtml[5], coloured by `measure`.
// Returns the table of contents that links them; the names of the pages
// written are appended to `written`. Throws FileError.
std::string MakeSourceCodeReport(Workspace& ws, std::int32_t sessionId, Measure measure,
                                 const std::string& folder, const std::string& prefix,
                                 std::vector<std::string>& written);

}  // namespace zol
