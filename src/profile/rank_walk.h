#pragma once

// Ranks by distinct value: every item of one value shares one rank, and the
// next value's rank is one more than the number of items already ranked (1, 1,
// 3, 4, 4, 6, ...). At the end every rank field, ranked or not, is divided by
// the final counter so that ranks lie between 0 and 1 and rise with the value
// (or fall with it, for a descending walk). Items that are not candidates keep
// what their field held, divided like the others.
//
// The walk scans all items twice per distinct value. That is quadratic in the
// number of distinct values, which is fine for procedures and modules (a few
// thousand at most); lines go through an index sort instead.

#include <cstdint>
#include <type_traits>

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

  std::int32_t rank = 1;
  double last = noneYet;
  bool foundOne = false;
  do {
    const std::int32_t start = rank;
    foundOne = false;
    double best = noBest;
    // The next distinct value beyond `last` in the walk's direction.
    for (std::int32_t i = 1; i <= count; ++i) {
      if (!isCandidate(i)) continue;
      const double v = valueOf(i);
      const bool beyondLast = how.descending ? v < last : v > last;
      const bool beforeBest = how.descending ? v > best : v < best;
      if (beyondLast && beforeBest) {
        best = v;
        foundOne = true;
      }
    }
    if (foundOne) {
      for (std::int32_t i = 1; i <= count; ++i) {
        if (!isCandidate(i) || valueOf(i) != best) continue;
        auto& field = rankOf(i);
        using Field = std::remove_reference_t<decltype(field)>;
        field = (start == 1 && how.firstRankAsThousandth) ? static_cast<Field>(0.001)
                                                          : static_cast<Field>(start);
        ++rank;
      }
    }
    last = best;
  } while (foundOne);

  if (rank > 1) {
    for (std::int32_t i = 1; i <= count; ++i) {
      auto& field = rankOf(i);
      using Field = std::remove_reference_t<decltype(field)>;
      field = static_cast<Field>(static_cast<double>(field) / rank);
    }
  }
}

}  // namespace zol
