#pragma once

// The chart beside the grid, as data: DoChart turns the arrays of a table
// builder into a plain description (kind, title, labels, values, axis top)
// that the GUI draws with whatever chart widget it has. The rules that decide
// what is plotted live here: the top items on the long tabs, the "{Other}"
// slice, the sort by name or value, the cut of the line-ID prefix, the scaling
// of small times to microseconds.

#include <cstdint>
#include <string>
#include <vector>

#include "grid/chart_arrays.h"
#include "session/selection.h"

namespace zol {

inline constexpr std::int32_t kGraphTypeNone = 0;
inline constexpr std::int32_t kGraphTypeBar = 1;
inline constexpr std::int32_t kGraphTypePie = 2;

// The chart control's kinds.
inline constexpr std::int32_t kChartTypeBar2d = 1;
inline constexpr std::int32_t kChartTypePie2d = 14;

inline constexpr char kNoAvailableChart[] = "No available chart";
inline constexpr char kOtherItem[] = "{Other}";

// The chart settings of the grid's option strip.
struct GraphOptions {
  std::int32_t GraphType = kGraphTypeBar;         // 0 none, 1 bar, 2 pie
  std::int32_t GraphSortKey = kGraphSortByValue;  // 1 by name, 2 by value
  std::int32_t GraphMaxItems = 20;                // 0: unlimited

  friend bool operator==(const GraphOptions&, const GraphOptions&) = default;
};

// The largest GraphMaxItems the option strip offers.
inline constexpr std::int32_t kGraphMaxItemsLimit = 9999;

// The defaults, then the keys GraphType, GraphSortKey and GraphMaxItems of
// section "Profiler" of `iniFile`, each kept within its range.
GraphOptions LoadGraphOptions(const std::string& iniFile);
// Writes the three keys. Throws FileError when the file can't be written.
void SaveGraphOptions(const GraphOptions& options, const std::string& iniFile);

// What the chart control is to show.
struct ChartDescription {
  // kChartTypeBar2d or kChartTypePie2d; 0 when nothing is plotted (GraphType
  // 0, or a reset chart).
  std::int32_t ChartType = 0;
  std::string Title;
  // The plotted items in order: each label (the legend text) with one value
  // per series. A pie has one series.
  std::vector<ChartRow> Items;
  // Compared tables: the name of each series.
  std::vector<std::string> SeriesNames;
  // The values are times that were all below one second and are shown in
  // microseconds (multiplied by 1000000).
  bool ScaledToMicroseconds = false;
  // Top of the value axis of a bar chart: 100 for coverage, otherwise a round
  // number at or above the largest plotted value.
  double AxisTop = 0;
  // The empty chart with the text "No available chart".
  bool IsReset = false;
  // The texts that stand beside the reset chart's label.
  std::vector<std::string> ResetNotes;

  friend bool operator==(const ChartDescription&, const ChartDescription&) = default;
};

// Draws from the arrays by options.GraphType. `activeTab` says whether the
// item limit applies (the Procedures and Lines tabs, whose tables can be
// long, keep only the largest items), `measure` whether values can be
// summed into "{Other}", whether the axis is a coverage axis, and whether the
// table is the Lines tab whose names carry a line-ID prefix.
ChartDescription DoChart(const ChartArrays& arrays, const GraphOptions& options, Tab activeTab,
                         Measure measure);

// DoChart(sortOnly = true): re-sorts what the chart holds by `graphSortKey`.
void DoChartSortOnly(ChartDescription& chart, std::int32_t graphSortKey);

// The empty chart with the text "No available chart"; with `eraseArrays` the
// arrays are erased too.
ChartDescription ResetChart(ChartArrays& arrays, bool eraseArrays);
ChartDescription ResetChart();

// A round axis top at or above `largest`: 1, 2 or 5 times a power of ten.
double RoundAxisTop(double largest);

}  // namespace zol
