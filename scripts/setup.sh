#!/usr/bin/env bash
# Installs every Debian package the project needs. Idempotent: when all is
# present it only runs dpkg-query and returns in well under a second.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config clang-format
  zlib1g-dev libdeflate-dev libzip-dev libcli11-dev
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  qt6-base-dev qt6-charts-dev libqt6opengl6-dev libgl-dev
  xvfb xauth fonts-dejavu-core
  python3
  clang libclang-rt-14-dev
  dpkg-dev help2man desktop-file-utils
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if ((${#missing[@]} == 0)); then
  exit 0
fi

echo "setup: installing ${missing[*]}" >&2
SUDO=""
if [[ $(id -u) -ne 0 ]]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
