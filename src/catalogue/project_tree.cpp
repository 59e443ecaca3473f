#include "catalogue/project_tree.h"

#include <cstdlib>

#include "catalogue/node_texts.h"
#include "catalogue/tree_keys.h"
#include "compare/global_sessions.h"
#include "compare/group_merge.h"
#include "session/selection.h"

namespace zol {

using tree_detail::GroupKey;
using tree_detail::ModuleKey;
using tree_detail::ProcedureKey;
using tree_detail::SessionKey;

namespace {

// The number written behind position `from` of a key ("-1" in "S-1M2"), and
// the position behind it.
std::int32_t NumberAt(const std::string& key, std::size_t from) {
  return static_cast<std::int32_t>(std::strtol(key.c_str() + from, nullptr, 10));
}

std::int32_t NumberBehind(const std::string& key, char letter) {
  const std::size_t at = key.find(letter);
  return at == std::string::npos ? 0 : NumberAt(key, at + 1);
}

}  // namespace

void ProjectTree::AddSessionBranch(std::int32_t cs, const std::string& parentKey) {
  const Session& s = ws_.Session(cs);
  const Project& p = ws_.Project(s.Project);
  const std::string sessionKey = SessionKey(cs);
  TreeNode& node = nodes_.Add(parentKey, sessionKey, SessionNodeText(s), "SESSION");
  node.Bold = true;
  node.BackColor = kTreeYellow;
  node.Expanded = true;

  Prompter& progress = ws_.prompter();
  progress.SetProgressMax(p.ModulesNumber);
  const auto byModule = tree_detail::ProceduresByModule(p);
  for (std::int32_t m = 1; m <= p.ModulesNumber; ++m) {
    progress.SetProgressValue(m - 1);
    const auto& procedures = byModule[static_cast<std::size_t>(m)];
    const std::string moduleKey = ModuleKey(sessionKey, m);
    TreeNode& module =
        nodes_.Add(sessionKey, moduleKey, ModuleNodeText(p.Module(m), s.ModuleValue(m)),
                   "TYPE" + std::to_string(p.Module(m).Type));
    if (tree_detail::HasCriticalProcedure(p, procedures)) module.ForeColor = kTreeRed;
    module.Expanded = m == 1;
    for (const std::int32_t id : procedures) {
      const Procedure& proc = p.Procedure(id);
      TreeNode& pn = nodes_.Add(moduleKey, ProcedureKey(moduleKey, id),
                                ProcedureNodeText(proc, s.ProcedureValue(id), s.ModuleValue(m)),
                                "PROC" + std::to_string(proc.Type));
      if (proc.IsCritical) pn.BackColor = kTreeGreen;
    }
  }
}

void ProjectTree::SelectSession(std::int32_t cs, const std::string& groupNode, bool dontClick) {
  if (!ws_.Session.InRange(cs)) return;
  const Session& s = ws_.Session(cs);
  // The catalogue may have ticked the session already; the tree adds what it
  // doesn't show yet.
  if (nodes_.Find(SessionKey(cs)) || !s.Loaded || !ws_.Project.InRange(s.Project) ||
      !tree_detail::ValuesFitProject(s, ws_.Project(s.Project))) {
    return;
  }
  Prompter& progress = ws_.prompter();
  progress.SetProgressText("Building Tree view...");
  progress.DoEvents();
  AddSessionBranch(cs, groupNode);
  ws_.Session(cs).Selected = true;
  progress.SetProgressValue(0);
  UpdateColors(colourMeasure_);
  progress.ShowProgress(false);
  progress.SetProgressText("");
  SessionStateChanged();
  if (!dontClick) NodeClicked(SessionKey(cs));
}

void ProjectTree::SelectSessionGroup(std::int32_t sg, bool dontClick) {
  if (!ws_.SessionGroup.InRange(sg) || nodes_.Find(GroupKey(sg))) return;
  const std::string groupKey = GroupKey(sg);
  TreeNode& node = nodes_.Add("", groupKey, ws_.SessionGroup(sg).Name, "GROUP");
  node.Bold = true;
  node.ForeColor = kTreeBlue;
  const Array1<std::int32_t> members = ws_.SessionGroup(sg).Sessions;
  for (const std::int32_t member : members) {
    if (ws_.Session.InRange(member) && ws_.Session(member).Selected) UnSelectSession(member);
    SelectSession(member, groupKey, true);
  }
  ws_.SessionGroup(sg).Selected = true;
  if (!dontClick) nodes_.Select(groupKey);
}

void ProjectTree::UnSelectSession(std::int32_t cs) {
  nodes_.Remove(SessionKey(cs));
  if (ws_.Session.InRange(cs)) ws_.Session(cs).Selected = false;
}

void ProjectTree::UnSelectSessionGroup(std::int32_t sg) {
  nodes_.Remove(GroupKey(sg));
  if (!ws_.SessionGroup.InRange(sg)) return;
  SessionGroup& g = ws_.SessionGroup(sg);
  g.Selected = false;
  // The members' branches went with the group's node; ticked members would
  // otherwise still count in merges.
  for (const std::int32_t member : g.Sessions) UnSelectSession(member);
}

Selection ProjectTree::TreeSelection(const Selection& current) const {
  const std::string key = nodes_.SelectedKey();
  if (key.empty()) return current;
  const auto projectOf = [&](std::int32_t cs) {
    return ws_.Session.InRange(cs) ? ws_.Session(cs).Project : current.project;
  };
  const auto sessionAt = [&](std::int32_t slot) {
    Selection sel = current.at(0, 0, current.line);
    sel.session = SessionRefOfSlot(ws_, slot);
    sel.project = projectOf(slot);
    return sel;
  };
  if (key[0] == 'G') {
    const std::int32_t sg = NumberAt(key, 1);
    if (!ws_.SessionGroup.InRange(sg)) return current.at(0, 0, current.line);
    return sessionAt(ws_.SessionGroup(sg).GroupMergedSession);
  }
  if (key == kMergeKey) {
    return sessionAt(ws_.fOnlyGroups ? ws_.SessionGroup(0).GroupMergedSession : 0);
  }
  if (key == kCompareKey) {
    Selection sel = current.at(0, 0, current.line);
    sel.session = ws_.fOnlyGroups ? SessionRef::comparedGroups() : SessionRef::compared();
    sel.project = ws_.fOnlyGroups ? 0 : projectOf(0);
    return sel;
  }
  Selection sel = current.at(NumberBehind(key, 'M'), NumberBehind(key, 'P'), current.line);
  if (key[0] != 'S') {
    sel.session = SessionRefOfSlot(ws_, 0);
    sel.project = 0;
    return sel;
  }
  const std::int32_t n = NumberAt(key, 1);
  if (n >= 0) {
    sel.session = SessionRefOfSlot(ws_, n);
    sel.project = projectOf(n);
  } else {
    // A compared member: of merged groups it is keyed by its project, of
    // ticked sessions it follows the numbering of the merged project.
    sel.session = SessionRef::compared();
    sel.project = ws_.fOnlyGroups ? -n : projectOf(0);
  }
  return sel;
}

void ProjectTree::BuildMergedData() {
  try {
    if (ws_.fOnlyGroups && ws_.fHomogeneous) {
      MakeMergedAndCompareSessionsGroups(ws_, this);
    } else {
      MakeMergedAndCompareSessions(
          ws_, 0, ws_.CompareSession, SelectedSessions(ws_),
          {.homogeneous = ws_.fHomogeneous, .keepTrackOfOriginalProject = true}, this);
    }
  } catch (const MergeError& e) {
    ws_.prompter().ShowMessage(std::string("The sessions could not be merged: ") + e.what(),
                               MessageKind::Exclamation);
    return;
  }
  ws_.Session(0).Selected = true;
  ws_.Session(0).Loaded = true;
}

bool ProjectTree::NodeClicked(const std::string& key) {
  if (!MoveTo(key)) return false;
  RefreshActiveView();
  return true;
}

bool ProjectTree::MoveTo(const std::string& key) {
  TreeNode* node = nodes_.Find(key);
  if (!node) return false;
  previousKey_ = nodes_.SelectedKey();
  nodes_.Select(key);
  if ((key == kMergeKey || key == kCompareKey) && node->Children.empty()) {
    BuildMergedData();
    UpdateColors(colourMeasure_);
    if (TreeNode* opened = nodes_.Find(key)) opened->Expanded = true;
  }
  return true;
}

void ProjectTree::UpdateSelectedItem(const std::string& key) {
  if (key.rfind("S-", 0) == 0) {
    nodes_.Select(kCompareKey);
  } else if (key == "S0") {
    nodes_.Select(kMergeKey);
  } else {
    nodes_.Select(key);
  }
}

void ProjectTree::RemoveMergeRoots() {
  nodes_.Remove(kCompareKey);
  nodes_.Remove(kMergeKey);
  ws_.Session(0).Selected = false;
  ws_.Session(0).Loaded = false;
}

}  // namespace zol
