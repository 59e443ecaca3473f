#pragma once

// A session as a callgrind profile, the text format that the common
// call-graph viewers read: one file per module, one function per procedure
// ("Module.Procedure"), the own cost of each line as two events (time in
// microseconds and hits), and the calls of the flow pairs with their counts
// and the time spent in the callee and below. Line numbers are the places of
// the lines in the module's cleaned source text, where the procedure heads
// and code lines of the project are numbered.

#include <cstdint>
#include <string>

#include "session/workspace.h"

namespace zol {

// The profile of loaded session `cs`.
std::string CallgrindText(const Workspace& ws, std::int32_t cs);

// Seconds as the whole microseconds of the time event; negatives count as 0.
std::int64_t CallgrindMicroseconds(double seconds);

}  // namespace zol
