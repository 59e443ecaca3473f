#pragma once

// A small instrumenter for the tests: copies a Visual Basic 6 project and adds
// the probes and marker comments that the profiler's scanner reads, numbering
// procedures and lines as it walks the modules in .vbp order, and records what
// every ID stands for. It works on the source text itself: it groups physical
// lines into statements (" _" continuations), recognises procedure heads and
// ends, and decides per statement where a probe may go.
//
// What it writes into a module (prefix "zolProfiler." unless told otherwise):
//   - "Private Const zolModuleIndex As Long = <m> 'ID" before the first
//     procedure (or at the end): a line of its own, left out by the scanner;
//   - behind each procedure head (and the Attribute lines that follow it):
//     "<prefix>zolProcIn <id>" with " 'C" when critical and " 'D" when dead, or
//     the marker "'zolProcIn <id>" for a procedure without timing;
//   - "<prefix>zolExecuteLine <n>" before each executable statement; behind
//     the statement with " 'B" for "Case", "Else" and "ElseIf" lines, where
//     nothing may stand in front;
//   - "<prefix>zolProcOut <id>" before every Exit and End of a timed procedure;
//   - for a single-line If that leaves the procedure ("If x Then Exit Sub") of a
//     timed procedure: the marker "'zolLine <n>:" followed by the original
//     statement, then the statement rewritten with its probes, which the
//     scanner drops;
//   - the module "zolProfiler.bas" of stubs, with its line in the .vbp.
// Dead procedures get their entry probe and exit probes but no line probes.
// Excluded procedures are copied as they stand and get no ID.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/vbarray.h"
#include "session/records.h"

namespace zol::fixture {

// What the instrumentation plan says of one procedure.
struct ProcedurePlan {
  bool excluded = false;  // left as it is, no ID
  bool timed = true;      // an entry probe; false: the 'zolProcIn marker
  bool critical = false;  // 'C
  bool dead = false;      // 'D
};

// The plan for a procedure, given its module's name and its name as stored by
// the scanner ("Total", "Value[Get]").
using PlanFn = std::function<ProcedurePlan(const std::string& module, const std::string& name)>;

// A plan that draws each procedure's kind from `seed` and its names: mostly
// profiled, some critical, dead, untimed or excluded.
PlanFn RandomPlan(std::uint32_t seed);

// A plan read from text: one procedure per line, "<kind> <Module>.<Name>", the
// kinds being "critical", "dead", "untimed" and "exclude" (several lines for one
// procedure add up); blank lines and lines starting with "#" are skipped.
// Procedures not named are profiled. Throws std::invalid_argument naming the
// line for anything else.
PlanFn PlanFromText(const std::string& text);

struct InstrumentOptions {
  std::string AppPrefix = "zolProfiler.";
  PlanFn plan;  // empty: every procedure profiled, nothing marked
};

// The truth of one line ID: what the scanner must find for it.
struct TruthLine {
  std::int32_t module = 0;       // module index (order of the .vbp lines, from 1)
  std::int32_t procedure = 0;    // procedure ID in force at the line
  std::string text;              // CodeLine.Text: the first physical line, trimmed
                                 // (for a rewritten line, all its physical lines
                                 // joined by CR LF, trimmed)
  std::int32_t position = 0;     // index of its first physical line in the module's
                                 // cleaned text (from 1)
  bool isProcedureExit = false;  // CodeLine.IsProcedureExit
  bool behind = false;           // the probe stands behind the line ('B)
  bool rewritten = false;        // a 'zolLine marker, no zolExecuteLine probe of its own
};

// The truth of one procedure ID.
struct TruthProcedure {
  std::int32_t module = 0;
  std::string name;           // as the scanner stores it: "Total", "Pad$", "Value[Get]"
  std::int32_t type = 0;      // 1 Function, 2 Sub, 3 Property
  std::int32_t position = 0;  // index of the head's first line in the cleaned text
  bool isProfiled = false;    // timed and not dead
  bool isCovered = false;     // has a zolExecuteLine probe
  bool isCritical = false;
  bool isDead = false;
  std::vector<std::int32_t> lines;  // its line IDs, in source order
};

struct TruthModule {
  std::string FileName;  // as the .vbp names it
  std::string Name;      // VB_Name
  std::int32_t Type = 0;
  // What each line of the cleaned text stands for, one entry per line (the
  // scanner's table may be longer; the rest is blank).
  Array1<zol::RTFLine> RTFLine;
};

struct InstrumentTruth {
  Array1<TruthModule> Modules;
  Array1<TruthProcedure> Procedures;
  Array1<TruthLine> Lines;
  std::string ListOfProc;    // every procedure head's name (without accessor), each behind a CR
                             // and after a leading CR, as the scanner lists them
  std::string ListOfModule;  // likewise the module names
  bool ContainsCritical = false;
};

// Instruments the project `originalVbp` into `outputVbp`. Each module is
// written where it lies relative to the original project file, relative to
// the new one (so "..\Common\Util.bas" lands in the output's sibling folder
// "Common"); line ends are kept as each file has them. Throws
// std::runtime_error naming the file for a project or module it can't read.
InstrumentTruth InstrumentProject(const std::string& originalVbp, const std::string& outputVbp,
                                  const InstrumentOptions& options = {});

}  // namespace zol::fixture
