#pragma once

// Frees large values on a worker thread. The table of a million lines and
// its chart arrays hold millions of strings; freeing them where they are
// replaced took as long as building the next page, so the switch away from
// the Lines tab felt as slow as the switch to it. A value handed here
// belongs to nobody else: the worker only runs its destructor.

#include <future>
#include <utility>

namespace zol {

class BackgroundRelease {
 public:
  BackgroundRelease() = default;
  BackgroundRelease(const BackgroundRelease&) = delete;
  BackgroundRelease& operator=(const BackgroundRelease&) = delete;
  // The last value is freed before the owner goes.
  ~BackgroundRelease() { Wait(); }

  // Frees `value` on the worker, after the value handed before it.
  template <typename T>
  void Release(T value) {
    Wait();
    pending_ = std::async(std::launch::async,
                          [held = std::move(value)]() mutable { const T gone = std::move(held); });
  }

 private:
  void Wait() {
    if (pending_.valid()) pending_.wait();
  }

  std::future<void> pending_;
};

}  // namespace zol
