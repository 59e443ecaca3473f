#pragma once

// What a table builder hands to the chart: the bar and pie arrays and their
// titles. An empty array stands for an erased one. The chart itself is drawn
// from these by DoChart (chart.h).

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
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
  // The items of a long single table (the Lines tab) packed instead: the
  // names side by side in one text, one bar and one pie value each. The
  // chart plots only a few of a million lines, and only their names are
  // ever taken out. Used in place of the two arrays above, never with them.
  std::string PackedNames;
  std::vector<std::size_t> PackedNameEnds;
  std::vector<double> PackedBar;
  std::vector<double> PackedPie;
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
    PackedNames.clear();
    PackedNameEnds.clear();
    PackedBar.clear();
    PackedPie.clear();
  }
  bool Packed() const { return !PackedBar.empty(); }
  bool HasBarItems() const { return Packed() || !ChartArrayBar.empty(); }
  bool HasPieItems() const { return Packed() || !ChartArrayPie.empty(); }
  std::size_t BarCount() const { return Packed() ? PackedBar.size() : ChartArrayBar.size(); }
  std::size_t PieCount() const { return Packed() ? PackedPie.size() : ChartArrayPie.size(); }
  std::string_view PackedName(std::size_t i) const {
    const std::size_t start = i == 0 ? 0 : PackedNameEnds[i - 1];
    return std::string_view(PackedNames).substr(start, PackedNameEnds[i] - start);
  }
  // Item i of the bar and of the pie array, whichever way they are kept.
  ChartRow BarItem(std::size_t i) const {
    if (!Packed()) return ChartArrayBar.at(i);
    return {std::string(PackedName(i)), {PackedBar.at(i)}};
  }
  ChartItem PieItem(std::size_t i) const {
    if (!Packed()) return ChartArrayPie.at(i);
    return {std::string(PackedName(i)), PackedPie.at(i)};
  }
  // Appends an item to the packed arrays; `appendName` writes its name at
  // the end of the text it is given.
  template <typename AppendName>
  void AddPacked(AppendName appendName, double barValue, double pieValue) {
    appendName(PackedNames);
    PackedNameEnds.push_back(PackedNames.size());
    PackedBar.push_back(barValue);
    PackedPie.push_back(pieValue);
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
