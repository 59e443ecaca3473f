#pragma once

// Saving the merged view of the ticked sessions as one session file.

#include <cstdint>
#include <string>

#include "compare/merged_selection_view.h"
#include "session/workspace.h"

namespace zol {

// Merges the ticked sessions afresh into a new slot and writes it as the .pfd
// `path`, which then loads as an ordinary session of their project: named
// after the file, dated now, with the project, settings and group files of the
// first ticked session. Runs InitGlobalSessions afterwards, since the list of
// sessions has changed. Returns the new session's index, or 0 when nothing
// was saved: fewer than two ticked sessions, sessions of different projects
// (a session file belongs to one project), a name that isn't a .pfd, or a
// write that failed. The user has then been told why.
std::int32_t SaveMergedSession(Workspace& ws, const std::string& path, MergedSelectionView* view);

}  // namespace zol
