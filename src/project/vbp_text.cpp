#include "project/vbp_text.h"

#include <algorithm>
#include <array>

#include "base/paths.h"
#include "base/text.h"
#include "session/records.h"

namespace zol {

namespace {

struct ModuleKey {
  std::string_view key;
  std::int32_t type;
};

constexpr std::array<ModuleKey, 7> kModuleKeys{{
    {"Class=", kModuleClass},
    {"Form=", kModuleForm},
    {"Module=", kModuleStandard},
    {"Designer=", kModuleDesigner},
    {"UserDocument=", kModuleUserDocument},
    {"UserControl=", kModuleUserControl},
    {"PropertyPage=", kModulePropertyPage},
}};

// The lines of a text split at LF, with a CR before the LF dropped.
template <typename Fn>
void ForEachLine(std::string_view text, Fn&& fn) {
  std::size_t pos = 0;
  while (pos < text.size()) {
    const std::size_t lf = text.find('\n', pos);
    const std::size_t end = lf == std::string_view::npos ? text.size() : lf;
    std::string_view line = text.substr(pos, end - pos);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    pos = lf == std::string_view::npos ? text.size() : lf + 1;
    if (!fn(line, pos)) return;
  }
}

bool IsInstrumenterModule(std::string_view line) {
  return InStr(1, line, "zolProfile", CompareMethod::Text) > 0 ||
         InStr(1, line, "zolDebugger", CompareMethod::Text) > 0;
}

}  // namespace

std::vector<VbpModule> ReadVbpModules(std::string_view vbpText) {
  std::vector<VbpModule> modules;
  ForEachLine(vbpText, [&](std::string_view line, std::size_t) {
    const std::string trimmed = LTrim(line);
    for (const ModuleKey& k : kModuleKeys) {
      if (!TextEquals(Left(trimmed, static_cast<int>(k.key.size())), k.key)) continue;
      if (IsInstrumenterModule(line)) break;
      const int behind = std::max(InStr(1, line, "="), InStr(1, line, ";"));
      modules.push_back({Trim(Mid(line, behind + 1)), k.type});
      break;
    }
    return true;
  });
  return modules;
}

ModuleSource SplitModuleSource(std::string_view source, const std::string& fileName) {
  static constexpr std::string_view kNameAttribute = "Attribute VB_Name = \"";
  ModuleSource result;
  bool found = false;
  ForEachLine(source, [&](std::string_view line, std::size_t next) {
    const int at = InStr(1, line, kNameAttribute, CompareMethod::Text);
    if (at == 0) return true;
    Parse(at + static_cast<int>(kNameAttribute.size()) - 1, line, result.Name);
    result.text = std::string(source.substr(next));
    found = true;
    return false;
  });
  if (!found) {
    result.Name = GetFileBody(fileName);
    result.text = std::string(source);
  }
  return result;
}

int CountLineBreaks(std::string_view text) {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace zol
