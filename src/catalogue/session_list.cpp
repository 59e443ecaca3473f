#include "catalogue/session_list.h"

#include <charconv>
#include <filesystem>
#include <map>

#include "base/files.h"
#include "base/path_resolver.h"
#include "base/paths.h"
#include "base/text.h"

namespace zol {

namespace {

// Whole kilobytes of the file, 0 when it can't be found.
std::string KilobytesOf(const std::string& path) {
  std::error_code ec;
  const auto found = ResolveExistingFile(path);
  const std::uintmax_t bytes = found ? std::filesystem::file_size(ToNativePath(*found), ec) : 0;
  return std::to_string(ec ? 0 : bytes / 1024);
}

std::string SessionFileColumn(const std::string& path) {
  return KilobytesOf(path) + " Kb: " + path;
}

// Reads each project file once per listing: many sessions share a project.
class ProjectTitles {
 public:
  const ProjectTitle& Of(const std::string& projectFile) {
    auto it = titles_.find(projectFile);
    if (it == titles_.end()) it = titles_.emplace(projectFile, ReadProjectTitle(projectFile)).first;
    return it->second;
  }

 private:
  std::map<std::string, ProjectTitle> titles_;
};

SessionListRow SessionRow(const Workspace& ws, std::int32_t cs, ProjectTitles& titles) {
  const Session& s = ws.Session(cs);
  const ProjectTitle& title = titles.Of(s.ProjectFile);
  return {SessionRowKey(cs),
          {s.Name, s.DateTime, std::to_string(s.Project) + "-" + title.Name, title.Version,
           SessionFileColumn(s.SessionFile)},
          s.Selected};
}

SessionListRow GroupRow(const Workspace& ws, std::int32_t sg) {
  const SessionGroup& g = ws.SessionGroup(sg);
  return {GroupRowKey(sg),
          {g.Name, g.DateTime, std::to_string(g.Project) + "-" + GetFileName(g.GroupFile),
           "(Group)", SessionFileColumn(g.SessionFile)},
          g.Selected};
}

}  // namespace

std::string SessionRowKey(std::int32_t cs) {
  return "K" + std::to_string(cs);
}

std::string GroupRowKey(std::int32_t sg) {
  return "G" + std::to_string(sg);
}

std::string RowKeyText(const RowKey& row) {
  return row.kind == RowKind::Session ? SessionRowKey(row.index) : GroupRowKey(row.index);
}

std::optional<RowKey> ParseRowKey(std::string_view key) {
  if (key.size() < 2 || (key[0] != 'K' && key[0] != 'G')) return std::nullopt;
  std::int32_t index = 0;
  const char* end = key.data() + key.size();
  const auto [ptr, ec] = std::from_chars(key.data() + 1, end, index);
  if (ec != std::errc() || ptr != end || index < 0) return std::nullopt;
  return RowKey{static_cast<RowKind>(key[0]), index};
}

bool HasSessionRow(const Workspace& ws, std::int32_t cs) {
  const Session& s = ws.Session(cs);
  return !s.SessionFile.empty() && !s.Invisible && !s.IsMergedGroupSession;
}

std::vector<SessionListRow> SessionListRows(const Workspace& ws) {
  std::vector<SessionListRow> rows;
  ProjectTitles titles;
  for (std::int32_t cs = 1; cs <= ws.nSession; ++cs) {
    if (HasSessionRow(ws, cs)) rows.push_back(SessionRow(ws, cs, titles));
  }
  for (std::int32_t sg = 1; sg <= ws.nSessionGroup; ++sg) {
    if (!ws.SessionGroup(sg).SessionFile.empty()) rows.push_back(GroupRow(ws, sg));
  }
  return rows;
}

std::optional<std::string> ProjectFileValue(std::string_view vbpText, std::string_view key) {
  std::size_t start = 0;
  while (start < vbpText.size()) {
    std::size_t end = vbpText.find('\n', start);
    if (end == std::string_view::npos) end = vbpText.size();
    std::string_view line = vbpText.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.size() >= key.size() && TextEquals(line.substr(0, key.size()), key)) {
      return TrimEx(line.substr(key.size()), "\"");
    }
    start = end + 1;
  }
  return std::nullopt;
}

ProjectTitle ReadProjectTitle(const std::string& projectFile) {
  std::string text;
  if (const auto found = ResolveExistingFile(projectFile)) {
    try {
      text = LoadFile(*found);
    } catch (const FileError&) {
      // An unreadable project leaves the title empty, as a missing one does.
    }
  }
  auto value = [&](std::string_view key) { return ProjectFileValue(text, key).value_or(""); };
  ProjectTitle title;
  title.Name = value("Name=");
  if (title.Name.empty()) title.Name = GetFileBody(projectFile);
  title.Version = value("MajorVer=") + "." + value("MinorVer=") + "." + value("RevisionVer=");
  return title;
}

}  // namespace zol
