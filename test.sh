#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test with CTest.
set -euo pipefail
cd "$(dirname "$0")"
bash scripts/deps.sh
export QT_QPA_PLATFORM=offscreen
cmake --preset dev >/dev/null
cmake --build --preset dev
ctest --preset dev -j2 --timeout 600
