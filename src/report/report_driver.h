#pragma once

// Writing a report: for each session chosen, CSV exports or a set of HTML
// pages (contents, summary, source code), in a folder that the target
// decides. Refusals go through the workspace's prompter before anything is
// written; the outcome lists the files written and those to open. The caller
// opens them: the desktop program with the desktop's default program, the
// command line by printing them.

#include <cstdint>
#include <string>
#include <vector>

#include "report/report_options.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

inline constexpr char kCompilingHelp[] = "Compiling Html Help report...";
inline constexpr char kNoHelpCompiler[] =
    "No HTML Help compiler is available on this system: the compiled help (CHM) was not made. "
    "The report was written as HTML pages.";

struct ReportRequest {
  ReportOptions options;
  SessionRef current = SessionRef::none();  // what "Current Session" means
  Measure measure = Measure::Total;         // what the source pages and time rankings show
  // A temp-folder report is removed when the program ends; a command that
  // prints the folder for the user to read keeps it.
  bool deleteTempReportOnExit = true;
};

struct ReportOutcome {
  bool written = false;
  std::string refusal;                  // the message shown when nothing was written
  std::string ReportPath;               // the folder of the report
  std::vector<std::string> files;       // every file written, in order
  std::vector<std::string> FileToOpen;  // what the report opens afterwards
};

// Appends `path` to the files that the report opens afterwards.
void AddToFileToOpenList(ReportOutcome& report, const std::string& path);

// The first n from 1 for which "<folder>/<name> Report <n>" doesn't exist, and
// that folder.
std::string NumberedReportFolder(const std::string& folder, const std::string& name);

// CreateReport: checks the options and the sessions, works out the folder,
// writes the exports or the pages, and the contents page. Status text and the
// progress bar go to the prompter. Throws FileError when a file can't be
// written (the files already written stay).
ReportOutcome CreateReport(Workspace& ws, const ReportRequest& request);

}  // namespace zol
