#pragma once

// Session files on disk. A session read from a log is stored once as a .pfd
// file so that later loads need no replay; the sessions of one project-group
// run are stored together in a group file that embeds each member's .pfd.
//
// Writes build the whole file in memory and replace the file in one step, so
// a log can be deleted as soon as its .pfd exists. Reads parse the whole file
// before anything of the session changes: a damaged file leaves the session as
// it was, never half filled.

#include <cstdint>
#include <stdexcept>
#include <string>

#include "session/workspace.h"

namespace zol {

// A session or group file that can't be read or written: missing, unreadable,
// truncated, or with block lengths that don't match its counts. The message
// names the file and the fault.
class SessionFileError : public std::runtime_error {
 public:
  SessionFileError(const std::string& file, const std::string& fault);
  const std::string& file() const { return file_; }
  const std::string& fault() const { return fault_; }

 private:
  std::string file_;
  std::string fault_;
};

// A session or group file that can't be written (a folder in its place, a
// folder without write permission, a full disk): the data is sound, so the
// user is told why the write failed rather than that a file is damaged.
class SessionFileWriteError : public SessionFileError {
 public:
  using SessionFileError::SessionFileError;
};

// The message for a file that is neither a session file nor a group file of
// this version (nor, where a log is allowed, a log).
std::string NotCompatibleMessage(const std::string& path);

// Writes the .pfd of Session(cs), with the counts of its project. The last
// character of SessionFile becomes "d" (".pfl" -> ".pfd", ".PFL" -> ".PFd");
// the name changes once the file is written whole.
void SaveSessionInfo(Workspace& ws, std::int32_t cs);

// Reads the .pfd `path` into Session(cs): header texts, OriginalProjectFile
// from the run's settings file, and all value arrays; the counts go to the
// workspace's LinesNumber, ProceduresNumber and ModulesNumber. Shows the
// progress area while reading. Returns false, with the session unchanged, for
// a file of another format (after telling the user) and for a session whose
// project file can be found neither where it was nor beside `path`, or isn't
// a .vbp (the caller reports that). Throws SessionFileError for a missing,
// unreadable or damaged file. Does not set Loaded.
bool LoadSessionInfo(Workspace& ws, std::int32_t cs, const std::string& path);

// The header of a .pfd as the catalogue enters a session: DateTime, RunType,
// GroupFile, ProjectFile (found on this disk, else beside `path`), IniFile,
// OriginalProjectFile, LinesNumber and ProceduresNumber of `s`. Reads only the
// head of the file. Returns false, after telling the user, for a file of
// another format; throws SessionFileError for a missing, unreadable or
// truncated one.
bool ReadSessionHeader(Workspace& ws, Session& s, const std::string& path);

// Whether `path` begins with the magic of a group file (any case). False for
// a missing or short file.
bool IsGroupFile(const std::string& path);

// DateTime, GroupFile and IniFile of the group file `path` into `g`. Throws
// SessionFileError for a missing, unreadable or truncated file.
void ReadGroupHeader(SessionGroup& g, const std::string& path);

// Writes the group file SessionGroup(csg).SessionFile: the group's texts and,
// per member in order, its Name and its whole .pfd image.
void SaveSessionInfoGroup(Workspace& ws, std::int32_t csg);

// Reads the group file `path` into SessionGroup(csg): its texts, and one new
// Session slot per member (Invisible, Group = csg, header and values read,
// Loaded), listed in Sessions. The members are unpacked into a temporary
// folder that is removed afterwards. A member's project file that is not where
// it was is looked for beside `path`. Returns false, after telling the user,
// for a file of another format. Throws SessionFileError, with no slot added,
// for a missing, unreadable or damaged file or a member whose project can't be
// found. The members' Project entries, the group's merged session and the
// recent projects are left to the catalogue's LoadSessionGroup, which is the
// whole load of a group.
bool LoadSessionInfoGroup(Workspace& ws, std::int32_t csg, const std::string& path);

}  // namespace zol
