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

RowTick TickSessionAfterLoad(Workspace& ws, std::int32_t cs, bool loaded) {
  DropMergedView(ws);
  ws.Session(cs).Selected = loaded;
  return {RowKey{RowKind::Session, cs}, true, loaded};
}

std::optional<std::int32_t> SessionToLoadForTick(const Workspace& ws, const RowKey& row) {
  if (row.kind != RowKind::Session || row.index < 1 || !ws.Session.InRange(row.index) ||
      ws.Session(row.index).Loaded) {
    return std::nullopt;
  }
  return row.index;
}

std::optional<RowTick> TickRow(Workspace& ws, const RowKey& row, bool ticked) {
  DropMergedView(ws);
  const std::int32_t n = row.index;
  RowTick tick{row, ticked, false};
  if (row.kind == RowKind::Session) {
    if (n < 1 || !ws.Session.InRange(n)) return std::nullopt;
    const bool loaded = ticked && LoadSession(ws, n);
    if (ticked) return TickSessionAfterLoad(ws, n, loaded);
    ws.Session(n).Selected = false;
  } else {
    if (n < 1 || !ws.SessionGroup.InRange(n)) return std::nullopt;
    tick.ticked = ticked && LoadSessionGroup(ws, n);
    SetGroupSelected(ws, n, tick.ticked);
  }
  return tick;
}

}  // namespace zol
