#pragma once

// The project tree: one branch per ticked session (a node per module and per
// procedure), a node above the sessions of a ticked group, and the "MERGE" and
// "COMPARE" branches of a selection of two or more. A node's key carries the
// whole selection ("S3M2P17": session 3, module 2, procedure 17), so that one
// parse of the selected key restores cs, cp, cMod and cPro.
//
// The model holds the nodes and the click logic; a window shows the nodes in a
// tree widget and derives from this class to redraw its views at the hooks.

#include <cstdint>
#include <string>

#include "catalogue/tree_node.h"
#include "compare/merged_selection_view.h"
#include "session/workspace.h"

namespace zol {

// Roots of the merged and compared selection.
inline constexpr const char* kMergeKey = "MERGE";
inline constexpr const char* kCompareKey = "COMPARE";

// The scope tab of reports, which a click in the tree doesn't redraw.
inline constexpr std::int32_t kReportsTab = 7;

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
  // for a session already Selected or not Loaded.
  void SelectSession(std::int32_t cs, const std::string& groupNode, bool dontClick);
  // Adds the group node and the branches of its members below it.
  void SelectSessionGroup(std::int32_t sg, bool dontClick);
  // Removes the branch; the session is no longer Selected.
  void UnSelectSession(std::int32_t cs);
  // Removes the group's node with its members' branches; neither the group
  // nor its members stay Selected.
  void UnSelectSessionGroup(std::int32_t sg);

  // Colours every node for DisplayInfoType: white, then, when the view settings ask for colour, the
  // modules and procedures of every ticked loaded session by rank, and dead
  // code black.
  void UpdateColors();

  // Sets cs, cp, cMod and cPro from the selected node's key.
  void GetTreeSelection();

  // A click on the node `key`: selects it; on the first opening of "MERGE" or
  // "COMPARE" builds the merged data; then reads the selection and redraws the
  // active view (unless it is the reports page). A key without a node does
  // nothing.
  void NodeClicked(const std::string& key);

  // The same without the redraw, for a caller that draws the place itself:
  // selects the node, builds merged data on first opening and reads the
  // selection. False (nothing done) for a key without a node.
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
  // The selection has changed: the active page draws itself anew.
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
  std::string previousKey_;
};

}  // namespace zol
