#include "catalogue/session_catalogue.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "base/cp1252.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "base/path_resolver.h"
#include "base/paths.h"
#include "base/text.h"
#include "catalogue/file_history.h"
#include "catalogue/session_file_lookup.h"
#include "catalogue/session_list.h"
#include "catalogue/session_load.h"
#include "errcapture/trace.h"
#include "profile/gather_info.h"
#include "profile/pfl_format.h"
#include "profile/session_files.h"
#include "project/project_info.h"

namespace zol {

namespace {

constexpr const char* kSupportAddress = "support@zolmark.com";

char LastChar(const std::string& s) {
  return s.empty() ? '\0' : LowerCase1252(s.back());
}

// A path from a header: the file where it is on this disk, else the file of
// that name beside the session file, else the text as it was (the project is
// then reported missing when the session is loaded).
std::string FindBesideSession(const std::string& path, const std::string& fileName) {
  if (path.empty()) return path;
  const std::string folder = GetPath(fileName);
  if (auto found = ResolveExistingFile(path, folder)) return *found;
  if (auto beside = ResolveExistingFile(GetFileName(path), folder)) return *beside;
  return path;
}

std::string OriginalProjectOf(const std::string& iniFile, const std::string& fileName) {
  if (iniFile.empty()) return "";
  auto ini = ResolveExistingFile(iniFile, GetPath(fileName));
  if (!ini) return "";
  return VBGetPrivateProfileString("Source", "Project", "", *ini);
}

bool AlreadyEntered(const Workspace& ws, const std::string& fileName) {
  for (int i = 1; i <= ws.nSession; ++i) {
    const std::string& f = ws.Session(i).SessionFile;
    if (!f.empty() && (EqualsNoCase1252(f, fileName) || SameFile(f, fileName))) return true;
  }
  for (int i = 1; i <= ws.nSessionGroup; ++i) {
    const std::string& f = ws.SessionGroup(i).SessionFile;
    if (!f.empty() && (EqualsNoCase1252(f, fileName) || SameFile(f, fileName))) return true;
  }
  return false;
}

// Offers to delete a log whose header can't be used. Deleting is the user's
// choice; errors are ignored.
void RefuseLog(Workspace& ws, const std::string& fileName) {
  const std::string text = CorruptSessionFileMessage(fileName) + "\n" +
                           "Please re-instrument the application for profiling. If the problem "
                           "persists, then please contact us at " +
                           kSupportAddress + "\n\nWould you like to delete the session file ?";
  if (ws.prompter().AskToDelete(text) == Answer::Yes) {
    std::error_code ec;
    std::filesystem::remove(fileName, ec);
  }
}

// A count of a log's header, or nothing when the text is no count the tables
// can be sized by (negative, fractional garbage as huge as "1e20").
std::optional<std::int32_t> HeaderCount(const std::string& text) {
  double v = 0;
  try {
    v = Val(text);
  } catch (const std::range_error&) {
    return std::nullopt;  // beyond even a double
  }
  if (!(v >= 0 && v <= kMaxScanId)) return std::nullopt;
  return static_cast<std::int32_t>(v);
}

std::string Quoted(const std::string& text) {
  return "\"" + Abbreviated(text) + "\"";
}

// Header lines of a log into `s`. False when the log was refused.
bool ReadLogHeader(Workspace& ws, Session& s, const std::string& fileName) {
  std::string head;
  {
    std::ifstream in(fileName, std::ios::binary);
    if (!in) {
      // Unreadable is not damaged: the log may be whole, so no deletion is offered.
      const int error = errno;
      ws.prompter().ShowMessage(
          "The session file:\n" + fileName + "\ncan not be opened: " + std::strerror(error),
          MessageKind::Exclamation);
      return false;
    }
    head.resize(pfl::kHeaderSearchBytes);
    in.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(in.gcount()));
  }
  const auto header = pfl::SplitHeader(head);
  if (!header) {
    RefuseLog(ws, fileName);
    return false;
  }
  const auto& line = header->Lines;
  s.GroupFile = line[1];
  if (!s.GroupFile.empty() && !EndsWithNoCase(s.GroupFile, ".vbg")) {
    RefuseLog(ws, fileName);
    return false;
  }
  s.ProjectFile = FindBesideSession(line[2], fileName);
  s.IniFile = line[3];
  s.OriginalProjectFile = OriginalProjectOf(s.IniFile, fileName);
  s.DateTime = line[4];
  const auto lines = HeaderCount(line[5]);
  const auto procedures = HeaderCount(line[6]);
  if (!lines || !procedures) {
    ws.prompter().ShowMessage(CorruptSessionFileMessage(fileName) + "\nIts header tells " +
                                  Quoted(line[5]) + " lines and " + Quoted(line[6]) +
                                  " procedures; each must be a count from 0 to " +
                                  std::to_string(kMaxScanId) + ".",
                              MessageKind::Exclamation);
    return false;
  }
  s.LinesNumber = *lines;
  s.ProceduresNumber = *procedures;
  s.RunType.clear();
  return true;
}

// Tells the user of a session or group file whose header can't be read.
void ReportDamagedHeader(Workspace& ws, const SessionFileError& e) {
  ws.prompter().ShowMessage(CorruptSessionFileMessage(e.file()) + "\n" + e.fault(),
                            MessageKind::Exclamation);
}

// A group file as a new SessionGroup slot; its project entry is keyed by its
// .vbg file. Returns the group's index, 0 when its header can't be read.
std::int32_t AddGroup(Workspace& ws, const std::string& fileName) {
  SessionGroup g;
  try {
    ReadGroupHeader(g, fileName);
  } catch (const SessionFileError& e) {
    ReportDamagedHeader(ws, e);
    return 0;
  }
  g.SessionFile = fileName;
  g.Name = GetFileBody(fileName);
  g.Project = AssignProjectToSession(ws, 0, g.GroupFile);
  const std::int32_t sg = ++ws.nSessionGroup;
  if (sg > ws.SessionGroup.UBound()) ws.SessionGroup.ReDimPreserve(sg);
  ws.SessionGroup(sg) = std::move(g);
  return sg;
}

// Reads the header of a .pfl or .pfd into a new Session slot. A refused file
// leaves the slot counted but blank, so that it has no row.
std::int32_t AddSingleSession(Workspace& ws, const std::string& fileName) {
  const char last = LastChar(fileName);
  if (last != 'd' && last != 'l') return 0;
  const std::int32_t cs = ++ws.nSession;
  Session& s = ws.SessionSlot(cs);
  s.SessionFile = fileName;
  s.Name = GetFileBody(fileName);
  bool ok = false;
  try {
    ok = last == 'l' ? ReadLogHeader(ws, s, fileName) : ReadSessionHeader(ws, s, fileName);
  } catch (const SessionFileError& e) {
    ReportDamagedHeader(ws, e);
  }
  if (!ok) {
    ws.Session(cs) = Session{};
    return 0;
  }
  s.Project = AssignProjectToSession(ws, cs, s.ProjectFile);
  AddProjectToFileHistory(ws, s.IniFile, GetPath(fileName));
  return cs;
}

}  // namespace

std::string CorruptSessionFileMessage(const std::string& fileName) {
  return "The session file:\n" + fileName +
         "\ncan not be read ! It was either corrupted or not generated properly.";
}

std::string UnreadModulesMessage(const Workspace& ws, std::int32_t cs) {
  const Session& s = ws.Session(cs);
  const Project& p = ws.Project(s.Project);
  if (p.UnreadModules.empty()) return "";
  std::string text = "The session file:\n" + s.SessionFile +
                     "\ncan not be loaded: these module files of the project " + p.ProjectFile +
                     " can't be read, and the log is kept until they can:";
  for (const UnreadModule& u : p.UnreadModules) text += "\n" + u.FileName + ": " + u.Fault;
  return text;
}

CatalogueChange AddSession(Workspace& ws, const std::string& fileIn, bool andLoadSession) {
  ZOL_TRACE_ARGS("Catalogue.AddSession",
                 [&] { return zolParamsText({zolParamToText("File", fileIn)}); });
  CatalogueChange change;
  const std::optional<std::string> found = FindSessionFile(fileIn);
  if (!found) return change;
  const std::string& fileName = *found;
  if (AlreadyEntered(ws, fileName)) return change;
  RowKey row;
  if (EndsWithNoCase(fileName, ".pfd") && IsGroupFile(fileName)) {
    row = {RowKind::Group, AddGroup(ws, fileName)};
  } else {
    row = {RowKind::Session, AddSingleSession(ws, fileName)};
  }
  if (row.index == 0) return change;
  change.added.push_back(row);
  if (andLoadSession) {
    if (const std::optional<RowTick> tick = TickRow(ws, row, true)) change.ticks.push_back(*tick);
  }
  return change;
}

std::int32_t AddSession(Workspace& ws, const std::string& fileName) {
  const CatalogueChange change = AddSession(ws, fileName, false);
  if (change.added.empty() || change.added.front().kind != RowKind::Session) return 0;
  return change.added.front().index;
}

bool LoadSession(Workspace& ws, std::int32_t cs, ReplayKind kind) {
  ZOL_TRACE_ARGS("Catalogue.LoadSession",
                 [&] { return zolParamsText({zolParamToText("cs", cs)}); });
  if (ws.Session(cs).Loaded) return true;
  // A stop asked for before this load doesn't end it.
  ws.abort = false;
  SessionLoad load = BeginSessionLoad(ws, cs, kind);
  RunSessionLoad(load, ws.prompter(), [&ws] { return ws.abort; });
  return FinishSessionLoad(ws, std::move(load));
}

}  // namespace zol
