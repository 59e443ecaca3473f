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

}  // namespace zol
