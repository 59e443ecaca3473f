#include "profile/session_files.h"

#include <algorithm>
#include <fstream>
#include <optional>

#include "base/files.h"
#include "base/ini_file.h"
#include "base/path_resolver.h"
#include "base/paths.h"
#include "base/text.h"
#include "base/vb_format.h"
#include "profile/session_file_image.h"
#include "profile/session_file_reading.h"
#include "profile/session_value_check.h"

namespace zol {

SessionFileError::SessionFileError(const std::string& file, const std::string& fault)
    : std::runtime_error("Session file \"" + file + "\": " + fault), file_(file), fault_(fault) {}

namespace session_file_detail {

namespace {

// The first `n` bytes of the file (fewer if it is shorter).
std::string LoadFileHead(const std::string& fileName, std::size_t n) {
  std::ifstream in(ToNativePath(fileName), std::ios::binary);
  if (!in) throw SessionFileError(fileName, "the file can't be opened");
  std::string head(n, '\0');
  in.read(head.data(), static_cast<std::streamsize>(n));
  if (in.bad()) throw SessionFileError(fileName, "the file can't be read");
  head.resize(static_cast<std::size_t>(in.gcount()));
  return head;
}

// Parses the head of a file, and the whole file only when the head turns out
// too short: catalogues read the headers of many large files.
template <typename Parse>
auto ParseFileHead(const std::string& fileName, Parse parse) {
  constexpr std::size_t kHeadBytes = 64 * 1024;
  if (!FileExist(fileName)) throw SessionFileError(fileName, "the file does not exist");
  try {
    const std::string head = LoadFileHead(fileName, kHeadBytes);
    try {
      ByteReader r(head);
      return parse(r);
    } catch (const TruncatedData&) {
      if (head.size() < kHeadBytes) throw;
    }
    const std::string whole = LoadWholeFile(fileName);
    ByteReader r(whole);
    return parse(r);
  } catch (const TruncatedData& e) {
    throw SessionFileError(fileName, std::string("truncated or damaged header: ") + e.what());
  }
}

// The project file as it stands on this disk; files written on Windows name
// it by a Windows path, and a session copied elsewhere has its project beside
// it.
std::optional<std::string> FindProjectFile(const std::string& stored,
                                           const std::string& besideFolder) {
  return ResolveExistingFile(stored, besideFolder);
}

std::string ProjectFileOrBeside(const std::string& stored, const std::string& besideFolder) {
  if (auto found = FindProjectFile(stored, besideFolder)) return *found;
  return JoinPath(besideFolder, GetFileName(stored));
}

// The uninstrumented project, as the run's settings file names it.
std::string ReadOriginalProjectFile(const std::string& iniFile, const std::string& besideFolder) {
  const std::optional<std::string> ini = ResolveExistingFile(iniFile, besideFolder);
  if (!ini) return "";
  return VBGetPrivateProfileString("Source", "Project", "", *ini);
}

bool IsVbpFile(const std::string& path) {
  return UCase(Right(path, 4)) == ".VBP";
}

// The progress area for the time of one read: a bar of 9 steps and a label
// with the file's name and size. It is hidden however the read ends.
class ReadingProgress {
 public:
  ReadingProgress(Prompter& p, const std::string& fileName, std::size_t size) : p_(p) {
    p_.SetProgressMax(9);
    p_.SetProgressValue(0);
    p_.SetProgressText("Reading profile data from " + GetFileName(fileName) + " (" +
                       Trim(Format(static_cast<double>(size), "### ### ### ### ###")) +
                       " bytes)...");
    p_.ShowProgress(true);
    p_.DoEvents();
  }
  ~ReadingProgress() { p_.ShowProgress(false); }
  ReadingProgress(const ReadingProgress&) = delete;
  ReadingProgress& operator=(const ReadingProgress&) = delete;

 private:
  Prompter& p_;
};

}  // namespace

std::string LoadWholeFile(const std::string& fileName) {
  if (!FileExist(fileName)) throw SessionFileError(fileName, "the file does not exist");
  try {
    return LoadFile(fileName);
  } catch (const FileError& e) {
    throw SessionFileError(fileName, e.what());
  }
}

void ShowNotCompatible(Workspace& ws, const std::string& fileName) {
  ws.prompter().ShowMessage(NotCompatibleMessage(fileName), MessageKind::Exclamation);
}

bool ReadSessionHeaderFrom(Workspace& ws, Session& s, const std::string& fileName,
                           const std::string& besideFolder) {
  const std::optional<SessionFileHeader> h =
      ParseFileHead(fileName, [](ByteReader& r) -> std::optional<SessionFileHeader> {
        if (!HasMagic(r.Bytes(std::min(kMagicLength, r.Remaining())), kSessionFileMagic)) {
          return std::nullopt;
        }
        return ReadSessionFileHeader(r);
      });
  if (!h) {
    ShowNotCompatible(ws, fileName);
    return false;
  }
  s.DateTime = h->DateTime;
  s.RunType = h->RunType;
  if (!h->GroupFile.empty()) s.GroupFile = h->GroupFile;
  s.ProjectFile = ProjectFileOrBeside(h->ProjectFile, besideFolder);
  s.IniFile = h->IniFile;
  s.OriginalProjectFile = ReadOriginalProjectFile(s.IniFile, besideFolder);
  s.LinesNumber = h->LinesNumber;
  s.ProceduresNumber = h->ProceduresNumber;
  return true;
}

bool ReadSessionFile(Workspace& ws, Session& s, const std::string& fileName,
                     const std::string& besideFolder) {
  const std::string bytes = LoadWholeFile(fileName);
  if (!HasMagic(bytes, kSessionFileMagic)) {
    ShowNotCompatible(ws, fileName);
    return false;
  }
  ReadingProgress progress(ws.prompter(), fileName, bytes.size());
  try {
    ByteReader r(bytes);
    r.Bytes(kMagicLength);
    const SessionFileHeader h = ReadSessionFileHeader(r);
    s.DateTime = h.DateTime;
    s.RunType = h.RunType;
    if (!h.GroupFile.empty()) s.GroupFile = h.GroupFile;
    const std::optional<std::string> project = FindProjectFile(h.ProjectFile, besideFolder);
    if (!project || !IsVbpFile(*project)) return false;
    s.ProjectFile = *project;
    s.IniFile = h.IniFile;
    s.OriginalProjectFile = ReadOriginalProjectFile(s.IniFile, besideFolder);
    ReadSessionFileValues(r, h, s, &ws.prompter());
    if (const std::string fault =
            ImpossibleSessionValue(s, h.LinesNumber, h.ProceduresNumber, h.ModulesNumber);
        !fault.empty()) {
      throw SessionFileError(fileName, "a value no run can have: " + fault);
    }
    ws.LinesNumber = h.LinesNumber;
    ws.ProceduresNumber = h.ProceduresNumber;
    ws.ModulesNumber = h.ModulesNumber;
    return true;
  } catch (const TruncatedData& e) {
    throw SessionFileError(fileName, std::string("truncated or damaged: ") + e.what());
  }
}

}  // namespace session_file_detail

std::string NotCompatibleMessage(const std::string& fileName) {
  return "The following file is not compatible with this version of the profiler:\n" + fileName;
}

void SaveSessionInfo(Workspace& ws, std::int32_t cs) {
  Session& s = ws.Session(cs);
  if (s.SessionFile.empty()) throw SessionFileError("", "the session has no file name");
  std::string target = s.SessionFile;
  target.back() = 'd';
  std::string image;
  try {
    image = SessionFileImage(s, ws.Project(s.Project));
  } catch (const BoundsError& e) {
    throw SessionFileError(target,
                           std::string("the session's values don't fit its project: ") + e.what());
  }
  try {
    WriteFileAtomic(target, image);
  } catch (const FileError& e) {
    throw SessionFileWriteError(target, e.what());
  }
  s.SessionFile = std::move(target);
}

bool LoadSessionInfo(Workspace& ws, std::int32_t cs, const std::string& fileName) {
  Session scratch = ws.Session(cs);
  if (!session_file_detail::ReadSessionFile(ws, scratch, fileName, GetPath(fileName))) return false;
  ws.Session(cs) = std::move(scratch);
  return true;
}

bool ReadSessionHeader(Workspace& ws, Session& s, const std::string& fileName) {
  Session scratch = s;
  if (!session_file_detail::ReadSessionHeaderFrom(ws, scratch, fileName, GetPath(fileName))) {
    return false;
  }
  s = std::move(scratch);
  return true;
}

bool IsGroupFile(const std::string& fileName) {
  if (!FileExist(fileName)) return false;
  try {
    return HasMagic(session_file_detail::LoadFileHead(fileName, kMagicLength), kGroupFileMagic);
  } catch (const SessionFileError&) {
    return false;
  }
}

void ReadGroupHeader(SessionGroup& g, const std::string& fileName) {
  const std::optional<GroupFileHeader> h = session_file_detail::ParseFileHead(
      fileName, [](ByteReader& r) -> std::optional<GroupFileHeader> {
        if (!HasMagic(r.Bytes(std::min(kMagicLength, r.Remaining())), kGroupFileMagic)) {
          return std::nullopt;
        }
        return ReadGroupFileHeader(r);
      });
  if (!h) throw SessionFileError(fileName, "not a group file");
  g.DateTime = h->DateTime;
  g.GroupFile = h->GroupFile;
  g.IniFile = h->IniFile;
}

}  // namespace zol
