#!/usr/bin/env bash
# Builds the fuzz targets (preset "fuzz": clang, libFuzzer, ASan, UBSan) and
# runs each for a bounded time: scripts/fuzz.sh [TARGET...]
#
#   ZOLMARK_FUZZ_SECONDS   run time of each target (60 by default; longer by hand)
#   ZOLMARK_FUZZ_SEED      libFuzzer's seed (1 by default, so that a test run
#                          walks the same inputs each time and a finding shows
#                          up again when repeated; 0 picks a new one, for runs
#                          by hand that look further)
#
# Targets: pfl session_file project ini recording receiver (all by default).
# The corpus of each grows in build/fuzz/corpus/<target> from run to run,
# seeded by scripts/fuzz_seeds.py. An input that crashes a target, leaks or
# runs out of time is copied to fuzz/regressions/<target>/, where CTest
# replays it in the normal builds from then on; the script then fails, so
# that the finding is fixed and its input committed.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${ZOLMARK_FUZZ_SECONDS:-60}"
seed="${ZOLMARK_FUZZ_SEED:-1}"
if (($# > 0)); then
  targets=("$@")
else
  targets=(pfl session_file project ini recording receiver)
fi

bash scripts/setup.sh
launcher=()
if command -v ccache >/dev/null 2>&1; then
  launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake --preset fuzz "${launcher[@]}" >/dev/null
cmake --build build/fuzz --target "${targets[@]/#/fuzz_}"

rm -rf build/fuzz/seeds
python3 scripts/fuzz_seeds.py build/fuzz/seeds >/dev/null
failed=()
for t in "${targets[@]}"; do
  corpus="build/fuzz/corpus/$t"
  findings="build/fuzz/findings/$t"
  mkdir -p "$corpus" "$findings"
  log="build/fuzz/$t.log"
  echo "== fuzz_$t: $seconds s" >&2
  status=0
  # The scratch files of the targets go to a folder of this run.
  scratch="$(mktemp -d)"
  TMPDIR="$scratch" ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    "build/fuzz/fuzz/fuzz_$t" -max_total_time="$seconds" -seed="$seed" -timeout=30 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$findings/" "$corpus" "build/fuzz/seeds/$t" \
    >"$log" 2>&1 || status=$?
  rm -rf "$scratch"
  grep -E '^(#[0-9]+ +DONE|stat::number_of_executed_units|stat::peak_rss_mb)' "$log" >&2 || true
  grep -oE 'cov: [0-9]+ ft: [0-9]+' "$log" | tail -1 >&2 || true
  if ((status != 0)); then
    mkdir -p "fuzz/regressions/$t"
    for f in "$findings"/*; do
      [[ -f "$f" ]] && cp "$f" "fuzz/regressions/$t/"
    done
    echo "fuzz_$t found a fault (see $log); its input is kept in fuzz/regressions/$t/" >&2
    failed+=("$t")
  fi
done
if ((${#failed[@]} > 0)); then
  echo "fuzz: findings in ${failed[*]}" >&2
  exit 1
fi
