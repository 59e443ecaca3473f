#include "report/report_options.h"

#include <cmath>
#include <optional>

#include "base/ini_file.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/text.h"

namespace zol {

namespace {

constexpr const char* kSection = "ProfilerReport";

std::string Key(const char* name, int index) {
  return name + std::to_string(index);
}

bool ReadFlag(const std::string& key, bool fallback, const std::string& iniFile) {
  return ReadSettingFlag(kSection, key, fallback, iniFile);
}

// A whole number brought into [lo, hi]; `fallback` when the text is no number.
std::int32_t ReadInt(const std::string& key, std::int32_t fallback, std::int32_t lo,
                     std::int32_t hi, const std::string& iniFile) {
  const std::string text =
      VBGetPrivateProfileString(kSection, key, std::to_string(fallback), iniFile);
  const std::optional<double> n = ParseNumberText(text);
  if (!n || !std::isfinite(*n)) return fallback;
  return static_cast<std::int32_t>(Clamp(std::trunc(*n), double(lo), double(hi)));
}

void WriteFlag(const std::string& key, bool value, const std::string& iniFile) {
  VBWritePrivateProfileString(kSection, key, value ? "True" : "False", iniFile);
}

void WriteInt(const std::string& key, std::int32_t value, const std::string& iniFile) {
  VBWritePrivateProfileString(kSection, key, std::to_string(value), iniFile);
}

}  // namespace

std::string DefaultReportFolder(const std::string& appFolder) {
  return JoinPath(appFolder, "Reports");
}

ReportOptions DefaultReportOptions(const std::string& appFolder) {
  ReportOptions o;
  o.ReportFolder = DefaultReportFolder(appFolder);
  return o;
}

HtmlPageOptions DefaultReportPageOptions() {
  HtmlPageOptions o;
  o.Column = {true, true, true, true, true};
  o.ColorScheme = 3;
  return o;
}

std::int32_t TopItemsFromText(const std::string& text, std::int32_t fallback) {
  const std::optional<double> n = ParseNumberText(Trim(text));
  if (!n || !std::isfinite(*n)) return fallback;
  return static_cast<std::int32_t>(
      Clamp(std::round(*n), double(kTopItemsMin), double(kTopItemsMax)));
}

ReportOptions LoadReportOptions(Workspace& ws, const std::string& iniFile) {
  const ReportOptions d = DefaultReportOptions(GetPath(iniFile));
  ReportOptions o;
  o.Scope = static_cast<ReportScope>(ReadInt("Scope", 0, 0, 2, iniFile));
  for (int i = 0; i < 3; ++i) {
    o.DataRequested[i] = ReadFlag(Key("DataRequested", i), d.DataRequested[i], iniFile);
  }
  o.DoExport = ReadFlag("DoExport", d.DoExport, iniFile);
  for (int i = 0; i < 4; ++i) {
    o.ExportWhat[i] = ReadFlag(Key("ExportWhat", i), d.ExportWhat[i], iniFile);
  }
  o.ExportCreateSeparateFile =
      ReadFlag("ExportCreateSeparateFile", d.ExportCreateSeparateFile, iniFile);
  o.IncludeReportSummary = ReadFlag("IncludeReportSummary", d.IncludeReportSummary, iniFile);
  o.TopItems = ReadInt("TopItems", d.TopItems, kTopItemsMin, kTopItemsMax, iniFile);
  o.IncludeHTMLProject = ReadFlag("IncludeHTMLProject", d.IncludeHTMLProject, iniFile);
  o.ReporttoHtm = ReadFlag("ReporttoHtm", d.ReporttoHtm, iniFile);
  o.ReporttoChm = ReadFlag("ReporttoChm", d.ReporttoChm, iniFile);
  o.Target = static_cast<ReportTarget>(
      ReadInt("ReportTarget", static_cast<std::int32_t>(d.Target), 0, 3, iniFile));
  o.ReportFolder = VBGetPrivateProfileString(kSection, "ReportFolder", d.ReportFolder, iniFile);
  if (o.ReportFolder.empty()) o.ReportFolder = d.ReportFolder;
  o.OpenReport = ReadFlag("OpenReport", d.OpenReport, iniFile);

  const HtmlPageOptions pd = DefaultReportPageOptions();
  HtmlPageOptions& page = ws.view.OptionsHtml[kReportPageOptions];
  for (int i = 0; i < 5; ++i) {
    page.Column[i] = ReadFlag(Key("HTMLProjectColumn", i), pd.Column[i], iniFile);
  }
  page.ColorScheme = ReadInt("HTMLColorScheme", pd.ColorScheme, 1, 3, iniFile);
  return o;
}

void SaveReportOptions(const Workspace& ws, const ReportOptions& o, const std::string& iniFile) {
  WriteInt("Scope", static_cast<std::int32_t>(o.Scope), iniFile);
  for (int i = 0; i < 3; ++i) WriteFlag(Key("DataRequested", i), o.DataRequested[i], iniFile);
  WriteFlag("DoExport", o.DoExport, iniFile);
  for (int i = 0; i < 4; ++i) WriteFlag(Key("ExportWhat", i), o.ExportWhat[i], iniFile);
  WriteFlag("ExportCreateSeparateFile", o.ExportCreateSeparateFile, iniFile);
  WriteFlag("IncludeReportSummary", o.IncludeReportSummary, iniFile);
  WriteInt("TopItems", o.TopItems, iniFile);
  WriteFlag("IncludeHTMLProject", o.IncludeHTMLProject, iniFile);
  WriteFlag("ReporttoHtm", o.ReporttoHtm, iniFile);
  WriteFlag("ReporttoChm", o.ReporttoChm, iniFile);
  WriteInt("ReportTarget", static_cast<std::int32_t>(o.Target), iniFile);
  VBWritePrivateProfileString(kSection, "ReportFolder", o.ReportFolder, iniFile);
  WriteFlag("OpenReport", o.OpenReport, iniFile);
  const HtmlPageOptions& page = ws.view.OptionsHtml[kReportPageOptions];
  for (int i = 0; i < 5; ++i) WriteFlag(Key("HTMLProjectColumn", i), page.Column[i], iniFile);
  WriteInt("HTMLColorScheme", page.ColorScheme, iniFile);
}

}  // namespace zol
