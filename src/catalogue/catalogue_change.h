#pragma once

// What an operation on the catalogue did, as a value. The operations change
// the tables (sessions, groups, their ticks, their values) and say what they
// changed; the window that shows the session list, the project tree and the
// views reads the value and brings its widgets in step. zolprof and the tests
// read the same value, or nothing at all: no operation calls into a window.

#include <cstdint>
#include <optional>
#include <vector>

#include "catalogue/session_list.h"

namespace zol {

// How far the views are taken back.
enum class ViewReset {
  // Sessions are gone: source view stale, title cleared, grids empty, chart
  // reset, tree emptied, flow chart cleared, "BACK" and "FWD" disabled.
  SessionsGone,
  // Values changed in place (timing filters): source view stale, grids
  // cleared, chart and flow chart cleared, "BACK" and "FWD" disabled; the
  // tree keeps its branches.
  ValuesChanged,
};

// One row ticked or unticked.
struct RowTick {
  RowKey row;
  // What was asked: tick (true) or untick (false).
  bool wanted = false;
  // The row's tick afterwards. A row that was to be ticked but whose session
  // or group couldn't be loaded (the user has been told why) stays unticked.
  bool ticked = false;

  bool Refused() const { return wanted && !ticked; }
  bool operator==(const RowTick&) const = default;
};

struct CatalogueChange {
  // Rows that entered the list, in order (a refused file enters none).
  std::vector<RowKey> added;
  // Rows ticked and unticked, in the order it was done; a row may come twice
  // (unticked, then ticked again).
  std::vector<RowTick> ticks;
  // Ticked sessions and groups that were taken out: their branches leave
  // the tree. A group's members come with it.
  std::vector<std::int32_t> sessionsTakenOut;
  std::vector<std::int32_t> groupsTakenOut;
  // Every view is to be taken back this far (nothing when the views stand).
  std::optional<ViewReset> viewReset;

  bool Empty() const {
    return added.empty() && ticks.empty() && sessionsTakenOut.empty() && groupsTakenOut.empty() &&
           !viewReset;
  }
  // Appends what `later` did after this.
  void Append(const CatalogueChange& later);
  // Whether the views must be cleared for a window that shows session
  // `current`: every session is gone, or `current` was taken out.
  bool ClearsViewsOf(std::int32_t current) const;
};

}  // namespace zol
