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

CatalogueChange RemoveSession(Workspace& ws, std::int32_t cs) {
  CatalogueChange change;
  if (ws.Session(cs).Selected) change.sessionsTakenOut.push_back(cs);
  ws.Session(cs) = Session{};
  return change;
}

CatalogueChange RemoveSessionGroup(Workspace& ws, std::int32_t sg) {
  const SessionGroup g = ws.SessionGroup(sg);
  CatalogueChange change;
  if (g.Selected) {
    for (std::int32_t i = 1; i <= g.nSession; ++i) change.Append(RemoveSession(ws, g.Sessions(i)));
    if (g.GroupMergedSession != 0) change.Append(RemoveSession(ws, g.GroupMergedSession));
  }
  for (std::int32_t i = 1; i <= g.nSession; ++i) ws.Session(g.Sessions(i)) = Session{};
  // Nothing refers to the group's merged session once the group is gone.
  if (g.GroupMergedSession != 0) ws.Session(g.GroupMergedSession) = Session{};
  change.groupsTakenOut.push_back(sg);
  ws.SessionGroup(sg) = SessionGroup{};
  return change;
}

CatalogueChange DestroySession(Workspace& ws, std::int32_t cs) {
  DeleteSessionFile(ws, ws.Session(cs).SessionFile);
  return RemoveSession(ws, cs);
}

CatalogueChange DestroySessionGroup(Workspace& ws, std::int32_t sg) {
  DeleteSessionFile(ws, ws.SessionGroup(sg).SessionFile);
  return RemoveSessionGroup(ws, sg);
}

CatalogueChange ClearSessions(Workspace& ws) {
  ws.ClearTables();
  ResetRtfPath(ws);
  ws.fOnlyGroups = false;
  CatalogueChange change;
  change.viewReset = ViewReset::SessionsGone;
  return change;
}

}  // namespace zol
