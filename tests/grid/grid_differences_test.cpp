#include "grid/grid_differences.h"

#include <gtest/gtest.h>

#include "grid/table_helpers.h"

namespace zol {
namespace {

using testing::Shown;
using testing::ShownHeaders;
using V = std::vector<std::string>;

// A compared procedures grid of two runs, made by hand: total and average
// time per run, the first run green, the second dark red.
GridBuild TwoRuns() {
  GridBuild b;
  Table& t = b.Grid;
  for (const char* h : {"Module", "Procedure"}) t.AddColumn(h);
  for (int k = 0; k < 2; ++k) {
    t.AddColumn("Tot. Time", Alignment::Right);
    t.AddColumn("Avg. Time", Alignment::Right);
  }
  const auto add = [&](const char* module, const char* procedure, V values,
                       std::string_view key = {}) {
    RowRef row = t.AddRow(key, module);
    row.SetText(2, procedure);
    for (int c = 0; c < 4; ++c) {
      row.SetText(3 + c, values[c]);
      row.SetColor(3 + c, c < 2 ? kColorGreen : kColorDarkRed);
    }
    return row;
  };
  add("Mod", "Slow", {"0.500000", "0.250000", "1.000000", "0.500000"});
  add("Mod", "Steady", {"1.000000", "0.100000", "1.050000", "0.105000"});
  add("Mod", "Fast", {"1.000000", "1.000000", "0.400000", "0.400000"});
  // A hundredfold change of a tenth of a millisecond is still noise.
  add("Mod", "Tiny", {"0.000010", "0.000010", "0.001000", "0.001000"});
  add("Mod", "Added", {"", "", "0.300000", "0.300000"});
  RowRef total = add("", "TOTAL", {"2.500010", "0.300000", "3.751000", "0.400000"}, kTotalKey);
  for (int c = 1; c <= t.ColumnCount(); ++c) total.SetBold(c, true);
  b.Headers = FakeHeaders{{"Monday", "Tuesday"}, 2, 2, {}};
  return b;
}

TEST(GridDifferences, ColumnsAfterTheLaterRunColouredByTheNoiseRule) {
  GridBuild b = TwoRuns();
  const GridBuild before = b;
  ShowDifferences(b, {});
  EXPECT_EQ(b.Grid.Rows().size(), before.Grid.Rows().size());
  EXPECT_EQ(ShownHeaders(b.Grid), ShownHeaders(before.Grid));
  EXPECT_EQ(b.Headers, before.Headers);

  ShowDifferences(b, {.Show = true});
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t), (V{"Module", "Procedure", "Tot. Time", "Avg. Time", "Tot. Time",
                                "Avg. Time", "Diff.", "Ratio"}));
  EXPECT_EQ(b.Headers.RunColumns(0), 2);
  EXPECT_EQ(b.Headers.RunColumns(1), 4);
  // Sorted by change: rows new in the later run, then the largest change
  // first, the total row last.
  ASSERT_EQ(t.RowCount(), 6);
  EXPECT_EQ(Shown(t, t.RowAt(1)), (V{"Mod", "Added", "", "", "0.300000", "0.300000", "new", ""}));
  EXPECT_EQ(Shown(t, t.RowAt(2)), (V{"Mod", "Tiny", "0.000010", "0.000010", "0.001000", "0.001000",
                                     "+9900.0%", "100.00x"}));
  EXPECT_EQ(Shown(t, t.RowAt(6))[1], "TOTAL");
  EXPECT_TRUE(t.RowAt(6).Cells[6].Bold);

  const auto rowOf = [&](const std::string& procedure) {
    return testing::RowWith(t, 2, procedure);
  };
  EXPECT_EQ(rowOf("Slow").Text(7), "+100%");
  EXPECT_EQ(rowOf("Slow").Text(8), "2.00x");
  EXPECT_EQ(rowOf("Slow").Cells[6].Color, kColorRed);
  EXPECT_EQ(rowOf("Slow").Cells[7].Color, kColorRed);
  EXPECT_EQ(rowOf("Slow").Cells[4].Color, kColorDarkRed);  // the run keeps its colour
  EXPECT_EQ(rowOf("Steady").Text(7), "+5.0%");
  EXPECT_EQ(rowOf("Steady").Cells[6].Color, kColorGrey);
  EXPECT_EQ(rowOf("Tiny").Cells[6].Color, kColorGrey);
  EXPECT_EQ(rowOf("Fast").Text(7), "-60.0%");
  EXPECT_EQ(rowOf("Fast").Text(8), "0.40x");
  EXPECT_EQ(rowOf("Fast").Cells[6].Color, kColorGreen);
  EXPECT_EQ(rowOf("Added").Text(7), "new");
  EXPECT_EQ(rowOf("Added").Text(8), "");
}

TEST(GridDifferences, ChangedOnlyKeepsTheChangesAndTheTotal) {
  GridBuild b = TwoRuns();
  ShowDifferences(b, {.Show = true, .ChangedOnly = true});
  V kept;
  for (const Row& row : b.Grid.Rows()) kept.push_back(row.Text(2));
  EXPECT_EQ(kept, (V{"Added", "Slow", "Fast", "TOTAL"}));
  // Without the option itself nothing is filtered.
  b = TwoRuns();
  ShowDifferences(b, {.Show = false, .ChangedOnly = true});
  EXPECT_EQ(b.Grid.RowCount(), 6);
}

TEST(GridDifferences, ThreeRunsOfTheLinesGridCompareTimesAgainstTheFirst) {
  GridBuild b;
  Table& t = b.Grid;
  t.AddColumn("Line");
  for (int k = 0; k < 3; ++k) {
    t.AddColumn("Hits", Alignment::Right);
    t.AddColumn("Tot. Time", Alignment::Right);
  }
  RowRef row = t.AddRow("", "x = 1");
  const V cells{"3", "0.100000", "9", "0.100000", "3", "0.300000"};
  for (int c = 0; c < 6; ++c) row.SetText(2 + c, cells[c]);
  RowRef end = t.AddRow("", "End Sub");
  for (int c = 0; c < 6; ++c) end.SetText(2 + c, c % 2 ? "-" : "3");
  b.Headers = FakeHeaders{{"a", "b", "c"}, 1, 2, {}};
  ShowDifferences(b, {.Show = true});
  EXPECT_EQ(ShownHeaders(b.Grid), (V{"Line", "Hits", "Tot. Time", "Hits", "Tot. Time", "Diff.",
                                     "Ratio", "Hits", "Tot. Time", "Diff.", "Ratio"}));
  EXPECT_EQ((std::vector<std::int32_t>{2, 4, 4}), b.Headers.ColumnsPerSession);
  const Row& line = testing::RowWith(b.Grid, 1, "x = 1");
  // Nine hits instead of three, the time the same: the figure is the time.
  EXPECT_EQ(line.Text(6), "0%");
  EXPECT_EQ(line.Cells[5].Color, kColorGrey);
  EXPECT_EQ(line.Text(10), "+200.0%");
  EXPECT_EQ(line.Text(11), "3.00x");
  // A procedure's end has no time in any run: nothing to compare.
  EXPECT_EQ(testing::RowWith(b.Grid, 1, "End Sub").Text(10), "");
}

}  // namespace
}  // namespace zol
