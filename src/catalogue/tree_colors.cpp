// Colours of the project tree: every node white, then the modules and
// procedures of each ticked session by the rank of the measure shown.

#include "catalogue/project_tree.h"
#include "catalogue/tree_keys.h"
#include "profile/gather_info.h"

namespace zol {

using tree_detail::ModuleKey;
using tree_detail::ProcedureKey;
using tree_detail::SessionKey;

namespace {

inline constexpr std::int32_t kCoverageMeasure = 4;

// The rank of a procedure for the measure shown; coverage ranks only
// procedures with line probes, the worst coverage the most alarming.
std::int32_t ProcedureColour(const ProcedureValue& v, std::int32_t measure) {
  switch (measure) {
    case 0:
      return RankToBackcolor(v.TotalTimingRank);
    case 1:
      return RankToBackcolor(v.AverageTimingRank);
    case 2:
      return RankToBackcolor(static_cast<float>(v.ChildTotalTimingRank));
    case 3:
      return RankToBackcolor(static_cast<float>(v.ChildAverageTimingRank));
    default:
      return v.IsCovered ? RankToBackcolor(static_cast<float>(1 - v.Coverage)) : kTreeWhite;
  }
}

std::int32_t ModuleColour(const ModuleValue& v, std::int32_t measure) {
  if (measure != kCoverageMeasure) return RankToBackcolor(v.TotalTimingRank);
  return v.IsCovered ? RankToBackcolor(static_cast<float>(1 - v.LineCoverage)) : kTreeWhite;
}

}  // namespace

void ProjectTree::PaintSessionByRank(std::int32_t cs) {
  const Session& s = ws_.Session(cs);
  if (!ws_.Project.InRange(s.Project)) return;
  const Project& p = ws_.Project(s.Project);
  if (!tree_detail::ValuesFitProject(s, p)) return;
  const std::string sessionKey = SessionKey(cs);
  for (std::int32_t m = 1; m <= p.ModulesNumber; ++m) {
    if (TreeNode* node = nodes_.Find(ModuleKey(sessionKey, m))) {
      node->BackColor = ModuleColour(s.ModuleValue(m), IndexOf(colourMeasure_));
    }
  }
  for (std::int32_t id = 1; id <= p.ProceduresNumber; ++id) {
    const Procedure& proc = p.Procedure(id);
    TreeNode* node = nodes_.Find(ProcedureKey(ModuleKey(sessionKey, proc.BelongToModule), id));
    if (!node) continue;
    if (proc.IsDead) {
      node->BackColor = kTreeBlack;
      node->ForeColor = kTreeWhite;
    } else {
      node->BackColor = ProcedureColour(s.ProcedureValue(id), IndexOf(colourMeasure_));
    }
  }
}

void ProjectTree::UpdateColors(Measure measure) {
  colourMeasure_ = measure;
  // White everywhere; dead code's white text goes back to black with it.
  nodes_.ForEach([](TreeNode& node) {
    node.BackColor = kTreeWhite;
    if (node.ForeColor == kTreeWhite) node.ForeColor = kTreeBlack;
  });
  if (ws_.nSession == 0 || !ws_.view.colored) return;
  for (std::int32_t cs = 0; cs <= ws_.nSession && cs <= ws_.Session.UBound(); ++cs) {
    const Session& s = ws_.Session(cs);
    if (s.Selected && s.Loaded) PaintSessionByRank(cs);
  }
}

}  // namespace zol
