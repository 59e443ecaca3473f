#pragma once

// Values of a stored session that no run can produce: negative counts, more
// hit than there is, times that are not numbers, coverages and ranks outside
// their range, IDs beyond the tables. A .pfd holding one is damaged, and
// showing it would draw nonsense (or a bar millions of letters long), so the
// readers refuse it with the record and field named.

#include <string>

#include "session/records.h"

namespace zol {

// The first impossible value of `s` (as read from a file whose header told
// `lines` lines, `procedures` procedures and `modules` modules), as
// "ProcedureValue(12).HitLines is 500000, above TotalLines (1)"; empty when
// every value can be true.
std::string ImpossibleSessionValue(const Session& s, std::int32_t lines, std::int32_t procedures,
                                   std::int32_t modules);

}  // namespace zol
