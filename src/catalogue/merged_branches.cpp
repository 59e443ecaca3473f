// The "MERGE" and "COMPARE" branches of the project tree. The merged branch
// shows the merged session's figures; the compared branch has the same items
// without figures, since each compared session has its own.

#include "catalogue/node_texts.h"
#include "catalogue/project_tree.h"
#include "catalogue/tree_keys.h"

namespace zol {

using tree_detail::ModuleKey;
using tree_detail::ProcedureKey;
using tree_detail::SessionKey;

namespace {

// Merged nodes keep the fixed look of a session's node.
void MarkMerged(TreeNode& node) {
  node.Bold = true;
  node.BackColor = kTreeYellow;
}

void AddRoot(TreeNodes& nodes, const char* key, const std::string& text) {
  MarkMerged(nodes.Add("", key, text, key));
}

}  // namespace

void ProjectTree::AddMergeRoots(bool fHomogeneous) {
  nodes_.Remove(kCompareKey);
  nodes_.Remove(kMergeKey);
  const std::string kind = fHomogeneous ? "(Homogeneous)" : "(Heterogeneous)";
  AddRoot(nodes_, kCompareKey, "Compared Sessions " + kind);
  AddRoot(nodes_, kMergeKey, "Merged Sessions " + kind);
}

void ProjectTree::SelectionChanged(bool nothingTicked) {
  if (nothingTicked) nodes_.Clear();
}

void ProjectTree::ShowMergedGroupRoots(const std::string& groupFileName) {
  if (TreeNode* merge = nodes_.Find(kMergeKey)) {
    merge->Text = "Merged Sessions " + groupFileName + " (Homogeneous)";
    MarkMerged(*merge);
    merge->Expanded = true;
  }
  if (TreeNode* compare = nodes_.Find(kCompareKey)) {
    compare->Text = "Compared Sessions " + groupFileName + " (Homogeneous)";
  }
}

void ProjectTree::ShowMergedSession(std::int32_t MergeIndex, bool group) {
  const Session& merged = ws_.Session(MergeIndex);
  TreeNode* merge = nodes_.Find(kMergeKey);
  TreeNode* compare = nodes_.Find(kCompareKey);
  if (!merge || !compare) return;
  if (!group) {
    merge->Text = MergedRootText("Merged Sessions ", ws_.fHomogeneous, merged);
    compare->Text = MergedRootText("Compared Sessions ", ws_.fHomogeneous, merged);
  }
  AddMergedBranch(kMergeKey, MergeIndex, SessionKey(MergeIndex), true);
  // A member of merged groups is compared under its project's number.
  AddMergedBranch(kCompareKey, MergeIndex, "S-" + std::to_string(group ? merged.Project : 1),
                  false);
}

void ProjectTree::AddMergedBranch(const char* rootKey, std::int32_t MergeIndex,
                                  const std::string& sessionKey, bool withFigures) {
  if (nodes_.Find(sessionKey)) return;
  const Session& s = ws_.Session(MergeIndex);
  const Project& p = ws_.Project(s.Project);
  TreeNode& node = nodes_.Add(rootKey, sessionKey, SessionNodeText(s), "SESSION");
  MarkMerged(node);
  node.Expanded = true;
  const auto byModule = tree_detail::ProceduresByModule(p);
  for (std::int32_t m = 1; m <= p.ModulesNumber; ++m) {
    const Module& module = p.Module(m);
    const ModuleValue& mv = s.ModuleValue(m);
    const std::string moduleKey = ModuleKey(sessionKey, m);
    nodes_.Add(sessionKey, moduleKey,
               withFigures ? ModuleNodeText(module, mv)
                           : ComparedNodeText(module.Name, mv.IsCovered, mv.IsProfiled),
               "TYPE" + std::to_string(module.Type));
    for (const std::int32_t id : byModule[static_cast<std::size_t>(m)]) {
      const Procedure& proc = p.Procedure(id);
      const ProcedureValue& pv = s.ProcedureValue(id);
      nodes_.Add(moduleKey, ProcedureKey(moduleKey, id),
                 withFigures ? MergedProcedureNodeText(proc, pv, mv)
                             : ComparedNodeText(proc.Name, pv.IsCovered, pv.IsProfiled),
                 "PROC" + std::to_string(proc.Type));
    }
  }
}

}  // namespace zol
