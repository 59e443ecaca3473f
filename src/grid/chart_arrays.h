#pragma once

// What a table builder hands to the chart: the bar and pie arrays and their
// titles. An empty array stands for an erased one. The chart itself is drawn
// from these by DoChart (chart.h).

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/arrays.h"

namespace zol {

// One bar item: its label and one value per series. Single tables have one
// series; compared tables have one per session, named in LegendText.
struct ChartRow {
  std::string Name;
  std::vector<double> Values;

  friend bool operator==(const ChartRow&, const ChartRow&) = default;
};

struct ChartArrays {
  std::vector<ChartRow> ChartArrayBar;
  std::vector<ChartItem> ChartArrayPie;
  // GraphTitle(1), the bar chart's title, and GraphTitle(2), the pie's.
  std::string BarTitle;
  std::string PieTitle;
  // Compared tables: the name of each series, in the order of the values.
  std::vector<std::string> LegendText;
  // Compared tables: the caption the pie shows in place of a chart.
  std::string PieCaption;

  void Erase() {
    ChartArrayBar.clear();
    ChartArrayPie.clear();
  }
  void SetTitles(std::string bar, std::string pie) {
    BarTitle = std::move(bar);
    PieTitle = std::move(pie);
  }
  // Appends an item to both arrays, as the single tables do.
  void Add(std::string name, double barValue, double pieValue) {
    ChartArrayPie.push_back({name, pieValue});
    ChartArrayBar.push_back({std::move(name), std::vector<double>(1, barValue)});
  }
};

// The caption of the pie for compared sessions.
inline constexpr char kComparedPieCaption[] = "Unavailable (Compared sessions) - Select Bar chart";

}  // namespace zol
