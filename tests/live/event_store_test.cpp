#include <gtest/gtest.h>

#include "live/event_store.h"
#include "live/live_fixture.h"

namespace zol {
namespace {

using testing::MakePds;
using testing::Msg;
using testing::RegisterMsg;
using testing::ScriptedClock;

TEST(PdsImage, FieldsSitAtTheirOffsetsAndTextsEndAtTheirNul) {
  Pds pds = MakePds(3, "Main", "C:\\Demo\\Orders.vbp", "", "C:\\Demo\\zolOptions_Orders.ini");
  pds.ThreadID = 0x01020304;
  pds.ProceduresNumber = 77;
  const PdsImage image = EncodePds(pds);
  EXPECT_EQ(image[0], 0x04);
  EXPECT_EQ(image[3], 0x01);
  EXPECT_EQ(image[8], 3);
  EXPECT_EQ(image[12], 'M');
  EXPECT_EQ(image[13], 0);
  EXPECT_EQ(image[268], 'C');
  EXPECT_EQ(image[3356], 77);
  EXPECT_EQ(DecodePds(image.data()), pds);
  EXPECT_EQ(GetStringAPI(pds.Title), "Main");
  EXPECT_EQ(GetStringAPI(pds.Vbg), "");

  // A title of 127 characters fits with its NUL; 128 don't.
  EXPECT_NO_THROW(SetPdsText(pds.Title, std::string(127, 'x')));
  EXPECT_THROW(SetPdsText(pds.Title, std::string(128, 'x')), std::length_error);
  // A field with no NUL at all is refused, not read past its end.
  pds.Title.fill('a');
  EXPECT_THROW(GetStringAPI(pds.Title), PdsTextError);
  // Characters beyond the ASCII range come back in the single-byte code page.
  SetPdsText(pds.Title, "caf\xE9 \x80");
  EXPECT_EQ(pds.Title[10], 0xAC);  // the euro sign, U+20AC
  EXPECT_EQ(pds.Title[11], 0x20);
  EXPECT_EQ(GetStringAPI(pds.Title), "caf\xE9 \x80");
}

TEST(EventStore, TheFirstEventGrowsTheStoreBehindAnOverheadPair) {
  ScriptedClock clock(500, 1);
  EventStore store(clock, 0);
  store.nThread = 1;
  store.Thread.ReDim(1);
  EXPECT_EQ(store.Handle(Msg(LiveMsg::Line, 1, 42)), 0);
  ASSERT_EQ(store.ProfileIndex, 3);
  EXPECT_EQ(store.ProfileEvent.UBound(), 1000);
  EXPECT_EQ(store.ProfileEvent(1), (ProfileEvent{0, kActionOverheadStart, 0, 500}));
  EXPECT_EQ(store.ProfileEvent(2), (ProfileEvent{0, kActionOverheadEnd, 0, 501}));
  EXPECT_EQ(store.ProfileEvent(3), (ProfileEvent{1, kActionLine, 42, 502}));
  EXPECT_EQ(store.ProfileEvent(4).Time, 0);

  // Procedure messages store their action as Msg - 0x403 + 1; index 1001
  // grows the store again, with its pair in front.
  for (int i = 4; i <= 1000; ++i) store.Handle(Msg(LiveMsg::ProcedureIn, 1, i));
  EXPECT_EQ(store.ProfileEvent(1000).Action, kActionProcedureIn);
  store.Handle(Msg(LiveMsg::ProcedureOut, 1, 7));
  EXPECT_EQ(store.ProfileIndex, 1003);
  EXPECT_EQ(store.ProfileEvent.UBound(), 2000);
  EXPECT_EQ(store.ProfileEvent(1001).Action, kActionOverheadStart);
  EXPECT_EQ(store.ProfileEvent(1002).Action, kActionOverheadEnd);
  EXPECT_EQ(store.ProfileEvent(1003), (ProfileEvent{1, kActionProcedureOut, 7, 500 + 1002}));
}

TEST(EventStore, RegistrationAddsAThreadARowAndAPair) {
  ScriptedClock clock(100, 5);
  EventStore store(clock, 0);
  EXPECT_EQ(store.Handle(RegisterMsg(MakePds(2, "Worker"))), kRegisteredAnswer);
  EXPECT_EQ(store.nThread, 2);
  EXPECT_TRUE(store.Thread(2).Active);
  EXPECT_FALSE(store.Thread(1).Active);
  EXPECT_EQ(store.status, "Data acquisition (0 events)...");
  EXPECT_TRUE(store.windowShown);
  EXPECT_FALSE(store.autoLoadEnabled);
  EXPECT_EQ(store.secFreq, 1'000'000'000);
  // The pair spans the handler: from the read at its start to the last read.
  ASSERT_EQ(store.ProfileIndex, 2);
  EXPECT_EQ(store.ProfileEvent(1), (ProfileEvent{0, kActionOverheadStart, 0, 100}));
  EXPECT_EQ(store.ProfileEvent(2).Action, kActionOverheadEnd);
  ASSERT_EQ(store.rows.size(), 1u);
  EXPECT_EQ(store.rows[0].Key, "K2");
  EXPECT_EQ(store.rows[0].Text, "2-Worker");

  // Out of number order: the row would repeat key "K2", and is left out.
  EXPECT_EQ(store.Handle(RegisterMsg(MakePds(1, "Main"))), kRegisteredAnswer);
  EXPECT_TRUE(store.Thread(1).Active);
  EXPECT_EQ(GetStringAPI(store.Thread(1).Pds.Title), "Main");
  EXPECT_EQ(store.rows.size(), 1u);

  // Not positive: ignored, but answered and shown all the same.
  EXPECT_EQ(store.Handle(RegisterMsg(MakePds(0, "Nobody"))), kRegisteredAnswer);
  EXPECT_EQ(store.nThread, 2);
  EXPECT_EQ(store.ProfileIndex, 6);
}

TEST(EventStore, CalibrationTakesTheRoundedMedianOfTheGaps) {
  struct Case {
    std::vector<std::int64_t> stamps;
    std::int64_t overhead;
  };
  // n = 2: one gap. n = 5: gaps 40 10 30 20, sorted 10 20 30 40; 5 / 2 = 2.5
  // rounds to 2. n = 7: gaps 6 1 5 2 4 3, sorted; 3.5 rounds to 4.
  const std::vector<Case> cases = {
      {{100, 117}, 17},
      {{100, 140, 150, 180, 200}, 20},
      {{100, 106, 107, 112, 114, 118, 121}, 4},
  };
  for (const Case& c : cases) {
    ScriptedClock clock;
    EventStore store(clock, 0);
    store.Handle(RegisterMsg(MakePds(1, "T")));
    const auto n = static_cast<std::int32_t>(c.stamps.size());
    store.Handle(Msg(LiveMsg::CalibrationStart, 0, n));
    for (std::int64_t stamp : c.stamps) {
      clock.Queue({stamp});
      store.Handle(Msg(LiveMsg::CalibrationSample, 1, 0));
    }
    const std::int32_t before = store.ProfileIndex;
    store.Handle(Msg(LiveMsg::CalibrationEnd, 1, n));
    EXPECT_EQ(store.Thread(1).Overhead, c.overhead) << "n = " << n;
    // Samples go to the calibration array only; the end adds one pair.
    EXPECT_EQ(store.ProfileIndex, before + 2);
  }
  std::vector<std::int64_t> v = {5, 3, 9, 3, 1};
  Array1<std::int64_t> values;
  values.ReDim(5);
  for (int i = 1; i <= 5; ++i) values(i) = v[static_cast<std::size_t>(i - 1)];
  SortArray(values);
  EXPECT_EQ(values.Raw(), (std::vector<std::int64_t>{1, 3, 3, 5, 9}));
}

TEST(EventStore, MessagesItCantTakeLeaveItUnchanged) {
  ScriptedClock clock;
  EventStore store(clock, 0);
  // Before any registration, every thread ID is beyond the run.
  EXPECT_THROW(store.Handle(Msg(LiveMsg::ThreadEnd, 1, 0)), LiveInputError);
  EXPECT_THROW(store.Handle(Msg(LiveMsg::Line, 1, 1)), LiveInputError);
  store.Handle(RegisterMsg(MakePds(1, "T")));
  const std::int32_t index = store.ProfileIndex;
  for (const LiveMessage& m :
       {Msg(LiveMsg::Line, 2, 1), Msg(LiveMsg::ProcedureIn, 0, 1),
        Msg(LiveMsg::ProcedureOut, -5, 1), Msg(LiveMsg::ThreadEnd, 40000, 0),
        Msg(static_cast<LiveMsg>(0x409), 1, 1), Msg(static_cast<LiveMsg>(0), 0, 0),
        Msg(LiveMsg::CalibrationSample, 1, 0), Msg(LiveMsg::CalibrationStart, 0, -1),
        Msg(LiveMsg::CalibrationEnd, 1, 1)}) {
    EXPECT_THROW(store.Handle(m), LiveInputError) << std::hex << m.Msg;
  }
  store.Handle(Msg(LiveMsg::CalibrationStart, 0, 3));
  store.Handle(Msg(LiveMsg::CalibrationSample, 1, 0));
  // More samples than announced, or an end that counts beyond them.
  EXPECT_THROW(store.Handle(Msg(LiveMsg::CalibrationEnd, 1, 4)), LiveInputError);
  store.Handle(Msg(LiveMsg::CalibrationSample, 1, 0));
  store.Handle(Msg(LiveMsg::CalibrationSample, 1, 0));
  EXPECT_THROW(store.Handle(Msg(LiveMsg::CalibrationSample, 1, 0)), LiveInputError);
  EXPECT_EQ(store.ProfileIndex, index);
  EXPECT_EQ(store.IndexOverhead, 3);
  // A registration beyond what an event can carry.
  EXPECT_THROW(store.Handle(RegisterMsg(MakePds(kMaxProfilerID + 1, "Big"))), LiveInputError);
  // A registration whose title has no end: refused as bad input, not a fault
  // that would end the receiver.
  Pds endless = MakePds(2, "Endless");
  endless.Title.fill(0x41);
  EXPECT_THROW(store.Handle(RegisterMsg(endless)), LiveInputError);
  EXPECT_EQ(store.nThread, 1);
}

TEST(EventStore, TheLastThreadToEndMakesTheResultsDueWithoutAPair) {
  ScriptedClock clock;
  EventStore store(clock, 0);
  store.Handle(RegisterMsg(MakePds(1, "A")));
  store.Handle(RegisterMsg(MakePds(2, "B")));
  std::int32_t index = store.ProfileIndex;
  store.Handle(Msg(LiveMsg::ThreadEnd, 1, 0));
  EXPECT_EQ(store.ProfileIndex, index + 2);
  EXPECT_FALSE(store.rows[0].On);
  EXPECT_FALSE(store.resultsDue);
  // Said twice: a pair again, nothing else.
  store.Handle(Msg(LiveMsg::ThreadEnd, 1, 0));
  EXPECT_EQ(store.ProfileIndex, index + 4);
  index = store.ProfileIndex;
  store.Handle(Msg(LiveMsg::ThreadEnd, 2, 0));
  EXPECT_TRUE(store.resultsDue);
  EXPECT_EQ(store.ProfileIndex, index);
}

TEST(EventStore, TheTickFindsDeadThreadsAndRepaintsOnlyForNewEvents) {
  ScriptedClock clock;
  EventStore store(clock, 0);
  auto allAlive = [](std::int32_t) { return true; };
  store.Tick(allAlive);  // no run: nothing at all
  EXPECT_EQ(store.ProfileIndex, 0);

  store.Handle(RegisterMsg(MakePds(1, "A")));
  store.Handle(RegisterMsg(MakePds(2, "B")));
  store.Handle(Msg(LiveMsg::Line, 1, 3));
  store.statusChanged = false;
  store.Tick(allAlive);
  EXPECT_TRUE(store.statusChanged);
  EXPECT_EQ(store.status, "Data acquisition (5 events)...");
  EXPECT_EQ(store.ProfileIndex, 7);
  // An idle stretch: only the tick's own pair, the status stays.
  store.statusChanged = false;
  store.Tick(allAlive);
  EXPECT_FALSE(store.statusChanged);
  EXPECT_EQ(store.ProfileIndex, 9);

  // Both threads die unannounced on the same tick: the results are due once,
  // with no pair.
  store.Tick([](std::int32_t) { return false; });
  EXPECT_TRUE(store.resultsDue);
  EXPECT_FALSE(store.Thread(1).Active);
  EXPECT_FALSE(store.Thread(2).Active);
  EXPECT_FALSE(store.rows[1].On);
  EXPECT_EQ(store.ProfileIndex, 9);
}

}  // namespace
}  // namespace zol
