#pragma once

// The lists of recent files in the settings file (GetIniFile of the
// workspace's application folder), section "Profiler": "HistorySession1" to
// "HistorySession10" for session files, "HistoryProject1" to
// "HistoryProject10" for original projects, newest first. A settings file
// that can't be written leaves the lists as they were: they are a convenience,
// and a failure there must not stop a session from being entered.

#include <string>

#include "base/vbarray.h"
#include "session/workspace.h"

namespace zol {

inline constexpr int kFileHistoryLength = 10;

// Puts `arg` on top of the list `fileList` ("?": "HistoryProject" for a name
// ending in ".vbp" or ".vbg", "HistorySession" for any other), removing it
// from further down; the tenth entry before the call falls off. A ".pfl"
// stands in the list as its ".pfd". Nothing happens when the file can't be
// found (a relative or Windows path is looked for beside `referenceFolder`);
// the list holds the path as found on this disk.
void AddToFileHistory(Workspace& ws, const std::string& arg, const std::string& fileList = "?",
                      const std::string& referenceFolder = "");

// The list with prefix `arg`, places 1 to 10, gaps closed (empty places at
// the end).
Array1<std::string> RetrieveFileHistory(const Workspace& ws, const std::string& arg);

// Records an original project. For a run's settings file (".ini") the
// project is its key "Project" of section "Source", so that the list names
// the original project; nothing is recorded when that is empty or the file
// can't be found. `referenceFolder` as for AddToFileHistory.
void AddProjectToFileHistory(Workspace& ws, const std::string& projectFile,
                             const std::string& referenceFolder = "");

}  // namespace zol
