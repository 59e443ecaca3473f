#include "flow/arial_metrics.h"

#include <array>
#include <cmath>

#include "base/numbers.h"

namespace zol {

namespace {

// Advances of the characters 32 to 126, per 1000 units of the em.
constexpr std::array<short, 95> kRegular = {
    278, 278, 355, 556, 556, 889, 667,  191, 333, 333, 389, 584, 278, 333, 278, 278,  // sp to /
    556, 556, 556, 556, 556, 556, 556,  556, 556, 556,                                // 0 to 9
    278, 278, 584, 584, 584, 556, 1015,                                               // : to @
    667, 667, 722, 722, 667, 611, 778,  722, 278, 500, 667, 556, 833,                 // A to M
    722, 778, 667, 778, 722, 667, 611,  722, 667, 944, 667, 667, 611,                 // N to Z
    278, 278, 278, 469, 556, 333,                                                     // [ to `
    556, 556, 500, 556, 556, 278, 556,  556, 222, 222, 500, 222, 833,                 // a to m
    556, 556, 556, 556, 333, 500, 278,  556, 500, 722, 500, 500, 500,                 // n to z
    334, 260, 334, 584};                                                              // { to ~
constexpr std::array<short, 95> kBold = {
    278, 333, 474, 556, 556, 889, 722, 238, 333, 333, 389, 584, 278, 333, 278, 278,  // sp to /
    556, 556, 556, 556, 556, 556, 556, 556, 556, 556,                                // 0 to 9
    333, 333, 584, 584, 584, 611, 975,                                               // : to @
    722, 722, 722, 722, 667, 611, 778, 722, 278, 556, 722, 611, 833,                 // A to M
    722, 778, 667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611,                 // N to Z
    333, 278, 333, 584, 556, 333,                                                    // [ to `
    556, 611, 556, 611, 556, 333, 611, 611, 278, 278, 556, 278, 889,                 // a to m
    611, 611, 611, 611, 389, 556, 333, 611, 556, 778, 556, 556, 500,                 // n to z
    389, 280, 389, 584};                                                             // { to ~

// Letters beyond ASCII (accented ones mostly) take the width of a lower-case
// letter.
constexpr short kOtherRegular = 556;
constexpr short kOtherBold = 611;
// Line box and ascent of the face, per em.
constexpr double kLineEm = 1.149;
constexpr double kAscentEm = 0.905;

}  // namespace

double PixelsOfPoints(double size) {
  const double px = RoundHalfEven(size * 96.0 / 72.0);
  return px < 1 ? 1 : px;
}

double ArialMetrics::SizeInForce(double size) const {
  return PixelsOfPoints(size) * 72.0 / 96.0;
}

double ArialMetrics::LineWidth(std::string_view line, double size, bool bold) const {
  const auto& table = bold ? kBold : kRegular;
  long units = 0;
  for (char ch : line) {
    const auto c = static_cast<unsigned char>(ch);
    if (c >= 32 && c <= 126) {
      units += table[c - 32];
    } else if (c >= 128) {
      units += bold ? kOtherBold : kOtherRegular;
    }
  }
  return units * PixelsOfPoints(size) / 1000.0;
}

double ArialMetrics::LineHeight(double size, bool) const {
  return std::ceil(PixelsOfPoints(size) * kLineEm);
}

double ArialMetrics::Ascent(double size, bool) const {
  return std::round(PixelsOfPoints(size) * kAscentEm);
}

}  // namespace zol
