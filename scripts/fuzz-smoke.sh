#!/usr/bin/env bash
# Builds the libFuzzer targets with the fuzz preset (clang) and runs each one
# for a few seconds from the seeds in fuzz/seeds/. Fails when a target finds a
# crash, a sanitizer report, a leak or a timeout; the input that caused it is
# kept in build/fuzz/artifacts/.
#
#   scripts/fuzz-smoke.sh                 # 5 seconds per target
#   FUZZ_SECONDS=600 scripts/fuzz-smoke.sh  # longer runs
#   FUZZ_TARGETS="fuzz_fenxijia" FUZZ_SECONDS=3600 scripts/fuzz-smoke.sh
#   FUZZ_BUILD_DIR=build/my-fuzz scripts/fuzz-smoke.sh
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${FUZZ_SECONDS:-5}"
build="${FUZZ_BUILD_DIR:-build/fuzz}"
targets=(${FUZZ_TARGETS:-fuzz_qianlong fuzz_shenglong fuzz_fenxijia fuzz_textbars fuzz_tdx fuzz_dateset fuzz_stocklist fuzz_statement})

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
      -DTESSALY_FUZZ=ON >/dev/null
cmake --build "$build" --target "${targets[@]}"

mkdir -p "$build/artifacts"
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
status=0
for t in "${targets[@]}"; do
  corpus="$build/corpus/$t"
  mkdir -p "$corpus"
  echo "== $t (${seconds}s)"
  if ! "$build/fuzz/$t" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
       -artifact_prefix="$build/artifacts/$t-" "$corpus" "fuzz/seeds/$t" >"$build/artifacts/$t.log" 2>&1; then
    echo "FAILED: $t (log: $build/artifacts/$t.log)"
    tail -n 40 "$build/artifacts/$t.log"
    status=1
  else
    grep -E "stat::number_of_executed_units|stat::peak_rss_mb" "$build/artifacts/$t.log" | tr '\n' ' '
    echo
  fi
done
exit $status
