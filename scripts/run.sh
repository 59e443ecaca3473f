#!/usr/bin/env bash
# Sets everything up from a fresh Debian machine, builds, and runs the main job
# on the bundled demo: three runs of the instrumented "Orders" project, loaded
# by zolprof and then shown in the desktop program, ticked, with the slowest
# procedure's source on screen.
#
#   bash scripts/run.sh                       the window (needs a display)
#   bash scripts/run.sh --screenshot DIR      one PNG per tab into DIR, then ends
#
# Without a display it says how to run it headless instead of failing.
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

gui=build/release/src/app/zolmark-profiler
if [[ ! -x "$gui" ]]; then
  echo "(The desktop program was not built: configure with -DZOLMARK_BUILD_GUI=ON.)"
  exit 0
fi
# Ticked: the three runs; shown: the source of CInvoice.AsText in Monday's run.
gui_args=("$demo/Monday.pfd" "$demo/Tuesday.pfd" "$demo/Friday.pfd" --select S1M5P25 --tab 5 "$@")
echo
if [[ -z "${DISPLAY:-}" && -z "${WAYLAND_DISPLAY:-}" && "${QT_QPA_PLATFORM:-}" != offscreen* &&
      " $* " != *" --screenshot "* ]]; then
  cat <<EOT
== The desktop program
No display here (\$DISPLAY and \$WAYLAND_DISPLAY are empty), so the window is not opened.
Ways to run it without one:
  xvfb-run -a -s "-screen 0 1600x1000x24" bash scripts/run.sh
      the window on a virtual display (it runs until it is closed or killed);
  bash scripts/run.sh --screenshot build/demo-run/shots
      one picture per tab, taken on Qt's offscreen platform, then it ends;
  QT_QPA_PLATFORM=offscreen $gui ${gui_args[*]}
      the program itself without any display;
  $bin table --tab procedures $demo/Monday.pfd
      the same tables on the command line (see $bin --help).
EOT
  exit 0
fi
if [[ " $* " == *" --screenshot "* && -z "${DISPLAY:-}" && -z "${WAYLAND_DISPLAY:-}" ]]; then
  export QT_QPA_PLATFORM=offscreen
fi
echo "== The desktop program: $gui ${gui_args[*]}"
"$gui" "${gui_args[@]}"
