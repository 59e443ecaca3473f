#pragma once

// The order of the session list. The list's own sort compares texts only, so
// each column is given a key that sorts right: dates by their moment,
// versions by VersionToDouble, numbers as numbers, and the session file by
// its path rather than by the size in front of it.

#include <cstdint>
#include <vector>

#include "catalogue/session_list.h"

namespace zol {

struct SessionListSort {
  std::int32_t Column = 1;  // 1 to 5, under kSessionListHeaders
  bool Descending = false;

  // A click on the header of `column`: the same column again reverses the
  // order, another column keeps it.
  void click(std::int32_t column);
};

// Sorts the rows on `sort.Column`; equal keys keep their order.
void sortSessionRows(std::vector<SessionListRow>& rows, const SessionListSort& sort);

}  // namespace zol
