#pragma once

// Temporary files and folders that die with the process.

#include <string>
#include <vector>

namespace zol {

// The paths that DeleteTempFiles removes at exit; a path that ends in "\" or
// "/" stands for a folder.
class TempFileRegistry {
 public:
  // For a folder the path gets exactly one trailing separator: its trailing
  // "\" and "/" are trimmed and one "/" appended. An empty path is ignored.
  void AddToDeleteOnExit(const std::string& arg, bool isFolder);
  // Deletes every registered file and folder that still exists, ignoring
  // errors, then empties the list.
  void DeleteTempFiles();

  int nDeleteOnExit() const { return static_cast<int>(DeleteOnExit_.size()); }
  const std::vector<std::string>& DeleteOnExit() const { return DeleteOnExit_; }

 private:
  std::vector<std::string> DeleteOnExit_;
};

// The system's folder for temporary files, with a trailing separator: TMPDIR
// when set, else /tmp/.
std::string GetTempPath();

// A new unique temporary file name in `lpPathName` (GetTempPath() when empty)
// beginning with `sPrefix` and ending in ".tmp". The file is created; with
// deleteOnExit it stays and is registered in `registry`, otherwise it is
// deleted and only the name kept. Throws FileError when the folder can't take
// a new file.
std::string GetTempFileName(const std::string& lpPathName, const std::string& sPrefix,
                            bool deleteOnExit, TempFileRegistry& registry);

}  // namespace zol
