#pragma once

// The one list of the fields of each value record, in the order of its file
// image. The packed image, its reading and the JSON dump all walk this list,
// so a field can't be added to one of them and forgotten in another.
//
// VisitFields(record, visit) calls visit(name, field) for every field in
// order; `field` is a reference into the record (const for a const record).

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "session/records.h"

namespace zol {

template <typename R>
concept ValueRecord = std::is_same_v<std::remove_const_t<R>, CodeLineValue> ||
    std::is_same_v<std::remove_const_t<R>, ProcedureValue> ||
    std::is_same_v<std::remove_const_t<R>, ModuleValue> ||
    std::is_same_v<std::remove_const_t<R>, FlowPair>;

template <typename R, typename Visit>
requires std::is_same_v<std::remove_const_t<R>, CodeLineValue>
constexpr void VisitFields(R& v, Visit&& visit) {
  visit("Hits", v.Hits);
  visit("TotalTime", v.TotalTime);
  visit("AverageTime", v.AverageTime);
  visit("ChildTotalTime", v.ChildTotalTime);
  visit("ChildAverageTime", v.ChildAverageTime);
}

template <typename R, typename Visit>
requires std::is_same_v<std::remove_const_t<R>, ProcedureValue>
constexpr void VisitFields(R& v, Visit&& visit) {
  visit("IsProfiled", v.IsProfiled);
  visit("IsCovered", v.IsCovered);
  visit("Hits", v.Hits);
  visit("HitLines", v.HitLines);
  visit("TotalLines", v.TotalLines);
  visit("Coverage", v.Coverage);
  visit("TotalTime", v.TotalTime);
  visit("AverageTime", v.AverageTime);
  visit("ChildTotalTime", v.ChildTotalTime);
  visit("ChildAverageTime", v.ChildAverageTime);
  visit("TotalTimingRank", v.TotalTimingRank);
  visit("AverageTimingRank", v.AverageTimingRank);
  visit("ChildTotalTimingRank", v.ChildTotalTimingRank);
  visit("ChildAverageTimingRank", v.ChildAverageTimingRank);
  visit("CoverageRank", v.CoverageRank);
}

template <typename R, typename Visit>
requires std::is_same_v<std::remove_const_t<R>, ModuleValue>
constexpr void VisitFields(R& v, Visit&& visit) {
  visit("IsProfiled", v.IsProfiled);
  visit("IsCovered", v.IsCovered);
  visit("HitLines", v.HitLines);
  visit("TotalLines", v.TotalLines);
  visit("LineCoverage", v.LineCoverage);
  visit("HitProcedures", v.HitProcedures);
  visit("TotalProcedures", v.TotalProcedures);
  visit("ProcedureCoverage", v.ProcedureCoverage);
  visit("TotalTime", v.TotalTime);
  visit("CriticalHitLines", v.CriticalHitLines);
  visit("CriticalTotalLines", v.CriticalTotalLines);
  visit("TotalTimingRank", v.TotalTimingRank);
  visit("CoverageRank", v.CoverageRank);
}

template <typename R, typename Visit>
requires std::is_same_v<std::remove_const_t<R>, FlowPair>
constexpr void VisitFields(R& v, Visit&& visit) {
  visit("FromProc", v.FromProc);
  visit("ToProc", v.ToProc);
  visit("Hits", v.Hits);
  visit("ChildTime", v.ChildTime);
}

// The bytes a field takes in a file image: booleans are 16 bits, numbers
// their own width.
template <typename F>
constexpr std::size_t FieldImageBytes() {
  if constexpr (std::is_same_v<F, VBBool>) {
    return 2;
  } else {
    static_assert(std::is_arithmetic_v<F>, "a record field of a file image must be a number");
    return sizeof(F);
  }
}

// The size of a record's image, counted from its field list.
template <ValueRecord R>
constexpr std::size_t CountImageBytes() {
  R v{};
  std::size_t bytes = 0;
  VisitFields(v, [&bytes](std::string_view, auto& field) {
    bytes += FieldImageBytes<std::remove_cvref_t<decltype(field)>>();
  });
  return bytes;
}

}  // namespace zol
