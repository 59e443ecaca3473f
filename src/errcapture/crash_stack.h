#pragma once

// A copy of the call stack that a fatal-signal handler may read: fixed arrays
// of bytes, written by the trace hooks while tracing is on, so that the
// handler neither allocates nor takes a lock.

#include <csignal>
#include <cstddef>

namespace zol::crash_stack {

inline constexpr int kMaxDepth = 256;
inline constexpr std::size_t kNameLength = 96;

struct Mirror {
  char names[kMaxDepth][kNameLength];
  volatile std::sig_atomic_t depth;  // entries in use; may exceed kMaxDepth
  volatile std::sig_atomic_t traceOn;
};

Mirror& Get();

}  // namespace zol::crash_stack
