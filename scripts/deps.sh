#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the program need,
# only when some are missing. Sourced by run.sh and test.sh.
set -euo pipefail

TESSALY_PACKAGES=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev libgl-dev
  libsqlcipher-dev sqlcipher libssl-dev
  qt6-translations-l10n desktop-file-utils appstream
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-14-dev clang-format
  fonts-wqy-microhei
  xvfb xauth xdotool x11-utils
)

missing=()
for p in "${TESSALY_PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ "${#missing[@]}" -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -q
  $SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
fi
