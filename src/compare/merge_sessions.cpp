// MakeMergedAndCompareSessions: the frame of the merged session (its project
// and array sizes), the sums, the derived values, and the tree branches.

#include <string>

#include "compare/global_sessions.h"
#include "compare/merge_steps.h"
#include "errcapture/trace.h"

namespace zol {

namespace {

inline constexpr const char* kMergedSessionsName = "Merged Sessions";

// Every listed index must be a session whose values are loaded.
void CheckList(const Workspace& ws, std::int32_t MergeIndex, const Array1<std::int32_t>& list) {
  if (list.Count() == 0) throw MergeError("no sessions to merge");
  for (const std::int32_t cs : list) {
    if (cs < 1 || cs > ws.nSession || cs > ws.Session.UBound()) {
      throw MergeError("session " + std::to_string(cs) + " does not exist");
    }
    if (cs == MergeIndex) {
      throw MergeError("session " + std::to_string(cs) + " can't be merged into itself");
    }
    const Session& s = ws.Session(cs);
    if (!s.Loaded) {
      throw MergeError("session " + std::to_string(cs) + " (\"" + s.Name + "\") is not loaded");
    }
  }
}

// A project that a merge made: Project(0), or an entry with no project file of
// its own. A scanned project is shared by its sessions and is never cleared.
bool IsMergedProject(const Workspace& ws, std::int32_t cp) {
  return cp == 0 || (ws.Project.InRange(cp) && ws.Project(cp).ProjectFile.empty());
}

// The slot emptied for a fresh merge, with the project of an earlier
// heterogeneous merge into it released.
void ClearSlot(Workspace& ws, std::int32_t MergeIndex, Array1<Session>& CompareSession) {
  const std::int32_t old = ws.Session(MergeIndex).Project;
  if (IsMergedProject(ws, old) && ws.Project(old).Loaded) ws.Project(old) = Project{};
  ws.Session(MergeIndex) = Session{};
  CompareSession.Erase();
}

// The project that a heterogeneous merge builds: Project(0) for the merged
// view, a new entry for any other slot.
std::int32_t NewMergedProject(Workspace& ws, std::int32_t MergeIndex) {
  if (MergeIndex == 0) {
    ws.Project(0) = Project{};
    return 0;
  }
  const std::int32_t mp = ++ws.nProject;
  ws.Project.ReDimPreserve(mp);
  return mp;
}

// The value arrays sized to the merged project's counts; the workspace's
// counts are left at them.
void SizeValueArrays(Workspace& ws, std::int32_t MergeIndex, bool fHomogeneous) {
  Session& merged = ws.Session(MergeIndex);
  ws.LoadProjectCounts(merged.Project);
  merged.LinesNumber = ws.LinesNumber;
  merged.ProceduresNumber = ws.ProceduresNumber;
  if (fHomogeneous && ws.LinesNumber > 0) merged.CodeLineValue.ReDim(ws.LinesNumber);
  if (ws.ProceduresNumber != 0) merged.ProcedureValue.ReDim(ws.ProceduresNumber);
  if (ws.ModulesNumber != 0) merged.ModuleValue.ReDim(ws.ModulesNumber);
}

void MakeFrame(Workspace& ws, std::int32_t MergeIndex, Array1<Session>& CompareSession,
               bool fHomogeneous, const Array1<std::int32_t>& list, bool group,
               bool keepTrackOfOriginalProject) {
  if (!group) ClearSlot(ws, MergeIndex, CompareSession);
  if (ws.Session(MergeIndex).Name.empty()) ws.Session(MergeIndex).Name = kMergedSessionsName;
  if (fHomogeneous) {
    const std::int32_t cp = ws.Session(list(1)).Project;
    for (const std::int32_t cs : list) {
      if (ws.Session(cs).Project != cp) {
        throw MergeError("sessions of different projects can't be merged by ID");
      }
    }
    ws.Session(MergeIndex).Project = cp;
  } else {
    const std::int32_t mp = NewMergedProject(ws, MergeIndex);
    ws.Session(MergeIndex).Project = mp;
    merge_detail::UniteProjects(ws, mp, MergeIndex, list, group, keepTrackOfOriginalProject);
    ws.Project(mp).Loaded = true;
    merge_detail::FillCompareSessions(ws, mp, list, CompareSession);
  }
  SizeValueArrays(ws, MergeIndex, fHomogeneous);
}

}  // namespace

void MakeMergedAndCompareSessions(Workspace& ws, std::int32_t mergeIndex, Array1<Session>& compared,
                                  const Array1<std::int32_t>& sessions, const MergeOptions& options,
                                  MergedSelectionView* view) {
  ZOL_TRACE_ARGS("Merge.MakeMergedAndCompareSessions",
                 [&] { return zolParamsText({zolParamToText("MergeIndex", mergeIndex)}); });
  CheckList(ws, mergeIndex, sessions);
  if (mergeIndex < 0 || mergeIndex > ws.Session.UBound()) {
    throw MergeError("no session slot " + std::to_string(mergeIndex) + " to merge into");
  }
  try {
    MakeFrame(ws, mergeIndex, compared, options.homogeneous, sessions, options.group,
              options.keepTrackOfOriginalProject);
    merge_detail::SumSessions(ws, mergeIndex, options.homogeneous, sessions, compared);
    merge_detail::DeriveMergedValues(ws, mergeIndex, options.homogeneous, sessions, compared);
  } catch (const BoundsError& e) {
    throw MergeError(std::string("a session's values don't fit its project: ") + e.what());
  }
  if (view) view->ShowMergedSession(mergeIndex, options.group);
}

}  // namespace zol
