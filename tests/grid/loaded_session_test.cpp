// The grids of a session that went the whole way: a generated project,
// instrumented and scanned, a simulated run, the log loaded. What the tables
// show must agree with the session's values and with each other.

#include <gtest/gtest.h>

#include <algorithm>

#include "base/numbers.h"
#include "base/scoped_temp_dir.h"
#include "base/vb_format.h"
#include "catalogue/session_catalogue.h"
#include "grid/grid_builders.h"
#include "grid/grid_export.h"
#include "grid/grid_frame.h"
#include "project/project_info.h"
#include "support/fixture_run.h"

namespace zol {
namespace {

class LoadedSessionGrids : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::SimulatedLogShape shape;
    shape.run.seed = 5;
    shape.run.probes = 4000;
    const testing::FixtureRun run = testing::MakeFixtureRun(dir_.path(), 7, "run.pfl", shape);
    ws_.appFolder = dir_ / "app";
    ResetRtfPath(ws_);
    cs_ = AddSession(ws_, run.log);
    ASSERT_TRUE(LoadSession(ws_, cs_));
  }

  Selection Select(std::int32_t measure) {
    return {.session = SessionRef::single(cs_),
            .project = ws_.Session(cs_).Project,
            .measure = MeasureFromIndex(measure)};
  }

  testing::ScopedTempDir dir_;
  Workspace ws_{std::make_shared<SilentPrompter>()};
  std::int32_t cs_ = 0;
  SortMemory sort_;
};

TEST_F(LoadedSessionGrids, ProcedureTotalsAreSumsOfTheRowsAsShown) {
  const Session& s = ws_.Session(cs_);
  for (std::int32_t dit = 0; dit <= 3; ++dit) {
    const Table t = ShowProceduresTiming(ws_, Select(dit), sort_).Grid;
    int hitProcedures = 0;
    double hits = 0;
    for (const ProcedureValue& p : s.ProcedureValue) {
      hitProcedures += p.Hits != 0;
      hits += p.Hits;
    }
    ASSERT_GT(hitProcedures, 1);
    ASSERT_EQ(t.RowCount(), hitProcedures + 1) << dit;
    double shownTime = 0;
    for (int r = 1; r < t.RowCount(); ++r) shownTime += CellValue(t.RowAt(r).Text(5));
    const Row& total = t.RowAt(t.RowCount());
    EXPECT_EQ(total.Text(3), CStr(hits));
    EXPECT_EQ(total.Text(5), TimeText(shownTime));
    // Sorted on the time: each row's time at least the next one's.
    for (int r = 2; r < t.RowCount(); ++r) {
      EXPECT_GE(CellValue(t.RowAt(r - 1).Text(5)), CellValue(t.RowAt(r).Text(5)));
    }
  }
}

TEST_F(LoadedSessionGrids, LinesModulesAndProjectsAgreeWithTheSession) {
  const Session& s = ws_.Session(cs_);
  const Project& p = ws_.Project(s.Project);
  int timedLines = 0;
  int hitLines = 0;
  for (std::int32_t i = 1; i <= p.LinesNumber; ++i) {
    if (s.CodeLineValue(i).Hits == 0) continue;
    ++hitLines;
    timedLines += !p.CodeLine(i).IsProcedureExit;
  }
  EXPECT_EQ(ShowLines(ws_, Select(0), sort_, false).Grid.RowCount(), timedLines + 1);
  EXPECT_EQ(ShowLines(ws_, Select(4), sort_, false).Grid.RowCount(), hitLines + 1);

  const Table mods = ShowModulesCoverage(ws_, Select(4), sort_).Grid;
  EXPECT_EQ(mods.RowCount(), p.ModulesNumber + 1);
  EXPECT_EQ(mods.RowAt(mods.FindRow("TOTAL")).Text(2), std::to_string(s.SessionValue.TotalLines));
  const Table projects = ShowProjectsCoverage(ws_, Select(4), sort_).Grid;
  EXPECT_EQ(projects.RowAt(1).Text(5), FormatPercentage(s.SessionValue.LineCoverage));

  // An export has a line for the headers and one per row.
  const std::string text = ExportText(mods, true);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), mods.RowCount() + 1);
}

}  // namespace
}  // namespace zol
