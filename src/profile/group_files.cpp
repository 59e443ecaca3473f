#include <vector>

#include "base/files.h"
#include "base/paths.h"
#include "base/temp_files.h"
#include "profile/session_file_image.h"
#include "profile/session_file_reading.h"
#include "profile/session_files.h"

namespace zol {

namespace {

using session_file_detail::LoadWholeFile;

// The folder that the members of a group file are unpacked into: beside a
// fresh temporary name, that name's body followed by "zol". It is removed,
// with whatever it holds, however the load ends.
class UnpackFolder {
 public:
  explicit UnpackFolder(Workspace& ws) {
    const std::string name = GetTempFileName("", "zol", false, ws.tempFiles);
    path_ = JoinPath(GetPath(name), GetFileBody(name) + "zol");
    MakeDir(path_);
  }
  ~UnpackFolder() {
    try {
      DeleteFolder(path_);
    } catch (const std::exception&) {
      // A folder left behind in the temporary area does no harm.
    }
  }
  UnpackFolder(const UnpackFolder&) = delete;
  UnpackFolder& operator=(const UnpackFolder&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

std::string MemberFault(std::size_t i, const std::string& name, const std::string& fault) {
  return "session " + std::to_string(i) + " (\"" + name + "\"): " + fault;
}

// Member `i` of the group file `fileName`, unpacked to `memberFile` and read as a
// session entered from a .pfd: header first, then values. Its project file is
// looked for beside the group file, since the unpacked copy has no
// neighbours. Faults are reported against the group file.
Session ReadMember(Workspace& ws, std::int32_t csg, std::size_t i, const GroupFileMember& member,
                   const std::string& memberFile, const std::string& fileName) {
  if (!HasMagic(member.Content, kSessionFileMagic)) {
    throw SessionFileError(fileName, MemberFault(i, member.Name, "not a session file"));
  }
  Session m;
  m.SessionFile = memberFile;
  m.Name = member.Name;
  m.Invisible = true;
  m.Group = csg;
  const std::string beside = GetPath(fileName);
  bool projectFound = false;
  try {
    WriteFile(memberFile, member.Content);
    session_file_detail::ReadSessionHeaderFrom(ws, m, memberFile, beside);
    projectFound = session_file_detail::ReadSessionFile(ws, m, memberFile, beside);
  } catch (const SessionFileError& e) {
    throw SessionFileError(fileName, MemberFault(i, member.Name, e.fault()));
  } catch (const FileError& e) {
    throw SessionFileError(fileName, MemberFault(i, member.Name, e.what()));
  }
  if (!projectFound) {
    throw SessionFileError(fileName, MemberFault(i, member.Name,
                                                 "its project file \"" + m.ProjectFile +
                                                     "\" can't be found or isn't a .vbp file"));
  }
  m.Loaded = true;
  return m;
}

}  // namespace

void SaveSessionInfoGroup(Workspace& ws, std::int32_t csg) {
  const SessionGroup& g = ws.SessionGroup(csg);
  std::vector<GroupFileMember> members;
  try {
    for (std::int32_t i = 1; i <= g.nSession; ++i) {
      const Session& s = ws.Session(g.Sessions(i));
      members.push_back({s.Name, SessionFileImage(s, ws.Project(s.Project))});
    }
  } catch (const BoundsError& e) {
    throw SessionFileError(g.SessionFile,
                           std::string("a member's values don't fit its project: ") + e.what());
  }
  try {
    WriteFileAtomic(g.SessionFile, GroupFileImage({g.DateTime, g.GroupFile, g.IniFile}, members));
  } catch (const FileError& e) {
    throw SessionFileWriteError(g.SessionFile, e.what());
  }
}

bool LoadSessionInfoGroup(Workspace& ws, std::int32_t csg, const std::string& fileName) {
  SessionGroup& g = ws.SessionGroup(csg);
  const std::string bytes = LoadWholeFile(fileName);
  if (!HasMagic(bytes, kGroupFileMagic)) {
    session_file_detail::ShowNotCompatible(ws, fileName);
    return false;
  }
  GroupFileHeader h;
  std::vector<GroupFileMember> members;
  try {
    ByteReader r(bytes);
    r.Bytes(kMagicLength);
    h = ReadGroupFileHeader(r);
    members = ReadGroupFileMembers(r);
  } catch (const TruncatedData& e) {
    throw SessionFileError(fileName, std::string("truncated or damaged: ") + e.what());
  }

  // Every member is read before any slot is added, so a damaged member leaves
  // the tables as they were.
  std::vector<Session> loaded;
  {
    UnpackFolder folder(ws);
    for (std::size_t i = 1; i <= members.size(); ++i) {
      const std::string memberFile = JoinPath(folder.path(), std::to_string(i) + ".pfd");
      loaded.push_back(ReadMember(ws, csg, i, members[i - 1], memberFile, fileName));
    }
  }

  g.DateTime = h.DateTime;
  g.GroupFile = h.GroupFile;
  g.IniFile = h.IniFile;
  g.nSession = static_cast<std::int32_t>(loaded.size());
  g.Sessions.ReDim(g.nSession);
  for (std::int32_t i = 1; i <= g.nSession; ++i) {
    ++ws.nSession;
    ws.SessionSlot(ws.nSession) = std::move(loaded[static_cast<std::size_t>(i - 1)]);
    g.Sessions(i) = ws.nSession;
  }
  g.Loaded = true;
  return true;
}

}  // namespace zol
