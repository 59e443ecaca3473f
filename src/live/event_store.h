#pragma once

// The store of a live run: every message of every sending thread, stamped on
// arrival and appended in that one order to ProfileEvent. The cost of the
// receiver's own work (growing the store, registering a thread, the tick) is
// bracketed by an overhead pair, so the walk can take it out of every open
// frame; the per-thread cost of one probe message is measured by the
// calibration messages.
//
// Times are raw counter values, read as fixed-point numbers with four
// decimals: a count of N reads as N / 10000, and a difference of counts over
// the frequency gives seconds. They stay integers here and in the walk.
//
// Handle() checks a message before it touches anything: a message the store
// can't take (an ID beyond the registered threads, a calibration sample
// without room, an unknown code) throws LiveInputError and leaves the store
// exactly as it was, so that the receiver can drop the sender and go on.

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/vbarray.h"
#include "live/live_clock.h"
#include "live/pds.h"

namespace zol {

enum class LiveMsg : std::uint32_t {
  Register = 0x401,
  Line = 0x402,
  ProcedureIn = 0x403,
  ProcedureOut = 0x404,
  CalibrationSample = 0x405,
  CalibrationStart = 0x406,
  CalibrationEnd = 0x407,
  ThreadEnd = 0x408,
  Tick = 0x40A,
};

// What 0x401 answers; every other message answers 0.
inline constexpr std::int32_t kRegisteredAnswer = -999999;

enum EventAction : std::uint8_t {
  kActionProcedureIn = 1,
  kActionProcedureOut = 2,
  kActionLine = 3,
  kActionOverheadStart = 4,
  kActionOverheadEnd = 5,
};

struct ProfileEvent {
  std::int16_t Thread = 0;  // ProfilerID of the sender; 0 in an overhead pair
  std::uint8_t Action = 0;
  std::int32_t Origin = 0;  // procedure ID (1, 2), line ID (3), 0 (4, 5)
  std::int64_t Time = 0;    // raw counter value
  friend bool operator==(const ProfileEvent&, const ProfileEvent&) = default;
};

struct LiveThread {
  zol::Pds Pds;
  std::int64_t Overhead = 0;  // raw counter ticks of one probe message
  bool Active = false;
  std::int32_t SessionNr = 0;
  friend bool operator==(const LiveThread&, const LiveThread&) = default;
};

// One decoded message. `pds` is read only for Register.
struct LiveMessage {
  std::uint32_t Msg = 0;
  std::int32_t wParam = 0;
  std::int32_t lParam = 0;
  zol::Pds pds;
};

class LiveInputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A row of the live window's list: one per registration.
struct ThreadRow {
  std::string Key;   // "K" and the number
  std::string Text;  // the number, "-", the thread's title
  bool On = true;    // icon "ON" or "OFF"
};

// The highest ProfilerID a registration may carry: events store it in 16 bits.
inline constexpr std::int32_t kMaxProfilerID = 32767;
// The most calibration samples one announcement may ask room for.
inline constexpr std::int32_t kMaxCalibrationSamples = 1'000'000;

// "Data acquisition (N events)..."
std::string AcquisitionStatus(std::int32_t events);

// Sorts ascending by selection; of equal values the first found is taken.
void SortArray(Array1<std::int64_t>& values);

class EventStore {
 public:
  EventStore(LiveClock& clock, std::int64_t counterOverhead);

  // Handles one message and returns its answer. Throws LiveInputError (store
  // unchanged) for a message it can't take.
  std::int32_t Handle(const LiveMessage& message);

  // The once-a-second tick: finds threads that died without saying so;
  // `threadAlive(i)` tells whether thread i still runs.
  void Tick(const std::function<bool(std::int32_t)>& threadAlive);

  // Back to idle: no thread, no event.
  void Clear();

  // --- the run (read by the walk and by recordings) ---
  Array1<zol::ProfileEvent> ProfileEvent;
  std::int32_t ProfileIndex = 0;
  std::int32_t LastProfileIndex = 0;
  Array1<zol::ProfileEvent> OverheadTimes;
  std::int32_t IndexOverhead = 0;
  Array1<LiveThread> Thread;
  std::int32_t nThread = 0;
  std::int64_t QueryPerformanceCounterOverhead = 0;
  std::int64_t secFreq = 0;

  // --- what the window shows ---
  std::string status;
  bool statusChanged = false;
  std::vector<ThreadRow> rows;
  bool windowShown = false;
  bool autoLoadEnabled = true;
  // The last active thread has ended: the computation is due.
  bool resultsDue = false;

 private:
  void CheckMessage(const LiveMessage& m) const;
  void CheckThread(std::int32_t id, const char* what) const;
  void Register(const LiveMessage& m);
  void AppendEvent(std::int32_t thread, std::uint8_t action, std::int32_t origin);
  std::int32_t TakeIndex();
  void AppendOverheadPair();
  void Calibrate(std::int32_t thread, std::int32_t n);
  // Marks thread `id` ended; true when no thread is active any more.
  bool EndThread(std::int32_t id);
  void SetStatus(std::string text);

  LiveClock& clock_;
  std::int64_t secTime_ = 0;
  std::int64_t secTimeOverhead_ = 0;
};

}  // namespace zol
