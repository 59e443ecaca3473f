#pragma once

// Node keys of the project tree and the walk of a project's procedures by
// module that every branch builder makes.

#include <cstdint>
#include <string>
#include <vector>

#include "session/records.h"

namespace zol::tree_detail {

inline std::string SessionKey(std::int32_t cs) {
  return "S" + std::to_string(cs);
}
inline std::string ModuleKey(const std::string& sessionKey, std::int32_t m) {
  return sessionKey + "M" + std::to_string(m);
}
inline std::string ProcedureKey(const std::string& moduleKey, std::int32_t id) {
  return moduleKey + "P" + std::to_string(id);
}
inline std::string GroupKey(std::int32_t sg) {
  return "G" + std::to_string(sg);
}

// The procedure IDs of each module, in ID order; index 0 holds those of no
// known module.
std::vector<std::vector<std::int32_t>> ProceduresByModule(const Project& p);

// Whether module `m` has a critical procedure.
bool HasCriticalProcedure(const Project& p, const std::vector<std::int32_t>& procedures);

// The values of a session fit its project: every array is as long as the
// project's counts.
bool ValuesFitProject(const Session& s, const Project& p);

}  // namespace zol::tree_detail
