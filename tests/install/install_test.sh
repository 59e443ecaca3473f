#!/usr/bin/env bash
# install_test.sh BUILD_DIR CMAKE: installs BUILD_DIR into a fresh staging
# folder and checks that the installed zolprof runs on the installed demo,
# that the desktop files are where the desktop looks for them, and that
# nothing of the installed demo changed.
set -euo pipefail
build="$1"
cmake="$2"
stage="$(mktemp -d)"
# An install writes its list of files into the build folder; the list of the
# user's own install (which tells what to remove to uninstall it) is put back.
manifest="$build/install_manifest.txt"
if [[ -f "$manifest" ]]; then cp -p "$manifest" "$stage/manifest"; fi
restore() {
  if [[ -f "$stage/manifest" ]]; then cp -p "$stage/manifest" "$manifest"; else rm -f "$manifest"; fi
  rm -rf "$stage"
}
trap restore EXIT
export ZOLMARK_HOME="$stage/home"

fail() {
  echo "install test: $*" >&2
  exit 1
}

"$cmake" --install "$build" --prefix "$stage/usr" >/dev/null
usr="$stage/usr"
demo="$usr/share/zolmark-profiler/demo/instrumented"

for f in bin/zolprof share/bash-completion/completions/zolprof share/doc/zolmark-profiler/README.md \
  share/zolmark-profiler/demo/instrumented/Orders.vbp; do
  [[ -f "$usr/$f" ]] || fail "$f is not installed"
done
if command -v help2man >/dev/null; then
  zcat "$usr/share/man/man1/zolprof.1.gz" | grep -q '^\.SH FILES' ||
    fail "the man page of zolprof lacks its FILES section"
fi
if [[ -x "$build/src/app/zolmark-profiler" ]]; then
  for f in bin/zolmark-profiler share/applications/zolmark-profiler.desktop \
    share/mime/packages/zolmark-profiler.xml share/icons/hicolor/48x48/apps/zolmark-profiler.png \
    share/icons/hicolor/256x256/apps/zolmark-profiler.png; do
    [[ -f "$usr/$f" ]] || fail "$f is not installed"
  done
  if command -v desktop-file-validate >/dev/null; then
    desktop-file-validate "$usr/share/applications/zolmark-profiler.desktop" ||
      fail "the desktop file is not valid"
  fi
  head -c 8 "$usr/share/icons/hicolor/256x256/apps/zolmark-profiler.png" | od -An -tx1 |
    grep -q '89 50 4e 47' || fail "the 256 px icon is not a PNG"
fi

version="$("$usr/bin/zolprof" --version)"
[[ "$version" == "zolprof (Zolmark Profiler) "* ]] || fail "unexpected version text: $version"

before="$(cd "$demo" && ls -l --time-style=+%s . | sort)"
table="$("$usr/bin/zolprof" table --tab procedures "$demo/Monday.pfl")"
grep -q "AsText" <<<"$table" || fail "the procedures table of the demo lacks CInvoice.AsText"
after="$(cd "$demo" && ls -l --time-style=+%s . | sort)"
[[ "$before" == "$after" ]] || fail "reading the installed demo changed its files"
# The completion offers every command that zolprof's help lists, and the
# options of a command.
commands="$("$usr/bin/zolprof" --help | sed -n '/^Subcommands:/,$p' | awk 'NR > 1 && NF {print $1}')"
completion="$usr/share/bash-completion/completions/zolprof"
offered="$(PATH="$usr/bin:$PATH" bash -c 'source "$1"; COMP_WORDS=(zolprof ""); COMP_CWORD=1
  _zolprof; printf "%s\n" "${COMPREPLY[@]}"' _ "$completion")"
for c in $commands; do
  grep -qx "$c" <<<"$offered" || fail "the bash completion doesn't offer the command $c"
done
options="$(PATH="$usr/bin:$PATH" bash -c 'source "$1"; COMP_WORDS=(zolprof table --t); COMP_CWORD=2
  _zolprof; printf "%s\n" "${COMPREPLY[@]}"' _ "$completion")"
grep -qx -- "--tab" <<<"$options" || fail "the bash completion doesn't offer table's --tab"

echo "installed into $usr: zolprof --version and zolprof table on the demo pass"
