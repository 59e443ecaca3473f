#include "catalogue/session_catalogue.h"
#include "catalogue/session_list.h"
#include "catalogue/session_pane.h"

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
  for (std::int32_t i = 1; i <= g.nSession; ++i) ws.Session(g.Sessions(i)).Selected = selected;
  g.Selected = selected;
}

}  // namespace

void HeadlessSessionPane::CheckRow(Workspace& ws, const std::string& key) {
  const std::optional<RowKey> row = ParseRowKey(key);
  if (!row) return;
  DropMergedView(ws);
  if (row->kind == RowKind::Session) {
    if (LoadSession(ws, row->index)) ws.Session(row->index).Selected = true;
  } else if (LoadSessionGroup(ws, row->index)) {
    SetGroupSelected(ws, row->index, true);
  }
}

void HeadlessSessionPane::UncheckRow(Workspace& ws, const std::string& key) {
  const std::optional<RowKey> row = ParseRowKey(key);
  if (!row) return;
  DropMergedView(ws);
  if (row->kind == RowKind::Session) {
    UnSelectSession(ws, row->index);
  } else {
    UnSelectSessionGroup(ws, row->index);
  }
}

void HeadlessSessionPane::UnSelectSession(Workspace& ws, std::int32_t cs) {
  ws.Session(cs).Selected = false;
}

void HeadlessSessionPane::UnSelectSessionGroup(Workspace& ws, std::int32_t sg) {
  SetGroupSelected(ws, sg, false);
}

}  // namespace zol
