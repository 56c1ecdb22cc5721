#!/usr/bin/env bash
# Builds a release of Tessaly, assembles the program folder build/app/ and starts it.
set -euo pipefail
cd "$(dirname "$0")"
bash scripts/deps.sh
cmake --preset release >/dev/null
cmake --build --preset release
bash scripts/assemble-app.sh build/release build/app
exec build/app/tessaly "$@"
