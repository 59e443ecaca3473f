#include "base/arrays.h"

#include <algorithm>

namespace zol {

void SortChartArray2dim(std::vector<ChartItem>& items, std::int32_t graphSortKey) {
  if (graphSortKey == kGraphSortByName) {
    std::stable_sort(items.begin(), items.end(),
                     [](const ChartItem& a, const ChartItem& b) { return a.Name < b.Name; });
  } else if (graphSortKey == kGraphSortByValue) {
    std::stable_sort(items.begin(), items.end(),
                     [](const ChartItem& a, const ChartItem& b) { return a.Value < b.Value; });
  }
}

void SortChartArray2dim(Array1<ChartItem>& items, std::int32_t graphSortKey) {
  SortChartArray2dim(items.Raw(), graphSortKey);
}

}  // namespace zol
