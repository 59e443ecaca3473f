// bench_trace_hooks: what the trace hooks of a procedure cost, tracing off and
// on, against the same procedure without hooks.
//
// The procedure is a small piece of work (a sum over 32 doubles, far less than
// any procedure that carries hooks: loading, merging, writing a report, a
// window's entry point). Each variant runs --calls times (50 million by
// default); the best of --repeat runs counts. Printed: nanoseconds per call,
// and the hooks' share over the bare call.
//
//   bench_trace_hooks [--calls N] [--repeat N]

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "errcapture/trace.h"

namespace {

double g_values[32];
volatile double g_sink = 0;

// The same work in every variant, so that only the hooks differ.
__attribute__((noinline)) double Work(int i) {
  double sum = i;
  for (double v : g_values) sum += v * 0.5;
  return sum;
}

__attribute__((noinline)) double Bare(int i) {
  return Work(i);
}

__attribute__((noinline)) double Hooked(int i) {
  ZOL_TRACE("Bench.Hooked");
  return Work(i);
}

__attribute__((noinline)) double HookedWithArgs(int i) {
  ZOL_TRACE_ARGS("Bench.HookedWithArgs",
                 [&] { return zol::zolParamsText({zol::zolParamToText("i", i)}); });
  return Work(i);
}

template <typename F>
double NsPerCall(F f, long calls, int repeat) {
  double best = 1e300;
  for (int r = 0; r < repeat; ++r) {
    const auto start = std::chrono::steady_clock::now();
    double sum = 0;
    for (long i = 0; i < calls; ++i) sum += f(static_cast<int>(i));
    g_sink = sum;
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
    best = std::min(best, took.count() / static_cast<double>(calls));
  }
  return best;
}

void Settings(bool traceOn, bool params) {
  zol::ProtectorSettings s;
  s.zolTraceProc = traceOn;
  s.zolTraceParameters = params;
  s.zolLogTraceToFile = false;
  zol::zolInitializeProtector(s);
}

}  // namespace

int main(int argc, char** argv) {
  long calls = 50'000'000;
  int repeat = 5;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--calls") == 0) calls = std::atol(argv[i + 1]);
    if (std::strcmp(argv[i], "--repeat") == 0) repeat = std::atoi(argv[i + 1]);
  }
  for (int i = 0; i < 32; ++i) g_values[i] = i * 1.25;

  Settings(false, false);
  const double bare = NsPerCall(Bare, calls, repeat);
  const double off = NsPerCall(Hooked, calls, repeat);
  const double offArgs = NsPerCall(HookedWithArgs, calls, repeat);
  Settings(true, false);
  const double on = NsPerCall(Hooked, calls / 10, repeat);
  Settings(true, true);
  const double onArgs = NsPerCall(HookedWithArgs, calls / 10, repeat);

  auto line = [&](const char* what, double ns) {
    std::printf("%-32s %8.2f ns/call  %+7.2f ns over bare (%+.1f%%)\n", what, ns, ns - bare,
                100.0 * (ns - bare) / bare);
  };
  std::printf("%-32s %8.2f ns/call\n", "bare procedure", bare);
  line("hooks, tracing off", off);
  line("hooks with arguments, off", offArgs);
  line("hooks, tracing on", on);
  line("hooks with arguments, on", onArgs);
  return 0;
}
