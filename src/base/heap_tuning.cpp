#include "base/heap_tuning.h"

#include <cstdlib>  // defines __GLIBC__ on the GNU C library
#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace zol {

void KeepLargeBlocksInHeap() {
#if defined(__GLIBC__)
  // Blocks up to 32 MB (the most the C library allows here; a column of two
  // million cells) come from the heap, and up to 256 MB of freed memory at
  // its top stays there for the next table instead of going back at once.
  constexpr int kLargestHeapBlock = 32 * 1024 * 1024;
  constexpr int kFreeKept = 256 * 1024 * 1024;
  mallopt(M_MMAP_THRESHOLD, kLargestHeapBlock);
  mallopt(M_TRIM_THRESHOLD, kFreeKept);
#endif
}

}  // namespace zol
