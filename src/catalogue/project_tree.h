#pragma once

// The project tree: one branch per ticked session (a node per module and per
// procedure), a node above the sessions of a ticked group, and the "MERGE" and
// "COMPARE" branches of a selection of two or more. A node's key carries the
// whole place ("S3M2P17": session 3, module 2, procedure 17), so that one
// parse of the selected key gives the session, project, module and procedure
// of the selection.
//
// The model holds the nodes and the click logic; a window shows the nodes in a
// tree widget and derives from this class to redraw its views at the hooks.
// The tree keeps no selection of its own: the window asks it for the place of
// the selected node (TreeSelection) and owns the result.

#include <cstdint>
#include <string>

#include "catalogue/tree_node.h"
#include "compare/merged_selection_view.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

// Roots of the merged and compared selection.
inline constexpr const char* kMergeKey = "MERGE";
inline constexpr const char* kCompareKey = "COMPARE";

class ProjectTree : public MergedSelectionView {
 public:
  explicit ProjectTree(Workspace& ws) : ws_(ws) {}
  ~ProjectTree() override = default;
  ProjectTree(const ProjectTree&) = delete;
  ProjectTree& operator=(const ProjectTree&) = delete;

  const TreeNodes& Nodes() const { return nodes_; }

  // Adds the branch of the loaded session `cs` below the node `groupNode`
  // (at the root when empty) and marks the session Selected; unless
  // `dontClick`, selects its node and runs the click handling. Does nothing
  // for a session not Loaded or whose branch the tree already shows; a
  // session that the catalogue ticked (TickRow) gets its branch here.
  void SelectSession(std::int32_t cs, const std::string& groupNode, bool dontClick);
  // Adds the group node and the branches of its members below it, unless the
  // tree shows the group already.
  void SelectSessionGroup(std::int32_t sg, bool dontClick);
  // Removes the branch; the session is no longer Selected.
  void UnSelectSession(std::int32_t cs);
  // Removes the group's node with its members' branches; neither the group
  // nor its members stay Selected.
  void UnSelectSessionGroup(std::int32_t sg);

  // Colours every node for `measure`: white, then, when the view settings ask
  // for colour, the modules and procedures of every ticked loaded session by
  // rank, and dead code black. Branches added later are coloured for the
  // same measure.
  void UpdateColors(Measure measure);

  // `current` moved to the selected node: its session (a typed reference),
  // project, module and procedure from the node's key; line, tab and measure
  // stay. `current` itself when no node is selected.
  Selection TreeSelection(const Selection& current) const;

  // A click on the node `key`: selects it; on the first opening of "MERGE" or
  // "COMPARE" builds the merged data; then tells the window (RefreshActiveView),
  // which takes the new place with TreeSelection. False (nothing done) for a
  // key without a node.
  bool NodeClicked(const std::string& key);

  // The same without telling the window, for a caller that draws the place
  // itself: selects the node and builds merged data on first opening.
  bool MoveTo(const std::string& key);

  // Restores the selection after the tree has changed: a compared child moves
  // to "COMPARE", the merged session's node to "MERGE", any other key is
  // selected again if its node still exists.
  void UpdateSelectedItem(const std::string& key);

  // Takes away the "COMPARE" and "MERGE" branches, as a change of ticks does
  // before InitGlobalSessions offers them anew.
  void RemoveMergeRoots();

  // What the merge engine asks of the tree.
  void AddMergeRoots(bool fHomogeneous) override;
  void SelectionChanged(bool nothingTicked) override;
  void ShowMergedSession(std::int32_t MergeIndex, bool forGroup) override;
  void ShowMergedGroupRoots(const std::string& groupFileName) override;

  const std::string& PreviousKey() const { return previousKey_; }

  // A renamed session or group: the first occurrence of `oldName` in the text
  // of node `key` becomes `newName`. False when there is no such node.
  bool RenameInNode(const std::string& key, const std::string& oldName,
                    const std::string& newName) {
    TreeNode* node = nodes_.Find(key);
    if (!node) return false;
    const std::size_t at = oldName.empty() ? std::string::npos : node->Text.find(oldName);
    if (at != std::string::npos) node->Text.replace(at, oldName.size(), newName);
    return true;
  }

 protected:
  // Hooks for the window around the tree; the model itself draws nothing.
  // The ticked sessions have changed.
  virtual void SessionStateChanged() {}
  // A node was clicked: the window takes the place of the selected node.
  virtual void RefreshActiveView() {}

 private:
  void AddSessionBranch(std::int32_t cs, const std::string& parentKey);
  // The branch of a merged session below `rootKey`: with figures under
  // "MERGE", with names only under "COMPARE".
  void AddMergedBranch(const char* rootKey, std::int32_t MergeIndex, const std::string& sessionKey,
                       bool withFigures);
  void BuildMergedData();
  void PaintSessionByRank(std::int32_t cs);

  Workspace& ws_;
  TreeNodes nodes_;
  Measure colourMeasure_ = Measure::Total;
  std::string previousKey_;
};

}  // namespace zol
