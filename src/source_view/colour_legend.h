#pragma once

// The legend under every coloured page: which colour means what, for the
// colour mode and measure of the page.

#include <cstdint>
#include <string>

#include "session/workspace.h"

namespace zol {

// Empty in mode 1; otherwise the legend's table, each piece closed by CR LF.
std::string GetColorLegend(const Workspace& ws, std::int32_t colorMode,
                           std::int32_t displayInfoType);

}  // namespace zol
