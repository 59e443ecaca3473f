#pragma once

// The start of the desktop program (Main): one copy at a time, the stop
// request of the suite cleared, the folders that earlier runs left removed,
// this run's folder of cleaned source made, and the main window shown. A
// second start hands its files to the copy that runs and ends at once.
//
//   zolmark-profiler [FILE...] [--select KEY] [--tab N] [noshow]
//                    [--screenshot DIR [--size WxH]]
//
// FILE: session files entered and ticked; --select: the tree node to show
// ("S1M2P3", "MERGE", "COMPARE"); --tab: the scope tab (1 Projects to 6
// Flow); --screenshot: saves one PNG per tab into DIR and ends.

namespace zol {

int runProfiler(int argc, char** argv);

}  // namespace zol
