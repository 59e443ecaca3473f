#include "grid/chart.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/ini_file.h"
#include "base/numbers.h"
#include "base/text.h"
#include "grid/grid_frame.h"

namespace zol {

namespace {

constexpr char kSection[] = "Profiler";

std::int32_t ReadSetting(const std::string& key, std::int32_t defaultValue, std::int32_t lo,
                         std::int32_t hi, const std::string& iniFile) {
  const std::string text =
      VBGetPrivateProfileString(kSection, key, std::to_string(defaultValue), iniFile);
  const auto value = ParseNumberText(text);
  if (!value) return defaultValue;
  return static_cast<std::int32_t>(Clamp(std::trunc(*value), lo, hi));
}

// The key a bar item sorts by when sorted by value: its largest value, which
// for a single series is simply its value.
double ValueKey(const ChartRow& row) {
  double key = row.Values.empty() ? 0 : row.Values.front();
  for (double v : row.Values) key = std::max(key, v);
  return key;
}

void SortRows(std::vector<ChartRow>& rows, std::int32_t graphSortKey) {
  if (graphSortKey == kGraphSortByName) {
    std::stable_sort(rows.begin(), rows.end(),
                     [](const ChartRow& a, const ChartRow& b) { return a.Name < b.Name; });
  } else if (graphSortKey == kGraphSortByValue) {
    std::stable_sort(rows.begin(), rows.end(), [](const ChartRow& a, const ChartRow& b) {
      return ValueKey(a) < ValueKey(b);
    });
  }
}

// A chart item's key and its index: items of equal keys keep their own
// order, as a stable sort by value gives, found on indices so that a chart
// of the top items of a million lines moves no names.
using KeyedItem = std::pair<double, std::size_t>;

bool ComesBefore(const KeyedItem& a, const KeyedItem& b) {
  if (a.first < b.first) return true;
  if (b.first < a.first) return false;
  return a.second < b.second;
}

std::vector<std::size_t> IndicesOf(const std::vector<KeyedItem>& items) {
  std::vector<std::size_t> order;
  order.reserve(items.size());
  for (const KeyedItem& item : items) order.push_back(item.second);
  return order;
}

// The order of items 0..count-1 by rising key.
template <typename KeyOf>
std::vector<std::size_t> OrderByValue(std::size_t count, KeyOf keyOf) {
  std::vector<KeyedItem> keyed(count);
  for (std::size_t i = 0; i < count; ++i) keyed[i] = {keyOf(i), i};
  std::sort(keyed.begin(), keyed.end(), ComesBefore);
  return IndicesOf(keyed);
}

// The last `kept` items of that order, in that order: one pass keeps the
// largest seen so far in a heap whose top is the smallest of them, so a
// chart of the top items of a million lines neither sorts nor copies them.
template <typename KeyOf>
std::vector<std::size_t> TopByValue(std::size_t count, std::size_t kept, KeyOf keyOf) {
  const auto smallestOnTop = [](const KeyedItem& a, const KeyedItem& b) {
    return ComesBefore(b, a);
  };
  std::vector<KeyedItem> top;
  top.reserve(kept);
  for (std::size_t i = 0; i < count && kept > 0; ++i) {
    const KeyedItem item{keyOf(i), i};
    if (top.size() < kept) {
      top.push_back(item);
      std::push_heap(top.begin(), top.end(), smallestOnTop);
    } else if (ComesBefore(top.front(), item)) {
      std::pop_heap(top.begin(), top.end(), smallestOnTop);
      top.back() = item;
      std::push_heap(top.begin(), top.end(), smallestOnTop);
    }
  }
  std::sort(top.begin(), top.end(), ComesBefore);
  return IndicesOf(top);
}

bool LimitApplies(const GraphOptions& o, Tab activeTab, std::size_t count) {
  return o.GraphMaxItems > 0 && (activeTab == Tab::Procedures || activeTab == Tab::Lines) &&
         count > static_cast<std::size_t>(o.GraphMaxItems);
}

// Totals and coverage can be summed; averages can't.
bool IsSummable(Measure measure) {
  return measure == Measure::Total || measure == Measure::ChildTotal ||
         measure == Measure::Coverage;
}

// A line's chart name is its zero-padded ID, "-" and its text; the legend
// shows the text only.
std::string WithoutLineIdPrefix(const std::string& name) {
  const int dash = InStr(name, "-");
  return dash == 0 ? name : Mid(name, dash + 1);
}

ChartDescription PieChart(const ChartArrays& arrays, const GraphOptions& o, Tab activeTab,
                          Measure measure) {
  const std::size_t count = arrays.PieCount();
  const auto valueOf = [&](std::size_t i) {
    return arrays.Packed() ? arrays.PackedPie[i] : arrays.ChartArrayPie[i].Value;
  };
  std::vector<ChartItem> items;
  bool inOrder = false;
  double other = -1;
  if (LimitApplies(o, activeTab, count)) {
    // Only the largest items are copied; the others are summed in the order
    // a sort by value puts them.
    const std::vector<std::size_t> order = OrderByValue(count, valueOf);
    const std::size_t leftOut = count - static_cast<std::size_t>(o.GraphMaxItems);
    if (IsSummable(measure)) {
      other = 0;
      for (std::size_t i = 0; i < leftOut; ++i) other += valueOf(order[i]);
    }
    items.reserve(count - leftOut);
    for (std::size_t i = leftOut; i < count; ++i) items.push_back(arrays.PieItem(order[i]));
    inOrder = o.GraphSortKey == kGraphSortByValue;
  } else if (arrays.Packed()) {
    items.reserve(count);
    for (std::size_t i = 0; i < count; ++i) items.push_back(arrays.PieItem(i));
  } else {
    items = arrays.ChartArrayPie;
  }
  if (!inOrder) SortChartArray2dim(items, o.GraphSortKey);

  ChartDescription chart;
  chart.ChartType = kChartTypePie2d;
  chart.Title = arrays.PieTitle;
  for (ChartItem& item : items) {
    chart.Items.push_back(
        {activeTab == Tab::Lines ? WithoutLineIdPrefix(item.Name) : std::move(item.Name),
         {item.Value}});
  }
  if (other != -1) chart.Items.push_back({kOtherItem, {other}});
  return chart;
}

ChartDescription BarChart(const ChartArrays& arrays, const GraphOptions& o, Tab activeTab,
                          Measure measure) {
  const std::size_t count = arrays.BarCount();
  const auto keyOf = [&](std::size_t i) {
    return arrays.Packed() ? arrays.PackedBar[i] : ValueKey(arrays.ChartArrayBar[i]);
  };
  double largest = keyOf(0);
  for (std::size_t i = 0; i < count; ++i) largest = std::max(largest, keyOf(i));

  std::vector<ChartRow> rows;
  bool inOrder = false;
  if (LimitApplies(o, activeTab, count)) {
    const std::size_t kept = static_cast<std::size_t>(o.GraphMaxItems);
    rows.reserve(kept);
    for (const std::size_t i : TopByValue(count, kept, keyOf)) rows.push_back(arrays.BarItem(i));
    inOrder = o.GraphSortKey == kGraphSortByValue;
  } else if (arrays.Packed()) {
    rows.reserve(count);
    for (std::size_t i = 0; i < count; ++i) rows.push_back(arrays.BarItem(i));
  } else {
    rows = arrays.ChartArrayBar;
  }
  if (!inOrder) SortRows(rows, o.GraphSortKey);
  if (activeTab == Tab::Lines) {
    for (ChartRow& r : rows) r.Name = WithoutLineIdPrefix(r.Name);
  }

  ChartDescription chart;
  if (largest < 1) {
    largest *= 1000000;
    for (ChartRow& r : rows) {
      for (double& v : r.Values) v *= 1000000;
    }
    chart.ScaledToMicroseconds = true;
  }
  chart.ChartType = kChartTypeBar2d;
  chart.Title = arrays.BarTitle;
  chart.Items = std::move(rows);
  chart.SeriesNames = arrays.LegendText;
  // Coverage is in whole percent; hit counts of the Lines tab can pass 100,
  // and then the axis grows with them.
  chart.AxisTop = measure == Measure::Coverage && largest <= 100 ? 100 : RoundAxisTop(largest);
  return chart;
}

}  // namespace

std::string ChartArrays::PackedName(std::size_t i) const {
  const PackedLine& line = PackedLines.at(i);
  const std::string_view texts = PackedTexts ? std::string_view(*PackedTexts) : std::string_view();
  std::string name;
  AppendLineChartName(name, line.Id, PackedIdDigits,
                      texts.substr(line.Text.Offset, line.Text.Length));
  return name;
}

GraphOptions LoadGraphOptions(const std::string& iniFile) {
  const GraphOptions defaults;
  GraphOptions o;
  o.GraphType =
      ReadSetting("GraphType", defaults.GraphType, kGraphTypeNone, kGraphTypePie, iniFile);
  o.GraphSortKey = ReadSetting("GraphSortKey", defaults.GraphSortKey, kGraphSortByName,
                               kGraphSortByValue, iniFile);
  o.GraphMaxItems =
      ReadSetting("GraphMaxItems", defaults.GraphMaxItems, 0, kGraphMaxItemsLimit, iniFile);
  return o;
}

void SaveGraphOptions(const GraphOptions& options, const std::string& iniFile) {
  VBWritePrivateProfileString(kSection, "GraphType", std::to_string(options.GraphType), iniFile);
  VBWritePrivateProfileString(kSection, "GraphSortKey", std::to_string(options.GraphSortKey),
                              iniFile);
  VBWritePrivateProfileString(kSection, "GraphMaxItems", std::to_string(options.GraphMaxItems),
                              iniFile);
}

ChartDescription DoChart(const ChartArrays& arrays, const GraphOptions& options, Tab activeTab,
                         Measure measure) {
  if (options.GraphType == kGraphTypePie) {
    if (!arrays.HasPieItems()) {
      ChartDescription chart = ResetChart();
      chart.Title = arrays.PieCaption;
      return chart;
    }
    return PieChart(arrays, options, activeTab, measure);
  }
  if (options.GraphType == kGraphTypeBar) {
    if (!arrays.HasBarItems()) return ResetChart();
    return BarChart(arrays, options, activeTab, measure);
  }
  return {};
}

void DoChartSortOnly(ChartDescription& chart, std::int32_t graphSortKey) {
  if (chart.Items.empty() || chart.IsReset) return;
  SortRows(chart.Items, graphSortKey);
}

ChartDescription ResetChart(ChartArrays& arrays, bool eraseArrays) {
  if (eraseArrays) arrays.Erase();
  return ResetChart();
}

ChartDescription ResetChart() {
  ChartDescription chart;
  chart.IsReset = true;
  chart.Items.push_back({kNoAvailableChart, {}});
  chart.ResetNotes = {" (Compared sessions)", ""};
  return chart;
}

double RoundAxisTop(double largest) {
  if (!(largest > 0) || !std::isfinite(largest)) return 1;
  const double power = std::pow(10.0, std::floor(std::log10(largest)));
  for (double step : {1.0, 2.0, 5.0, 10.0}) {
    if (step * power >= largest) return step * power;
  }
  return 10 * power;
}

}  // namespace zol
