#include "session/selection.h"

#include <array>

namespace zol {

namespace {
struct MeasureSpelling {
  std::string_view text;
  Measure measure;
};
constexpr std::array<MeasureSpelling, 12> kMeasureSpellings{{
    {"total", Measure::Total},
    {"average", Measure::Average},
    {"childtotal", Measure::ChildTotal},
    {"childaverage", Measure::ChildAverage},
    {"coverage", Measure::Coverage},
    {"child-total", Measure::ChildTotal},
    {"child-average", Measure::ChildAverage},
    {"0", Measure::Total},
    {"1", Measure::Average},
    {"2", Measure::ChildTotal},
    {"3", Measure::ChildAverage},
    {"4", Measure::Coverage},
}};
}  // namespace

Measure MeasureFromIndex(std::int32_t index) {
  return index >= 0 && index <= 4 ? static_cast<Measure>(index) : Measure::Total;
}

Tab TabFromIndex(std::int32_t index) {
  return index >= IndexOf(Tab::Projects) && index <= IndexOf(Tab::Reports) ? static_cast<Tab>(index)
                                                                           : Tab::Procedures;
}

std::optional<Measure> ParseMeasure(std::string_view text) {
  for (const auto& s : kMeasureSpellings)
    if (s.text == text) return s.measure;
  return std::nullopt;
}

std::string_view MeasureName(Measure m) {
  return kMeasureSpellings[IndexOf(m)].text;
}

}  // namespace zol
