#pragma once

// Merged and compared sessions. When two or more sessions are ticked, one
// session sums them (slot 0 of Session for the merged view) and CompareSession
// holds each session's values numbered like the merged project. Sessions of
// one project merge by ID (homogeneous); sessions of different projects merge
// by module and procedure name into a project built for the merge, each
// project's lines kept as a block of their own (heterogeneous).

#include <cstdint>
#include <stdexcept>

#include "base/vbarray.h"
#include "compare/merged_selection_view.h"
#include "session/workspace.h"

namespace zol {

// A merge asked of sessions that can't take part: none listed, an index that
// isn't a session, or a session whose values aren't loaded.
class MergeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Prepares the state for a new set of ticks: counts the ticked groups and
// single sessions, decides fHomogeneous (and fOnlyGroups when two or more are
// ticked), offers the "COMPARE" and "MERGE" roots through `view`, marks
// Session(0) as the stale merged view and erases CompareSession. Releases the
// slots of a former merged selection of groups.
void InitGlobalSessions(Workspace& ws, MergedSelectionView* view);

// How MakeMergedAndCompareSessions merges.
struct MergeOptions {
  // Merge by ID; all listed sessions share one project.
  bool homogeneous = false;
  // The caller has set the slot up: it isn't cleared, no lines are merged by
  // name, and the tree roots keep their texts.
  bool group = false;
  // Each merged module records its project in BelongToProject.
  bool keepTrackOfOriginalProject = false;
};

// Merges the listed sessions into Session(mergeIndex) and fills `compared`
// (the workspace's CompareSession, or a scratch array the caller throws away)
// with each listed session's module and procedure values renumbered to the
// merged project (heterogeneous merges only). With a `view`, the merged
// session is then shown in it; without, the merge stops after the numbers.
// A heterogeneous merge into slot 0 builds Project(0); into any other slot, a
// new Project entry. Throws MergeError (see above); the tables may then hold a
// partial merge in the target slot, which is never Loaded.
void MakeMergedAndCompareSessions(Workspace& ws, std::int32_t mergeIndex, Array1<Session>& compared,
                                  const Array1<std::int32_t>& sessions, const MergeOptions& options,
                                  MergedSelectionView* view = nullptr);

// Kinds of item for IsNeeded.
inline constexpr std::int32_t kNeededLine = 1;       // a line with hits
inline constexpr std::int32_t kNeededCoverage = 2;   // a procedure with probed lines
inline constexpr std::int32_t kNeededProcedure = 3;  // a procedure with hits

// Whether item `arg` of kind `Obj` has a value in at least one listed session:
// looked up in Session when ws.fHomogeneous, in ws.CompareSession otherwise.
// An item that a session's arrays don't hold counts as no value.
bool IsNeeded(const Workspace& ws, std::int32_t arg, std::int32_t Obj,
              const Array1<std::int32_t>& listOfSessionsToInclude);

// The ticked sessions, 1 to nSession in rising order: what the merged view of
// a selection of sessions is made of.
Array1<std::int32_t> SelectedSessions(const Workspace& ws);

}  // namespace zol
