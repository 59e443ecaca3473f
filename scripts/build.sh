#!/usr/bin/env bash
# Configures and builds one preset (release by default): scripts/build.sh [preset]
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-release}"
bash scripts/setup.sh
# A compiler cache, when the machine has one, makes rebuilds of several
# checkouts of the tree cheap; the build is the same without it.
launcher=()
if command -v ccache >/dev/null 2>&1; then
  launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake --preset "$preset" "${launcher[@]}" >/dev/null
cmake --build --preset "$preset"
