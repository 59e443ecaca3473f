#!/usr/bin/env bash
# Sets everything up from a fresh Debian machine, builds, and runs every test:
# first the optimised build, then the sanitizer build (ASan + UBSan) of the core,
# then every fuzz target for a bounded time (ZOLMARK_FUZZ_SECONDS, 60 s each).
set -euo pipefail
cd "$(dirname "$0")/.."
for preset in release asan; do
  echo "== $preset: build" >&2
  bash scripts/build.sh "$preset"
  echo "== $preset: test" >&2
  ctest --preset "$preset" -j "$(nproc)"
done
echo "== fuzz: ${ZOLMARK_FUZZ_SECONDS:-60} s per target" >&2
bash scripts/fuzz.sh
