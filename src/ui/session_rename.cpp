#include "ui/session_rename.h"

#include <cerrno>
#include <cstdio>
#include <string_view>

#include "base/cp1252.h"
#include "base/files.h"
#include "base/paths.h"
#include "catalogue/session_list.h"

namespace zol {

namespace {

constexpr std::string_view kReservedNames[] = {"Project", "Module", "Procedure", "Line"};

// What a row stands for: the name and file of a session or of a group.
struct Renamable {
  std::string* Name = nullptr;
  std::string* SessionFile = nullptr;
  bool Selected = false;
  std::string NodeKey;
};

std::optional<Renamable> renamableOf(Workspace& ws, const std::string& rowKey) {
  const std::optional<RowKey> row = ParseRowKey(rowKey);
  if (!row) return std::nullopt;
  if (row->kind == RowKind::Session) {
    if (!ws.Session.InRange(row->index)) return std::nullopt;
    Session& s = ws.Session(row->index);
    return Renamable{&s.Name, &s.SessionFile, static_cast<bool>(s.Selected),
                     "S" + std::to_string(row->index)};
  }
  if (!ws.SessionGroup.InRange(row->index)) return std::nullopt;
  SessionGroup& g = ws.SessionGroup(row->index);
  return Renamable{&g.Name, &g.SessionFile, static_cast<bool>(g.Selected),
                   "G" + std::to_string(row->index)};
}

std::string siblingFile(const std::string& path, const std::string& body,
                        const std::string& extension) {
  return JoinPath(GetPath(path), body + extension);
}

void renameFile(const std::string& from, const std::string& to) {
  if (std::rename(ToNativePath(from).c_str(), ToNativePath(to).c_str()) != 0) {
    throw FileError("Cannot rename file", from, errno);
  }
}

}  // namespace

std::optional<std::string> sessionNameRefusal(const std::string& newName) {
  if (newName.find_first_of(kForbiddenNameCharacters) != std::string::npos) {
    return std::string("A session name can not contain any of the following characters:\n") +
           kForbiddenNameCharacters;
  }
  for (std::string_view reserved : kReservedNames) {
    if (newName == reserved) {
      return std::string(
          "The following names are reserved: Project, Module, Procedure, Line !\n"
          "Please select a different name.");
    }
  }
  return std::nullopt;
}

RenameOutcome renameSessionRow(Workspace& ws, ProjectTree& tree, const std::string& rowKey,
                               const std::string& newName, const SessionRef& shown) {
  if (auto refusal = sessionNameRefusal(newName)) return {false, *refusal, false};
  if (newName.empty()) return {};
  std::optional<Renamable> item = renamableOf(ws, rowKey);
  if (!item) return {};

  std::string& path = *item->SessionFile;
  if (!EqualsNoCase1252(newName, GetFileBody(path))) {
    if (FileExist(siblingFile(path, newName, ".pfl")) ||
        FileExist(siblingFile(path, newName, ".pfd"))) {
      return {false, "This session name already exists !\nPlease select another name.", false};
    }
    const std::string extension = path.size() >= 4 ? path.substr(path.size() - 4) : "";
    const std::string renamed = siblingFile(path, newName, extension);
    renameFile(path, renamed);
    path = renamed;
  }
  if (item->Selected) tree.RenameInNode(item->NodeKey, *item->Name, newName);
  *item->Name = newName;
  const std::optional<RowKey> row = ParseRowKey(rowKey);
  // A group's name stands in the title of each of its members.
  const bool current = row->kind == RowKind::Group || row->index == shown.sessionIndex();
  return {true, "", current};
}

}  // namespace zol
