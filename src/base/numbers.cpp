#include "base/numbers.h"

#include <cmath>
#include <stdexcept>

#include "base/text.h"
#include "base/vb_format.h"

namespace zol {
namespace {

double PowerOfTen(int exponent) {
  return std::pow(10.0, exponent);
}

std::string ZerosPattern(int decimals) {
  return "0." + std::string(std::max(decimals, 0), '0');
}

}  // namespace

double RoundHalfEven(double x) {
  const double below = std::floor(x);
  const double diff = x - below;  // exact for every double
  if (diff < 0.5) return below;
  if (diff > 0.5) return below + 1;
  return std::fmod(below, 2.0) == 0 ? below : below + 1;
}

double Log10(double x) {
  if (!(x > 0)) throw std::domain_error("logarithm of a value that is not above 0");
  return std::log(x) / std::log(10.0);
}

std::string FormatPercentage(double x) {
  if (x == 0) return "0%";
  if (x == 1) return "100%";
  return Format(RoundHalfEven(x * 10000) / 100, "0.0") + "%";
}

std::string FormatSignificant(double x, int n, bool pad) {
  if (pad && x == 0) return Format(0, ZerosPattern(n - 1));
  const std::string whole = CStr(RoundHalfEven(x));
  if (x >= PowerOfTen(n - 1) || x == 0) return whole;
  const int e = std::max(static_cast<int>(std::floor(Log10(std::fabs(x)))), 0);
  const double k = RoundHalfEven(PowerOfTen(n - 1 - e));
  // Only a negative value with more than n integer digits gets here with no
  // decimal to keep; it is shown whole, like its positive counterpart.
  if (k < 1) return whole;
  const double v = RoundHalfEven(x * k) / k;
  return pad ? Format(v, ZerosPattern(n - e - 1)) : CStr(v);
}

double Prorata(double x, double a, double b, double c, double d, bool limit) {
  if (d == b) throw std::domain_error("proportional map over an empty range");
  const double result = a + (c - a) * (x - b) / (d - b);
  if (limit) {
    if (result > a && result > c) return std::max(a, c);
    if (result < a && result < c) return std::min(a, c);
  }
  return result;
}

double VersionToDouble(std::string_view text) {
  const int pos1 = InStr(text, ".");
  if (pos1 == 0) return 0;
  const int pos2 = InStr(pos1 + 1, text, ".");
  if (pos2 == 0) return 0;
  return Val(Left(text, pos1 - 1)) * 100000000 + Val(Mid(text, pos1 + 1, pos2 - pos1 - 1)) * 10000 +
         Val(Mid(text, pos2 + 1));
}

}  // namespace zol
