#include "live/live_clock.h"

#include <time.h>

namespace zol {

std::int64_t MonotonicClock::Counter() {
  timespec ts{};
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<std::int64_t>(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}

std::int64_t DivideRoundHalfEven(std::int64_t a, std::int64_t b) {
  std::int64_t q = a / b;
  std::int64_t r = a % b;
  if (r < 0) {
    r += b;
    q -= 1;
  }
  const std::int64_t twice = 2 * r;
  if (twice > b || (twice == b && (q % 2 != 0))) q += 1;
  return q;
}

std::int64_t MeasureCounterOverhead(LiveClock& clock) {
  for (int i = 0; i < 100; ++i) clock.Counter();
  const std::int64_t start = clock.Counter();
  for (int i = 0; i < 10000; ++i) clock.Counter();
  const std::int64_t end = clock.Counter();
  return DivideRoundHalfEven(end - start, 10000);
}

}  // namespace zol
