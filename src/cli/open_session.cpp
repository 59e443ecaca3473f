#include "cli/open_session.h"

#include <filesystem>
#include <iostream>
#include <sstream>

#include "base/cp1252.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/path_resolver.h"
#include "base/paths.h"
#include "base/vb_format.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_file_lookup.h"
#include "profile/gather_info.h"
#include "project/project_info.h"

namespace zol::cli {

namespace {

bool IsLog(const std::string& file) {
  return !file.empty() && LowerCase1252(file.back()) == 'l';
}

// Replays a log into the session without writing a .pfd or deleting the log.
bool ReplayInMemory(Workspace& ws, std::int32_t cs, ReplayKind kind) {
  Session& s = ws.Session(cs);
  if (!ws.Project(s.Project).Loaded) GetProjectInfo(ws, cs);
  const Project& p = ws.Project(s.Project);
  if (const std::string unread = UnreadModulesMessage(ws, cs); !unread.empty()) {
    std::cerr << "zolprof: " << unread << "\n";
    return false;
  }
  if (p.ModulesNumber == 0 || p.LinesNumber != s.LinesNumber ||
      p.ProceduresNumber != s.ProceduresNumber) {
    std::cerr << "zolprof: " << s.SessionFile << ": the project " << s.ProjectFile
              << " is missing, empty, or does not match the log's counts (" << s.LinesNumber
              << " lines, " << s.ProceduresNumber << " procedures; the project has "
              << p.LinesNumber << " and " << p.ProceduresNumber << ")\n";
    return false;
  }
  try {
    PrepareSessionArrays(ws, cs);
    ReadProfileFile(ws, cs, kind);
  } catch (const LogError& e) {
    std::cerr << "zolprof: " << e.UserMessage() << "\n";
    return false;
  }
  GatherInfo(ws, cs);
  ws.Session(cs).Loaded = true;
  return true;
}

}  // namespace

std::optional<std::int32_t> OpenSession(Workspace& ws, const std::string& file,
                                        const OpenOptions& options) {
  if (!FileExist(file)) {
    std::error_code ec;
    const bool there = std::filesystem::exists(ToNativePath(file), ec);
    std::cerr << "zolprof: " << file << ": "
              << (FolderExist(file) ? "a folder, not a session file"
                  : there           ? "not a regular file (a device, pipe or socket)"
                                    : "no such file")
              << "\n";
    return std::nullopt;
  }
  for (std::int32_t i = 1; i <= ws.nSession; ++i) {
    const std::string& entered = ws.Session(i).SessionFile;
    if (!entered.empty() && SameFile(entered, file)) {
      std::cerr << "zolprof: " << file << ": given twice (the same file as " << entered
                << "); a session is entered once\n";
      return std::nullopt;
    }
  }
  const std::int32_t cs = AddSession(ws, file);
  if (cs == 0) {
    std::cerr << "zolprof: " << file << ": not entered as a session\n";
    return std::nullopt;
  }
  if (!options.projectOverride.empty()) {
    auto vbp = ResolveExistingFile(options.projectOverride);
    if (!vbp) {
      std::cerr << "zolprof: " << options.projectOverride << ": no such project file\n";
      return std::nullopt;
    }
    ws.Session(cs).ProjectFile = *vbp;
    ws.Session(cs).Project = AssignProjectToSession(ws, cs, *vbp);
  }
  if (options.readOnly && IsLog(ws.Session(cs).SessionFile)) {
    if (!ReplayInMemory(ws, cs, options.replay)) return std::nullopt;
    return cs;
  }
  if (!LoadSession(ws, cs, options.replay)) {
    // Some of the load's messages (a project that is gone) don't name the
    // file, and several files may be loaded in one command.
    std::cerr << "zolprof: " << file << ": not loaded\n";
    return std::nullopt;
  }
  return cs;
}

std::string SessionSummary(const Workspace& ws, std::int32_t cs) {
  const Session& s = ws.Session(cs);
  const Project& p = ws.Project(s.Project);
  const ModuleValue& v = s.SessionValue;
  std::int64_t hits = 0;
  for (const CodeLineValue& l : s.CodeLineValue) hits += l.Hits;
  std::ostringstream out;
  out << s.SessionFile << ": " << p.Name << ", " << s.DateTime << ", " << p.ModulesNumber
      << " modules, " << p.ProceduresNumber << " procedures, " << p.LinesNumber << " lines; "
      << hits << " line hits, total time " << Format(v.TotalTime, "0.000000")
      << " s, line coverage " << FormatPercentage(v.LineCoverage) << ", procedure coverage "
      << FormatPercentage(v.ProcedureCoverage) << ", " << s.nFlowPair << " call pairs";
  return out.str();
}

}  // namespace zol::cli
