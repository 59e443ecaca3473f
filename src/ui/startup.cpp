#include "ui/startup.h"

#include <signal.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "base/ini_file.h"
#include "base/paths.h"
#include "base/text.h"

namespace zol {

namespace {

namespace fs = std::filesystem;

// The process that made a folder "Rtf<pid>", if its name says one.
bool namesLivingProcess(const std::string& folderName) {
  const std::string digits = folderName.substr(3);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
    return false;
  }
  const long pid = std::strtol(digits.c_str(), nullptr, 10);
  if (pid <= 0) return false;
  // Signal 0 only asks whether the process exists; EPERM means it does.
  return kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM;
}

}  // namespace

bool commandLineHasNoShow(const std::vector<std::string>& args) {
  for (const std::string& a : args) {
    if (InStr(LCase(a), "noshow") > 0) return true;
  }
  return false;
}

void clearCancelOperations(const std::string& iniFile) {
  try {
    VBWritePrivateProfileString("Zolmark", "CancelOperations", "0", iniFile);
  } catch (const std::exception&) {
    // A read-only settings file: nothing to clear, nothing to stop the start.
  }
}

int cleanOldRtfFolders(const std::string& appFolder) {
  std::error_code ec;
  const fs::path temp = fs::path(ToNativePath(appFolder)) / "Temp";
  int removed = 0;
  for (const auto& entry : fs::directory_iterator(temp, ec)) {
    const std::string name = entry.path().filename().string();
    if (name.rfind("Rtf", 0) != 0 || !entry.is_directory(ec)) continue;
    if (namesLivingProcess(name)) continue;
    std::error_code removeError;
    // Read-only files inside are removed too: only the folder's own
    // permissions count for deleting them.
    if (fs::remove_all(entry.path(), removeError) != static_cast<std::uintmax_t>(-1) &&
        !removeError) {
      ++removed;
    }
  }
  return removed;
}

int handOverFiles(const std::string& iniFile, const std::vector<std::string>& files,
                  const std::string& currentFolder) {
  int counter = 0;
  int written = 0;
  for (const std::string& file : files) {
    fs::path p(file);
    if (p.is_relative() && !currentFolder.empty()) p = fs::path(currentFolder) / p;
    while (!VBGetPrivateProfileString("Profiler", "Session" + std::to_string(counter), "", iniFile)
                .empty()) {
      ++counter;
    }
    VBWritePrivateProfileString("Profiler", "Session" + std::to_string(counter),
                                p.lexically_normal().string(), iniFile);
    ++counter;
    ++written;
  }
  return written;
}

}  // namespace zol
