#include "report/report_driver.h"

#include "base/concat_string.h"
#include "base/files.h"
#include "base/paths.h"
#include "base/temp_files.h"
#include "base/text.h"
#include "compare/group_merge.h"
#include "errcapture/trace.h"
#include "report/data_export.h"
#include "report/report_check.h"
#include "report/report_pages.h"
#include "report/report_templates.h"
#include "source_view/html_writer.h"

namespace zol {

namespace {

constexpr std::string_view kCrLf = "\r\n";
constexpr long kProgressPerSession = 100;

// One entry of the report: a session, or a group by its merged session.
struct ReportItem {
  std::int32_t session = 0;
  std::int32_t group = -1;  // above 0 for a group's merged session
  std::string name;         // ReportName
  std::string sessionFile;  // the session's, or the group's file
  std::string dateTime;
  std::string projectFile;
};

ReportItem ItemOf(const Workspace& ws, std::int32_t cs) {
  ReportItem item;
  item.session = cs;
  const std::int32_t group = GetGroupMergedSession(ws, cs);
  const Session& s = ws.Session(cs);
  item.projectFile = ws.Project.InRange(s.Project) ? ws.Project(s.Project).ProjectFile : "";
  if (item.projectFile.empty()) item.projectFile = s.ProjectFile;
  if (group > 0) {
    const SessionGroup& g = ws.SessionGroup(group);
    item.group = group;
    item.name = g.Name;
    item.sessionFile = g.SessionFile;
    item.dateTime = g.DateTime;
    if (ws.Project.InRange(g.Project) && !ws.Project(g.Project).ProjectFile.empty()) {
      item.projectFile = ws.Project(g.Project).ProjectFile;
    }
  } else {
    item.name = s.Name;
    item.sessionFile = s.SessionFile;
    item.dateTime = s.DateTime;
  }
  if (item.name.empty()) item.name = cs == 0 ? "Merged Sessions" : "Session";
  return item;
}

std::vector<std::int32_t> Members(const Workspace& ws, const ReportItem& item) {
  std::vector<std::int32_t> list;
  if (item.group <= 0) return list;
  const SessionGroup& g = ws.SessionGroup(item.group);
  for (std::int32_t k = 1; k <= g.nSession; ++k) list.push_back(g.Sessions(k));
  return list;
}

std::string TrimmedFolder(std::string folder) {
  while (folder.size() > 1 && IsPathSeparator(folder.back())) folder.pop_back();
  return folder;
}

// The folder of the report, worked out from the first entry whose file has a
// folder (the merged session has no file of its own).
std::string WorkOutFolder(Workspace& ws, const ReportRequest& request,
                          const std::vector<ReportItem>& items) {
  const ReportOptions& o = request.options;
  if (o.Target == ReportTarget::UserFolder) return o.ReportFolder;
  std::string folder;
  std::string name = items.front().name;
  for (const ReportItem& item : items) {
    const std::string path = GetPath(item.sessionFile);
    if (path.size() >= 3) {
      folder = TrimmedFolder(path);
      name = item.name;
      break;
    }
  }
  if (folder.empty() || o.Target == ReportTarget::TempFolder) {
    folder = TrimmedFolder(GetTempPath());
    if (o.Target == ReportTarget::TempFolder) name = "Session";
  }
  if (o.Target == ReportTarget::SessionFolder) return folder;
  folder = NumberedReportFolder(folder, name);
  MakeDir(folder);
  if (o.Target == ReportTarget::TempFolder && request.deleteTempReportOnExit) {
    ws.tempFiles.AddToDeleteOnExit(folder, true);
  }
  return folder;
}

class ReportWriter {
 public:
  ReportWriter(Workspace& ws, const ReportRequest& request, ReportOutcome& out)
      : ws_(ws), request_(request), o_(request.options), out_(out) {}

  void Write(const std::vector<ReportItem>& items) {
    Prompter& prompter = ws_.prompter();
    prompter.ShowProgress(true);
    prompter.SetProgressMax(kProgressPerSession * static_cast<long>(items.size()));
    out_.ReportPath = WorkOutFolder(ws_, request_, items);
    std::string tables;
    for (std::size_t k = 0; k < items.size(); ++k) {
      const ReportItem& item = items[k];
      const std::int32_t n = static_cast<std::int32_t>(k) + 1;
      progressBase_ = kProgressPerSession * static_cast<long>(k);
      prompter.SetProgressText("Generating report for " + item.name + "...");
      prompter.SetProgressValue(progressBase_);
      prompter.DoEvents();
      if (o_.DoExport) {
        Export(item);
      } else {
        if (k == 0) Save(JoinPath(out_.ReportPath, "more.gif"), MoreGifBytes());
        if (o_.IncludeHTMLProject) SourcePages(item, n);
        if (o_.IncludeReportSummary) SummaryPage(item, n);
      }
      ContentsEntry entry{item.session,
                          item.name,
                          item.dateTime,
                          item.sessionFile,
                          item.projectFile,
                          n,
                          !o_.DoExport && o_.IncludeReportSummary,
                          !o_.DoExport && o_.IncludeHTMLProject};
      tables += ContentsTable(ws_, entry);
    }
    // The contents page lists the sessions of an export too, without links.
    CConcatString cc;
    cc.SetValue(
        Replace(LoadResMultiline(kTemplateContents, "Zolmark Profiler Report"), "%BODY%", tables));
    HtmlWriteEnd(cc);
    const std::string contents = JoinPath(out_.ReportPath, "Contents.htm");
    Page(cc, contents);
    AddToFileToOpenList(out_, contents);
    if (!o_.DoExport) {
      if (o_.ReporttoChm) {
        prompter.SetProgressText(kCompilingHelp);
        prompter.ShowMessage(kNoHelpCompiler, MessageKind::Information);
      }
    }
    prompter.SetProgressValue(kProgressPerSession * static_cast<long>(items.size()));
    prompter.SetProgressText("");
    prompter.ShowProgress(false);
    out_.written = true;
  }

 private:
  void Save(const std::string& file, std::string_view bytes) {
    WriteFile(file, bytes);
    out_.files.push_back(file);
  }
  void Page(const CConcatString& cc, const std::string& file) {
    HtmlOutputTofile(cc, file);
    out_.files.push_back(file);
  }

  void Export(const ReportItem& item) {
    const ReportDataFlags& data = o_.DataRequested;
    const bool skip = o_.ExportWhat[kExportSkipUnexecuted];
    const ExportProgress lineProgress{&ws_.prompter(), double(progressBase_ + 20), 80.0};
    const std::string base = JoinPath(out_.ReportPath, item.name + "-export");
    if (o_.ExportCreateSeparateFile) {
      if (o_.ExportWhat[kExportModules]) {
        ExportModulesToFile(ws_, item.session, data, base + "-modules.csv");
        Listed(base + "-modules.csv");
      }
      if (o_.ExportWhat[kExportProcedures]) {
        ExportProceduresToFile(ws_, item.session, data, base + "-procedures.csv");
        Listed(base + "-procedures.csv");
      }
      if (o_.ExportWhat[kExportLines]) {
        ExportLinesToFile(ws_, item.session, data, skip, base + "-lines.csv", lineProgress);
        Listed(base + "-lines.csv");
      }
      return;
    }
    std::string text;
    if (o_.ExportWhat[kExportModules]) {
      text += "MODULES:" + std::string(kCrLf) + ExportModules(ws_, item.session, data) +
              std::string(kCrLf);
    }
    if (o_.ExportWhat[kExportProcedures]) {
      text += "PROCEDURES:" + std::string(kCrLf) + ExportProcedures(ws_, item.session, data) +
              std::string(kCrLf);
    }
    if (o_.ExportWhat[kExportLines]) {
      text += "LINES:" + std::string(kCrLf) +
              ExportLines(ws_, item.session, data, skip, lineProgress) + std::string(kCrLf);
    }
    WriteFile(base + ".csv", text);
    Listed(base + ".csv");
  }

  void Listed(const std::string& file) {
    out_.files.push_back(file);
    AddToFileToOpenList(out_, file);
  }

  SummaryContext Context(std::int32_t session) const {
    return {session, o_.DataRequested, o_.TopItems, request_.measure, {}, {}, {}, {}};
  }
  SummaryContext Context(const ReportItem& item) const {
    SummaryContext c = Context(item.session);
    c.name = item.name;
    c.dateTime = item.dateTime;
    c.sessionFile = item.sessionFile;
    c.projectFile = item.projectFile;
    return c;
  }

  void SummaryPage(const ReportItem& item, std::int32_t n) {
    const std::string title = HtmlPrepareString(item.name);
    CConcatString cc;
    cc.SetValue(LoadResMultiline(kTemplateSummary, "Session Summary: " + title));
    HtmlWriteString(cc, "<H1>Session Summary: " + title + "</H1>", 0);
    HtmlWriteString(cc,
                    "<DIV CLASS=\"commands\"><A HREF=\"Contents.htm\">Contents</A>"
                    "<A onclick=\"fnExpandAll()\">Expand all</A>"
                    "<A onclick=\"fnCollapseAll()\">Collapse all</A></DIV>",
                    0);
    const std::vector<std::int32_t> members = Members(ws_, item);
    if (!members.empty()) {
      HtmlWriteString(cc, "<H2 CLASS=\"sessionHead\">Group: " + title + "</H2>", 0);
    }
    cc.Append(SummarySections(ws_, Context(item)));
    for (std::int32_t member : members) {
      HtmlWriteString(cc,
                      "<H2 CLASS=\"sessionHead\">Member: " +
                          HtmlPrepareString(ws_.Session(member).Name) + "</H2>",
                      0);
      cc.Append(SummarySections(ws_, Context(member)));
    }
    HtmlWriteString(cc, "<DIV CLASS=\"reportFooter\">" + ReportFooter() + "</DIV>", 0);
    HtmlWriteEnd(cc);
    Page(cc, JoinPath(out_.ReportPath, "Summary" + std::to_string(n) + ".htm"));
  }

  void SourcePages(const ReportItem& item, std::int32_t n) {
    const std::string title = HtmlPrepareString(item.name);
    const std::string prefix = "SourceTOC" + std::to_string(n);
    CConcatString cc;
    cc.SetValue(LoadResMultiline(kTemplateHeader, "Source Code: " + title));
    HtmlWriteString(cc, "<H1>Source Code: " + title + "</H1>", 0);
    HtmlWriteString(cc, "<DIV CLASS=\"commands\"><A HREF=\"Contents.htm\">Contents</A></DIV>", 0);
    const std::vector<std::int32_t> members = Members(ws_, item);
    // A group's merged session has no source of its own: its members have.
    if (members.empty()) {
      cc.Append(MakeSourceCodeReport(ws_, item.session, request_.measure, out_.ReportPath, prefix,
                                     out_.files));
    }
    for (std::size_t k = 0; k < members.size(); ++k) {
      HtmlWriteString(
          cc, "<H2>Member: " + HtmlPrepareString(ws_.Session(members[k]).Name) + "</H2>", 0);
      cc.Append(MakeSourceCodeReport(ws_, members[k], request_.measure, out_.ReportPath,
                                     prefix + "_S" + std::to_string(k + 1), out_.files));
    }
    HtmlWriteString(cc, "<P><BR>", 0);
    HtmlWriteString(cc, "<DIV CLASS=\"reportFooter\">" + ReportFooter() + "</DIV>", 0);
    HtmlWriteEnd(cc);
    Page(cc, JoinPath(out_.ReportPath, prefix + ".htm"));
    ws_.prompter().SetProgressValue(progressBase_ + 50);
  }

  Workspace& ws_;
  const ReportRequest& request_;
  const ReportOptions& o_;
  ReportOutcome& out_;
  long progressBase_ = 0;
};

}  // namespace

void AddToFileToOpenList(ReportOutcome& report, const std::string& fileName) {
  report.FileToOpen.push_back(fileName);
}

std::string NumberedReportFolder(const std::string& folder, const std::string& name) {
  for (int n = 1;; ++n) {
    const std::string candidate = JoinPath(folder, name + " Report " + std::to_string(n));
    if (!FolderExist(candidate) && !FileExist(candidate)) return candidate;
  }
}

ReportOutcome CreateReport(Workspace& ws, const ReportRequest& request) {
  ZOL_TRACE("Report.CreateReport");
  ReportOutcome out;
  const auto refuse = [&](const std::string& message) {
    out.refusal = message;
    ws.prompter().ShowMessage(message, MessageKind::Exclamation);
    return out;
  };
  const bool anySession =
      AnySessionLoaded(ws) || (request.current.kind() != SessionRef::Kind::None &&
                               ws.Session.InRange(request.current.sessionIndex()) &&
                               ws.Session(request.current.sessionIndex()).Loaded);
  if (const auto message = CheckReport(request.options, anySession)) return refuse(*message);
  const SessionChoice choice = SelectSessionsToReport(ws, request.options, request.current);
  if (choice.sessions.empty()) return refuse(choice.refusal);

  std::vector<ReportItem> items;
  for (std::int32_t cs : choice.sessions) items.push_back(ItemOf(ws, cs));
  ReportWriter(ws, request, out).Write(items);
  return out;
}

}  // namespace zol
