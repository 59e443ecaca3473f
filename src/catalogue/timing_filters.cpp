#include "catalogue/timing_filters.h"

#include "base/ini_file.h"
#include "base/text.h"
#include "catalogue/dont_show_dialog.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_list.h"
#include "profile/gather_info.h"

namespace zol {

const char* const kApplyFiltersText =
    "Filters are use to force timings to 0s for lines of code containing\n"
    "filtered expressions (filters are defined in the options screen).\n"
    "\n"
    "Important: Filters do not apply to children timings since there\n"
    "is no way to know which line was counted as child of others.\n"
    "You will still see the original timings in children views and flow charts.\n"
    "\n"
    "Please note that filters effects are not saved with the session file.\n"
    "You can still revert back to the original timings by unloading and\n"
    "reloading a session.";

namespace {

bool IsInPlay(const Session& s) {
  return s.Loaded && s.Selected;
}

void RecordActiveFilter(Session& s, const std::string& filter) {
  for (std::int32_t i = 1; i <= s.nFilters; ++i) {
    if (s.ActiveFilters(i) == filter) return;
  }
  ++s.nFilters;
  s.ActiveFilters.ReDimPreserve(s.nFilters);
  s.ActiveFilters(s.nFilters) = filter;
}

std::vector<std::int32_t> SessionsInPlayOf(const Workspace& ws, std::int32_t cp) {
  std::vector<std::int32_t> list;
  for (std::int32_t cs = 1; cs <= ws.nSession; ++cs) {
    const Session& s = ws.Session(cs);
    if (s.Project == cp && IsInPlay(s)) list.push_back(cs);
  }
  return list;
}

void FilterProject(Workspace& ws, std::int32_t cp, const std::vector<std::int32_t>& sessions,
                   const std::vector<std::string>& filters) {
  const Project& project = ws.Project(cp);
  for (std::int32_t id = 1; id <= project.LinesNumber; ++id) {
    const std::string& text = project.CodeLine(id).Text;
    for (const std::string& filter : filters) {
      if (InStr(1, text, filter) == 0) continue;
      for (std::int32_t cs : sessions) {
        Session& s = ws.Session(cs);
        CodeLineValue& line = s.CodeLineValue(id);
        if (line.Hits == 0) continue;
        line.TotalTime = 0;
        RecordActiveFilter(s, filter);
      }
    }
  }
}

bool AnySessionInPlay(const Workspace& ws) {
  for (std::int32_t cs = 1; cs <= ws.nSession; ++cs) {
    if (IsInPlay(ws.Session(cs))) return true;
  }
  return false;
}

// Every ticked row is unticked and ticked again, so that the tree and the
// merged data are built from the new values.
void RecheckTickedRows(Workspace& ws, CatalogueChange& change) {
  for (const SessionListRow& row : SessionListRows(ws)) {
    if (!row.Checked) continue;
    const std::optional<RowKey> key = ParseRowKey(row.Key);
    if (!key) continue;
    for (const bool ticked : {false, true}) {
      if (const std::optional<RowTick> tick = TickRow(ws, *key, ticked)) {
        change.ticks.push_back(*tick);
      }
    }
  }
}

}  // namespace

std::string ReadFiltersSetting(const std::string& iniFile) {
  return Replace(VBGetPrivateProfileString("Profiler", "Filters", kDefaultFiltersSetting, iniFile),
                 "<vbCrLf>", "\r\n");
}

void ApplyTimingFilters(Workspace& ws, const std::vector<std::string>& filters) {
  for (std::int32_t cp = 1; cp <= ws.nProject; ++cp) {
    const std::vector<std::int32_t> sessions = SessionsInPlayOf(ws, cp);
    if (sessions.empty()) continue;
    FilterProject(ws, cp, sessions, filters);
    for (std::int32_t cs : sessions) GatherInfo(ws, cs);
  }
}

std::optional<CatalogueChange> ApplyFilter(Workspace& ws, std::string filters) {
  if (!AnySessionInPlay(ws)) {
    ws.prompter().ShowMessage("No session selected !", MessageKind::Exclamation);
    return std::nullopt;
  }
  if (filters.empty()) {
    ws.prompter().ShowMessage("No filter defined !\nPlease define filters in the options screen.",
                              MessageKind::Information);
    return std::nullopt;
  }
  if (!MsgBoxDontShow(ws, kApplyFiltersMessageId, kApplyFiltersTitle, kApplyFiltersText)) {
    return std::nullopt;
  }
  ApplyTimingFilters(ws, Split(filters, "\r\n"));
  CatalogueChange change;
  RecheckTickedRows(ws, change);
  change.viewReset = ViewReset::ValuesChanged;
  return change;
}

}  // namespace zol
