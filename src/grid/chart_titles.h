#pragma once

// Chart titles that the single and the compared tables share.

#include <cstdint>

namespace zol {

inline constexpr char kModuleTimeTitle[] = "Total Time spent in modules (seconds)";
inline constexpr char kModuleCoverageTitle[] = "Module Coverage (% of executed lines)";

// "Total Time spent in procedures (seconds)" and its kin, by time measure index 0 to 3.
const char* ProcedureChartTitle(std::int32_t displayInfoType);

// "Total Time spent in lines (seconds)" and its kin for 0 to 3, "Line hits
// (1 line execution = 1 hit)" for coverage.
const char* LineChartTitle(std::int32_t displayInfoType);

}  // namespace zol
