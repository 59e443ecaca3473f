#include "live/event_store.h"

#include <algorithm>

#include "base/numbers.h"

namespace zol {

namespace {

constexpr std::int32_t kGrowthStep = 1000;

std::string MessageName(std::uint32_t msg) {
  static const char* hex = "0123456789ABCDEF";
  std::string text = "0x";
  bool started = false;
  for (int shift = 28; shift >= 0; shift -= 4) {
    const unsigned digit = (msg >> shift) & 0xF;
    if (digit != 0 || started || shift == 0) {
      text += hex[digit];
      started = true;
    }
  }
  return text;
}

}  // namespace

std::string AcquisitionStatus(std::int32_t events) {
  return "Data acquisition (" + std::to_string(events) + " events)...";
}

void SortArray(Array1<std::int64_t>& values) {
  for (int i = values.LBound(); i <= values.UBound(); ++i) {
    int lowest = i;
    for (int j = i + 1; j <= values.UBound(); ++j) {
      if (static_cast<double>(values(j)) < static_cast<double>(values(lowest))) lowest = j;
    }
    std::swap(values(i), values(lowest));
  }
}

EventStore::EventStore(LiveClock& clock, std::int64_t counterOverhead)
    : QueryPerformanceCounterOverhead(counterOverhead), clock_(clock) {}

void EventStore::Clear() {
  nThread = 0;
  Thread.Erase();
  ProfileIndex = 0;
  LastProfileIndex = 0;
  ProfileEvent.Erase();
  OverheadTimes.Erase();
  IndexOverhead = 0;
  rows.clear();
  resultsDue = false;
  windowShown = false;
  autoLoadEnabled = true;
}

void EventStore::SetStatus(std::string text) {
  status = std::move(text);
  statusChanged = true;
}

void EventStore::CheckThread(std::int32_t id, const char* what) const {
  if (id < 1 || id > nThread) {
    throw LiveInputError(std::string(what) + " names thread " + std::to_string(id) + ", but " +
                         (nThread == 0 ? std::string("no thread has registered")
                                       : "the run has threads 1 to " + std::to_string(nThread)));
  }
}

void EventStore::CheckMessage(const LiveMessage& m) const {
  switch (static_cast<LiveMsg>(m.Msg)) {
    case LiveMsg::Register:
      if (m.pds.ProfilerID > kMaxProfilerID) {
        throw LiveInputError("a registration with thread number " +
                             std::to_string(m.pds.ProfilerID) + " (at most " +
                             std::to_string(kMaxProfilerID) + ")");
      }
      // The row of the list shows the title: a title without its end is a
      // broken record, refused like any other bad message so that the sender
      // is told and the receiver goes on.
      try {
        GetStringAPI(m.pds.Title);
      } catch (const PdsTextError& e) {
        throw LiveInputError(e.what());
      }
      return;
    case LiveMsg::Line:
      return CheckThread(m.wParam, "a line message");
    case LiveMsg::ProcedureIn:
      return CheckThread(m.wParam, "a procedure entry");
    case LiveMsg::ProcedureOut:
      return CheckThread(m.wParam, "a procedure exit");
    case LiveMsg::CalibrationSample:
      if (IndexOverhead >= OverheadTimes.UBound()) {
        throw LiveInputError("a calibration sample beyond the " +
                             std::to_string(OverheadTimes.Count()) + " announced");
      }
      return;
    case LiveMsg::CalibrationStart:
      if (m.lParam < 0 || m.lParam > kMaxCalibrationSamples) {
        throw LiveInputError("a calibration of " + std::to_string(m.lParam) + " samples");
      }
      return;
    case LiveMsg::CalibrationEnd:
      CheckThread(m.wParam, "the end of a calibration");
      if (m.lParam < 2 || m.lParam > OverheadTimes.UBound()) {
        throw LiveInputError("the end of a calibration of " + std::to_string(m.lParam) +
                             " samples, with room for " + std::to_string(OverheadTimes.Count()) +
                             " (at least 2 are needed)");
      }
      return;
    case LiveMsg::ThreadEnd:
      return CheckThread(m.wParam, "the end of a thread");
    case LiveMsg::Tick:
      return;
  }
  throw LiveInputError("an unknown message " + MessageName(m.Msg));
}

std::int32_t EventStore::Handle(const LiveMessage& m) {
  CheckMessage(m);
  switch (static_cast<LiveMsg>(m.Msg)) {
    case LiveMsg::Register:
      Register(m);
      return kRegisteredAnswer;
    case LiveMsg::Line:
      AppendEvent(m.wParam, kActionLine, m.lParam);
      break;
    case LiveMsg::ProcedureIn:
    case LiveMsg::ProcedureOut:
      AppendEvent(m.wParam, static_cast<std::uint8_t>(m.Msg - 0x403 + 1), m.lParam);
      break;
    case LiveMsg::CalibrationStart:
      secTimeOverhead_ = clock_.Counter();
      OverheadTimes.ReDim(m.lParam);
      IndexOverhead = 0;
      break;
    case LiveMsg::CalibrationSample: {
      IndexOverhead += 1;
      zol::ProfileEvent& sample = OverheadTimes(IndexOverhead);
      sample.Thread = static_cast<std::int16_t>(m.wParam);
      sample.Action = kActionLine;
      sample.Origin = m.lParam;
      sample.Time = clock_.Counter();
      break;
    }
    case LiveMsg::CalibrationEnd:
      Calibrate(m.wParam, m.lParam);
      break;
    case LiveMsg::ThreadEnd:
      secTime_ = clock_.Counter();
      if (Thread(m.wParam).Active && EndThread(m.wParam)) {
        resultsDue = true;
        break;
      }
      AppendOverheadPair();
      break;
    case LiveMsg::Tick:
      Tick([](std::int32_t) { return true; });
      break;
  }
  return 0;
}

void EventStore::Register(const LiveMessage& m) {
  secTime_ = clock_.Counter();
  const std::int32_t id = m.pds.ProfilerID;
  if (id > 0) {
    if (id > nThread) {
      nThread = id;
      Thread.ReDimPreserve(nThread);
    }
    Thread(id).Pds = m.pds;
    Thread(id).Active = true;
  }
  secFreq = clock_.Frequency();
  SetStatus(AcquisitionStatus(ProfileIndex));
  windowShown = true;
  // The row is numbered by nThread, so a registration out of number order
  // may repeat a key: that row is then left out.
  if (Thread.InRange(nThread)) {
    const std::string key = "K" + std::to_string(nThread);
    const bool taken =
        std::any_of(rows.begin(), rows.end(), [&](const ThreadRow& r) { return r.Key == key; });
    if (!taken) {
      try {
        rows.push_back(
            {key, std::to_string(nThread) + "-" + GetStringAPI(Thread(nThread).Pds.Title), true});
      } catch (const PdsTextError&) {
      }
    }
  }
  autoLoadEnabled = false;
  AppendOverheadPair();
}

std::int32_t EventStore::TakeIndex() {
  ProfileIndex += 1;
  if (ProfileIndex % kGrowthStep == 1) ProfileEvent.ReDimPreserve(ProfileIndex + kGrowthStep - 1);
  return ProfileIndex;
}

void EventStore::AppendEvent(std::int32_t thread, std::uint8_t action, std::int32_t origin) {
  ProfileIndex += 1;
  if (ProfileIndex % kGrowthStep == 1) {
    // The reallocation is bracketed as overhead, so it counts in no timing.
    secTime_ = clock_.Counter();
    ProfileEvent.ReDimPreserve(ProfileIndex + kGrowthStep - 1);
    ProfileEvent(ProfileIndex) = {0, kActionOverheadStart, 0, secTime_};
    ProfileIndex += 1;
    zol::ProfileEvent& end = ProfileEvent(ProfileIndex);
    end = {0, kActionOverheadEnd, 0, 0};
    ProfileIndex += 1;
    end.Time = clock_.Counter();
  }
  zol::ProfileEvent& e = ProfileEvent(ProfileIndex);
  e.Thread = static_cast<std::int16_t>(thread);
  e.Action = action;
  e.Origin = origin;
  // The stamp is the very last step, as close as can be to the answer.
  e.Time = clock_.Counter();
}

void EventStore::AppendOverheadPair() {
  ProfileEvent(TakeIndex()) = {0, kActionOverheadStart, 0, secTime_};
  zol::ProfileEvent& end = ProfileEvent(TakeIndex());
  end = {0, kActionOverheadEnd, 0, 0};
  end.Time = clock_.Counter();
}

void EventStore::Calibrate(std::int32_t thread, std::int32_t n) {
  Array1<std::int64_t> gaps;
  gaps.ReDim(n - 1);
  for (std::int32_t i = 2; i <= n; ++i)
    gaps(i - 1) = OverheadTimes(i).Time - OverheadTimes(i - 1).Time;
  SortArray(gaps);
  const auto median = static_cast<std::int32_t>(RoundHalfEven(n / 2.0));
  Thread(thread).Overhead = gaps(median);
  // No fresh read here: the pair starts at the last stamp a handler left.
  AppendOverheadPair();
}

bool EventStore::EndThread(std::int32_t id) {
  Thread(id).Active = false;
  const std::string key = "K" + std::to_string(id);
  for (ThreadRow& row : rows) {
    if (row.Key == key) row.On = false;
  }
  for (std::int32_t i = 1; i <= nThread; ++i) {
    if (Thread(i).Active) return false;
  }
  return true;
}

void EventStore::Tick(const std::function<bool(std::int32_t)>& threadAlive) {
  if (nThread == 0) return;
  secTime_ = clock_.Counter();
  // Beside the pair of the last tick, were there new events?
  if (LastProfileIndex != ProfileIndex - 2) SetStatus(AcquisitionStatus(ProfileIndex));
  LastProfileIndex = ProfileIndex;
  for (std::int32_t i = 1; i <= nThread; ++i) {
    if (Thread(i).Active && !threadAlive(i) && EndThread(i)) {
      resultsDue = true;
      return;
    }
  }
  AppendOverheadPair();
}

}  // namespace zol
