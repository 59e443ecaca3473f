// Grids of sessions whose values no sound run gives (a damaged or hand-made
// .pfd read before its values were checked, IDs the instrumenter left
// unused): every cell stays within its column and nothing throws.

#include <gtest/gtest.h>

#include <limits>

#include "grid/bars.h"
#include "grid/grid_builders.h"
#include "grid/grid_fixture.h"
#include "grid/table_helpers.h"

namespace zol {
namespace {

using testing::GridFixture;

TEST(DamagedValues, CoverageBarsStayInTheirColumn) {
  EXPECT_EQ(LinearBarLength(500000, 1), kMaxBarLength);
  EXPECT_EQ(LinearBarLength(-5, 1), 0);
  EXPECT_EQ(LinearBarLength(std::numeric_limits<double>::quiet_NaN(), 1), 0);
  EXPECT_EQ(BarText(20000000).size(), static_cast<std::size_t>(kMaxBarLength));

  GridFixture f;
  ProcedureValue& pv = f.ws.Session(f.cs).ProcedureValue(testing::kMain);
  pv.HitLines = 500000;
  pv.TotalLines = std::numeric_limits<std::int32_t>::min();
  f.ws.Session(f.cs).SessionValue.TotalLines = std::numeric_limits<std::int32_t>::min();
  f.ws.Session(f.cs).SessionValue.HitLines = std::numeric_limits<std::int32_t>::max();
  SortMemory sort;
  const Table t = ShowProceduresCoverage(f.ws, f.Select(Measure::Coverage), sort).Grid;
  for (const Row& row : t.Rows()) {
    for (int c = 1; c <= t.ColumnCount(); ++c) {
      EXPECT_LE(row.Text(c).size(), 40u) << row.Text(c);
    }
  }
}

TEST(DamagedValues, IdsWithoutAProcedureHaveNoRowsOnAnyTab) {
  // Helper's ID left without a procedure in the sources, though the log
  // counted hits for it and its lines.
  GridFixture f;
  Project& p = f.ws.Project(f.cp);
  p.Procedure(testing::kHelper) = Procedure{};
  for (std::int32_t i = 1; i <= p.LinesNumber; ++i) {
    if (p.CodeLine(i).BelongToProcedure == testing::kHelper) p.CodeLine(i).BelongToProcedure = 0;
  }
  SortMemory sort;
  for (const Measure measure : {Measure::Total, Measure::Average, Measure::ChildTotal,
                                Measure::ChildAverage, Measure::Coverage}) {
    const Selection sel = f.Select(measure);
    const Table procedures = sel.coverage() ? ShowProceduresCoverage(f.ws, sel, sort).Grid
                                            : ShowProceduresTiming(f.ws, sel, sort).Grid;
    for (const Row& row : procedures.Rows())
      EXPECT_NE(row.Tag, testing::kHelper) << IndexOf(measure);
    const Table lines = ShowLines(f.ws, sel, sort, false).Grid;
    for (const Row& row : lines.Rows()) {
      if (row.Key == "TOTAL" || row.Tag == 0) continue;
      EXPECT_NE(f.ws.Project(f.cp).CodeLine(static_cast<std::int32_t>(row.Tag)).BelongToProcedure,
                0);
    }
  }
}

}  // namespace
}  // namespace zol
