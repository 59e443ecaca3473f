#include "support/vb_statements.h"

#include <array>
#include <cctype>

namespace zol::fixture {

namespace {

bool StartsWith(std::string_view s, std::string_view p) {
  return s.substr(0, p.size()) == p;
}

bool EndsContinued(std::string_view line) {
  std::size_t e = line.size();
  while (e > 0 && line[e - 1] == ' ') --e;
  return e >= 2 && line.substr(e - 2, 2) == " _";
}

bool IsIdentStart(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) || c == '_';
}
bool IsIdentChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

// The next blank-separated word of `s` from `pos`, which moves behind it.
std::string NextWord(const std::string& s, std::size_t& pos) {
  while (pos < s.size() && s[pos] == ' ') ++pos;
  const std::size_t start = pos;
  while (pos < s.size() && s[pos] != ' ' && s[pos] != '(') ++pos;
  return s.substr(start, pos - start);
}

bool IsLabel(const std::string& code) {
  if (code.size() < 2 || code.back() != ':' || !IsIdentStart(code.front())) return false;
  for (std::size_t i = 1; i + 1 < code.size(); ++i) {
    if (!IsIdentChar(code[i])) return false;
  }
  return true;
}

bool LeavesProcedure(const std::string& code) {
  if (!StartsWith(code, "If ")) return false;
  const std::size_t then = code.find(" Then ");
  if (then == std::string::npos) return false;
  const std::string rest = TrimBlanks(code.substr(then + 6));
  if (rest.empty()) return false;
  for (const char* exit : {"Exit Sub", "Exit Function", "Exit Property"}) {
    if (rest.find(exit) != std::string::npos) return true;
  }
  return false;
}

}  // namespace

std::string TrimBlanks(std::string_view s) {
  std::size_t b = 0;
  std::size_t e = s.size();
  while (b < e && s[b] == ' ') ++b;
  while (e > b && s[e - 1] == ' ') --e;
  return std::string(s.substr(b, e - b));
}

std::string Statement::Code() const {
  std::string code;
  for (const std::string& line : lines) {
    std::string t = TrimBlanks(line);
    if (EndsContinued(line)) t.pop_back();
    code += t;
  }
  return code;
}

std::string Statement::FirstTrimmed() const {
  return TrimBlanks(lines.front());
}

std::string Statement::Indent() const {
  const std::string& l = lines.front();
  std::size_t n = 0;
  while (n < l.size() && (l[n] == ' ' || l[n] == '\t')) ++n;
  return l.substr(0, n);
}

std::vector<Statement> GroupStatements(const std::vector<std::string>& lines) {
  std::vector<Statement> out;
  std::int32_t position = 0;
  for (std::size_t i = 0; i < lines.size();) {
    Statement st;
    st.lines.push_back(lines[i++]);
    while (EndsContinued(st.lines.back()) && i < lines.size()) st.lines.push_back(lines[i++]);
    st.attribute = StartsWith(st.FirstTrimmed(), "Attribute ");
    if (!st.attribute) {
      st.position = position + 1;
      position += static_cast<std::int32_t>(st.lines.size());
    }
    out.push_back(std::move(st));
  }
  return out;
}

std::optional<ProcedureHead> RecognizeHead(const std::string& code) {
  std::size_t pos = 0;
  std::string word = NextWord(code, pos);
  while (word == "Public" || word == "Private" || word == "Friend" || word == "Static") {
    word = NextWord(code, pos);
  }
  ProcedureHead head;
  if (word == "Sub") {
    head.type = 2;
  } else if (word == "Function") {
    head.type = 1;
  } else if (word == "Property") {
    head.type = 3;
    head.accessor = NextWord(code, pos);
    if (head.accessor != "Get" && head.accessor != "Let" && head.accessor != "Set") return {};
  } else {
    return {};
  }
  head.exitStatement = "Exit " + word;
  head.endStatement = "End " + word;
  while (pos < code.size() && code[pos] == ' ') ++pos;
  if (pos >= code.size() || !IsIdentStart(code[pos])) return {};
  const std::size_t start = pos;
  while (pos < code.size() && IsIdentChar(code[pos])) ++pos;
  if (pos < code.size() && std::string_view("%&!#$@").find(code[pos]) != std::string_view::npos) {
    ++pos;
  }
  head.name = code.substr(start, pos - start);
  while (pos < code.size() && code[pos] == ' ') ++pos;
  if (pos >= code.size() || code[pos] != '(') return {};
  return head;
}

BodyKind ClassifyBody(const Statement& st, const ProcedureHead& proc) {
  const std::string code = TrimBlanks(CodeOnly(st.Code()));
  if (code.empty() || code == "Rem" || StartsWith(code, "Rem ")) return BodyKind::Plain;
  for (const char* decl : {"Dim ", "Static ", "Const ", "Private Const "}) {
    if (StartsWith(code, decl)) return BodyKind::Plain;
  }
  if (IsLabel(code)) return BodyKind::Plain;
  for (const char* closer : {"End If", "End Select", "End With", "Wend", "Loop", "Next"}) {
    if (code == closer || StartsWith(code, std::string(closer) + " ")) return BodyKind::Plain;
  }
  if (StartsWith(code, "Case ") || code == "Else" || StartsWith(code, "Else ") ||
      StartsWith(code, "Else:") || StartsWith(code, "ElseIf ")) {
    return BodyKind::Behind;
  }
  if (code == proc.endStatement) return BodyKind::End;
  if (code == "Exit Sub" || code == "Exit Function" || code == "Exit Property") {
    return BodyKind::Exit;
  }
  if (LeavesProcedure(code)) return BodyKind::ExitingIf;
  return BodyKind::Before;
}

std::string CodeOnly(std::string_view line) {
  std::string out;
  bool inString = false;
  for (char c : line) {
    if (c == '"') {
      inString = !inString;
      out += c;
    } else if (inString) {
      out += '_';
    } else if (c == '\'') {
      break;
    } else {
      out += c;
    }
  }
  return out;
}

std::string ReplaceInCode(const std::string& line, const std::string& word,
                          const std::string& replacement) {
  const std::string code = CodeOnly(line);
  std::string out = line;
  std::size_t at = code.rfind(word);
  while (at != std::string::npos) {
    out.replace(at, word.size(), replacement);
    if (at == 0) break;
    at = code.rfind(word, at - 1);
  }
  return out;
}

}  // namespace zol::fixture
