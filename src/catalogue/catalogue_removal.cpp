#include <filesystem>

#include "base/files.h"
#include "base/paths.h"
#include "catalogue/session_catalogue.h"
#include "project/project_info.h"

namespace zol {

namespace {

// Deletes a session or group file. A file that is already gone is no fault;
// any other failure is reported, naming the file and the system's reason.
void DeleteSessionFile(Workspace& ws, const std::string& path) {
  if (path.empty()) return;
  std::error_code ec;
  std::filesystem::remove(ToNativePath(path), ec);
  if (ec) {
    ws.prompter().ShowMessage(FileError("Cannot delete file", path, ec.value()).what(),
                              MessageKind::Exclamation);
  }
}

}  // namespace

void RemoveSession(Workspace& ws, SessionPane& pane, std::int32_t cs) {
  if (ws.Session(cs).Selected) {
    if (pane.ShowsSession(cs)) pane.ResetViews(ws, ViewReset::SessionsGone);
    pane.UnSelectSession(ws, cs);
  }
  ws.Session(cs) = Session{};
}

void RemoveSessionGroup(Workspace& ws, SessionPane& pane, std::int32_t sg) {
  const SessionGroup g = ws.SessionGroup(sg);
  if (g.Selected) {
    for (std::int32_t i = 1; i <= g.nSession; ++i) RemoveSession(ws, pane, g.Sessions(i));
    if (g.GroupMergedSession != 0) RemoveSession(ws, pane, g.GroupMergedSession);
  }
  for (std::int32_t i = 1; i <= g.nSession; ++i) ws.Session(g.Sessions(i)) = Session{};
  // Nothing refers to the group's merged session once the group is gone.
  if (g.GroupMergedSession != 0) ws.Session(g.GroupMergedSession) = Session{};
  pane.UnSelectSessionGroup(ws, sg);
  ws.SessionGroup(sg) = SessionGroup{};
}

void DestroySession(Workspace& ws, SessionPane& pane, std::int32_t cs) {
  DeleteSessionFile(ws, ws.Session(cs).SessionFile);
  RemoveSession(ws, pane, cs);
}

void DestroySessionGroup(Workspace& ws, SessionPane& pane, std::int32_t sg) {
  DeleteSessionFile(ws, ws.SessionGroup(sg).SessionFile);
  RemoveSessionGroup(ws, pane, sg);
}

void ClearSessions(Workspace& ws, SessionPane& pane) {
  pane.ResetViews(ws, ViewReset::SessionsGone);
  ws.ClearTables();
  ResetRtfPath(ws);
  ws.fOnlyGroups = false;
}

}  // namespace zol
