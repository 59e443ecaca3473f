#pragma once

// How the programs' heap treats large blocks.
//
// Each switch of tab builds a table of up to a million rows (a dozen column
// arrays of several megabytes each) and throws the previous one away. The
// C library maps blocks that large afresh from the kernel and gives them
// back when freed, so every rebuild pays for clearing tens of thousands of
// new pages. Kept in the heap instead, a rebuild reuses the pages the last
// one freed. Called first thing by the programs (and by the benchmarks that
// stand in for them).
namespace zol {

void KeepLargeBlocksInHeap();

}  // namespace zol
