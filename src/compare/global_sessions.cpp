#include "compare/global_sessions.h"
#include "errcapture/trace.h"

namespace zol {

namespace {

// The sessions made for a former merged selection of groups: its merged
// session and its members, all computed, none with a file or row of its own.
void ReleaseMergedGroups(Workspace& ws) {
  SessionGroup& g0 = ws.SessionGroup(0);
  if (ws.fOnlyGroups && g0.Selected) {
    if (ws.Session.InRange(g0.GroupMergedSession)) ws.Session(g0.GroupMergedSession) = Session{};
    for (const std::int32_t cs : g0.Sessions) {
      if (ws.Session.InRange(cs)) ws.Session(cs) = Session{};
    }
  }
  if (ws.fOnlyGroups) ws.SessionGroup(0) = SessionGroup{};
}

struct SelectionCount {
  std::int32_t groups = 0;
  std::int32_t sessions = 0;  // ticked on their own, outside any group
  bool homogeneous = true;
};

SelectionCount CountSelection(const Workspace& ws) {
  SelectionCount n;
  std::int32_t firstProject = 0;
  auto seeProject = [&](std::int32_t project) {
    if (firstProject == 0) firstProject = project;
    if (project != firstProject) n.homogeneous = false;
  };
  for (std::int32_t i = 1; i <= ws.nSessionGroup; ++i) {
    if (!ws.SessionGroup(i).Selected) continue;
    ++n.groups;
    seeProject(ws.SessionGroup(i).Project);
  }
  for (std::int32_t i = 1; i <= ws.nSession; ++i) {
    const Session& s = ws.Session(i);
    if (!s.Selected || s.Group != 0) continue;
    ++n.sessions;
    seeProject(s.Project);
  }
  return n;
}

// The value of item `arg` that tells whether a session needs it.
bool HasValue(const Session& s, std::int32_t arg, std::int32_t Obj) {
  switch (Obj) {
    case kNeededLine:
      return s.CodeLineValue.InRange(arg) && s.CodeLineValue(arg).Hits != 0;
    case kNeededCoverage:
      return s.ProcedureValue.InRange(arg) && s.ProcedureValue(arg).TotalLines != 0;
    case kNeededProcedure:
      return s.ProcedureValue.InRange(arg) && s.ProcedureValue(arg).Hits != 0;
    default:
      return false;
  }
}

}  // namespace

void InitGlobalSessions(Workspace& ws, MergedSelectionView* view) {
  ZOL_TRACE("GlobalSessions.InitGlobalSessions");
  ReleaseMergedGroups(ws);
  const SelectionCount n = CountSelection(ws);
  ws.fHomogeneous = n.homogeneous;
  const std::int32_t ticked = n.groups + n.sessions;
  if (ticked >= 2) {
    if (view) view->AddMergeRoots(ws.fHomogeneous);
    ws.Session(0).Selected = true;
    ws.fOnlyGroups = n.sessions == 0;
  } else {
    ws.Session(0).Selected = false;
  }
  ws.Session(0).Loaded = false;
  ws.CompareSession.Erase();
  if (view) view->SelectionChanged(ticked == 0);
  ws.SessionGroup(0).GroupMergedSession = 0;
}

bool IsNeeded(const Workspace& ws, std::int32_t arg, std::int32_t Obj,
              const Array1<std::int32_t>& listOfSessionsToInclude) {
  for (const std::int32_t cs : listOfSessionsToInclude) {
    const Session* s = nullptr;
    if (ws.fHomogeneous && ws.Session.InRange(cs)) s = &ws.Session(cs);
    if (!ws.fHomogeneous && ws.CompareSession.InRange(cs)) s = &ws.CompareSession(cs);
    if (s && HasValue(*s, arg, Obj)) return true;
  }
  return false;
}

Array1<std::int32_t> SelectedSessions(const Workspace& ws) {
  Array1<std::int32_t> list;
  for (std::int32_t i = 1; i <= ws.nSession; ++i) {
    if (!ws.Session(i).Selected) continue;
    list.ReDimPreserve(list.UBound() + 1);
    list(list.UBound()) = i;
  }
  return list;
}

}  // namespace zol
