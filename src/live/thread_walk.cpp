// The walk over the events of all threads in arrival order. Time between two
// consecutive events belongs to the last line announced, whichever thread
// sends next, and every open frame of every thread is kept in step.
//
// Every time value here is a raw counter value (a fixed-point number with four
// decimals): stamps, entry times, frame totals, spans. With counters near
// 10^15 a double would drop nanoseconds from a stamp, and the sums would
// drift from a replay of the same store; so a double is made only where a
// span is added into a session's field or compared with the floor.

#include <algorithm>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "base/vb_format.h"
#include "live/compute_thread.h"
#include "profile/log_reader.h"
#include "profile/log_replay.h"

namespace zol {

namespace {

// Counter arithmetic wraps instead of overflowing: a recording may hold any
// values, and a damaged one must give wrong numbers, never undefined
// behaviour. Live counters are far from the limits.
std::int64_t Plus(std::int64_t a, std::int64_t b) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}
std::int64_t Minus(std::int64_t a, std::int64_t b) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}
std::int64_t Times(std::int64_t a, std::int64_t b) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

// Spans are added to sessions in the unit of the fixed-point values.
double Units(std::int64_t raw) {
  return static_cast<double>(raw) / 10000.0;
}

// A closed frame's time is at least this much per probe counted against it;
// the floor is in seconds although the walk is in counter units, on purpose.
constexpr double kFloorPerProbe = 5e-08;

constexpr std::size_t kMaxFaultTexts = 20;

struct Frame {
  std::int64_t EntryTime = 0;
  std::int64_t TotalTime = 0;
  std::int32_t ProcID = 0;
  std::int32_t OverheadsNumber = 0;
  // The line of this frame that made the latest call; never cleared, also
  // not when the slot is reused by a later frame.
  std::int32_t ChildLine = 0;
};

class Walk {
 public:
  Walk(Workspace& ws, const EventStore& store) : ws_(ws), store_(store) {
    StackDepth.assign(static_cast<std::size_t>(store.nThread) + 1, 0);
    Stack.assign(static_cast<std::size_t>(store.nThread) + 1,
                 std::vector<Frame>(static_cast<std::size_t>(kFirstDepth) + 1));
  }

  std::vector<std::string> Run(const std::function<void(const std::string&)>& status) {
    const std::int32_t upper = store_.ProfileEvent.UBound();
    for (recordNumber = 1; recordNumber <= upper; ++recordNumber) {
      if (recordNumber % 10000 == 0 && status) {
        status("Analyzing timings " + Format(static_cast<double>(recordNumber) / upper, "0%") +
               " (" + std::to_string(upper) + " events)");
      }
      const ProfileEvent& e = store_.ProfileEvent(recordNumber);
      if (e.Time == 0) break;
      Guard([&] { Step(e); });
    }
    if (faultCount_ > static_cast<std::int64_t>(faults_.size())) {
      faults_.push_back("and " +
                        std::to_string(faultCount_ - static_cast<std::int64_t>(faults_.size())) +
                        " more");
    }
    return faults_;
  }

 private:
  // A statement that addresses what isn't there (a thread without session,
  // an ID beyond its project) is reported and passed over; the walk goes on
  // with the next statement.
  template <typename F>
  void Guard(F&& statement) {
    try {
      statement();
    } catch (const BoundsError& ex) {
      ++faultCount_;
      if (faults_.size() < kMaxFaultTexts) {
        faults_.push_back("event " + std::to_string(recordNumber) + ": " + ex.what());
      }
    }
  }

  Frame& Top(std::int32_t thread) {
    return Stack[static_cast<std::size_t>(thread)][static_cast<std::size_t>(Depth(thread))];
  }
  std::int32_t& Depth(std::int32_t thread) {
    if (thread < 1 || thread > store_.nThread) {
      throw BoundsError("thread " + std::to_string(thread) + " of " +
                        std::to_string(store_.nThread));
    }
    return StackDepth[static_cast<std::size_t>(thread)];
  }
  Session& SessionOf(std::int32_t thread) { return ws_.Session(store_.Thread(thread).SessionNr); }
  bool IsCovered(const Session& s, std::int32_t procID) {
    return ws_.Project(s.Project).Procedure(procID).IsCovered;
  }
  std::int64_t OverheadOf(std::int32_t thread) { return store_.Thread(thread).Overhead; }

  void Step(const ProfileEvent& e) {
    const std::int64_t lTime = e.Time;
    const std::int32_t lAction = e.Action;
    const std::int32_t lProcID = e.Origin;
    const std::int32_t lLineID = e.Origin;
    const std::int32_t lThreadID = e.Thread;
    if (lThreadID != 0) cs = store_.Thread(lThreadID).SessionNr;

    CloseRunningLine(lTime);

    switch (lAction) {
      case kActionLine:
        Line(lThreadID, lLineID, lTime);
        break;
      case kActionProcedureIn:
        Enter(lThreadID, lProcID, lTime);
        break;
      case kActionProcedureOut:
        Leave(lThreadID, lTime);
        break;
      case kActionOverheadStart:
        Overhead(lTime);
        break;
      default:
        break;
    }
    // Every event, of whatever kind and thread, counts one probe against the
    // top frame of the current thread.
    if (Depth(CurrentThread) > 0) Top(CurrentThread).OverheadsNumber += 1;
  }

  void CloseRunningLine(std::int64_t lTime) {
    if (CurrentLine <= 0) return;
    const std::int64_t timeToAdd =
        Minus(Minus(lTime, CurrentLineStartTime), OverheadOf(CurrentThread));
    Guard([&] {
      ws_.Session(CurrentLineSession).CodeLineValue(CurrentLine).TotalTime += Units(timeToAdd);
    });
    CurrentLine = 0;
    // A line that waits in a call on one thread is charged the time any thread
    // spends meanwhile; the frame that ran the line itself is left out.
    for (std::int32_t i = 1; i <= store_.nThread; ++i) {
      for (std::int32_t j = 1; j <= Depth(i); ++j) {
        if (i == CurrentThread && j == Depth(i)) continue;
        const std::int32_t childLine =
            Stack[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)].ChildLine;
        if (childLine != 0) {
          Guard([&] { SessionOf(i).CodeLineValue(childLine).ChildTotalTime += Units(timeToAdd); });
        }
      }
    }
  }

  void Line(std::int32_t thread, std::int32_t lLineID, std::int64_t lTime) {
    if (Depth(thread) > 0) Top(thread).ChildLine = lLineID;
    CurrentLine = lLineID;
    CurrentLineStartTime = lTime;
    CurrentLineSession = cs;
    Guard([&] { ws_.Session(cs).CodeLineValue(lLineID).Hits += 1; });
  }

  void Fold(Frame& top, std::int32_t thread, std::int64_t lTime) {
    top.TotalTime = Minus(Plus(Minus(lTime, top.EntryTime), top.TotalTime),
                          Times(top.OverheadsNumber, OverheadOf(thread)));
  }

  void Enter(std::int32_t thread, std::int32_t lProcID, std::int64_t lTime) {
    // A sender that only enters would grow the stack without end; no real
    // thread nests this deep, so the entry is reported and passed over.
    if (Depth(thread) >= kMaxStackDepth) {
      throw BoundsError("thread " + std::to_string(thread) + " enters a procedure more than " +
                        std::to_string(kMaxStackDepth) + " calls deep");
    }
    Session& s = ws_.Session(cs);
    if (Depth(thread) != 0) {
      Frame& top = Top(thread);
      Guard([&] {
        if (!IsCovered(s, top.ProcID)) Fold(top, thread, lTime);
      });
      AddFlowHit(ws_, cs, top.ProcID, lProcID, 1);
    }
    if (s.FirstProc == 0) s.FirstProc = lProcID;
    s.LastProc = lProcID;
    std::int32_t& depth = Depth(thread);
    depth += 1;
    // Each thread's stack grows on its own, so memory follows the depth each
    // thread reached rather than the deepest one times the thread count. New
    // slots start empty, as they would in a stack grown for another thread.
    auto& stack = Stack[static_cast<std::size_t>(thread)];
    if (static_cast<std::size_t>(depth) >= stack.size()) {
      stack.resize(std::max(stack.size() * 2, static_cast<std::size_t>(depth) + 1));
    }
    Frame& frame = Top(thread);
    frame.TotalTime = 0;
    frame.EntryTime = lTime;
    frame.ProcID = lProcID;
    frame.OverheadsNumber = 0;
    CurrentThread = thread;
    Guard([&] { s.ProcedureValue(lProcID).Hits += 1; });
  }

  void Leave(std::int32_t thread, std::int64_t lTime) {
    Session& s = ws_.Session(cs);
    if (Depth(thread) > 0) {
      Frame& top = Top(thread);
      Fold(top, thread, lTime);
      Guard([&] {
        if (IsCovered(s, top.ProcID)) return;
        Guard([&] { s.ProcedureValue(top.ProcID).TotalTime += Units(top.TotalTime); });
        for (std::int32_t i = 1; i <= store_.nThread; ++i) {
          for (std::int32_t j = 1; j <= Depth(i); ++j) {
            const Frame& f = Stack[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
            Guard([&] {
              SessionOf(i).ProcedureValue(f.ProcID).ChildTotalTime += Units(top.TotalTime);
            });
          }
        }
      });
      // The floor comes after the sums above and serves only the pairs.
      const double flowTime = Max(Units(top.TotalTime), top.OverheadsNumber * kFloorPerProbe);
      for (std::int32_t i = 1; i <= store_.nThread; ++i) {
        const auto& stack = Stack[static_cast<std::size_t>(i)];
        for (std::int32_t j = 1; j <= Depth(i) - 1; ++j) {
          Guard([&] {
            AddFlowTime(ws_, store_.Thread(i).SessionNr, stack[static_cast<std::size_t>(j)].ProcID,
                        stack[static_cast<std::size_t>(j) + 1].ProcID, flowTime);
          });
        }
      }
      Depth(thread) -= 1;
    }
    if (Depth(thread) > 0) {
      Frame& top = Top(thread);
      top.EntryTime = lTime;
      top.OverheadsNumber = 0;
      s.LastProc = top.ProcID;
    }
    CurrentThread = thread;
  }

  void Overhead(std::int64_t lTime) {
    const std::int64_t timeToAdd = Minus(
        Plus(store_.QueryPerformanceCounterOverhead, store_.ProfileEvent(recordNumber + 1).Time),
        lTime);
    recordNumber += 1;  // the end of the pair is not walked
    for (std::int32_t i = 1; i <= store_.nThread; ++i) {
      const Session& s = SessionOf(i);
      for (std::int32_t j = 1; j <= Depth(i); ++j) {
        Frame& f = Stack[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
        Guard([&] {
          if (!IsCovered(s, f.ProcID)) f.EntryTime = Plus(f.EntryTime, timeToAdd);
        });
      }
    }
  }

  Workspace& ws_;
  const EventStore& store_;
  std::int32_t cs = 0;
  std::int32_t recordNumber = 0;
  std::int32_t CurrentLine = 0;
  std::int32_t CurrentLineSession = 0;
  std::int64_t CurrentLineStartTime = 0;
  std::int32_t CurrentThread = 1;
  static constexpr std::int32_t kFirstDepth = 2;
  std::vector<std::int32_t> StackDepth;   // by thread, from 1
  std::vector<std::vector<Frame>> Stack;  // by thread, then depth, from 1
  std::vector<std::string> faults_;
  std::int64_t faultCount_ = 0;
};

}  // namespace

std::vector<std::string> WalkEvents(Workspace& ws, const EventStore& store,
                                    const std::function<void(const std::string&)>& status) {
  if (store.nThread == 0) return {};
  return Walk(ws, store).Run(status);
}

void ConvertThreadTimesToSeconds(Workspace& ws, const EventStore& store) {
  const double secFreq = Units(store.secFreq);
  for (std::int32_t i = 1; i <= store.nThread; ++i) {
    Session& s = ws.Session(store.Thread(i).SessionNr);
    const Project& project = ws.Project(s.Project);
    for (std::int32_t j = 1; j <= project.ProceduresNumber && j <= s.ProcedureValue.UBound(); ++j) {
      ProcedureValue& p = s.ProcedureValue(j);
      p.TotalTime /= secFreq;
      p.ChildTotalTime /= secFreq;
    }
    for (std::int32_t j = 1; j <= project.LinesNumber && j <= s.CodeLineValue.UBound(); ++j) {
      CodeLineValue& v = s.CodeLineValue(j);
      v.ChildTotalTime += v.TotalTime;
      v.TotalTime /= secFreq;
      v.ChildTotalTime /= secFreq;
    }
    for (std::int32_t j = 1; j <= s.nFlowPair; ++j) s.FlowPair(j).ChildTime /= secFreq;
  }
}

}  // namespace zol
