#pragma once

// The --measure option, spelt alike by every command: the names "total",
// "average", "childtotal", "childaverage", "coverage" (the hyphenated
// "child-total" and "child-average" are read too) or the digits 0 to 4.

#include <string>

#include <CLI/CLI.hpp>

#include "session/selection.h"

namespace zol::cli {

// Adds --measure to `cmd`, read into `measure` (which keeps its value when the
// option isn't given). `what` ends the help text ("for colours").
CLI::Option* AddMeasureOption(CLI::App& cmd, Measure& measure, const std::string& what = "");

}  // namespace zol::cli
