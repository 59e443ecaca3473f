// Cells that keep numbers against cells that keep their text: the numbers
// a sort or a width reads from a count, time or share must be those its
// text shows. Every built table is copied into a twin whose cells hold the
// texts themselves (the way tables were built before), and the two are
// fitted and sorted on every column, both ways, and must agree cell by cell.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "grid/cell_text.h"
#include "grid/grid_builders.h"
#include "grid/grid_frame.h"
#include "grid/grid_sort.h"
#include "support/session_builder.h"

namespace zol {
namespace {

// The same table with every cell's text written as text.
Table LiteralTwin(const Table& t) {
  Table twin;
  twin.ImageList = t.ImageList;
  for (int c = 1; c <= t.ColumnCount(); ++c) {
    const Column& column = t.ColumnAt(c);
    twin.AddColumn(column.Header, column.Align, column.Width);
  }
  for (const int c : t.GetHeadersPositions()) twin.SetPosition(c, t.Position(c));
  for (int r = 1; r <= t.RowCount(); ++r) {
    RowRef row = twin.AddRow(t.Key(r), "", t.Icon(r));
    row.SetTag(t.Tag(r));
    for (int c = 1; c <= t.ColumnCount(); ++c) {
      row.SetText(c, t.Text(r, c));
      row.SetBold(c, t.Bold(r, c));
      row.SetColor(c, t.Color(r, c));
    }
  }
  twin.SelectedRow = t.SelectedRow;
  twin.Sorted = t.Sorted;
  return twin;
}

// Times with ties, values just around the half of the sixth decimal, zeros,
// and a few lines without hits or in a dead procedure.
std::int32_t RandomSession(Workspace& ws, unsigned seed) {
  testing::ProjectBuilder b(ws);
  std::mt19937 rng(seed);
  for (int m = 0; m < 4; ++m) {
    const std::int32_t module = b.Module("Mod" + std::to_string(m));
    for (int p = 0; p < 6; ++p) {
      const std::int32_t proc = b.Procedure(module, "Proc" + std::to_string(rng() % 9));
      for (int l = 0; l < 5; ++l) b.Line(proc, l == 4);
    }
  }
  const std::int32_t cp = b.Build();
  Project& project = ws.Project(cp);
  project.Procedure(3).IsDead = true;
  for (CodeLine& line : project.CodeLine) line.Text = "x = " + std::to_string(rng() % 7);
  const std::int32_t cs = testing::AddSessionForProject(ws, cp, "/tmp/lazy.pfl");
  Session& s = ws.Session(cs);
  const auto time = [&]() -> double {
    switch (rng() % 5) {
      case 0:
        return 0;
      case 1:
        return (static_cast<double>(rng() % 2000) + 0.5) / 1000000;  // a half to round
      case 2:
        return static_cast<double>(rng() % 4) / 1000;  // ties
      default:
        return std::ldexp(static_cast<double>(rng()), -static_cast<int>(20 + rng() % 30));
    }
  };
  for (CodeLineValue& v : s.CodeLineValue) {
    if (rng() % 4 == 0) continue;
    v.Hits = static_cast<std::int32_t>(1 + rng() % 40);
    v.TotalTime = time();
    v.ChildTotalTime = v.TotalTime + time();
    v.AverageTime = v.TotalTime / v.Hits;
    v.ChildAverageTime = v.ChildTotalTime / v.Hits;
  }
  for (std::int32_t i = 1; i <= project.ProceduresNumber; ++i) {
    ProcedureValue& v = s.ProcedureValue(i);
    v.Hits = static_cast<std::int32_t>(rng() % 3 == 0 ? 0 : 1 + rng() % 30);
    v.TotalTime = time();
    v.ChildTotalTime = v.TotalTime + time();
    v.AverageTime = v.Hits ? v.TotalTime / v.Hits : 0;
    v.ChildAverageTime = v.Hits ? v.ChildTotalTime / v.Hits : 0;
    v.TotalLines = 4;
    v.HitLines = static_cast<std::int32_t>(rng() % 5);
    v.Coverage = v.HitLines / 4.0;
  }
  s.ModuleValue.ReDim(project.ModulesNumber);
  for (std::int32_t m = 1; m <= project.ModulesNumber; ++m) {
    ModuleValue& v = s.ModuleValue(m);
    v.TotalTime = time();
    v.TotalProcedures = 6;
    v.HitProcedures = static_cast<std::int32_t>(rng() % 7);
    v.TotalLines = 30;
    v.HitLines = static_cast<std::int32_t>(rng() % 31);
    v.LineCoverage = v.HitLines / 30.0;
  }
  s.Loaded = true;
  return cs;
}

void ExpectSameTexts(const Table& a, const Table& b, const std::string& what) {
  ASSERT_EQ(a.RowCount(), b.RowCount()) << what;
  for (int r = 1; r <= a.RowCount(); ++r) {
    for (int c = 1; c <= a.ColumnCount(); ++c) {
      ASSERT_EQ(a.Text(r, c), b.Text(r, c)) << what << " row " << r << " column " << c;
      ASSERT_EQ(a.Color(r, c), b.Color(r, c)) << what << " row " << r << " column " << c;
    }
    ASSERT_EQ(a.Tag(r), b.Tag(r)) << what << " row " << r;
  }
  EXPECT_EQ(a.SelectedRow, b.SelectedRow) << what;
}

TEST(LazyCells, SortsAndWidthsAgreeWithTablesOfWrittenTexts) {
  int lineRows = 0;
  for (unsigned seed = 1; seed <= 12; ++seed) {
    Workspace ws(std::make_shared<SilentPrompter>());
    const std::int32_t cs = RandomSession(ws, seed);
    for (std::int32_t dit = 0; dit <= 4; ++dit) {
      for (const Tab tab : {Tab::Projects, Tab::Modules, Tab::Procedures, Tab::Lines}) {
        const Selection sel{.session = SessionRef::single(cs),
                            .project = ws.Session(cs).Project,
                            .tab = tab,
                            .measure = MeasureFromIndex(dit)};
        SortMemory memory;
        GridBuild build = ShowTab(ws, sel, memory);
        Table& lazy = build.Grid;
        if (tab == Tab::Lines) lineRows += lazy.RowCount();
        Table twin = LiteralTwin(lazy);
        const std::string what = "seed " + std::to_string(seed) + " measure " +
                                 std::to_string(dit) + " tab " + std::to_string(IndexOf(tab));
        FitColumnWidths(twin);
        for (int c = 1; c <= lazy.ColumnCount(); ++c) {
          EXPECT_EQ(lazy.ColumnAt(c).Width, twin.ColumnAt(c).Width) << what << " column " << c;
        }
        SortMemory a = memory;
        SortMemory b = memory;
        for (int c = 1; c <= lazy.ColumnCount(); ++c) {
          for (const std::int32_t order : {kSortToggle, kSortToggle, kSortAscending}) {
            EXPECT_EQ(SortTable(lazy, a, c, order), SortTable(twin, b, c, order)) << what;
            ExpectSameTexts(lazy, twin, what + " sorted on " + std::to_string(c));
          }
        }
      }
    }
  }
  EXPECT_GT(lineRows, 12 * 5 * 40);  // the sessions have lines to sort
}

TEST(LazyCells, DisplayedNumbersAndLengthsAreThoseOfTheTexts) {
  std::mt19937_64 rng(11);
  std::vector<double> values = {0,      1,        0.5,      0.0000005,    0.0000015,  0.9999995,
                                999999, 999999.5, 1234567., -0.25,        -0.0000004, 1e300,
                                0.05,   0.15,     0.99995,  0.00049999999};
  for (int i = 0; i < 20000; ++i) {
    const double scale = std::ldexp(1.0, static_cast<int>(rng() % 50) - 30);
    values.push_back(static_cast<double>(rng() % 1000000) * scale / 1000);
  }
  for (const double v : values) {
    const std::string time = TimeText(v);
    EXPECT_EQ(DisplayedTime(v), ParseCellNumber(time).value_or(0)) << time;
    EXPECT_EQ(TimeTextLength(v), time.size()) << time;
    const std::string percent = PercentText(v);
    EXPECT_EQ(PercentTextLength(v), percent.size()) << percent;
    EXPECT_EQ(DisplayedPercent(v),
              ParseCellNumber(std::string_view(percent).substr(0, percent.size() - 1)).value_or(0))
        << percent;
  }
}

}  // namespace
}  // namespace zol
