#include "live/recording.h"

#include <cstring>
#include <fstream>
#include <iterator>

#include "base/byte_io.h"
#include "base/files.h"
#include "base/paths.h"

namespace zol {

namespace {

constexpr std::int32_t kGrowthStep = 1000;
constexpr std::size_t kThreadBytes = kPdsBytes + 8 + 4;
constexpr std::size_t kEventBytes = 16;

std::string ReadWhole(const std::string& file) {
  std::ifstream in(ToNativePath(file), std::ios::binary);
  if (!in) throw RecordingError(file, "the file can't be opened");
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) throw RecordingError(file, "the file can't be read");
  return bytes;
}

}  // namespace

RecordingError::RecordingError(const std::string& file, const std::string& fault)
    : std::runtime_error("Recording \"" + file + "\": " + fault) {}

std::string RecordingImage(const EventStore& store) {
  ByteWriter w;
  w.Bytes(std::string_view(kRecordingMagic, sizeof kRecordingMagic));
  w.I64(store.secFreq);
  w.I64(store.QueryPerformanceCounterOverhead);
  w.I32(store.nThread);
  for (std::int32_t i = 1; i <= store.nThread; ++i) {
    const LiveThread& t = store.Thread(i);
    const PdsImage pds = EncodePds(t.Pds);
    w.Bytes(std::string_view(reinterpret_cast<const char*>(pds.data()), pds.size()));
    w.I64(t.Overhead);
    w.U8(t.Active ? 1 : 0);
    w.Bytes(std::string_view("\0\0\0", 3));
  }
  w.I32(store.ProfileIndex);
  for (std::int32_t i = 1; i <= store.ProfileIndex; ++i) {
    const ProfileEvent& e = store.ProfileEvent(i);
    w.I16(e.Thread);
    w.U8(e.Action);
    w.U8(0);
    w.I32(e.Origin);
    w.I64(e.Time);
  }
  return w.Take();
}

void SaveRecording(const EventStore& store, const std::string& file) {
  WriteFileAtomic(ToNativePath(file), RecordingImage(store));
}

void LoadRecording(EventStore& store, const std::string& file) {
  const std::string bytes = ReadWhole(file);
  if (bytes.size() < sizeof kRecordingMagic ||
      std::memcmp(bytes.data(), kRecordingMagic, sizeof kRecordingMagic) != 0) {
    throw RecordingError(file, "not a recording of a live run (no \"ZOLEVT1\" at its start)");
  }
  try {
    ByteReader r(bytes);
    r.Bytes(sizeof kRecordingMagic);
    const std::int64_t frequency = r.I64();
    const std::int64_t counterCost = r.I64();
    const std::int32_t nThread = r.I32();
    if (frequency <= 0) {
      throw RecordingError(file, "counter frequency " + std::to_string(frequency));
    }
    if (nThread < 0 || nThread > kMaxProfilerID) {
      throw RecordingError(file, "number of threads " + std::to_string(nThread));
    }
    if (r.Remaining() < static_cast<std::size_t>(nThread) * kThreadBytes) {
      throw TruncatedData("the threads need " +
                          std::to_string(static_cast<std::size_t>(nThread) * kThreadBytes) +
                          " bytes, " + std::to_string(r.Remaining()) + " left");
    }
    Array1<LiveThread> threads;
    threads.ReDim(nThread);
    for (std::int32_t i = 1; i <= nThread; ++i) {
      LiveThread& t = threads(i);
      t.Pds = DecodePds(reinterpret_cast<const unsigned char*>(r.Bytes(kPdsBytes).data()));
      t.Overhead = r.I64();
      t.Active = r.U8() != 0;
      r.Bytes(3);
    }
    const std::int32_t eventCount = r.I32();
    if (eventCount < 0)
      throw RecordingError(file, "number of events " + std::to_string(eventCount));
    if (r.Remaining() != static_cast<std::size_t>(eventCount) * kEventBytes) {
      throw RecordingError(
          file, std::to_string(eventCount) + " events need " +
                    std::to_string(static_cast<std::size_t>(eventCount) * kEventBytes) +
                    " bytes, the file has " + std::to_string(r.Remaining()) + " after the threads");
    }
    Array1<ProfileEvent> events;
    if (eventCount > 0) events.ReDim((eventCount + kGrowthStep - 1) / kGrowthStep * kGrowthStep);
    for (std::int32_t i = 1; i <= eventCount; ++i) {
      ProfileEvent& e = events(i);
      e.Thread = r.I16();
      e.Action = r.U8();
      r.U8();
      e.Origin = r.I32();
      e.Time = r.I64();
      const std::string where = "event " + std::to_string(i);
      if (e.Thread < 0 || e.Thread > nThread) {
        throw RecordingError(file, where + " names thread " + std::to_string(e.Thread) + " of " +
                                       std::to_string(nThread));
      }
      // A zero stamp would end the run there; live stamps are never zero.
      if (e.Time <= 0) throw RecordingError(file, where + " has time " + std::to_string(e.Time));
    }
    for (std::int32_t i = 1; i <= eventCount; ++i) {
      if (events(i).Action == kActionOverheadStart &&
          (i == eventCount || events(i + 1).Action != kActionOverheadEnd)) {
        throw RecordingError(file,
                             "the overhead pair of event " + std::to_string(i) + " has no end");
      }
    }
    store.Clear();
    store.secFreq = frequency;
    store.QueryPerformanceCounterOverhead = counterCost;
    store.nThread = nThread;
    store.Thread = std::move(threads);
    store.ProfileEvent = std::move(events);
    store.ProfileIndex = eventCount;
  } catch (const TruncatedData& e) {
    throw RecordingError(file, std::string("truncated: ") + e.what());
  }
}

}  // namespace zol
