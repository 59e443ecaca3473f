// Sessions from a live run: one per thread, made before the walk and finished
// after it (statistics, files, settings entries, history), the group of a
// run whose threads all name the same project group, and the return to idle.

#include <algorithm>
#include <string>

#include "base/app_paths.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "base/paths.h"
#include "base/text.h"
#include "catalogue/file_history.h"
#include "compare/date_time_text.h"
#include "compare/global_sessions.h"
#include "compare/group_merge.h"
#include "errcapture/trace.h"
#include "live/compute_thread.h"
#include "profile/gather_info.h"
#include "profile/session_files.h"
#include "project/project_info.h"

namespace zol {

namespace {

// The separator a path text uses, so that a name made beside it keeps its
// style: "\" for a Windows path, "/" for a path of this disk.
char SeparatorOf(const std::string& path) {
  const std::size_t at = path.find_last_of("\\/");
  return at == std::string::npos ? '\\' : path[at];
}

std::string TextOf(const PdsPathField& field) {
  return GetStringAPI(field);
}

// Settings entries go only into a settings file whose folder is on this
// disk: a Windows path of another machine must not become a folder here.
bool CanWriteSettings(const std::string& iniFile) {
  return !iniFile.empty() && FolderExist(ToNativePath(GetPath(iniFile)));
}

void Note(LiveRunOutcome& outcome, Workspace& ws, const std::string& text) {
  outcome.faults.push_back(text);
  ws.prompter().ShowMessage(text, MessageKind::Exclamation);
}

void SaveThreadSession(Workspace& ws, EventStore& store, std::int32_t i, LiveRunOutcome& outcome) {
  const std::int32_t s = store.Thread(i).SessionNr;
  if (s == 0) return;  // the user was told when its session couldn't be made
  const Pds& pds = store.Thread(i).Pds;
  Session& session = ws.Session(s);
  GatherInfo(ws, s);
  const std::string vbp = TextOf(pds.Vbp);
  session.SessionFile =
      GetFreeFile(GetPath(vbp) + SeparatorOf(vbp) + GetStringAPI(pds.Title) + ".pfd", " ", true);
  session.Name = GetFileBody(session.SessionFile);
  SaveSessionInfo(ws, s);
  outcome.filesWritten.push_back(session.SessionFile);
  outcome.sessions.push_back(s);
  if (CanWriteSettings(session.IniFile)) {
    const std::string key = std::to_string(pds.AppMajor) + "." + std::to_string(pds.AppMinor) +
                            "." + std::to_string(pds.AppRev) + " " + session.DateTime;
    try {
      VBWritePrivateProfileString("Profiler Sessions", key, session.SessionFile,
                                  ToNativePath(session.IniFile));
    } catch (const std::exception& e) {
      Note(outcome, ws, e.what());
    }
  }
  AddToFileHistory(ws, session.SessionFile, "HistorySession");
  AddProjectToFileHistory(ws, session.IniFile);
}

// Whether the run makes a group: two threads or more, all naming the same
// project group (raw fields compared whole), whose file exists.
bool MakesGroup(const EventStore& store) {
  if (store.nThread < 2) return false;
  for (std::int32_t i = 2; i <= store.nThread; ++i) {
    if (store.Thread(i).Pds.Vbg != store.Thread(i - 1).Pds.Vbg) return false;
    if (!FileExist(ToNativePath(TextOf(store.Thread(i).Pds.Vbg)))) return false;
  }
  return true;
}

void BuildGroup(Workspace& ws, EventStore& store, LiveRunOutcome& outcome) {
  ws.nSessionGroup += 1;
  ws.SessionGroup.ReDimPreserve(ws.nSessionGroup);
  const std::int32_t sg = ws.nSessionGroup;
  {
    const Session& first = ws.Session(store.Thread(1).SessionNr);
    SessionGroup& g = ws.SessionGroup(sg);
    g.DateTime = first.DateTime;
    g.GroupFile = first.GroupFile;
    // A group has a project entry of its own, keyed by the .vbg file.
    g.Project = AssignProjectToSession(ws, ws.nSession, g.GroupFile);
    g.IniFile =
        GetPath(g.GroupFile) + SeparatorOf(g.GroupFile) + "zol" + GetFileName(g.GroupFile) + ".ini";
    g.Sessions.Erase();
    g.nSession = 0;
  }
  std::string listofprojects;
  for (std::int32_t i = 1; i <= store.nThread; ++i) {
    const std::int32_t p = ws.Session(store.Thread(i).SessionNr).Project;
    const std::string tag = "#" + std::to_string(p) + "#";
    if (listofprojects.find(tag) != std::string::npos) continue;
    listofprojects += tag;
    Array1<std::int32_t> listOfSessionsToInclude;
    std::int32_t ntl = 0;
    for (std::int32_t j = 1; j <= store.nThread; ++j) {
      if (ws.Session(store.Thread(j).SessionNr).Project != p) continue;
      ntl += 1;
      listOfSessionsToInclude.ReDimPreserve(ntl);
      listOfSessionsToInclude(ntl) = store.Thread(j).SessionNr;
    }
    ws.nSession += 1;
    ws.Session.ReDimPreserve(ws.nSession);
    if (ntl >= 2) {
      Array1<Session> scratch;
      MakeMergedAndCompareSessions(ws, ws.nSession, scratch, listOfSessionsToInclude,
                                   {.homogeneous = true});
    } else {
      ws.Session(ws.nSession) = ws.Session(listOfSessionsToInclude(1));
    }
    Session& member = ws.Session(ws.nSession);
    member.Name = GetStringAPI(store.Thread(i).Pds.Title);
    member.Invisible = true;
    member.Group = sg;
    member.Loaded = true;
    SessionGroup& g = ws.SessionGroup(sg);
    g.nSession += 1;
    g.Sessions.ReDimPreserve(g.nSession);
    g.Sessions(g.nSession) = ws.nSession;
  }
  SessionGroup& g = ws.SessionGroup(sg);
  // The name keeps the .vbg on purpose: "x.vbg 1.pfd".
  g.SessionFile = GetFreeFile(g.GroupFile + ".pfd", " ", true);
  g.Name = GetFileBody(g.SessionFile);
  SaveSessionInfoGroup(ws, sg);
  outcome.filesWritten.push_back(g.SessionFile);
  CreateGroupSession(ws, sg);
  ws.SessionGroup(sg).Loaded = true;
  if (CanWriteSettings(g.IniFile)) {
    try {
      VBWritePrivateProfileString("Profiler Sessions", g.DateTime, g.SessionFile,
                                  ToNativePath(g.IniFile));
    } catch (const std::exception& e) {
      Note(outcome, ws, e.what());
    }
  }
  AddToFileHistory(ws, g.SessionFile, "HistorySession");
  AddProjectToFileHistory(ws, g.GroupFile);
  outcome.group = sg;
}

}  // namespace

void LiveRunView::SelectSession(Workspace& ws, std::int32_t cs) {
  ws.Session(cs).Selected = true;
}

void LiveRunView::SelectSessionGroup(Workspace& ws, std::int32_t sg) {
  SessionGroup& g = ws.SessionGroup(sg);
  for (std::int32_t i = 1; i <= g.nSession; ++i) ws.Session(g.Sessions(i)).Selected = true;
  g.Selected = true;
}

std::string UnableToComputeMessage(const std::string& title, const std::string& projectFile) {
  return "Unable to compute timings for " + title + " !\n" +
         "The corresponding source code has been removed or overwritten, or the project you are "
         "trying to profile is empty (no procedures) !\n" +
         "Source: " + projectFile;
}

void CreateSessionFromThread(Workspace& ws, EventStore& store, std::int32_t ID,
                             const std::string& dateTime) {
  ZOL_TRACE_ARGS("LiveSessions.CreateSessionFromThread",
                 [&] { return zolParamsText({zolParamToText("ID", ID)}); });
  ws.nSession += 1;
  ws.Session.ReDimPreserve(ws.nSession);
  const std::int32_t cs = ws.nSession;
  LiveThread& thread = store.Thread(ID);
  const Pds& pds = thread.Pds;
  std::string projectFile;
  std::string fault;
  try {
    projectFile = TextOf(pds.Vbp);
    if (FileExist(ToNativePath(projectFile)) && UCase(Right(projectFile, 4)) == ".VBP") {
      Session& s = ws.Session(cs);
      s.ProjectFile = projectFile;
      s.GroupFile = TextOf(pds.Vbg);
      s.IniFile = TextOf(pds.IniFile);
      s.OriginalProjectFile =
          s.IniFile.empty()
              ? std::string()
              : VBGetPrivateProfileString("Source", "Project", "", ToNativePath(s.IniFile));
      s.DateTime = dateTime;
      s.LinesNumber = pds.LinesNumber;
      s.ProceduresNumber = pds.ProceduresNumber;
      s.Project = AssignProjectToSession(ws, cs, projectFile);
      if (!ws.Project(s.Project).Loaded) GetProjectInfo(ws, cs);
      const Project& project = ws.Project(ws.Session(cs).Project);
      Session& made = ws.Session(cs);
      if (project.ModulesNumber != 0 && made.ProceduresNumber == project.ProceduresNumber &&
          made.LinesNumber == project.LinesNumber) {
        made.ProcedureValue.ReDim(project.ProceduresNumber);
        if (project.LinesNumber != 0) made.CodeLineValue.ReDim(project.LinesNumber);
        made.Loaded = true;
        thread.SessionNr = cs;
        return;
      }
    }
  } catch (const PdsTextError& e) {
    fault = e.what();
  } catch (const ScanError& e) {
    fault = e.what();
  }
  ws.Session(cs) = Session{};
  ws.nSession -= 1;
  ws.Session.ReDimPreserve(ws.nSession);
  std::string title;
  try {
    title = GetStringAPI(pds.Title);
  } catch (const PdsTextError&) {
  }
  ws.prompter().ShowMessage(
      UnableToComputeMessage(title, projectFile) + (fault.empty() ? "" : "\n" + fault),
      MessageKind::Information);
}

LiveRunOutcome ComputeThread(Workspace& ws, EventStore& store, LiveRunView& view) {
  ZOL_TRACE("LiveSessions.ComputeThread");
  LiveRunOutcome outcome;
  if (store.nThread == 0) return outcome;
  const std::string dateTime = PresentDateTimeText();
  for (std::int32_t i = 1; i <= store.nThread; ++i) CreateSessionFromThread(ws, store, i, dateTime);

  const std::vector<std::string> walkFaults =
      WalkEvents(ws, store, [&view](const std::string& text) { view.ShowStatus(text); });
  if (!walkFaults.empty()) {
    std::string text = "Some events of the run could not be counted:";
    for (const std::string& f : walkFaults) text += "\n" + f;
    Note(outcome, ws, text);
  }
  ConvertThreadTimesToSeconds(ws, store);

  for (std::int32_t i = 1; i <= store.nThread; ++i) {
    try {
      SaveThreadSession(ws, store, i, outcome);
    } catch (const std::exception& e) {
      Note(outcome, ws, e.what());
    }
  }

  view.RemoveMergeRoots(ws);
  ws.Session(0).Selected = false;
  ws.Session(0).Loaded = false;

  // Threads without a session take no part in the group.
  bool sessionGroup = MakesGroup(store);
  for (std::int32_t i = 1; i <= store.nThread && sessionGroup; ++i) {
    if (store.Thread(i).SessionNr == 0) sessionGroup = false;
  }
  if (sessionGroup) {
    try {
      BuildGroup(ws, store, outcome);
      view.SelectSessionGroup(ws, outcome.group);
    } catch (const std::exception& e) {
      Note(outcome, ws, e.what());
    }
  } else {
    InitGlobalSessions(ws, view.MergedView());
  }
  if (!sessionGroup) {
    for (std::int32_t i = 1; i <= store.nThread; ++i) {
      const std::int32_t s = store.Thread(i).SessionNr;
      if (s != 0 && !ws.Session(s).SessionFile.empty()) view.SelectSession(ws, s);
    }
  }

  view.SessionsChanged(ws);
  store.Clear();
  try {
    VBWritePrivateProfileString("Profiler", "ID", "1", GetIniFile(ws.appFolder));
  } catch (const std::exception& e) {
    Note(outcome, ws, e.what());
  }
  return outcome;
}

}  // namespace zol
