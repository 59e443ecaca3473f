#pragma once

// Where the program keeps its settings and working folders: the application
// folder. On Windows it was simply the executable's folder; here that folder
// may be read-only (an installed program), so there is a fallback per user.

#include <string>

namespace zol {

// What the choice of the application folder depends on; empty for "not set".
struct AppFolderSources {
  std::string zolmarkHome;  // the ZOLMARK_HOME environment variable
  std::string exeFolder;    // the folder of the running executable
  std::string xdgDataHome;  // XDG_DATA_HOME
  std::string home;         // the user's home folder
};

// The sources of this process: its environment, /proc/self/exe, and the
// password database when HOME is not set.
AppFolderSources CurrentAppFolderSources();

// The application folder, without a trailing separator: `zolmarkHome` when set,
// made if missing; else `exeFolder` when it is writable; else `xdgDataHome`
// followed by "/zolmark", or `home` followed by "/.local/share/zolmark", made
// if missing. Throws FileError when the chosen folder can't be made, and when
// no folder is available at all.
std::string AppFolderFrom(const AppFolderSources& sources);

// AppFolderFrom(CurrentAppFolderSources()).
std::string AppFolder();

// The full path of the suite's settings file, "Zolmark.ini" in the application
// folder; in `appFolderOverride` instead when that is not empty (a Workspace's
// appFolder).
std::string GetIniFile(const std::string& appFolderOverride = "");

}  // namespace zol
