#include "report/data_export.h"

#include <algorithm>
#include <clocale>
#include <cstring>
#include <vector>

#include "base/files.h"
#include "base/vb_format.h"
#include "grid/cell_text.h"
#include "grid/grid_frame.h"
#include "report/report_options.h"

namespace zol {

namespace {

constexpr std::string_view kCrLf = "\r\n";
constexpr const char* kTotal = "TOTAL";
constexpr const char* kAllPercent = "100%";

// A table grown row by row, then turned into the (column, row) array; the
// rows of a line export with unexecuted lines left out aren't known ahead.
class ExportSheet {
 public:
  // Appends a column and returns its index, from 0.
  int Column(const char* header) {
    headers_.emplace_back(header);
    return static_cast<int>(headers_.size()) - 1;
  }
  std::vector<std::string>& NewRow() {
    rows_.emplace_back(headers_.size());
    return rows_.back();
  }
  std::vector<std::vector<std::string>>& Rows() { return rows_; }

  TextTable Array() const {
    const int columns = static_cast<int>(headers_.size());
    TextTable t(0, columns - 1, 0, static_cast<int>(rows_.size()));
    for (int c = 0; c < columns; ++c) t(c, 0) = headers_[c];
    for (std::size_t r = 0; r < rows_.size(); ++r) {
      for (int c = 0; c < columns; ++c) t(c, static_cast<int>(r) + 1) = rows_[r][c];
    }
    return t;
  }

 private:
  std::vector<std::string> headers_;
  std::vector<std::vector<std::string>> rows_;
};

// Column index that stays -1 when its group isn't asked for.
constexpr int kNone = -1;

void Set(std::vector<std::string>& row, int column, std::string text) {
  if (column != kNone) row[column] = std::move(text);
}

// A share of a total: empty when the total is 0.
std::string Share(double value, double total) {
  return total == 0 ? std::string() : PercentText(value / total);
}

// The coverage of `hit` lines out of `total`: empty for none.
std::string Coverage(double hit, double total) {
  return total == 0 ? std::string() : PercentText(hit / total);
}

// The project a module came from: its own project, or, in a group's merged
// session, the member project recorded with the module.
std::string ProjectName(const Workspace& ws, const Project& project, std::int32_t module) {
  const std::string& name = ModuleProjectName(ws, project, module);
  return name.empty() ? project.Name : name;
}

const std::string& ModuleName(const Project& project, std::int32_t module) {
  static const std::string kEmpty;
  return project.Module.InRange(module) ? project.Module(module).Name : kEmpty;
}

std::string CsvCell(const std::string& text, bool replaceComma) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '"') {
      out += "\"\"";
    } else if (c == ',' && replaceComma) {
      out += '.';
    } else {
      out += c;
    }
  }
  out += '"';
  return out;
}

}  // namespace

int FindExportColumn(const TextTable& table, std::string_view header) {
  if (table.UBoundRow() < table.LBoundRow() || table.LBoundRow() > 0) return -1;
  for (int c = table.LBoundColumn(); c <= table.UBoundColumn(); ++c) {
    if (table(c, 0) == header) return c;
  }
  return -1;
}

// The own-time and child-time column groups that procedures and lines share,
// each only when its data is asked for (kNone otherwise).
struct TimeColumns {
  int time, timePct, average, child, childPct, childAverage;
};

TimeColumns AddTimeColumns(ExportSheet& sheet, const ReportDataFlags& data) {
  TimeColumns c{kNone, kNone, kNone, kNone, kNone, kNone};
  if (data[kDataTime]) {
    c.time = sheet.Column("Total Time");
    c.timePct = sheet.Column("% Tot. Time");
    c.average = sheet.Column("Average Time");
  }
  if (data[kDataChildren]) {
    c.child = sheet.Column("Child Tot. Time");
    c.childPct = sheet.Column("% Child Time");
    c.childAverage = sheet.Column("Child Avg. Time");
  }
  return c;
}

TextTable ProceduresExportArray(const Workspace& ws, std::int32_t sessionIndex,
                                const ReportDataFlags& data) {
  const Session& session = ws.Session(sessionIndex);
  const Project& project = ws.Project(session.Project);
  const bool critical = project.ContainsCritical;

  ExportSheet sheet;
  const int idxProject = sheet.Column("Project");
  const int idxModule = sheet.Column("Module");
  const int idxProcedure = sheet.Column("Procedure");
  const int idxHits = sheet.Column("Hits");
  const int idxHitsPct = sheet.Column("% Hits");
  const int idxLines = sheet.Column("# Lines");
  int idxHitLines = kNone, idxCoverage = kNone, idxLeft = kNone, idxCritical = kNone;
  if (data[kDataCoverage]) {
    idxHitLines = sheet.Column("Hit Lines");
    idxCoverage = sheet.Column("Line Coverage");
    idxLeft = sheet.Column("Left Lines");
    if (critical) idxCritical = sheet.Column("Critical Cov.");
  }
  const auto [idxTime, idxTimePct, idxAverage, idxChild, idxChildPct, idxChildAverage] =
      AddTimeColumns(sheet, data);

  double TotalHits = 0, TotalTotalTime = 0, TotalChildTime = 0;
  double TotalLines = 0, TotalHitLines = 0, CriticalTotalHits = 0, CriticalTotalLine = 0;
  for (std::int32_t i = 1; i <= project.ProceduresNumber; ++i) {
    const Procedure& proc = project.Procedure(i);
    const ProcedureValue& pv = session.ProcedureValue(i);
    std::vector<std::string>& row = sheet.NewRow();
    row[idxProject] = ProjectName(ws, project, proc.BelongToModule);
    row[idxModule] = ModuleName(project, proc.BelongToModule);
    row[idxProcedure] = proc.Name;
    row[idxHits] = std::to_string(pv.Hits);
    row[idxLines] = std::to_string(pv.TotalLines);
    Set(row, idxHitLines, std::to_string(pv.HitLines));
    Set(row, idxCoverage, Coverage(pv.HitLines, pv.TotalLines));
    Set(row, idxLeft, std::to_string(pv.TotalLines - pv.HitLines));
    if (proc.IsCritical) Set(row, idxCritical, Coverage(pv.HitLines, pv.TotalLines));
    Set(row, idxTime, TimeText(pv.TotalTime));
    Set(row, idxAverage, TimeText(pv.AverageTime));
    Set(row, idxChild, TimeText(pv.ChildTotalTime));
    Set(row, idxChildAverage, TimeText(pv.ChildAverageTime));
    TotalHits += pv.Hits;
    TotalTotalTime += pv.TotalTime;
    TotalChildTime += pv.ChildTotalTime;
    TotalLines += pv.TotalLines;
    TotalHitLines += pv.HitLines;
    if (proc.IsCritical) {
      CriticalTotalHits += pv.HitLines;
      CriticalTotalLine += pv.TotalLines;
    }
  }
  // The shares need the totals, so they come in a second pass.
  for (std::int32_t i = 1; i <= project.ProceduresNumber; ++i) {
    const ProcedureValue& pv = session.ProcedureValue(i);
    auto& row = sheet.Rows()[static_cast<std::size_t>(i - 1)];
    row[idxHitsPct] = Share(pv.Hits, TotalHits);
    Set(row, idxTimePct, Share(pv.TotalTime, TotalTotalTime));
    Set(row, idxChildPct, Share(pv.ChildTotalTime, TotalChildTime));
  }

  std::vector<std::string>& total = sheet.NewRow();
  total[idxProject] = kTotal;
  total[idxHits] = CStr(TotalHits);
  total[idxHitsPct] = TotalHits == 0 ? "" : kAllPercent;
  total[idxLines] = CStr(TotalLines);
  Set(total, idxHitLines, CStr(TotalHitLines));
  Set(total, idxCoverage, Coverage(TotalHitLines, TotalLines));
  Set(total, idxLeft, CStr(TotalLines - TotalHitLines));
  Set(total, idxCritical, Coverage(CriticalTotalHits, CriticalTotalLine));
  Set(total, idxTime, TimeText(TotalTotalTime));
  Set(total, idxTimePct, TotalTotalTime == 0 ? "" : kAllPercent);
  Set(total, idxAverage, TimeText(TotalHits == 0 ? 0 : TotalTotalTime / TotalHits));
  Set(total, idxChild, TimeText(TotalChildTime));
  Set(total, idxChildPct, TotalChildTime == 0 ? "" : kAllPercent);
  Set(total, idxChildAverage, TimeText(TotalHits == 0 ? 0 : TotalChildTime / TotalHits));
  return sheet.Array();
}

TextTable ModulesExportArray(const Workspace& ws, std::int32_t sessionIndex,
                             const ReportDataFlags& data) {
  const Session& session = ws.Session(sessionIndex);
  const Project& project = ws.Project(session.Project);

  ExportSheet sheet;
  const int idxProject = sheet.Column("Project");
  const int idxModule = sheet.Column("Module");
  int idxTime = kNone, idxTimePct = kNone;
  if (data[kDataTime]) {
    idxTime = sheet.Column("Total Time");
    idxTimePct = sheet.Column("% Time");
  }
  int idxProcs = kNone, idxHitProcs = kNone, idxProcCoverage = kNone, idxLeftProcs = kNone;
  int idxLines = kNone, idxHitLines = kNone, idxCoverage = kNone, idxLeft = kNone;
  int idxCritical = kNone;
  if (data[kDataCoverage]) {
    idxProcs = sheet.Column("# Procedures");
    idxHitProcs = sheet.Column("Hit Proc.");
    idxProcCoverage = sheet.Column("Proc. Coverage");
    idxLeftProcs = sheet.Column("Left Proc.");
    idxLines = sheet.Column("# Lines");
    idxHitLines = sheet.Column("Hit Lines");
    idxCoverage = sheet.Column("Line Coverage");
    idxLeft = sheet.Column("Left Lines");
    if (project.ContainsCritical) idxCritical = sheet.Column("Critical Cov.");
  }

  double totalTime = 0, procs = 0, hitProcs = 0, lines = 0, hitLines = 0;
  double criticalHit = 0, criticalTotal = 0;
  for (std::int32_t m = 1; m <= project.ModulesNumber; ++m)
    totalTime += session.ModuleValue(m).TotalTime;
  for (std::int32_t m = 1; m <= project.ModulesNumber; ++m) {
    const ModuleValue& mv = session.ModuleValue(m);
    std::vector<std::string>& row = sheet.NewRow();
    row[idxProject] = ProjectName(ws, project, m);
    row[idxModule] = project.Module(m).Name;
    Set(row, idxTime, TimeText(mv.TotalTime));
    Set(row, idxTimePct, Share(mv.TotalTime, totalTime));
    Set(row, idxProcs, std::to_string(mv.TotalProcedures));
    Set(row, idxHitProcs, std::to_string(mv.HitProcedures));
    Set(row, idxProcCoverage, Coverage(mv.HitProcedures, mv.TotalProcedures));
    Set(row, idxLeftProcs, std::to_string(mv.TotalProcedures - mv.HitProcedures));
    Set(row, idxLines, std::to_string(mv.TotalLines));
    Set(row, idxHitLines, std::to_string(mv.HitLines));
    Set(row, idxCoverage, Coverage(mv.HitLines, mv.TotalLines));
    Set(row, idxLeft, std::to_string(mv.TotalLines - mv.HitLines));
    Set(row, idxCritical, Coverage(mv.CriticalHitLines, mv.CriticalTotalLines));
    procs += mv.TotalProcedures;
    hitProcs += mv.HitProcedures;
    lines += mv.TotalLines;
    hitLines += mv.HitLines;
    criticalHit += mv.CriticalHitLines;
    criticalTotal += mv.CriticalTotalLines;
  }
  std::vector<std::string>& total = sheet.NewRow();
  total[idxProject] = kTotal;
  Set(total, idxTime, TimeText(totalTime));
  Set(total, idxTimePct, totalTime == 0 ? "" : kAllPercent);
  Set(total, idxProcs, CStr(procs));
  Set(total, idxHitProcs, CStr(hitProcs));
  Set(total, idxProcCoverage, Coverage(hitProcs, procs));
  Set(total, idxLeftProcs, CStr(procs - hitProcs));
  Set(total, idxLines, CStr(lines));
  Set(total, idxHitLines, CStr(hitLines));
  Set(total, idxCoverage, Coverage(hitLines, lines));
  Set(total, idxLeft, CStr(lines - hitLines));
  Set(total, idxCritical, Coverage(criticalHit, criticalTotal));
  return sheet.Array();
}

TextTable LinesExportArray(const Workspace& ws, std::int32_t sessionIndex,
                           const ReportDataFlags& data, bool skipUnexecuted,
                           const ExportProgress& progress) {
  const Session& session = ws.Session(sessionIndex);
  const Project& project = ws.Project(session.Project);

  ExportSheet sheet;
  const int idxProject = sheet.Column("Project");
  const int idxModule = sheet.Column("Module");
  const int idxProcedure = sheet.Column("Procedure");
  const int idxHits = sheet.Column("Hits");
  const int idxHitsPct = sheet.Column("% Hits");
  const auto [idxTime, idxTimePct, idxAverage, idxChild, idxChildPct, idxChildAverage] =
      AddTimeColumns(sheet, data);
  const int idxText = sheet.Column("Lines");
  const int idxId = sheet.Column("Line ID");

  double totalHits = 0, totalTime = 0, totalChild = 0;
  for (std::int32_t i = 1; i <= project.LinesNumber; ++i) {
    const CodeLineValue& v = session.CodeLineValue(i);
    totalHits += v.Hits;
    totalTime += v.TotalTime;
    totalChild += v.ChildTotalTime;
  }

  const std::int32_t step = std::max<std::int32_t>(1, project.LinesNumber / 100);
  for (std::int32_t i = 1; i <= project.LinesNumber; ++i) {
    if (progress.prompter && i % step == 0) {
      progress.prompter->SetProgressValue(static_cast<long>(
          progress.start + progress.width * i / std::max<std::int32_t>(1, project.LinesNumber)));
    }
    const CodeLineValue& v = session.CodeLineValue(i);
    if (skipUnexecuted && v.Hits == 0) continue;
    const CodeLine& line = project.CodeLine(i);
    std::int32_t module = 0;
    std::vector<std::string>& row = sheet.NewRow();
    if (project.Procedure.InRange(line.BelongToProcedure)) {
      const Procedure& proc = project.Procedure(line.BelongToProcedure);
      module = proc.BelongToModule;
      row[idxProcedure] = proc.Name;
    }
    row[idxProject] = ProjectName(ws, project, module);
    row[idxModule] = ModuleName(project, module);
    row[idxHits] = std::to_string(v.Hits);
    row[idxHitsPct] = Share(v.Hits, totalHits);
    Set(row, idxTime, TimeText(v.TotalTime));
    Set(row, idxTimePct, Share(v.TotalTime, totalTime));
    Set(row, idxAverage, TimeText(v.AverageTime));
    Set(row, idxChild, TimeText(v.ChildTotalTime));
    Set(row, idxChildPct, Share(v.ChildTotalTime, totalChild));
    Set(row, idxChildAverage, TimeText(v.ChildAverageTime));
    row[idxText] = line.Text;
    row[idxId] = std::to_string(i);
  }
  std::vector<std::string>& total = sheet.NewRow();
  total[idxProject] = kTotal;
  total[idxHits] = CStr(totalHits);
  total[idxHitsPct] = totalHits == 0 ? "" : kAllPercent;
  Set(total, idxTime, TimeText(totalTime));
  Set(total, idxTimePct, totalTime == 0 ? "" : kAllPercent);
  Set(total, idxAverage, TimeText(totalHits == 0 ? 0 : totalTime / totalHits));
  Set(total, idxChild, TimeText(totalChild));
  Set(total, idxChildPct, totalChild == 0 ? "" : kAllPercent);
  Set(total, idxChildAverage, TimeText(totalHits == 0 ? 0 : totalChild / totalHits));
  if (progress.prompter) {
    progress.prompter->SetProgressValue(static_cast<long>(progress.start + progress.width));
  }
  return sheet.Array();
}

bool LocaleWritesDecimalCommas() {
  const std::lconv* conv = std::localeconv();
  return conv && conv->decimal_point && std::strchr(conv->decimal_point, ',') != nullptr;
}

std::string ConvertArrayToCsv(const TextTable& cells, int lineColumn, bool replaceComma) {
  std::string out;
  for (int r = cells.LBoundRow(); r <= cells.UBoundRow(); ++r) {
    for (int c = cells.LBoundColumn(); c <= cells.UBoundColumn(); ++c) {
      if (c > cells.LBoundColumn()) out += ',';
      out += CsvCell(cells(c, r), replaceComma && c != lineColumn);
    }
    out += kCrLf;
  }
  return out;
}

std::string ConvertArrayToCsv(const TextTable& cells, int lineColumn) {
  return ConvertArrayToCsv(cells, lineColumn, LocaleWritesDecimalCommas());
}

std::string ExportModules(const Workspace& ws, std::int32_t sessionIndex,
                          const ReportDataFlags& data) {
  return ConvertArrayToCsv(ModulesExportArray(ws, sessionIndex, data), -1);
}

std::string ExportProcedures(const Workspace& ws, std::int32_t sessionIndex,
                             const ReportDataFlags& data) {
  return ConvertArrayToCsv(ProceduresExportArray(ws, sessionIndex, data), -1);
}

std::string ExportLines(const Workspace& ws, std::int32_t sessionIndex, const ReportDataFlags& data,
                        bool skipUnexecuted, const ExportProgress& progress) {
  const TextTable t = LinesExportArray(ws, sessionIndex, data, skipUnexecuted, progress);
  return ConvertArrayToCsv(t, FindExportColumn(t, "Lines"));
}

void ExportModulesToFile(const Workspace& ws, std::int32_t sessionIndex,
                         const ReportDataFlags& data, const std::string& file) {
  WriteFile(file, ExportModules(ws, sessionIndex, data));
}

void ExportProceduresToFile(const Workspace& ws, std::int32_t sessionIndex,
                            const ReportDataFlags& data, const std::string& file) {
  WriteFile(file, ExportProcedures(ws, sessionIndex, data));
}

void ExportLinesToFile(const Workspace& ws, std::int32_t sessionIndex, const ReportDataFlags& data,
                       bool skipUnexecuted, const std::string& file,
                       const ExportProgress& progress) {
  WriteFile(file, ExportLines(ws, sessionIndex, data, skipUnexecuted, progress));
}

}  // namespace zol
