#pragma once

// The flow chart's settings, in section "Profiler" of the settings file.

#include <array>
#include <cstdint>
#include <string>

#include "flow/flow_graph.h"

namespace zol {

struct FlowOptions {
  std::int32_t HorizontalFlow = 50;  // "Horizontal spacing", 10 to 100
  std::int32_t VerticalFlow = 20;    // "Vertical spacing", 5 to 50
  std::int32_t SizeFlow = 8;         // "Font size (reflects node size)", 6 to 16
  // Columns of callers (0) and callees (1), 0 to 5; 0 is "A: Automatic".
  std::array<std::int32_t, 2> CallDepth{0, 0};
  std::int32_t ColorSchemeFlow = 3;  // 1 "No Color", 2 "Color By %", 3 "Color By Value"
  std::int32_t ShowModuleFlow = 1;   // "Show Module", 0 or 1

  CallDepths Depths() const { return {CallDepth[0], CallDepth[1]}; }
  friend bool operator==(const FlowOptions&, const FlowOptions&) = default;
};

// Each value kept within its bounds.
FlowOptions ClampFlowOptions(FlowOptions o);

// Reads each key with its default (a value that isn't a number counts as
// missing) and keeps it within its bounds.
FlowOptions LoadFlowOptions(const std::string& iniFile);
// Writes each key as decimal text. Throws FileError.
void SaveFlowOptions(const FlowOptions& o, const std::string& iniFile);

}  // namespace zol
