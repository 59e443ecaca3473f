// The replay for big logs. It gives the sums of the literal replay without its
// per-event walks over the stack:
//
// On every line close and frame close the literal replay adds one amount to a
// target of each frame below the top: the ChildLine's child time, the
// procedure's child time, the pair (frame, frame above). A frame's targets
// can't change while another frame stands above it (its ChildLine changes only
// while it is the top, its ProcID and the one above only by a pop down to it),
// so those additions can wait. An amount is booked once, at the frame just
// below the top; when the top frame leaves, the frame below settles what it
// holds into its targets and passes it on down to the next frame, which owes
// it too. Every frame thus receives the sum of the same amounts, only grouped
// differently, which moves results by rounding alone. Recursion needs nothing
// special: each level settles into its own targets, as each level of the walk
// added to them.
//
// Pairs are found through a hash index (and a one-entry cache per frame) and
// kept in the order of first sight. A pair is only ever made by a call: the
// flow times go to pairs of frames standing on the stack, made when the upper
// frame was entered, so deferring them changes no order.

#include <cstdint>
#include <vector>

#include "profile/flow_pair_table.h"
#include "profile/log_replay.h"

namespace zol {
namespace {

// What the frames from 1 up to some level still owe to their targets.
struct Owed {
  double lineChild = 0;  // to the ChildLine's ChildTotalTime: line times less writing gaps
  double lineFlow = 0;   // to the pair with the frame above, if ChildLine isn't 0
  double procChild = 0;  // to the procedure's ChildTotalTime
  double procFlow = 0;   // to the pair with the frame above, always

  void Add(const Owed& o) {
    lineChild += o.lineChild;
    lineFlow += o.lineFlow;
    procChild += o.procChild;
    procFlow += o.procFlow;
  }
};

struct Frame {
  double EntryTime = 0;
  double TotalTime = 0;
  std::int64_t OverheadsNumber = 0;
  std::int32_t ProcID = 0;
  std::int32_t ChildLine =
      0;  // kept from the slot's former frame until a line runs, as in the literal replay
  std::int32_t pair = -1;  // the pair (frame below, this frame)
  bool lineProbed = false;
  std::int32_t lastCallee = 0;  // the pair of the last call made from this frame
  std::int32_t lastCalleePair = -1;
  Owed owed;
};

class FastReplay : public LogReplay {
 public:
  explicit FastReplay(const ReplaySetup& setup)
      : session_(setup.ws.Session(setup.cs)),
        traceOverhead_(setup.TraceOverhead),
        file_(setup.file),
        pairs_(ExistingPairs(session_)),
        stack_(kFirstDepth + 1) {
    const Project& project = setup.ws.Project(session_.Project);
    lines_ = session_.CodeLineValue.Raw().data();
    lineCount_ = session_.CodeLineValue.Count();
    procs_ = session_.ProcedureValue.Raw().data();
    procCount_ = session_.ProcedureValue.Count();
    lineProbed_.resize(static_cast<std::size_t>(procCount_));
    for (std::int32_t id = 1; id <= procCount_; ++id) {
      lineProbed_[static_cast<std::size_t>(id - 1)] = project.Procedure(id).IsCovered;
    }
  }

  void Block(const unsigned char* records, std::int32_t index, bool lastBlock) override {
    for (std::int32_t n = 1; n <= pfl::kRecordsPerBlock; ++n) {
      const pfl::LogRecord r = pfl::DecodeRecord(records + (n - 1) * pfl::kRecordBytes);
      if (r.Time == 0 && n <= pfl::kDataRecordsPerBlock) {
        n = pfl::kDataRecordsPerBlock;
        continue;
      }
      Replay(r, pfl::LogTime(r.Time), lastBlock, {index, n});
    }
  }

  void Finish() override {
    for (std::int32_t level = depth_ - 1; level >= 1; --level) Settle(level);
    session_.nFlowPair = pairs_.Count();
    session_.FlowPair.Raw() = pairs_.Take();
  }

 private:
  static constexpr std::int32_t kFirstDepth = 50;

  static std::vector<FlowPair> ExistingPairs(const Session& s) {
    std::vector<FlowPair> pairs(s.FlowPair.Raw());
    pairs.resize(static_cast<std::size_t>(s.nFlowPair));
    return pairs;
  }

  void Replay(const pfl::LogRecord& r, double lTime, bool lastBlock, RecordPlace place) {
    if (deadTime_ != 0) SettleGap(lTime);
    const std::int16_t action = r.Action;
    if (currentLine_ > 0 &&
        (action == pfl::kLineRun || action == pfl::kProcedureOut || action == pfl::kBlockClosed)) {
      CloseRunningLine(lTime);
    }
    switch (action) {
      case pfl::kLineRun:
        LineRuns(r, lTime, place);
        break;
      case pfl::kProcedureIn:
        ProcedureEntered(r, lTime, place);
        break;
      case pfl::kProcedureOut:
        ProcedureLeft(lTime);
        break;
      case pfl::kBlockClosed:
        BlockClosed(lTime, lastBlock);
        break;
      default:
        break;
    }
    if (depth_ > 0) stack_[depth_].OverheadsNumber += 1;
    currentLineOverheads_ += 1;
  }

  CodeLineValue& Line(std::int32_t id) { return lines_[id - 1]; }
  zol::ProcedureValue& Proc(std::int32_t id) { return procs_[id - 1]; }
  // The frame just below the top, which books what all frames below the top owe.
  Owed* BelowTop() { return depth_ > 1 ? &stack_[depth_ - 1].owed : nullptr; }

  void SettleGap(double lTime) {
    deadTime_ = lTime - deadTime_ - traceOverhead_;
    if (currentLine_ > 0) {
      Line(currentLine_).TotalTime -= deadTime_;
      if (Owed* o = BelowTop()) o->lineChild -= deadTime_;
    }
    if (depth_ > 0 && !stack_[depth_].lineProbed) stack_[depth_].TotalTime -= deadTime_;
  }

  void CloseRunningLine(double lTime) {
    const double t = lTime - currentLineStart_ - currentLineOverheads_ * traceOverhead_;
    Line(currentLine_).TotalTime += t;
    if (Owed* o = BelowTop()) {
      o->lineChild += t;
      o->lineFlow += t;
    }
    currentLine_ = 0;
  }

  void LineRuns(const pfl::LogRecord& r, double lTime, RecordPlace place) {
    const std::int32_t id = r.Origin;
    if (id < 1 || id > lineCount_) ThrowBadOrigin(file_, r, lineCount_, place);
    if (depth_ > 0) stack_[depth_].ChildLine = id;
    currentLine_ = id;
    currentLineStart_ = lTime;
    currentLineOverheads_ = 0;
    deadTime_ = 0;
    Line(id).Hits += 1;
  }

  void ProcedureEntered(const pfl::LogRecord& r, double lTime, RecordPlace place) {
    const std::int32_t id = r.Origin;
    if (id < 1 || id > procCount_) ThrowBadOrigin(file_, r, procCount_, place);
    std::int32_t pair = -1;
    if (depth_ > 0) {
      Frame& top = stack_[depth_];
      if (!top.lineProbed) top.TotalTime += lTime - top.EntryTime - traceOverhead_;
      pair = CallPair(top, id);
      pairs_[pair].Hits += 1;
    }
    if (session_.FirstProc == 0) session_.FirstProc = id;
    session_.LastProc = id;
    depth_ += 1;
    if (static_cast<std::size_t>(depth_) >= stack_.size()) stack_.resize(stack_.size() * 2);
    Frame& frame = stack_[depth_];
    frame.TotalTime = 0;
    frame.EntryTime = lTime;
    frame.ProcID = id;
    frame.OverheadsNumber = 0;
    frame.pair = pair;
    frame.lineProbed = lineProbed_[static_cast<std::size_t>(id - 1)];
    frame.lastCallee = 0;
    Proc(id).Hits += 1;
    deadTime_ = 0;
  }

  std::int32_t CallPair(Frame& caller, std::int32_t callee) {
    if (caller.lastCallee != callee) {
      caller.lastCalleePair = pairs_.FindOrAdd(caller.ProcID, callee);
      caller.lastCallee = callee;
    }
    return caller.lastCalleePair;
  }

  void ProcedureLeft(double lTime) {
    if (depth_ > 0) {
      CloseTopFrame(lTime, false);
      if (depth_ > 1) Settle(depth_ - 1);
      depth_ -= 1;
    }
    if (depth_ > 0) {
      Frame& top = stack_[depth_];
      top.EntryTime = lTime;
      top.OverheadsNumber = 0;
      session_.LastProc = top.ProcID;
    }
    deadTime_ = 0;
  }

  void BlockClosed(double lTime, bool lastBlock) {
    if (lastBlock) {
      if (depth_ > 0) CloseTopFrame(lTime, true);
    } else {
      deadTime_ = lTime;
    }
  }

  void CloseTopFrame(double lTime, bool atRunEnd) {
    Frame& F = stack_[depth_];
    F.TotalTime = lTime - F.EntryTime + F.TotalTime - traceOverhead_ * F.OverheadsNumber;
    Owed* below = BelowTop();
    if (!F.lineProbed) {
      Proc(F.ProcID).TotalTime += F.TotalTime;
      if (below) below->procChild += F.TotalTime;
    }
    if (!atRunEnd || !F.lineProbed) {
      const double floor = F.OverheadsNumber * kMinimumTimePerProbe;
      if (floor > F.TotalTime) F.TotalTime = floor;
    }
    if (!F.lineProbed && below) below->procFlow += F.TotalTime;
  }

  // The frame at `level` stops being below the top: what it owes goes to its
  // targets, and on down to the frame below, which owes the same amounts.
  void Settle(std::int32_t level) {
    Frame& f = stack_[level];
    FlowPair& pair = pairs_[stack_[level + 1].pair];
    if (f.ChildLine != 0) {
      Line(f.ChildLine).ChildTotalTime += f.owed.lineChild;
      pair.ChildTime += f.owed.lineFlow;
    }
    Proc(f.ProcID).ChildTotalTime += f.owed.procChild;
    pair.ChildTime += f.owed.procFlow;
    if (level > 1) stack_[level - 1].owed.Add(f.owed);
    f.owed = Owed{};
  }

  Session& session_;
  const double traceOverhead_;
  const std::string file_;
  FlowPairTable pairs_;
  CodeLineValue* lines_ = nullptr;
  std::int32_t lineCount_ = 0;
  zol::ProcedureValue* procs_ = nullptr;
  std::int32_t procCount_ = 0;
  std::vector<unsigned char> lineProbed_;  // IsCovered per procedure ID - 1

  std::vector<Frame> stack_;  // frames 1 to depth_; slot 0 unused
  std::int32_t depth_ = 0;
  std::int32_t currentLine_ = 0;
  double currentLineStart_ = 0;
  std::int64_t currentLineOverheads_ = 0;
  double deadTime_ = 0;
};

}  // namespace

std::unique_ptr<LogReplay> MakeFastReplay(const ReplaySetup& setup) {
  return std::make_unique<FastReplay>(setup);
}

}  // namespace zol
