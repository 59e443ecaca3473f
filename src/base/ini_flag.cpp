#include "base/ini_file.h"

#include <optional>

#include "base/text.h"

namespace zol {

bool ReadSettingFlag(const std::string& section, const std::string& key, bool fallback,
                     const std::string& file) {
  const std::string text = VBGetPrivateProfileString(section, key, "", file);
  if (TextEquals(text, "True")) return true;
  if (TextEquals(text, "False")) return false;
  const std::optional<double> n = ParseNumberText(text);
  return n ? *n != 0 : fallback;
}

}  // namespace zol
