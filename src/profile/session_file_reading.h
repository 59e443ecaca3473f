#pragma once

// Steps shared by the readers of .pfd and group files (session_files.cpp and
// group_files.cpp); not for use outside this folder.

#include <cstdint>
#include <string>

#include "session/workspace.h"

namespace zol::session_file_detail {

// The whole file; SessionFileError when it is missing or can't be read.
std::string LoadWholeFile(const std::string& path);

// The message for a file that is neither of this program's formats.
void ShowNotCompatible(Workspace& ws, const std::string& path);

// Reads the .pfd `path` into `s` as LoadSessionInfo does. A project file that
// isn't where the file says is looked for in `besideFolder`. On false or an
// exception `s` may be partly changed: callers pass a scratch copy.
bool ReadSessionFile(Workspace& ws, Session& s, const std::string& path,
                     const std::string& besideFolder);

// ReadSessionHeader with the same choice of `besideFolder`.
bool ReadSessionHeaderFrom(Workspace& ws, Session& s, const std::string& path,
                           const std::string& besideFolder);

}  // namespace zol::session_file_detail
