#include "report/report_pages.h"

#include <algorithm>

#include "base/concat_string.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/text.h"
#include "base/vb_format.h"
#include "grid/cell_text.h"
#include "grid/grid_frame.h"
#include "report/report_templates.h"
#include "source_view/html_writer.h"
#include "source_view/page_header.h"
#include "source_view/source_page.h"

namespace zol {

namespace {

constexpr std::string_view kCrLf = "\r\n";

// Numbers stand right as in the grids; names and source text stand left.
std::string CellHtml(const std::string& text) {
  const std::string html = HtmlPrepareString(text);
  const bool number =
      !text.empty() && text.find_first_not_of("0123456789.%/ -") == std::string::npos;
  return number || text.empty() ? html : "<DIV CLASS=\"text\">" + html + "</DIV>";
}

// Rows of texts under a head row, made into an HtmlGetArray table (columns
// from 1, so that the title spans them all).
class SectionTable {
 public:
  explicit SectionTable(std::vector<std::string> headers) : headers_(std::move(headers)) {}
  void Add(std::vector<std::string> row) {
    for (std::string& cell : row) cell = CellHtml(cell);
    rows_.push_back(std::move(row));
  }
  // A row whose cells are HTML already.
  void AddHtml(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  bool Empty() const { return rows_.empty(); }

  std::string Html(std::string_view title = {}) const {
    const int columns = static_cast<int>(headers_.size());
    TextTable t(1, columns, 0, static_cast<int>(rows_.size()));
    for (int c = 1; c <= columns; ++c) t(c, 0) = HtmlPrepareString(headers_[c - 1]);
    for (std::size_t r = 0; r < rows_.size(); ++r) {
      for (int c = 1; c <= columns; ++c) {
        t(c, static_cast<int>(r) + 1) = rows_[r][c - 1];
      }
    }
    return HtmlGetArray(t, title);
  }

 private:
  std::vector<std::string> headers_;
  std::vector<std::vector<std::string>> rows_;
};

std::string Note(std::string_view text) {
  return "<DIV CLASS=\"note\">" + HtmlPrepareString(text) + "</DIV>" + std::string(kCrLf);
}

// A table of texts as it stands (row 0 the heads), shown as a section table.
std::string ArrayHtml(const TextTable& array) {
  std::vector<std::string> headers;
  for (int c = array.LBoundColumn(); c <= array.UBoundColumn(); ++c) headers.push_back(array(c, 0));
  SectionTable table(headers);
  for (int r = 1; r <= array.UBoundRow(); ++r) {
    std::vector<std::string> row;
    for (int c = array.LBoundColumn(); c <= array.UBoundColumn(); ++c) row.push_back(array(c, r));
    table.Add(std::move(row));
  }
  return table.Html();
}

const Session& SessionOf(const Workspace& ws, const SummaryContext& c) {
  return ws.Session(c.session);
}
const Project& ProjectOf(const Workspace& ws, const SummaryContext& c) {
  return ws.Project(ws.Session(c.session).Project);
}

std::string ModuleOfProcedure(const Project& p, std::int32_t proc) {
  if (!p.Procedure.InRange(proc)) return {};
  const std::int32_t m = p.Procedure(proc).BelongToModule;
  return p.Module.InRange(m) ? p.Module(m).Name : std::string();
}

std::string ProcedureName(const Project& p, std::int32_t proc) {
  return p.Procedure.InRange(proc) ? p.Procedure(proc).Name : std::string();
}

// The IDs 1..count with a value above 0, the largest first (the lower ID first
// among equals), at most `top` of them.
template <typename ValueOf>
std::vector<std::int32_t> TopIds(std::int32_t count, std::int32_t top, ValueOf valueOf) {
  std::vector<std::int32_t> ids;
  for (std::int32_t i = 1; i <= count; ++i) {
    if (valueOf(i) > 0) ids.push_back(i);
  }
  const auto byValue = [&](std::int32_t a, std::int32_t b) {
    const double va = valueOf(a), vb = valueOf(b);
    return va != vb ? va > vb : a < b;
  };
  const std::size_t keep = std::min<std::size_t>(ids.size(), static_cast<std::size_t>(top));
  std::partial_sort(ids.begin(), ids.begin() + static_cast<long>(keep), ids.end(), byValue);
  ids.resize(keep);
  return ids;
}

// The time a measure ranks by, its column head, and whether it is a sum (so
// that a share of the total means something).
struct TimeMeasure {
  Measure measure;
  const char* header;
  bool sum;
};

TimeMeasure TimeMeasureOf(Measure m) {
  switch (m) {
    case Measure::Average:
      return {m, "Average Time", false};
    case Measure::ChildTotal:
      return {m, "Child Tot. Time", true};
    case Measure::ChildAverage:
      return {m, "Child Avg. Time", false};
    default:
      return {Measure::Total, "Total Time", true};
  }
}

bool TimeRequested(const SummaryContext& c) {
  const Measure m = TimeMeasureOf(c.measure).measure;
  return m == Measure::ChildTotal || m == Measure::ChildAverage ? c.data[kDataChildren]
                                                                : c.data[kDataTime];
}

}  // namespace

std::string GetProjectSummary(const Workspace& ws, const SummaryContext& c) {
  const Session& s = SessionOf(ws, c);
  const Project& p = ProjectOf(ws, c);
  const ModuleValue& v = s.SessionValue;
  double calls = 0;
  for (std::int32_t i = 1; i <= p.ProceduresNumber; ++i) calls += s.ProcedureValue(i).Hits;
  double lineHits = 0;
  for (std::int32_t i = 1; i <= p.LinesNumber; ++i) lineHits += s.CodeLineValue(i).Hits;

  SectionTable t({"Item", "Value"});
  const auto either = [](const std::string& given, const std::string& own) {
    return given.empty() ? own : given;
  };
  t.Add({"Session", either(c.name, s.Name)});
  t.Add({"Date", either(c.dateTime, s.DateTime)});
  if (!p.Name.empty()) t.Add({"Project", p.Name});
  t.Add({"Project File", either(c.projectFile, p.ProjectFile)});
  t.Add({"Session File", either(c.sessionFile, s.SessionFile)});
  t.Add({"Modules", std::to_string(p.ModulesNumber)});
  t.Add({"Procedures", std::to_string(p.ProceduresNumber)});
  t.Add({"Lines", std::to_string(p.LinesNumber)});
  t.Add({"Procedure Calls", CStr(calls)});
  t.Add({"Line Hits", CStr(lineHits)});
  if (c.data[kDataCoverage]) {
    t.Add({"Hit Procedures",
           std::to_string(v.HitProcedures) + " / " + std::to_string(v.TotalProcedures)});
    t.Add({"Procedure Coverage", PercentText(v.ProcedureCoverage)});
    t.Add({"Hit Lines", std::to_string(v.HitLines) + " / " + std::to_string(v.TotalLines)});
    t.Add({"Line Coverage", PercentText(v.LineCoverage)});
    if (p.ContainsCritical && v.CriticalTotalLines != 0) {
      t.Add({"Critical Coverage",
             PercentText(double(v.CriticalHitLines) / double(v.CriticalTotalLines))});
    }
  }
  if (c.data[kDataTime]) t.Add({"Total Time", TimeText(v.TotalTime)});
  return t.Html();
}

std::string GetModuleSummary(const Workspace& ws, const SummaryContext& c) {
  return ArrayHtml(ModulesExportArray(ws, c.session, c.data));
}

std::string GetMostCalledProcedures(const Workspace& ws, const SummaryContext& c) {
  const Session& s = SessionOf(ws, c);
  const Project& p = ProjectOf(ws, c);
  double total = 0;
  for (std::int32_t i = 1; i <= p.ProceduresNumber; ++i) total += s.ProcedureValue(i).Hits;
  const auto ids = TopIds(p.ProceduresNumber, c.topItems,
                          [&](std::int32_t i) { return double(s.ProcedureValue(i).Hits); });
  if (ids.empty()) return Note("No procedure was called.");
  SectionTable t({"Module", "Procedure", "Hits", "% Hits"});
  for (std::int32_t id : ids) {
    const ProcedureValue& pv = s.ProcedureValue(id);
    t.Add({ModuleOfProcedure(p, id), ProcedureName(p, id), std::to_string(pv.Hits),
           PercentText(pv.Hits / total)});
  }
  return t.Html();
}

std::string GetMostCalledLines(const Workspace& ws, const SummaryContext& c) {
  const Session& s = SessionOf(ws, c);
  const Project& p = ProjectOf(ws, c);
  double total = 0;
  for (std::int32_t i = 1; i <= p.LinesNumber; ++i) total += s.CodeLineValue(i).Hits;
  const auto ids = TopIds(p.LinesNumber, c.topItems,
                          [&](std::int32_t i) { return double(s.CodeLineValue(i).Hits); });
  if (ids.empty()) return Note("No line was executed.");
  SectionTable t({"Line ID", "Module", "Procedure", "Hits", "% Hits", "Line"});
  for (std::int32_t id : ids) {
    const CodeLine& line = p.CodeLine(id);
    t.Add({std::to_string(id), ModuleOfProcedure(p, line.BelongToProcedure),
           ProcedureName(p, line.BelongToProcedure), std::to_string(s.CodeLineValue(id).Hits),
           PercentText(s.CodeLineValue(id).Hits / total), Trim(line.Text)});
  }
  return t.Html();
}

std::string GetModulesNonCovered(const Workspace& ws, const SummaryContext& c) {
  const Session& s = SessionOf(ws, c);
  const Project& p = ProjectOf(ws, c);
  std::vector<std::int32_t> ids;
  for (std::int32_t m = 1; m <= p.ModulesNumber; ++m) {
    const ModuleValue& mv = s.ModuleValue(m);
    if (mv.TotalLines > 0 && mv.HitLines < mv.TotalLines) ids.push_back(m);
  }
  if (ids.empty()) return Note("Every module with probed lines is fully covered.");
  // The least covered first.
  std::stable_sort(ids.begin(), ids.end(), [&](std::int32_t a, std::int32_t b) {
    return s.ModuleValue(a).LineCoverage < s.ModuleValue(b).LineCoverage;
  });
  SectionTable t({"Module", "# Lines", "Hit Lines", "Line Coverage", "Left Lines"});
  for (std::int32_t m : ids) {
    const ModuleValue& mv = s.ModuleValue(m);
    t.Add({p.Module(m).Name, std::to_string(mv.TotalLines), std::to_string(mv.HitLines),
           PercentText(double(mv.HitLines) / mv.TotalLines),
           std::to_string(mv.TotalLines - mv.HitLines)});
  }
  return t.Html();
}

std::string GetProceduresNonCovered(const Workspace& ws, const SummaryContext& c) {
  const Session& s = SessionOf(ws, c);
  const Project& p = ProjectOf(ws, c);
  std::vector<std::int32_t> ids;
  for (std::int32_t i = 1; i <= p.ProceduresNumber; ++i) {
    const ProcedureValue& pv = s.ProcedureValue(i);
    if (!p.Procedure(i).IsDead && pv.TotalLines > 0 && pv.HitLines < pv.TotalLines) {
      ids.push_back(i);
    }
  }
  if (ids.empty()) return Note("Every procedure with probed lines is fully covered.");
  std::stable_sort(ids.begin(), ids.end(), [&](std::int32_t a, std::int32_t b) {
    const ProcedureValue &va = s.ProcedureValue(a), &vb = s.ProcedureValue(b);
    return double(va.HitLines) / va.TotalLines < double(vb.HitLines) / vb.TotalLines;
  });
  SectionTable t(
      {"Module", "Procedure", "Hits", "# Lines", "Hit Lines", "Line Coverage", "Left Lines"});
  for (std::int32_t i : ids) {
    const ProcedureValue& pv = s.ProcedureValue(i);
    t.Add({ModuleOfProcedure(p, i), ProcedureName(p, i), std::to_string(pv.Hits),
           std::to_string(pv.TotalLines), std::to_string(pv.HitLines),
           PercentText(double(pv.HitLines) / pv.TotalLines),
           std::to_string(pv.TotalLines - pv.HitLines)});
  }
  return t.Html();
}

std::string GetTopTimesProcedures(const Workspace& ws, const SummaryContext& c) {
  const Session& s = SessionOf(ws, c);
  const Project& p = ProjectOf(ws, c);
  const TimeMeasure tm = TimeMeasureOf(c.measure);
  const std::int32_t dit = IndexOf(tm.measure);
  double total = 0;
  for (std::int32_t i = 1; i <= p.ProceduresNumber; ++i) {
    total += TimingMeasure(s.ProcedureValue(i), dit);
  }
  const auto ids = TopIds(p.ProceduresNumber, c.topItems,
                          [&](std::int32_t i) { return TimingMeasure(s.ProcedureValue(i), dit); });
  if (ids.empty()) return Note("No time was measured.");
  std::vector<std::string> heads{"Module", "Procedure", "Hits", tm.header};
  if (tm.sum) heads.push_back("% Time");
  SectionTable t(heads);
  for (std::int32_t i : ids) {
    const double v = TimingMeasure(s.ProcedureValue(i), dit);
    std::vector<std::string> row{ModuleOfProcedure(p, i), ProcedureName(p, i),
                                 std::to_string(s.ProcedureValue(i).Hits), TimeText(v)};
    if (tm.sum) row.push_back(PercentText(v / total));
    t.Add(std::move(row));
  }
  return t.Html();
}

std::string GetTopTimesLines(const Workspace& ws, const SummaryContext& c) {
  const Session& s = SessionOf(ws, c);
  const Project& p = ProjectOf(ws, c);
  const TimeMeasure tm = TimeMeasureOf(c.measure);
  const std::int32_t dit = IndexOf(tm.measure);
  double total = 0;
  for (std::int32_t i = 1; i <= p.LinesNumber; ++i) total += TimingMeasure(s.CodeLineValue(i), dit);
  const auto ids = TopIds(p.LinesNumber, c.topItems,
                          [&](std::int32_t i) { return TimingMeasure(s.CodeLineValue(i), dit); });
  if (ids.empty()) return Note("No time was measured.");
  std::vector<std::string> heads{"Line ID", "Module", "Procedure", "Hits", tm.header};
  if (tm.sum) heads.push_back("% Time");
  heads.push_back("Line");
  SectionTable t(heads);
  for (std::int32_t id : ids) {
    const CodeLine& line = p.CodeLine(id);
    const double v = TimingMeasure(s.CodeLineValue(id), dit);
    std::vector<std::string> row{std::to_string(id), ModuleOfProcedure(p, line.BelongToProcedure),
                                 ProcedureName(p, line.BelongToProcedure),
                                 std::to_string(s.CodeLineValue(id).Hits), TimeText(v)};
    if (tm.sum) row.push_back(PercentText(v / total));
    row.push_back(Trim(line.Text));
    t.Add(std::move(row));
  }
  return t.Html();
}

std::string TopTimesTitle(std::int32_t topItems, Measure measure, bool lines) {
  static constexpr const char* kWhat[] = {": Total Time spent in ", ": Average Time spent in ",
                                          ": Total Time spent in ", ": Average Time spent in "};
  const Measure m = TimeMeasureOf(measure).measure;
  std::string title = "Top " + std::to_string(topItems) + kWhat[IndexOf(m)];
  title += lines ? "Line" : "Procedure";
  if (m == Measure::ChildTotal || m == Measure::ChildAverage) title += " and children";
  return title;
}

std::string SummarySections(const Workspace& ws, const SummaryContext& c) {
  CConcatString cc;
  const auto section = [&](const std::string& title, const std::string& body) {
    HtmlWriteString(cc, SectionHead(HtmlPrepareString(title)), 0);
    cc.Append(body);
    HtmlWriteString(cc, "</P>", 0);
  };
  const std::string top = std::to_string(c.topItems);
  section("Project Summary", GetProjectSummary(ws, c));
  section("Module Summary", GetModuleSummary(ws, c));
  section("Most called procedures: Top " + top, GetMostCalledProcedures(ws, c));
  section("Most called lines: Top " + top, GetMostCalledLines(ws, c));
  if (c.data[kDataCoverage]) {
    section("Modules Non 100% Covered:", GetModulesNonCovered(ws, c));
    section("Procedures Non 100% Covered:", GetProceduresNonCovered(ws, c));
  }
  if (TimeRequested(c)) {
    section(TopTimesTitle(c.topItems, c.measure, false), GetTopTimesProcedures(ws, c));
    section(TopTimesTitle(c.topItems, c.measure, true), GetTopTimesLines(ws, c));
  }
  return cc.Value();
}

std::string ContentsTable(const Workspace& ws, const ContentsEntry& e) {
  static constexpr std::string_view kRows[][2] = {
      {"Session", "<B>%SESSION%</B>"},   {"Date", "%DATE%"},
      {"Session File", "%SESSIONFILE%"}, {"Project File", "%PROJECTFILE%"},
      {"Total Time", "%TIME%"},          {"Line Coverage", "%COVERAGE%"},
      {"Detailed Reports", "%REPORT%"}};
  std::string table = "<TABLE CELLPADDING=2 CELLSPACING=0 BORDER=1 RULES=ALL BGCOLOR=D9D9D9>";
  table += kCrLf;
  for (const auto& row : kRows) {
    table += "<TR><TD BGCOLOR=666666><FONT COLOR=white><B>";
    table += row[0];
    table += "</B></FONT></TD><TD>";
    table += row[1];
    table += "</TD></TR>";
    table += kCrLf;
  }
  table += "</TABLE>";
  table += kCrLf;
  table += "<HR>";
  table += kCrLf;

  const ModuleValue& v = ws.Session(e.session).SessionValue;
  const std::string n = std::to_string(e.pageNumber);
  std::string report;
  if (e.summary) report = "<A HREF=\"Summary" + n + ".htm\">Session Summary<A>";
  if (e.summary && e.source) report += " - ";
  if (e.source) report += "<A HREF=\"SourceTOC" + n + ".htm\">Source Code<A>";
  // The report links go in last: the names before them are the user's texts.
  table = Replace(table, "%SESSION%", HtmlPrepareString(e.name));
  table = Replace(table, "%DATE%", HtmlPrepareString(e.dateTime));
  table = Replace(table, "%SESSIONFILE%", HtmlPrepareString(GetFileName(e.sessionFile)));
  table = Replace(table, "%PROJECTFILE%", HtmlPrepareString(GetFileName(e.projectFile)));
  table = Replace(table, "%TIME%", Format(v.TotalTime, "0.000000"));
  table = Replace(table, "%COVERAGE%", FormatPercentage(v.LineCoverage));
  return Replace(table, "%REPORT%", report);
}

std::string MakeSourceCodeReport(Workspace& ws, std::int32_t sessionId, Measure measure,
                                 const std::string& folder, const std::string& prefix,
                                 std::vector<std::string>& written) {
  const Project& project = ws.Project(ws.Session(sessionId).Project);
  SectionTable toc({"Module", "Procedures", "Lines", "Line Coverage", "Total Time"});
  for (std::int32_t m = 1; m <= project.ModulesNumber; ++m) {
    std::int32_t module = m;
    std::int32_t procedure = 0;
    if (project.ProceduresNumber == 0) break;
    CConcatString cc;
    cc.SetValue(GetHeaderCode(ws, sessionId));
    // Browsers drop the page's own PRE rule (it follows the style markers), so
    // the source text would take the right alignment of the number cells.
    HtmlWriteString(cc, "<STYLE TYPE=\"text/css\">PRE { text-align: left; }</STYLE>", 0);
    HtmlWriteString(cc,
                    "<P><B><FONT FACE=\"Arial\">" + HtmlPrepareString(project.Module(m).Name) +
                        "</FONT></B> &nbsp; <A HREF=\"" + prefix +
                        ".htm\"><FONT FACE=\"Arial\" SIZE=1>Source Code contents</FONT></A></P>",
                    0);
    cc.Append(GetHtmlCode(ws, sessionId, module, procedure, kReportPageOptions, measure, false));
    HtmlWriteString(
        cc, "<P><FONT FACE=\"Arial\" SIZE=1 COLOR=777777>" + ReportFooter() + "</FONT></P>", 0);
    HtmlWriteEnd(cc);
    const std::string name = prefix + "_M" + std::to_string(m) + ".htm";
    HtmlOutputTofile(cc, JoinPath(folder, name));
    written.push_back(JoinPath(folder, name));

    const ModuleValue& mv = ws.Session(sessionId).ModuleValue(m);
    toc.AddHtml(
        {"<DIV CLASS=\"text\"><A HREF=\"" + name + "\">" +
             HtmlPrepareString(project.Module(m).Name) + "</A></DIV>",
         std::to_string(mv.TotalProcedures), std::to_string(mv.TotalLines),
         mv.TotalLines == 0 ? std::string() : PercentText(double(mv.HitLines) / mv.TotalLines),
         TimeText(mv.TotalTime)});
  }
  if (toc.Empty()) return Note("The project has no source to show.");
  return toc.Html("Source Code: " + HtmlPrepareString(ws.Session(sessionId).Name));
}

}  // namespace zol
