#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <system_error>

namespace zol {
namespace {

char FoldAscii(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameChar(char a, char b, CompareMethod compare) {
  return compare == CompareMethod::Binary ? a == b : FoldAscii(a) == FoldAscii(b);
}

bool MatchesAt(std::string_view text, std::size_t at, std::string_view find,
               CompareMethod compare) {
  for (std::size_t k = 0; k < find.size(); ++k) {
    if (!SameChar(text[at + k], find[k], compare)) return false;
  }
  return true;
}

int Length(std::string_view s) {
  return static_cast<int>(s.size());
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsWordChar(char ch) {
  const auto c = static_cast<unsigned char>(ch);
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || c == '_' || (c >= 'a' && c <= 'z') ||
         (c >= 192 && c <= 214) || (c >= 216 && c <= 246) || c >= 248;
}

// Appends the digits at `i` to `out`; returns how many there were.
int TakeDigits(std::string_view s, std::size_t& i, std::string& out) {
  int n = 0;
  while (i < s.size() && IsDigit(s[i])) {
    out.push_back(s[i++]);
    ++n;
  }
  return n;
}

// Reads an exponent ("e", sign, digits) behind the mantissa if `s` has a
// complete one at `i`; appends it to `out` in the form "e-12".
bool TakeExponent(std::string_view s, std::size_t& i, std::string& out, std::string_view marks) {
  if (i >= s.size() || marks.find(s[i]) == std::string_view::npos) return false;
  std::size_t j = i + 1;
  std::string exponent = "e";
  if (j < s.size() && (s[j] == '+' || s[j] == '-')) exponent.push_back(s[j++]);
  if (TakeDigits(s, j, exponent) == 0) return false;
  out += exponent;
  i = j;
  return true;
}

// True if the canonical number `number` (digits, ".", "e" exponent) lies below
// the smallest double rather than above the largest.
bool IsBelowRange(std::string_view number) {
  const std::size_t e = number.find('e');
  const std::string_view mantissa = number.substr(0, e);
  long long exponent = 0;
  if (e != std::string_view::npos) {
    const char* first = number.data() + e + 1;
    const auto res = std::from_chars(first, number.data() + number.size(), exponent);
    if (res.ec == std::errc::result_out_of_range) return *first == '-';
  }
  std::size_t point = mantissa.find('.');
  if (point == std::string_view::npos) point = mantissa.size();
  const std::size_t firstNonZero = mantissa.find_first_not_of("0.");
  if (firstNonZero == std::string_view::npos) return true;
  const long long magnitude = firstNonZero < point
                                  ? static_cast<long long>(point - firstNonZero)
                                  : -static_cast<long long>(firstNonZero - point - 1);
  return magnitude + exponent <= 0;
}

// Converts a canonical number text; nothing if it lies beyond the range of
// a double (numbers too small for it read 0).
std::optional<double> ConvertCanonical(const std::string& number) {
  double value = 0;
  const auto res = std::from_chars(number.data(), number.data() + number.size(), value);
  if (res.ec == std::errc::result_out_of_range) {
    if (IsBelowRange(number)) return 0.0;
    return std::nullopt;
  }
  return value;
}

}  // namespace

int InStr(int start, std::string_view text, std::string_view find, CompareMethod compare) {
  start = std::max(start, 1);
  if (text.empty()) return 0;
  if (find.empty()) return start <= Length(text) + 1 ? start : 0;
  if (find.size() > text.size()) return 0;
  const std::size_t last = text.size() - find.size();
  for (auto at = static_cast<std::size_t>(start - 1); at <= last; ++at) {
    if (MatchesAt(text, at, find, compare)) return static_cast<int>(at) + 1;
  }
  return 0;
}

int InStr(std::string_view text, std::string_view find) {
  return InStr(1, text, find);
}

int InStrRev(std::string_view text, std::string_view find, int start, CompareMethod compare) {
  if (start == -1) start = Length(text);
  if (text.empty() || start < 1 || start > Length(text)) return 0;
  if (find.empty()) return start;
  for (int at = start - Length(find) + 1; at >= 1; --at) {
    if (MatchesAt(text, static_cast<std::size_t>(at - 1), find, compare)) return at;
  }
  return 0;
}

std::string Mid(std::string_view s, int start, int length) {
  start = std::max(start, 1);
  if (start > Length(s) || length == 0) return {};
  const std::string_view rest = s.substr(static_cast<std::size_t>(start - 1));
  if (length < 0) return std::string(rest);
  return std::string(rest.substr(0, static_cast<std::size_t>(length)));
}

std::string Left(std::string_view s, int n) {
  return n <= 0 ? std::string() : std::string(s.substr(0, static_cast<std::size_t>(n)));
}

std::string Right(std::string_view s, int n) {
  if (n <= 0) return {};
  if (n >= Length(s)) return std::string(s);
  return std::string(s.substr(s.size() - static_cast<std::size_t>(n)));
}

std::string LCase(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = FoldAscii(c);
  return out;
}

std::string UCase(std::string_view s) {
  std::string out(s);
  for (char& c : out) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return out;
}

std::string LTrim(std::string_view s) {
  const std::size_t first = s.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : std::string(s.substr(first));
}

std::string RTrim(std::string_view s) {
  const std::size_t last = s.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string() : std::string(s.substr(0, last + 1));
}

std::string Trim(std::string_view s) {
  return LTrim(RTrim(s));
}

std::string Replace(std::string_view s, std::string_view find, std::string_view repl) {
  if (find.empty()) return std::string(s);
  std::string out;
  std::size_t from = 0;
  for (std::size_t at = s.find(find); at != std::string_view::npos; at = s.find(find, from)) {
    out.append(s.substr(from, at - from)).append(repl);
    from = at + find.size();
  }
  out.append(s.substr(from));
  return out;
}

std::vector<std::string> Split(std::string_view s, std::string_view delim) {
  std::vector<std::string> parts;
  if (s.empty()) return parts;
  if (delim.empty()) return {std::string(s)};
  std::size_t from = 0;
  for (std::size_t at = s.find(delim); at != std::string_view::npos; at = s.find(delim, from)) {
    parts.emplace_back(s.substr(from, at - from));
    from = at + delim.size();
  }
  parts.emplace_back(s.substr(from));
  return parts;
}

bool TextEquals(std::string_view a, std::string_view b, CompareMethod compare) {
  return a.size() == b.size() && MatchesAt(a, 0, b, compare);
}

double Val(std::string_view text) {
  std::string s;
  for (char c : text) {
    if (c != ' ' && c != '\t' && c != '\n') s.push_back(c);
  }
  std::size_t i = 0;
  bool negative = false;
  if (i < s.size() && (s[i] == '+' || s[i] == '-')) negative = s[i++] == '-';
  std::string number;
  int digits = TakeDigits(s, i, number);
  if (i < s.size() && s[i] == '.') {
    number.push_back(s[i++]);
    digits += TakeDigits(s, i, number);
  }
  if (digits == 0) return 0;
  TakeExponent(s, i, number, "eEdD");
  const std::optional<double> value = ConvertCanonical(number);
  if (!value) throw std::range_error("number out of range: \"" + Abbreviated(text) + "\"");
  return negative ? -*value : *value;
}

std::optional<double> ParseNumberText(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return std::nullopt;
  const std::string_view s = text.substr(first, text.find_last_not_of(" \t") - first + 1);
  std::size_t i = 0;
  bool negative = false;
  if (s[i] == '+' || s[i] == '-') negative = s[i++] == '-';
  std::string number;
  int digits = TakeDigits(s, i, number);
  if (i < s.size() && (s[i] == '.' || s[i] == ',')) {
    number.push_back('.');
    ++i;
    digits += TakeDigits(s, i, number);
  }
  if (digits == 0) return std::nullopt;
  TakeExponent(s, i, number, "eE");
  if (i != s.size()) return std::nullopt;
  const std::optional<double> value = ConvertCanonical(number);
  if (!value) return std::nullopt;
  return negative ? -*value : *value;
}

double CDblText(std::string_view text) {
  const std::optional<double> value = ParseNumberText(text);
  if (!value) throw std::invalid_argument("not a number: \"" + std::string(text) + "\"");
  return *value;
}

int Parse(int start, std::string_view text, std::string& word) {
  word.clear();
  std::size_t i = static_cast<std::size_t>(std::max(start, 1) - 1);
  while (i < text.size() && !IsWordChar(text[i])) ++i;
  if (i >= text.size()) return 0;
  const std::size_t begin = i;
  while (i < text.size() && IsWordChar(text[i])) ++i;
  word.assign(text.substr(begin, i - begin));
  return static_cast<int>(begin) + 1;
}

std::string RTrimEx(std::string_view s, std::string_view t) {
  if (t.empty()) return std::string(s);
  while (s.size() >= t.size() && s.substr(s.size() - t.size()) == t) s.remove_suffix(t.size());
  return std::string(s);
}

std::string TrimEx(std::string_view s, std::string_view t) {
  if (t.empty()) return std::string(s);
  // Once the left end is free of `t`, cutting at the right can't bring it back.
  while (s.substr(0, t.size()) == t) s.remove_prefix(t.size());
  return RTrimEx(s, t);
}

std::string StringEx(int n, std::string_view s) {
  std::string out;
  if (n <= 0) return out;
  out.reserve(s.size() * static_cast<std::size_t>(n));
  for (int k = 0; k < n; ++k) out.append(s);
  return out;
}

int StrCount(std::string_view text, std::string_view find, int start, CompareMethod compare) {
  if (find.empty()) return 0;
  int count = 0;
  for (int at = InStr(start, text, find, compare); at > 0;
       at = InStr(at + 1, text, find, compare)) {
    ++count;
  }
  return count;
}

std::string TruncateString(std::string_view s, int n) {
  if (Length(s) > n + 3) return Left(s, n) + "...";
  return std::string(s);
}

std::string GetLine(int& pos, std::string_view text) {
  if (pos <= 0) {
    pos = 0;
    return {};
  }
  const int crlf = InStr(pos, text, "\r\n");
  if (crlf == 0) {
    std::string line = Mid(text, pos);
    pos = 0;
    return line;
  }
  std::string line = Mid(text, pos, crlf - pos);
  pos = crlf + 2;
  return line;
}

std::string Abbreviated(std::string_view text, std::size_t max) {
  if (text.size() <= max) return std::string(text);
  return std::string(text.substr(0, max)) + "...";
}

}  // namespace zol
