#pragma once

// The replay of a log's records: a model of the application's call stack in
// which every probe's own cost is taken out of the time of what it
// interrupted. Two replays share this interface and must give the same
// values: the literal one follows the reader's rules step by step and is the
// reference in tests; the fast one gets the same sums without walking the
// stack on every event. The reader (log_reader.cpp) frames and inflates the
// blocks and hands them over in file order.

#include <cstdint>
#include <memory>
#include <string>

#include "profile/pfl_format.h"
#include "session/workspace.h"

namespace zol {

// A frame's own time after it closes is at least this much per probe counted
// against it. The constant is in seconds although the replay works in clock
// units; it is applied as it stands, on purpose.
inline constexpr double kMinimumTimePerProbe = 0.00000005;

// The deepest call stack a log may build. A real program runs out of stack
// space long before this (a few thousand nested calls on the usual 1 MB
// stack); a log that goes deeper is damaged or made up, and replaying it
// would only grow the replay's stack without end (16 bytes of log hold a
// frame of the replay's stack, and a zlib block of nothing but entries
// packs 50,000 of them into a few hundred bytes).
inline constexpr std::int32_t kMaxStackDepth = 100000;

struct ReplaySetup {
  Workspace& ws;
  std::int32_t cs = 0;
  double TraceOverhead = 0;  // cost of one probe, in clock units
  std::string file;          // the log, for messages
};

class LogReplay {
 public:
  virtual ~LogReplay() = default;
  // Replays the 50,001 records of one inflated block (`index` from 1). In the
  // `lastBlock` a closing record ends the run; in earlier blocks it starts the
  // logger's writing gap.
  virtual void Block(const unsigned char* records, std::int32_t index, bool lastBlock) = 0;
  // Settles what is still pending after the last block. The values are then
  // raw sums in clock units, not yet converted to seconds.
  virtual void Finish() = 0;
};

std::unique_ptr<LogReplay> MakeLiteralReplay(const ReplaySetup& setup);
std::unique_ptr<LogReplay> MakeFastReplay(const ReplaySetup& setup);

// Where a record stands, for messages.
struct RecordPlace {
  std::int32_t block = 0;
  std::int32_t record = 0;  // 1 to 50,001
};

// The fault of a record whose line or procedure ID is not in 1..`count`.
[[noreturn]] void ThrowBadOrigin(const std::string& file, const pfl::LogRecord& r,
                                 std::int32_t count, RecordPlace place);

// The fault of a procedure entry that would stack more than kMaxStackDepth
// calls.
[[noreturn]] void ThrowTooDeep(const std::string& file, RecordPlace place);

}  // namespace zol
