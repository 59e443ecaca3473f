#include "flow/flow_options.h"

#include <cmath>

#include "base/ini_file.h"
#include "base/numbers.h"
#include "base/text.h"

namespace zol {

namespace {

constexpr const char* kSection = "Profiler";

struct Setting {
  const char* key;
  std::int32_t FlowOptions::*field;
  std::int32_t low;
  std::int32_t high;
};

std::int32_t* Field(FlowOptions& o, const Setting& s) {
  return &(o.*(s.field));
}

constexpr Setting kSettings[] = {
    {"HorizontalFlow", &FlowOptions::HorizontalFlow, 10, 100},
    {"VerticalFlow", &FlowOptions::VerticalFlow, 5, 50},
    {"SizeFlow", &FlowOptions::SizeFlow, 6, 16},
    {"ColorSchemeFlow", &FlowOptions::ColorSchemeFlow, 1, 3},
    {"ShowModuleFlow", &FlowOptions::ShowModuleFlow, 0, 1},
};
constexpr const char* kDepthKeys[2] = {"CallDepth0", "CallDepth1"};
constexpr std::int32_t kMaxCallDepth = 5;

std::int32_t ReadInt(const char* key, std::int32_t fallback, const std::string& iniFile) {
  const auto value =
      ParseNumberText(VBGetPrivateProfileString(kSection, key, std::to_string(fallback), iniFile));
  if (!value || !std::isfinite(*value) || std::fabs(*value) > 1e9) return fallback;
  return static_cast<std::int32_t>(RoundHalfEven(*value));
}

}  // namespace

FlowOptions ClampFlowOptions(FlowOptions o) {
  for (const Setting& s : kSettings) *Field(o, s) = Clamp(*Field(o, s), s.low, s.high);
  for (std::int32_t& d : o.CallDepth) d = Clamp(d, 0, kMaxCallDepth);
  return o;
}

FlowOptions LoadFlowOptions(const std::string& iniFile) {
  FlowOptions o;
  for (const Setting& s : kSettings) *Field(o, s) = ReadInt(s.key, *Field(o, s), iniFile);
  for (int i = 0; i < 2; ++i) o.CallDepth[i] = ReadInt(kDepthKeys[i], o.CallDepth[i], iniFile);
  return ClampFlowOptions(o);
}

void SaveFlowOptions(const FlowOptions& o, const std::string& iniFile) {
  FlowOptions copy = o;
  for (const Setting& s : kSettings)
    VBWritePrivateProfileString(kSection, s.key, std::to_string(*Field(copy, s)), iniFile);
  for (int i = 0; i < 2; ++i)
    VBWritePrivateProfileString(kSection, kDepthKeys[i], std::to_string(o.CallDepth[i]), iniFile);
}

}  // namespace zol
