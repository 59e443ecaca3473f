#pragma once

// An allocator for the few arrays of a million entries (the columns of a
// grid's table) that are walked end to end and at random: a block of
// several megabytes is placed on a 2 MB boundary and offered to the kernel
// for huge pages, so that a sort's random reads and a scan's page faults
// cover 2 MB at a time instead of 4 KB. Small blocks are left as they are.

#include <cstddef>
#include <new>

namespace zol {

// Offers [p, p + bytes) for huge pages, where the system has them.
void AdviseHugePages(void* p, std::size_t bytes);

inline constexpr std::size_t kHugePage = std::size_t{2} << 20;

template <typename T>
struct LargeBlockAllocator {
  using value_type = T;

  LargeBlockAllocator() = default;
  template <typename U>
  LargeBlockAllocator(const LargeBlockAllocator<U>&) {}

  T* allocate(std::size_t n) {
    const std::size_t bytes = n * sizeof(T);
    if (bytes < 2 * kHugePage) return static_cast<T*>(::operator new(bytes));
    const std::size_t rounded = (bytes + kHugePage - 1) / kHugePage * kHugePage;
    void* p = ::operator new (rounded, std::align_val_t{kHugePage});
    AdviseHugePages(p, rounded);
    return static_cast<T*>(p);
  }
  void deallocate(T* p, std::size_t n) {
    if (n * sizeof(T) < 2 * kHugePage) {
      ::operator delete(p);
    } else {
      ::operator delete (p, std::align_val_t{kHugePage});
    }
  }

  template <typename U>
  bool operator==(const LargeBlockAllocator<U>&) const {
    return true;
  }
};

}  // namespace zol
