#pragma once

// Caller-callee pairs kept in the order in which they were first seen, which
// is part of what session files store, and found again through a hash index
// instead of a scan of all pairs.

#include <cstdint>
#include <vector>

#include "session/records.h"

namespace zol {

class FlowPairTable {
 public:
  // Starts from pairs that already exist; of two equal pairs the first is found.
  explicit FlowPairTable(std::vector<FlowPair> pairs = {});

  // The position of the pair (from, to), made at the end with zero sums if it
  // is new.
  std::int32_t FindOrAdd(std::int32_t from, std::int32_t to);

  FlowPair& operator[](std::int32_t position) { return pairs_[static_cast<std::size_t>(position)]; }
  std::int32_t Count() const { return static_cast<std::int32_t>(pairs_.size()); }
  std::vector<FlowPair> Take() { return std::move(pairs_); }

 private:
  static std::uint64_t Key(std::int32_t from, std::int32_t to) {
    return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(from)) << 32) |
           static_cast<std::uint32_t>(to);
  }
  std::size_t Slot(std::uint64_t key) const;
  void Insert(std::uint64_t key, std::int32_t position);
  void Grow();

  std::vector<FlowPair> pairs_;
  // Open addressing, linear probing; a position of -1 marks a free slot.
  std::vector<std::uint64_t> keys_;
  std::vector<std::int32_t> positions_;
  std::size_t mask_ = 0;
  int shift_ = 0;
};

}  // namespace zol
