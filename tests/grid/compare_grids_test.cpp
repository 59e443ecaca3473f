#include <gtest/gtest.h>

#include "compare/global_sessions.h"
#include "grid/chart.h"
#include "grid/grid_builders.h"
#include "grid/grid_fixture.h"
#include "grid/table_helpers.h"
#include "support/session_builder.h"

namespace zol {
namespace {

using testing::ColumnTexts;
using testing::RowWith;
using testing::Shown;
using testing::ShownHeaders;
using V = std::vector<std::string>;

// Two runs of the fixture's project, both ticked, compared by ID. The second
// run never loaded the form and spent a whole second in Main.
struct HomogeneousFixture : testing::GridFixture {
  std::int32_t run2 = 0;

  HomogeneousFixture() {
    run2 = ++ws.nSession;
    const Session copy = ws.Session(cs);  // SessionSlot may move the table
    ws.SessionSlot(run2) = copy;
    Session& s2 = ws.Session(run2);
    s2.Name = "run2";
    s2.ProcedureValue(testing::kFormLoad) = ProcedureValue{};
    s2.ProcedureValue(testing::kFormLoad).TotalLines = 2;
    s2.ProcedureValue(testing::kMain).TotalTime = 1;
    s2.ProcedureValue(testing::kMain).AverageTime = 1.0 / 3;
    s2.ProcedureValue(testing::kMain).Coverage = 1;
    s2.CodeLineValue(8) = CodeLineValue{};
    s2.CodeLineValue(9) = CodeLineValue{};
    s2.ModuleValue(testing::kForm1) = ModuleValue{};
    s2.ModuleValue(testing::kModule1).TotalTime = 1.0000015;
    s2.SessionValue.TotalTime = 1.0000015;
    ws.Session(cs).Selected = true;
    s2.Selected = true;
    ws.fHomogeneous = true;
  }

  Selection Compared(Measure measure, std::int32_t module = 0, std::int32_t procedure = 0) {
    Selection sel = Select(measure, module, procedure);
    sel.session = SessionRef::compared();
    return sel;
  }
};

TEST(CompareProceduresTiming, OneRunPerSessionBlanksWhereASessionDidNotRun) {
  HomogeneousFixture f;
  const GridBuild b = ShowCompareProceduresTiming(f.ws, f.Compared(Measure::Total));
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t),
            (V{"Module", "Procedure", "Tot. Time", "Avg. Time", "Tot. Time", "Avg. Time"}));
  ASSERT_EQ(t.RowCount(), 4);
  EXPECT_EQ(Shown(t, t.RowAt(1)),
            (V{"Module1", "Main", "0.123456", "0.041152", "1.000000", "0.333333"}));
  EXPECT_EQ(Shown(t, t.RowAt(2)),
            (V{"Module1", "Helper", "0.000002", "0.000000", "0.000002", "0.000000"}));
  EXPECT_EQ(Shown(t, t.RowAt(3)), (V{"Form1", "Form_Load", "2.500000", "2.500000", "", ""}));
  // Totals from each session's record; the average over its hits.
  EXPECT_EQ(Shown(t, t.RowAt(4)), (V{"", "TOTAL", "2.623458", "0.187390", "1.000002", "0.076923"}));
  EXPECT_TRUE(t.RowAt(4).Cells[2].Bold);
  EXPECT_EQ(t.RowAt(4).Cells[1].Color, kColorBlue);
  EXPECT_EQ(t.RowAt(1).Cells[2].Color, kColorGreen);
  EXPECT_EQ(t.RowAt(1).Cells[3].Color, kColorDarkRed);
  EXPECT_FALSE(t.Sorted);
  EXPECT_EQ(t.SelectedRow, 1);

  EXPECT_EQ(b.Headers, (FakeHeaders{{"run1", "run2"}, 2, 2, {}}));
  EXPECT_EQ(b.Arrays.LegendText, (V{"run1", "run2"}));
  ASSERT_EQ(b.Arrays.ChartArrayBar.size(), 3u);
  EXPECT_EQ(b.Arrays.ChartArrayBar[0], (ChartRow{"Module1.Main", {0.1234564, 1}}));
  EXPECT_TRUE(b.Arrays.ChartArrayPie.empty());
  EXPECT_EQ(b.Arrays.PieCaption, "Unavailable (Compared sessions) - Select Bar chart");
  EXPECT_EQ(b.Arrays.BarTitle, "Total Time spent in procedures (seconds)");
}

TEST(CompareProceduresTiming, ModuleTotalIsTheModulesFigureAndChildMeasuresHaveNoTotal) {
  HomogeneousFixture f;
  Table t = ShowCompareProceduresTiming(f.ws, f.Compared(Measure::Total, testing::kModule1)).Grid;
  EXPECT_EQ(Shown(t, t.RowAt(t.FindRow("TOTAL"))),
            (V{"", "TOTAL", "0.123458", "0.009497", "1.000002", "0.076923"}));
  t = ShowCompareProceduresTiming(f.ws, f.Compared(Measure::ChildTotal)).Grid;
  EXPECT_EQ(t.ColumnAt(3).Header, "Child Tot.");
  EXPECT_EQ(t.FindRow("TOTAL"), 0);
}

TEST(CompareLines, HitsAndTimesPerSessionWithProcedureEndsWithoutTime) {
  HomogeneousFixture f;
  const GridBuild b = ShowCompareLines(f.ws, f.Compared(Measure::Total, 0, testing::kMain));
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t), (V{"Module", "Procedure", "Line", "Line ID", "Hits", "Tot. Time",
                                "Avg. Time", "Hits", "Tot. Time", "Avg. Time"}));
  EXPECT_EQ(ColumnTexts(t, 4), (V{"1", "3", ""}));
  EXPECT_EQ(Shown(t, t.RowAt(1)), (V{"Module1", "Main", "x = 1", "1", "3", "0.120000", "0.040000",
                                     "3", "0.120000", "0.040000"}));
  EXPECT_EQ(Shown(t, t.RowAt(2)),
            (V{"Module1", "Main", "End Sub", "3", "3", "-", "-", "3", "-", "-"}));
  // The procedure's time over all its line hits.
  EXPECT_EQ(Shown(t, t.RowAt(3)),
            (V{"", "TOTAL", "", "", "6", "0.123456", "0.020576", "6", "1.000000", "0.166667"}));
  EXPECT_EQ(b.Headers, (FakeHeaders{{"run1", "run2"}, 4, 3, {}}));
  // The procedure's end has no time to plot in any session.
  ASSERT_EQ(b.Arrays.ChartArrayBar.size(), 1u);
  EXPECT_EQ(b.Arrays.ChartArrayBar[0].Name, "01-x = 1");
  EXPECT_EQ(b.Arrays.BarTitle, "Total Time spent in lines (seconds)");
}

TEST(CompareProceduresCoverage, CoverageAndCriticalPerSession) {
  HomogeneousFixture f;
  const GridBuild b =
      ShowCompareProceduresCoverage(f.ws, f.Compared(Measure::Coverage, testing::kModule1));
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t),
            (V{"Module", "Procedure", "Coverage", "Critical Cov.", "Coverage", "Critical Cov."}));
  EXPECT_EQ(Shown(t, RowWith(t, 2, "Main")),
            (V{"Module1", "Main", "66.7%", "66.7%", "100%", "100%"}));
  EXPECT_EQ(Shown(t, RowWith(t, 2, "Unused")), (V{"Module1", "Unused", "0%", "", "0%", ""}));
  EXPECT_EQ(Shown(t, t.RowAt(t.FindRow("TOTAL"))),
            (V{"", "TOTAL", "57.1%", "66.7%", "57.1%", "66.7%"}));
  EXPECT_EQ(b.Arrays.BarTitle, "Procedure coverage");
  EXPECT_EQ(b.Arrays.ChartArrayBar[0], (ChartRow{"Module1.Main", {66, 100}}));
}

TEST(CompareModules, TimingAndCoverageOfEveryModule) {
  HomogeneousFixture f;
  GridBuild b = ShowCompareModulesTiming(f.ws, f.Compared(Measure::Total));
  Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t), (V{"Module", "Tot.Time", "Tot.Time"}));
  EXPECT_EQ(Shown(t, RowWith(t, 1, "Form1")), (V{"Form1", "2.500000", ""}));
  EXPECT_EQ(Shown(t, RowWith(t, 1, "Empty")), (V{"Empty", "", ""}));
  EXPECT_EQ(Shown(t, t.RowAt(t.FindRow("TOTAL"))), (V{"TOTAL", "2.623458", "1.000002"}));
  EXPECT_EQ(RowWith(t, 1, "Form1").Icon, "5TYPE");
  EXPECT_EQ(b.Headers, (FakeHeaders{{"run1", "run2"}, 1, 1, {}}));
  EXPECT_EQ(b.Arrays.PieCaption, "");

  b = ShowCompareModulesCoverage(f.ws, f.Compared(Measure::Coverage));
  EXPECT_EQ(Shown(b.Grid, RowWith(b.Grid, 1, "Module1")),
            (V{"Module1", "57.1%", "66.7%", "66.7%", "57.1%", "66.7%", "66.7%"}));
  EXPECT_EQ(Shown(b.Grid, RowWith(b.Grid, 1, "Form1")),
            (V{"Form1", "100%", "100%", "", "", "", ""}));
  EXPECT_EQ(Shown(b.Grid, b.Grid.RowAt(b.Grid.FindRow("TOTAL"))),
            (V{"TOTAL", "66.7%", "75.0%", "66.7%", "66.7%", "75.0%", "66.7%"}));
  EXPECT_EQ(b.Headers.NumberOfColumnsPerSession, 3);
}

TEST(CompareProceduresTiming, HeterogeneousSessionsShowEveryMergedProcedureOnce) {
  testing::GridFixture f;
  testing::ProjectBuilder b(f.ws, "C:\\Other\\Other.vbp");
  const auto m = b.Module("Module1");
  const auto main = b.Procedure(m, "Main");
  const auto extra = b.Procedure(m, "Extra");
  b.Line(main);
  b.Line(extra);
  const std::int32_t other = b.Build();
  const std::int32_t cs2 = testing::AddSessionForProject(f.ws, other, "/tmp/other.pfl");
  Session& s2 = f.ws.Session(cs2);
  s2.ModuleValue.ReDim(1);
  s2.ProcedureValue(extra).Hits = 4;
  s2.ProcedureValue(extra).TotalTime = 0.4;
  s2.ProcedureValue(extra).AverageTime = 0.1;
  s2.Loaded = true;
  f.ws.Session(f.cs).Selected = true;
  s2.Selected = true;

  Array1<std::int32_t> list;
  list.ReDim(2);
  list(1) = f.cs;
  list(2) = cs2;
  f.ws.fHomogeneous = false;
  MakeMergedAndCompareSessions(f.ws, 0, f.ws.CompareSession, list, {});
  Selection sel = f.Select(Measure::Total);
  sel.session = SessionRef::compared();
  sel.project = f.ws.Session(0).Project;

  const Table t = ShowCompareProceduresTiming(f.ws, sel).Grid;
  EXPECT_EQ(ColumnTexts(t, 2), (V{"Main", "Helper", "Form_Load", "Extra", "TOTAL"}));
  EXPECT_EQ(Shown(t, RowWith(t, 2, "Extra")),
            (V{"Module1", "Extra", "", "", "0.400000", "0.100000"}));
  EXPECT_EQ(Shown(t, RowWith(t, 2, "Main")),
            (V{"Module1", "Main", "0.123456", "0.041152", "", ""}));
}

TEST(ShowTab, ComparedLinesNeedOneProjectAndGroupsAreRefused) {
  HomogeneousFixture f;
  SortMemory sort;
  Selection lines = f.Compared(Measure::Total);
  lines.tab = Tab::Lines;
  GridBuild b = ShowTab(f.ws, lines, sort);
  EXPECT_EQ(b.Headers.NumberOfColumnsPerSession, 3);
  f.ws.fHomogeneous = false;
  b = ShowTab(f.ws, lines, sort);
  EXPECT_EQ(ColumnTexts(b.Grid, 1),
            (V{"Unavailable (heterogeneous sessions)", "Please click the Procedures tab"}));
  Selection groups = lines;
  groups.session = SessionRef::comparedGroups();
  b = ShowTab(f.ws, groups, sort);
  EXPECT_EQ(b.Grid.RowAt(1).RowText(), "Unavailable (compared group sessions)");
  // Projects and modules tabs both compare modules.
  f.ws.fHomogeneous = true;
  Selection projects = f.Compared(Measure::Coverage);
  projects.tab = Tab::Projects;
  EXPECT_EQ(ShowTab(f.ws, projects, sort).Grid.ColumnAt(2).Header, "Line Cov.");
  Selection source = lines;
  source.tab = Tab::Source;
  EXPECT_THROW(ShowTab(f.ws, source, sort), std::invalid_argument);
}

}  // namespace
}  // namespace zol
