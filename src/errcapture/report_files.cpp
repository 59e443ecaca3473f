#include "errcapture/report_files.h"

#include <sys/utsname.h>
#include <unistd.h>
#include <zip.h>

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "base/files.h"
#include "base/paths.h"
#include "base/version.h"

namespace zol {

namespace {

std::string Trimmed(std::string s) {
  while (!s.empty() && (s.back() == '\n' || s.back() == '\r' || s.back() == ' ')) s.pop_back();
  return s;
}

// The value of KEY=value in /etc/os-release, without quotes.
std::string OsRelease(const std::string& key) {
  std::ifstream in("/etc/os-release");
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind(key + "=", 0) != 0) continue;
    std::string value = line.substr(key.size() + 1);
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'')) {
      value = value.substr(1, value.size() - 2);
    }
    return value;
  }
  return "unknown";
}

// A line of /proc/meminfo ("MemTotal:  16314612 kB"), its value.
std::string MemInfo(const std::string& key) {
  std::ifstream in("/proc/meminfo");
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind(key + ":", 0) != 0) continue;
    std::string value = line.substr(key.size() + 1);
    value.erase(0, value.find_first_not_of(' '));
    return value;
  }
  return "unknown";
}

std::string CommandLine() {
  std::string raw = LoadFile("/proc/self/cmdline");
  for (char& c : raw) {
    if (c == '\0') c = ' ';
  }
  return Trimmed(raw);
}

std::string Executable() {
  char buf[4096];
  const ssize_t n = ::readlink("/proc/self/exe", buf, sizeof buf - 1);
  return n > 0 ? std::string(buf, static_cast<std::size_t>(n)) : "unknown";
}

}  // namespace

std::string GetVersionInfo() {
  std::ostringstream out;
  out << kAppTitle << " " << kAppMajor << "." << kAppMinor << "." << kAppRevision << "\r\n";
  out << "Executable: " << Executable() << "\r\n";
  out << "Compiler: " << __VERSION__ << "\r\n";
  return out.str();
}

std::string GetSystemInfo(const std::vector<std::string>& displayInfo) {
  std::ostringstream out;
  out << "Distribution: " << OsRelease("PRETTY_NAME") << "\r\n";
  utsname u{};
  if (::uname(&u) == 0) {
    out << "Kernel: " << u.sysname << " " << u.release << " " << u.version << " " << u.machine
        << "\r\n";
  }
  out << "Processors: " << ::sysconf(_SC_NPROCESSORS_ONLN) << "\r\n";
  out << "Memory: " << MemInfo("MemTotal") << " (available " << MemInfo("MemAvailable") << ")\r\n";
  out << "Command line: " << CommandLine() << "\r\n";
  const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
  const char* session = std::getenv("XDG_SESSION_TYPE");
  out << "Desktop: " << (desktop ? desktop : "none") << " ("
      << (session ? session : "no session type") << ")\r\n";
  const char* lang = std::getenv("LANG");
  out << "Language: " << (lang ? lang : "none") << "\r\n";
  for (const std::string& line : displayInfo) out << line << "\r\n";
  return out.str();
}

bool ZipFiles(const std::string& archive, const std::vector<std::string>& files) {
  int error = 0;
  zip_t* z = zip_open(archive.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
  if (z == nullptr) return false;
  for (const std::string& f : files) {
    if (!FileExist(f)) continue;
    zip_source_t* source = zip_source_file(z, f.c_str(), 0, -1);
    if (source == nullptr) continue;
    if (zip_file_add(z, GetFileName(f).c_str(), source, ZIP_FL_OVERWRITE) < 0) {
      zip_source_free(source);
    }
  }
  if (zip_close(z) != 0) {
    zip_discard(z);
    return false;
  }
  return FileExist(archive);
}

std::vector<std::string> ZipEntries(const std::string& archive) {
  std::vector<std::string> names;
  int error = 0;
  zip_t* z = zip_open(archive.c_str(), ZIP_RDONLY, &error);
  if (z == nullptr) return names;
  const zip_int64_t n = zip_get_num_entries(z, 0);
  for (zip_int64_t i = 0; i < n; ++i) {
    if (const char* name = zip_get_name(z, static_cast<zip_uint64_t>(i), 0)) names.push_back(name);
  }
  zip_close(z);
  return names;
}

std::string MailtoEncode(const std::string& text) {
  static const char* hex = "0123456789ABCDEF";
  std::string out;
  for (unsigned char c : text) {
    if (std::isalnum(c) || c == '-' || c == '_' || c == '.' || c == '~') {
      out += static_cast<char>(c);
    } else {
      out += '%';
      out += hex[c >> 4];
      out += hex[c & 15];
    }
  }
  return out;
}

}  // namespace zol
