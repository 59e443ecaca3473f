#pragma once

// A small seeded generator (splitmix64) whose sequence is the same on every
// platform and library, unlike the standard distributions, so that a seed
// names the same fixture everywhere.

#include <cstdint>

namespace zol::testing {

class SimRandom {
 public:
  explicit SimRandom(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
  // A whole number from lo to hi, both included.
  std::int64_t Between(std::int64_t lo, std::int64_t hi) {
    const auto span = static_cast<std::uint64_t>(hi - lo) + 1;
    return lo + static_cast<std::int64_t>(Next() % span);
  }
  // True with probability p.
  bool Chance(double p) { return static_cast<double>(Next() >> 11) * 0x1.0p-53 < p; }

 private:
  std::uint64_t state_;
};

}  // namespace zol::testing
