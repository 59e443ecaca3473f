#include "base/paths.h"
#include "catalogue/file_history.h"
#include "catalogue/session_catalogue.h"
#include "compare/global_sessions.h"
#include "compare/group_merge.h"
#include "profile/session_files.h"
#include "project/project_info.h"

namespace zol {

namespace {

// Gives every member its project entry, scanned the first time it is needed.
void AssignMemberProjects(Workspace& ws, const SessionGroup& g) {
  for (std::int32_t i = 1; i <= g.nSession; ++i) {
    const std::int32_t cs = g.Sessions(i);
    Session& s = ws.Session(cs);
    s.Project = AssignProjectToSession(ws, cs, s.ProjectFile);
    if (!ws.Project(s.Project).Loaded) GetProjectInfo(ws, cs);
  }
}

// Members added by a load that failed half-way are blanked again, so that
// no partly read group stays behind.
void DropMembers(Workspace& ws, std::int32_t sg) {
  SessionGroup& g = ws.SessionGroup(sg);
  for (std::int32_t i = 1; i <= g.nSession; ++i) ws.Session(g.Sessions(i)) = Session{};
  if (g.GroupMergedSession != 0) ws.Session(g.GroupMergedSession) = Session{};
  g.Sessions.Erase();
  g.nSession = 0;
  g.GroupMergedSession = 0;
  g.Loaded = false;
}

}  // namespace

bool LoadSessionGroup(Workspace& ws, std::int32_t sg) {
  if (ws.SessionGroup(sg).Loaded) return true;
  const std::string path = ws.SessionGroup(sg).SessionFile;
  std::string fault;
  try {
    if (!LoadSessionInfoGroup(ws, sg, path)) return false;
    AssignMemberProjects(ws, ws.SessionGroup(sg));
    CreateGroupSession(ws, sg);
  } catch (const SessionFileError& e) {
    fault = CorruptSessionFileMessage(e.file()) + "\n" + e.fault();
  } catch (const ScanError& e) {
    fault = e.what();
  } catch (const MergeError& e) {
    fault = CorruptSessionFileMessage(path) + "\n" + e.what();
  }
  if (!fault.empty()) {
    DropMembers(ws, sg);
    ws.prompter().ShowMessage(fault, MessageKind::Exclamation);
    return false;
  }
  SessionGroup& g = ws.SessionGroup(sg);
  g.Loaded = true;
  AddProjectToFileHistory(ws, g.IniFile, GetPath(path));
  return true;
}

}  // namespace zol
