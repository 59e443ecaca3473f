#include "base/heap_tuning.h"

#include <cstdlib>  // defines __GLIBC__ on the GNU C library
#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace zol {

void KeepLargeBlocksInHeap() {
#if defined(__GLIBC__)
  // Every block comes from the heap, however large (the texts of a million
  // lines are more than the 32 MB the library would take from the heap at
  // most), and up to 256 MB of freed memory at its top stays there for the
  // next table instead of going back at once.
  constexpr int kFreeKept = 256 * 1024 * 1024;
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, kFreeKept);
#endif
}

}  // namespace zol
