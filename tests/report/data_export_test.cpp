// The CSV exports: their columns by the data asked for, their totals, and a
// text that a CSV reader takes back cell for cell.

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/files.h"
#include "report/data_export.h"
#include "report_fixture.h"

namespace zol {
namespace {

using Rows = std::vector<std::vector<std::string>>;

// A reader of quoted CSV as spreadsheets read it: quotes around a cell, doubled
// quotes inside, commas and line breaks inside quotes kept.
Rows ReadCsv(const std::string& text) {
  Rows rows(1);
  std::string cell;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quoted) {
      if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
        cell += '"';
        ++i;
      } else if (c == '"') {
        quoted = false;
      } else {
        cell += c;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == ',') {
      rows.back().push_back(cell);
      cell.clear();
    } else if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
      rows.back().push_back(cell);
      cell.clear();
      rows.emplace_back();
      ++i;
    } else {
      cell += c;
    }
  }
  if (rows.back().empty()) rows.pop_back();
  return rows;
}

std::vector<std::string> Heads(const TextTable& t) {
  std::vector<std::string> heads;
  for (int c = t.LBoundColumn(); c <= t.UBoundColumn(); ++c) heads.push_back(t(c, 0));
  return heads;
}

class DataExportTest : public ::testing::Test {
 protected:
  testing::ReportFixture f;
  Workspace& ws = f.ws;
  static constexpr std::int32_t cs = testing::PageFixture::kSession;
};

TEST_F(DataExportTest, ProcedureColumnsFollowTheDataAskedFor) {
  using V = std::vector<std::string>;
  EXPECT_EQ(Heads(ProceduresExportArray(ws, cs, {false, false, false})),
            (V{"Project", "Module", "Procedure", "Hits", "% Hits", "# Lines"}));
  EXPECT_EQ(
      Heads(ProceduresExportArray(ws, cs, {true, false, true})),
      (V{"Project", "Module", "Procedure", "Hits", "% Hits", "# Lines", "Hit Lines",
         "Line Coverage", "Left Lines", "Child Tot. Time", "% Child Time", "Child Avg. Time"}));
  ws.Project(1).ContainsCritical = true;
  EXPECT_EQ(Heads(ProceduresExportArray(ws, cs, {true, true, false}))[9], "Critical Cov.");
  EXPECT_EQ(Heads(ModulesExportArray(ws, cs, {false, true, false})),
            (V{"Project", "Module", "Total Time", "% Time"}));
  EXPECT_EQ(Heads(ModulesExportArray(ws, cs, {true, false, false})).back(), "Critical Cov.");
  EXPECT_EQ(Heads(LinesExportArray(ws, cs, {true, false, false}, false)),
            (V{"Project", "Module", "Procedure", "Hits", "% Hits", "Lines", "Line ID"}));
}

TEST_F(DataExportTest, RowsSharesAndTheTotalRow) {
  const TextTable t = ProceduresExportArray(ws, cs, {true, true, true});
  ASSERT_EQ(t.UBoundRow(), 4) << "three procedures and the total";
  // Main: 1 of 3 calls, 3 of 5 lines hit, 0.75 s of 150.750004 s.
  EXPECT_EQ(t(0, 1), "Demo");
  EXPECT_EQ(t(1, 1), "Module1");
  EXPECT_EQ(t(2, 1), "Main");
  EXPECT_EQ(t(3, 1), "1");
  EXPECT_EQ(t(4, 1), "33.3%");
  EXPECT_EQ(t(7, 1), "60.0%");
  EXPECT_EQ(t(8, 1), "2");
  EXPECT_EQ(t(9, 1), "0.750000");
  EXPECT_EQ(t(10, 1), "0.5%");
  // The dead procedure has no lines: no coverage, and its time shares are 0.
  EXPECT_EQ(t(7, 2), "");
  EXPECT_EQ(t(4, 2), "0%");
  EXPECT_EQ(t(0, 4), "TOTAL");
  EXPECT_EQ(t(3, 4), "3");
  EXPECT_EQ(t(4, 4), "100%");
  EXPECT_EQ(t(7, 4), "71.4%");
  EXPECT_EQ(t(10, 4), "100%");
  EXPECT_EQ(t(11, 4), "50.250001") << "150.750004 s over 3 calls";
  EXPECT_EQ(t(13, 4), "100%");
}

TEST_F(DataExportTest, NoTimeLeavesTheTimeSharesEmpty) {
  Session& s = ws.Session(cs);
  for (ProcedureValue& pv : s.ProcedureValue) pv.TotalTime = pv.ChildTotalTime = 0;
  for (CodeLineValue& v : s.CodeLineValue) v.TotalTime = v.ChildTotalTime = 0;
  const TextTable procs = ProceduresExportArray(ws, cs, {false, true, true});
  const int pct = FindExportColumn(procs, "% Tot. Time");
  const int child = FindExportColumn(procs, "% Child Time");
  for (int r = 1; r <= procs.UBoundRow(); ++r) {
    EXPECT_EQ(procs(pct, r), "") << r;
    EXPECT_EQ(procs(child, r), "") << r;
  }
  EXPECT_EQ(procs(FindExportColumn(procs, "% Hits"), procs.UBoundRow()), "100%");
  const TextTable lines = LinesExportArray(ws, cs, {false, true, false}, false);
  EXPECT_EQ(lines(FindExportColumn(lines, "% Tot. Time"), 1), "");
  EXPECT_EQ(lines(FindExportColumn(lines, "% Tot. Time"), lines.UBoundRow()), "");
}

TEST_F(DataExportTest, UnexecutedLinesCanBeLeftOut) {
  const TextTable all = LinesExportArray(ws, cs, {true, true, true}, false);
  const TextTable run = LinesExportArray(ws, cs, {true, true, true}, true);
  EXPECT_EQ(all.UBoundRow(), 8);
  EXPECT_EQ(run.UBoundRow(), 6) << "lines 4 and 5 have no hits";
  const int id = FindExportColumn(run, "Line ID");
  EXPECT_EQ(run(id, 4), "6");
  EXPECT_EQ(run(FindExportColumn(run, "Hits"), 6), all(FindExportColumn(all, "Hits"), 8))
      << "the total counts every line";
}

TEST_F(DataExportTest, EveryLineReadsBackWithItsColumns) {
  const std::string csv = ExportLines(ws, cs, {true, true, true}, false);
  EXPECT_EQ(csv.substr(0, 18), "\"Project\",\"Module\"");
  EXPECT_EQ(csv.substr(csv.size() - 2), "\r\n");
  const Rows rows = ReadCsv(csv);
  ASSERT_EQ(rows.size(), 9u);
  for (const auto& row : rows) EXPECT_EQ(row.size(), 13u);
  EXPECT_EQ(rows[4][11], "MsgBox \"a, \"\"b\"\"\", vbOK") << "commas and quotes stay in one cell";
  EXPECT_NE(csv.find("\"MsgBox \"\"a, \"\"\"\"b\"\"\"\"\"\", vbOK\""), std::string::npos);
}

TEST(ConvertArrayToCsv, DecimalCommasBecomePointsButNotInTheSourceText) {
  TextTable t(0, 2, 0, 1);
  t(0, 0) = "Time";
  t(1, 0) = "Lines";
  t(2, 0) = "Name, full";
  t(0, 1) = "0,500000";
  t(1, 1) = "Add(1, 2)";
  t(2, 1) = "x";
  EXPECT_EQ(ConvertArrayToCsv(t, 1, true),
            "\"Time\",\"Lines\",\"Name. full\"\r\n\"0.500000\",\"Add(1, 2)\",\"x\"\r\n");
  EXPECT_EQ(ConvertArrayToCsv(t, 1, false),
            "\"Time\",\"Lines\",\"Name, full\"\r\n\"0,500000\",\"Add(1, 2)\",\"x\"\r\n");
}

// Under a locale that writes decimal commas, the export still writes points
// and the source text keeps its commas. The locale is compiled for the test
// when the machine has the definitions.
TEST_F(DataExportTest, ACommaLocaleKeepsNumbersReadable) {
  const std::string folder = f.dir / "locales";
  const std::string command =
      "localedef -i de_DE -f UTF-8 '" + folder + "/de_DE.UTF-8' >/dev/null 2>&1";
  MakeDir(folder);
  if (std::system(command.c_str()) != 0) GTEST_SKIP() << "no de_DE locale definition here";
  ::setenv("LOCPATH", folder.c_str(), 1);
  const char* set = std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  if (set == nullptr) {
    ::unsetenv("LOCPATH");
    GTEST_SKIP() << "the locale could not be set";
  }
  const bool comma = LocaleWritesDecimalCommas();
  const std::string lines = ExportLines(ws, cs, {true, true, true}, false);
  std::setlocale(LC_NUMERIC, "C");
  ::unsetenv("LOCPATH");
  EXPECT_TRUE(comma);
  EXPECT_FALSE(LocaleWritesDecimalCommas());
  EXPECT_NE(lines.find("\"total = Add(1, 2, 3)\""), std::string::npos)
      << "the source text keeps its commas";
  EXPECT_NE(lines.find("\"MsgBox \"\"a, \"\"\"\"b\"\"\"\"\"\", vbOK\""), std::string::npos);
  EXPECT_NE(lines.find("\"0.500000\""), std::string::npos);
  for (const auto& row : ReadCsv(lines)) EXPECT_EQ(row.size(), 13u);
}

}  // namespace
}  // namespace zol
