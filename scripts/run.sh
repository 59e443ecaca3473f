#!/usr/bin/env bash
# Sets everything up from a fresh Debian machine, builds, and runs the main job
# on the bundled demo: three runs of the instrumented "Orders" project.
#
# Loading a .pfl turns it into a .pfd and deletes the log, so the demo is
# copied to build/demo-run first; the repository's files are never touched.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh release >&2

bin=build/release/src/cli/zolprof
demo=build/demo-run
rm -rf "$demo"
mkdir -p "$demo"
cp -r examples/demo/instrumented/. "$demo/"
# Settings and temporary folders of this run stay inside the copy.
export ZOLMARK_HOME="$PWD/$demo/.zolmark"

echo "== The instrumented demo project"
"$bin" scan "$demo/Orders.vbp" >"$demo/scan.txt"
sed -n 1,12p "$demo/scan.txt"
echo "   ... (the whole listing: $demo/scan.txt)"
echo
echo "== Loading the three runs (each log becomes a .pfd beside it)"
for run in Monday Tuesday Friday; do
  "$bin" load "$demo/$run.pfl"
done
echo
echo "More: $bin --help"
