#pragma once

// The bytes of .pfd session files: a header of texts and counts, then the raw
// images of the session's value arrays, uncompressed. Integers are 32-bit
// little-endian, texts and blocks are counted (an int32 length in front).
// These routines work on memory only; session_files.h reads and writes disks.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/byte_io.h"
#include "session/prompter.h"
#include "session/records.h"

namespace zol {

inline constexpr std::string_view kSessionFileMagic = "Version03";
inline constexpr std::string_view kGroupFileMagic = "GroupVn01";
inline constexpr std::size_t kMagicLength = 9;

// Whether `bytes` begins with the magic, compared without regard to case.
bool HasMagic(std::string_view bytes, std::string_view magic);

// The head of a .pfd file, behind the magic. GroupFile is empty for a session
// outside a group; the file then holds no text for it.
struct SessionFileHeader {
  std::string DateTime;
  std::string RunType;
  std::string GroupFile;
  std::string ProjectFile;
  std::string IniFile;
  std::int32_t LinesNumber = 0;
  std::int32_t ProceduresNumber = 0;
  std::int32_t ModulesNumber = 0;
};

// The whole .pfd image of a session whose project is `project`: the counts
// come from the project, the values from the session.
std::string SessionFileImage(const Session& s, const Project& project);

// Reads the header that follows the magic. A third text that ends in ".VBG"
// (any case) is the group file, and the project file follows it. Throws
// TruncatedData when the data ends early or a count is negative.
SessionFileHeader ReadSessionFileHeader(ByteReader& r);

// Reads the value blocks that follow the header into `s`. The line blocks are
// there only when the header counts lines; the flow pairs only when there are
// some. Arrays are sized to the header's counts; an array whose block is
// absent keeps what it held. Each block's length must equal its count times
// the record size, or TruncatedData names the block. `progress`, when given,
// moves one step per block, from 2 after the session totals to 9 after the
// modules.
void ReadSessionFileValues(ByteReader& r, const SessionFileHeader& h, Session& s,
                           Prompter* progress);

// The group file: magic, its texts, and every member's name and whole .pfd.
struct GroupFileMember {
  std::string Name;
  std::string Content;
};
struct GroupFileHeader {
  std::string DateTime;
  std::string GroupFile;
  std::string IniFile;
};
std::string GroupFileImage(const GroupFileHeader& h, const std::vector<GroupFileMember>& members);

// Reads the header behind the group magic.
GroupFileHeader ReadGroupFileHeader(ByteReader& r);
// Reads the member count and the members that follow the header.
std::vector<GroupFileMember> ReadGroupFileMembers(ByteReader& r);

}  // namespace zol
