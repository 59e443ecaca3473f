#pragma once

// The probes of a simulated run of an instrumented program, drawn from a
// seed and following the project's tables: a random walk of calls in which a
// line-probed procedure (IsCovered) runs its own lines (CodeLine.
// BelongToProcedure) in order, with short loops, and may call from any line;
// a plain procedure only calls and returns. Calls follow a fixed call graph
// of a few callees per procedure, recursion included, and now and then a
// recursive dive goes deeper than the replay's starting stack of 50. Clock
// values rise by a few ticks per probe, sometimes by less than a probe's cost.
// The run stops after a number of probes, inside its calls or after leaving
// them all. Probes are produced one at a time, so runs of any length fit.

#include <cstdint>
#include <vector>

#include "profile/pfl_format.h"
#include "session/records.h"
#include "support/sim_random.h"

namespace zol::testing {

struct RunShape {
  std::uint64_t seed = 1;
  std::int64_t probes = 1000;  // before the run winds down
  std::int64_t startTicks = 7'000'000'000;
  std::int64_t minTicks = 0;  // clock ticks from one probe to the next
  std::int64_t maxTicks = 60;
  double callChance = 0.25;      // of a call from a line, or per step of a plain procedure
  double recursionChance = 0.1;  // that a call goes back to the caller itself
  double diveChance = 0.002;     // that a call starts a recursive dive
  std::int32_t diveDepth = 60;   // calls in one dive
  std::int32_t callDepth = 12;   // ordinary calls nest no deeper
  double oddChance = 0;          // unknown action codes, stray exits and block-closed records
  bool endInsideCalls = false;   // stop with frames open instead of leaving them all
};

class RunSimulator {
 public:
  RunSimulator(const Project& project, const RunShape& shape);

  // The next probe; false after the last one.
  bool Next(pfl::LogRecord& probe);

 private:
  struct SimFrame {
    std::int32_t proc = 0;
    std::size_t nextLine = 0;  // position in the procedure's lines
    std::int32_t loops = 0;
    std::int32_t calls = 0;
    bool callPending = false;
  };

  pfl::LogRecord Probe(std::int16_t action, std::int32_t origin) const;
  pfl::LogRecord Enter(std::int32_t proc);
  pfl::LogRecord Leave();
  pfl::LogRecord Odd();
  pfl::LogRecord Step();
  std::int32_t Callee(std::int32_t caller);
  bool MayCall() const;

  RunShape shape_;
  SimRandom random_;
  std::vector<std::vector<std::int32_t>> lines_;    // by procedure ID - 1
  std::vector<std::vector<std::int32_t>> callees_;  // by procedure ID - 1
  std::int32_t procedures_ = 0;
  std::int32_t linesNumber_ = 0;
  std::vector<SimFrame> stack_;
  std::int32_t diveLeft_ = 0;
  std::int32_t diveProc_ = 0;
  std::int64_t emitted_ = 0;
  std::int64_t time_ = 0;
};

}  // namespace zol::testing
