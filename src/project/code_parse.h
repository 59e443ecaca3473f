#pragma once

// What the scanner and the source view need to know of Visual Basic 6 source
// text: where the next statement of interest starts in a line, where a comment
// begins, whether a position lies inside a string literal, and whether a line
// goes on over the next one. Positions count from 1; 0 means "none". All
// keyword searches are exact in case, as the IDE writes keywords in one case.

#include <cstdint>
#include <string>
#include <string_view>

namespace zol {

// The statement kinds GetNextStructure reports.
enum StructureType : std::int32_t {
  kStructNone = 0,
  kStructFunction = 1,  // "Function" declaration
  kStructSub = 2,       // "Sub" declaration
  kStructProperty = 3,  // "Property Get/Set/Let" declaration
  kStructEndFunction = 4,
  kStructEndSub = 5,
  kStructEndProperty = 6,
  kStructExitFunction = 7,
  kStructExitSub = 8,
  kStructExitProperty = 9,
  kStructSelectCase = 10,
  kStructCase = 11,  // only on a line that starts with "Case "
  kStructEndSelect = 12,
  kStructOnErrorGoto0 = 13,
  kStructDebugPrint = 14,
  kStructAppPath = 15,
  kStructEnd = 16,      // a line that is "End" and nothing else
  kStructDeclare = 98,  // the Sub or Function of a "Declare" statement
};

// The statement GetNextStructure found: keyword position, type and keyword
// length ("Property Get" counts 12).
struct NextStructure {
  std::int16_t Structure_Pos = 0;
  std::int32_t Structure_Type = kStructNone;
  std::int16_t Structure_Len = 0;
};

// Finds the earliest statement of interest at or behind `StartPos` and fills
// `ns`. Returns false when there is none; the record then holds 0 in all three
// fields, except after the quick refusal of a line that holds none of the
// keywords at all, where only Structure_Pos is touched (set to 32767): read the
// record only when the result is true.
bool GetNextStructure(std::string_view SourceString, int StartPos, NextStructure& ns);

// Position of `ElementString` as a whole word of code at or behind `StartPos`:
// not inside a string literal, and (with searchCommentPos) not inside the
// comment. The character before it must be a blank, ":" or a tab (or none); the
// one behind it a blank, "'", ":" or a tab (or none). 0 when not found.
int InStrVB(int StartPos, std::string_view SourceString, std::string_view ElementString,
            bool searchCommentPos);

// Position where the comment of a line starts: its first "'" outside a string,
// or a "Rem" that starts the line or follows a ":". 0 when the line has none.
// A "Rem" is seen at the start of the line only behind blanks, not tabs.
int GetCommentPos(std::string_view code);

// Whether position `Index` lies inside a string literal: an odd number of
// quotes stands before it. Position 1 or less never does.
bool InStringLiteral(std::string_view code, int Index);

// Whether the line ends in a continuation (" _", trailing blanks ignored).
bool IsContinued(std::string_view SourceString);

// Blanks and tabs (codes 32 and 9) taken off both ends, the left, the right.
std::string NoTabTrim(std::string_view s);
std::string LNoTabTrim(std::string_view s);
std::string RNoTabTrim(std::string_view s);

}  // namespace zol
