#include "compare/save_merged.h"

#include "base/paths.h"
#include "base/text.h"
#include "compare/date_time_text.h"
#include "compare/global_sessions.h"
#include "profile/session_files.h"

namespace zol {

namespace {

// Why the ticked sessions can't be saved as one, or empty when they can.
std::string RefusalFor(const Workspace& ws, const Array1<std::int32_t>& list,
                       const std::string& path) {
  if (list.Count() < 2) return "Select two or more sessions to save them merged as one session.";
  for (const std::int32_t cs : list) {
    if (ws.Session(cs).Project != ws.Session(list(1)).Project) {
      return "Sessions of different projects can't be saved as one session: a session file "
             "belongs to one project.";
    }
  }
  if (UCase(Right(path, 4)) != ".PFD") {
    return "A merged session is saved as a .pfd file:\n" + path;
  }
  return "";
}

// The header of the saved session: its own file and date, the rest from the
// first session of the merge.
void NameSavedSession(Workspace& ws, std::int32_t n, std::int32_t first, const std::string& path) {
  const Session& f = ws.Session(first);
  Session& s = ws.Session(n);
  s.SessionFile = path;
  s.Name = GetFileBody(path);
  s.DateTime = PresentDateTimeText();
  s.GroupFile = f.GroupFile;
  s.ProjectFile = f.ProjectFile;
  s.IniFile = f.IniFile;
  s.OriginalProjectFile = f.OriginalProjectFile;
  s.Loaded = true;
}

}  // namespace

std::int32_t SaveMergedSession(Workspace& ws, const std::string& path, MergedSelectionView* view) {
  const Array1<std::int32_t> list = SelectedSessions(ws);
  if (const std::string refusal = RefusalFor(ws, list, path); !refusal.empty()) {
    ws.prompter().ShowMessage(refusal, MessageKind::Exclamation);
    return 0;
  }
  const std::int32_t n = ++ws.nSession;
  ws.SessionSlot(n);
  try {
    Array1<Session> scratch;
    MakeMergedAndCompareSessions(ws, n, scratch, list, {.homogeneous = true});
    NameSavedSession(ws, n, list(1), path);
    SaveSessionInfo(ws, n);
  } catch (const std::exception& e) {
    ws.Session(n) = Session{};
    ws.prompter().ShowMessage("The merged session could not be saved:\n" + std::string(e.what()),
                              MessageKind::Exclamation);
    return 0;
  }
  InitGlobalSessions(ws, view);
  return n;
}

}  // namespace zol
