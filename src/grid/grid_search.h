#pragma once

// The search over a grid: which rows hold the words the user typed. Only the
// texts that name a place are searched (module, procedure, line, project),
// never the numbers; every word must be found, each in any of those cells,
// without regard to case. The total row always stays, as the sum of the table.

#include <string_view>
#include <vector>

#include "grid/table.h"

namespace zol {

// The rows of `table` (from 1, in table order) that hold every blank-separated
// word of `words`; all rows when `words` holds none.
std::vector<int> RowsMatching(const Table& table, std::string_view words);

}  // namespace zol
