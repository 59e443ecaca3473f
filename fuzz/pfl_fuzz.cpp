// Arbitrary bytes as the .pfl log of a session, replayed by both replays.
// The project is sized by the counts of the log's own header (capped), as a
// scan sized by those counts would leave it, with every other procedure
// line-probed, so that both ways of gathering time are reached. A log may be
// refused (LogError); anything else escaping, or any fault the sanitizers
// see, is a finding.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_file.h"
#include "profile/log_error.h"
#include "profile/log_reader.h"
#include "profile/pfl_format.h"
#include "support/session_builder.h"

namespace {

constexpr std::int32_t kMostCount = 4096;

std::int32_t CountOnLine(const zol::pfl::Header& header, int index) {
  const auto value = zol::pfl::ParseLogNumber(header.Lines[static_cast<std::size_t>(index)]);
  if (!value || !std::isfinite(*value) || *value < 0) return 0;
  return static_cast<std::int32_t>(std::min<double>(*value, kMostCount));
}

std::int32_t BuildProject(zol::Workspace& ws, std::int32_t lines, std::int32_t procedures) {
  zol::testing::ProjectBuilder b(ws);
  const std::int32_t m = b.Module("Module1");
  for (std::int32_t p = 1; p <= procedures; ++p) b.Procedure(m, "P" + std::to_string(p));
  for (std::int32_t l = 1; l <= lines; ++l) {
    // Lines go to the odd procedures; without procedures, outside any.
    const std::int32_t owner = procedures == 0 ? 0 : 1 + 2 * ((l - 1) % ((procedures + 1) / 2));
    b.Line(owner, l % 7 == 0);
  }
  return b.Build();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = zol::fuzz::Bytes(data, size);
  const std::string path = zol::fuzz::WriteInput("run.pfl", bytes);
  std::int32_t lines = 8;
  std::int32_t procedures = 4;
  if (const auto header = zol::pfl::SplitHeader(bytes.substr(0, zol::pfl::kHeaderSearchBytes))) {
    lines = CountOnLine(*header, 5);
    procedures = CountOnLine(*header, 6);
  }
  for (const auto kind : {zol::ReplayKind::Literal, zol::ReplayKind::Fast}) {
    zol::Workspace ws;
    const std::int32_t cp = BuildProject(ws, lines, procedures);
    const std::int32_t cs = zol::testing::AddSessionForProject(ws, cp, path);
    try {
      zol::ReadProfileFile(ws, cs, kind);
    } catch (const zol::LogError&) {
    }
  }
  return 0;
}
