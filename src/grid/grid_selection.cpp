#include "grid/grid_selection.h"

#include "compare/group_merge.h"

namespace zol {

GridSelection GridSelectionOf(const Workspace& ws) {
  GridSelection sel;
  sel.cs = ws.cs;
  sel.cp = ws.cp;
  sel.cMod = ws.cMod;
  sel.cPro = ws.cPro;
  sel.DisplayInfoType = ws.DisplayInfoType;
  sel.Group = ws.cs < 0 ? -1 : GetGroupMergedSession(ws, ws.cs);
  return sel;
}

namespace {
SessionRef SessionRefOf(const Workspace& ws) {
  if (ws.cs == kComparedGroupsSession) return SessionRef::comparedGroups();
  if (ws.cs < 0) return SessionRef::compared();
  if (ws.cs == 0) return SessionRef::merged();
  // A group's merged session, or (group 0) the merged selection of ticked
  // groups: either lives in a slot of its own, which the reference keeps.
  const std::int32_t group = GetGroupMergedSession(ws, ws.cs);
  if (group >= 0) return SessionRef::group(group, ws.cs);
  return SessionRef::single(ws.cs);
}
}  // namespace

Selection SelectionOf(const Workspace& ws) {
  Selection sel;
  sel.session = SessionRefOf(ws);
  sel.project = ws.cp;
  sel.module = ws.cMod;
  sel.procedure = ws.cPro;
  sel.line = ws.cLine;
  sel.tab = ws.Active_tbsTab >= 1 && ws.Active_tbsTab <= 7 ? static_cast<Tab>(ws.Active_tbsTab)
                                                           : Tab::Procedures;
  sel.measure = MeasureFromIndex(ws.DisplayInfoType);
  return sel;
}

}  // namespace zol
