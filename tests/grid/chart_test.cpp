#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "base/files.h"
#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"
#include "grid/chart.h"
#include "grid/grid_frame.h"

namespace zol {
namespace {

ChartArrays Items(int n, double scale = 1) {
  ChartArrays a;
  for (int i = 1; i <= n; ++i) {
    const std::string name = "p" + std::to_string(100 - i);  // names fall while values rise
    a.Add(name, i * scale, 1000000 * i * scale);
  }
  a.SetTitles("bar title", "pie title");
  return a;
}

std::vector<std::string> Names(const ChartDescription& c) {
  std::vector<std::string> names;
  for (const ChartRow& r : c.Items) names.push_back(r.Name);
  return names;
}

TEST(DoChart, ProceduresTabKeepsTheLargestItemsAndSumsTheRestIntoOther) {
  const ChartArrays a = Items(5);
  GraphOptions o{kGraphTypePie, kGraphSortByValue, 3};
  ChartDescription c = DoChart(a, o, Tab::Procedures, Measure::Total);
  EXPECT_EQ(c.ChartType, kChartTypePie2d);
  EXPECT_EQ(c.Title, "pie title");
  EXPECT_EQ(Names(c), (std::vector<std::string>{"p97", "p96", "p95", "{Other}"}));
  EXPECT_EQ(c.Items.back().Values, (std::vector<double>{3000000}));
  // Averages can't be summed: no "{Other}".
  c = DoChart(a, o, Tab::Procedures, Measure::Average);
  EXPECT_EQ(Names(c), (std::vector<std::string>{"p97", "p96", "p95"}));
  // By name after the cut.
  o.GraphSortKey = kGraphSortByName;
  c = DoChart(a, o, Tab::Procedures, Measure::Coverage);
  EXPECT_EQ(Names(c), (std::vector<std::string>{"p95", "p96", "p97", "{Other}"}));
}

TEST(DoChart, EqualValuesAtTheCutKeepTheLaterItems) {
  // Values 5, 5, 5, 5, 1: of the equal items the later ones stay, as a stable
  // sort by value leaves them last; the rest is summed into "{Other}".
  ChartArrays a;
  const double values[] = {5, 5, 5, 5, 1};
  const char* names[] = {"a", "b", "c", "d", "e"};
  for (int i = 0; i < 5; ++i) a.Add(names[i], values[i], values[i]);
  GraphOptions o{kGraphTypeBar, kGraphSortByValue, 2};
  EXPECT_EQ(Names(DoChart(a, o, Tab::Procedures, Measure::Total)),
            (std::vector<std::string>{"c", "d"}));
  o.GraphType = kGraphTypePie;
  const ChartDescription pie = DoChart(a, o, Tab::Procedures, Measure::Total);
  ASSERT_EQ(pie.Items.size(), 3u);
  EXPECT_EQ(pie.Items.back().Values, (std::vector<double>{11}));
}

TEST(DoChart, TheBarsKeptAreThoseAWholeSortKeeps) {
  // The bars are picked from the top without sorting the rest; the pie
  // (with no "{Other}" for averages) still sorts them all. Many ties.
  ChartArrays a;
  for (int i = 0; i < 300; ++i) {
    const double value = (i * 37 % 11) * 0.5;
    a.Add("n" + std::to_string(i), value, value);
  }
  for (const std::int32_t most : {1, 7, 50, 299}) {
    const GraphOptions bar{kGraphTypeBar, kGraphSortByValue, most};
    const GraphOptions pie{kGraphTypePie, kGraphSortByValue, most};
    EXPECT_EQ(Names(DoChart(a, bar, Tab::Procedures, Measure::Average)),
              Names(DoChart(a, pie, Tab::Procedures, Measure::Average)))
        << most;
  }
}

TEST(DoChart, LimitAppliesOnlyOnProceduresAndLinesAndNotAtZero) {
  const ChartArrays a = Items(5);
  GraphOptions o{kGraphTypeBar, kGraphSortByValue, 3};
  EXPECT_EQ(DoChart(a, o, Tab::Modules, Measure::Total).Items.size(), 5u);   // modules
  EXPECT_EQ(DoChart(a, o, Tab::Projects, Measure::Total).Items.size(), 5u);  // projects
  EXPECT_EQ(DoChart(a, o, Tab::Lines, Measure::Total).Items.size(), 3u);
  o.GraphMaxItems = 0;
  EXPECT_EQ(DoChart(a, o, Tab::Lines, Measure::Total).Items.size(), 5u);
}

TEST(DoChart, BarOfTimesUnderOneSecondIsInMicroseconds) {
  const ChartArrays a = Items(3, 0.001);
  const ChartDescription c = DoChart(a, GraphOptions{}, Tab::Procedures, Measure::Total);
  EXPECT_EQ(c.ChartType, kChartTypeBar2d);
  EXPECT_EQ(c.Title, "bar title");
  EXPECT_TRUE(c.ScaledToMicroseconds);
  EXPECT_DOUBLE_EQ(c.Items.back().Values[0], 3000);
  EXPECT_EQ(c.AxisTop, 5000);
  // A second or more stays in seconds.
  const ChartDescription s = DoChart(Items(3), GraphOptions{}, Tab::Procedures, Measure::Total);
  EXPECT_FALSE(s.ScaledToMicroseconds);
  EXPECT_EQ(s.AxisTop, 5);
}

TEST(DoChart, CoverageAxisTopsAtOneHundred) {
  ChartArrays a;
  a.Add("a", 12, 1);
  a.Add("b", 66, 1);
  EXPECT_EQ(DoChart(a, GraphOptions{}, Tab::Procedures, Measure::Coverage).AxisTop, 100);
}

TEST(DoChart, LinesTabSortsByIdAndShowsTheTextOnly) {
  ChartArrays a;
  a.Add("10-b = 2", 5, 5);
  a.Add("02-a - 1", 9, 9);
  a.Add("07-c", 1, 1);
  const ChartDescription c =
      DoChart(a, GraphOptions{kGraphTypeBar, kGraphSortByName, 20}, Tab::Lines, Measure::Total);
  EXPECT_EQ(Names(c), (std::vector<std::string>{"a - 1", "c", "b = 2"}));
  // The procedures tab keeps names as they are.
  EXPECT_EQ(
      DoChart(a, GraphOptions{kGraphTypeBar, kGraphSortByName, 20}, Tab::Procedures, Measure::Total)
          .Items[0]
          .Name,
      "02-a - 1");
}

TEST(DoChart, SortOnlyReordersWhatTheChartHolds) {
  ChartDescription c = DoChart(Items(3), GraphOptions{}, Tab::Procedures, Measure::Total);
  EXPECT_EQ(Names(c), (std::vector<std::string>{"p99", "p98", "p97"}));
  DoChartSortOnly(c, kGraphSortByName);
  EXPECT_EQ(Names(c), (std::vector<std::string>{"p97", "p98", "p99"}));
  ChartDescription reset = ResetChart();
  DoChartSortOnly(reset, kGraphSortByName);
  EXPECT_EQ(reset, ResetChart());
}

TEST(DoChart, EmptyArraysResetAndGraphTypeNoneDrawsNothing) {
  ChartArrays a;
  a.PieCaption = "Unavailable (Compared sessions) - Select Bar chart";
  ChartDescription c = DoChart(a, GraphOptions{}, Tab::Procedures, Measure::Total);
  EXPECT_TRUE(c.IsReset);
  EXPECT_EQ(c.Items[0].Name, "No available chart");
  EXPECT_TRUE(c.Items[0].Values.empty());
  c = DoChart(a, GraphOptions{kGraphTypePie, 2, 20}, Tab::Procedures, Measure::Total);
  EXPECT_TRUE(c.IsReset);
  EXPECT_EQ(c.Title, "Unavailable (Compared sessions) - Select Bar chart");
  c = DoChart(Items(2), GraphOptions{kGraphTypeNone, 2, 20}, Tab::Procedures, Measure::Total);
  EXPECT_EQ(c.ChartType, 0);
  EXPECT_TRUE(c.Items.empty());

  ChartArrays full = Items(2);
  ResetChart(full, false);
  EXPECT_EQ(full.ChartArrayBar.size(), 2u);
  ResetChart(full, true);
  EXPECT_TRUE(full.ChartArrayBar.empty());
  EXPECT_TRUE(full.ChartArrayPie.empty());
}

TEST(DoChart, ComparedBarsKeepEverySeries) {
  ChartArrays a;
  a.ChartArrayBar = {{"x", {2, 0.5}}, {"y", {1, 3}}};
  a.LegendText = {"run1", "run2"};
  const ChartDescription c = DoChart(a, GraphOptions{}, Tab::Procedures, Measure::Total);
  EXPECT_EQ(c.SeriesNames, a.LegendText);
  EXPECT_EQ(c.Items[0], (ChartRow{"x", {2, 0.5}}));  // sorted by the largest value
  EXPECT_EQ(c.Items[1], (ChartRow{"y", {1, 3}}));
}

TEST(DoChart, PackedItemsDrawAsTheSameItemsInArrays) {
  // Values with ties at the cut and names out of order, as a Lines tab has.
  ChartArrays arrays;
  ChartArrays packed;
  packed.PackedIdDigits = 2;
  auto texts = std::make_shared<std::string>();
  for (int i = 0; i < 40; ++i) {
    const std::int32_t id = 97 * i % 40 + 1;
    const std::string text = "line " + std::string(static_cast<std::size_t>(i), 'x');
    const double value = (i * 7 % 13) * 0.01;
    arrays.Add(LineChartName(id, 2, text), value, 1000000 * value);
    const TextRef ref{static_cast<std::uint32_t>(texts->size()),
                      static_cast<std::uint32_t>(text.size())};
    *texts += text;
    packed.AddPackedLine(id, ref, value, 1000000 * value);
  }
  packed.PackedTexts = texts;
  for (ChartArrays* a : {&arrays, &packed}) a->SetTitles("bar", "pie");
  EXPECT_EQ(packed.BarItem(3), arrays.BarItem(3));
  EXPECT_EQ(packed.PieItem(39), arrays.PieItem(39));
  for (const std::int32_t type : {kGraphTypeBar, kGraphTypePie}) {
    for (const std::int32_t sortKey : {kGraphSortByName, kGraphSortByValue}) {
      for (const std::int32_t most : {0, 5, 40, 60}) {
        for (const Tab tab : {Tab::Procedures, Tab::Lines}) {
          const GraphOptions o{type, sortKey, most};
          EXPECT_EQ(DoChart(packed, o, tab, Measure::Total),
                    DoChart(arrays, o, tab, Measure::Total))
              << type << " " << sortKey << " " << most << " " << IndexOf(tab);
        }
      }
    }
  }
  packed.Erase();
  EXPECT_TRUE(DoChart(packed, {}, Tab::Lines, Measure::Total).IsReset);
}

TEST(GraphOptions, DefaultsClampedValuesAndRoundTrip) {
  testing::ScopedTempDir dir;
  const std::string ini = dir / "Zolmark.ini";
  EXPECT_EQ(LoadGraphOptions(ini), (GraphOptions{1, 2, 20}));
  WriteFile(ini, "[Profiler]\r\nGraphType=7\r\nGraphSortKey=junk\r\nGraphMaxItems=-4\r\n");
  EXPECT_EQ(LoadGraphOptions(ini), (GraphOptions{2, 2, 0}));
  SaveGraphOptions(GraphOptions{0, 1, 35}, ini);
  EXPECT_EQ(LoadGraphOptions(ini), (GraphOptions{0, 1, 35}));
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "GraphMaxItems", "", ini), "35");
}

}  // namespace
}  // namespace zol
