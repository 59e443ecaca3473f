#pragma once

// The project tree's node model with the window's hooks: when the ticked
// sessions change or a selection wants the active page redrawn, the model
// calls back into the window.

#include <functional>

#include "catalogue/project_tree.h"

namespace zol {

class GuiProjectTree : public ProjectTree {
 public:
  struct Hooks {
    std::function<void()> sessionStateChanged;
    std::function<void()> refreshActiveView;
    // Nothing is ticked any more: every view is cleared.
    std::function<void()> allSessionsGone;
  };

  GuiProjectTree(Workspace& ws, Hooks hooks) : ProjectTree(ws), hooks_(std::move(hooks)) {}

  void SelectionChanged(bool nothingTicked) override {
    ProjectTree::SelectionChanged(nothingTicked);
    if (nothingTicked && hooks_.allSessionsGone) hooks_.allSessionsGone();
  }

 protected:
  void SessionStateChanged() override {
    if (hooks_.sessionStateChanged) hooks_.sessionStateChanged();
  }
  void RefreshActiveView() override {
    if (hooks_.refreshActiveView) hooks_.refreshActiveView();
  }

 private:
  Hooks hooks_;
};

}  // namespace zol
