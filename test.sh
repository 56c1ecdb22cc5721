#!/usr/bin/env bash
# Installs what is missing, builds everything, runs a short fuzzing smoke run
# of every file reader and then every test with CTest (windows offscreen).
#   TESSALY_SKIP_FUZZ=1 ./test.sh   skips the fuzzing smoke run
set -euo pipefail
cd "$(dirname "$0")"
bash scripts/deps.sh
export QT_QPA_PLATFORM=offscreen
cmake --preset dev >/dev/null
cmake --build --preset dev
if [ "${TESSALY_SKIP_FUZZ:-0}" != "1" ]; then
  FUZZ_SECONDS="${FUZZ_SECONDS:-4}" bash scripts/fuzz-smoke.sh
fi
ctest --preset dev -j2 --timeout 600
