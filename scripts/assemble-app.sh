#!/usr/bin/env bash
# Assembles the program folder: the executable and, the first time, the
# delivered user2.mdb with the demo market (dateset.dat, GpSz, GpSh, market/)
# and the demo account. An existing user2.mdb is never replaced.
#   TESSALY_EMPTY=1   start from an empty journal: only the delivered user2.mdb
# Usage: scripts/assemble-app.sh BUILD_DIR APP_DIR
set -euo pipefail
build=$1
app=$2
mkdir -p "$app"
cp "$build/src/app/tessaly" "$app/tessaly"
if [ ! -f "$app/user2.mdb" ]; then
  "$build/tools/makedb/tessaly-makedb" "$app/user2.mdb"
  if [ "${TESSALY_EMPTY:-0}" != "1" ]; then
    "$build/tools/demodata/tessaly-demodata" "$app" --account
  fi
fi
