#pragma once

// Differences on a compared grid: after the run of every session but the
// first, a "Diff." column (the change against the first session, in percent)
// and a "Ratio" column, coloured by the noise rule of the run difference
// model: slower (or lower coverage, more hits) red, faster green, within the
// noise grey. Off by default; a grid built without it is left untouched.

#include "grid/grid_build.h"

namespace zol {

struct DifferenceOptions {
  bool Show = false;
  // Keeps only the rows whose change clears the noise in some session, the
  // rows that appear or vanish, and the total row.
  bool ChangedOnly = false;
};

inline constexpr VbColor kColorRed = 0x0000C0;

// Adds the columns to a compared build (one with session headers), widens
// each later session's run in its headers, and sorts on the last session's
// "Diff." column, largest change first. Nothing happens unless
// `options.Show`, or on a build with fewer than two sessions.
void ShowDifferences(GridBuild& build, const DifferenceOptions& options);

}  // namespace zol
