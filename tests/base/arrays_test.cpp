#include "base/arrays.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace zol {
namespace {

template <typename T, int First>
VBArray<T, First> Make(std::initializer_list<T> items) {
  VBArray<T, First> a;
  a.ReDim(First + static_cast<int>(items.size()) - 1);
  int i = First;
  for (const T& v : items) a(i++) = v;
  return a;
}

std::vector<std::int32_t> Elements(const Array1<std::int32_t>& a) {
  return a.Raw();
}

// Values 3 1 3 2 1. Worked by hand: the gaps are 4 and 1; the 4-gap pass
// moves entry 5 in front of entry 1, and the final order of the tied pairs
// (5 before 2, 3 before 1) is not the order a stable sort would give.
TEST(NdxShellSortDouble, AscendingOrderOfTiesIsPinned) {
  const auto values = Make<double, 1>({3, 1, 3, 2, 1});
  Array1<std::int32_t> index;
  index.ReDim(5);
  NdxShellSortDouble(values, index);
  EXPECT_EQ(Elements(index), (std::vector<std::int32_t>{5, 2, 4, 3, 1}));
}

// The sort works on copies of the index and its values; the walk on the
// arrays themselves is the reference, over many inputs full of ties.
std::vector<std::int32_t> ShellSortOnTheArrays(const Array1<int>& values,
                                               Array1<std::int32_t> index, int last,
                                               bool descending) {
  int h = 1;
  do {
    h = 3 * h + 1;
  } while (h <= last);
  do {
    h /= 3;
    for (int i = 1 + h; i <= last; ++i) {
      const std::int32_t moving = index(i);
      const int key = values(moving);
      int j = i;
      while (j - h >= 1 && (descending ? values(index(j - h)) < key : values(index(j - h)) > key)) {
        index(j) = index(j - h);
        j -= h;
      }
      index(j) = moving;
    }
  } while (h > 1);
  return index.Raw();
}

TEST(NdxShellSortDouble, AgreesWithTheSortOnTheArraysThemselves) {
  std::uint32_t state = 7;
  for (int round = 0; round < 200; ++round) {
    const int n = 1 + round % 97;
    Array1<int> values;
    values.ReDim(n);
    Array1<std::int32_t> start;
    start.ReDim(n);
    for (int i = 1; i <= n; ++i) {
      state = state * 1103515245u + 12345u;
      values(i) = static_cast<int>((state >> 16) % 7);  // many ties
      start(i) = i;
    }
    const int last = round % 3 == 0 ? n - n / 4 : n;
    for (const bool descending : {false, true}) {
      Array1<std::int32_t> index = start;
      NdxShellSortDouble(values, index, last, descending);
      ASSERT_EQ(Elements(index), ShellSortOnTheArrays(values, start, last, descending))
          << "round " << round << (descending ? ", descending" : "");
    }
  }
}

TEST(NdxShellSortDouble, DescendingOrder) {
  const auto values = Make<double, 1>({3, 1, 3, 2, 1});
  Array1<std::int32_t> index;
  index.ReDim(5);
  NdxShellSortDouble(values, index, std::nullopt, true);
  EXPECT_EQ(Elements(index), (std::vector<std::int32_t>{1, 3, 4, 2, 5}));
}

TEST(NdxShellSortDouble, SortsOnlyTheFirstNPositions) {
  const auto values = Make<double, 1>({3, 1, 3, 2, 1});
  Array1<std::int32_t> index;
  index.ReDim(5);
  NdxShellSortDouble(values, index, 4);
  EXPECT_EQ(Elements(index), (std::vector<std::int32_t>{2, 4, 1, 3, 5}));
}

// An index that is not all zeros at its ends is taken as given, and the ties
// come out in the order that index had.
TEST(NdxShellSortDouble, KeepsAGivenIndex) {
  const auto values = Make<double, 1>({3, 1, 3, 2, 1});
  auto index = Make<std::int32_t, 1>({2, 1, 3, 4, 5});
  NdxShellSortDouble(values, index);
  EXPECT_EQ(Elements(index), (std::vector<std::int32_t>{2, 5, 4, 1, 3}));
}

TEST(NdxShellSortDouble, ZeroBasedArraysAndEmptyIndex) {
  const auto values = Make<double, 0>({3, 1, 3, 2, 1});
  Array0<std::int32_t> index;  // not dimensioned: made to measure
  NdxShellSortDouble(values, index);
  EXPECT_EQ(index.Raw(), (std::vector<std::int32_t>{4, 1, 3, 2, 0}));
}

// Ranks as the statistics build them: the inverse of the sorted index gives
// each element's position in rising order.
TEST(InverseArrayLong, InvertsAPermutation) {
  const auto perm = Make<std::int32_t, 1>({2, 3, 1});
  EXPECT_EQ(Elements(InverseArrayLong(perm)), (std::vector<std::int32_t>{3, 1, 2}));

  const auto values = Make<double, 1>({0.5, 0.1, 0.9});
  Array1<std::int32_t> rank;
  rank.ReDim(3);
  NdxShellSortDouble(values, rank);
  EXPECT_EQ(Elements(InverseArrayLong(rank)), (std::vector<std::int32_t>{2, 1, 3}));

  EXPECT_THROW(InverseArrayLong(Make<std::int32_t, 1>({1, 4})), BoundsError);
}

TEST(IsInArrayLong, SearchesAllElements) {
  const auto a = Make<std::int32_t, 1>({7, -2, 9});
  EXPECT_TRUE(IsInArrayLong(9, a));
  EXPECT_FALSE(IsInArrayLong(0, a));
  EXPECT_FALSE(IsInArrayLong(0, Array1<std::int32_t>{}));
}

TEST(SortArray, AscendingInPlace) {
  auto a = Make<std::int64_t, 1>({50000, -1, 30000, -1, 2});
  SortArray(a);
  EXPECT_EQ(a.Raw(), (std::vector<std::int64_t>{-1, -1, 2, 30000, 50000}));
}

TEST(SortChartArray2dim, ByNameOrByValueKeepingTiesInOrder) {
  const std::vector<ChartItem> items{{"b", 2}, {"a", 3}, {"c", 2}, {"B", 1}};
  auto byName = items;
  SortChartArray2dim(byName, kGraphSortByName);
  EXPECT_EQ(byName, (std::vector<ChartItem>{{"B", 1}, {"a", 3}, {"b", 2}, {"c", 2}}));

  Array1<ChartItem> byValue;
  byValue.Raw() = items;
  SortChartArray2dim(byValue, kGraphSortByValue);
  EXPECT_EQ(byValue.Raw(), (std::vector<ChartItem>{{"B", 1}, {"b", 2}, {"c", 2}, {"a", 3}}));

  auto unchanged = items;
  SortChartArray2dim(unchanged, 0);
  EXPECT_EQ(unchanged, items);
}

}  // namespace
}  // namespace zol
