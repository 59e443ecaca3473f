#include <gtest/gtest.h>

#include "grid/bars.h"
#include "grid/grid_builders.h"
#include "grid/grid_fixture.h"
#include "grid/table_helpers.h"

namespace zol {
namespace {

using testing::GridFixture;
using testing::RowWith;
using testing::Shown;
using testing::ShownHeaders;
using V = std::vector<std::string>;

const std::string kBars = kBarsHeader;

TEST(ProceduresCoverage, LinesProbedProceduresWithCriticalColumnAndLinearBars) {
  GridFixture f;
  SortMemory sort;
  const GridBuild b = ShowProceduresCoverage(f.ws, f.Select(Measure::Coverage), sort);
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t), (V{"Module", "Procedure", "Hits", "# Lines", "Hit Lines", "Coverage",
                                kBars, "Left Lines", "Critical Cov."}));
  ASSERT_EQ(t.RowCount(), 6);
  // Sorted on coverage; equal values keep their order; dead rows below.
  EXPECT_EQ(Shown(t, t.RowAt(1)),
            (V{"Module1", "Helper", "10", "2", "2", "100%", BarText(20), "0", "-"}));
  EXPECT_EQ(Shown(t, t.RowAt(2)),
            (V{"Form1", "Form_Load", "1", "2", "2", "100%", BarText(20), "0", "-"}));
  EXPECT_EQ(Shown(t, t.RowAt(3)),
            (V{"Module1", "Main", "3", "3", "2", "66.7%", BarText(13), "1", "66.7%"}));
  EXPECT_EQ(Shown(t, t.RowAt(4)), (V{"Module1", "Unused", "-", "2", "-", "0%", "", "2", "-"}));
  EXPECT_EQ(Shown(t, t.RowAt(5)), (V{"Form1", "OldCode", "  ", "  ", "  ", "  ", "", "  ", "  "}));
  EXPECT_EQ(t.RowAt(5).Color(), kColorGrey);
  // Totals: hits summed over the rows, lines from the session's record.
  EXPECT_EQ(Shown(t, t.RowAt(6)),
            (V{"", "TOTAL", "14", "9", "6", "66.7%", BarText(13), "3", "66.7%"}));

  EXPECT_EQ(b.Arrays.BarTitle, "Procedure Coverage");
  EXPECT_EQ(b.Arrays.PieTitle, "Procedure Hits (1 call = 1 hit)");
  ASSERT_EQ(b.Arrays.ChartArrayBar.size(), 5u);
  EXPECT_EQ(b.Arrays.ChartArrayBar[0], (ChartRow{"Main", {66}}));
  EXPECT_EQ(b.Arrays.ChartArrayPie[1], (ChartItem{"Helper", 10}));
}

TEST(ProceduresCoverage, NoCriticalColumnWithoutCriticalCodeAndDeadCriticalShowsDash) {
  GridFixture f;
  f.ws.Project(f.cp).ContainsCritical = false;
  f.ws.Project(f.cp).Procedure(testing::kMain).IsCritical = false;
  SortMemory sort;
  Table t = ShowProceduresCoverage(f.ws, f.Select(Measure::Coverage), sort).Grid;
  EXPECT_EQ(t.FindColumn("Critical Cov."), 0);
  EXPECT_EQ(t.Position(t.FindColumn(kBars)), 7);

  GridFixture g;
  g.ws.Project(g.cp).Procedure(testing::kOldCode).IsCritical = true;
  t = ShowProceduresCoverage(g.ws, g.Select(Measure::Coverage, testing::kForm1), sort).Grid;
  EXPECT_EQ(Shown(t, RowWith(t, 2, "OldCode")),
            (V{"Form1", "OldCode", "  ", "  ", "  ", "  ", "", "  ", "-"}));
  // Module selected: its record gives the total's lines, no critical lines here.
  EXPECT_EQ(Shown(t, t.RowAt(t.FindRow("TOTAL"))),
            (V{"", "TOTAL", "1", "2", "2", "100%", BarText(20), "0", "-"}));
}

TEST(ProceduresCoverage, ProcedureWithoutLineProbesShowsZeroLinesAndDashes) {
  GridFixture f;
  Session& s = f.ws.Session(f.cs);
  s.ProcedureValue(testing::kUnused).TotalLines = 0;
  SortMemory sort;
  const Table t =
      ShowProceduresCoverage(f.ws, f.Select(Measure::Coverage, testing::kModule1), sort).Grid;
  EXPECT_EQ(Shown(t, RowWith(t, 2, "Unused")),
            (V{"Module1", "Unused", "-", "0", "-", "-", "", "-", "-"}));
  // The whole-session table leaves it out.
  const Table all = ShowProceduresCoverage(f.ws, f.Select(Measure::Coverage), sort).Grid;
  EXPECT_THROW(RowWith(all, 2, "Unused"), std::runtime_error);
}

TEST(ModulesCoverage, LineAndProcedureCoverageWithCriticalFromTheSums) {
  GridFixture f;
  SortMemory sort;
  const GridBuild b = ShowModulesCoverage(f.ws, f.Select(Measure::Coverage), sort);
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t),
            (V{"Module", "# Lines", "Hit Lines", "Line Coverage", kBars, "Left Lines", "# Proc.",
               "Hit Proc.", "Proc. Coverage", "Left Proc.", "Critical Cov."}));
  EXPECT_EQ(Shown(t, RowWith(t, 1, "Module1")),
            (V{"Module1", "7", "4", "57.1%", BarText(11), "3", "3", "2", "66.7%", "1", "66.7%"}));
  EXPECT_EQ(Shown(t, RowWith(t, 1, "Form1")),
            (V{"Form1", "2", "2", "100%", BarText(20), "0", "1", "1", "100%", "0", "-"}));
  EXPECT_EQ(Shown(t, RowWith(t, 1, "Empty")),
            (V{"Empty", "-", "-", "-", "", "-", "-", "-", "-", "-", ""}));
  EXPECT_EQ(Shown(t, t.RowAt(t.FindRow("TOTAL"))),
            (V{"TOTAL", "9", "6", "66.7%", BarText(13), "3", "4", "3", "75.0%", "1", "66.7%"}));
  EXPECT_EQ(t.RowAt(t.FindRow("TOTAL")).Icon, "SESSION");
  EXPECT_EQ(t.RowAt(1).Text(1), "Form1");  // sorted on line coverage
  EXPECT_EQ(b.Arrays.ChartArrayBar[0], (ChartRow{"Module1", {57}}));
  EXPECT_EQ(b.Arrays.ChartArrayPie[0], (ChartItem{"Module1", 4}));
  EXPECT_EQ(b.Arrays.BarTitle, "Module Coverage (% of executed lines)");
  EXPECT_EQ(b.Arrays.PieTitle, "Module Hits (1 line execution = 1 hit)");
}

TEST(ModulesCoverage, ModuleWithLinesButNoProceduresKeepsItsLineColumns) {
  GridFixture f;
  ModuleValue& empty = f.ws.Session(f.cs).ModuleValue(testing::kEmptyModule);
  empty.TotalLines = 4;
  empty.HitLines = 1;
  SortMemory sort;
  const Table t = ShowModulesCoverage(f.ws, f.Select(Measure::Coverage), sort).Grid;
  EXPECT_EQ(Shown(t, RowWith(t, 1, "Empty")),
            (V{"Empty", "4", "1", "25.0%", BarText(5), "3", "-", "-", "-", "-", "-"}));
}

TEST(ProjectsCoverage, SessionRowAndTotalFromTheSums) {
  GridFixture f;
  SortMemory sort;
  const GridBuild b = ShowProjectsCoverage(f.ws, f.Select(Measure::Coverage), sort);
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t),
            (V{"Project", "# Modules", "# Lines", "Hit Lines", "Line Coverage", kBars, "Left Lines",
               "# Proc.", "Hit Proc.", "Proc. Coverage", "Left Proc.", "Critical Cov."}));
  const V row{"run1", "3", "9", "6", "66.7%", BarText(13), "3", "4", "3", "75.0%", "1", "66.7%"};
  EXPECT_EQ(Shown(t, t.RowAt(1)), row);
  V total = row;
  total[0] = "TOTAL";
  EXPECT_EQ(Shown(t, t.RowAt(2)), total);
  EXPECT_EQ(sort.LastColumn, 4);
  EXPECT_EQ(b.Arrays.ChartArrayBar[0], (ChartRow{"run1", {66}}));
  EXPECT_EQ(b.Arrays.ChartArrayPie[0], (ChartItem{"run1", 6}));
}

TEST(ProjectsCoverage, SessionWithoutProceduresGetsDashesNotADivisionByZero) {
  GridFixture f;
  ModuleValue& sv = f.ws.Session(f.cs).SessionValue;
  sv = ModuleValue{};
  f.ws.Project(f.cp).ContainsCritical = false;
  SortMemory sort;
  const Table t = ShowProjectsCoverage(f.ws, f.Select(Measure::Coverage), sort).Grid;
  EXPECT_EQ(Shown(t, t.RowAt(1)), (V{"run1", "3", "0", "0", "-", "", "0", "0", "-", "-", "0"}));
}

}  // namespace
}  // namespace zol
