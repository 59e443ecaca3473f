#include "compare/group_merge.h"

#include "base/paths.h"
#include "compare/date_time_text.h"
#include "compare/global_sessions.h"
#include "errcapture/trace.h"

namespace zol {

namespace {

inline constexpr const char* kMergedGroupsName = "Merged Groups";

void Append(Array1<std::int32_t>& list, std::int32_t value) {
  list.ReDimPreserve(list.UBound() + 1);
  list(list.UBound()) = value;
}

Array1<std::int32_t> SelectedGroups(const Workspace& ws) {
  Array1<std::int32_t> groups;
  for (std::int32_t i = 1; i <= ws.nSessionGroup; ++i) {
    if (ws.SessionGroup(i).Selected) Append(groups, i);
  }
  return groups;
}

// From each listed group, its first member of project `cp`; a group without
// one adds nothing.
Array1<std::int32_t> MembersOfProject(const Workspace& ws, const Array1<std::int32_t>& groups,
                                      std::int32_t cp) {
  Array1<std::int32_t> members;
  for (const std::int32_t g : groups) {
    for (const std::int32_t cs : ws.SessionGroup(g).Sessions) {
      if (ws.Session(cs).Project != cp) continue;
      Append(members, cs);
      break;
    }
  }
  return members;
}

// A new slot for the merge of one member of the first group with its peers,
// named and filed like that member.
std::int32_t NewMemberSlot(Workspace& ws, std::int32_t member) {
  const std::int32_t n = ++ws.nSession;
  ws.SessionSlot(n);
  const Session& m = ws.Session(member);
  Session& s = ws.Session(n);
  s.Group = 0;
  s.DateTime = PresentDateTimeText();
  s.SessionFile = m.SessionFile;
  s.GroupFile = m.GroupFile;
  s.ProjectFile = m.ProjectFile;
  s.IniFile = m.IniFile;
  s.OriginalProjectFile = m.OriginalProjectFile;
  s.Name = m.Name;
  s.Project = m.Project;
  return n;
}

}  // namespace

void MakeMergedAndCompareSessionsGroups(Workspace& ws, MergedSelectionView* view) {
  ZOL_TRACE("Merge.MakeMergedAndCompareSessionsGroups");
  ws.SessionGroup(0) = SessionGroup{};
  const Array1<std::int32_t> groups = SelectedGroups(ws);
  if (groups.Count() == 0) return;
  const std::int32_t first = groups(1);
  {
    const SessionGroup& g1 = ws.SessionGroup(first);
    SessionGroup& g0 = ws.SessionGroup(0);
    g0.Name = g1.Name;
    g0.DateTime = g1.DateTime;
    g0.GroupFile = g1.GroupFile;
    g0.IniFile = g1.IniFile;
    g0.Project = g1.Project;
  }
  if (view) view->ShowMergedGroupRoots(GetFileName(ws.SessionGroup(0).GroupFile));

  const std::int32_t memberCount = ws.SessionGroup(first).nSession;
  for (std::int32_t i = 1; i <= memberCount; ++i) {
    const std::int32_t member = ws.SessionGroup(first).Sessions(i);
    const std::int32_t n = NewMemberSlot(ws, member);
    const Array1<std::int32_t> list = MembersOfProject(ws, groups, ws.Session(member).Project);
    MakeMergedAndCompareSessions(ws, n, ws.CompareSession, list,
                                 {.homogeneous = true, .group = true}, view);
    Session& s = ws.Session(n);
    s.Loaded = true;
    s.Selected = true;
    s.IsMergedGroupSession = true;
    SessionGroup& g0 = ws.SessionGroup(0);
    ++g0.nSession;
    Append(g0.Sessions, n);
  }
  CreateGroupSession(ws, 0);
  ws.SessionGroup(0).Name = kMergedGroupsName;
  ws.SessionGroup(0).Selected = true;
}

void CreateGroupSession(Workspace& ws, std::int32_t csg) {
  const Array1<std::int32_t> list = ws.SessionGroup(csg).Sessions;
  if (list.Count() == 0) return;  // nothing to merge: the group keeps no merged session
  const std::int32_t n = ++ws.nSession;
  ws.SessionSlot(n);
  Array1<Session> scratch;
  MakeMergedAndCompareSessions(ws, n, scratch, list, {.keepTrackOfOriginalProject = true});
  // Computed whole in memory: its values are there, as a loaded session's are.
  ws.Session(n).Loaded = true;
  ws.Session(n).Invisible = true;
  ws.SessionGroup(csg).GroupMergedSession = n;
}

std::int32_t GetComparedSessions(const Workspace& ws, std::int32_t project,
                                 Array1<std::int32_t>& sessionList) {
  sessionList.Erase();
  for (std::int32_t i = 1; i <= ws.nSession; ++i) {
    const Session& s = ws.Session(i);
    if (!s.Selected) continue;
    if (ws.fOnlyGroups &&
        (s.Project != project || s.Group <= 0 || !ws.SessionGroup.InRange(s.Group) ||
         !ws.SessionGroup(s.Group).Selected)) {
      continue;
    }
    Append(sessionList, i);
  }
  return sessionList.Count();
}

std::int32_t GetGroupMergedSession(const Workspace& ws, std::int32_t cs) {
  for (std::int32_t g = 0; g <= ws.nSessionGroup && g <= ws.SessionGroup.UBound(); ++g) {
    const SessionGroup& group = ws.SessionGroup(g);
    if (group.Selected && group.GroupMergedSession == cs) return g;
  }
  return -1;
}

SessionRef SessionRefOfSlot(const Workspace& ws, std::int32_t slot) {
  if (slot == 0) return SessionRef::merged();
  const std::int32_t group = GetGroupMergedSession(ws, slot);
  if (group >= 0) return SessionRef::group(group, slot);
  return SessionRef::single(slot);
}

}  // namespace zol
