#include "base/files.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

#include "base/paths.h"

namespace zol {
namespace {

namespace fs = std::filesystem;

// Closes the descriptor on every way out.
class FileDescriptor {
 public:
  explicit FileDescriptor(int fd) : fd_(fd) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&&) = delete;
  ~FileDescriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }
  // Closes now; returns 0 or the error number.
  int Close() {
    const int rc = ::close(fd_);
    fd_ = -1;
    return rc == 0 ? 0 : errno;
  }

 private:
  int fd_;
};

// Returns 0 or the error number.
int WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0) {
      if (errno == EINTR) continue;
      return errno;
    }
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return 0;
}

void WriteWithFlags(const std::string& fileName, std::string_view bytes, int flags) {
  const std::string path = ToNativePath(fileName);
  FileDescriptor fd(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0666));
  if (!fd.valid()) throw FileError("Cannot open file for writing", fileName, errno);
  if (const int err = WriteAll(fd.get(), bytes))
    throw FileError("Cannot write file", fileName, err);
  if (const int err = fd.Close()) throw FileError("Cannot write file", fileName, err);
}

std::string TrimTrailingSeparators(std::string path) {
  while (!path.empty() && IsPathSeparator(path.back())) path.pop_back();
  return path;
}

bool PathTaken(const std::string& path) {
  struct stat st {};
  return ::lstat(ToNativePath(path).c_str(), &st) == 0;
}

// The file that a write to `path` should replace: the target of a link.
std::string FollowLink(const std::string& path) {
  std::error_code ec;
  if (!fs::is_symlink(path, ec)) return path;
  const auto target = fs::canonical(path, ec);
  return ec ? path : target.string();
}

// A name in the folder of `target` that nothing has yet, made and opened;
// `err` takes the error number when none could be made.
FileDescriptor CreateSibling(const std::string& target, std::string& siblingPath, int& err) {
  static std::atomic<unsigned> counter{0};
  const std::string folder = GetPath(target);
  const std::string stem = "." + GetFileName(target) + ".";
  for (int attempt = 0; attempt < 100; ++attempt) {
    const auto tick = std::chrono::steady_clock::now().time_since_epoch().count();
    siblingPath = JoinPath(folder.empty() && target[0] == '/' ? "/" : folder,
                           stem + std::to_string(::getpid()) + "-" + std::to_string(counter++) +
                               "-" + std::to_string(tick % 100000) + ".tmp");
    FileDescriptor fd(::open(siblingPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    err = errno;
    if (fd.valid() || err != EEXIST) return fd;
  }
  return FileDescriptor(-1);
}

// The process id in the name of a sibling made by CreateSibling
// (".<name>.<pid>-<n>-<tick>.tmp"); 0 for any other name.
pid_t SiblingOwner(const std::string& name) {
  if (name.size() < 6 || name[0] != '.' || !name.ends_with(".tmp")) return 0;
  const std::string stem = name.substr(0, name.size() - 4);
  const auto tickDash = stem.rfind('-');
  if (tickDash == std::string::npos || tickDash == 0) return 0;
  const auto countDash = stem.rfind('-', tickDash - 1);
  const auto dot = countDash == std::string::npos ? std::string::npos : stem.rfind('.', countDash);
  if (dot == std::string::npos || dot == 0) return 0;
  const std::string pid = stem.substr(dot + 1, countDash - dot - 1);
  const auto digitsOnly = [](std::string_view s) {
    return !s.empty() && s.size() <= 9 && s.find_first_not_of("0123456789") == s.npos;
  };
  if (!digitsOnly(pid) || !digitsOnly(stem.substr(countDash + 1, tickDash - countDash - 1)) ||
      !digitsOnly(stem.substr(tickDash + 1))) {
    return 0;
  }
  return static_cast<pid_t>(std::stol(pid));
}

// Removes the siblings that a write killed before its rename left in
// `folder`: those whose process is gone. A live process's are its own
// business (it may be writing right now).
void RemoveStaleSiblings(const std::string& folder) {
  std::error_code ec;
  for (fs::directory_iterator it(folder.empty() ? "." : folder, ec), end; !ec && it != end;
       it.increment(ec)) {
    const pid_t owner = SiblingOwner(it->path().filename().string());
    if (owner <= 0 || owner == ::getpid()) continue;
    if (::kill(owner, 0) != 0 && errno == ESRCH) {
      std::error_code ignored;
      fs::remove(it->path(), ignored);
    }
  }
}

// Makes a rename durable; a failure here loses nothing already written.
void SyncFolderOf(const std::string& path) {
  const std::string folder = GetPath(path);
  FileDescriptor fd(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY));
  if (fd.valid()) ::fsync(fd.get());
}

}  // namespace

FileError::FileError(const std::string& action, const std::string& path, int osError)
    : std::runtime_error(action + " \"" + path + "\": " + std::strerror(osError)),
      path_(path),
      osError_(osError) {}

FileError::FileError(const std::string& message, const std::string& path)
    : std::runtime_error(message + " \"" + path + "\""), path_(path) {}

bool FileExist(const std::string& fileName) {
  struct stat st {};
  return ::stat(ToNativePath(fileName).c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool FolderExist(const std::string& folderPath) {
  struct stat st {};
  return ::stat(ToNativePath(folderPath).c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

std::string LoadFile(const std::string& sFileName) {
  const std::string path = ToNativePath(sFileName);
  FileDescriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!fd.valid()) {
    if (errno == ENOENT || errno == ENOTDIR) return {};
    throw FileError("Cannot open file", sFileName, errno);
  }
  struct stat st {};
  if (::fstat(fd.get(), &st) == 0 && S_ISDIR(st.st_mode)) {
    throw FileError("Cannot read file", sFileName, EISDIR);
  }
  std::string content;
  content.reserve(st.st_size > 0 ? static_cast<std::size_t>(st.st_size) : 0);
  char buffer[65536];
  for (;;) {
    const ssize_t n = ::read(fd.get(), buffer, sizeof buffer);
    if (n == 0) break;
    if (n < 0) {
      if (errno == EINTR) continue;
      throw FileError("Cannot read file", sFileName, errno);
    }
    content.append(buffer, static_cast<std::size_t>(n));
  }
  return content;
}

void WriteFile(const std::string& fileName, std::string_view text) {
  WriteWithFlags(fileName, text, O_TRUNC);
}

void AppendToFile(const std::string& fileName, std::string_view text) {
  WriteWithFlags(fileName, text, O_APPEND);
}

void WriteFileAtomic(const std::string& fileName, std::string_view bytes) {
  if (fileName.empty()) throw FileError("Cannot write a file without a name", fileName);
  const std::string target = FollowLink(ToNativePath(fileName));
  RemoveStaleSiblings(GetPath(target));
  std::string sibling;
  int createError = 0;
  FileDescriptor fd = CreateSibling(target, sibling, createError);
  if (!fd.valid()) throw FileError("Cannot create a temporary file beside", fileName, createError);

  auto fail = [&](int err) {
    if (fd.valid()) fd.Close();
    ::unlink(sibling.c_str());
    throw FileError("Cannot write file", fileName, err);
  };
  if (const int err = WriteAll(fd.get(), bytes)) fail(err);
  struct stat old {};
  if (::stat(target.c_str(), &old) == 0 && ::fchmod(fd.get(), old.st_mode & 07777) != 0) {
    fail(errno);
  }
  if (::fsync(fd.get()) != 0) fail(errno);
  if (const int err = fd.Close()) fail(err);
  if (::rename(sibling.c_str(), target.c_str()) != 0) fail(errno);
  SyncFolderOf(target);
}

std::string GetFreeFile(const std::string& fileName, const std::string& Separator,
                        bool ForceNumbered) {
  if (!ForceNumbered && !PathTaken(fileName)) return fileName;
  const std::size_t nameStart = fileName.size() - GetFileName(fileName).size();
  std::size_t dot = fileName.rfind('.');
  if (dot == std::string::npos || dot <= nameStart) dot = fileName.size();
  const std::string body = fileName.substr(0, dot);
  const std::string extension = fileName.substr(dot);
  for (long n = 1;; ++n) {
    std::string candidate = body + Separator + std::to_string(n) + extension;
    if (!PathTaken(candidate)) return candidate;
  }
}

void MakeDir(const std::string& dirstring) {
  const std::string folder = ToNativePath(TrimTrailingSeparators(dirstring));
  if (folder.empty()) return;
  std::error_code ec;
  fs::create_directories(folder, ec);
  if (FolderExist(folder)) return;
  throw FileError("Cannot create folder", dirstring, ec ? ec.value() : ENOTDIR);
}

void DeleteFolder(const std::string& arg) {
  const fs::path folder = fs::path(ToNativePath(TrimTrailingSeparators(arg))).lexically_normal();
  if (folder.empty() || folder == "." || folder == folder.root_path()) {
    throw FileError("Refusing to delete the folder", arg);
  }
  std::error_code ec;
  fs::remove_all(folder, ec);
  if (ec) throw FileError("Cannot delete folder", arg, ec.value());
}

}  // namespace zol
