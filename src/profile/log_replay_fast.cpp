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

#include <algorithm>
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

// The replay's working variables and the constants it uses on every event.
// Block() works on a local copy so that the compiler can keep them in
// registers: as members they could alias the value arrays that every event
// writes to, and would go through memory.
//
// The stack holds two spare frames below frame 1, so that the top and the
// frame below it always exist: probes counted against an empty stack, a line
// set as ChildLine of no frame, amounts booked below frame 1 go to frames
// that nothing reads. That spares a test on every event.
struct Cursor {
  std::int32_t depth = 0;  // StackDepth
  Frame* top = nullptr;    // frame `depth`
  std::int32_t currentLine = 0;
  double currentLineStart = 0;
  std::int64_t currentLineOverheads = 0;
  double deadTime = 0;

  double traceOverhead = 0;
  CodeLineValue* lines = nullptr;  // line ID 1 at [0]
  std::uint32_t lineCount = 0;
  zol::ProcedureValue* procs = nullptr;  // procedure ID 1 at [0]
  std::uint32_t procCount = 0;

  CodeLineValue& Line(std::int32_t id) const { return lines[id - 1]; }
  zol::ProcedureValue& Proc(std::int32_t id) const { return procs[id - 1]; }
  // What all frames below the top owe is booked at the frame just below it.
  Owed& BelowTop() const { return (top - 1)->owed; }
};

class FastReplay : public LogReplay {
 public:
  explicit FastReplay(const ReplaySetup& setup)
      : session_(setup.ws.Session(setup.cs)),
        file_(setup.file),
        pairs_(ExistingPairs(session_)),
        stack_(kSpareFrames + kFirstDepth + 1) {
    const Project& project = setup.ws.Project(session_.Project);
    cursor_.traceOverhead = setup.TraceOverhead;
    cursor_.lines = session_.CodeLineValue.Raw().data();
    cursor_.lineCount = static_cast<std::uint32_t>(session_.CodeLineValue.Count());
    cursor_.procs = session_.ProcedureValue.Raw().data();
    cursor_.procCount = static_cast<std::uint32_t>(session_.ProcedureValue.Count());
    lineProbed_.resize(cursor_.procCount);
    for (std::uint32_t id = 1; id <= cursor_.procCount; ++id) {
      lineProbed_[id - 1] = project.Procedure(id).IsCovered;
    }
    cursor_.top = Frames();
  }

  void Block(const unsigned char* records, std::int32_t index, bool lastBlock) override {
    Cursor c = cursor_;
    for (std::int32_t n = 1; n <= pfl::kRecordsPerBlock; ++n) {
      const pfl::LogRecord r = pfl::DecodeRecord(records + (n - 1) * pfl::kRecordBytes);
      if (r.Time == 0 && n <= pfl::kDataRecordsPerBlock) {
        n = pfl::kDataRecordsPerBlock;
        continue;
      }
      Replay(c, r, pfl::LogTime(r.Time), lastBlock, {index, n});
    }
    cursor_ = c;
  }

  void Finish() override {
    for (std::int32_t level = cursor_.depth - 1; level >= 1; --level) {
      Settle(cursor_, Frames() + level);
    }
    session_.nFlowPair = pairs_.Count();
    session_.FlowPair.Raw() = pairs_.Take();
  }

 private:
  static constexpr std::int32_t kFirstDepth = 50;
  static constexpr std::int32_t kSpareFrames = 2;

  static std::vector<FlowPair> ExistingPairs(const Session& s) {
    std::vector<FlowPair> pairs(s.FlowPair.Raw());
    pairs.resize(static_cast<std::size_t>(s.nFlowPair));
    return pairs;
  }

  // Frame 0 of the stack; frames 1 and up are the procedures running.
  Frame* Frames() { return stack_.data() + kSpareFrames - 1; }
  std::int32_t Capacity() const { return static_cast<std::int32_t>(stack_.size()) - kSpareFrames; }

  void Replay(Cursor& c, const pfl::LogRecord& r, double lTime, bool lastBlock, RecordPlace place) {
    if (c.deadTime != 0) SettleGap(c, lTime);
    // A line ends at the next probe, except at a procedure entry.
    switch (r.Action) {
      case pfl::kLineRun:
        if (c.currentLine > 0) CloseRunningLine(c, lTime);
        LineRuns(c, r, lTime, place);
        break;
      case pfl::kProcedureIn:
        ProcedureEntered(c, r, lTime, place);
        break;
      case pfl::kProcedureOut:
        if (c.currentLine > 0) CloseRunningLine(c, lTime);
        ProcedureLeft(c, lTime);
        break;
      case pfl::kBlockClosed:
        if (c.currentLine > 0) CloseRunningLine(c, lTime);
        BlockClosed(c, lTime, lastBlock);
        break;
      default:
        break;
    }
    c.top->OverheadsNumber += 1;
    c.currentLineOverheads += 1;
  }

  static void SettleGap(Cursor& c, double lTime) {
    c.deadTime = lTime - c.deadTime - c.traceOverhead;
    if (c.currentLine > 0) {
      c.Line(c.currentLine).TotalTime -= c.deadTime;
      c.BelowTop().lineChild -= c.deadTime;
    }
    if (c.depth > 0 && !c.top->lineProbed) c.top->TotalTime -= c.deadTime;
  }

  static void CloseRunningLine(Cursor& c, double lTime) {
    const double t = lTime - c.currentLineStart - c.currentLineOverheads * c.traceOverhead;
    c.Line(c.currentLine).TotalTime += t;
    Owed& below = c.BelowTop();
    below.lineChild += t;
    below.lineFlow += t;
    c.currentLine = 0;
  }

  void LineRuns(Cursor& c, const pfl::LogRecord& r, double lTime, RecordPlace place) {
    const std::int32_t id = r.Origin;
    if (static_cast<std::uint32_t>(id) - 1u >= c.lineCount) BadOrigin(r, c.lineCount, place);
    c.top->ChildLine = id;
    c.currentLine = id;
    c.currentLineStart = lTime;
    c.currentLineOverheads = 0;
    c.deadTime = 0;
    c.Line(id).Hits += 1;
  }

  void ProcedureEntered(Cursor& c, const pfl::LogRecord& r, double lTime, RecordPlace place) {
    const std::int32_t id = r.Origin;
    if (static_cast<std::uint32_t>(id) - 1u >= c.procCount) BadOrigin(r, c.procCount, place);
    std::int32_t pair = -1;
    if (c.depth > 0) {
      Frame& caller = *c.top;
      if (!caller.lineProbed) caller.TotalTime += lTime - caller.EntryTime - c.traceOverhead;
      pair = CallPair(caller, id);
      pairs_[pair].Hits += 1;
    }
    if (session_.FirstProc == 0) session_.FirstProc = id;
    session_.LastProc = id;
    if (c.depth == Capacity()) {
      if (c.depth >= kMaxStackDepth) ThrowTooDeep(file_, place);
      GrowStack(c);
    }
    c.depth += 1;
    c.top += 1;
    Frame& frame = *c.top;
    frame.TotalTime = 0;
    frame.EntryTime = lTime;
    frame.ProcID = id;
    frame.OverheadsNumber = 0;
    frame.pair = pair;
    frame.lineProbed = lineProbed_[static_cast<std::size_t>(id - 1)];
    frame.lastCallee = 0;
    c.Proc(id).Hits += 1;
    c.deadTime = 0;
  }

  [[noreturn]] void BadOrigin(const pfl::LogRecord& r, std::uint32_t count, RecordPlace place) {
    ThrowBadOrigin(file_, r, static_cast<std::int32_t>(count), place);
  }

  // Frames beyond the first 50 are added in bulk, up to the deepest stack a
  // log may build; new slots start empty, as in the literal replay.
  void GrowStack(Cursor& c) {
    const auto deepest = static_cast<std::size_t>(kSpareFrames + kMaxStackDepth);
    stack_.resize(std::min(stack_.size() * 2, deepest));
    c.top = Frames() + c.depth;
  }

  std::int32_t CallPair(Frame& caller, std::int32_t callee) {
    if (caller.lastCallee != callee) {
      caller.lastCalleePair = pairs_.FindOrAdd(caller.ProcID, callee);
      caller.lastCallee = callee;
    }
    return caller.lastCalleePair;
  }

  void ProcedureLeft(Cursor& c, double lTime) {
    if (c.depth > 0) {
      CloseTopFrame(c, lTime, false);
      if (c.depth > 1) Settle(c, c.top - 1);
      c.depth -= 1;
      c.top -= 1;
    }
    if (c.depth > 0) {
      c.top->EntryTime = lTime;
      c.top->OverheadsNumber = 0;
      session_.LastProc = c.top->ProcID;
    }
    c.deadTime = 0;
  }

  static void BlockClosed(Cursor& c, double lTime, bool lastBlock) {
    if (lastBlock) {
      if (c.depth > 0) CloseTopFrame(c, lTime, true);
    } else {
      c.deadTime = lTime;
    }
  }

  static void CloseTopFrame(Cursor& c, double lTime, bool atRunEnd) {
    Frame& F = *c.top;
    F.TotalTime = lTime - F.EntryTime + F.TotalTime - c.traceOverhead * F.OverheadsNumber;
    Owed& below = c.BelowTop();
    if (!F.lineProbed) {
      c.Proc(F.ProcID).TotalTime += F.TotalTime;
      below.procChild += F.TotalTime;
    }
    if (!atRunEnd || !F.lineProbed) {
      const double floor = F.OverheadsNumber * kMinimumTimePerProbe;
      if (floor > F.TotalTime) F.TotalTime = floor;
    }
    if (!F.lineProbed) below.procFlow += F.TotalTime;
  }

  // The frame `f` (at level 1 or above) stops being below the top: what it
  // owes goes to its targets, and on down to the frame below, which owes the
  // same amounts.
  void Settle(const Cursor& c, Frame* f) {
    FlowPair& pair = pairs_[(f + 1)->pair];
    if (f->ChildLine != 0) {
      c.Line(f->ChildLine).ChildTotalTime += f->owed.lineChild;
      pair.ChildTime += f->owed.lineFlow;
    }
    c.Proc(f->ProcID).ChildTotalTime += f->owed.procChild;
    pair.ChildTime += f->owed.procFlow;
    (f - 1)->owed.Add(f->owed);
    f->owed = Owed{};
  }

  Session& session_;
  const std::string file_;
  FlowPairTable pairs_;
  std::vector<unsigned char> lineProbed_;  // IsCovered per procedure ID - 1
  std::vector<Frame> stack_;
  Cursor cursor_;
};

}  // namespace

std::unique_ptr<LogReplay> MakeFastReplay(const ReplaySetup& setup) {
  return std::make_unique<FastReplay>(setup);
}

}  // namespace zol
