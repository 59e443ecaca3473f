#include "catalogue/file_history.h"

#include "base/app_paths.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "base/path_resolver.h"
#include "base/paths.h"
#include "base/text.h"

namespace zol {

namespace {

constexpr const char* kSection = "Profiler";

bool EndsWith(const std::string& s, std::string_view suffix) {
  return TextEquals(Right(s, static_cast<int>(suffix.size())), suffix);
}

std::string PrefixFor(const std::string& file) {
  return EndsWith(file, ".vbp") || EndsWith(file, ".vbg") ? "HistoryProject" : "HistorySession";
}

// Moves the entries up over the empty places, keeping their order.
void CloseGaps(Array1<std::string>& list) {
  int to = 1;
  for (int from = 1; from <= list.UBound(); ++from) {
    if (list(from).empty()) continue;
    if (from != to) {
      list(to) = std::move(list(from));
      list(from).clear();
    }
    ++to;
  }
}

}  // namespace

Array1<std::string> RetrieveFileHistory(const Workspace& ws, const std::string& arg) {
  const std::string ini = GetIniFile(ws.appFolder);
  Array1<std::string> list;
  list.ReDim(kFileHistoryLength);
  for (int i = 1; i <= kFileHistoryLength; ++i) {
    list(i) = VBGetPrivateProfileString(kSection, arg + std::to_string(i), "", ini);
  }
  CloseGaps(list);
  return list;
}

void AddToFileHistory(Workspace& ws, const std::string& arg, const std::string& files,
                      const std::string& referenceFolder) {
  std::string file = arg;
  if (EndsWith(file, ".pfl")) file.back() = 'd';
  const auto found = ResolveExistingFile(file, referenceFolder);
  if (!found) return;
  file = *found;
  const std::string prefix = files == "?" ? PrefixFor(file) : files;
  try {
    Array1<std::string> list = RetrieveFileHistory(ws, prefix);
    list.ReDimPreserve(kFileHistoryLength + 1);
    for (int i = kFileHistoryLength; i >= 1; --i) {
      list(i + 1) = list(i);
      if (TextEquals(list(i + 1), file)) list(i + 1).clear();
    }
    list(1) = file;
    CloseGaps(list);
    const std::string ini = GetIniFile(ws.appFolder);
    for (int i = 1; i <= kFileHistoryLength; ++i) {
      VBWritePrivateProfileString(kSection, prefix + std::to_string(i), list(i), ini);
    }
  } catch (const FileError&) {
    // The recent lists stay as they were; see the header.
  }
}

void AddProjectToFileHistory(Workspace& ws, const std::string& projectFile,
                             const std::string& referenceFolder) {
  std::string project = projectFile;
  std::string folder = referenceFolder;
  if (EndsWith(project, ".ini")) {
    const auto ini = ResolveExistingFile(project, referenceFolder);
    if (!ini) return;
    project = VBGetPrivateProfileString("Source", "Project", "", *ini);
    folder = GetPath(*ini);
  }
  if (!project.empty()) AddToFileHistory(ws, project, "?", folder);
}

}  // namespace zol
