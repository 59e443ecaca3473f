#pragma once

// The result of a table builder, and how the window's chart follows it.

#include <cstdint>
#include <string>
#include <vector>

#include "grid/chart.h"
#include "grid/chart_arrays.h"
#include "grid/table.h"

namespace zol {

// What a build asks of the chart beside the grid.
enum class ChartUpdate {
  None,   // leave the chart and its arrays as they are
  Reset,  // show the empty chart; the arrays stay as they are
  Draw,   // take the build's arrays and draw them
};

// The header of headers above a compared grid: one wide column per session
// spanning that session's run of columns.
struct FakeHeaders {
  std::vector<std::string> SessionNames;  // one per session, in column order
  std::int32_t FirstColumn = 0;           // grid columns before the first run
  std::int32_t NumberOfColumnsPerSession = 0;
  // The width of each session's run where they differ (the difference
  // columns after the later runs); empty when all take the number above.
  std::vector<std::int32_t> ColumnsPerSession;

  // The number of grid columns under session `index` (from 0).
  std::int32_t RunColumns(std::size_t index) const {
    return index < ColumnsPerSession.size() ? ColumnsPerSession[index] : NumberOfColumnsPerSession;
  }

  friend bool operator==(const FakeHeaders&, const FakeHeaders&) = default;
};

struct GridBuild {
  Table Grid;
  ChartUpdate Chart = ChartUpdate::None;
  ChartArrays Arrays;   // with ChartUpdate::Draw
  FakeHeaders Headers;  // compared grids only
};

// Applies a build's chart part to the window's arrays and chart: with Draw the
// arrays are replaced and drawn, with Reset the empty chart is shown, with
// None `chart` stays. The build's arrays move into `arrays`: a million lines'
// worth is not copied.
void UpdateChart(GridBuild& build, ChartArrays& arrays, ChartDescription& chart,
                 const GraphOptions& options, Tab activeTab, Measure measure);

}  // namespace zol
