#pragma once

// Small numeric helpers shared by the grids, charts, pages and readers. They
// share one arithmetic so that every view agrees: rounding is to the nearest
// even integer on halves (as the profiled language's Round does, so figures
// match what its users compute), and logarithms are taken as ln(x) / ln(10)
// so that borderline values such as 1000 land in the same decade everywhere.

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace zol {

// Nearest whole number, halves to the even one: 0.5 -> 0, 1.5 -> 2, -2.5 -> -2.
double RoundHalfEven(double x);

// ln(x) / ln(10). Throws std::domain_error for x <= 0.
double Log10(double x);

// "0%" for 0, "100%" for exactly 1, otherwise the percentage with one decimal:
// 0.12345 -> "12.3%", 0.999999 -> "100.0%".
std::string FormatPercentage(double x);

// `x` to `n` significant digits. With `pad` the text keeps trailing zeros
// ("1.500000" for n = 7), without it the shortest plain form ("1.5").
std::string FormatSignificant(double x, int n, bool pad);

// Linear map taking b to a and d to c: a + (c - a) * (x - b) / (d - b). With
// `limit` the result is kept between a and c. Throws std::domain_error if
// b equals d.
double Prorata(double x, double a, double b, double c, double d, bool limit = false);

// "major.minor.revision" as one comparable number: "1.2.3" -> 100020003.
// A text with fewer than two dots gives 0.
double VersionToDouble(std::string_view text);

inline std::int32_t MaxLong2(std::int32_t a, std::int32_t b) {
  return a > b ? a : b;
}

template <typename T>
void Swap(T& a, T& b) {
  using std::swap;
  swap(a, b);
}

// Largest and smallest of a list; the first element is the start value, so of
// equal values the first one wins.
template <typename T>
T Max(std::initializer_list<T> values) {
  auto it = values.begin();
  T result = *it;
  for (++it; it != values.end(); ++it) {
    if (*it > result) result = *it;
  }
  return result;
}
template <typename T>
T Min(std::initializer_list<T> values) {
  auto it = values.begin();
  T result = *it;
  for (++it; it != values.end(); ++it) {
    if (*it < result) result = *it;
  }
  return result;
}
template <typename First, typename... Rest>
requires(sizeof...(Rest) > 0) auto Max(First first, Rest... rest) {
  using T = std::common_type_t<First, Rest...>;
  return Max<T>({static_cast<T>(first), static_cast<T>(rest)...});
}
template <typename First, typename... Rest>
requires(sizeof...(Rest) > 0) auto Min(First first, Rest... rest) {
  using T = std::common_type_t<First, Rest...>;
  return Min<T>({static_cast<T>(first), static_cast<T>(rest)...});
}

// `x` kept within [lo, hi]; bounds given the wrong way round are exchanged
// first, so Clamp(5, 20, 1) is 5.
template <typename X, typename L, typename H>
auto Clamp(X x, L lo, H hi) {
  using T = std::common_type_t<X, L, H>;
  T low = lo;
  T high = hi;
  if (low > high) std::swap(low, high);
  if (x < low) return low;
  if (x > high) return high;
  return static_cast<T>(x);
}

// The running sums of the grids: a becomes a + b.
template <typename A, typename B>
void Increment(A& a, const B& b) {
  a += b;
}

}  // namespace zol
