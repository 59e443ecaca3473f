#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

#include "base/cp1252.h"
#include "base/files.h"
#include "base/path_resolver.h"
#include "base/paths.h"
#include "base/text.h"
#include "catalogue/file_history.h"
#include "catalogue/run_settings.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_file_lookup.h"
#include "catalogue/session_list.h"
#include "errcapture/trace.h"
#include "profile/session_file_image.h"
#include "profile/session_files.h"

namespace zol {

namespace {

// What the sessions related to one file are looked for in.
class RelatedSessions {
 public:
  RelatedSessions(Workspace& ws, bool quiet) : ws_(ws), quiet_(quiet) {}

  void FromLog(const std::string& fileName);
  void FromSessionFile(const std::string& fileName);
  void FromProject(const std::string& fileName);
  void FromSettings(const std::string& iniPath);

  void Tell(const std::string& text) {
    if (!quiet_) ws_.prompter().ShowMessage(text, MessageKind::Exclamation);
  }

  // The rows entered so far.
  const CatalogueChange& change() const { return change_; }

 private:
  void FromSettingsText(const std::string& iniText, const std::string& iniFolder);
  void AddAlone(const std::string& fileName) { change_.Append(AddSession(ws_, fileName, false)); }

  Workspace& ws_;
  bool quiet_;
  CatalogueChange change_;
};

std::string LoadTextOrEmpty(const std::string& file) {
  try {
    return LoadFile(file);
  } catch (const FileError&) {
    return "";
  }
}

// The settings file that a header names (a Windows path, usually), as found
// on this disk beside `folder`, with its text; both empty when it is missing.
struct SettingsText {
  std::string file;
  std::string text;
};

SettingsText ReadSettings(const std::string& named, const std::string& folder) {
  const auto found = named.empty() ? std::nullopt : ResolveExistingFile(named, folder);
  if (!found) return {};
  return {*found, LoadTextOrEmpty(*found)};
}

// Whether the run's settings name `fileName`: their text holds `needle` (as
// text), or one of the paths they list is that file on this disk.
bool SettingsNameTheFile(const SettingsText& settings, const std::string& fileName,
                         const std::string& needle) {
  if (InStr(1, settings.text, needle, CompareMethod::Text) > 0) return true;
  for (const std::string& path : ProfilerSessionPaths(settings.text)) {
    const auto found = FindSessionFile(path, GetPath(settings.file));
    if (found && SameFile(*found, fileName)) return true;
  }
  return false;
}

// The first `n` lines of a text file, line ends removed.
std::vector<std::string> FirstLines(const std::string& fileName, int n) {
  std::ifstream in(ToNativePath(fileName), std::ios::binary);
  std::vector<std::string> lines;
  std::string line;
  while (static_cast<int>(lines.size()) < n && std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

std::string FileMagic(const std::string& fileName) {
  std::ifstream in(ToNativePath(fileName), std::ios::binary);
  std::string magic(kMagicLength, '\0');
  in.read(magic.data(), static_cast<std::streamsize>(magic.size()));
  magic.resize(static_cast<std::size_t>(in.gcount()));
  return UCase(magic);
}

// The files of `folder` whose names hold ".pf" (any case), sorted by name as
// the folder listing of the system the runs were made on shows them.
std::vector<std::string> SessionLikeFiles(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(ToNativePath(folder), ec)) {
    const std::string name = entry.path().filename().string();
    if (entry.is_regular_file(ec) && InStr(1, name, ".pf", CompareMethod::Text) > 0) {
      names.push_back(name);
    }
  }
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return LCase(a) < LCase(b); });
  std::vector<std::string> paths;
  for (const std::string& name : names) paths.push_back(JoinPath(folder, name));
  return paths;
}

bool AnyLogOrSessionFile(const std::vector<std::string>& paths) {
  return std::any_of(paths.begin(), paths.end(), [](const std::string& p) {
    return EndsWithNoCase(p, ".pfl") || EndsWithNoCase(p, ".pfd");
  });
}

void RelatedSessions::FromLog(const std::string& fileName) {
  const std::vector<std::string> lines = FirstLines(fileName, 4);
  if (lines.empty() || lines[0] != "02") {
    Tell(NotCompatibleMessage(fileName));
    return;
  }
  const SettingsText settings = ReadSettings(lines.size() == 4 ? lines[3] : "", GetPath(fileName));
  if (!SettingsNameTheFile(settings, fileName, fileName)) {
    AddAlone(fileName);
    return;
  }
  FromSettingsText(settings.text, GetPath(settings.file));
}

void RelatedSessions::FromSessionFile(const std::string& fileName) {
  const std::string magic = FileMagic(fileName);
  std::string iniFile;
  try {
    if (magic == UCase(kGroupFileMagic)) {
      SessionGroup g;
      ReadGroupHeader(g, fileName);
      iniFile = g.IniFile;
    } else if (magic == UCase(kSessionFileMagic)) {
      Session s;
      ReadSessionHeader(ws_, s, fileName);
      iniFile = s.IniFile;
    } else {
      Tell(NotCompatibleMessage(fileName));
      return;
    }
  } catch (const SessionFileError&) {
    AddAlone(fileName);  // which tells the user what is wrong with the file
    return;
  }
  const SettingsText settings = ReadSettings(iniFile, GetPath(fileName));
  const std::string withoutExtension = Left(fileName, static_cast<int>(fileName.size()) - 4);
  if (!SettingsNameTheFile(settings, fileName, withoutExtension)) {
    AddAlone(fileName);
    return;
  }
  FromSettingsText(settings.text, GetPath(settings.file));
}

void RelatedSessions::FromProject(const std::string& fileName) {
  const std::optional<std::string> name = ProjectFileValue(LoadTextOrEmpty(fileName), "Name=");
  if (!name) return;
  const SettingsText settings =
      ReadSettings(ProjectSettingsFile(fileName, *name), GetPath(fileName));
  if (InStr(1, settings.text, kProfilerSessionsSection) > 0) {
    const std::vector<std::string> files = SessionLikeFiles(GetPath(fileName));
    if (!AnyLogOrSessionFile(files)) {
      Tell(kNoSessionToLoadText);
      return;
    }
    for (const std::string& file : files) AddAlone(file);
  }
}

void RelatedSessions::FromSettings(const std::string& iniPath) {
  FromSettingsText(LoadTextOrEmpty(iniPath), GetPath(iniPath));
}

// Every session that the settings list, in file order; a path named again
// further down takes its last place.
void RelatedSessions::FromSettingsText(const std::string& iniText, const std::string& iniFolder) {
  const std::vector<std::string> paths = ProfilerSessionPaths(iniText);
  if (paths.empty()) {
    Tell(kNoSessionToLoadText);
    return;
  }
  for (auto it = paths.begin(); it != paths.end(); ++it) {
    const bool namedAgain = std::any_of(std::next(it), paths.end(),
                                        [&](const std::string& p) { return TextEquals(p, *it); });
    if (namedAgain) continue;
    AddAlone(FindSessionFile(*it, iniFolder).value_or(*it));
  }
}

}  // namespace

CatalogueChange AddSessionGroup(Workspace& ws, const std::string& fileIn, bool quiet) {
  ZOL_TRACE_ARGS("Catalogue.AddSessionGroup",
                 [&] { return zolParamsText({zolParamToText("File", fileIn)}); });
  RelatedSessions related(ws, quiet);
  std::optional<std::string> found = ResolveExistingFile(fileIn);
  if (!found && EndsWithNoCase(fileIn, ".pfl")) found = ResolveExistingFile(WithLastCharD(fileIn));
  if (!found) {
    related.Tell(kNoSessionToLoadText);
    return {};
  }
  const std::string& fileName = *found;
  const std::string extension = LCase(Right(fileName, 4));
  if (extension == ".pfl") {
    related.FromLog(fileName);
  } else if (extension == ".pfd") {
    related.FromSessionFile(fileName);
  } else if (extension == ".vbp") {
    related.FromProject(fileName);
  } else if (extension == ".ini") {
    related.FromSettings(fileName);
  }
  return related.change();
}

CatalogueChange AddSessionFromVBG(Workspace& ws, const std::string& vbgFile) {
  const std::string vbg = ResolveExistingFile(vbgFile).value_or(vbgFile);
  const std::string folder = GetPath(vbg);
  CatalogueChange change = AddSessionGroup(ws, GroupSettingsFile(vbg), true);
  for (const std::string& line : Split(Replace(LoadTextOrEmpty(vbg), "\r\n", "\n"), "\n")) {
    const int at = InStr(1, line, "Project=", CompareMethod::Text);
    if (at == 0) continue;
    const std::string project = Trim(Mid(line, at + 8));
    change.Append(AddSessionGroup(
        ws, ResolveExistingFile(project, folder).value_or(JoinPath(folder, project)), true));
  }
  AddProjectToFileHistory(ws, vbg);
  return change;
}

}  // namespace zol
