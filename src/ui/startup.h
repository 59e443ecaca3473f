#pragma once

// The steps of the program's start that touch files and settings rather than
// windows: the command-line word "noshow", the stop request of the suite, the
// folders of cleaned source text that earlier runs left behind, and the hand
// over of a second start's files to the copy that runs.

#include <string>
#include <vector>

namespace zol {

// Whether the command line holds "noshow" anywhere, in any case, also inside
// a longer word.
bool commandLineHasNoShow(const std::vector<std::string>& args);

// Clears a stop request that another program of the suite could have left
// set: key "CancelOperations" of section "Zolmark" becomes "0". A settings
// file that can't be written is no reason not to start.
void clearCancelOperations(const std::string& iniFile);

// Removes the folders "Temp/Rtf*" of the application folder with all their
// files, except those of a process that still runs (the folder's name ends in
// the number of that process, as ResetRtfPath names it). Failures are
// ignored: a folder in use simply stays until a later start. Returns the
// number of folders removed.
int cleanOldRtfFolders(const std::string& appFolder);

// Leaves `files` for the running copy of the program under the keys
// "Session0", "Session1", ... of section "Profiler": each file takes the next
// key, counted from 0, that is missing or empty, so that the keys the running
// copy reads stay without gaps. Relative names are made absolute against
// `currentFolder`. Returns the number of names written.
int handOverFiles(const std::string& iniFile, const std::vector<std::string>& files,
                  const std::string& currentFolder);

}  // namespace zol
