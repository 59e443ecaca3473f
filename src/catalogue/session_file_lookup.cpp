#include "catalogue/session_file_lookup.h"

#include <filesystem>

#include "base/cp1252.h"
#include "base/path_resolver.h"
#include "base/paths.h"

namespace zol {

namespace {

// A session keeps its file name for the life of the process, whatever the
// working folder becomes.
std::optional<std::string> Absolute(std::optional<std::string> found) {
  if (!found) return found;
  std::error_code ec;
  const std::filesystem::path full = std::filesystem::absolute(*found, ec);
  return ec ? found : full.lexically_normal().string();
}

}  // namespace

std::optional<std::string> FindSessionFile(const std::string& path,
                                           const std::string& referenceFolder) {
  if (path.empty()) return std::nullopt;
  if (auto found = ResolveExistingFile(path, referenceFolder)) return Absolute(found);
  return Absolute(ResolveExistingFile(WithLastCharD(path), referenceFolder));
}

bool SameFile(const std::string& a, const std::string& b) {
  std::error_code ec;
  return std::filesystem::equivalent(ToNativePath(a), ToNativePath(b), ec) && !ec;
}

bool EndsWithNoCase(std::string_view s, std::string_view suffix) {
  return s.size() >= suffix.size() && EqualsNoCase1252(s.substr(s.size() - suffix.size()), suffix);
}

std::string WithLastCharD(std::string s) {
  if (!s.empty()) s.back() = 'd';
  return s;
}

}  // namespace zol
