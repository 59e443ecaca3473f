// Arbitrary bytes as an instrumented project: the input up to its first NUL
// is the .vbp, the rest the source of the module "Module1.bas" that a .vbp
// may name (the seeds do). Scanned as a load scans it; the source scanner
// runs over every module the .vbp names and finds. A scan may be refused
// (ScanError); anything else escaping is a finding.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_file.h"
#include "project/project_info.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = zol::fuzz::Bytes(data, size);
  const std::size_t split = bytes.find('\0');
  const std::string vbp = zol::fuzz::WriteInput("Project1.vbp", bytes.substr(0, split));
  zol::fuzz::WriteInput("Module1.bas",
                        split == std::string_view::npos ? "" : bytes.substr(split + 1));
  zol::Workspace ws;
  ws.appFolder = zol::fuzz::ScratchFolder() + "/app";
  ws.nSession = 1;
  zol::Session& s = ws.SessionSlot(1);
  s.ProjectFile = vbp;
  s.Project = zol::AssignProjectToSession(ws, 1, vbp);
  zol::ResetRtfPath(ws);
  try {
    zol::GetProjectInfo(ws, 1);
  } catch (const zol::ScanError&) {
  }
  zol::KillRtfPath(ws);
  return 0;
}
