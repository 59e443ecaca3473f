#pragma once

// Entering session files into the workspace and loading their values. Adding
// is cheap (headers only); LoadSession does the expensive part once, when a
// session is first needed: scan the project, replay the log or read the .pfd,
// derive the statistics and store a .pfd in place of the log.

#include <cstdint>
#include <string>

#include "profile/log_reader.h"
#include "session/workspace.h"

namespace zol {

// The text shown when a log can't be used, as its first three lines.
std::string CorruptSessionFileMessage(const std::string& tFile);

// Enters one .pfl or .pfd file as a new Session slot, reading only its header,
// and assigns its project entry. A .pfl that is gone but whose .pfd exists
// enters the .pfd. Returns the new index, or 0 when nothing was entered: the
// file is missing, is already entered (under this or another name), is not a
// session file, or its header was refused (the user has been told).
std::int32_t AddSession(Workspace& ws, const std::string& tFile);

// Fills the value arrays of Session(cs). For a log: scan the project if need
// be, replay, derive the statistics, write the .pfd whole and only then delete
// the log; SessionFile names the .pfd afterwards. For a .pfd: read it. Returns
// whether the session is loaded; on any failure the user has been told, the
// session stays unloaded with no half-filled values, and no file is lost.
bool LoadSession(Workspace& ws, std::int32_t cs, ReplayKind kind = ReplayKind::Fast);

}  // namespace zol
