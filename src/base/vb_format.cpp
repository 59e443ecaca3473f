#include "base/vb_format.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace zol {
namespace {

enum class TokenKind { Zero, Hash, Point, Percent, Literal };

struct Token {
  TokenKind kind;
  std::string text;  // for literals
};

struct Pattern {
  std::vector<Token> tokens;
  int intPlaces = 0;
  int percents = 0;
  std::vector<bool> fracIsZero;  // one entry per placeholder behind the point
};

void AddLiteral(std::vector<Token>& tokens, std::string_view text) {
  if (!tokens.empty() && tokens.back().kind == TokenKind::Literal) {
    tokens.back().text.append(text);
  } else {
    tokens.push_back({TokenKind::Literal, std::string(text)});
  }
}

Pattern ParsePattern(std::string_view pattern) {
  Pattern p;
  bool afterPoint = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char c = pattern[i];
    if (c == '0' || c == '#') {
      p.tokens.push_back({c == '0' ? TokenKind::Zero : TokenKind::Hash, {}});
      if (afterPoint) {
        p.fracIsZero.push_back(c == '0');
      } else {
        ++p.intPlaces;
      }
    } else if (c == '.' && !afterPoint) {
      p.tokens.push_back({TokenKind::Point, {}});
      afterPoint = true;
    } else if (c == '%') {
      p.tokens.push_back({TokenKind::Percent, {}});
      ++p.percents;
    } else if (c == '\\' && i + 1 < pattern.size()) {
      AddLiteral(p.tokens, pattern.substr(++i, 1));
    } else if (c == '"') {
      const std::size_t close = pattern.find('"', i + 1);
      const std::size_t end = close == std::string_view::npos ? pattern.size() : close;
      AddLiteral(p.tokens, pattern.substr(i + 1, end - i - 1));
      i = end;
    } else {
      AddLiteral(p.tokens, pattern.substr(i, 1));
    }
  }
  return p;
}

// The magnitude's digits after rounding to `decimals` places: integer digits
// without leading zeros (empty for 0) and exactly `decimals` fraction digits.
struct FixedDigits {
  std::string intDigits;
  std::string fracDigits;
};

// Adds one unit in the last place of a digit string; returns true if the
// carry ran out of the front (the string was all nines, now all zeros).
bool IncrementDigits(std::string& digits) {
  for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
    if (*it != '9') {
      ++*it;
      return false;
    }
    *it = '0';
  }
  return true;
}

FixedDigits ToFixedDigits(double magnitude, int shift10, int decimals) {
  // 15 significant digits: d.dddddddddddddde+XX
  char buf[64];
  const auto res =
      std::to_chars(buf, buf + sizeof buf, magnitude, std::chars_format::scientific, 14);
  const std::string_view sci(buf, static_cast<std::size_t>(res.ptr - buf));
  const std::size_t ePos = sci.find('e');
  std::string digits;
  digits.push_back(sci[0]);
  digits.append(sci.substr(2, ePos - 2));
  const int exponent = std::atoi(std::string(sci.substr(ePos + 1)).c_str()) + shift10;

  int pointPos = exponent + 1;  // digits standing before the decimal mark
  const int keep = pointPos + decimals;
  if (keep < 0) {
    digits.clear();  // far below half a unit of the last place
    pointPos = -decimals;
  } else if (keep >= static_cast<int>(digits.size())) {
    digits.append(static_cast<std::size_t>(keep) - digits.size(), '0');
  } else {
    const bool roundUp = digits[static_cast<std::size_t>(keep)] >= '5';
    digits.resize(static_cast<std::size_t>(keep));
    if (roundUp && IncrementDigits(digits)) {
      digits.insert(digits.begin(), '1');
      ++pointPos;
    }
  }

  FixedDigits out;
  if (pointPos <= 0) {
    out.fracDigits = std::string(static_cast<std::size_t>(-pointPos), '0') + digits;
  } else {
    out.intDigits = digits.substr(0, static_cast<std::size_t>(pointPos));
    out.fracDigits = digits.substr(static_cast<std::size_t>(pointPos));
  }
  const std::size_t firstNonZero = out.intDigits.find_first_not_of('0');
  out.intDigits.erase(0, firstNonZero == std::string::npos ? out.intDigits.size() : firstNonZero);
  return out;
}

// How many fraction digits are written: every "0" placeholder, and "#"
// placeholders up to the last digit that is not zero.
std::size_t ShownFractionDigits(const Pattern& p, const std::string& fracDigits) {
  std::size_t shown = 0;
  for (std::size_t k = 0; k < p.fracIsZero.size(); ++k) {
    if (p.fracIsZero[k] || fracDigits[k] != '0') shown = k + 1;
  }
  return shown;
}

std::string Render(const Pattern& p, const FixedDigits& d, bool negative) {
  std::string out;
  if (negative) out.push_back('-');
  const int intLen = static_cast<int>(d.intDigits.size());
  const std::size_t fracShown = ShownFractionDigits(p, d.fracDigits);
  int intIndex = 0;
  std::size_t fracIndex = 0;
  bool afterPoint = false;
  // With no integer placeholder at all, the integer digits go before the
  // decimal mark (or at the end if there is none).
  const bool digitsWithoutPlace = p.intPlaces == 0;
  for (const Token& t : p.tokens) {
    switch (t.kind) {
      case TokenKind::Zero:
      case TokenKind::Hash:
        if (afterPoint) {
          if (fracIndex < fracShown) out.push_back(d.fracDigits[fracIndex]);
          ++fracIndex;
        } else {
          const int fromRight = p.intPlaces - 1 - intIndex;
          if (intIndex == 0 && intLen > p.intPlaces) {
            out.append(d.intDigits, 0, static_cast<std::size_t>(intLen - p.intPlaces));
          }
          if (fromRight < intLen) {
            out.push_back(d.intDigits[static_cast<std::size_t>(intLen - 1 - fromRight)]);
          } else if (t.kind == TokenKind::Zero) {
            out.push_back('0');
          }
          ++intIndex;
        }
        break;
      case TokenKind::Point:
        if (digitsWithoutPlace) out.append(d.intDigits);
        out.push_back('.');
        afterPoint = true;
        break;
      case TokenKind::Percent:
        out.push_back('%');
        break;
      case TokenKind::Literal:
        out.append(t.text);
        break;
    }
  }
  if (digitsWithoutPlace && !afterPoint) out.append(d.intDigits);
  return out;
}

}  // namespace

std::string Format(double value, std::string_view pattern) {
  if (pattern.empty() || !std::isfinite(value)) return CStr(value);
  const Pattern p = ParsePattern(pattern);
  const FixedDigits digits =
      ToFixedDigits(std::fabs(value), 2 * p.percents, static_cast<int>(p.fracIsZero.size()));
  return Render(p, digits, value < 0);
}

std::string CStr(double value) {
  if (value == 0) return "0";  // also for -0
  char buf[64];
  const auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::general, 15);
  std::string out(buf, res.ptr);
  for (char& c : out) {
    if (c == 'e') c = 'E';
  }
  return out;
}

}  // namespace zol
