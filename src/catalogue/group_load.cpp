#include "catalogue/group_load.h"

#include <algorithm>

#include "base/paths.h"
#include "catalogue/file_history.h"
#include "catalogue/session_catalogue.h"
#include "compare/global_sessions.h"
#include "compare/group_merge.h"
#include "profile/session_files.h"
#include "project/project_info.h"

namespace zol {

namespace {

// Gives every member its project entry, scanned the first time it is needed;
// the entries added or scanned are noted. Lets events run after each scan,
// ending the load there if the user asked to stop.
void AssignMemberProjects(Workspace& ws, const SessionGroup& g, GroupLoad& load) {
  auto touched = [&](std::int32_t cp) {
    auto& list = load.projectsTouched;
    if (std::find(list.begin(), list.end(), cp) == list.end()) list.push_back(cp);
  };
  for (std::int32_t i = 1; i <= g.nSession; ++i) {
    const std::int32_t cs = g.Sessions(i);
    Session& s = ws.Session(cs);
    s.Project = AssignProjectToSession(ws, cs, s.ProjectFile);
    if (s.Project > load.projectCount) touched(s.Project);
    if (!ws.Project(s.Project).Loaded) {
      touched(s.Project);
      GetProjectInfo(ws, cs);
      LoadStopPoint(ws, g.SessionFile);
    }
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

// A project entry as the run needs it: whole when it is still to be scanned,
// otherwise only what tells the entry apart (its file and that file's date),
// since a scanned project is neither scanned again nor read by the run.
Project EntryForRun(const Project& p) {
  if (!p.Loaded) return p;
  Project entry;
  entry.ProjectFile = p.ProjectFile;
  entry.ProjectFileDateTime = p.ProjectFileDateTime;
  entry.Name = p.Name;
  entry.Loaded = true;
  return entry;
}

}  // namespace

GroupLoad BeginGroupLoad(Workspace& ws, std::int32_t sg) {
  GroupLoad load;
  load.sg = sg;
  if (ws.RtfPath.empty()) ResetRtfPath(ws);
  load.group = ws.SessionGroup(sg);
  load.sessionCount = ws.nSession;
  load.projectCount = ws.nProject;
  load.projects.ReDim(ws.nProject);
  for (std::int32_t i = 1; i <= ws.nProject; ++i) load.projects(i) = EntryForRun(ws.Project(i));
  load.appFolder = ws.appFolder;
  load.rtfPath = ws.RtfPath;
  load.reader = ReaderState::Of(ws);
  return load;
}

void RunGroupLoad(GroupLoad& load, Prompter& prompter, const std::function<bool()>& stopRequested) {
  // A workspace of the load's own, with the group at its index and the
  // catalogue's counts, so that the members and new projects take the indices
  // they will have in the catalogue.
  Workspace w;
  w.SetPrompter(LoadWorkspacePrompter(prompter, stopRequested, w.abort));
  w.appFolder = load.appFolder;
  w.RtfPath = load.rtfPath;
  load.reader.PutInto(w);
  w.Project = std::move(load.projects);
  w.nProject = load.projectCount;
  w.nSession = load.sessionCount;
  w.SessionGroup.ReDim(load.sg);
  w.nSessionGroup = load.sg;
  w.SessionGroup(load.sg) = std::move(load.group);
  load.sessions.clear();
  load.projectsTouched.clear();

  using Result = GroupLoad::Result;
  const std::string path = w.SessionGroup(load.sg).SessionFile;
  load.result = Result::Failed;
  load.message.clear();
  try {
    if (!LoadSessionInfoGroup(w, load.sg, path)) {
      load.result = Result::Refused;
    } else {
      LoadStopPoint(w, path);
      AssignMemberProjects(w, w.SessionGroup(load.sg), load);
      load.result = Result::Read;
    }
  } catch (const SessionFileError& e) {
    load.message = CorruptSessionFileMessage(e.file()) + "\n" + e.fault();
  } catch (const ScanError& e) {
    load.message = e.what();
  } catch (const LogReadCancelled&) {
    load.message.clear();
  } catch (...) {
    load.unexpected = std::current_exception();
  }
  if (load.result == Result::Failed) DropMembers(w, load.sg);

  load.group = std::move(w.SessionGroup(load.sg));
  for (std::int32_t cs = load.sessionCount + 1; cs <= w.nSession; ++cs) {
    load.sessions.push_back(std::move(w.Session(cs)));
  }
  load.projects = std::move(w.Project);
  load.projectCount = w.nProject;
  load.reader = ReaderState::Of(w);
}

bool FinishGroupLoad(Workspace& ws, GroupLoad&& load) {
  using Result = GroupLoad::Result;
  const std::int32_t sg = load.sg;
  load.reader.PutInto(ws);
  // What the run added or scanned takes its place, whatever became of the
  // group: blank member slots stay counted, scanned projects stay scanned.
  if (load.projectCount > ws.Project.UBound()) ws.Project.ReDimPreserve(load.projectCount);
  for (const std::int32_t cp : load.projectsTouched) ws.Project(cp) = std::move(load.projects(cp));
  ws.nProject = std::max(ws.nProject, load.projectCount);
  for (Session& s : load.sessions) ws.SessionSlot(++ws.nSession) = std::move(s);
  SessionGroup& g = ws.SessionGroup(sg);
  // Only the load's own fields: the rest of the slot is the catalogue's.
  load.group.Name = g.Name;
  load.group.Selected = g.Selected;
  g = std::move(load.group);

  if (load.unexpected) std::rethrow_exception(load.unexpected);
  if (load.result == Result::Refused) return false;
  std::string fault = load.message;
  if (load.result == Result::Read) {
    try {
      CreateGroupSession(ws, sg);
    } catch (const MergeError& e) {
      fault = CorruptSessionFileMessage(g.SessionFile) + "\n" + e.what();
    }
  }
  if (load.result != Result::Read || !fault.empty()) {
    DropMembers(ws, sg);
    if (!fault.empty()) ws.prompter().ShowMessage(fault, MessageKind::Exclamation);
    return false;
  }
  g.Loaded = true;
  AddProjectToFileHistory(ws, g.IniFile, GetPath(g.SessionFile));
  return true;
}

bool LoadSessionGroup(Workspace& ws, std::int32_t sg) {
  if (ws.SessionGroup(sg).Loaded) return true;
  // A stop asked for before this load doesn't end it.
  ws.abort = false;
  GroupLoad load = BeginGroupLoad(ws, sg);
  RunGroupLoad(load, ws.prompter(), [&ws] { return ws.abort; });
  return FinishGroupLoad(ws, std::move(load));
}

}  // namespace zol
