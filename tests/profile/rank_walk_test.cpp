// The ranks by distinct value come from one sort; these hold them to the
// plain walk they replace (look for the next distinct value, rank every item
// of it, again), on inputs with many ties, values on and beyond the walk's
// bounds, NaN, signed zeros and items that aren't candidates.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "profile/rank_walk.h"

namespace zol {
namespace {

template <typename Field>
void LiteralWalk(std::int32_t count, RankWalk how, const std::vector<bool>& candidate,
                 const std::vector<double>& value, std::vector<Field>& rankField) {
  constexpr double kAboveAnyTime = 1e10;
  const double noneYet = how.descending ? 2.0 : -1.0;
  const double noBest = how.descending ? -1.0 : kAboveAnyTime;
  std::int32_t rank = 1;
  double last = noneYet;
  bool found = false;
  do {
    const std::int32_t start = rank;
    found = false;
    double best = noBest;
    for (std::int32_t i = 1; i <= count; ++i) {
      if (!candidate[i]) continue;
      const double v = value[i];
      const bool beyondLast = how.descending ? v < last : v > last;
      const bool beforeBest = how.descending ? v > best : v < best;
      if (beyondLast && beforeBest) {
        best = v;
        found = true;
      }
    }
    if (found) {
      for (std::int32_t i = 1; i <= count; ++i) {
        if (!candidate[i] || value[i] != best) continue;
        rankField[i] = (start == 1 && how.firstRankAsThousandth) ? static_cast<Field>(0.001)
                                                                 : static_cast<Field>(start);
        ++rank;
      }
    }
    last = best;
  } while (found);
  if (rank > 1) {
    for (std::int32_t i = 1; i <= count; ++i) {
      rankField[i] = static_cast<Field>(static_cast<double>(rankField[i]) / rank);
    }
  }
}

// A value drawn so that ties are common and the bounds of both walks are hit.
double DrawValue(std::mt19937& rng) {
  static const double kSpecial[] = {
      -1.0, -0.0, 0.0, 1.0, 2.0, 1e10, 2e10, -5.0, std::numeric_limits<double>::quiet_NaN()};
  std::uniform_int_distribution<int> kind(0, 9);
  switch (kind(rng)) {
    case 0:
      return kSpecial[std::uniform_int_distribution<int>(0, 8)(rng)];
    case 1:
    case 2:
    case 3:
      return std::uniform_int_distribution<int>(0, 6)(rng) / 4.0;  // ties
    default:
      return std::uniform_real_distribution<double>(-0.5, 2.5)(rng);
  }
}

template <typename Field>
void CompareOverSeeds(RankWalk how) {
  for (std::uint32_t seed = 1; seed <= 300; ++seed) {
    std::mt19937 rng(seed);
    const std::int32_t count = std::uniform_int_distribution<std::int32_t>(0, 60)(rng);
    std::vector<bool> candidate(static_cast<std::size_t>(count) + 1);
    std::vector<double> value(static_cast<std::size_t>(count) + 1);
    std::vector<Field> before(static_cast<std::size_t>(count) + 1);
    for (std::int32_t i = 1; i <= count; ++i) {
      candidate[i] = std::uniform_int_distribution<int>(0, 4)(rng) != 0;
      value[i] = DrawValue(rng);
      before[i] = static_cast<Field>(std::uniform_int_distribution<int>(0, 3)(rng));
    }
    std::vector<Field> expected = before;
    LiteralWalk(count, how, candidate, value, expected);
    std::vector<Field> actual = before;
    RankByDistinctValue(
        count, how, [&](std::int32_t i) { return static_cast<bool>(candidate[i]); },
        [&](std::int32_t i) { return value[i]; },
        [&](std::int32_t i) -> Field& { return actual[static_cast<std::size_t>(i)]; });
    for (std::int32_t i = 1; i <= count; ++i) {
      // Bit for bit: the same numbers divided the same way.
      ASSERT_EQ(actual[i], expected[i]) << "seed " << seed << ", item " << i;
    }
  }
}

TEST(RankByDistinctValue, AgreesWithTheWalkInEveryDirection) {
  CompareOverSeeds<float>({.descending = false, .firstRankAsThousandth = true});
  CompareOverSeeds<float>({.descending = true, .firstRankAsThousandth = true});
  CompareOverSeeds<float>({.descending = false, .firstRankAsThousandth = false});
  CompareOverSeeds<double>({.descending = true, .firstRankAsThousandth = false});
}

TEST(RankByDistinctValue, TiesShareARankAndTheNextSkipsThem) {
  // Values 3, 1, 3, 2: ranks 1 (as 0.001), 2, 3, 3, then divided by 5.
  std::vector<double> value{0, 3, 1, 3, 2};
  std::vector<float> rank(5, 0);
  RankByDistinctValue(
      4, {.descending = false, .firstRankAsThousandth = true}, [](std::int32_t) { return true; },
      [&](std::int32_t i) { return value[i]; }, [&](std::int32_t i) -> float& { return rank[i]; });
  EXPECT_FLOAT_EQ(rank[2], 0.001f / 5);
  EXPECT_FLOAT_EQ(rank[4], 2.0f / 5);
  EXPECT_FLOAT_EQ(rank[1], 3.0f / 5);
  EXPECT_FLOAT_EQ(rank[3], 3.0f / 5);
}

}  // namespace
}  // namespace zol
