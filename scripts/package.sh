#!/usr/bin/env bash
# Builds the optimised programs and packs them as a Debian package:
#   bash scripts/package.sh
# prints the path of build/release/zolmark-profiler_<version>_<arch>.deb, which
# installs with: sudo apt install ./build/release/zolmark-profiler_*.deb
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh release >&2
(cd build/release && cpack -G DEB >&2)
ls build/release/zolmark-profiler_*.deb
