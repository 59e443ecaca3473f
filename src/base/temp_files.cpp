#include "base/temp_files.h"

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "base/files.h"
#include "base/paths.h"

namespace zol {
namespace {

std::string WithTrailingSeparator(std::string folder) {
  while (!folder.empty() && IsPathSeparator(folder.back())) folder.pop_back();
  return folder + "/";
}

void DeleteQuietly(const std::string& entry) {
  try {
    if (IsPathSeparator(entry.back())) {
      if (FolderExist(entry)) DeleteFolder(entry);
    } else if (FileExist(entry)) {
      std::error_code ec;
      std::filesystem::remove(ToNativePath(entry), ec);
    }
  } catch (const std::exception&) {
    // A file still in use stays behind; the list is cleared all the same.
  }
}

}  // namespace

void TempFileRegistry::AddToDeleteOnExit(const std::string& arg, bool isFolder) {
  // An empty folder name would register the root folder.
  if (arg.empty()) return;
  DeleteOnExit_.push_back(isFolder ? WithTrailingSeparator(arg) : arg);
}

void TempFileRegistry::DeleteTempFiles() {
  for (const auto& entry : DeleteOnExit_) DeleteQuietly(entry);
  DeleteOnExit_.clear();
}

std::string GetTempPath() {
  const char* tmpdir = std::getenv("TMPDIR");
  return WithTrailingSeparator(tmpdir != nullptr && *tmpdir != '\0' ? tmpdir : "/tmp");
}

std::string GetTempFileName(const std::string& lpPathName, const std::string& sPrefix,
                            bool deleteOnExit, TempFileRegistry& registry) {
  const std::string folder =
      lpPathName.empty() ? GetTempPath() : WithTrailingSeparator(ToNativePath(lpPathName));
  // The name is cut at a zero character, as the system's C strings would.
  const std::string prefix = sPrefix.substr(0, sPrefix.find('\0'));
  std::string name = folder + prefix + "XXXXXX.tmp";
  const int fd = ::mkstemps(name.data(), 4);
  if (fd < 0) throw FileError("Cannot create a temporary file in", folder, errno);
  ::close(fd);
  if (deleteOnExit) {
    registry.AddToDeleteOnExit(name, false);
  } else {
    ::unlink(name.c_str());
  }
  return name;
}

}  // namespace zol
