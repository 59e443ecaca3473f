#include <vector>

#include "base/app_paths.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "base/text.h"
#include "catalogue/file_history.h"
#include "catalogue/session_catalogue.h"

namespace zol {

namespace {

constexpr const char* kSection = "Profiler";

// Whether some line of the settings text begins with `key` and "=": the key
// exists, even if empty.
bool HoldsKey(const std::string& iniText, const std::string& key) {
  for (const std::string& line : Split(Replace(iniText, "\r\n", "\n"), "\n")) {
    if (TextEquals(Left(LTrim(line), static_cast<int>(key.size()) + 1), key + "=")) return true;
  }
  return false;
}

// The names left under "Session0", "Session1", ... each key emptied once its
// name is taken. The walk ends at the first number that the settings file
// doesn't hold at all.
std::vector<std::string> TakeLeftNames(const std::string& ini) {
  std::vector<std::string> names;
  for (int counter = 0;; ++counter) {
    const std::string key = "Session" + std::to_string(counter);
    const std::string name = VBGetPrivateProfileString(kSection, key, "", ini);
    if (!name.empty()) {
      names.push_back(name);
      VBWritePrivateProfileString(kSection, key, "", ini);
    } else if (!HoldsKey(LoadFile(ini), key)) {
      break;
    }
  }
  return names;
}

}  // namespace

std::vector<std::string> TakeLeftSessionNames(Workspace& ws) {
  return TakeLeftNames(GetIniFile(ws.appFolder));
}

CatalogueChange EnterLeftSessions(Workspace& ws, const std::vector<std::string>& names) {
  CatalogueChange change;
  for (const std::string& name : names) {
    change.Append(AddSession(ws, name, true));
    AddToFileHistory(ws, name);
  }
  return change;
}

}  // namespace zol
