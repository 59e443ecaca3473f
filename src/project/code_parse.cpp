#include "project/code_parse.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace zol {

namespace {

constexpr int kNoStructure = 32767;

int Len(std::string_view s) {
  return static_cast<int>(s.size());
}

bool IsBlankOrTab(char c) {
  return c == ' ' || c == '\t';
}

// The character at 1-based position `pos`, or 0 past either end.
char CharAt(std::string_view s, int pos) {
  return (pos >= 1 && pos <= Len(s)) ? s[static_cast<std::size_t>(pos - 1)] : '\0';
}

bool OddQuotesBefore(std::string_view code, int pos) {
  const auto end = static_cast<std::size_t>(std::clamp(pos - 1, 0, Len(code)));
  return std::count(code.begin(), code.begin() + static_cast<std::ptrdiff_t>(end), '"') % 2 == 1;
}

// A character that may follow "Rem" when it opens a comment: anything but a
// letter, digit, "@", "`", or a character above "~".
bool EndsRemWord(char c) {
  const auto u = static_cast<unsigned char>(c);
  return (u >= ' ' && u <= '/') || (u >= ':' && u <= '?') || (u >= '[' && u <= '_') ||
         (u >= '{' && u <= '~');
}

// The walk for a "Rem" that follows a ":" (directly, or behind blanks). Returns
// the position of the ":"-side match, 0 when there is none.
int FindRemAfterColon(std::string_view code, std::string_view lower) {
  int from = 1;
  for (;;) {
    int match = 0;
    int found = InStr(from, lower, ":rem");
    int word = found + 1;
    if (found == 0) {
      found = InStr(from, lower, " rem");
      if (found == 0) return 0;
      word = found + 1;
      const std::string before = RTrim(lower.substr(0, static_cast<std::size_t>(found)));
      if (!before.empty() && before.back() == ':') match = Len(before);
    } else {
      match = found;
    }
    if (match != 0 && !InStringLiteral(code, match)) {
      const int behind = word + 3;
      if (behind > Len(code) || EndsRemWord(CharAt(code, behind))) return match;
    }
    from = found + 1;
  }
}

// --- GetNextStructure ---

struct Candidate {
  int pos = 0;
  StructureType type = kStructNone;
  int len = 0;
};

struct DeclarationWord {
  std::string_view word;
  StructureType declType;
  StructureType exitType;
};

constexpr DeclarationWord kSubWord{"Sub", kStructSub, kStructExitSub};
constexpr DeclarationWord kFunctionWord{"Function", kStructFunction, kStructExitFunction};
constexpr DeclarationWord kPropertyWord{"Property", kStructProperty, kStructExitProperty};

bool IsAccessor(std::string_view s, int pos) {
  const std::string five = Mid(s, pos + 8, 5);
  return five == " Get " || five == " Set " || five == " Let ";
}

// The text behind a declared name must open its parameter list (possibly
// behind a type character, a blank or a continuation).
bool OpensParameterList(std::string_view s, int after) {
  static constexpr std::array<std::string_view, 8> kOpeners{"%(", "&(", "!(", "#(",
                                                            "$(", "@(", " _", " ("};
  const std::string two = Mid(s, after, 2);
  return std::find(kOpeners.begin(), kOpeners.end(), two) != kOpeners.end() ||
         CharAt(s, after) == '(';
}

// Judges a hit of "Sub", "Function" or "Property" at `pos`: an Exit statement,
// a declaration, the routine of a Declare statement, or nothing.
Candidate JudgeDeclaration(std::string_view s, int pos, int startPos, const DeclarationWord& w) {
  const int wlen = Len(w.word);
  if (pos >= 6 && Mid(s, pos - 5, 5 + wlen) == "Exit " + std::string(w.word)) {
    return {pos - 5, w.exitType, 5 + wlen};
  }
  if (CharAt(s, pos + wlen) != ' ') return {};
  const bool isProperty = w.declType == kStructProperty;
  int identStart = pos + wlen + 1;
  if (isProperty) {
    // The accessor word and its blank: "Get ".
    if (CharAt(s, pos + wlen + 4) != ' ') return {};
    identStart += 4;
  }
  std::string ident;
  if (Parse(identStart, s, ident) != identStart) return {};

  // A Declare statement names its library behind the routine's name, so it is
  // told apart before the parameter list is looked for.
  if (!isProperty && pos != startPos && pos >= 9 &&
      (InStr(pos - 8, s, "Declare Sub") > 0 || InStr(pos - 8, s, "Declare Function") > 0)) {
    return {pos, kStructDeclare, wlen};
  }
  if (!OpensParameterList(s, identStart + Len(ident))) return {};
  if (isProperty && !IsAccessor(s, pos)) return {};
  return {pos, w.declType, isProperty ? 12 : wlen};
}

// A keyword hit that needs no more than a look at the whole line.
Candidate JudgeSimple(std::string_view s, int pos, std::string_view keyword, StructureType type) {
  if (type == kStructCase && UCase(LTrim(s)).rfind("CASE ", 0) != 0) return {};
  if (type == kStructEnd && NoTabTrim(s) != "End") return {};
  return {pos, type, Len(keyword)};
}

struct Keyword {
  std::string_view text;
  StructureType type;
  const DeclarationWord* decl;
};

// The order of the tests: on equal positions the earlier one stands.
constexpr std::array<Keyword, 13> kKeywords{{
    {"Select Case", kStructSelectCase, nullptr},
    {"Case", kStructCase, nullptr},
    {"End Select", kStructEndSelect, nullptr},
    {"End Sub", kStructEndSub, nullptr},
    {"End Function", kStructEndFunction, nullptr},
    {"Sub", kStructSub, &kSubWord},
    {"Function", kStructFunction, &kFunctionWord},
    {"End Property", kStructEndProperty, nullptr},
    {"Property", kStructProperty, &kPropertyWord},
    {"On Error GoTo 0", kStructOnErrorGoto0, nullptr},
    {"Debug.Print", kStructDebugPrint, nullptr},
    {"App.Path", kStructAppPath, nullptr},
    {"End", kStructEnd, nullptr},
}};

constexpr std::array<std::string_view, 9> kQuickWords{
    "Case", "Property", "Func", "Sub", "Select", "On Error", "Debug", "App.Path", "End"};

}  // namespace

bool GetNextStructure(std::string_view SourceString, int StartPos, NextStructure& ns) {
  const std::string_view s = SourceString;
  ns.Structure_Pos = kNoStructure;
  const bool anyKeyword =
      std::any_of(kQuickWords.begin(), kQuickWords.end(),
                  [&](std::string_view w) { return InStr(StartPos, s, w) > 0; });
  if (!anyKeyword) return false;

  for (const Keyword& k : kKeywords) {
    if (InStr(StartPos, s, k.text) == 0) continue;
    const int hit = InStrVB(StartPos, s, k.text, true);
    if (hit == 0) continue;
    const Candidate c = k.decl != nullptr ? JudgeDeclaration(s, hit, StartPos, *k.decl)
                                          : JudgeSimple(s, hit, k.text, k.type);
    if (c.pos == 0 || c.pos >= ns.Structure_Pos) continue;
    ns.Structure_Pos = static_cast<std::int16_t>(c.pos);
    ns.Structure_Type = c.type;
    ns.Structure_Len = static_cast<std::int16_t>(c.len);
    if (c.pos == StartPos) return true;
  }
  if (ns.Structure_Pos != kNoStructure) return true;
  ns = NextStructure{};
  return false;
}

int InStrVB(int StartPos, std::string_view SourceString, std::string_view ElementString,
            bool searchCommentPos) {
  if (ElementString.empty()) return 0;
  std::string_view text = SourceString;
  const int elen = Len(ElementString);
  int pos = InStr(StartPos, text, ElementString);
  if (pos == 0) return 0;
  if (searchCommentPos) {
    const int comment = GetCommentPos(text);
    if (comment > 0) {
      if (pos >= comment) return 0;
      text = text.substr(0, static_cast<std::size_t>(comment - 1));
    }
  }
  while (pos > 0) {
    if (OddQuotesBefore(text, pos)) {
      // Inside a string: go on behind the string's closing quote.
      const int closing = InStr(pos, text, "\"");
      pos = InStr(std::max(pos + elen, closing + 1), text, ElementString);
      continue;
    }
    const bool startOk =
        pos == 1 || IsBlankOrTab(CharAt(text, pos - 1)) || CharAt(text, pos - 1) == ':';
    const char after = CharAt(text, pos + elen);
    const bool endOk = after == '\0' || IsBlankOrTab(after) || after == '\'' || after == ':';
    if (startOk && endOk) return pos;
    pos = InStr(pos + elen, text, ElementString);
  }
  return 0;
}

int GetCommentPos(std::string_view code) {
  if (code.empty()) return 0;
  int indApo = 0;
  for (int p = InStr(1, code, "'"); p > 0; p = InStr(p + 1, code, "'")) {
    if (!InStringLiteral(code, p)) {
      indApo = p;
      break;
    }
  }
  if (indApo == 1) return indApo;

  const std::string lower = LCase(code);
  const int firstRem = InStr(1, lower, "rem");
  if (firstRem == 0) return indApo;
  if (indApo > 0 && firstRem > indApo) return indApo;

  int indRem = 0;
  if (LTrim(lower).rfind("rem ", 0) == 0 || Trim(lower) == "rem") {
    indRem = firstRem;
  } else {
    indRem = FindRemAfterColon(code, lower);
  }
  if (indApo > 0 && indRem > 0) return std::min(indApo, indRem);
  return indApo > 0 ? indApo : indRem;
}

bool InStringLiteral(std::string_view code, int Index) {
  if (Index <= 1) return false;
  return OddQuotesBefore(code, Index);
}

bool IsContinued(std::string_view SourceString) {
  const std::string t = RTrim(SourceString);
  return t.size() >= 2 && t.compare(t.size() - 2, 2, " _") == 0;
}

std::string LNoTabTrim(std::string_view s) {
  std::size_t b = 0;
  while (b < s.size() && IsBlankOrTab(s[b])) ++b;
  return std::string(s.substr(b));
}

std::string RNoTabTrim(std::string_view s) {
  std::size_t e = s.size();
  while (e > 0 && IsBlankOrTab(s[e - 1])) --e;
  return std::string(s.substr(0, e));
}

std::string NoTabTrim(std::string_view s) {
  return LNoTabTrim(RNoTabTrim(s));
}

}  // namespace zol
