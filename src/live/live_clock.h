#pragma once

// The counter that stamps live events. On this platform it is the monotonic
// clock in nanoseconds, so the frequency is 1e9; stamps are stored as the raw
// count, read as fixed-point numbers with four decimals (see event_store.h).

#include <cstdint>

namespace zol {

class LiveClock {
 public:
  virtual ~LiveClock() = default;
  virtual std::int64_t Counter() = 0;
  virtual std::int64_t Frequency() = 0;
};

class MonotonicClock : public LiveClock {
 public:
  std::int64_t Counter() override;
  std::int64_t Frequency() override { return 1'000'000'000; }
};

// The cost of one read of the counter, as a raw fixed-point value: 100 reads
// to warm up, then the span of 10,000 reads divided by 10,000 (to four
// decimals of the fixed-point unit, ties to even).
std::int64_t MeasureCounterOverhead(LiveClock& clock);

// a / b rounded to the nearest whole number, ties to the even one; b > 0.
std::int64_t DivideRoundHalfEven(std::int64_t a, std::int64_t b);

}  // namespace zol
