#pragma once

// A small stack of 32-bit values. The store has a first index of 1 and grows
// and shrinks in steps of 10 places, so that a caller that pushes and pops
// around nested blocks of source text doesn't reallocate at every step.

#include <cstdint>
#include <optional>

#include "base/vbarray.h"

namespace zol {

class CStack {
 public:
  void Push(std::int32_t value) {
    ++count_;
    if (count_ > items_.UBound()) items_.ReDimPreserve(items_.UBound() + kStep);
    items_(count_) = value;
  }

  // The newest item; nothing when the stack is empty.
  std::optional<std::int32_t> Pop() {
    if (count_ == 0) return std::nullopt;
    const std::int32_t value = items_(count_);
    --count_;
    if (items_.UBound() - count_ > kStep) items_.ReDimPreserve(items_.UBound() - kStep);
    return value;
  }

  std::int32_t Count() const { return count_; }
  // Places held in the store, used or not.
  std::int32_t Capacity() const { return items_.UBound(); }

 private:
  static constexpr std::int32_t kStep = 10;
  Array1<std::int32_t> items_;
  std::int32_t count_ = 0;
};

}  // namespace zol
