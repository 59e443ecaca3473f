#pragma once

// Ticking session files from the command line as the session pane does: each
// file opened and its branch added to the project tree, then the merged and
// compared roots offered for a selection of two or more.

#include <string>
#include <vector>

#include "catalogue/project_tree.h"
#include "cli/open_session.h"
#include "session/workspace.h"

namespace zol::cli {

// False when a file can't be opened (the reason has been printed).
bool TickSessions(Workspace& ws, ProjectTree& tree, const std::vector<std::string>& files,
                  const OpenOptions& options);

}  // namespace zol::cli
