#pragma once

// The plain records that hold everything the program knows of a profiling run:
// the source side (Project, Module, Procedure, CodeLine, RTFLine) and the
// measured side (Session, SessionGroup and the value records). Field names and
// order follow the file images and the rest of the program; CodeLineValue,
// ProcedureValue, ModuleValue and FlowPair are also raw images inside .pfd
// files (see record_images.h).

#include <cstdint>
#include <string>
#include <vector>

#include "base/vbarray.h"
#include "session/vbbool.h"

namespace zol {

struct CodeLineValue {
  std::int32_t Hits = 0;
  double TotalTime = 0;
  double AverageTime = 0;
  double ChildTotalTime = 0;
  double ChildAverageTime = 0;
  friend bool operator==(const CodeLineValue&, const CodeLineValue&) = default;
};

struct ProcedureValue {
  VBBool IsProfiled;
  VBBool IsCovered;
  std::int32_t Hits = 0;
  std::int32_t HitLines = 0;
  std::int32_t TotalLines = 0;
  double Coverage = 0;
  double TotalTime = 0;
  double AverageTime = 0;
  double ChildTotalTime = 0;
  double ChildAverageTime = 0;
  float TotalTimingRank = 0;
  float AverageTimingRank = 0;
  // The two child ranks are doubles while the other ranks are singles; the
  // record is a file image, so the asymmetry stays.
  double ChildTotalTimingRank = 0;
  double ChildAverageTimingRank = 0;
  float CoverageRank = 0;
  friend bool operator==(const ProcedureValue&, const ProcedureValue&) = default;
};

struct ModuleValue {
  VBBool IsProfiled;
  VBBool IsCovered;
  std::int32_t HitLines = 0;
  std::int32_t TotalLines = 0;
  double LineCoverage = 0;
  std::int32_t HitProcedures = 0;
  std::int32_t TotalProcedures = 0;
  double ProcedureCoverage = 0;
  double TotalTime = 0;
  std::int32_t CriticalHitLines = 0;
  std::int32_t CriticalTotalLines = 0;
  float TotalTimingRank = 0;
  float CoverageRank = 0;
  friend bool operator==(const ModuleValue&, const ModuleValue&) = default;
};

struct FlowPair {
  std::int32_t FromProc = 0;
  std::int32_t ToProc = 0;
  std::int32_t Hits = 0;
  double ChildTime = 0;
  friend bool operator==(const FlowPair&, const FlowPair&) = default;
};

struct Session {
  std::string Name;
  std::string SessionFile;
  std::int32_t Number = 0;
  std::int32_t Project = 0;
  std::string GroupFile;
  std::string ProjectFile;
  std::string IniFile;
  std::string OriginalProjectFile;
  std::int32_t LinesNumber = 0;
  std::int32_t ProceduresNumber = 0;
  std::string DateTime;
  std::int32_t Group = 0;
  std::string RunType;
  VBBool Selected;
  VBBool Loaded;
  VBBool Invisible;
  VBBool IsMergedGroupSession;
  Array1<zol::CodeLineValue> CodeLineValue;
  Array1<zol::ProcedureValue> ProcedureValue;
  Array1<zol::ModuleValue> ModuleValue;
  zol::ModuleValue SessionValue;
  Array1<std::int32_t> LineTotalTimeRank;
  Array1<std::int32_t> LineAverageTimeRank;
  Array1<std::int32_t> LineChildTotalTimeRank;
  Array1<std::int32_t> LineChildAverageTimeRank;
  Array1<zol::FlowPair> FlowPair;
  std::int32_t nFlowPair = 0;
  std::int32_t FirstProc = 0;
  std::int32_t LastProc = 0;
  Array1<std::string> ActiveFilters;
  std::int32_t nFilters = 0;
};

struct SessionGroup {
  std::string Name;
  std::string DateTime;
  std::string SessionFile;
  std::string GroupFile;
  std::string IniFile;
  std::int32_t Project = 0;
  VBBool Selected;
  VBBool Loaded;
  std::int32_t nSession = 0;
  Array1<std::int32_t> Sessions;
  std::int32_t GroupMergedSession = 0;
};

// Module type codes as the .vbp file names them.
enum ModuleType : std::int32_t {
  kModuleStandard = 1,      // Module=
  kModuleClass = 2,         // Class=
  kModuleForm = 5,          // Form=
  kModulePropertyPage = 7,  // PropertyPage=
  kModuleUserControl = 8,   // UserControl=
  kModuleUserDocument = 9,  // UserDocument=
  kModuleDesigner = 11,     // Designer=
};

// What one line of a module's cleaned source text stands for.
enum RTFLineType : std::int32_t {
  kRtfPlain = 0,
  kRtfProcedureHead = 1,
  kRtfCodeLine = 2,
  kRtfProcedureEnd = 5,
};

struct RTFLine {
  std::int32_t LineType = kRtfPlain;
  std::int32_t RefersTo = 0;
  friend bool operator==(const RTFLine&, const RTFLine&) = default;
};

struct Module {
  std::string FileName;
  std::string Name;
  std::int32_t Type = 0;
  Array1<zol::RTFLine> RTFLine;
  std::int32_t BelongToProject = 0;
};

struct Procedure {
  std::int32_t BelongToModule = 0;
  std::string Name;
  std::int32_t Type = 0;
  std::int32_t Position = 0;
  VBBool IsProfiled;
  VBBool IsCovered;
  VBBool IsCritical;
  VBBool IsDead;
};

struct CodeLine {
  std::int32_t BelongToProcedure = 0;
  std::string Text;
  std::int32_t Position = 0;
  VBBool IsProcedureExit;
};

// A module file of the project that the scan could not read.
struct UnreadModule {
  std::string FileName;  // as the .vbp names it
  std::string Fault;     // why: missing, a folder, not a regular file, the system's reason
  friend bool operator==(const UnreadModule&, const UnreadModule&) = default;
};

struct Project {
  VBBool Loaded;
  std::string ProjectFile;
  double ProjectFileDateTime = 0;  // a date: days, as the file's modification time
  std::string Name;
  Array1<zol::CodeLine> CodeLine;
  Array1<zol::Procedure> Procedure;
  Array1<zol::Module> Module;
  std::int32_t LinesNumber = 0;
  std::int32_t ProceduresNumber = 0;
  std::int32_t ModulesNumber = 0;
  std::string ListOfProc;
  std::string ListOfModule;
  VBBool ContainsCritical;
  // Modules read as empty because their file can't be read: the IDs of their
  // probes are unknown, so a log of this project can't be replayed truly.
  std::vector<UnreadModule> UnreadModules;
};

}  // namespace zol
