#pragma once

// Whole-file reads and writes, free names and folders. Paths may be written with
// "\" or "/": every "\" is read as a folder separator (see ToNativePath). A
// missing file is a normal case where told; any other failure of the system
// throws FileError naming the file and the system's reason.

#include <stdexcept>
#include <string>
#include <string_view>

namespace zol {

class FileError : public std::runtime_error {
 public:
  // `action` says what failed ("Cannot write file"); the message is
  // action, the quoted path, ": " and the system's text for `osError`.
  FileError(const std::string& action, const std::string& path, int osError);
  // A failure that has no system error behind it.
  FileError(const std::string& message, const std::string& path);

  const std::string& path() const { return path_; }
  int osError() const { return osError_; }

 private:
  std::string path_;
  int osError_ = 0;
};

// A file (or a link to one) exists at `fileName`; false for a folder.
bool FileExist(const std::string& fileName);
// A folder (or a link to one) exists at `folderPath`.
bool FolderExist(const std::string& folderPath);

// The whole file as bytes; empty when it doesn't exist.
std::string LoadFile(const std::string& sFileName);

// Writes `str` as the whole file, replacing any earlier content.
void WriteFile(const std::string& fileName, std::string_view str);
// Appends `str` to the file, which is made if it doesn't exist.
void AppendToFile(const std::string& fileName, std::string_view str);

// Replaces the file by `bytes` so that it is never seen half written: the bytes
// go to a new file in the same folder, are flushed to disk, and that file is
// renamed over `fileName`, keeping the permissions of the file it replaces. On any
// failure the old file is left as it was, the new one removed, and FileError
// thrown. A link is followed: the file it points to is replaced.
// New files left in that folder by such a write that was killed before its
// rename (".<name>.<pid>-...tmp" of a process that no longer runs) are removed
// first.
void WriteFileAtomic(const std::string& fileName, std::string_view bytes);

// A name that nothing on disk has yet. `fileName` is split at the last "." of its
// file name into body and extension (a leading "." doesn't count); unless
// `ForceNumbered`, `fileName` itself is the first candidate, then body, Separator,
// 1, 2, ... and the extension: GetFreeFile("a\Title.pfd", " ", true) gives
// "a\Title 1.pfd", or "a\Title 2.pfd" when that exists. The result keeps the
// separators of `fileName`.
std::string GetFreeFile(const std::string& fileName, const std::string& Separator,
                        bool ForceNumbered);

// Makes the folder with all its parents; trailing separators don't count.
// Throws FileError when it can't be made or a file is in the way.
void MakeDir(const std::string& dirstring);

// Deletes the folder with all its content; a link is removed, not followed.
// Nothing happens when it doesn't exist. Refuses a root or empty path.
void DeleteFolder(const std::string& arg);

}  // namespace zol
