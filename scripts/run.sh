#!/usr/bin/env bash
# Sets everything up from a fresh Debian machine, builds, and runs the main job.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh release >&2
bin=build/release/src/cli/zolprof
"$bin" --help
echo
"$bin" version
