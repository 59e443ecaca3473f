#pragma once

// What a table builder hands to the chart: the bar and pie arrays and their
// titles. An empty array stands for an erased one. The chart itself is drawn
// from these by DoChart (chart.h).

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/arrays.h"
#include "grid/table.h"

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
  // The items of a long single table (the Lines tab) packed instead: one
  // bar and one pie value each, and a name made only when taken out, from
  // the line's ID, zero-padded to PackedIdDigits, and its text, which stays
  // in the table's texts, shared with it. The chart plots only a few of a
  // million lines. Used in place of the two arrays above, never with them.
  struct PackedLine {
    std::int32_t Id = 0;
    TextRef Text;
  };
  std::shared_ptr<const std::string> PackedTexts;
  std::vector<PackedLine> PackedLines;
  std::int32_t PackedIdDigits = 0;
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
    PackedTexts.reset();
    PackedLines.clear();
    PackedBar.clear();
    PackedPie.clear();
  }
  bool Packed() const { return !PackedBar.empty(); }
  bool HasBarItems() const { return Packed() || !ChartArrayBar.empty(); }
  bool HasPieItems() const { return Packed() || !ChartArrayPie.empty(); }
  std::size_t BarCount() const { return Packed() ? PackedBar.size() : ChartArrayBar.size(); }
  std::size_t PieCount() const { return Packed() ? PackedPie.size() : ChartArrayPie.size(); }
  // The name of packed item i: "ID-text", the text cut as a chart shows it.
  std::string PackedName(std::size_t i) const;
  // Item i of the bar and of the pie array, whichever way they are kept.
  ChartRow BarItem(std::size_t i) const {
    if (!Packed()) return ChartArrayBar.at(i);
    return {PackedName(i), {PackedBar.at(i)}};
  }
  ChartItem PieItem(std::size_t i) const {
    if (!Packed()) return ChartArrayPie.at(i);
    return {PackedName(i), PackedPie.at(i)};
  }
  // Appends a line to the packed arrays: its ID and where its text is in
  // the texts that PackedTexts will hold.
  void AddPackedLine(std::int32_t id, TextRef text, double barValue, double pieValue) {
    PackedLines.push_back({id, text});
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
