#pragma once

// The process state that routines receive by reference: the catalogue (the
// session, group and project tables with their working slot 0) and the view
// settings; with them, the scratch state of the scanner, the
// temporary files to delete at exit, and the prompter through which the core
// talks to the user. State that only the window needs lives in the window.

#include <cstdint>
#include <memory>
#include <string>

#include "base/temp_files.h"
#include "base/vbarray.h"
#include "session/prompter.h"
#include "session/records.h"
#include "session/view_settings.h"

namespace zol {

// The sessions, groups and projects entered, with their working slot 0: the
// merged session of the ticked sessions (or ticked groups) and the project of
// a heterogeneous merge.
struct Catalogue {
  Array0<zol::Session> Session;  // slot 0: merged session of the ticked sessions
  // The ticked sessions' values renumbered to the merged project (heterogeneous
  // merges), for the compared views.
  Array1<zol::Session> CompareSession;
  std::int32_t nSession = 0;
  bool fHomogeneous = false;  // the ticked sessions share one project
  bool fOnlyGroups = false;   // only groups are ticked

  Array0<zol::SessionGroup> SessionGroup;  // slot 0: merged selection of groups
  std::int32_t nSessionGroup = 0;

  Array0<zol::Project> Project;  // slot 0: project of merged heterogeneous sessions
  std::int32_t nProject = 0;

  // Grows Session to hold index `i` (keeping its content) and returns it.
  zol::Session& SessionSlot(std::int32_t i);

  // Starts over: empties all tables, keeps slot 0.
  void ClearCatalogue();
};

class Workspace : public Catalogue {
 public:
  Workspace();
  explicit Workspace(std::shared_ptr<Prompter> prompter);

  Prompter& prompter() { return *prompter_; }
  void SetPrompter(std::shared_ptr<Prompter> p) { prompter_ = std::move(p); }

  // Application folder (settings file, Temp folder). Empty means "work it out"
  // from ZOLMARK_HOME and the executable's folder; see base/app_paths.h.
  std::string appFolder;

  // Set when the user stops a long operation.
  bool abort = false;

  // --- View settings ---
  ViewSettings view;

  // --- Clock of the log being read ---
  double PerformanceFrequency = 0;
  double TraceOverhead = 0;

  // --- Project scanner state: the counts of the project at hand ---
  std::int32_t LinesNumber = 0;
  std::int32_t ProceduresNumber = 0;
  std::int32_t ModulesNumber = 0;
  std::string RtfPath;
  std::string RtfFile;

  // --- Files that die with the process ---
  TempFileRegistry tempFiles;

  // Sets LinesNumber, ProceduresNumber and ModulesNumber from
  // Project(projectIndex).
  void LoadProjectCounts(std::int32_t projectIndex);

  // Starts everything over: empties all tables, keeps slot 0.
  void ClearTables();

 private:
  std::shared_ptr<Prompter> prompter_;
};

}  // namespace zol
