#pragma once

// The walk over the text of the modules of one project. Its working state
// lives for the whole scan: the procedure in force and a pending line probe
// carry over from one module to the next, as they did when the instrumenter
// numbered the project in one pass.

#include <cstdint>
#include <string>
#include <string_view>

#include "base/concat_string.h"
#include "session/workspace.h"

namespace zol {

class ProjectScan {
 public:
  // Fills ws.Project(projectIndex); the counts it grows are ws.LinesNumber and
  // ws.ProceduresNumber.
  ProjectScan(Workspace& ws, std::int32_t projectIndex, std::string appPrefix);

  // Scans the text of module `m` that follows its name attribute. Fills the
  // module's RTFLine (already sized) and the project's CodeLine and Procedure
  // entries; returns the cleaned text, every line ending in CR LF. Throws
  // ScanError naming `fileName` when a probe doesn't fit.
  std::string ScanModule(std::int32_t m, std::string_view text, const std::string& fileName);

 private:
  class Lines;

  void ReadLogicalLine(Lines& lines);
  void TakeLine();
  void TakeLineProbe(std::int32_t id, bool behind);
  void TakeExitProbe();
  void TakeEntry(std::int32_t id, bool critical, bool dead, bool timed);
  void TakeRewrittenLine(std::int32_t id);
  void TakeCode();
  void TakeProcedureHead();

  CodeLine& GrowCodeLine(std::int32_t id);
  // Line `id` of the current procedure, with its trimmed text, at `position`
  // of the module's page; the line that a probe announced is then served.
  CodeLine& PlaceCodeLine(std::int32_t id, const std::string& text, std::int32_t position);
  zol::Procedure& GrowProcedure(std::int32_t id);
  zol::RTFLine& Rtf(std::int32_t position);

  Workspace& ws_;
  std::int32_t cp_;
  std::string AppPrefix;
  std::int32_t module_ = 0;

  std::int32_t currentProc = 0;
  std::int32_t CurrentLine = 0;
  std::int32_t currentPosition = 0;
  std::int32_t linePosition = 0;
  std::int32_t lastLinePosition = 0;
  std::int32_t procPosition = 0;
  std::int32_t procType = 0;
  std::string procName;
  std::string firstLine;
  std::string lastFirstLine;
  std::string sourceLine;
  std::string originalLine;
  bool dontWriteNextLine = false;
  CConcatString cleaned_;
};

}  // namespace zol
