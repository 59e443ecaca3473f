// The folder of side files: one per process, so that two copies of the program
// never share it, and removed with the process.

#include <unistd.h>

#include "base/app_paths.h"
#include "base/files.h"
#include "base/paths.h"
#include "project/project_info.h"

namespace zol {

namespace {

// Runs one step of a routine that must go on whatever fails.
template <typename Fn>
void IgnoringFailure(Fn&& fn) {
  try {
    fn();
  } catch (...) {
  }
}

}  // namespace

void ResetRtfPath(Workspace& ws) {
  IgnoringFailure([&] {
    const std::string app = ws.appFolder.empty() ? AppFolder() : ws.appFolder;
    ws.RtfPath = JoinPath(JoinPath(app, "Temp"), "Rtf" + std::to_string(::getpid())) + "/";
  });
  if (ws.RtfPath.empty()) return;
  IgnoringFailure([&] { ws.tempFiles.AddToDeleteOnExit(ws.RtfPath, true); });
  IgnoringFailure([&] { DeleteFolder(ws.RtfPath); });
  IgnoringFailure([&] { MakeDir(ws.RtfPath); });
  IgnoringFailure([&] { WriteFile(ws.RtfPath + "Warning.txt", kRtfWarningText); });
}

void KillRtfPath(Workspace& ws) {
  IgnoringFailure([&] { DeleteFolder(ws.RtfPath); });
}

std::string RtfFileName(const Workspace& ws, std::int32_t projectIndex, std::int32_t m) {
  return ws.RtfPath + "p" + std::to_string(projectIndex) + "m" + std::to_string(m) + ".txt";
}

}  // namespace zol
