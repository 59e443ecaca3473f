#include "report/report_check.h"

#include "base/files.h"

namespace zol {

namespace {

constexpr std::string_view kLineBreak = "\r\n";

bool Reportable(const Workspace& ws, std::int32_t cs) {
  return ws.Session.InRange(cs) && ws.Session(cs).Loaded;
}

// The ticked groups' merged sessions, then the ticked sessions outside groups,
// in the order of the session list.
std::vector<std::int32_t> TickedSessions(const Workspace& ws) {
  std::vector<std::int32_t> list;
  for (std::int32_t i = 1; i <= ws.nSession && ws.Session.InRange(i); ++i) {
    const Session& s = ws.Session(i);
    if (s.Selected && s.Group == 0 && !s.IsMergedGroupSession && !s.Invisible && s.Loaded) {
      list.push_back(i);
    }
  }
  for (std::int32_t g = 1; g <= ws.nSessionGroup && ws.SessionGroup.InRange(g); ++g) {
    const SessionGroup& group = ws.SessionGroup(g);
    if (group.Selected && group.GroupMergedSession != 0 &&
        Reportable(ws, group.GroupMergedSession)) {
      list.push_back(group.GroupMergedSession);
    }
  }
  return list;
}

}  // namespace

bool AnySessionLoaded(const Workspace& ws) {
  return !TickedSessions(ws).empty();
}

std::optional<std::string> CheckReport(const ReportOptions& o, bool anySession) {
  if (!anySession) return std::string(kNoSessionSelected);
  if (!o.DataRequested[kDataCoverage] && !o.DataRequested[kDataTime] &&
      !o.DataRequested[kDataChildren]) {
    return std::string(kNoDataRequested);
  }
  if (o.DoExport && !o.ExportWhat[kExportModules] && !o.ExportWhat[kExportProcedures] &&
      !o.ExportWhat[kExportLines]) {
    return std::string(kNothingToExport);
  }
  if (!o.DoExport && !o.IncludeReportSummary && !o.IncludeHTMLProject) {
    return std::string(kNothingToReport);
  }
  if (!o.DoExport && !o.ReporttoChm && !o.ReporttoHtm) return std::string(kNoReportFormat);
  if (o.Target == ReportTarget::UserFolder) {
    bool made = !o.ReportFolder.empty();
    if (made) {
      try {
        MakeDir(o.ReportFolder);
      } catch (const FileError&) {
        made = false;
      }
    }
    if (!made) return std::string(kCannotMakeFolder) + std::string(kLineBreak) + o.ReportFolder;
  }
  return std::nullopt;
}

SessionChoice SelectSessionsToReport(const Workspace& ws, const ReportOptions& options,
                                     const SessionRef& current) {
  SessionChoice choice;
  if (options.Scope == ReportScope::Current) {
    if (current.isCompared()) {
      choice.refusal =
          std::string(kCannotReportCompared) + std::string(kLineBreak) + kSelectAnotherSession;
      return choice;
    }
    if (current.kind() != SessionRef::Kind::None && Reportable(ws, current.sessionIndex())) {
      choice.sessions.push_back(current.sessionIndex());
    }
  } else {
    choice.sessions = TickedSessions(ws);
    // The merged view of the ticks, when there is one to add.
    if (options.Scope == ReportScope::AllTickedAndMerged && choice.sessions.size() > 1 &&
        Reportable(ws, 0)) {
      choice.sessions.push_back(0);
    }
  }
  if (choice.sessions.empty()) choice.refusal = kNoSessionSelected;
  return choice;
}

}  // namespace zol
