#include <gtest/gtest.h>

#include <memory>

#include "grid/bars.h"
#include "grid/grid_builders.h"
#include "grid/grid_fixture.h"
#include "grid/grid_frame.h"
#include "grid/table_helpers.h"

namespace zol {
namespace {

using testing::GridFixture;
using testing::RowWith;
using testing::Shown;
using testing::ShownHeaders;
using V = std::vector<std::string>;

const std::string kBars = kBarsHeader;

TEST(ShowLines, TimingListsHitLinesButNoProcedureEnds) {
  GridFixture f;
  SortMemory sort;
  const GridBuild b = ShowLines(f.ws, f.Select(Measure::Total), sort, false);
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t), (V{"Module", "Procedure", "Hits", "% Hits", "Total Time", kBars,
                                "% Time", "Average Time", "Line", "Line ID"}));
  ASSERT_EQ(t.RowCount(), 4);
  EXPECT_EQ(Shown(t, t.RowAt(1)), (V{"Form1", "Form_Load", "1", "7.1%", "2.500000", BarText(15),
                                     "95.4%", "2.500000", "x = 8", "8"}));
  EXPECT_EQ(Shown(t, t.RowAt(2)), (V{"Module1", "Main", "3", "21.4%", "0.120000", BarText(12),
                                     "4.6%", "0.040000", "x = 1", "1"}));
  EXPECT_EQ(Shown(t, t.RowAt(3)), (V{"Module1", "Helper", "10", "71.4%", "0.000002", BarText(2),
                                     "0.0%", "0.000000", "x = 4", "4"}));
  EXPECT_EQ(Shown(t, t.RowAt(4)),
            (V{"", "TOTAL", "14", "100%", "2.620002", BarText(15), "100%", "0.187143", "", ""}));
  EXPECT_EQ(t.RowAt(2).Tag, 1);
  ASSERT_EQ(b.Chart, ChartUpdate::Draw);
  EXPECT_EQ(b.Arrays.BarItem(0), (ChartRow{"01-x = 1", {0.12}}));
  EXPECT_EQ(b.Arrays.PieItem(0).Value, 120000);
  EXPECT_EQ(b.Arrays.BarTitle, "Total Time spent in lines (seconds)");
}

TEST(ShowLines, CoverageCountsHitsWithLogBarsAndListsProcedureEnds) {
  GridFixture f;
  SortMemory sort;
  const GridBuild b = ShowLines(f.ws, f.Select(Measure::Coverage), sort, false);
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t),
            (V{"Module", "Procedure", "Hits", kBars, "% Hits", "Line", "Line ID"}));
  ASSERT_EQ(t.RowCount(), 7);
  EXPECT_EQ(Shown(t, t.RowAt(1)),
            (V{"Module1", "Helper", "10", BarText(3), "35.7%", "x = 4", "4"}));
  EXPECT_EQ(Shown(t, RowWith(t, 6, "9")),
            (V{"Form1", "Form_Load", "1", BarText(1), "3.6%", "End Sub", "9"}));
  EXPECT_EQ(Shown(t, t.RowAt(7)), (V{"", "TOTAL", "28", BarText(4), "100%", "", ""}));
  EXPECT_EQ(sort.LastColumn, 3);
  EXPECT_EQ(b.Arrays.BarTitle, "Line hits (1 line execution = 1 hit)");
  EXPECT_EQ(b.Arrays.PieItem(0), (ChartItem{"01-x = 1", 3}));  // hits, not scaled
}

TEST(ShowLines, SelectedProcedureListsUnhitLinesAndItsEndOnlyForCoverage) {
  GridFixture f;
  SortMemory sort;
  Table t =
      ShowLines(f.ws, f.Select(Measure::Total, testing::kModule1, testing::kMain), sort, false)
          .Grid;
  EXPECT_EQ(testing::ColumnTexts(t, 9), (V{"1", "2", ""}));
  EXPECT_EQ(Shown(t, RowWith(t, 9, "2")),
            (V{"Module1", "Main", "-", "-", "-", "", "-", "-", "x = 2", "2"}));
  t = ShowLines(f.ws, f.Select(Measure::Coverage, testing::kModule1, testing::kMain), sort, false)
          .Grid;
  EXPECT_EQ(testing::ColumnTexts(t, 6), (V{"1", "3", "2", ""}));

  // A selected module lists only its hit lines.
  t = ShowLines(f.ws, f.Select(Measure::Coverage, testing::kForm1), sort, false).Grid;
  EXPECT_EQ(testing::ColumnTexts(t, 6), (V{"8", "9", ""}));
}

TEST(ShowLines, LinesOfADeadProcedureAreGreyBlanks) {
  GridFixture f;
  SortMemory sort;
  const Table t =
      ShowLines(f.ws, f.Select(Measure::Total, testing::kForm1, testing::kOldCode), sort, false)
          .Grid;
  ASSERT_EQ(t.RowCount(), 2);
  const Row& dead = RowWith(t, 9, "10");
  EXPECT_EQ(Shown(t, dead),
            (V{"Form1", "OldCode", "  ", "  ", "  ", "  ", "  ", "  ", "x = 10", "10"}));
  EXPECT_EQ(dead.Color(), kColorGrey);
  // Nothing ran: the total row shows dashes.
  EXPECT_EQ(Shown(t, t.RowAt(2)), (V{"", "TOTAL", "-", "-", "-", "", "-", "-", "", ""}));
}

TEST(ShowLines, NoShownLineResetsTheChart) {
  GridFixture f;
  for (CodeLineValue& v : f.ws.Session(f.cs).CodeLineValue) v.Hits = 0;
  SortMemory sort;
  const GridBuild b = ShowLines(f.ws, f.Select(Measure::Total), sort, false);
  EXPECT_EQ(b.Grid.RowCount(), 0);
  EXPECT_EQ(b.Chart, ChartUpdate::Reset);
}

TEST(ShowLines, FakeTableHasHeadersAndOneBlankRowOnly) {
  GridFixture f;
  SortMemory sort;
  const GridBuild b = ShowLines(f.ws, f.Select(Measure::ChildTotal), sort, true);
  EXPECT_EQ(ShownHeaders(b.Grid), (V{"Module", "Procedure", "Hits", "% Hits", "Child Tot. Time",
                                     "% Time", "Child Avg. Time", "Line", "Line ID"}));
  ASSERT_EQ(b.Grid.RowCount(), 1);
  EXPECT_EQ(b.Grid.RowAt(1).RowText(), " ");
  EXPECT_EQ(b.Grid.RowAt(1).Text(9), " ");
  EXPECT_EQ(b.Chart, ChartUpdate::None);
}

TEST(ShowLines, ProgressRunsToOneAndAHalfTimesTheLinesThenClears) {
  GridFixture f;
  auto prompter = std::make_shared<RecordingPrompter>();
  f.ws.SetPrompter(prompter);
  SortMemory sort;
  ShowLines(f.ws, f.Select(Measure::Total), sort, false);
  EXPECT_EQ(prompter->progressMax, 16);  // 11 lines * 1.5
  EXPECT_EQ(prompter->progressValue, 0);
  EXPECT_FALSE(prompter->progressVisible);
}

TEST(ShowLinesUnavailable, TwoRowsOfNoticeAndAResetChart) {
  const GridBuild b = ShowLinesUnavailable("Unavailable (heterogeneous sessions)",
                                           "Please click the Procedures tab");
  ASSERT_EQ(b.Grid.ColumnCount(), 1);
  EXPECT_EQ(b.Grid.ColumnAt(1).Header, "");
  EXPECT_EQ(testing::ColumnTexts(b.Grid, 1),
            (V{"Unavailable (heterogeneous sessions)", "Please click the Procedures tab"}));
  EXPECT_EQ(b.Chart, ChartUpdate::Reset);
}

TEST(LineChartName, ZeroPaddedIdAndTextCutTo33Characters) {
  EXPECT_EQ(LineIdDigits(9), 1);
  EXPECT_EQ(LineIdDigits(99), 2);
  EXPECT_EQ(LineIdDigits(100), 3);
  EXPECT_EQ(LineIdDigits(0), 1);
  const std::string longText(40, 'a');
  EXPECT_EQ(LineChartName(7, 3, longText), "007-" + std::string(33, 'a') + "...");
  EXPECT_EQ(LineChartName(7, 3, std::string(36, 'b')), "007-" + std::string(36, 'b'));
  EXPECT_EQ(LineChartName(1234, 3, "x"), "234-x");
}

TEST(ShowLines, LongSourceLineStandsWholeInTheGrid) {
  GridFixture f;
  const std::string text = "MsgBox \"" + std::string(50, 'z') + "\"";
  f.ws.Project(f.cp).CodeLine(1).Text = text;
  SortMemory sort;
  const GridBuild b = ShowLines(f.ws, f.Select(Measure::Total), sort, false);
  EXPECT_EQ(RowWith(b.Grid, 9, "1").Text(8), text);
  EXPECT_EQ(b.Arrays.BarItem(0).Name, "01-" + text.substr(0, 33) + "...");
}

}  // namespace
}  // namespace zol
