// Ticking and unticking a row of the session list: the data side, which the
// window then shows.

#include "catalogue/session_catalogue.h"

namespace zol {

namespace {

// The merged view of the former selection is stale once the ticks change.
void DropMergedView(Workspace& ws) {
  ws.Session(0).Selected = false;
  ws.Session(0).Loaded = false;
}

// A group is shown with its members, and leaves with them.
void SetGroupSelected(Workspace& ws, std::int32_t sg, bool selected) {
  SessionGroup& g = ws.SessionGroup(sg);
  for (std::int32_t i = 1; i <= g.nSession; ++i) {
    if (ws.Session.InRange(g.Sessions(i))) ws.Session(g.Sessions(i)).Selected = selected;
  }
  g.Selected = selected;
}

}  // namespace

bool TickLoadsRow(const Workspace& ws, const RowKey& row) {
  if (row.index < 1) return false;
  if (row.kind == RowKind::Session) {
    return ws.Session.InRange(row.index) && !ws.Session(row.index).Loaded;
  }
  return ws.SessionGroup.InRange(row.index) && !ws.SessionGroup(row.index).Loaded;
}

RowTick TickRowAfterLoad(Workspace& ws, const RowKey& row, bool loaded) {
  DropMergedView(ws);
  if (row.kind == RowKind::Session) {
    ws.Session(row.index).Selected = loaded;
  } else {
    SetGroupSelected(ws, row.index, loaded);
  }
  return {row, true, loaded};
}

std::optional<RowTick> TickRow(Workspace& ws, const RowKey& row, bool ticked) {
  DropMergedView(ws);
  const std::int32_t n = row.index;
  const bool isSession = row.kind == RowKind::Session;
  if (n < 1 || (isSession ? !ws.Session.InRange(n) : !ws.SessionGroup.InRange(n))) {
    return std::nullopt;
  }
  if (ticked) {
    const bool loaded = isSession ? LoadSession(ws, n) : LoadSessionGroup(ws, n);
    return TickRowAfterLoad(ws, row, loaded);
  }
  if (isSession) {
    ws.Session(n).Selected = false;
  } else {
    SetGroupSelected(ws, n, false);
  }
  return RowTick{row, false, false};
}

}  // namespace zol
