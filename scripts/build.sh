#!/usr/bin/env bash
# Configures and builds one preset (release by default): scripts/build.sh [preset]
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-release}"
bash scripts/setup.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
