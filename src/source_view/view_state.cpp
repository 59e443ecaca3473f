#include "source_view/view_state.h"

namespace zol {

namespace {

constexpr const char* kClickProcedures = "Please click the Procedures tab";

TitleLabel Label(std::string text, std::string icon) {
  return TitleLabel{true, std::move(text), std::move(icon)};
}

// The merged selection: slot 0, or the merged session of the ticked groups.
bool IsMergedSelection(const Workspace& ws, std::int32_t cs) {
  if (cs == 0) return true;
  return ws.fOnlyGroups && ws.SessionGroup.InRange(0) &&
         ws.SessionGroup(0).GroupMergedSession == cs;
}

}  // namespace

bool SourcePageCache::NeedsReload(const SourcePageKey& key) {
  if (last_ && *last_ == key) return false;
  last_ = key;
  return true;
}

std::optional<std::string> SourceUnavailableText(const Workspace& ws, const SessionRef& session) {
  const std::int32_t sessionId = session.sessionIndex();
  if (session.isCompared()) {
    return std::string("Unavailable (compared sessions)\r\n") + kClickProcedures;
  }
  if (sessionId == 0 && !ws.fHomogeneous) {
    return std::string("Unavailable (heterogeneous sessions)\r\n") + kClickProcedures;
  }
  if (ws.Session.InRange(sessionId) && ws.Session(sessionId).IsMergedGroupSession) {
    return std::string("Unavailable (group session)\r\nor select a project inside the group");
  }
  return std::nullopt;
}

TitleStrip UpdateTitle(const Workspace& ws, const Selection& sel) {
  TitleStrip t;
  const std::int32_t cs = sel.session.sessionIndex();
  const std::int32_t module = sel.module;
  const std::int32_t procedure = sel.procedure;
  if (sel.session.isCompared()) {
    t.Session = Label("Compared Sessions", "COMPARE");
    if (ws.fOnlyGroups) t.Group = t.Session;
  } else if (IsMergedSelection(ws, cs)) {
    t.Session = Label("Merged Sessions", "MERGE");
    if (ws.fOnlyGroups) t.Group = t.Session;
  } else if (ws.Session.InRange(cs)) {
    const Session& s = ws.Session(cs);
    t.Session = Label(s.Name, "SESSION");
    if (s.Group != 0 && ws.SessionGroup.InRange(s.Group)) {
      t.Group = Label(ws.SessionGroup(s.Group).Name, "GROUP");
    }
  }

  if (module == 0 || !ws.Project.InRange(sel.project)) return t;
  const Project& p = ws.Project(sel.project);
  if (p.Module.InRange(module)) {
    const Module& m = p.Module(module);
    t.Module = Label(m.Name, "TYPE" + std::to_string(m.Type));
  }
  if (procedure != 0 && p.Procedure.InRange(procedure)) {
    const Procedure& proc = p.Procedure(procedure);
    t.Procedure = Label(proc.Name, "PROC" + std::to_string(proc.Type));
  }
  return t;
}

}  // namespace zol
