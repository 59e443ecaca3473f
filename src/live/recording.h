#pragma once

// Recordings of live runs: the raw event store on disk, so that a run can be
// computed again, exactly, and compared. Little-endian:
//   8 bytes "ZOLEVT1" and a NUL; int64 counter frequency; int64 cost of one
//   counter read (raw fixed-point); int32 number of threads; per thread the
//   3,360-byte registration record, int64 probe cost (raw), uint8 active,
//   3 zero bytes; int32 number of events; per event 16 bytes: int16 thread,
//   uint8 action, a zero byte, int32 origin, int64 time (raw).

#include <stdexcept>
#include <string>

#include "live/event_store.h"

namespace zol {

inline constexpr char kRecordingMagic[8] = {'Z', 'O', 'L', 'E', 'V', 'T', '1', '\0'};

class RecordingError : public std::runtime_error {
 public:
  RecordingError(const std::string& file, const std::string& fault);
};

// The image of the store's threads and of its events 1 to ProfileIndex.
std::string RecordingImage(const EventStore& store);

// Writes the recording whole under a new name and then renames it, so a
// half-written file never stands under `file`. Throws FileError.
void SaveRecording(const EventStore& store, const std::string& file);

// Replaces the store's run with the recording `file`: threads (no session
// yet), events 1 to ProfileIndex in a store sized as a live run sizes it,
// counter frequency and counter cost. Throws RecordingError naming the file
// and the fault (not a recording, truncated, counts or values that can't be
// true); the store is then unchanged.
void LoadRecording(EventStore& store, const std::string& file);

}  // namespace zol
