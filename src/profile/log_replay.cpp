#include "profile/log_replay.h"

#include "profile/log_error.h"

namespace zol {

void ThrowBadOrigin(const std::string& file, const pfl::LogRecord& r, std::int32_t count,
                    RecordPlace place) {
  const bool line = r.Action == pfl::kLineRun;
  throw LogError(file, "Record " + std::to_string(place.record) + " of block " +
                           std::to_string(place.block) + " names " +
                           (line ? "line ID " : "procedure ID ") + std::to_string(r.Origin) +
                           ", outside the " + std::to_string(count) +
                           (line ? " lines" : " procedures") + " of the project.");
}

void ThrowTooDeep(const std::string& file, RecordPlace place) {
  throw LogError(file, "Record " + std::to_string(place.record) + " of block " +
                           std::to_string(place.block) + " enters a procedure more than " +
                           std::to_string(kMaxStackDepth) +
                           " calls deep, which no real run reaches.");
}

}  // namespace zol
