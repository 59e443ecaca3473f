#pragma once

// The instrumentation of one module's text; see instrumenter.h for what is
// written where.

#include <cstdint>
#include <string>

#include "support/instrumenter.h"

namespace zol::fixture {

struct ModuleInput {
  std::int32_t index = 0;  // module index in the project
  std::string fileName;    // as the .vbp names it
  std::int32_t type = 0;
  std::string source;  // the original bytes
};

// Returns the instrumented text (line ends as in `source`), fills
// truth.Modules(index) and appends the module's procedures and lines to the
// truth, numbering on from what it already holds.
std::string InstrumentModule(const ModuleInput& input, const InstrumentOptions& options,
                             InstrumentTruth& truth);

}  // namespace zol::fixture
