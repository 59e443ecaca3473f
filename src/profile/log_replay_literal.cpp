// The reference replay: every rule of the log reader applied as it stands,
// including the walks over all frames below the top on each line and frame
// close, the linear search of caller-callee pairs, and bounds-checked arrays
// whose BoundsError marks an ID that the project doesn't have. It is slow on
// purpose and serves as the oracle of the fast replay.

#include "base/vbarray.h"
#include "profile/log_reader.h"
#include "profile/log_replay.h"

namespace zol {
namespace {

struct StackFrame {
  double EntryTime = 0;  // start of the frame's current stretch of own time
  double TotalTime = 0;  // own time gathered so far
  std::int32_t ProcID = 0;
  std::int64_t OverheadsNumber = 0;  // probes in the current stretch
  std::int32_t ChildLine = 0;        // the line that ran last here, so the one that made the call
};

class LiteralReplay : public LogReplay {
 public:
  explicit LiteralReplay(const ReplaySetup& setup)
      : ws_(setup.ws),
        cs_(setup.cs),
        session_(setup.ws.Session(setup.cs)),
        project_(setup.ws.Project(setup.ws.Session(setup.cs).Project)),
        TraceOverhead(setup.TraceOverhead),
        file_(setup.file) {
    Stack.ReDim(MaxDepth);
  }

  void Block(const unsigned char* records, std::int32_t index, bool lastBlock) override {
    for (std::int32_t recordNumber = 1; recordNumber <= pfl::kRecordsPerBlock; ++recordNumber) {
      const pfl::LogRecord r = pfl::DecodeRecord(records + (recordNumber - 1) * pfl::kRecordBytes);
      const double lTime = pfl::LogTime(r.Time);
      // A zero clock value ends the data of a short block; the closing record
      // at the end of the block is read in every case.
      if (lTime == 0 && recordNumber <= pfl::kDataRecordsPerBlock) {
        recordNumber = pfl::kDataRecordsPerBlock;
        continue;
      }
      place_ = {index, recordNumber};
      try {
        Replay(r, lTime, lastBlock);
      } catch (const BoundsError&) {
        const bool line = r.Action == pfl::kLineRun;
        ThrowBadOrigin(file_, r,
                       line ? session_.CodeLineValue.Count() : session_.ProcedureValue.Count(),
                       {index, recordNumber});
      }
    }
  }

  void Finish() override {}

 private:
  void Replay(const pfl::LogRecord& r, double lTime, bool lastBlock) {
    timeToAdd = 0;
    SettleGap(lTime);
    CloseRunningLine(r.Action, lTime);
    switch (r.Action) {
      case pfl::kLineRun:
        LineRuns(r.Origin, lTime);
        break;
      case pfl::kProcedureIn:
        ProcedureEntered(r.Origin, lTime);
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
    // Every probe counts against what it interrupted, unknown actions too; it
    // is counted after the action so that a line's own first probe and a new
    // frame's entry probe count once against it.
    if (StackDepth > 0) Stack(StackDepth).OverheadsNumber += 1;
    CurrentLineOverheads += 1;
  }

  bool IsLineProbed(std::int32_t procId) const { return project_.Procedure(procId).IsCovered; }

  // The first record after a block was written out takes the writing gap out
  // of whatever was running across it.
  void SettleGap(double lTime) {
    if (DeadTime == 0) return;
    DeadTime = lTime - DeadTime - TraceOverhead;
    if (CurrentLine > 0) {
      session_.CodeLineValue(CurrentLine).TotalTime -= DeadTime;
      for (std::int32_t i = 1; i <= StackDepth - 1; ++i) {
        if (Stack(i).ChildLine != 0) {
          session_.CodeLineValue(Stack(i).ChildLine).ChildTotalTime -= DeadTime;
        }
      }
    }
    if (StackDepth > 0 && !IsLineProbed(Stack(StackDepth).ProcID)) {
      Stack(StackDepth).TotalTime -= DeadTime;
    }
  }

  // A line ends at the next probe, except at a procedure entry: a line goes on
  // running while it calls.
  void CloseRunningLine(std::int16_t lAction, double lTime) {
    if (CurrentLine <= 0) return;
    if (lAction != pfl::kBlockClosed && lAction != pfl::kProcedureOut && lAction != pfl::kLineRun) {
      return;
    }
    timeToAdd = lTime - CurrentLineStartTime - CurrentLineOverheads * TraceOverhead;
    session_.CodeLineValue(CurrentLine).TotalTime += timeToAdd;
    for (std::int32_t i = 1; i <= StackDepth - 1; ++i) {
      if (Stack(i).ChildLine != 0) {
        session_.CodeLineValue(Stack(i).ChildLine).ChildTotalTime += timeToAdd;
        AddFlowTime(ws_, cs_, Stack(i).ProcID, Stack(i + 1).ProcID, timeToAdd);
      }
    }
    CurrentLine = 0;
  }

  void LineRuns(std::int32_t ID, double lTime) {
    if (StackDepth > 0) Stack(StackDepth).ChildLine = ID;
    CurrentLine = ID;
    CurrentLineStartTime = lTime;
    CurrentLineOverheads = 0;
    DeadTime = 0;
    session_.CodeLineValue(ID).Hits += 1;
  }

  void ProcedureEntered(std::int32_t ID, double lTime) {
    if (StackDepth > 0) {
      StackFrame& top = Stack(StackDepth);
      // One probe, whatever OverheadsNumber says.
      if (!IsLineProbed(top.ProcID)) top.TotalTime += lTime - top.EntryTime - TraceOverhead;
      AddFlowHit(ws_, cs_, top.ProcID, ID, 1);
    }
    if (session_.FirstProc == 0) session_.FirstProc = ID;
    session_.LastProc = ID;
    if (StackDepth == kMaxStackDepth) ThrowTooDeep(file_, place_);
    StackDepth += 1;
    if (StackDepth > MaxDepth) {
      MaxDepth = StackDepth;
      Stack.ReDimPreserve(MaxDepth);
    }
    StackFrame& frame = Stack(StackDepth);
    frame.TotalTime = 0;
    frame.EntryTime = lTime;
    frame.ProcID = ID;
    frame.OverheadsNumber = 0;  // ChildLine keeps what the slot held
    session_.ProcedureValue(ID).Hits += 1;
    DeadTime = 0;
  }

  void ProcedureLeft(double lTime) {
    if (StackDepth > 0) {
      CloseTopFrame(lTime, false);
      StackDepth -= 1;
    }
    if (StackDepth > 0) {
      StackFrame& top = Stack(StackDepth);
      top.EntryTime = lTime;
      top.OverheadsNumber = 0;
      session_.LastProc = top.ProcID;
    }
    DeadTime = 0;
  }

  void BlockClosed(double lTime, bool lastBlock) {
    if (lastBlock) {
      // The run ended. Only the innermost frame gets its last stretch; it
      // stays on the stack.
      if (StackDepth > 0) CloseTopFrame(lTime, true);
    } else {
      DeadTime = lTime;
    }
  }

  // The floor reaches the caller-callee pairs but not the procedure sums.
  void CloseTopFrame(double lTime, bool atRunEnd) {
    StackFrame& F = Stack(StackDepth);
    const bool lineProbed = IsLineProbed(F.ProcID);
    F.TotalTime = lTime - F.EntryTime + F.TotalTime - TraceOverhead * F.OverheadsNumber;
    if (!lineProbed) {
      session_.ProcedureValue(F.ProcID).TotalTime += F.TotalTime;
      for (std::int32_t i = 1; i <= StackDepth - 1; ++i) {
        session_.ProcedureValue(Stack(i).ProcID).ChildTotalTime += F.TotalTime;
      }
    }
    if (!atRunEnd || !lineProbed) {
      const double floor = F.OverheadsNumber * kMinimumTimePerProbe;
      if (floor > F.TotalTime) F.TotalTime = floor;
    }
    if (!lineProbed) {
      for (std::int32_t i = 1; i <= StackDepth - 1; ++i) {
        AddFlowTime(ws_, cs_, Stack(i).ProcID, Stack(i + 1).ProcID, F.TotalTime);
      }
    }
  }

  Workspace& ws_;
  std::int32_t cs_;
  Session& session_;
  const Project& project_;
  const double TraceOverhead;
  const std::string file_;

  std::int32_t MaxDepth = 50;
  RecordPlace place_;  // the record being replayed, for messages
  Array1<StackFrame> Stack;
  std::int32_t StackDepth = 0;
  std::int32_t CurrentLine = 0;
  double CurrentLineStartTime = 0;
  std::int64_t CurrentLineOverheads = 0;
  double DeadTime = 0;
  double timeToAdd = 0;
};

}  // namespace

std::unique_ptr<LogReplay> MakeLiteralReplay(const ReplaySetup& setup) {
  return std::make_unique<LiteralReplay>(setup);
}

}  // namespace zol
