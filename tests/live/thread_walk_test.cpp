// The walk on hand-made stores. Thread i has session i; probe cost 7 ticks,
// counter cost 3; procedure 3 is line-probed. Expected values are derived by
// hand in counter ticks and read as the walk adds them (ticks / 10000).

#include <gtest/gtest.h>

#include "live/compute_thread.h"
#include "live/live_fixture.h"
#include "profile/log_replay.h"

namespace zol {
namespace {

using testing::Enter;
using testing::Ev;
using testing::Leave;
using testing::LineEv;
using testing::Units;
using testing::WalkFixture;

ProfileEvent PairStart(std::int64_t t) {
  return Ev(0, kActionOverheadStart, 0, t);
}
ProfileEvent PairEnd(std::int64_t t) {
  return Ev(0, kActionOverheadEnd, 0, t);
}

void ExpectAllZero(WalkFixture& f, std::int32_t cs) {
  for (std::int32_t i = 1; i <= 4; ++i) EXPECT_EQ(f.Line(cs, i), CodeLineValue{}) << "line " << i;
  for (std::int32_t i = 1; i <= 3; ++i) EXPECT_EQ(f.Proc(cs, i), ProcedureValue{}) << "proc " << i;
  EXPECT_EQ(f.ws.Session(cs).nFlowPair, 0);
}

TEST(ThreadWalk, OverheadPairsAloneGiveZeroValues) {
  WalkFixture f(2, {PairStart(100), PairEnd(200), PairStart(300), PairEnd(400), PairStart(500),
                    PairEnd(650)});
  EXPECT_TRUE(WalkEvents(f.ws, f.store).empty());
  ConvertThreadTimesToSeconds(f.ws, f.store);
  ExpectAllZero(f, 1);
  ExpectAllZero(f, 2);
}

TEST(ThreadWalk, AnExitOnAnEmptyStackOnlyMovesTheCurrentThread) {
  // Thread 2 enters procedure 1 (one probe counted); thread 1 exits on an
  // empty stack, so the current thread becomes 1 and thread 2's frame counts
  // no further probes: (1500 - 1000) - 1 x 10 = 490. Without the move it
  // would count 2 probes and give 480.
  WalkFixture f(2, {Enter(2, 1, 1000), Leave(1, 2, 1100), Leave(2, 1, 1500)});
  f.store.Thread(2).Overhead = 10;
  EXPECT_TRUE(WalkEvents(f.ws, f.store).empty());
  EXPECT_DOUBLE_EQ(f.Proc(2, 1).TotalTime, Units(490));
  EXPECT_DOUBLE_EQ(f.Proc(2, 1).ChildTotalTime, Units(490));
  EXPECT_EQ(f.Proc(2, 1).Hits, 1);
  ExpectAllZero(f, 1);
}

TEST(ThreadWalk, ALineOnAnEmptyStackCountsAndOpensASpanWithNoChildLine) {
  WalkFixture f(1, {LineEv(1, 1, 100), LineEv(1, 2, 250), LineEv(1, 2, 300)});
  WalkEvents(f.ws, f.store);
  EXPECT_EQ(f.Line(1, 1).Hits, 1);
  EXPECT_DOUBLE_EQ(f.Line(1, 1).TotalTime, Units(250 - 100 - 7));
  EXPECT_EQ(f.Line(1, 2).Hits, 2);
  EXPECT_DOUBLE_EQ(f.Line(1, 2).TotalTime, Units(300 - 250 - 7));
  for (std::int32_t i = 1; i <= 4; ++i) EXPECT_EQ(f.Line(1, i).ChildTotalTime, 0);
}

TEST(ThreadWalk, APairBetweenTwoLinesEndsTheFirstAndShiftsOpenFrames) {
  // Procedure 1 (not line-probed) runs line 1, a pair from 150 to 190, then
  // line 2, and exits at 500.
  //   line 1: 150 - 100 - 7 = 43; 190..300 belongs to no line;
  //   the pair moves the frame's entry by 3 + 190 - 150 = 43, to 93;
  //   line 2: 500 - 300 - 7 = 193;
  //   procedure 1: probes counted: its entry, line 1, the pair, line 2 = 4;
  //   500 - 93 - 4 x 7 = 379.
  WalkFixture f(1, {Enter(1, 1, 50), LineEv(1, 1, 100), PairStart(150), PairEnd(190),
                    LineEv(1, 2, 300), Leave(1, 1, 500)});
  EXPECT_TRUE(WalkEvents(f.ws, f.store).empty());
  EXPECT_DOUBLE_EQ(f.Line(1, 1).TotalTime, Units(43));
  EXPECT_DOUBLE_EQ(f.Line(1, 2).TotalTime, Units(193));
  EXPECT_DOUBLE_EQ(f.Proc(1, 1).TotalTime, Units(379));
  EXPECT_DOUBLE_EQ(f.Proc(1, 1).ChildTotalTime, Units(379));
  // The frame ran the lines itself: no child time for them.
  EXPECT_EQ(f.Line(1, 1).ChildTotalTime, 0);
  EXPECT_EQ(f.ws.Session(1).FirstProc, 1);
}

TEST(ThreadWalk, AProcedureThatNeverExitsLeavesItsTimeOut) {
  WalkFixture f(1, {Enter(1, 1, 100), LineEv(1, 1, 200), LineEv(1, 1, 300)});
  WalkEvents(f.ws, f.store);
  EXPECT_EQ(f.Proc(1, 1).Hits, 1);
  EXPECT_EQ(f.Proc(1, 1).TotalTime, 0);
  EXPECT_EQ(f.Proc(1, 1).ChildTotalTime, 0);
  EXPECT_EQ(f.Line(1, 1).Hits, 2);
  EXPECT_DOUBLE_EQ(f.Line(1, 1).TotalTime, Units(93));
}

TEST(ThreadWalk, ASpanShorterThanTheProbeCostIsNegativeAndOnlyPairsAreFloored) {
  // Line 1 for 3 ticks: 3 - 7 = -4. Procedure 2, called by 1, lasts 3 ticks
  // with one probe: 3 - 7 = -4 into its time and every open frame's child
  // time; the pair (1, 2) takes the floor of 1 x 5e-08 instead.
  WalkFixture f(1, {LineEv(1, 1, 100), LineEv(1, 2, 103), Enter(1, 1, 200), Enter(1, 2, 205),
                    Leave(1, 2, 208)});
  WalkEvents(f.ws, f.store);
  EXPECT_DOUBLE_EQ(f.Line(1, 1).TotalTime, Units(-4));
  EXPECT_DOUBLE_EQ(f.Proc(1, 2).TotalTime, Units(-4));
  EXPECT_DOUBLE_EQ(f.Proc(1, 2).ChildTotalTime, Units(-4));
  EXPECT_DOUBLE_EQ(f.Proc(1, 1).ChildTotalTime, Units(-4));
  const Session& s = f.ws.Session(1);
  ASSERT_EQ(s.nFlowPair, 1);
  EXPECT_EQ(s.FlowPair(1).FromProc, 1);
  EXPECT_EQ(s.FlowPair(1).ToProc, 2);
  EXPECT_EQ(s.FlowPair(1).Hits, 1);
  EXPECT_DOUBLE_EQ(s.FlowPair(1).ChildTime, 5e-08);
  EXPECT_EQ(s.LastProc, 1);
}

TEST(ThreadWalk, LinesOfTwoThreadsWaitOnEachOther) {
  // Thread 1: procedure 1 runs line 1 and calls procedure 2. Thread 2:
  // procedure 1 runs line 2. Then thread 1 runs line 3 in procedure 2 and
  // thread 2 runs line 2 again. Spans are charged against the overhead of
  // the current thread (2 from its entry on: 10 ticks).
  //   line 1 (s1): 1020 - 1010 - 7 = 3
  //   line 2 (s2): 1100 - 1040 - 10 = 50, also child time of line 1 (s1),
  //                which waits in its call to procedure 2
  //   line 3 (s1): 1200 - 1100 - 10 = 90, also child time of line 1 and of
  //                line 3 (s1): the current thread is 2, so thread 1's top
  //                frame is not the one left out
  WalkFixture f(2, {Enter(1, 1, 1000), LineEv(1, 1, 1010), Enter(1, 2, 1020), Enter(2, 1, 1030),
                    LineEv(2, 2, 1040), LineEv(1, 3, 1100), LineEv(2, 2, 1200)});
  f.store.Thread(2).Overhead = 10;
  WalkEvents(f.ws, f.store);
  EXPECT_DOUBLE_EQ(f.Line(1, 1).TotalTime, Units(3));
  EXPECT_DOUBLE_EQ(f.Line(2, 2).TotalTime, Units(50));
  EXPECT_DOUBLE_EQ(f.Line(1, 3).TotalTime, Units(90));
  EXPECT_DOUBLE_EQ(f.Line(1, 1).ChildTotalTime, Units(50) + Units(90));
  EXPECT_DOUBLE_EQ(f.Line(1, 3).ChildTotalTime, Units(90));
  EXPECT_EQ(f.Line(2, 2).ChildTotalTime, 0);
  EXPECT_EQ(f.Line(2, 2).Hits, 2);
  ASSERT_EQ(f.ws.Session(1).nFlowPair, 1);
  EXPECT_EQ(f.ws.Session(2).nFlowPair, 0);

  // To seconds: a line's child time comes to include its own time, and all
  // is divided by the frequency (1e9 counts, 1e5 in the walk's unit).
  ConvertThreadTimesToSeconds(f.ws, f.store);
  EXPECT_DOUBLE_EQ(f.Line(1, 3).ChildTotalTime, (Units(90) + Units(90)) / 1e5);
  EXPECT_DOUBLE_EQ(f.Line(1, 3).TotalTime, Units(90) / 1e5);
}

TEST(ThreadWalk, SpansStayExactWithLargeCounters) {
  // With counts near 10^15 a double stamp would lose the last digits; the
  // spans here are whole ticks.
  const std::int64_t t0 = 999'999'999'999'937;
  WalkFixture f(1, {Enter(1, 1, t0), LineEv(1, 1, t0 + 13), PairStart(t0 + 20), PairEnd(t0 + 29),
                    LineEv(1, 2, t0 + 31), Leave(1, 1, t0 + 47)});
  WalkEvents(f.ws, f.store);
  EXPECT_EQ(f.Line(1, 1).TotalTime, Units(20 - 13 - 7));
  EXPECT_EQ(f.Line(1, 2).TotalTime, Units(47 - 31 - 7));
  // Entry moved by 3 + 9 to t0 + 12; 4 probes: 47 - 12 - 28 = 7.
  EXPECT_EQ(f.Proc(1, 1).TotalTime, Units(7));
}

TEST(ThreadWalk, ALineProbedProcedureGetsNoTimeOfItsOwn) {
  // Procedure 3 is line-probed: no fold, no time, no child sums, and the
  // pair doesn't move its entry; its caller's pair still gets the time.
  WalkFixture f(1, {Enter(1, 1, 100), Enter(1, 3, 110), PairStart(120), PairEnd(150),
                    Leave(1, 3, 170), Leave(1, 1, 200)});
  WalkEvents(f.ws, f.store);
  EXPECT_EQ(f.Proc(1, 3).TotalTime, 0);
  EXPECT_EQ(f.Proc(1, 3).ChildTotalTime, 0);
  EXPECT_EQ(f.Proc(1, 3).Hits, 1);
  // Procedure 3's frame: entry 110, 2 probes (entry, pair): 170 - 110 - 14 = 46.
  EXPECT_DOUBLE_EQ(f.ws.Session(1).FlowPair(1).ChildTime, Units(46));
  // Procedure 1: folded at the call: 110 - 100 - 1 x 7 = 3; entry moved by
  // 33 (to 133) while it waited; back at 170 with entry 170; at the exit
  // 200 - 170 + 3 - 1 x 7 = 26.
  EXPECT_DOUBLE_EQ(f.Proc(1, 1).TotalTime, Units(26));
}

TEST(ThreadWalk, EventsOfAThreadWithoutSessionAreReportedAndPassedOver) {
  WalkFixture f(2, {LineEv(2, 1, 100), LineEv(1, 1, 200), LineEv(1, 2, 300)});
  f.store.Thread(2).SessionNr = 0;  // its session could not be made
  // The hit of event 1 and the close of its line at event 2 address the
  // empty slot 0; each is passed over, and the walk goes on.
  const std::vector<std::string> faults = WalkEvents(f.ws, f.store);
  ASSERT_EQ(faults.size(), 2u);
  EXPECT_EQ(faults[0].rfind("event 1: ", 0), 0u) << faults[0];
  EXPECT_EQ(faults[1].rfind("event 2: ", 0), 0u) << faults[1];
  EXPECT_EQ(f.Line(1, 1).Hits, 1);
  EXPECT_DOUBLE_EQ(f.Line(1, 1).TotalTime, Units(93));
}

// A sender that enters without end can't make the walk grow without end: the
// entry beyond the deepest stack a run can build is reported and passed over,
// and the other thread's stack stays as small as its own calls.
TEST(ThreadWalk, AStackDeeperThanAnyRealRunIsReportedAndNotGrown) {
  WalkFixture f(2, {});
  const std::int32_t entries = kMaxStackDepth + 1;
  f.store.ProfileEvent.ReDim(entries + 2 + 5);
  for (std::int32_t i = 1; i <= entries; ++i) f.store.ProfileEvent(i) = Enter(1, 1, 100 + i);
  f.store.ProfileEvent(entries + 1) = Enter(2, 2, 100 + entries + 1);
  f.store.ProfileEvent(entries + 2) = Leave(2, 2, 100 + entries + 11);
  f.store.ProfileIndex = entries + 2;
  const std::vector<std::string> faults = WalkEvents(f.ws, f.store);
  ASSERT_EQ(faults.size(), 1u);
  EXPECT_EQ(faults[0], "event " + std::to_string(entries) +
                           ": thread 1 enters a procedure more than 100000 calls deep");
  EXPECT_EQ(f.Proc(1, 1).Hits, kMaxStackDepth);
  EXPECT_EQ(f.Proc(2, 2).Hits, 1);
  EXPECT_DOUBLE_EQ(f.Proc(2, 2).TotalTime, Units(10 - 7));
}

}  // namespace
}  // namespace zol
