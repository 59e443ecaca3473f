#pragma once

// All process state in one object that routines receive by reference: the
// session, group and project tables with their working slot 0, the selection,
// the display settings, the scratch state of the scanner and the log reader,
// the temporary files to delete at exit, and the prompter through which the
// core talks to the user.

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "base/temp_files.h"
#include "base/vbarray.h"
#include "session/prompter.h"
#include "session/records.h"

namespace zol {

// Which numeric columns a source page shows, and how it colours its rows, for
// one measure. Column order: hits, average time, total time, average child
// time, total child time. ColorScheme: 1 none, 2 by rank, 3 by value.
struct HtmlPageOptions {
  std::array<bool, 5> Column{};
  std::int32_t ColorScheme = 1;
};

class Workspace {
 public:
  Workspace();
  explicit Workspace(std::shared_ptr<Prompter> prompter);

  Prompter& prompter() { return *prompter_; }
  void SetPrompter(std::shared_ptr<Prompter> p) { prompter_ = std::move(p); }

  // Application folder (settings file, Temp folder). Empty means "work it out"
  // from ZOLMARK_HOME and the executable's folder; see base/app_paths.h.
  std::string appFolder;

  // --- Session core state ---
  bool abort = false;
  bool fDuringLoad = false;
  std::string DefaultPlan;
  std::int32_t DisplayInfoType =
      0;  // 0 total, 1 average, 2 child total, 3 child average, 4 coverage
  std::int32_t Active_tbsTab = 0;
  std::int32_t Active_lvwSessions_Column = 0;
  bool fColored = false;
  std::string HtmlFile;
  std::int32_t LastExportFileType = 0;

  Array0<zol::Session> Session;  // slot 0: merged session of the current selection
  Array1<zol::Session> CompareSession;
  std::int32_t cs = 0;
  std::int32_t nSession = 0;
  bool fHomogeneous = false;
  bool fOnlyGroups = false;

  Array0<zol::SessionGroup> SessionGroup;  // slot 0: merged selection of groups
  std::int32_t nSessionGroup = 0;
  std::int32_t csg = 0;

  std::int32_t cMod = 0;
  std::int32_t cPro = 0;
  std::int32_t cLine = 0;

  std::string Filters;  // timing filters, separated by CR LF
  double PerformanceFrequency = 0;
  double TraceOverhead = 0;

  // --- Project scanner state ---
  Array0<zol::Project> Project;  // slot 0: project of merged heterogeneous sessions
  std::int32_t nProject = 0;
  std::int32_t cp = 0;
  std::int32_t LinesNumber = 0;
  std::int32_t ProceduresNumber = 0;
  std::int32_t ModulesNumber = 0;
  std::string RtfPath;
  std::string RtfFile;

  // --- Source view: colour table, page options and page fonts ---
  std::array<std::int32_t, 12> Colors{};       // packed 0x00BBGGRR
  std::array<std::string, 12> ColorsHtml;      // the same colours as "RRGGBB"
  std::array<HtmlPageOptions, 6> OptionsHtml;  // 0-4 per measure, 5 for reports
  std::string FontHTML = "Courier New";
  std::int32_t FontSizeHTML = 10;
  std::int32_t LineHeightHTML = 8;
  std::int32_t SmallFontSizeHTML = 9;

  // --- Files that die with the process ---
  TempFileRegistry tempFiles;

  // Grows Session to hold index `i` (keeping its content) and returns it.
  zol::Session& SessionSlot(std::int32_t i);

  // Sets LinesNumber, ProceduresNumber and ModulesNumber from
  // Project(projectIndex); the selection stays as it is.
  void LoadProjectCounts(std::int32_t projectIndex);

  // Starts everything over: empties all tables, keeps slot 0.
  void ClearTables();

 private:
  std::shared_ptr<Prompter> prompter_;
};

}  // namespace zol
