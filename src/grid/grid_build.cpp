#include "grid/grid_build.h"

#include <utility>

namespace zol {

void UpdateChart(GridBuild& build, ChartArrays& arrays, ChartDescription& chart,
                 const GraphOptions& options, Tab activeTab, Measure measure) {
  switch (build.Chart) {
    case ChartUpdate::None:
      break;
    case ChartUpdate::Reset:
      chart = ResetChart(arrays, false);
      break;
    case ChartUpdate::Draw:
      arrays = std::move(build.Arrays);
      chart = DoChart(arrays, options, activeTab, measure);
      break;
  }
}

}  // namespace zol
