#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "grid/grid_builders.h"
#include "grid/grid_export.h"
#include "grid/grid_fixture.h"

namespace zol {
namespace {

// A procedures table small enough to read whole: a group's merged session, so
// that the "Project" column stands first and column 1 (the module) second.
Table SmallTable() {
  Table t;
  t.AddColumn("Module");
  t.AddColumn("Hits", Alignment::Right);
  const int project = t.AddColumn("Project");
  const int bars = t.AddColumn("-\x9B Bars ");
  t.SetPosition(bars, 2);
  t.SetPosition(project, 1);
  RowRef r = t.AddRow("", "Module1");
  r.SetText(2, "-");
  r.SetText(project, "-");
  r.SetText(bars, "lll");
  RowRef total = t.AddRow("TOTAL", "-");
  total.SetText(2, "12");
  return t;
}

TEST(GridExport, DisplayOrderWithoutBarsDashesAsZeroQuotedCells) {
  const Table t = SmallTable();
  EXPECT_EQ(ExportText(t, true),
            "\"Project\",Module,\"Hits\"\r\n"
            "\"0\",Module1,\"0\"\r\n"
            "\"\",-,\"12\"\r\n");
  EXPECT_EQ(ExportText(t, false),
            "Project\tModule\tHits\r\n"
            "0\tModule1\t0\r\n"
            "\t-\t12\r\n");
}

TEST(GridExport, CommasOfNumbersBecomePointsExceptInTheLineColumn) {
  Table t;
  t.AddColumn("Line");
  t.AddColumn("Total Time", Alignment::Right);
  t.AddColumn("Line ID", Alignment::Right);
  RowRef r = t.AddRow("", "a, b");
  r.SetText(2, "0,500000");
  r.SetText(3, "7");
  EXPECT_EQ(ExportText(t, true, true),
            "Line,\"Total Time\",\"Line ID\"\r\n"
            "\"a, b\",\"0.500000\",\"7\"\r\n");
}

TEST(GridExport, EmptyTableShowsTheMessageAndWritesNothing) {
  testing::ScopedTempDir dir;
  Table t;
  t.AddColumn("Module");
  RecordingPrompter prompter;
  std::int32_t type = 7;
  EXPECT_EQ(ExportGridToFile(t, dir / "out.csv", prompter, type), "");
  ASSERT_EQ(prompter.messages.size(), 1u);
  EXPECT_EQ(prompter.messages[0].text, "The table is empty !");
  EXPECT_FALSE(FileExist(dir / "out.csv"));
  EXPECT_EQ(type, 7);
}

TEST(GridExport, FileTypeFollowsTheNameAndANameWithoutExtensionGetsTxt) {
  testing::ScopedTempDir dir;
  const Table t = SmallTable();
  RecordingPrompter prompter;
  std::int32_t type = 0;
  EXPECT_EQ(ExportGridToFile(t, dir / "OUT.CSV", prompter, type), dir / "OUT.CSV");
  EXPECT_EQ(type, 1);
  EXPECT_EQ(LoadFile(dir / "OUT.CSV"), ExportText(t, true));
  EXPECT_EQ(ExportGridToFile(t, dir / "grid", prompter, type), dir / "grid.txt");
  EXPECT_EQ(type, 0);
  EXPECT_EQ(LoadFile(dir / "grid.txt"), ExportText(t, false));
  EXPECT_TRUE(prompter.messages.empty());
}

// The lines table of the fixture with source texts that a careless writer
// would break: commas, quotes, a tab, an accented letter.
class ExportReadBack : public ::testing::Test {
 protected:
  void SetUp() override {
    Project& p = f.ws.Project(f.cp);
    p.CodeLine(1).Text = "MsgBox \"a, b\", vbOK";
    p.CodeLine(2).Text = "s = \"\"\"\"";
    p.CodeLine(4).Text = "x = Chr$(9)\t' tab";
    p.CodeLine(8).Text = "Caf\xE9 = \",\"";
    // Every line of Main and Helper is shown and hit.
    f.ws.Session(f.cs).CodeLineValue(2).Hits = 1;
    f.ws.Session(f.cs).CodeLineValue(2).TotalTime = 0.5;
    SortMemory sort;
    table = ShowLines(f.ws, f.Select(Measure::Total), sort, false).Grid;
    SortTable(table, sort, table.FindColumn("Line ID"), kSortAscending);
  }

  int Check(const std::string& file, const std::string& kind, const std::string& expected) {
    const std::string script = std::string(CHECK_EXPORT_SCRIPT);
    const std::string texts = dir / "expected.txt";
    WriteFile(texts, expected);
    // Columns shown minus the bars; the "Line" column is 9th.
    const std::string command = "python3 '" + script + "' '" + file + "' " + kind + " 9 7 '" +
                                texts + "' > '" + (dir / "log.txt") + "' 2>&1";
    const int rc = std::system(command.c_str());
    if (rc != 0) ADD_FAILURE() << LoadFile(dir / "log.txt");
    return rc;
  }

  testing::GridFixture f;
  testing::ScopedTempDir dir;
  Table table;
};

TEST_F(ExportReadBack, CsvReaderSeesEveryColumnOfEveryRowAndTheTextsWhole) {
  if (std::system("python3 -c 'import csv' > /dev/null 2>&1") != 0) GTEST_SKIP() << "no python3";
  RecordingPrompter prompter;
  std::int32_t type = 0;
  const std::string file = ExportGridToFile(table, dir / "lines.csv", prompter, type);
  EXPECT_EQ(Check(file, "csv",
                  "MsgBox \"a, b\", vbOK\ns = \"\"\"\"\nx = Chr$(9)\t' tab\nCaf\xE9 = \",\""),
            0);
}

TEST_F(ExportReadBack, TabSeparatedFileKeepsItsColumnsDespiteTabsInTheSource) {
  if (std::system("python3 -c 'import csv' > /dev/null 2>&1") != 0) GTEST_SKIP() << "no python3";
  RecordingPrompter prompter;
  std::int32_t type = 0;
  const std::string file = ExportGridToFile(table, dir / "lines.txt", prompter, type);
  EXPECT_EQ(
      Check(file, "txt", "MsgBox \"a, b\", vbOK\ns = \"\"\"\"\nx = Chr$(9) ' tab\nCaf\xE9 = \",\""),
      0);
}

}  // namespace
}  // namespace zol
