#include "base/path_resolver.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <vector>

#include "base/cp1252.h"
#include "base/paths.h"

namespace zol {
namespace {

namespace fs = std::filesystem;

enum class Wanted { File, Folder };

bool IsWanted(const fs::path& p, Wanted wanted) {
  std::error_code ec;
  const auto st = fs::status(p, ec);
  return wanted == Wanted::File ? fs::is_regular_file(st) : fs::is_directory(st);
}

bool HasDrive(const std::string& path) {
  return path.size() >= 2 && std::isalpha(static_cast<unsigned char>(path[0])) && path[1] == ':';
}

std::vector<std::string> SplitComponents(const std::string& nativePath) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start <= nativePath.size()) {
    auto end = nativePath.find('/', start);
    if (end == std::string::npos) end = nativePath.size();
    if (end > start) parts.push_back(nativePath.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

std::string JoinComponents(const std::vector<std::string>& parts, std::size_t from) {
  std::string joined;
  for (std::size_t i = from; i < parts.size(); ++i) joined = JoinPath(joined, parts[i]);
  return joined;
}

// The candidate paths of the search, in the order told in the header.
std::vector<std::string> Candidates(const std::string& path, const std::string& referenceFolder) {
  const std::string native = ToNativePath(path);
  const std::string reference = ToNativePath(referenceFolder);
  std::vector<std::string> out;
  auto add = [&out](const std::string& candidate) {
    if (!candidate.empty() && std::find(out.begin(), out.end(), candidate) == out.end()) {
      out.push_back(candidate);
    }
  };
  // With a reference folder, the working folder has no say: a file there that
  // happens to match in exact case would win over the right one.
  auto addRelative = [&](const std::string& relative) {
    add(reference.empty() ? relative : JoinPath(reference, relative));
  };

  std::string absolute;
  if (HasDrive(native)) {
    const std::string rest = native.substr(2);
    if (!rest.empty() && rest[0] == '/') {
      absolute = rest;
    } else {
      addRelative(rest);
    }
  } else if (!native.empty() && native[0] == '/') {
    absolute = native;
  } else {
    addRelative(native);
  }
  if (absolute.empty()) return out;

  add(absolute);
  if (!reference.empty()) {
    const auto parts = SplitComponents(absolute);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if (parts[i] == "." || parts[i] == "..") continue;
      add(JoinPath(reference, JoinComponents(parts, i)));
    }
  }
  return out;
}

// A name on disk matches a component of the searched path when they are equal
// as text, or when the name is UTF-8 whose Windows-1252 spelling is.
bool NamesMatch(const std::string& onDisk, const std::string& wanted) {
  if (EqualsNoCase1252(onDisk, wanted)) return true;
  const bool ascii = std::all_of(onDisk.begin(), onDisk.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (ascii) return false;
  const auto asCp1252 = Utf8ToCp1252(onDisk);
  return asCp1252 && EqualsNoCase1252(*asCp1252, wanted);
}

// The names in `folder` other than `component` itself that match it, in byte
// order so that the search doesn't depend on the order of the listing.
std::vector<std::string> OtherMatchingNames(const fs::path& folder, const std::string& component) {
  std::vector<std::string> names;
  std::error_code ec;
  fs::directory_iterator it(folder.empty() ? fs::path(".") : folder, ec);
  for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
    std::string name = it->path().filename().string();
    if (name != component && NamesMatch(name, component)) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<fs::path> WalkNoCase(const fs::path& base, const std::vector<std::string>& parts,
                                   std::size_t i, Wanted wanted) {
  if (i == parts.size()) {
    if (IsWanted(base, wanted)) return base;
    return std::nullopt;
  }
  const std::string& part = parts[i];
  const fs::path exact = base / part;
  std::error_code ec;
  if (part == "." || part == ".." || fs::exists(exact, ec)) {
    if (auto found = WalkNoCase(exact, parts, i + 1, wanted)) return found;
    if (part == "." || part == "..") return std::nullopt;
  }
  for (const auto& name : OtherMatchingNames(base, part)) {
    if (auto found = WalkNoCase(base / name, parts, i + 1, wanted)) return found;
  }
  return std::nullopt;
}

std::optional<fs::path> FindNoCase(const std::string& candidate, Wanted wanted) {
  const fs::path base = (!candidate.empty() && candidate[0] == '/') ? fs::path("/") : fs::path();
  return WalkNoCase(base, SplitComponents(candidate), 0, wanted);
}

// The found path with "." and ".." folded away, unless links make the folded
// path name another file.
std::string Tidy(const fs::path& found) {
  fs::path normal = found.lexically_normal();
  if (!normal.has_filename() && normal != normal.root_path()) normal = normal.parent_path();
  if (normal == found) return found.string();
  std::error_code ec;
  if (fs::equivalent(normal, found, ec)) return normal.string();
  return found.string();
}

std::optional<std::string> Resolve(const std::string& path, const std::string& referenceFolder,
                                   Wanted wanted) {
  if (path.empty()) return std::nullopt;
  const auto candidates = Candidates(path, referenceFolder);
  for (const auto& candidate : candidates) {
    if (IsWanted(candidate, wanted)) return Tidy(candidate);
  }
  for (const auto& candidate : candidates) {
    if (auto found = FindNoCase(candidate, wanted)) return Tidy(*found);
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> ResolveExistingFile(const std::string& path,
                                               const std::string& referenceFolder) {
  return Resolve(path, referenceFolder, Wanted::File);
}

std::optional<std::string> ResolveExistingFolder(const std::string& path,
                                                 const std::string& referenceFolder) {
  return Resolve(path, referenceFolder, Wanted::Folder);
}

bool FileExistResolved(const std::string& path, const std::string& referenceFolder) {
  return ResolveExistingFile(path, referenceFolder).has_value();
}

}  // namespace zol
