#include "profile/session_file_image.h"

#include "base/text.h"
#include "session/record_images.h"

namespace zol {

namespace {

// Runs one read and, when the data is short or wrong, says which item it was.
template <typename Read>
auto Reading(const char* item, Read read) {
  try {
    return read();
  } catch (const TruncatedData& e) {
    throw TruncatedData(std::string(item) + ": " + e.what());
  }
}

std::string ReadText(ByteReader& r, const char* item) {
  return std::string(Reading(item, [&] { return r.Counted(); }));
}

std::int32_t ReadCount(ByteReader& r, const char* item) {
  const std::int32_t n = Reading(item, [&] { return r.I32(); });
  if (n < 0) throw TruncatedData(std::string(item) + ": negative count " + std::to_string(n));
  return n;
}

// The elements of the blocks: value records as their packed images, ranks as
// plain int32.
template <typename T>
std::size_t ElementSize() {
  return ImageSize<T>();
}
template <>
std::size_t ElementSize<std::int32_t>() {
  return 4;
}
template <typename T>
void WriteElement(ByteWriter& w, const T& v) {
  WriteImage(w, v);
}
void WriteElement(ByteWriter& w, std::int32_t v) {
  w.I32(v);
}
template <typename T>
void ReadElement(ByteReader& r, T& v) {
  ReadImage(r, v);
}
void ReadElement(ByteReader& r, std::int32_t& v) {
  v = r.I32();
}

// Elements 1..count of `a` as one counted block.
template <typename T>
void WriteBlock(ByteWriter& w, const Array1<T>& a, std::int32_t count) {
  ByteWriter block;
  for (std::int32_t i = 1; i <= count; ++i) WriteElement(block, a(i));
  w.Counted(block.Data());
}

// A counted block that must hold exactly `count` elements; `a` is sized to
// `count` only once the block is known to be whole, so a damaged length can't
// ask for more memory than the file holds.
template <typename T>
void ReadBlock(ByteReader& r, const char* item, Array1<T>& a, std::int32_t count) {
  const std::string_view block = Reading(item, [&] { return r.Counted(); });
  const std::size_t expected = ElementSize<T>() * static_cast<std::size_t>(count);
  if (block.size() != expected) {
    throw TruncatedData(std::string(item) + ": block of " + std::to_string(block.size()) +
                        " bytes where " + std::to_string(count) + " records need " +
                        std::to_string(expected));
  }
  a.ReDim(count);
  ByteReader elements(block);
  for (std::int32_t i = 1; i <= count; ++i) ReadElement(elements, a(i));
}

void ReadRecordBlock(ByteReader& r, const char* item, ModuleValue& v) {
  const std::string_view block = Reading(item, [&] { return r.Counted(); });
  if (block.size() != kModuleValueImageSize) {
    throw TruncatedData(std::string(item) + ": block of " + std::to_string(block.size()) +
                        " bytes where the record needs " + std::to_string(kModuleValueImageSize));
  }
  v = FromImage<ModuleValue>(block);
}

bool EndsWithVbg(const std::string& s) {
  return UCase(Right(s, 4)) == ".VBG";
}

void Step(Prompter* progress, long value) {
  if (progress) progress->SetProgressValue(value);
}

}  // namespace

bool HasMagic(std::string_view bytes, std::string_view magic) {
  return bytes.size() >= magic.size() && TextEquals(bytes.substr(0, magic.size()), magic);
}

std::string SessionFileImage(const Session& s, const Project& project) {
  const std::int32_t lines = project.LinesNumber;
  ByteWriter w;
  w.Bytes(kSessionFileMagic);
  w.Counted(s.DateTime);
  w.Counted(s.RunType);
  if (!s.GroupFile.empty()) w.Counted(s.GroupFile);
  w.Counted(s.ProjectFile);
  w.Counted(s.IniFile);
  w.I32(lines);
  w.I32(project.ProceduresNumber);
  w.I32(project.ModulesNumber);
  w.Counted(ToImage(s.SessionValue));
  if (lines != 0) {
    WriteBlock(w, s.CodeLineValue, lines);
    WriteBlock(w, s.LineTotalTimeRank, lines);
    WriteBlock(w, s.LineAverageTimeRank, lines);
    WriteBlock(w, s.LineChildTotalTimeRank, lines);
    WriteBlock(w, s.LineChildAverageTimeRank, lines);
  }
  WriteBlock(w, s.ProcedureValue, project.ProceduresNumber);
  WriteBlock(w, s.ModuleValue, project.ModulesNumber);
  w.I32(s.nFlowPair);
  w.I32(s.FirstProc);
  w.I32(s.LastProc);
  if (s.nFlowPair != 0) WriteBlock(w, s.FlowPair, s.nFlowPair);
  return w.Take();
}

SessionFileHeader ReadSessionFileHeader(ByteReader& r) {
  SessionFileHeader h;
  h.DateTime = ReadText(r, "DateTime");
  h.RunType = ReadText(r, "RunType");
  h.ProjectFile = ReadText(r, "ProjectFile");
  if (EndsWithVbg(h.ProjectFile)) {
    h.GroupFile = std::move(h.ProjectFile);
    h.ProjectFile = ReadText(r, "ProjectFile");
  }
  h.IniFile = ReadText(r, "IniFile");
  h.LinesNumber = ReadCount(r, "number of lines");
  h.ProceduresNumber = ReadCount(r, "number of procedures");
  h.ModulesNumber = ReadCount(r, "number of modules");
  return h;
}

void ReadSessionFileValues(ByteReader& r, const SessionFileHeader& h, Session& s,
                           Prompter* progress) {
  const std::int32_t lines = h.LinesNumber;
  ReadRecordBlock(r, "SessionValue", s.SessionValue);
  Step(progress, 2);
  if (lines != 0) {
    ReadBlock(r, "CodeLineValue", s.CodeLineValue, lines);
    Step(progress, 3);
    ReadBlock(r, "LineTotalTimeRank", s.LineTotalTimeRank, lines);
    Step(progress, 4);
    ReadBlock(r, "LineAverageTimeRank", s.LineAverageTimeRank, lines);
    Step(progress, 5);
    ReadBlock(r, "LineChildTotalTimeRank", s.LineChildTotalTimeRank, lines);
    Step(progress, 6);
    ReadBlock(r, "LineChildAverageTimeRank", s.LineChildAverageTimeRank, lines);
    Step(progress, 7);
  }
  ReadBlock(r, "ProcedureValue", s.ProcedureValue, h.ProceduresNumber);
  Step(progress, 8);
  ReadBlock(r, "ModuleValue", s.ModuleValue, h.ModulesNumber);
  Step(progress, 9);
  s.nFlowPair = ReadCount(r, "nFlowPair");
  s.FirstProc = Reading("FirstProc", [&] { return r.I32(); });
  s.LastProc = Reading("LastProc", [&] { return r.I32(); });
  if (s.nFlowPair != 0) ReadBlock(r, "FlowPair", s.FlowPair, s.nFlowPair);
}

std::string GroupFileImage(const GroupFileHeader& h, const std::vector<GroupFileMember>& members) {
  ByteWriter w;
  w.Bytes(kGroupFileMagic);
  w.Counted(h.DateTime);
  w.Counted(h.GroupFile);
  w.Counted(h.IniFile);
  w.I32(static_cast<std::int32_t>(members.size()));
  for (const GroupFileMember& m : members) {
    w.Counted(m.Name);
    w.Counted(m.Content);
  }
  return w.Take();
}

GroupFileHeader ReadGroupFileHeader(ByteReader& r) {
  GroupFileHeader h;
  h.DateTime = ReadText(r, "DateTime");
  h.GroupFile = ReadText(r, "GroupFile");
  h.IniFile = ReadText(r, "IniFile");
  return h;
}

std::vector<GroupFileMember> ReadGroupFileMembers(ByteReader& r) {
  const std::int32_t n = ReadCount(r, "number of sessions");
  std::vector<GroupFileMember> members;
  for (std::int32_t i = 1; i <= n; ++i) {
    const std::string item = "session " + std::to_string(i);
    GroupFileMember m;
    m.Name = ReadText(r, (item + " name").c_str());
    m.Content = ReadText(r, (item + " file").c_str());
    members.push_back(std::move(m));
  }
  return members;
}

}  // namespace zol
