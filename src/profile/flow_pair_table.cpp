#include "profile/flow_pair_table.h"

#include <bit>
#include <utility>

namespace zol {

namespace {
constexpr std::size_t kFirstCapacity = 64;  // a power of two
constexpr int kKeyBits = 64;
}  // namespace

FlowPairTable::FlowPairTable(std::vector<FlowPair> pairs)
    : keys_(kFirstCapacity), positions_(kFirstCapacity, -1), mask_(kFirstCapacity - 1) {
  shift_ = kKeyBits - std::countr_zero(kFirstCapacity);
  pairs_.swap(pairs);
  for (std::size_t i = 0; i < pairs_.size(); ++i) {
    const std::uint64_t key = Key(pairs_[i].FromProc, pairs_[i].ToProc);
    if (positions_[Slot(key)] < 0) Insert(key, static_cast<std::int32_t>(i));
  }
}

// Fibonacci hashing: the high bits of the key times 2^64 / golden ratio.
std::size_t FlowPairTable::Slot(std::uint64_t key) const {
  std::size_t slot = static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> shift_);
  while (positions_[slot] >= 0 && keys_[slot] != key) slot = (slot + 1) & mask_;
  return slot;
}

void FlowPairTable::Insert(std::uint64_t key, std::int32_t position) {
  // Kept at most half full so that probes stay short.
  if (2 * (static_cast<std::size_t>(position) + 1) > keys_.size()) Grow();
  const std::size_t slot = Slot(key);
  keys_[slot] = key;
  positions_[slot] = position;
}

void FlowPairTable::Grow() {
  const std::size_t capacity = keys_.size() * 2;
  std::vector<std::uint64_t> oldKeys(capacity);
  std::vector<std::int32_t> oldPositions(capacity, -1);
  oldKeys.swap(keys_);
  oldPositions.swap(positions_);
  mask_ = capacity - 1;
  shift_ -= 1;
  for (std::size_t i = 0; i < oldKeys.size(); ++i) {
    if (oldPositions[i] < 0) continue;
    const std::size_t slot = Slot(oldKeys[i]);
    keys_[slot] = oldKeys[i];
    positions_[slot] = oldPositions[i];
  }
}

std::int32_t FlowPairTable::FindOrAdd(std::int32_t from, std::int32_t to) {
  const std::uint64_t key = Key(from, to);
  const std::size_t slot = Slot(key);
  if (positions_[slot] >= 0) return positions_[slot];
  const auto position = static_cast<std::int32_t>(pairs_.size());
  FlowPair pair;
  pair.FromProc = from;
  pair.ToProc = to;
  pairs_.push_back(pair);
  Insert(key, position);
  return position;
}

}  // namespace zol
