#!/usr/bin/env bash
# Takes a PNG of every window with real data: builds the tools, assembles a
# demo program folder (delivered database, demo market, demo account) in a
# temporary directory and runs tessaly-screenshots under a virtual X server.
#
#   scripts/screenshots.sh                  # writes docs/screenshots/*.png
#   SHOTS_BUILD_DIR=build/my scripts/screenshots.sh
#   SHOTS_OUT=/tmp/shots scripts/screenshots.sh
# Needs xvfb-run (package xvfb) and the CJK font (fonts-wqy-microhei).
set -euo pipefail
cd "$(dirname "$0")/.."

build="${SHOTS_BUILD_DIR:-build/dev}"
out="${SHOTS_OUT:-docs/screenshots}"

if ! command -v xvfb-run >/dev/null; then
  echo "screenshots.sh: xvfb-run is missing (apt-get install xvfb)" >&2
  exit 1
fi

if [ ! -f "$build/build.ninja" ] && [ ! -f "$build/Makefile" ]; then
  cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug >/dev/null
fi
cmake --build "$build" --target tessaly-makedb tessaly-demodata tessaly-screenshots

app="$(mktemp -d "${TMPDIR:-/tmp}/tessaly.XXXXXX")"
trap 'rm -rf "$app"' EXIT
"$build/tools/makedb/tessaly-makedb" "$app/user2.mdb" >/dev/null
"$build/tools/demodata/tessaly-demodata" "$app" --account >/dev/null

mkdir -p "$out"
out="$(cd "$out" && pwd)"
shots="$(cd "$build" && pwd)/tools/screenshots/tessaly-screenshots"
# A real X server (not the offscreen platform) so that fonts, styles and the
# window sizes are those a user sees; with the program folder as home, so
# that the folder list of the data-path window (it starts at home) shows it.
(cd "$app" && env -u QT_QPA_PLATFORM LANG=zh_CN.UTF-8 HOME="$app" \
  xvfb-run -a -s "-screen 0 1280x800x24" "$shots" "$app" "$out")
# The chart once more at 200 % scaling: drawn at device pixels, as sharp as the text.
scaled="$app/scaled"
mkdir -p "$scaled"
(cd "$app" && env -u QT_QPA_PLATFORM LANG=zh_CN.UTF-8 HOME="$app" QT_SCALE_FACTOR=2 \
  xvfb-run -a -s "-screen 0 2560x1600x24" "$shots" "$app" "$scaled" >/dev/null)
cp "$scaled/main-chart.png" "$out/main-chart-scale2.png"
echo "screenshots written to $out"
