#include "base/app_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "base/files.h"
#include "base/paths.h"

namespace zol {
namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string ExecutableFolder() {
  std::error_code ec;
  const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : exe.parent_path().string();
}

std::string HomeFolder() {
  std::string home = Environment("HOME");
  if (home.empty()) {
    if (const passwd* pw = ::getpwuid(::getuid()); pw != nullptr && pw->pw_dir != nullptr) {
      home = pw->pw_dir;
    }
  }
  return home;
}

std::string WithoutTrailingSeparators(std::string folder) {
  while (folder.size() > 1 && IsPathSeparator(folder.back())) folder.pop_back();
  return folder;
}

std::string MadeFolder(const std::string& folder) {
  MakeDir(folder);
  return WithoutTrailingSeparators(folder);
}

}  // namespace

AppFolderSources CurrentAppFolderSources() {
  return {Environment("ZOLMARK_HOME"), ExecutableFolder(), Environment("XDG_DATA_HOME"),
          HomeFolder()};
}

std::string AppFolderFrom(const AppFolderSources& sources) {
  if (!sources.zolmarkHome.empty()) return MadeFolder(sources.zolmarkHome);
  if (!sources.exeFolder.empty() && FolderExist(sources.exeFolder) &&
      ::access(sources.exeFolder.c_str(), W_OK) == 0) {
    return WithoutTrailingSeparators(sources.exeFolder);
  }
  if (!sources.xdgDataHome.empty()) return MadeFolder(JoinPath(sources.xdgDataHome, "zolmark"));
  if (!sources.home.empty()) return MadeFolder(JoinPath(sources.home, ".local/share/zolmark"));
  throw FileError(
      "No application folder: the executable's folder is not writable and neither "
      "ZOLMARK_HOME nor HOME is set; executable folder",
      sources.exeFolder);
}

std::string AppFolder() {
  return AppFolderFrom(CurrentAppFolderSources());
}

std::string GetIniFile(const std::string& appFolderOverride) {
  const std::string folder = appFolderOverride.empty() ? AppFolder() : appFolderOverride;
  return JoinPath(folder, "Zolmark.ini");
}

}  // namespace zol
