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

std::int32_t ReadLong(const std::string& key, std::int32_t fallback, const std::string& ini) {
  const auto n = ParseNumberText(Read(key, "", ini));
  return n ? static_cast<std::int32_t>(std::lround(*n)) : fallback;
}

double ReadRatio(const std::string& key, std::int32_t fallbackThousandths, const std::string& ini) {
  return ClampRatio(ReadLong(key, fallbackThousandths, ini) / 1000.0);
}

bool ReadBool(const std::string& key, bool fallback, const std::string& ini) {
  return ReadSettingFlag(kSection, key, fallback, ini);
}

void Write(const std::string& key, const std::string& value, const std::string& ini) {
  VBWritePrivateProfileString(kSection, key, value, ini);
}

void WriteLong(const std::string& key, std::int64_t value, const std::string& ini) {
  Write(key, std::to_string(value), ini);
}

std::int64_t Thousandths(double ratio) {
  return std::llround(ratio * 1000.0);
}

}  // namespace

double ClampRatio(double ratio) {
  if (!std::isfinite(ratio)) return 0.5;
  return std::clamp(ratio, 0.05, 0.95);
}

WindowOptions LoadWindowOptions(const std::string& ini, WindowSizeDefault size) {
  WindowOptions o;
  o.X_ratio = ReadRatio("X_ratio", 250, ini);
  o.Y_ratio = ReadRatio("Y_ratio", 250, ini);
  o.Y_ratio_Graph = ReadRatio("Y_ratio_Graph", 500, ini);
  o.DisplayInfoType = std::clamp(ReadLong("DisplayInfoType", 0, ini), 0, 4);
  o.Active_tbsTab = ReadLong("Active_tbsTab", 3, ini);
  o.Active_lvwSessions_Column = std::clamp(ReadLong("Active_lvwSessions_Column", 1, ini), 1, 5);
  o.LastExportFileType = ReadLong("LastExportFileType", 0, ini);
  o.HHCompilerPath = Read("HHCompilerPath", "none", ini);
  o.Left = ReadLong("Left", 0, ini);
  o.Top = ReadLong("Top", 0, ini);
  o.Width = ReadLong("Width", size.Width, ini);
  o.Height = ReadLong("Height", size.Height, ini);
  o.WindowState = std::clamp(ReadLong("WindowState", 0, ini), 0, 2);
  return o;
}

void SaveWindowOptions(const WindowOptions& o, const std::string& ini) {
  WriteLong("X_ratio", Thousandths(o.X_ratio), ini);
  WriteLong("Y_ratio", Thousandths(o.Y_ratio), ini);
  WriteLong("DisplayInfoType", o.DisplayInfoType, ini);
  WriteLong("Active_tbsTab", o.Active_tbsTab, ini);
  WriteLong("Active_lvwSessions_Column", o.Active_lvwSessions_Column, ini);
  WriteLong("LastExportFileType", o.LastExportFileType, ini);
  Write("HHCompilerPath", o.HHCompilerPath, ini);
  WriteLong("Left", o.Left, ini);
  WriteLong("Top", o.Top, ini);
  WriteLong("Width", o.Width, ini);
  WriteLong("Height", o.Height, ini);
  WriteLong("WindowState", o.WindowState, ini);
}

void SaveGraphRatio(double Y_ratio_Graph, const std::string& ini) {
  WriteLong("Y_ratio_Graph", Thousandths(Y_ratio_Graph), ini);
}

void LoadViewSettings(ViewSettings& view, const std::string& ini) {
  view.colored = ReadBool("fColored", true, ini);
  view.Filters = ReadFiltersSetting(ini);
  view.DefaultPlan = Read("DefaultPlan", "Full profiling", ini);
}

void SaveViewSettings(const ViewSettings& view, const std::string& ini) {
  Write("fColored", view.colored ? "True" : "False", ini);
  Write("Filters", Replace(view.Filters, "\r\n", kLineBreakWord), ini);
  Write("DefaultPlan", view.DefaultPlan, ini);
}

}  // namespace zol
