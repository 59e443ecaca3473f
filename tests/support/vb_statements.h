#pragma once

// The instrumenter's reading of Visual Basic 6 source: physical lines grouped
// into statements, procedure heads, and what kind of statement a body line is.
// It is written apart from the profiler's own parser, so that the tests compare
// two readings of the same text.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zol::fixture {

// One statement: its physical lines (a continued statement has several).
struct Statement {
  std::vector<std::string> lines;
  bool attribute = false;     // an "Attribute ..." line, hidden by the IDE
  std::int32_t position = 0;  // index of its first line in the shown text; 0 for attributes
  std::string Code() const;   // the lines trimmed and joined, continuations removed
  std::string FirstTrimmed() const;
  std::string Indent() const;  // the blanks and tabs that start its first line
};

// Groups `lines` into statements; positions count every line that isn't an
// attribute, from 1.
std::vector<Statement> GroupStatements(const std::vector<std::string>& lines);

struct ProcedureHead {
  std::int32_t type = 0;      // 1 Function, 2 Sub, 3 Property
  std::string name;           // with its type character ("Pad$")
  std::string accessor;       // "Get", "Let" or "Set" for a property
  std::string exitStatement;  // "Exit Sub", ...
  std::string endStatement;   // "End Sub", ...
};

// A procedure declaration: modifiers, Sub/Function/Property (with accessor),
// a name and its parameter list. Declare statements and events are not.
std::optional<ProcedureHead> RecognizeHead(const std::string& code);

enum class BodyKind {
  Plain,      // blank, comment, declaration, label, block closer: no probe
  Before,     // an executable statement: probe in front
  Behind,     // Case, Else, ElseIf: probe behind
  Exit,       // Exit Sub/Function/Property
  End,        // the end of the procedure
  ExitingIf,  // a single-line If that leaves the procedure
};

BodyKind ClassifyBody(const Statement& st, const ProcedureHead& proc);

// The code of a line without string contents and without its comment: every
// character inside quotes becomes "_", and the text stops at a "'" outside them.
std::string CodeOnly(std::string_view line);

// `line` with every `word` in its code part (outside strings and comment)
// replaced by `replacement`.
std::string ReplaceInCode(const std::string& line, const std::string& word,
                          const std::string& replacement);

std::string TrimBlanks(std::string_view s);

}  // namespace zol::fixture
