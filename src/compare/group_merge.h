#pragma once

// Merging of session groups. Every group has a merged session of its own
// members, merged by name since they are runs of different projects; the
// groups of one project group can also be merged member by member into a new
// group in slot 0 of SessionGroup.

#include <cstdint>

#include "base/vbarray.h"
#include "compare/merged_selection_view.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

// Builds SessionGroup(0) from the ticked groups: for each member of the first
// ticked group, a new session that merges by ID the first member of each
// ticked group with the same project. The new sessions are Loaded, Selected
// and IsMergedGroupSession, and their branches go below "MERGE" and "COMPARE"
// through `view` (may be null).
void MakeMergedAndCompareSessionsGroups(Workspace& ws, MergedSelectionView* view);

// Makes SessionGroup(csg).GroupMergedSession: a new, Invisible and Loaded
// session that merges all members of the group by name, each merged module
// recording its project. A group without members gets none. Throws
// MergeError for a member that isn't loaded.
void CreateGroupSession(Workspace& ws, std::int32_t csg);

// The sessions whose columns a compared grid shows, in rising order: the
// ticked sessions, or, for a selection of groups only, the ticked members of
// ticked groups whose project is `project`. Returns their number.
std::int32_t GetComparedSessions(const Workspace& ws, std::int32_t project,
                                 Array1<std::int32_t>& list);

// The ticked group (slot 0 included) whose merged session is `cs`, or -1.
std::int32_t GetGroupMergedSession(const Workspace& ws, std::int32_t cs);

// The reference to the values of slot `slot` of Session: the merged session
// for slot 0, a ticked group's merged session (the merged selection of ticked
// groups included), or a single session.
SessionRef SessionRefOfSlot(const Workspace& ws, std::int32_t slot);

}  // namespace zol
