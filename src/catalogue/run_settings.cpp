#include "catalogue/run_settings.h"

#include "base/paths.h"
#include "base/text.h"

namespace zol {

std::string ProjectSettingsFile(const std::string& vbpFile, const std::string& projectName) {
  return JoinPath(GetPath(vbpFile), "zolOptions_" + projectName + ".ini");
}

std::string GroupSettingsFile(const std::string& vbgFile) {
  return JoinPath(GetPath(vbgFile), "zol" + GetFileName(vbgFile) + ".ini");
}

std::vector<std::string> ProfilerSessionPaths(std::string_view iniText) {
  std::vector<std::string> paths;
  const int at = InStr(1, iniText, kProfilerSessionsSection, CompareMethod::Text);
  if (at == 0) return paths;
  std::size_t start = iniText.find('\n', static_cast<std::size_t>(at - 1));
  while (start != std::string_view::npos && start + 1 < iniText.size()) {
    ++start;
    std::size_t end = iniText.find('\n', start);
    std::string_view line =
        iniText.substr(start, end == std::string_view::npos ? end : end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty() || line.front() == '[') break;
    const std::size_t blank = line.find(' ');
    const std::size_t equals = blank == std::string_view::npos ? blank : line.find('=', blank + 1);
    if (equals != std::string_view::npos && equals > blank + 1) {
      paths.emplace_back(line.substr(blank + 1, equals - blank - 1));
    }
    start = end;
  }
  return paths;
}

}  // namespace zol
