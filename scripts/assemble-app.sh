#!/usr/bin/env bash
# Assembles the program folder: the executable, the delivered user2.mdb and,
# unless TESSALY_EMPTY=1, the demo market data and demo account.
# Usage: scripts/assemble-app.sh BUILD_DIR APP_DIR
set -euo pipefail
build=$1
app=$2
mkdir -p "$app"
cp "$build/src/app/tessaly" "$app/tessaly"
if [ ! -f "$app/user2.mdb" ]; then
  "$build/tools/makedb/tessaly-makedb" "$app/user2.mdb"
fi
