#include "grid/cell_text.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <system_error>

#include "base/numbers.h"
#include "base/text.h"
#include "base/vb_format.h"

namespace zol {

namespace {

constexpr int kSignificant = 15;

// The common case quickly: a value from 0 to below a million with up to six
// decimals keeps at least nine decimals in its 15 significant digits, so
// unless its scaled fraction lies within a thousandth of a half, rounding the
// scaled value directly gives the digits that Format gives.
constexpr double kScale[] = {1, 10, 100, 1000, 10000, 100000, 1000000};

// The digits of the fast case as one whole number: value * 10^decimals
// rounded; false where the fast case doesn't hold.
bool FastScaled(double value, int decimals, unsigned long long& n) {
  if (!(value >= 0 && value < 1000000) || decimals < 0 || decimals > 6) return false;
  const double scaled = value * kScale[decimals];
  // Below 10^12 and not negative, dropping the fraction is the floor, and
  // it takes one instruction where the floor is a call.
  const auto whole = static_cast<unsigned long long>(scaled);
  const double fraction = scaled - static_cast<double>(whole);
  if (std::fabs(fraction - 0.5) < 0.001) return false;
  n = whole + (fraction > 0.5 ? 1 : 0);
  return true;
}

bool FastFixedText(double value, int decimals, std::string& out) {
  unsigned long long n = 0;
  if (!FastScaled(value, decimals, n)) return false;
  char digits[24];
  int count = 0;
  do {
    digits[count++] = static_cast<char>('0' + n % 10);
    n /= 10;
  } while (n != 0 || count <= decimals);
  out.clear();
  for (int k = count - 1; k >= 0; --k) {
    out.push_back(digits[k]);
    if (k == decimals) out.push_back('.');
  }
  return true;
}

}  // namespace

std::string FixedText(double value, int decimals) {
  if (std::string fast; FastFixedText(value, decimals, fast)) return fast;
  if (!std::isfinite(value) || decimals < 1 || decimals > kSignificant) {
    return Format(value,
                  "0." + std::string(static_cast<std::size_t>(decimals > 0 ? decimals : 0), '0'));
  }
  // The value to 15 significant digits, d.dddddddddddddde+XX, then rounded
  // half up in decimal to the places shown, as Format does.
  char sci[32];
  const auto res =
      std::to_chars(sci, sci + sizeof sci - 1, std::fabs(value), std::chars_format::scientific, 14);
  // to_chars writes no terminator, and strtol below reads the exponent up to
  // the first byte that is not a digit: a digit left behind on the stack
  // would become part of it.
  *res.ptr = '\0';
  char digits[kSignificant + 1];
  digits[0] = sci[0];
  for (int k = 1; k < kSignificant; ++k) digits[k] = sci[k + 1];
  const char* e = sci + kSignificant + 2;  // behind the 'e'
  const int exponent = static_cast<int>(std::strtol(e, nullptr, 10));

  int pointPos = exponent + 1;  // digits before the decimal mark
  int keep = pointPos + decimals;
  int count = kSignificant;  // digits in use
  bool leadingOne = false;   // a carry ran out of the front
  if (keep < 0) {
    count = 0;
    pointPos = -decimals;
  } else if (keep < kSignificant) {
    const bool roundUp = digits[keep] >= '5';
    count = keep;
    if (roundUp) {
      int k = keep - 1;
      while (k >= 0 && digits[k] == '9') digits[k--] = '0';
      if (k >= 0) {
        ++digits[k];
      } else {
        leadingOne = true;
      }
    }
  }
  // The digit at position p (0 = first significant digit); zeros past the end.
  const auto digitAt = [&](int p) -> char {
    if (leadingOne) {
      if (p == 0) return '1';
      --p;
    }
    return p >= 0 && p < count ? digits[p] : '0';
  };
  if (leadingOne) ++pointPos;

  std::string out;
  out.reserve(static_cast<std::size_t>(std::max(pointPos, 1) + decimals + 2));
  if (value < 0) out.push_back('-');
  // Integer part without leading zeros, "0" when there is none.
  int first = 0;
  while (first < pointPos && digitAt(first) == '0') ++first;
  if (first >= pointPos) {
    out.push_back('0');
  } else {
    for (int p = first; p < pointPos; ++p) out.push_back(digitAt(p));
  }
  out.push_back('.');
  for (int p = pointPos; p < pointPos + decimals; ++p) out.push_back(digitAt(p));
  return out;
}

std::string PercentText(double x) {
  if (x == 0) return "0%";
  if (x == 1) return "100%";
  return FixedText(RoundHalfEven(x * 10000) / 100, 1) + "%";
}

std::optional<double> ParseCellNumber(std::string_view text) {
  // Cells are mostly plain numbers such as "12" or "0.004567": read those
  // straight away, and anything else the long way.
  double value = 0;
  const char* end = text.data() + text.size();
  if (!text.empty() && text.front() != '-' && text.front() != '+') {
    const auto res = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    if (res.ec == std::errc() && res.ptr == end) return value;
  }
  return ParseNumberText(text);
}

double DisplayedFixed(double value, int decimals) {
  // The text of the fast case is the whole number n with the decimal mark
  // put in: n / 10^decimals is that decimal correctly rounded, as parsing
  // the text gives it (n stays far below 2^53, the power of ten is exact).
  if (unsigned long long n = 0; FastScaled(value, decimals, n)) {
    return static_cast<double>(n) / kScale[decimals];
  }
  const std::string text = FixedText(value, decimals);
  return ParseCellNumber(text).value_or(0);
}

double DisplayedPercent(double x) {
  if (x == 0) return 0;
  if (x == 1) return 100;
  return DisplayedFixed(RoundHalfEven(x * 10000) / 100, 1);
}

std::size_t TimeTextLength(double seconds) {
  // "0.000000" and longer: digits before the mark, the mark and six decimals.
  unsigned long long n = 0;
  if (FastScaled(seconds, 6, n)) {
    std::size_t digits = 1;
    for (unsigned long long whole = n / 1000000; whole >= 10; whole /= 10) ++digits;
    return digits + 7;
  }
  return TimeText(seconds).size();
}

std::size_t PercentTextLength(double x) {
  if (x == 0) return 2;
  if (x == 1) return 4;
  const double percent = RoundHalfEven(x * 10000) / 100;
  unsigned long long n = 0;
  if (FastScaled(percent, 1, n)) {
    std::size_t digits = 1;
    for (unsigned long long whole = n / 10; whole >= 10; whole /= 10) ++digits;
    return digits + 3;  // the mark, one decimal and "%"
  }
  return PercentText(x).size();
}

}  // namespace zol
