#include <gtest/gtest.h>

#include "grid/grid_builders.h"
#include "grid/grid_click.h"
#include "grid/grid_fixture.h"
#include "grid/table_helpers.h"

namespace zol {
namespace {

using testing::GridFixture;

TEST(GridClick, RowTextsGiveModuleProcedureAndLineAfterAnySort) {
  GridFixture f;
  SortMemory sort;
  Table procs = ShowProceduresTiming(f.ws, f.Select(Measure::Total), sort).Grid;
  SortTable(procs, sort, 3, kSortAscending);  // Tags no longer follow row order
  const Project& p = f.ws.Project(f.cp);
  const int helper = [&] {
    for (int r = 1; r <= procs.RowCount(); ++r) {
      if (procs.RowAt(r).Text(2) == "Helper") return r;
    }
    return 0;
  }();
  EXPECT_EQ(ClickedPlace(p, procs, helper, 1), (ClickTarget{testing::kModule1, 0, 0}));
  EXPECT_EQ(ClickedPlace(p, procs, helper, 2),
            (ClickTarget{testing::kModule1, testing::kHelper, 0}));
  EXPECT_EQ(ClickedPlace(p, procs, helper, 5),
            (ClickTarget{testing::kModule1, testing::kHelper, 0}));
  EXPECT_EQ(ClickedPlace(p, procs, procs.RowCount(), 2), ClickTarget{});  // TOTAL

  Table lines = ShowLines(f.ws, f.Select(Measure::Coverage), sort, false).Grid;
  EXPECT_EQ(ClickedPlace(p, lines, 1, 3), (ClickTarget{testing::kModule1, testing::kHelper, 4}));

  Table mods = ShowModulesTiming(f.ws, f.Select(Measure::Total), sort).Grid;
  EXPECT_EQ(ClickedPlace(p, mods, 1, 3), (ClickTarget{testing::kForm1, 0, 0}));
  EXPECT_EQ(ClickedPlace(p, mods, 99, 1), ClickTarget{});
}

TEST(GridClick, SingleClickGoesToTheNextTabDoubleClickToTheSource) {
  EXPECT_EQ(TabAfterClick(kSingleClick, 2), 3);
  EXPECT_EQ(TabAfterClick(kDoubleClick, 2), kTabSource);
  EXPECT_EQ(TabAfterClick(kRightClick, 2), 2);
}

}  // namespace
}  // namespace zol
