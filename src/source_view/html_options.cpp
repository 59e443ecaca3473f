#include "source_view/html_options.h"

#include "base/app_paths.h"
#include "base/ini_file.h"
#include "base/text.h"
#include "source_view/timing_colours.h"

namespace zol {

namespace {

constexpr const char* kSection = "Profiler";
constexpr int kPageMeasures = 5;

std::string ColumnKey(int measure, int column) {
  return "HtmlColumn" + std::to_string(measure) + std::to_string(column);
}
std::string SchemeKey(int measure) {
  return "ColorScheme" + std::to_string(measure);
}

bool ReadFlag(const std::string& key, bool fallback, const std::string& iniFile) {
  return ReadSettingFlag(kSection, key, fallback, iniFile);
}

std::int32_t ReadScheme(const std::string& key, std::int32_t fallback, const std::string& iniFile) {
  const std::string text =
      VBGetPrivateProfileString(kSection, key, std::to_string(fallback), iniFile);
  const std::optional<double> n = ParseNumberText(text);
  if (!n) return fallback;
  const double v = *n;
  if (v != 1.0 && v != 2.0 && v != 3.0) return fallback;  // none, by rank, by value
  return static_cast<std::int32_t>(v);
}

}  // namespace

HtmlPageOptions DefaultOptionsHtml(std::int32_t measure) {
  HtmlPageOptions o;
  o.ColorScheme = kColorByValue;
  o.Column[kColumnHits] = true;
  switch (measure) {
    case kMeasureTotalTime:
      o.Column[kColumnTotalTime] = true;
      break;
    case kMeasureAverageTime:
      o.Column[kColumnAverageTime] = true;
      break;
    case kMeasureChildTotalTime:
      o.Column[kColumnChildTotalTime] = true;
      break;
    case kMeasureChildAverageTime:
      o.Column[kColumnChildAverageTime] = true;
      break;
    default:
      break;
  }
  return o;
}

void LoadOptionsHtml(Workspace& ws, const std::string& iniFile) {
  for (int i = 0; i < kPageMeasures; ++i) {
    const HtmlPageOptions d = DefaultOptionsHtml(i);
    HtmlPageOptions& o = ws.view.OptionsHtml[static_cast<std::size_t>(i)];
    for (int j = 0; j < 5; ++j) {
      o.Column[static_cast<std::size_t>(j)] =
          ReadFlag(ColumnKey(i, j), d.Column[static_cast<std::size_t>(j)], iniFile);
    }
    o.ColorScheme = ReadScheme(SchemeKey(i), d.ColorScheme, iniFile);
  }
}

void SaveOptionsHtml(const Workspace& ws, const std::string& iniFile) {
  for (int i = 0; i < kPageMeasures; ++i) {
    const HtmlPageOptions& o = ws.view.OptionsHtml[static_cast<std::size_t>(i)];
    for (int j = 0; j < 5; ++j) {
      VBWritePrivateProfileString(kSection, ColumnKey(i, j),
                                  o.Column[static_cast<std::size_t>(j)] ? "True" : "False",
                                  iniFile);
    }
    VBWritePrivateProfileString(kSection, SchemeKey(i), std::to_string(o.ColorScheme), iniFile);
  }
}

void LoadOptionsHtml(Workspace& ws) {
  LoadOptionsHtml(ws, GetIniFile(ws.appFolder));
}

void SaveOptionsHtml(const Workspace& ws) {
  SaveOptionsHtml(ws, GetIniFile(ws.appFolder));
}

}  // namespace zol
