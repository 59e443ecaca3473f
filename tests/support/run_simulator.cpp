#include "support/run_simulator.h"

namespace zol::testing {
namespace {
constexpr std::int32_t kMaxLoopsPerFrame = 3;
constexpr double kLoopChance = 0.15;
constexpr std::int32_t kMaxCallsOfPlainFrame = 4;
constexpr std::int32_t kMaxCallees = 4;
// With odd records on: that an exit comes between two calls from the top level.
constexpr double kStrayExitChance = 0.3;
}  // namespace

RunSimulator::RunSimulator(const Project& project, const RunShape& shape)
    : shape_(shape),
      random_(shape.seed),
      procedures_(project.ProceduresNumber),
      linesNumber_(project.LinesNumber),
      time_(shape.startTicks) {
  lines_.resize(static_cast<std::size_t>(procedures_));
  for (std::int32_t id = 1; id <= project.LinesNumber; ++id) {
    const std::int32_t proc = project.CodeLine(id).BelongToProcedure;
    if (proc >= 1 && proc <= procedures_ && project.Procedure(proc).IsCovered) {
      lines_[static_cast<std::size_t>(proc - 1)].push_back(id);
    }
  }
  callees_.resize(static_cast<std::size_t>(procedures_));
  for (auto& callees : callees_) {
    const auto n = random_.Between(1, kMaxCallees);
    for (std::int64_t i = 0; i < n; ++i) {
      callees.push_back(static_cast<std::int32_t>(random_.Between(1, procedures_)));
    }
  }
}

bool RunSimulator::Next(pfl::LogRecord& probe) {
  if (procedures_ == 0) return false;
  if (emitted_ >= shape_.probes) {
    // Winding down: leave every open call unless the run ends inside them.
    if (shape_.endInsideCalls || stack_.empty()) return false;
    time_ += random_.Between(shape_.minTicks, shape_.maxTicks);
    probe = Leave();
    return true;
  }
  ++emitted_;
  time_ += random_.Between(shape_.minTicks, shape_.maxTicks);
  probe = shape_.oddChance > 0 && random_.Chance(shape_.oddChance) ? Odd() : Step();
  return true;
}

pfl::LogRecord RunSimulator::Step() {
  if (diveLeft_ > 0) {
    --diveLeft_;
    return Enter(diveProc_);
  }
  if (stack_.empty()) {
    if (shape_.oddChance > 0 && random_.Chance(kStrayExitChance))
      return Probe(pfl::kProcedureOut, 1);
    return Enter(static_cast<std::int32_t>(random_.Between(1, procedures_)));
  }
  SimFrame& top = stack_.back();
  if (top.callPending) {
    top.callPending = false;
    return Enter(Callee(top.proc));
  }
  const auto& lines = lines_[static_cast<std::size_t>(top.proc - 1)];
  if (lines.empty()) {
    if (top.calls < kMaxCallsOfPlainFrame && MayCall() && random_.Chance(2 * shape_.callChance)) {
      ++top.calls;
      return Enter(Callee(top.proc));
    }
    return Leave();
  }
  if (top.nextLine >= lines.size()) return Leave();
  const std::size_t at = top.nextLine;
  const bool exitLine = at + 1 == lines.size();
  if (!exitLine && at > 0 && top.loops < kMaxLoopsPerFrame && random_.Chance(kLoopChance)) {
    top.nextLine = static_cast<std::size_t>(random_.Between(0, static_cast<std::int64_t>(at) - 1));
    ++top.loops;
  } else {
    ++top.nextLine;
  }
  if (!exitLine && MayCall() && random_.Chance(shape_.callChance)) top.callPending = true;
  return Probe(pfl::kLineRun, lines[at]);
}

std::int32_t RunSimulator::Callee(std::int32_t caller) {
  if (random_.Chance(shape_.diveChance)) {
    diveProc_ = caller;
    diveLeft_ = shape_.diveDepth - 1;
    return caller;
  }
  if (random_.Chance(shape_.recursionChance)) return caller;
  const auto& callees = callees_[static_cast<std::size_t>(caller - 1)];
  return callees[static_cast<std::size_t>(
      random_.Between(0, static_cast<std::int64_t>(callees.size()) - 1))];
}

bool RunSimulator::MayCall() const {
  return static_cast<std::int32_t>(stack_.size()) < shape_.callDepth;
}

pfl::LogRecord RunSimulator::Probe(std::int16_t action, std::int32_t origin) const {
  return pfl::LogRecord{time_, action, origin};
}

pfl::LogRecord RunSimulator::Enter(std::int32_t proc) {
  stack_.push_back(SimFrame{proc});
  return Probe(pfl::kProcedureIn, proc);
}

pfl::LogRecord RunSimulator::Leave() {
  const std::int32_t proc = stack_.back().proc;
  stack_.pop_back();
  return Probe(pfl::kProcedureOut, proc);
}

// Records the logger may write that a well-behaved run doesn't: action codes
// the reader doesn't know, a block-closed record amid the data.
pfl::LogRecord RunSimulator::Odd() {
  switch (random_.Between(0, 2)) {
    case 0:
      return Probe(static_cast<std::int16_t>(random_.Between(4, 9)),
                   static_cast<std::int32_t>(random_.Between(-5, linesNumber_ + 5)));
    case 1:
      return Probe(-1, 0);
    default:
      return Probe(pfl::kBlockClosed, 0);
  }
}

}  // namespace zol::testing
