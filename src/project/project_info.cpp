#include "project/project_info.h"

#include <filesystem>
#include <optional>

#include "base/files.h"
#include "base/path_resolver.h"
#include "base/paths.h"
#include "base/text.h"
#include "project/file_time.h"
#include "project/module_scan.h"
#include "project/vbp_text.h"

namespace zol {

namespace {

// The whole file that `path` names (a Windows path is looked up
// case-insensitively), or empty text when there is none or it can't be read.
struct LoadedFile {
  std::string path;
  std::string text;
};

LoadedFile LoadResolved(const std::string& path, const std::string& referenceFolder = "") {
  const std::optional<std::string> found = ResolveExistingFile(path, referenceFolder);
  if (!found) return {};
  try {
    return {*found, LoadFile(*found)};
  } catch (const FileError&) {
    return {*found, {}};
  }
}

// The project file of the session: at its own path, else under its file name
// beside the session file (a log moved together with its project).
LoadedFile LoadProjectFile(const Session& s) {
  LoadedFile vbp = LoadResolved(s.ProjectFile);
  if (vbp.text.empty() && !s.SessionFile.empty()) {
    vbp = LoadResolved(GetFileName(s.ProjectFile), ToNativePath(GetPath(s.SessionFile)));
  }
  return vbp;
}

void CheckSessionCount(std::int32_t n, const char* what, const Session& s) {
  if (n < 0 || n > kMaxScanId) {
    throw ScanError("Session \"" + s.SessionFile + "\" tells " + std::to_string(n) + " " + what +
                    ", outside 0.." + std::to_string(kMaxScanId));
  }
}

// A module file: its text, or why it couldn't be read. A folder, a device or
// a pipe in its place is named as such rather than opened (a pipe would block).
struct ModuleFile {
  std::string path;
  std::string text;
  std::string fault;  // empty when the file was read
};

ModuleFile LoadModuleFile(const std::string& name, const std::string& projectFolder) {
  if (const auto found = ResolveExistingFile(name, projectFolder)) {
    try {
      return {*found, LoadFile(*found), ""};
    } catch (const FileError& e) {
      return {*found, {}, e.what()};
    }
  }
  if (ResolveExistingFolder(name, projectFolder)) return {"", "", "a folder, not a file"};
  std::error_code ec;
  const std::filesystem::path native = ToNativePath(name);
  const std::filesystem::path beside =
      native.is_absolute() ? native : std::filesystem::path(projectFolder) / native;
  if (std::filesystem::exists(beside, ec)) {
    return {"", "", "not a regular file (a device, pipe or socket)"};
  }
  return {"", "", "missing"};
}

}  // namespace

std::string AppPrefixFor(std::string_view appName) {
  return InStr(1, appName, "Profiler", CompareMethod::Text) > 0 ? std::string(kProfilerPrefix)
                                                                : std::string(kDebuggerPrefix);
}

std::int32_t AssignProjectToSession(Workspace& ws, std::int32_t /*cs*/,
                                    const std::string& projectFile) {
  const std::optional<std::string> onDisk = ResolveExistingFile(projectFile);
  const double modified = onDisk ? FileModificationDays(*onDisk) : 0;
  for (std::int32_t i = 1; i <= ws.nProject; ++i) {
    const Project& p = ws.Project(i);
    if (!TextEquals(p.ProjectFile, projectFile)) continue;
    if (!onDisk || modified == p.ProjectFileDateTime) return i;
  }
  ++ws.nProject;
  if (ws.nProject > ws.Project.UBound()) ws.Project.ReDimPreserve(ws.nProject);
  Project& p = ws.Project(ws.nProject);
  p = Project{};
  p.ProjectFile = projectFile;
  p.ProjectFileDateTime = modified;
  p.Name = GetFileBody(GetFileBody(projectFile));
  return ws.nProject;
}

void GetProjectInfo(Workspace& ws, std::int32_t cs, const ScanOptions& options) {
  const Session& s = ws.Session(cs);
  CheckSessionCount(s.LinesNumber, "lines", s);
  CheckSessionCount(s.ProceduresNumber, "procedures", s);
  const std::int32_t projectIndex = s.Project;
  Project& project = ws.Project(projectIndex);
  ws.LinesNumber = s.LinesNumber;
  ws.ProceduresNumber = s.ProceduresNumber;
  ws.ModulesNumber = 0;
  if (ws.LinesNumber != 0) project.CodeLine.ReDim(ws.LinesNumber);
  project.Procedure.ReDim(ws.ProceduresNumber);
  project.ListOfModule = "\r";
  project.ListOfProc = "\r";
  project.UnreadModules.clear();

  const LoadedFile vbp = LoadProjectFile(s);
  if (vbp.text.empty()) return;
  const std::string projectFolder = GetPath(vbp.path);
  if (ws.RtfPath.empty()) ResetRtfPath(ws);

  ProjectScan scan(ws, projectIndex, options.AppPrefix);
  for (const VbpModule& entry : ReadVbpModules(vbp.text)) {
    const std::int32_t m = ++ws.ModulesNumber;
    project.Module.ReDimPreserve(m);
    Module& module = project.Module(m);
    module.FileName = entry.FileName;
    module.Type = entry.Type;
    module.BelongToProject = projectIndex;

    const ModuleFile file = LoadModuleFile(entry.FileName, projectFolder);
    if (!file.fault.empty()) project.UnreadModules.push_back({entry.FileName, file.fault});
    ModuleSource source = SplitModuleSource(file.text, entry.FileName);
    module.Name = source.Name;
    project.ListOfModule.append(source.Name).append("\r");
    module.RTFLine.ReDim(CountLineBreaks(source.text) + 1);

    const std::string cleaned =
        scan.ScanModule(m, source.text, file.path.empty() ? entry.FileName : file.path);
    ws.RtfFile = RtfFileName(ws, projectIndex, m);
    try {
      WriteFile(ws.RtfFile, cleaned);
    } catch (const FileError& e) {
      throw ScanError(e.what());
    }
  }
  project.LinesNumber = ws.LinesNumber;
  project.ProceduresNumber = ws.ProceduresNumber;
  project.ModulesNumber = ws.ModulesNumber;
  project.Loaded = true;
}

}  // namespace zol
