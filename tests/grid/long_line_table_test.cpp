// A long Lines table against the short tables of its procedures: every
// listed line must carry the cells its procedure's table gives it (the
// shares apart, which are of the whole), and the chart items, whose names
// are made from the table's texts, the lines' own names.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <string>

#include "grid/grid_builders.h"
#include "grid/grid_frame.h"
#include "support/session_builder.h"

namespace zol {
namespace {

constexpr int kProcedures = 1500;
constexpr int kLinesPerProcedure = 20;

// Lines of many lengths (so that each row's text lies at its own offset),
// some never run, a few procedures dead.
std::int32_t LongSession(Workspace& ws) {
  testing::ProjectBuilder b(ws);
  std::int32_t module = 0;
  for (int p = 0; p < kProcedures; ++p) {
    if (p % 30 == 0) module = b.Module("Module" + std::to_string(p / 30));
    const std::int32_t proc =
        b.Procedure(module, "Proc" + std::to_string(p), {.dead = p % 97 == 5});
    for (int l = 0; l < kLinesPerProcedure; ++l) b.Line(proc, l == kLinesPerProcedure - 1);
  }
  const std::int32_t cp = b.Build();
  Project& project = ws.Project(cp);
  for (std::int32_t i = 1; i <= project.LinesNumber; ++i) {
    project.CodeLine(i).Text = std::string(static_cast<std::size_t>(i % 41), ' ') + "x" +
                               std::to_string(i) +
                               std::string(static_cast<std::size_t>(i % 7), 'y');
  }
  const std::int32_t cs = testing::AddSessionForProject(ws, cp, "/tmp/long.pfl");
  std::mt19937 rng(11);
  for (CodeLineValue& v : ws.Session(cs).CodeLineValue) {
    if (rng() % 5 == 0) continue;
    v.Hits = static_cast<std::int32_t>(1 + rng() % 900);
    v.TotalTime = std::ldexp(static_cast<double>(rng()), -static_cast<int>(24 + rng() % 20));
    v.ChildTotalTime = v.TotalTime * 1.25;
    v.AverageTime = v.TotalTime / v.Hits;
    v.ChildAverageTime = v.ChildTotalTime / v.Hits;
  }
  ws.Session(cs).Loaded = true;
  return cs;
}

TEST(LongLineTable, RowsMatchTheTablesOfTheirProcedures) {
  Workspace ws(std::make_shared<SilentPrompter>());
  const std::int32_t cs = LongSession(ws);
  const Project& project = ws.Project(ws.Session(cs).Project);
  for (const Measure measure : {Measure::Total, Measure::ChildAverage, Measure::Coverage}) {
    Selection sel{.session = SessionRef::single(cs),
                  .project = ws.Session(cs).Project,
                  .tab = Tab::Lines,
                  .measure = measure};
    SortMemory sort;
    const GridBuild whole = ShowLines(ws, sel, sort, false);
    const Table& t = whole.Grid;
    ASSERT_GT(t.RowCount(), 20000);
    const int lineId = t.FindColumn("Line ID");
    const int shares[] = {t.FindColumn("% Hits"), t.FindColumn("% Time")};

    // Each procedure's own table, by line ID.
    std::map<std::int32_t, std::pair<Table, int>> byLine;
    for (std::int32_t p = 1; p <= project.ProceduresNumber; ++p) {
      sel.procedure = p;
      SortMemory own;
      Table part = ShowLines(ws, sel, own, false).Grid;
      for (int r = 1; r <= part.RowCount(); ++r) {
        if (part.Key(r) == kTotalKey) continue;
        byLine.emplace(part.Tag(r), std::make_pair(part, r));
      }
    }
    int listed = 0;
    for (int r = 1; r <= t.RowCount(); ++r) {
      if (t.Key(r) == kTotalKey) continue;
      ++listed;
      const auto found = byLine.find(t.Tag(r));
      ASSERT_NE(found, byLine.end()) << "line " << t.Tag(r);
      const auto& [part, row] = found->second;
      EXPECT_EQ(t.Text(r, lineId), std::to_string(t.Tag(r)));
      for (int c = 1; c <= t.ColumnCount(); ++c) {
        // Shares are of the whole table's totals.
        if (c == shares[0] || c == shares[1]) continue;
        ASSERT_EQ(t.Text(r, c), part.Text(row, c))
            << "line " << t.Tag(r) << ", column " << t.ColumnAt(c).Header;
        ASSERT_EQ(t.Color(r, c), part.Color(row, c)) << "line " << t.Tag(r);
      }
    }
    // Every line that ran, or every line for coverage, and no other.
    int expected = 0;
    for (std::int32_t i = 1; i <= project.LinesNumber; ++i) {
      const bool ran = ws.Session(cs).CodeLineValue(i).Hits != 0;
      const bool end = project.CodeLine(i).IsProcedureExit;
      if (ran && (measure == Measure::Coverage || !end)) ++expected;
    }
    EXPECT_EQ(listed, expected);

    // The chart's items follow the lines in order.
    ASSERT_EQ(whole.Arrays.BarCount(), static_cast<std::size_t>(listed));
    for (const std::size_t k : {std::size_t{0}, std::size_t{12345}, whole.Arrays.BarCount() - 1}) {
      const std::string name(whole.Arrays.PackedName(k));
      const std::int32_t id = std::stoi(name.substr(0, name.find('-')));
      EXPECT_EQ(name,
                LineChartName(id, LineIdDigits(project.LinesNumber), project.CodeLine(id).Text));
    }
  }
}

}  // namespace
}  // namespace zol
