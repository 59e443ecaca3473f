#pragma once

// Ranks by distinct value: every item of one value shares one rank, and the
// next value's rank is one more than the number of items already ranked (1, 1,
// 3, 4, 4, 6, ...). At the end every rank field, ranked or not, is divided by
// the final counter so that ranks lie between 0 and 1 and rise with the value
// (or fall with it, for a descending walk). Items that are not candidates keep
// what their field held, divided like the others.
//
// The ranks are those of a walk that looks for the next distinct value again
// and again; they are found here by one sort of the candidates, since that
// walk is quadratic in the number of distinct values and a project of fifty
// thousand procedures spent minutes in it. Only values strictly inside the
// walk's bounds take part (see kAboveAnyTime): a value on or beyond them, or
// NaN, is never reached by the walk and keeps its field. The tests hold the
// sort to the walk over many random inputs.

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

namespace zol {

struct RankWalk {
  // Ascending: the smallest value gets the first rank (times: fastest first).
  // Descending: the largest value gets the first rank (coverage: best first).
  bool descending = false;
  // Procedures store a first rank of 1 as 0.001, which puts their first value
  // at the very start of the colour scale; modules keep the plain 1.
  bool firstRankAsThousandth = false;
};

// Walks items 1..count. isCandidate(i) says whether item i takes part,
// valueOf(i) gives its value (double) and rankOf(i) a reference to its rank
// field (float or double).
template <typename IsCandidate, typename ValueOf, typename RankOf>
void RankByDistinctValue(std::int32_t count, RankWalk how, IsCandidate isCandidate, ValueOf valueOf,
                         RankOf rankOf) {
  // Values are times (positive) or coverage fractions (0 to 1); the bounds lie
  // outside both ranges.
  constexpr double kAboveAnyTime = 1e10;
  const double noneYet = how.descending ? 2.0 : -1.0;
  const double noBest = how.descending ? -1.0 : kAboveAnyTime;

  // The candidates the walk would reach, in the walk's order of values.
  std::vector<std::pair<double, std::int32_t>> ranked;
  for (std::int32_t i = 1; i <= count; ++i) {
    if (!isCandidate(i)) continue;
    const double v = valueOf(i);
    const bool inside = how.descending ? (v < noneYet && v > noBest) : (v > noneYet && v < noBest);
    if (inside) ranked.emplace_back(v, i);
  }
  if (how.descending) {
    std::sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) {
      return a.first > b.first || (a.first == b.first && a.second < b.second);
    });
  } else {
    std::sort(ranked.begin(), ranked.end());
  }

  std::int32_t rank = 1;
  std::int32_t start = 1;
  for (std::size_t k = 0; k < ranked.size(); ++k) {
    if (k == 0 || ranked[k].first != ranked[k - 1].first) start = rank;
    auto& field = rankOf(ranked[k].second);
    using Field = std::remove_reference_t<decltype(field)>;
    field = (start == 1 && how.firstRankAsThousandth) ? static_cast<Field>(0.001)
                                                      : static_cast<Field>(start);
    ++rank;
  }

  if (rank > 1) {
    for (std::int32_t i = 1; i <= count; ++i) {
      auto& field = rankOf(i);
      using Field = std::remove_reference_t<decltype(field)>;
      field = static_cast<Field>(static_cast<double>(field) / rank);
    }
  }
}

}  // namespace zol
