#pragma once

// What the merge engine asks of the project tree and the views around it. The
// engine decides when the merged and compared roots appear and what lies below
// them; the tree model builds the nodes, and a window may add its own clearing.

#include <cstdint>
#include <string>

namespace zol {

class MergedSelectionView {
 public:
  virtual ~MergedSelectionView() = default;

  // Two or more sessions or groups are ticked: the roots "COMPARE" and "MERGE"
  // are added, named for the kind of selection.
  virtual void AddMergeRoots(bool fHomogeneous) = 0;

  // The ticks have changed and any merged view is stale. With `nothingTicked`
  // the tree is emptied and every view cleared.
  virtual void SelectionChanged(bool nothingTicked) = 0;

  // The branches of the merged session `MergeIndex` below "MERGE" and
  // "COMPARE". For a member of merged groups (`forGroup`) the roots keep their
  // texts and the compared branch is keyed by the member's project.
  virtual void ShowMergedSession(std::int32_t MergeIndex, bool forGroup) = 0;

  // The roots of a merged selection of groups, named after the project group
  // file (its name without folder).
  virtual void ShowMergedGroupRoots(const std::string& groupFileName) = 0;
};

}  // namespace zol
