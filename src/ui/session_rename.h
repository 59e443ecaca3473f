#pragma once

// Renaming a session or a group from the session list: the new name is the
// file's new body, so it must be a valid file name, must not be one of the
// grids' header words, and must not collide with another session file in the
// same folder.

#include <optional>
#include <string>

#include "catalogue/project_tree.h"
#include "session/workspace.h"

namespace zol {

inline constexpr char kForbiddenNameCharacters[] = "/\\<>*?|:\"";

// The warning that refuses `newName`, or nothing when its characters and
// wording are acceptable.
std::optional<std::string> sessionNameRefusal(const std::string& newName);

struct RenameOutcome {
  bool accepted = false;
  // The warning shown to the user when refused (empty for a silent refusal).
  std::string message;
  // The renamed session is the one on display: its title must be redrawn.
  bool titleChanged = false;
};

// Renames the session ("K") or group ("G") of row `rowKey` to `newName`. A
// name that differs from the file's body (case aside) renames the file, in its
// folder and with its extension, unless a ".pfl" or ".pfd" of that name is
// already there. The tree node of a ticked session or group takes the new
// name in place of the old. Throws FileError when the file system refuses the
// rename. The title changes with a group's name, or with the name of the
// session `shown`.
RenameOutcome renameSessionRow(Workspace& ws, ProjectTree& tree, const std::string& rowKey,
                               const std::string& newName, const SessionRef& shown);

}  // namespace zol
