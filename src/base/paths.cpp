#include "base/paths.h"

#include <algorithm>

namespace zol {
namespace {

// Index of the last separator, or npos.
std::size_t LastSeparator(const std::string& path) {
  return path.find_last_of("\\/");
}

bool StartsWithTwoSeparators(const std::string& path) {
  return path.size() >= 2 && IsPathSeparator(path[0]) && IsPathSeparator(path[1]);
}

bool IsRootedPath(const std::string& path) {
  const bool hasDriveRoot =
      path.find(":\\") != std::string::npos || path.find(":/") != std::string::npos;
  return hasDriveRoot || StartsWithTwoSeparators(path) || (!path.empty() && path[0] == '/');
}

// Where the walk over separators begins: a UNC path ("\\srv\share") passes over
// its two leading separators; a Linux path keeps its root "/" as a folder; a
// drive path passes over the first character, which can't be a separator.
std::size_t FirstSeparatorSearchStart(const std::string& path) {
  if (StartsWithTwoSeparators(path)) return 2;
  if (!path.empty() && path[0] == '/') return 0;
  return 1;
}

// How many times "..\" or "../" occurs, each search resuming behind the last hit.
int CountParentSteps(const std::string& relPath) {
  int n = 0;
  for (std::size_t i = 0; i + 3 <= relPath.size();) {
    if (relPath[i] == '.' && relPath[i + 1] == '.' && IsPathSeparator(relPath[i + 2])) {
      ++n;
      i += 3;
    } else {
      ++i;
    }
  }
  return n;
}

}  // namespace

bool IsPathSeparator(char c) {
  return c == '\\' || c == '/';
}

std::string GetFileName(const std::string& FilePath) {
  const auto pos = LastSeparator(FilePath);
  return pos == std::string::npos ? FilePath : FilePath.substr(pos + 1);
}

std::string GetFileBody(const std::string& FilePath) {
  std::string name = GetFileName(FilePath);
  const auto dot = name.rfind('.');
  if (dot != std::string::npos) name.erase(dot);
  return name;
}

std::string GetPath(const std::string& FilePath) {
  const auto pos = LastSeparator(FilePath);
  return pos == std::string::npos ? std::string() : FilePath.substr(0, pos);
}

Array1<std::string> GetParseDir(const std::string& file) {
  Array1<std::string> dirs;
  dirs.ReDim(1);
  if (!IsRootedPath(file)) {
    const auto colon = file.find(':');
    if (colon != std::string::npos) dirs(1) = file.substr(0, colon + 1);
    return dirs;
  }
  int n = 0;
  for (std::size_t i = FirstSeparatorSearchStart(file); i < file.size(); ++i) {
    if (!IsPathSeparator(file[i])) continue;
    ++n;
    if (n > 1) dirs.ReDimPreserve(n);
    dirs(n) = file.substr(0, i + 1);
  }
  return dirs;
}

std::string ToAbsolutePath(const std::string& relPath, const std::string& refPath) {
  const Array1<std::string> dirs = GetParseDir(refPath + "x");
  const int n = CountParentSteps(relPath);
  const int index = dirs.UBound() - n;
  if (index < 1) {
    throw BoundsError("The path \"" + relPath + "\" goes up " + std::to_string(n) +
                      " folders, more than \"" + refPath + "\" has");
  }
  const auto cut = std::min(relPath.size(), static_cast<std::size_t>(3 * n));
  return dirs(index) + relPath.substr(cut);
}

std::string ToNativePath(const std::string& path) {
  std::string native = path;
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

std::string JoinPath(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  if (IsPathSeparator(folder.back())) return folder + name;
  return folder + "/" + name;
}

}  // namespace zol
