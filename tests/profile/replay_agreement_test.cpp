// The fast replay against the literal one on simulated runs of many seeds:
// the same hits, the same pairs in the same order, times equal up to rounding.
// The seeds vary the project's shape, block sizes (so that runs cross many
// block ends and writing gaps), recursion and dives deeper than 50 frames,
// probes closer together than their cost, odd records and runs that end
// inside their calls.

#include <gtest/gtest.h>

#include <algorithm>

#include "base/scoped_temp_dir.h"
#include "profile/log_reader.h"
#include "profile/log_test_support.h"
#include "support/fixture_run.h"
#include "support/random_project.h"
#include "support/run_simulator.h"
#include "support/session_builder.h"
#include "support/simulated_log.h"

namespace zol {
namespace {

constexpr std::uint64_t kSeeds = 80;

testing::ProjectShape ProjectFor(std::uint64_t seed) {
  testing::ProjectShape p;
  p.seed = seed;
  p.modules = 1 + static_cast<std::int32_t>(seed % 4);
  p.proceduresPerModule = 1 + static_cast<std::int32_t>(seed % 9);
  p.lineProbedShare = std::vector<double>{0.0, 0.5, 0.8, 1.0}[seed % 4];
  return p;
}

testing::SimulatedLogShape LogFor(std::uint64_t seed) {
  testing::SimulatedLogShape s;
  s.run.seed = seed;
  s.logger.recordsPerBlock = std::vector<std::int32_t>{7, 61, 499, 50000}[seed % 4];
  // At most some 40 blocks: each one is 800 KB to compress and inflate.
  s.run.probes = std::min<std::int64_t>(300 + static_cast<std::int64_t>((seed * 7919) % 6000),
                                        40 * s.logger.recordsPerBlock);
  s.run.maxTicks = seed % 3 == 0 ? 4 : 60;  // often below the probe cost of 3 ticks
  s.run.diveChance = seed % 2 == 0 ? 0.02 : 0.001;
  s.run.diveDepth = 45 + static_cast<std::int32_t>(seed % 40);
  s.run.recursionChance = 0.05 + 0.05 * static_cast<double>(seed % 5);
  s.run.oddChance = seed % 4 == 1 ? 0.01 : 0;
  s.run.endInsideCalls = seed % 3 == 1;
  s.logger.gapTicks = static_cast<std::int64_t>(seed % 5) * 40000;
  // Big stored blocks change which block counts as the last one.
  s.level = seed % 8 == 6 ? 0 : 1;
  if (seed % 5 == 2) s.trailerOverhead.reset();
  return s;
}

Session ReadWith(Workspace& ws, std::int32_t cp, const std::string& path, ReplayKind kind) {
  const std::int32_t cs = testing::AddSessionForProject(ws, cp, path);
  ReadProfileFile(ws, cs, kind);
  return ws.Session(cs);
}

TEST(ReplayAgreement, FastMatchesLiteralOverManySeeds) {
  testing::ScopedTempDir dir;
  for (std::uint64_t seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Workspace ws;
    const std::int32_t cp = testing::AddRandomProject(ws, ProjectFor(seed));
    const std::string path = dir / ("run" + std::to_string(seed) + ".pfl");
    testing::WriteSimulatedLog(path, ws.Project(cp), LogFor(seed));
    const Session literal = ReadWith(ws, cp, path, ReplayKind::Literal);
    const Session fast = ReadWith(ws, cp, path, ReplayKind::Fast);
    testing::ExpectSameValues(literal, fast);
    if (::testing::Test::HasFailure()) break;
  }
}

// One long run over a bigger project, in full blocks of 50,000 records.
TEST(ReplayAgreement, FastMatchesLiteralOnALongRun) {
  testing::ScopedTempDir dir;
  Workspace ws;
  testing::ProjectShape p;
  p.modules = 6;
  p.proceduresPerModule = 10;
  const std::int32_t cp = testing::AddRandomProject(ws, p);
  testing::SimulatedLogShape shape;
  shape.run.probes = 120'000;
  const std::string path = dir / "long.pfl";
  ASSERT_EQ(testing::WriteSimulatedLog(path, ws.Project(cp), shape).blocks, 3);
  testing::ExpectSameValues(ReadWith(ws, cp, path, ReplayKind::Literal),
                            ReadWith(ws, cp, path, ReplayKind::Fast));
}

// Runs over generated projects, instrumented and scanned as real ones are.
TEST(ReplayAgreement, FastMatchesLiteralOnScannedProjects) {
  testing::ScopedTempDir dir;
  for (std::uint32_t seed = 1; seed <= 8; ++seed) {
    SCOPED_TRACE("project seed " + std::to_string(seed));
    const std::string root = dir / ("p" + std::to_string(seed));
    const testing::FixtureRun run = testing::MakeInstrumentedProject(root, seed);
    ASSERT_GT(run.project.LinesNumber, 0);
    Workspace ws;
    ws.nProject = 1;
    ws.Project.ReDimPreserve(1);
    ws.Project(1) = run.project;
    const std::string path = root + "/run.pfl";
    testing::WriteSimulatedLog(path, run.project, LogFor(seed * 11));
    testing::ExpectSameValues(ReadWith(ws, 1, path, ReplayKind::Literal),
                              ReadWith(ws, 1, path, ReplayKind::Fast));
  }
}

// The agreement above only means something if the runs hold the hard cases.
TEST(ReplayAgreement, SimulatedRunsHoldTheHardCases) {
  std::int32_t deepest = 0;
  int endedInsideCalls = 0;
  int recursiveCalls = 0;
  int oddRecords = 0;
  int strayExits = 0;
  for (std::uint64_t seed = 1; seed <= kSeeds; ++seed) {
    Workspace ws;
    const std::int32_t cp = testing::AddRandomProject(ws, ProjectFor(seed));
    testing::RunSimulator run(ws.Project(cp), LogFor(seed).run);
    std::vector<std::int32_t> stack;
    pfl::LogRecord r;
    while (run.Next(r)) {
      if (r.Action == pfl::kProcedureIn) {
        if (!stack.empty() && stack.back() == r.Origin) ++recursiveCalls;
        stack.push_back(r.Origin);
        deepest = std::max(deepest, static_cast<std::int32_t>(stack.size()));
      } else if (r.Action == pfl::kProcedureOut) {
        if (stack.empty()) ++strayExits;
        if (!stack.empty()) stack.pop_back();
      } else if (r.Action != pfl::kLineRun) {
        ++oddRecords;
      }
    }
    if (!stack.empty()) ++endedInsideCalls;
  }
  EXPECT_GT(deepest, 60);
  EXPECT_GT(endedInsideCalls, 10);
  EXPECT_GT(recursiveCalls, 100);
  EXPECT_GT(oddRecords, 50);
  EXPECT_GT(strayExits, 0);
}

}  // namespace
}  // namespace zol
