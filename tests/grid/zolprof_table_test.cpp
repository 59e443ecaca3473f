// zolprof table prints exactly the cells the builders make, and its exports
// are the grid's exports.

#include <gtest/gtest.h>

#include <cstdlib>

#include "base/cp1252.h"
#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "base/text.h"
#include "catalogue/session_catalogue.h"
#include "grid/grid_builders.h"
#include "grid/grid_export.h"
#include "grid/table_text.h"
#include "project/project_info.h"
#include "support/fixture_run.h"

#ifdef ZOLPROF_PATH

namespace zol {
namespace {

class ZolprofTable : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::SimulatedLogShape shape;
    shape.run.seed = 9;
    shape.run.probes = 3000;
    run_ = testing::MakeFixtureRun(dir_.path(), 4, "run.pfl", shape);
    second_ = testing::WriteFixtureLog(run_, "second.pfl", shape);
  }

  // zolprof's standard output, and its exit code in `rc`.
  std::string Zolprof(const std::string& arguments, int& rc) {
    const std::string out = dir_ / "out.txt";
    const std::string command = "ZOLMARK_HOME='" + (dir_ / "home") + "' '" ZOLPROF_PATH "' table " +
                                arguments + " > '" + out + "' 2> '" + (dir_ / "err.txt") + "'";
    rc = std::system(command.c_str());
    return LoadFile(out);
  }

  // The same table built here, on the session loaded as the command loads it.
  Table Built(Tab tab, Measure measure, std::int32_t module) {
    ws_.appFolder = dir_ / "home2";
    ResetRtfPath(ws_);
    const std::int32_t cs = AddSession(ws_, run_.log);
    EXPECT_TRUE(LoadSession(ws_, cs));
    const Selection sel{.session = SessionRef::single(cs),
                        .project = ws_.Session(cs).Project,
                        .module = module,
                        .tab = tab,
                        .measure = measure};
    SortMemory sort;
    return ShowTab(ws_, sel, sort).Grid;
  }

  testing::ScopedTempDir dir_;
  testing::FixtureRun run_;
  std::string second_;
  Workspace ws_{std::make_shared<SilentPrompter>()};
};

TEST_F(ZolprofTable, PrintsTheBuildersCellsAndWritesTheirExport) {
  int rc = -1;
  const std::string csv = dir_ / "modules.csv";
  const std::string printed = Zolprof(
      "--tab procedures --measure average --module 1 --csv '" + csv + "' '" + run_.log + "'", rc);
  ASSERT_EQ(rc, 0) << LoadFile(dir_ / "err.txt");
  EXPECT_TRUE(FileExist(run_.log));  // read in memory only
  const Table t = Built(Tab::Procedures, Measure::Average, 1);
  EXPECT_EQ(printed, Cp1252ToUtf8(TableAsText(t)));
  EXPECT_EQ(LoadFile(csv), ExportText(t, true));
}

TEST_F(ZolprofTable, SeveralFilesGiveTheComparedTableAndBadArgumentsFail) {
  int rc = -1;
  const std::string printed = Zolprof("--tab modules '" + run_.log + "' '" + second_ + "'", rc);
  ASSERT_EQ(rc, 0) << LoadFile(dir_ / "err.txt");
  const std::string header = printed.substr(0, printed.find('\n'));
  EXPECT_EQ(StrCount(header, "Tot.Time"), 2) << header;  // a run per session
  EXPECT_NE(printed.find("TOTAL"), std::string::npos);

  Zolprof("--tab lines --module 999 '" + run_.log + "'", rc);
  EXPECT_NE(rc, 0);
  EXPECT_NE(LoadFile(dir_ / "err.txt").find("no module 999"), std::string::npos);
  Zolprof("--tab procedures --sort Nowhere '" + run_.log + "'", rc);
  EXPECT_NE(rc, 0);
}

}  // namespace
}  // namespace zol

#endif
