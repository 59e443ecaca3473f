#pragma once

// What a report is asked to hold and where it goes: the choices of the seven
// steps of the Reports page, kept in section "ProfilerReport" of the settings
// file. The source pages of a report have their own columns and colouring,
// kept in the workspace's sixth page-options entry (OptionsHtml[5]).

#include <array>
#include <cstdint>
#include <string>

#include "session/workspace.h"

namespace zol {

enum class ReportScope : std::int32_t {
  Current = 0,             // "Current Session"
  AllTicked = 1,           // "All Sessions"
  AllTickedAndMerged = 2,  // "All Sessions + Merged"
};

enum class ReportTarget : std::int32_t {
  SessionFolder = 0,  // beside the session file
  Subfolder = 1,      // a numbered "<Name> Report <n>" folder beside the session file
  TempFolder = 2,     // a numbered folder in the temp folder, deleted on exit
  UserFolder = 3,     // ReportFolder
};

// Indices of ReportOptions::DataRequested.
enum ReportData : int { kDataCoverage = 0, kDataTime = 1, kDataChildren = 2 };
// Indices of ReportOptions::ExportWhat.
enum ReportExport : int {
  kExportModules = 0,
  kExportProcedures = 1,
  kExportLines = 2,
  kExportSkipUnexecuted = 3,  // "But don't export unexecuted lines"
};

// The index of the page options that the report's source pages use.
inline constexpr std::int32_t kReportPageOptions = 5;

inline constexpr std::int32_t kTopItemsMin = 1;
inline constexpr std::int32_t kTopItemsMax = 9999;

struct ReportOptions {
  ReportScope Scope = ReportScope::Current;
  std::array<bool, 3> DataRequested{true, true, true};
  bool DoExport = false;
  std::array<bool, 4> ExportWhat{true, true, true, false};
  bool ExportCreateSeparateFile = false;
  bool IncludeReportSummary = true;
  std::int32_t TopItems = 20;
  bool IncludeHTMLProject = false;
  bool ReporttoHtm = true;
  bool ReporttoChm = false;
  ReportTarget Target = ReportTarget::Subfolder;
  std::string ReportFolder;
  bool OpenReport = true;

  friend bool operator==(const ReportOptions&, const ReportOptions&) = default;
};

// The folder of a user-defined target before the user picks one: a "Reports"
// folder in the application folder.
std::string DefaultReportFolder(const std::string& appFolder);

// The defaults, with ReportFolder in `appFolder`.
ReportOptions DefaultReportOptions(const std::string& appFolder);

// The source-page options of a report before any are saved: every column, and
// colour by value.
HtmlPageOptions DefaultReportPageOptions();

// Reads the options from section "ProfilerReport" of `iniFile`: missing or
// unreadable keys take their defaults, a scope or target out of range and a
// colour scheme other than 1 to 3 are brought back into range, and TopItems is
// a whole number from 1 to 9999. The source-page options go to
// ws.view.OptionsHtml[5].
ReportOptions LoadReportOptions(Workspace& ws, const std::string& iniFile);
// Writes them all back, with ws.view.OptionsHtml[5]. Throws FileError.
void SaveReportOptions(const Workspace& ws, const ReportOptions& options,
                       const std::string& iniFile);

// A top count typed by the user ("20", " 15 ", "12.6"): the whole number in
// range, or `fallback` for a text that is no number.
std::int32_t TopItemsFromText(const std::string& text, std::int32_t fallback);

}  // namespace zol
