#include "base/large_block_allocator.h"

#include <sys/mman.h>

namespace zol {

void AdviseHugePages(void* p, std::size_t bytes) {
#if defined(MADV_HUGEPAGE)
  // Only advice: where the kernel has no huge pages to give, nothing changes.
  madvise(p, bytes, MADV_HUGEPAGE);
#else
  (void)p;
  (void)bytes;
#endif
}

}  // namespace zol
