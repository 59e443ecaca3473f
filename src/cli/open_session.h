#pragma once

// Opening one session file for a zolprof command.

#include <cstdint>
#include <optional>
#include <string>

#include "profile/log_reader.h"
#include "session/workspace.h"

namespace zol::cli {

struct OpenOptions {
  std::string projectOverride;  // a .vbp to use instead of the one the header names
  ReplayKind replay = ReplayKind::Fast;
  // A .pfl is replayed in memory and nothing is written or deleted.
  bool readOnly = false;
};

// Enters `file` and loads its values. Returns the session index, or nothing
// when it can't be loaded (the reason has been printed).
std::optional<std::int32_t> OpenSession(Workspace& ws, const std::string& file,
                                        const OpenOptions& options);

// One line that sums a loaded session up.
std::string SessionSummary(const Workspace& ws, std::int32_t cs);

}  // namespace zol::cli
