#include <gtest/gtest.h>

#include "grid/bars.h"
#include "grid/grid_builders.h"
#include "grid/grid_fixture.h"
#include "grid/table_helpers.h"
#include "support/session_builder.h"

namespace zol {
namespace {

using testing::GridFixture;
using testing::RowWith;
using testing::Shown;
using testing::ShownHeaders;
using V = std::vector<std::string>;

const std::string kBars = kBarsHeader;

TEST(GetBarLogValue, LogScaleFromATenthOfAMicrosecondToTwentyLetters) {
  EXPECT_EQ(GetBarLogValue(1), 14);
  EXPECT_EQ(GetBarLogValue(0.000001), 2);
  EXPECT_EQ(GetBarLogValue(0.0000001), 1);
  EXPECT_EQ(GetBarLogValue(1e-12), 1);
  EXPECT_EQ(GetBarLogValue(0), 0);
  EXPECT_EQ(GetBarLogValue(-3), 0);
  EXPECT_EQ(GetBarLogValue(1e6), 20);
  EXPECT_EQ(GetBarLogValue(1e308 * 10), 20);  // infinity
  EXPECT_EQ(GetBarLogValue(0.0000035), 3);    // 2 * log10(35) = 3.09
}

TEST(ProceduresTiming, WholeSessionListsHitProceduresWithTotalsOfTheDisplayedTimes) {
  GridFixture f;
  SortMemory sort;
  const GridBuild b = ShowProceduresTiming(f.ws, f.Select(Measure::Total), sort);
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t), (V{"Module", "Procedure", "Hits", "% Hits", "Total Time", kBars,
                                "% Time", "Average Time"}));
  ASSERT_EQ(t.RowCount(), 4);
  // Sorted on the time, largest first, the total last.
  EXPECT_EQ(Shown(t, t.RowAt(1)),
            (V{"Form1", "Form_Load", "1", "7.1%", "2.500000", BarText(15), "95.3%", "2.500000"}));
  EXPECT_EQ(Shown(t, t.RowAt(2)),
            (V{"Module1", "Main", "3", "21.4%", "0.123456", BarText(12), "4.7%", "0.041152"}));
  // 0.0000015 s shows as 0.000002 and that is what the total adds.
  EXPECT_EQ(Shown(t, t.RowAt(3)),
            (V{"Module1", "Helper", "10", "71.4%", "0.000002", BarText(2), "0.0%", "0.000000"}));
  const Row& total = t.RowAt(4);
  EXPECT_EQ(total.Key, "TOTAL");
  EXPECT_EQ(Shown(t, total),
            (V{"", "TOTAL", "14", "100%", "2.623458", BarText(15), "100%", "0.187390"}));
  EXPECT_EQ(t.RowAt(2).Tag, testing::kMain);
  EXPECT_EQ(t.SelectedRow, 1);
  EXPECT_EQ(t.ImageList, ImageListKind::Nothing);
}

TEST(ProceduresTiming, TotalRowIsBoldBlueButItsBarIsPlain) {
  GridFixture f;
  SortMemory sort;
  const Table t = ShowProceduresTiming(f.ws, f.Select(Measure::Total), sort).Grid;
  const Row& total = t.RowAt(t.FindRow("TOTAL"));
  const int bars = t.FindColumn(kBars);
  EXPECT_TRUE(total.Bold());
  EXPECT_EQ(total.Color(), kColorBlue);
  for (int c = 2; c <= t.ColumnCount(); ++c) {
    EXPECT_EQ(total.Cells[c - 1].Color, kColorBlue) << c;
    EXPECT_EQ(total.Cells[c - 1].Bold, c != bars) << c;
  }
  // Ordinary rows: only the sorted column is dark blue.
  const Row& row = t.RowAt(1);
  EXPECT_EQ(row.Cells[4].Color, kColorDarkBlue);
  EXPECT_EQ(row.Cells[2].Color, kColorStandard);
}

TEST(ProceduresTiming, AverageMeasurePutsBarsLastAndTotalsBarOnTheAverage) {
  GridFixture f;
  SortMemory sort;
  const Table t = ShowProceduresTiming(f.ws, f.Select(Measure::Average), sort).Grid;
  EXPECT_EQ(ShownHeaders(t).back(), kBars);
  const Row& total = t.RowAt(t.FindRow("TOTAL"));
  EXPECT_EQ(total.Text(t.FindColumn(kBars)), BarText(13));  // 0.187390 s
  // Bars of rows follow the average: Helper's 0.00000015 s is one letter.
  EXPECT_EQ(RowWith(t, 2, "Helper").Text(t.FindColumn(kBars)), BarText(1));
  EXPECT_EQ(t.RowAt(1).Text(2), "Form_Load");  // still sorted on column 5
}

TEST(ProceduresTiming, ChildMeasureTotalAverageIsTheSumOverHits) {
  GridFixture f;
  SortMemory sort;
  const Table t = ShowProceduresTiming(f.ws, f.Select(Measure::ChildTotal), sort).Grid;
  EXPECT_EQ(t.ColumnAt(5).Header, "Child Tot. Time");
  EXPECT_EQ(t.ColumnAt(7).Header, "Child Avg. Time");
  EXPECT_EQ(Shown(t, RowWith(t, 2, "Main")),
            (V{"Module1", "Main", "3", "21.4%", "0.500000", BarText(13), "14.3%", "0.166667"}));
  const Row& total = t.RowAt(t.FindRow("TOTAL"));
  EXPECT_EQ(total.Text(5), "3.500020");
  EXPECT_EQ(total.Text(7), "0.250001");

  // Child averages: bars last, the total's bar on the sum over the hits.
  const Table avg = ShowProceduresTiming(f.ws, f.Select(Measure::ChildAverage), sort).Grid;
  EXPECT_EQ(ShownHeaders(avg).back(), kBars);
  EXPECT_EQ(avg.ColumnAt(7).Header, "Child Avg. Time");
  EXPECT_EQ(avg.RowAt(avg.FindRow("TOTAL")).Text(avg.FindColumn(kBars)),
            BarText(13));                                                       // 0.250001 s
  EXPECT_EQ(RowWith(avg, 2, "Main").Text(avg.FindColumn(kBars)), BarText(12));  // 0.166667 s
}

TEST(ProceduresTiming, SelectedModuleListsUnhitAndDeadProcedures) {
  GridFixture f;
  SortMemory sort;
  GridBuild b = ShowProceduresTiming(f.ws, f.Select(Measure::Total, testing::kModule1), sort);
  const Table& t = b.Grid;
  ASSERT_EQ(t.RowCount(), 4);
  EXPECT_EQ(Shown(t, RowWith(t, 2, "Unused")),
            (V{"Module1", "Unused", "-", "-", "-", "", "-", "-"}));
  EXPECT_EQ(RowWith(t, 2, "Main").Text(4), "23.1%");
  EXPECT_EQ(RowWith(t, 2, "Main").Text(6), "100.0%");  // 0.123456 of 0.123458
  // The chart gets the unhit procedure's 0 as well.
  ASSERT_EQ(b.Arrays.ChartArrayBar.size(), 3u);
  EXPECT_EQ(b.Arrays.ChartArrayBar[2], (ChartRow{"Unused", {0}}));
  EXPECT_EQ(b.Arrays.ChartArrayPie[0].Value, 1000000 * 0.1234564);

  b = ShowProceduresTiming(f.ws, f.Select(Measure::Total, testing::kForm1), sort);
  const Table& forms = b.Grid;
  const Row& dead = RowWith(forms, 2, "OldCode");
  EXPECT_EQ(Shown(forms, dead), (V{"Form1", "OldCode", "  ", "  ", "  ", "  ", "  ", "  "}));
  EXPECT_EQ(dead.Color(), kColorGrey);
  for (const Cell& c : dead.Cells) EXPECT_EQ(c.Color, kColorGrey);
  EXPECT_TRUE(dead.Cells[2].Bold);
  // The dead procedure has no share: the one live procedure is all of it.
  EXPECT_EQ(RowWith(forms, 2, "Form_Load").Text(4), "100%");
  EXPECT_EQ(forms.RowAt(forms.FindRow("TOTAL")).Text(3), "1");
  EXPECT_EQ(forms.RowAt(forms.RowCount() - 1).Text(2), "OldCode");  // dead rows at the bottom
}

TEST(ProceduresTiming, EmptySessionGivesNoRowsAndErasedChart) {
  GridFixture f;
  for (ProcedureValue& p : f.ws.Session(f.cs).ProcedureValue) p.Hits = 0;
  SortMemory sort;
  const GridBuild b = ShowProceduresTiming(f.ws, f.Select(Measure::Total), sort);
  EXPECT_EQ(b.Grid.RowCount(), 0);
  EXPECT_EQ(b.Grid.SelectedRow, 0);
  EXPECT_EQ(b.Chart, ChartUpdate::Draw);
  EXPECT_TRUE(b.Arrays.ChartArrayBar.empty());
  EXPECT_TRUE(b.Arrays.ChartArrayPie.empty());
  EXPECT_EQ(b.Arrays.BarTitle, "Total Time spent in procedures (seconds)");
}

TEST(ProceduresTiming, HitsWithZeroTimeGiveAnEmptyBar) {
  GridFixture f;
  f.ws.Session(f.cs).ProcedureValue(testing::kHelper).TotalTime = 0;
  SortMemory sort;
  const Table t = ShowProceduresTiming(f.ws, f.Select(Measure::Total), sort).Grid;
  const Row& helper = RowWith(t, 2, "Helper");
  EXPECT_EQ(helper.Text(5), "0.000000");
  EXPECT_EQ(helper.Text(t.FindColumn(kBars)), "");
  EXPECT_EQ(helper.Text(6), "0%");
}

TEST(ModulesTiming, EveryModuleWithIconsAndAModuleWithoutProceduresShowsDashes) {
  GridFixture f;
  SortMemory sort;
  const GridBuild b = ShowModulesTiming(f.ws, f.Select(Measure::Total), sort);
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t), (V{"Module", "# Procedures", "Total Time", kBars, "% Time"}));
  ASSERT_EQ(t.RowCount(), 4);
  EXPECT_EQ(Shown(t, t.RowAt(1)), (V{"Form1", "1", "2.500000", BarText(15), "95.3%"}));
  EXPECT_EQ(Shown(t, t.RowAt(2)), (V{"Module1", "3", "0.123458", BarText(12), "4.7%"}));
  EXPECT_EQ(Shown(t, t.RowAt(3)), (V{"Empty", "-", "-", "", "-"}));
  EXPECT_EQ(Shown(t, t.RowAt(4)), (V{"TOTAL", "4", "2.623458", BarText(15), "100%"}));
  EXPECT_EQ(t.RowAt(1).Icon, "5TYPE");
  EXPECT_EQ(t.RowAt(3).Icon, "2TYPE");
  EXPECT_EQ(t.RowAt(4).Icon, "SESSION");
  EXPECT_EQ(t.ImageList, ImageListKind::ModuleIcons);
  ASSERT_EQ(b.Arrays.ChartArrayBar.size(), 3u);
  EXPECT_EQ(b.Arrays.PieTitle, "Total Time spent in modules (seconds)");
}

TEST(ModulesTiming, ModuleWithProceduresButNoHitsShowsDashAndNoShare) {
  GridFixture f;
  Session& s = f.ws.Session(f.cs);
  s.ModuleValue(testing::kForm1).HitProcedures = 0;
  SortMemory sort;
  const Table t = ShowModulesTiming(f.ws, f.Select(Measure::Total), sort).Grid;
  const Row& form = RowWith(t, 1, "Form1");
  EXPECT_EQ(form.Text(3), "-");
  EXPECT_EQ(form.Text(4), "-");
  EXPECT_EQ(form.Text(t.FindColumn(kBars)), BarText(15));  // from the record all the same
  EXPECT_EQ(RowWith(t, 1, "Module1").Text(4), "100%");
  EXPECT_EQ(t.RowAt(t.FindRow("TOTAL")).Text(3), "0.123458");
}

TEST(ProjectsTiming, OneRowPerSessionSortedByLines) {
  GridFixture f;
  SortMemory sort;
  const GridBuild b = ShowProjectsTiming(f.ws, f.Select(Measure::Total), sort);
  const Table& t = b.Grid;
  EXPECT_EQ(ShownHeaders(t),
            (V{"Project", "# Modules", "# Procedures", "# Lines", "Total Time", kBars, "% Time"}));
  ASSERT_EQ(t.RowCount(), 2);
  EXPECT_EQ(Shown(t, t.RowAt(1)), (V{"run1", "3", "5", "11", "2.623458", BarText(15), "100%"}));
  EXPECT_EQ(Shown(t, t.RowAt(2)), (V{"TOTAL", "3", "5", "11", "2.623458", BarText(15), "100%"}));
  EXPECT_EQ(t.RowAt(1).Tag, 1);
  EXPECT_EQ(sort.LastColumn, 4);
  EXPECT_EQ(t.ImageList, ImageListKind::Unchanged);
}

// A group of two member sessions and the session that merges them, with each
// merged module remembering its project.
struct GroupFixture : GridFixture {
  std::int32_t merged = 0;
  std::int32_t idle = 0;

  GroupFixture() {
    ws.Project(cp).Name = "Alpha";
    testing::ProjectBuilder b(ws, "C:\\Proj\\Beta.vbp");
    b.Module("Util");
    b.Procedure(1, "Idle");
    b.Line(1);
    const std::int32_t beta = b.Build();
    ws.Project(beta).Name = "Beta";
    idle = testing::AddSessionForProject(ws, beta, "/tmp/idle.pfl");
    ws.Session(idle).ModuleValue.ReDim(1);

    // The merged session reuses the fixture's values on a copy of its project
    // whose last module came from Beta.
    merged = ++ws.nSession;
    const Session copy = ws.Session(cs);  // SessionSlot may move the table
    ws.SessionSlot(merged) = copy;
    ws.Session(merged).Name = "Merged";
    const std::int32_t mp = ++ws.nProject;
    ws.Project.ReDimPreserve(mp);
    ws.Project(mp) = ws.Project(cp);
    for (Module& m : ws.Project(mp).Module) m.BelongToProject = cp;
    ws.Project(mp).Module(testing::kEmptyModule).BelongToProject = beta;
    ws.Session(merged).Project = mp;

    ws.nSessionGroup = 1;
    ws.SessionGroup.ReDim(1);
    SessionGroup& g = ws.SessionGroup(1);
    g.nSession = 2;
    g.Sessions.ReDim(2);
    g.Sessions(1) = cs;
    g.Sessions(2) = idle;
    g.GroupMergedSession = merged;
    g.Selected = true;
  }

  zol::Selection GroupSelection(Measure measure) const {
    zol::Selection sel = Select(measure);
    sel.session = SessionRef::group(1, merged);
    sel.project = ws.Session(merged).Project;
    return sel;
  }
};

TEST(GroupMergedSession, ProjectColumnComesFirstWithTheModulesProject) {
  GroupFixture f;
  SortMemory sort;
  const Table procs = ShowProceduresTiming(f.ws, f.GroupSelection(Measure::Total), sort).Grid;
  EXPECT_EQ(ShownHeaders(procs), (V{"Project", "Module", "Procedure", "Hits", "% Hits",
                                    "Total Time", kBars, "% Time", "Average Time"}));
  EXPECT_EQ(Shown(procs, procs.RowAt(1))[0], "Alpha");
  EXPECT_EQ(Shown(procs, procs.RowAt(procs.FindRow("TOTAL")))[0], "");

  const Table mods = ShowModulesTiming(f.ws, f.GroupSelection(Measure::Total), sort).Grid;
  EXPECT_EQ(ShownHeaders(mods),
            (V{"Project", "Module", "# Procedures", "Total Time", kBars, "% Time"}));
  EXPECT_EQ(Shown(mods, RowWith(mods, 1, "Empty"))[0], "Beta");
}

TEST(GroupMergedSession, ProjectsTableHasARowPerMemberAndCountsAddUp) {
  GroupFixture f;
  SortMemory sort;
  const Table t = ShowProjectsTiming(f.ws, f.GroupSelection(Measure::Total), sort).Grid;
  ASSERT_EQ(t.RowCount(), 3);
  // The member that never ran shows "-" for its time, yet its counts add up.
  EXPECT_EQ(Shown(t, RowWith(t, 1, "idle")), (V{"idle", "1", "1", "1", "-", "", "-"}));
  EXPECT_EQ(RowWith(t, 1, "idle").Tag, 2);
  EXPECT_EQ(Shown(t, t.RowAt(t.FindRow("TOTAL"))),
            (V{"TOTAL", "4", "6", "12", "2.623458", BarText(15), "100%"}));
  EXPECT_EQ(ShownHeaders(t)[0], "Project");  // the rows are projects: no extra column
}

}  // namespace
}  // namespace zol
