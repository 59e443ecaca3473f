#include "catalogue/node_texts.h"

#include "base/numbers.h"
#include "base/vb_format.h"

namespace zol {

namespace {

std::string CoverageWords(bool isCovered, double coverage) {
  return isCovered ? "LC:" + FormatPercentage(coverage) : "Not covered";
}

std::string FiguresOf(const ModuleValue& v) {
  return " (LC:" + FormatPercentage(v.LineCoverage) + " - TT:" + Format(v.TotalTime, "0.0") + "s)";
}

std::string ProcedureText(const Procedure& p, const ProcedureValue& v, const ModuleValue& module,
                          const char* totalPattern) {
  if (!module.IsCovered && !module.IsProfiled) return p.Name;
  std::string text = p.Name + " (" + CoverageWords(v.IsCovered, v.Coverage) + " - ";
  if (!v.IsProfiled) return text + "Not profiled)";
  if (v.Hits == 0) return text + "No hits)";
  return text + "TT:" + Format(v.TotalTime, totalPattern) +
         "s - AT:" + Format(v.AverageTime, "0.000") + "s)";
}

}  // namespace

std::string SessionNodeText(const Session& s) {
  return s.Name + FiguresOf(s.SessionValue);
}

std::string ModuleNodeText(const Module& m, const ModuleValue& v) {
  std::string text = m.Name + " (" + CoverageWords(v.IsCovered, v.LineCoverage) + " - ";
  if (!v.IsProfiled) return text + "Not profiled)";
  if (v.HitProcedures == 0) return text + "No hits)";
  return text + "TT:" + Format(v.TotalTime, "0.00") + "s)";
}

std::string ProcedureNodeText(const Procedure& p, const ProcedureValue& v,
                              const ModuleValue& module) {
  if (p.IsDead) return p.Name + " (Dead code)";
  return ProcedureText(p, v, module, "0.000");
}

std::string MergedProcedureNodeText(const Procedure& p, const ProcedureValue& v,
                                    const ModuleValue& module) {
  return ProcedureText(p, v, module, "0.00");
}

std::string ComparedNodeText(const std::string& name, bool isCovered, bool isProfiled) {
  if (isCovered && isProfiled) return name;
  if (!isCovered && !isProfiled) return name + " (Not covered - Not profiled)";
  return name + (isCovered ? " (Not profiled)" : " (Not covered)");
}

std::string MergedRootText(const std::string& prefix, bool fHomogeneous, const Session& merged) {
  return prefix + (fHomogeneous ? "(Hom.)" : "(Het.)") + FiguresOf(merged.SessionValue);
}

}  // namespace zol
