#include "ui/window_options.h"

#include <algorithm>
#include <cmath>

#include "base/ini_file.h"
#include "base/text.h"
#include "catalogue/timing_filters.h"

namespace zol {

namespace {

constexpr const char* kSection = "Profiler";
constexpr const char* kLineBreakWord = "<vbCrLf>";

std::string Read(const std::string& key, const std::string& fallback, const std::string& ini) {
  return VBGetPrivateProfileString(kSection, key, fallback, ini);
}

std::int32_t readLong(const std::string& key, std::int32_t fallback, const std::string& ini) {
  const auto n = ParseNumberText(Read(key, "", ini));
  return n ? static_cast<std::int32_t>(std::lround(*n)) : fallback;
}

double readRatio(const std::string& key, std::int32_t fallbackThousandths, const std::string& ini) {
  return clampRatio(readLong(key, fallbackThousandths, ini) / 1000.0);
}

bool readBool(const std::string& key, bool fallback, const std::string& ini) {
  return ReadSettingFlag(kSection, key, fallback, ini);
}

void Write(const std::string& key, const std::string& value, const std::string& ini) {
  VBWritePrivateProfileString(kSection, key, value, ini);
}

void writeLong(const std::string& key, std::int64_t value, const std::string& ini) {
  Write(key, std::to_string(value), ini);
}

std::int64_t thousandths(double ratio) {
  return std::llround(ratio * 1000.0);
}

}  // namespace

double clampRatio(double ratio) {
  if (!std::isfinite(ratio)) return 0.5;
  return std::clamp(ratio, 0.05, 0.95);
}

WindowOptions loadWindowOptions(const std::string& ini, WindowSizeDefault size) {
  WindowOptions o;
  o.X_ratio = readRatio("X_ratio", 250, ini);
  o.Y_ratio = readRatio("Y_ratio", 250, ini);
  o.Y_ratio_Graph = readRatio("Y_ratio_Graph", 500, ini);
  o.DisplayInfoType = std::clamp(readLong("DisplayInfoType", 0, ini), 0, 4);
  o.Active_tbsTab = readLong("Active_tbsTab", 3, ini);
  o.Active_lvwSessions_Column = std::clamp(readLong("Active_lvwSessions_Column", 1, ini), 1, 5);
  o.LastExportFileType = readLong("LastExportFileType", 0, ini);
  o.HHCompilerPath = Read("HHCompilerPath", "none", ini);
  o.Left = readLong("Left", 0, ini);
  o.Top = readLong("Top", 0, ini);
  o.Width = readLong("Width", size.Width, ini);
  o.Height = readLong("Height", size.Height, ini);
  o.WindowState = std::clamp(readLong("WindowState", 0, ini), 0, 2);
  return o;
}

void saveWindowOptions(const WindowOptions& o, const std::string& ini) {
  writeLong("X_ratio", thousandths(o.X_ratio), ini);
  writeLong("Y_ratio", thousandths(o.Y_ratio), ini);
  writeLong("DisplayInfoType", o.DisplayInfoType, ini);
  writeLong("Active_tbsTab", o.Active_tbsTab, ini);
  writeLong("Active_lvwSessions_Column", o.Active_lvwSessions_Column, ini);
  writeLong("LastExportFileType", o.LastExportFileType, ini);
  Write("HHCompilerPath", o.HHCompilerPath, ini);
  writeLong("Left", o.Left, ini);
  writeLong("Top", o.Top, ini);
  writeLong("Width", o.Width, ini);
  writeLong("Height", o.Height, ini);
  writeLong("WindowState", o.WindowState, ini);
}

void saveGraphRatio(double Y_ratio_Graph, const std::string& ini) {
  writeLong("Y_ratio_Graph", thousandths(Y_ratio_Graph), ini);
}

void loadViewSettings(ViewSettings& view, const std::string& ini) {
  view.colored = readBool("fColored", true, ini);
  view.Filters = ReadFiltersSetting(ini);
  view.DefaultPlan = Read("DefaultPlan", "Full profiling", ini);
}

void saveViewSettings(const ViewSettings& view, const std::string& ini) {
  Write("fColored", view.colored ? "True" : "False", ini);
  Write("Filters", Replace(view.Filters, "\r\n", kLineBreakWord), ini);
  Write("DefaultPlan", view.DefaultPlan, ini);
}

}  // namespace zol
