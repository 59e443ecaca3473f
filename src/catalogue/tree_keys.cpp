#include "catalogue/tree_keys.h"

namespace zol::tree_detail {

std::vector<std::vector<std::int32_t>> ProceduresByModule(const Project& p) {
  std::vector<std::vector<std::int32_t>> byModule(static_cast<std::size_t>(p.ModulesNumber) + 1);
  for (std::int32_t id = 1; id <= p.ProceduresNumber; ++id) {
    const std::int32_t m = p.Procedure(id).BelongToModule;
    byModule[m >= 1 && m <= p.ModulesNumber ? static_cast<std::size_t>(m) : 0].push_back(id);
  }
  return byModule;
}

bool HasCriticalProcedure(const Project& p, const std::vector<std::int32_t>& procedures) {
  for (const std::int32_t id : procedures) {
    if (p.Procedure(id).IsCritical) return true;
  }
  return false;
}

bool ValuesFitProject(const Session& s, const Project& p) {
  return s.ModuleValue.UBound() >= p.ModulesNumber &&
         s.ProcedureValue.UBound() >= p.ProceduresNumber;
}

}  // namespace zol::tree_detail
