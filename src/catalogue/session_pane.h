#pragma once

// What the catalogue asks of the window that shows it. The session list, the
// project tree and the views belong to the main window; routines that add,
// remove or filter sessions tell it what changed through this interface, and
// the window acts on its own controls. zolprof and tests use
// HeadlessSessionPane, which keeps only the data side of those acts.

#include <cstdint>
#include <string>

#include "session/workspace.h"

namespace zol {

// How far the views are taken back.
enum class ViewReset {
  // Sessions are gone: source view stale, title cleared, grids empty, chart
  // reset, tree emptied, flow chart cleared, "BACK" and "FWD" disabled.
  SessionsGone,
  // Values changed in place (timing filters): source view stale, grids
  // cleared, chart and flow chart cleared, tree reselected, "BACK" and "FWD"
  // disabled.
  ValuesChanged,
};

class SessionPane {
 public:
  virtual ~SessionPane() = default;

  // Ticks the row `key` ("K" or "G" and the index) and runs its check
  // handling: load the session or group, add its branch to the tree, rebuild
  // the merged and compared nodes. A row that can't be loaded comes back
  // unticked.
  virtual void CheckRow(Workspace& ws, const std::string& key) = 0;
  // Unticks the row `key` and runs the same handling: its branch goes.
  virtual void UncheckRow(Workspace& ws, const std::string& key) = 0;

  // Removes the tree branch of Session(cs) and clears its Selected.
  virtual void UnSelectSession(Workspace& ws, std::int32_t cs) = 0;
  // Removes the tree node of SessionGroup(sg) and clears its Selected.
  virtual void UnSelectSessionGroup(Workspace& ws, std::int32_t sg) = 0;

  virtual void ResetViews(Workspace& ws, ViewReset how) = 0;
  // Whether the views show the values of Session(cs) itself: its removal
  // takes them back.
  virtual bool ShowsSession(std::int32_t cs) const = 0;

  // Shows the rows of SessionListRows afresh, sorted as the user last had
  // them.
  virtual void Refresh(Workspace& ws) = 0;
  // Restores the main window if it is minimised, shows it and brings it to
  // the foreground.
  virtual void BringToFront() = 0;
  // The wait cursor, on or off.
  virtual void SetBusy(bool busy) = 0;
};

// The data side of the pane without a window: ticking a row loads the
// session (LoadSession) or the group (LoadSessionGroup) and marks it
// Selected, with the members of a group; unticking clears Selected, again
// with the members. Views, refreshes and cursors are nothing here.
class HeadlessSessionPane : public SessionPane {
 public:
  void CheckRow(Workspace& ws, const std::string& key) override;
  void UncheckRow(Workspace& ws, const std::string& key) override;
  void UnSelectSession(Workspace& ws, std::int32_t cs) override;
  void UnSelectSessionGroup(Workspace& ws, std::int32_t sg) override;
  void ResetViews(Workspace&, ViewReset) override {}
  bool ShowsSession(std::int32_t) const override { return false; }
  void Refresh(Workspace&) override {}
  void BringToFront() override {}
  void SetBusy(bool) override {}
};

}  // namespace zol
