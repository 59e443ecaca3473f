#pragma once

// Hand-made stores and sessions for the tests of the live run: a clock that
// gives the stamps it is told, and a workspace with one small project whose
// sessions are ready for the walk.

#include <cstdint>
#include <deque>
#include <initializer_list>
#include <string>

#include "live/event_store.h"
#include "session/workspace.h"

namespace zol::testing {

// Hands out the queued stamps, then counts on by `step` from the last one.
class ScriptedClock : public LiveClock {
 public:
  explicit ScriptedClock(std::int64_t start = 1000, std::int64_t step = 10)
      : next_(start), step_(step) {}
  void Queue(std::initializer_list<std::int64_t> stamps) { queued_.insert(queued_.end(), stamps); }
  std::int64_t Counter() override {
    if (!queued_.empty()) {
      next_ = queued_.front();
      queued_.pop_front();
    }
    const std::int64_t now = next_;
    next_ += step_;
    return now;
  }
  std::int64_t Frequency() override { return 1'000'000'000; }

 private:
  std::deque<std::int64_t> queued_;
  std::int64_t next_;
  std::int64_t step_;
};

inline Pds MakePds(std::int32_t profilerID, const std::string& title, const std::string& vbp = "",
                   const std::string& vbg = "", const std::string& ini = "") {
  Pds pds;
  pds.ProfilerID = profilerID;
  SetPdsText(pds.Title, title);
  SetPdsText(pds.Vbp, vbp);
  SetPdsText(pds.Vbg, vbg);
  SetPdsText(pds.IniFile, ini);
  return pds;
}

inline LiveMessage Msg(LiveMsg code, std::int32_t wParam, std::int32_t lParam) {
  LiveMessage m;
  m.Msg = static_cast<std::uint32_t>(code);
  m.wParam = wParam;
  m.lParam = lParam;
  return m;
}

inline LiveMessage RegisterMsg(const Pds& pds) {
  LiveMessage m = Msg(LiveMsg::Register, 4242, 0);
  m.pds = pds;
  return m;
}

inline ProfileEvent Ev(std::int16_t thread, std::uint8_t action, std::int32_t origin,
                       std::int64_t time) {
  return {thread, action, origin, time};
}
inline ProfileEvent Enter(std::int16_t thread, std::int32_t proc, std::int64_t time) {
  return Ev(thread, kActionProcedureIn, proc, time);
}
inline ProfileEvent Leave(std::int16_t thread, std::int32_t proc, std::int64_t time) {
  return Ev(thread, kActionProcedureOut, proc, time);
}
inline ProfileEvent LineEv(std::int16_t thread, std::int32_t line, std::int64_t time) {
  return Ev(thread, kActionLine, line, time);
}

// A workspace with Project(1): procedures 1 to 3 (procedure 3 line-probed:
// IsCovered), lines 1 to 4; sessions 1 to `threads` of it, arrays sized.
// The store has `threads` threads, thread i with session i and probe cost
// `overhead`, and the events given.
struct WalkFixture {
  Workspace ws;
  ScriptedClock clock;
  EventStore store{clock, 3};

  explicit WalkFixture(std::int32_t threads, std::initializer_list<ProfileEvent> events,
                       std::int64_t overhead = 7) {
    ws.nProject = 1;
    ws.Project.ReDim(1);
    Project& p = ws.Project(1);
    p.ProjectFile = "/nowhere/Demo.vbp";
    p.Loaded = true;
    p.ProceduresNumber = 3;
    p.LinesNumber = 4;
    p.ModulesNumber = 1;
    p.Procedure.ReDim(3);
    p.Procedure(3).IsCovered = true;
    ws.nSession = threads;
    ws.Session.ReDim(threads);
    store.nThread = threads;
    store.Thread.ReDim(threads);
    for (std::int32_t i = 1; i <= threads; ++i) {
      Session& s = ws.Session(i);
      s.Project = 1;
      s.ProcedureValue.ReDim(3);
      s.CodeLineValue.ReDim(4);
      s.Loaded = true;
      store.Thread(i).SessionNr = i;
      store.Thread(i).Overhead = overhead;
    }
    store.secFreq = 1'000'000'000;
    store.ProfileEvent.ReDim(static_cast<int>(events.size()) + 5);  // a zero tail, as live
    std::int32_t i = 0;
    for (const ProfileEvent& e : events) store.ProfileEvent(++i) = e;
    store.ProfileIndex = i;
  }

  CodeLineValue& Line(std::int32_t cs, std::int32_t id) { return ws.Session(cs).CodeLineValue(id); }
  ProcedureValue& Proc(std::int32_t cs, std::int32_t id) {
    return ws.Session(cs).ProcedureValue(id);
  }
};

// A span of `raw` counter ticks as the walk adds it to a session.
inline double Units(std::int64_t raw) {
  return static_cast<double>(raw) / 10000.0;
}

}  // namespace zol::testing
