#pragma once

// Searching and sorting over the program's bounds-checked arrays. The index
// sort is a Shell sort whose exact order among equal values is relied upon
// (line ranks are taken from it), so it is kept step for step and must not be
// replaced by a library sort.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/vbarray.h"

namespace zol {

template <int First>
bool IsInArrayLong(std::int32_t value, const VBArray<std::int32_t, First>& arr) {
  for (const std::int32_t v : arr) {
    if (v == value) return true;
  }
  return false;
}

// The inverse of a permutation: result(arr(i)) = i over the same bounds.
// Positions that no element names stay 0; an element outside the bounds is a
// BoundsError.
template <int First>
VBArray<std::int32_t, First> InverseArrayLong(const VBArray<std::int32_t, First>& arr) {
  VBArray<std::int32_t, First> result;
  result.ReDim(arr.UBound());
  for (int i = arr.LBound(); i <= arr.UBound(); ++i) result(arr(i)) = i;
  return result;
}

// Sorts `index` (same bounds as `values`) so that values(index(LBound)),
// values(index(LBound + 1)), ... rise (or fall with `descending`), over the
// positions up to `n` (default: the upper bound of `values`); `values` itself
// is not moved. An index whose
// first and last elements are both 0 (or that is empty) is first filled with
// the positions of `values`; any other index is sorted as given.
// The gaps are 1, 4, 13, 40, ... (h = 3h + 1): grown until one exceeds n,
// then used downwards by integer division by 3, with an insertion sort per
// gap that moves an entry only past strictly greater (smaller) values. The
// resulting order of equal values is part of the contract.
template <typename T, int First>
void NdxShellSortDouble(const VBArray<T, First>& values, VBArray<std::int32_t, First>& index,
                        std::optional<int> n = std::nullopt, bool descending = false) {
  if (!values.IsDimensioned()) return;
  const int last = n.value_or(values.UBound());
  if (!index.IsDimensioned()) index.ReDim(values.UBound());
  if (index(index.LBound()) == 0 && index(index.UBound()) == 0) {
    for (int i = values.LBound(); i <= values.UBound(); ++i) index(i) = i;
  }
  const int low = values.LBound();
  if (last < low) return;
  // Every entry the sort moves is checked once here (a bad one throws as an
  // access would); the sort then runs on plain arrays, with each entry's
  // value kept beside it, since a million lines made the checked, scattered
  // reads of values(index(j)) the cost of loading a session.
  const std::size_t count = static_cast<std::size_t>(last - low + 1);
  std::vector<std::int32_t> order(count);
  std::vector<T> keys(count);
  for (std::size_t p = 0; p < count; ++p) {
    order[p] = index(low + static_cast<int>(p));
    keys[p] = values(order[p]);
  }
  std::size_t h = 1;
  do {
    h = 3 * h + 1;
  } while (h <= static_cast<std::size_t>(last));
  do {
    h /= 3;
    for (std::size_t i = h; i < count; ++i) {
      const std::int32_t moving = order[i];
      const T key = keys[i];
      std::size_t j = i;
      while (j >= h && (descending ? keys[j - h] < key : keys[j - h] > key)) {
        order[j] = order[j - h];
        keys[j] = keys[j - h];
        j -= h;
      }
      order[j] = moving;
      keys[j] = key;
    }
  } while (h > 1);
  for (std::size_t p = 0; p < count; ++p) index(low + static_cast<int>(p)) = order[p];
}

// Ascending selection sort in place: for each position the lowest value from
// there on (the first of equal ones) is swapped in. Values compare as doubles.
template <typename T, int First>
void SortArray(VBArray<T, First>& arr) {
  for (int i = arr.LBound(); i <= arr.UBound(); ++i) {
    int lowest = i;
    for (int j = i + 1; j <= arr.UBound(); ++j) {
      if (static_cast<double>(arr(j)) < static_cast<double>(arr(lowest))) lowest = j;
    }
    if (lowest != i) std::swap(arr(i), arr(lowest));
  }
}

// One item of a chart: its label and its value.
struct ChartItem {
  std::string Name;
  double Value = 0;

  friend bool operator==(const ChartItem&, const ChartItem&) = default;
};

// The chart's sort keys, as stored in the settings.
inline constexpr std::int32_t kGraphSortByName = 1;
inline constexpr std::int32_t kGraphSortByValue = 2;

// Sorts chart items ascending by name (byte order) or by value; equal keys
// keep their order. Any other key leaves the items as they are.
void SortChartArray2dim(std::vector<ChartItem>& items, std::int32_t graphSortKey);
void SortChartArray2dim(Array1<ChartItem>& items, std::int32_t graphSortKey);

}  // namespace zol
