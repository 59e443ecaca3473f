#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "base/cp1252.h"
#include "grid/grid_frame.h"
#include "grid/grid_sort.h"
#include "grid/table_helpers.h"

namespace zol {
namespace {

using testing::ColumnTexts;
using V = std::vector<std::string>;

// Rows of a name and a value; "  " makes a dead (grey) row; a total row last.
Table ValueTable(const V& names, const V& values, const std::string& valueHeader = "Hits") {
  Table t;
  t.AddColumn("Procedure");
  t.AddColumn(valueHeader, Alignment::Right);
  for (std::size_t i = 0; i < names.size(); ++i) {
    RowRef r = t.AddRow("", names[i]);
    r.SetText(2, values[i]);
    if (values[i] == "  ") MarkDeadRow(t, r, 2, 2, 0);
  }
  RowRef total = t.AddRow("TOTAL", "TOTAL");
  total.SetText(2, "999");
  MarkTotalRow(total, 2, 0);
  return t;
}

TEST(GridSort, NumbersSortAsNumbersDashesAsTextDeadRowsAndTotalLast) {
  Table t =
      ValueTable({"a", "b", "c", "d", "e", "f"}, {"9", "  ", "-", "100", "12.5", "2147483647"});
  SortMemory m;
  EXPECT_EQ(SortTable(t, m, 2, kSortDescending), kSortDescending);
  EXPECT_EQ(ColumnTexts(t, 1), (V{"f", "d", "e", "a", "c", "b", "TOTAL"}));
  EXPECT_EQ(SortTable(t, m, 2, kSortAscending), kSortAscending);
  EXPECT_EQ(ColumnTexts(t, 1), (V{"c", "a", "e", "d", "f", "b", "TOTAL"}));
  // The texts come back as they were.
  EXPECT_EQ(ColumnTexts(t, 2), (V{"-", "9", "12.5", "100", "2147483647", "  ", "999"}));
}

TEST(GridSort, PercentagesAndTimesCompareByValue) {
  Table t = ValueTable({"a", "b", "c", "d"}, {"9.5%", "100%", "12.3%", "0%"}, "% Time");
  SortMemory m;
  SortTable(t, m, 2, kSortDescending);
  EXPECT_EQ(ColumnTexts(t, 1), (V{"b", "c", "a", "d", "TOTAL"}));
  t = ValueTable({"a", "b", "c"}, {"10.000000", "9.999999", "0.000001"}, "Total Time");
  SortTable(t, m, 2, kSortAscending);
  EXPECT_EQ(ColumnTexts(t, 1), (V{"c", "b", "a", "TOTAL"}));
}

TEST(GridSort, TextColumnsIgnoreCaseAndKeepTheTotalLast) {
  Table t = ValueTable({"beta", "Alpha", "gamma", "ALPHB"}, {"1", "2", "3", "4"});
  SortMemory m;
  SortTable(t, m, 1, kSortAscending);
  EXPECT_EQ(ColumnTexts(t, 1), (V{"Alpha", "ALPHB", "beta", "gamma", "TOTAL"}));
  SortTable(t, m, 1, kSortDescending);
  EXPECT_EQ(ColumnTexts(t, 1), (V{"gamma", "beta", "ALPHB", "Alpha", "TOTAL"}));
}

TEST(GridSort, HeaderClicksToggleOnTheSameColumnAndLineIdStartsAscending) {
  Table t;
  t.AddColumn("Line");
  t.AddColumn("Hits", Alignment::Right);
  t.AddColumn("Line ID", Alignment::Right);
  for (const char* id : {"2", "10", "1"}) {
    RowRef r = t.AddRow("", "x");
    r.SetText(2, id);
    r.SetText(3, id);
  }
  SortMemory m;
  // Not sorted yet: a click sorts descending.
  EXPECT_EQ(SortTable(t, m, 2, kSortToggle), kSortDescending);
  EXPECT_EQ(ColumnTexts(t, 2), (V{"10", "2", "1"}));
  EXPECT_EQ(SortTable(t, m, 2, kSortToggle), kSortAscending);
  EXPECT_EQ(SortTable(t, m, 2, kSortToggle), kSortDescending);
  // Another column keeps the last order, but "Line ID" goes in source order.
  EXPECT_EQ(SortTable(t, m, 3, kSortToggle), kSortAscending);
  EXPECT_EQ(ColumnTexts(t, 3), (V{"1", "2", "10"}));
  EXPECT_EQ(SortTable(t, m, 1, kSortToggle), kSortAscending);
  EXPECT_EQ(m.LastColumn, 1);
}

TEST(GridSort, EmptyTableIsLeftAloneAndMemoryKept) {
  Table t;
  t.AddColumn("Hits");
  SortMemory m{3, 1};
  EXPECT_EQ(SortTable(t, m, 1, kSortToggle), -1);
  EXPECT_EQ(m.LastColumn, 3);
  EXPECT_EQ(m.LastSortOrder, 1);
  EXPECT_FALSE(t.Sorted);
}

TEST(GridSort, SortedColumnTurnsDarkBlueExceptGreyRowsAndTheTotal) {
  Table t = ValueTable({"a", "b"}, {"1", "  "});
  t.AddColumn("Other", Alignment::Right);
  SortMemory m;
  SortTable(t, m, 2, kSortDescending);
  const Row& live = t.RowAt(1);
  EXPECT_EQ(live.Cells[1].Color, kColorDarkBlue);
  EXPECT_EQ(t.RowAt(2).Cells[1].Color, kColorGrey);
  EXPECT_EQ(t.RowAt(3).Cells[1].Color, kColorBlue);
  SortTable(t, m, 1, kSortDescending);
  EXPECT_EQ(testing::RowWith(t, 1, "a").Cells[1].Color, kColorStandard);
  EXPECT_EQ(testing::RowWith(t, 1, "a").Cells[0].Color, kColorDarkBlue);

  // Compared tables keep their own colours.
  Table c = ValueTable({"a", "b"}, {"1", "2"});
  c.EditRow(1).SetColor(2, kColorGreen);
  SortTable(c, m, 2, kSortDescending, true);
  EXPECT_EQ(testing::RowWith(c, 1, "a").Cells[1].Color, kColorGreen);
}

TEST(GridSort, SelectionFollowsTheSelectedRow) {
  Table t = ValueTable({"a", "b", "c"}, {"1", "3", "2"});
  t.SelectedRow = 1;
  SortMemory m;
  SortTable(t, m, 2, kSortDescending);
  EXPECT_EQ(t.RowAt(t.SelectedRow).RowText(), "a");
}

TEST(GridSort, BarsSortByLengthAndEmptyCellsBeforeNumbersWhenAscending) {
  Table t = ValueTable({"a", "b", "c"}, {"lll", "", "l"}, "-\x9B Bars ");
  SortMemory m;
  SortTable(t, m, 2, kSortDescending);
  EXPECT_EQ(ColumnTexts(t, 1), (V{"a", "c", "b", "TOTAL"}));
}

// The sort ranks each distinct text once and orders rows by numbers; a plain
// stable sort that compares the cells themselves must give the same rows, on
// columns mixing texts that differ only in case (also past their eighth
// letter), texts before and after "0", numbers, percentages, dead cells and
// equal keys, in both directions.
TEST(GridSort, RankedKeysAgreeWithComparingTheCells) {
  const V pool{"alpha", "Alpha", "ALPHA", "beta", "-", "!x", "zeta", "0", "00", "", "12", "3.5",
               "50%", "  ", "2.00x", "\xE9", "\xC9", "7",
               // Longer than eight letters, alike in their first eight.
               "alphabetical", "AlphabetiCAL", "alphabet", "alphabet\xC9x", "alphabet\xE9"};
  for (const std::string header : {"Hits", "Module"}) {
    for (std::uint32_t seed = 1; seed <= 40; ++seed) {
      std::vector<std::string> cells;
      std::uint32_t state = seed;
      for (int i = 0; i < 60; ++i) {
        state = state * 1103515245u + 12345u;
        cells.push_back(pool[(state >> 16) % pool.size()]);
      }
      V names;
      for (std::size_t i = 0; i < cells.size(); ++i) names.push_back("r" + std::to_string(i));
      const bool numeric = header == "Hits";
      for (const std::int32_t order : {kSortAscending, kSortDescending}) {
        Table t = ValueTable(names, cells, header);
        SortMemory m;
        SortTable(t, m, 2, order);

        // The reference: (place, kind, number or text), compared directly.
        struct Ref {
          int place;
          int kind;
          double number;
          std::string text;
          std::string name;
        };
        std::vector<Ref> refs;
        for (std::size_t i = 0; i < cells.size(); ++i) {
          Ref r{0, 0, 0, cells[i], names[i]};
          std::string_view text = cells[i];
          if (!text.empty() && (text.back() == '%' || text.back() == 'x')) text.remove_suffix(1);
          const auto number = numeric && !text.empty() ? ParseCellNumber(text) : std::nullopt;
          std::string lower = cells[i];
          for (char& c : lower) c = LowerCase1252(c);
          if (numeric && cells[i] == "  ") {
            r.place = 1;
          } else if (number) {
            r.kind = 1;
            r.number = *number;
          } else {
            r.kind = lower < "0" ? 0 : 2;
            r.text = lower;
          }
          refs.push_back(r);
        }
        std::stable_sort(refs.begin(), refs.end(), [&](const Ref& a, const Ref& b) {
          if (a.place != b.place) return a.place < b.place;
          if (a.place != 0) return false;
          int c = a.kind != b.kind ? (a.kind < b.kind ? -1 : 1) : 0;
          if (c == 0 && a.kind == 1) c = a.number < b.number ? -1 : (b.number < a.number ? 1 : 0);
          if (c == 0 && a.kind != 1) c = a.text < b.text ? -1 : (b.text < a.text ? 1 : 0);
          return order == kSortAscending ? c < 0 : c > 0;
        });
        V expected;
        for (const Ref& r : refs) expected.push_back(r.name);
        expected.push_back("TOTAL");
        ASSERT_EQ(ColumnTexts(t, 1), expected)
            << header << ", seed " << seed << ", order " << order;
      }
    }
  }
}

}  // namespace
}  // namespace zol
