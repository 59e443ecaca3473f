#pragma once

// What a click on a grid cell stands for. The row's text cells, not its Tag,
// say which module, procedure or line it is, so the answer holds after any
// sort.

#include <cstdint>

#include "grid/table.h"
#include "session/records.h"

namespace zol {

// The kinds of click of the click chain.
inline constexpr std::int32_t kSingleClick = 1;
inline constexpr std::int32_t kRightClick = 2;
inline constexpr std::int32_t kDoubleClick = 3;

// The tab of the source page.
inline constexpr std::int32_t kTabSource = 5;
inline constexpr std::int32_t kTabFlow = 6;

struct ClickTarget {
  std::int32_t module = 0;
  std::int32_t procedure = 0;
  std::int32_t line = 0;

  friend bool operator==(const ClickTarget&, const ClickTarget&) = default;
};

// The place that a click on `column` of row `row` (both from 1) of a table of
// `project` stands for. The clicked column's header decides: "Module" finds
// the module by name; "Procedure" the procedure of that name in the row's
// module; "Line" the row's "Line ID". A click on any other column stands for
// the row's line, else its procedure, else its module, by the row's text
// cells. Names that match nothing (the total row) give zeros.
ClickTarget ClickedPlace(const Project& project, const Table& table, int row, int column);

// The tab to show after a click of kind `clickKind` on a grid shown on
// `activeTab`: a single click goes on to the tab to the right (from modules to
// their procedures, and so on), a double click to the source page; a right
// click opens the context menu and stays (the result is `activeTab`).
std::int32_t TabAfterClick(std::int32_t clickKind, std::int32_t activeTab);

}  // namespace zol
