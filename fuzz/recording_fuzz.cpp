// Arbitrary bytes as the recording of a live run, loaded into a store as a
// replay of the run loads it. A file may be refused (RecordingError); a
// recording that loads must give the same image back.

#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_file.h"
#include "live/live_clock.h"
#include "live/recording.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = zol::fuzz::WriteInput("run.zolrec", zol::fuzz::Bytes(data, size));
  zol::MonotonicClock clock;
  zol::EventStore store{clock, 0};
  try {
    zol::LoadRecording(store, path);
  } catch (const zol::RecordingError&) {
    return 0;
  }
  zol::RecordingImage(store);
  return 0;
}
