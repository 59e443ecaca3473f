#pragma once

// Ordering a built table. Numbers sort as numbers; a cell that is no number
// ("-", a bar, an empty cell) sorts as text against the others, before the
// numbers if its text comes before "0" and after them otherwise. Dead rows
// (two blanks in the sorted column) go to the bottom in both orders, and the
// total row (the bold row) below everything.

#include <cstdint>

#include "grid/table.h"

namespace zol {

inline constexpr std::int32_t kSortAscending = 0;
inline constexpr std::int32_t kSortDescending = 1;
inline constexpr std::int32_t kSortToggle = -1;

// What the main window remembers between sorts, across tables.
struct SortMemory {
  std::int32_t LastColumn = 0;
  std::int32_t LastSortOrder = 0;
};

// Sorts `table` on column `columnIndex` (from 1). `SortOrder` 0 ascending, 1
// descending, -1 decides by toggling: descending on a table not sorted yet,
// the reverse of the last order on the same column, the last order on another
// column, and ascending on "Line ID" so that lines come in source order.
// Unless the table is a compared one, the sorted column's cells turn dark
// blue and those of the previously sorted column standard; grey rows and the
// bold total row keep their colours. An empty table is left as it is. Returns
// the order used (-1 when nothing was done).
std::int32_t SortTable(Table& table, SortMemory& memory, std::int32_t columnIndex,
                       std::int32_t SortOrder, bool comparedTable = false);

// SortTable in its two steps, for a caller that reads the cells on another
// thread meanwhile. OrderTable orders the rows and remembers the order in
// `memory`: it reads the cells but writes none of them. MarkSortedColumn
// then gives the sorted column and the previously sorted one their colours.
struct SortDone {
  std::int32_t Order = -1;  // the order used, -1 when nothing was done
  std::int32_t Column = 0;
  std::int32_t PreviousColumn = 0;
};
SortDone OrderTable(Table& table, SortMemory& memory, std::int32_t columnIndex,
                    std::int32_t SortOrder);
void MarkSortedColumn(Table& table, const SortDone& done);

// Whether a column sorts by number: all but the text columns "Line",
// "Procedure", "Module" and "Project".
bool IsNumericColumn(const std::string& header);

}  // namespace zol
