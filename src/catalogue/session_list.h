#pragma once

// The rows of the session list. Every session entered by the catalogue and
// every group has one row; the rows are not stored but built from the
// Workspace whenever the list is shown, so that they can never disagree with
// the tables.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/workspace.h"

namespace zol {

inline constexpr std::array<std::string_view, 5> kSessionListHeaders = {
    "Sessions", "Date", "Project", "Version", "Session File"};

struct SessionListRow {
  std::string Key;                     // "K" and the session index, or "G" and the group index
  std::array<std::string, 5> Columns;  // under kSessionListHeaders, in that order
  bool Checked = false;                // the session or group is Selected
};

enum class RowKind : char { Session = 'K', Group = 'G' };

struct RowKey {
  RowKind kind = RowKind::Session;
  std::int32_t index = 0;

  bool operator==(const RowKey&) const = default;
};

std::string SessionRowKey(std::int32_t cs);
std::string GroupRowKey(std::int32_t sg);
// "K12" or "G3"; nothing for any other text.
std::optional<RowKey> ParseRowKey(std::string_view key);
// The key text of `row`: SessionRowKey or GroupRowKey.
std::string RowKeyText(const RowKey& row);

// Whether Session(cs) has a row of its own: it was entered from a file (its
// SessionFile isn't empty) and it is neither Invisible nor the merged session
// of a group selection.
bool HasSessionRow(const Workspace& ws, std::int32_t cs);

// The rows of the sessions with a row, by index, then of the groups with a
// file, by index. Session columns: Name; DateTime; the Project index, "-" and
// the project's name; its version; the session file's size in whole
// kilobytes, " Kb: " and SessionFile. Group columns: the same, but the Project
// index, "-" and the file name of GroupFile, and "(Group)" as the version. A
// file that can't be found counts 0 Kb.
std::vector<SessionListRow> SessionListRows(const Workspace& ws);

// The name and version that a project file states: the texts after "Name=",
// "MajorVer=", "MinorVer=" and "RevisionVer=" at the start of a line, double
// quotes trimmed. Name is the file's body when the file states none or can't
// be read; Version is major, ".", minor, ".", revision (".." when none is
// given).
// The text after `key` (such as "Name=") on the first line of a project
// file's text that begins with it (any case), to the end of that line, with
// double quotes trimmed from both ends; nothing when no line begins so.
std::optional<std::string> ProjectFileValue(std::string_view vbpText, std::string_view key);

struct ProjectTitle {
  std::string Name;
  std::string Version;
};
ProjectTitle ReadProjectTitle(const std::string& projectFile);

}  // namespace zol
