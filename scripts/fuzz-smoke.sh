#!/usr/bin/env bash
# Builds the libFuzzer targets with the fuzz preset (clang) and runs each one
# for a few seconds, starting from its corpus in fuzz/corpus/<target>/ and its
# seeds in fuzz/seeds/<target>/. Fails when a target finds a crash, a sanitizer
# report, a leak or a timeout; the input that caused it is kept in
# build/fuzz/artifacts/.
#
# The targets are the ones with a corpus or a seed folder. New inputs of a run
# go to build/fuzz/corpus/<target>/; a run of 600 seconds or more per target,
# a FUZZ_RUNS run or FUZZ_GROW=1 then merges them into fuzz/corpus/<target>/,
# minimised with libFuzzer's -merge=1, so that the corpus kept in the
# repository grows.
#
#   scripts/fuzz-smoke.sh                      # 5 seconds per target
#   FUZZ_SECONDS=3600 scripts/fuzz-smoke.sh    # the long run: an hour each, grows the corpus
#   FUZZ_RUNS=10000000 scripts/fuzz-smoke.sh   # ten million executions each, however long
#   FUZZ_TARGETS="fuzz_fenxijia" FUZZ_SECONDS=600 scripts/fuzz-smoke.sh
#   FUZZ_BUILD_DIR=build/my-fuzz scripts/fuzz-smoke.sh
#
# The long run of the campaign (ten million executions per target, two
# targets at a time on two cores) builds without AddressSanitizer, which
# executes about three times more inputs an hour, and then replays the grown
# corpus under the full set of sanitizers:
#
#   FUZZ_SANITIZERS=undefined FUZZ_BUILD_DIR=build/fuzz-ub FUZZ_TIMEOUT=60 \
#     FUZZ_RUNS=10000000 FUZZ_TARGETS="fuzz_qianlong fuzz_tdx" scripts/fuzz-smoke.sh
#   FUZZ_RUNS=0 scripts/fuzz-smoke.sh          # every corpus input once, under ASan and UBSan
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${FUZZ_SECONDS:-5}"
build="${FUZZ_BUILD_DIR:-build/fuzz}"
sanitizers="${FUZZ_SANITIZERS:-address,undefined}"
timeout="${FUZZ_TIMEOUT:-10}"
limit=(-max_total_time="$seconds")
[ -n "${FUZZ_RUNS:-}" ] && limit=(-runs="$FUZZ_RUNS")
grow="${FUZZ_GROW:-$([ "$seconds" -ge 600 ] || [ "${FUZZ_RUNS:-0}" -gt 0 ] && echo 1 || echo 0)}"
if [ -n "${FUZZ_TARGETS:-}" ]; then
  read -ra targets <<<"$FUZZ_TARGETS"
else
  targets=()
  for d in fuzz/corpus/*/ fuzz/seeds/*/; do
    [ -d "$d" ] && targets+=("$(basename "$d")")
  done
  mapfile -t targets < <(printf '%s\n' "${targets[@]}" | sort -u)
fi

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
      -DTESSALY_FUZZ=ON -DTESSALY_FUZZ_SANITIZERS="$sanitizers" >/dev/null
cmake --build "$build" --target "${targets[@]}"

mkdir -p "$build/artifacts"
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
status=0
for t in "${targets[@]}"; do
  fuzzer="$build/fuzz/$t"
  found="$build/corpus/$t"
  log="$build/artifacts/$t.log"
  mkdir -p "$found"
  inputs=()
  for d in "fuzz/corpus/$t" "fuzz/seeds/$t"; do
    [ -d "$d" ] && inputs+=("$d")
  done
  echo "== $t (${limit[*]})"
  if ! "$fuzzer" "${limit[@]}" -timeout="$timeout" -rss_limit_mb=2048 -print_final_stats=1 \
       -artifact_prefix="$build/artifacts/$t-" "$found" "${inputs[@]}" >"$log" 2>&1; then
    echo "FAILED: $t (log: $log)"
    tail -n 40 "$log"
    status=1
    continue
  fi
  grep -E "stat::number_of_executed_units|stat::average_exec_per_sec|stat::peak_rss_mb" "$log" | tr '\n' ' '
  echo
  if [ "$grow" = 1 ]; then
    merged="$build/merged/$t"
    rm -rf "$merged" && mkdir -p "$merged"
    kept=()
    [ -d "fuzz/corpus/$t" ] && kept=("fuzz/corpus/$t")
    "$fuzzer" -merge=1 -timeout="$timeout" -rss_limit_mb=2048 "$merged" "${kept[@]}" "$found" >>"$log" 2>&1
    rm -rf "fuzz/corpus/$t" && mkdir -p fuzz/corpus && mv "$merged" "fuzz/corpus/$t" && rm -rf "$found"
    echo "   fuzz/corpus/$t: $(ls "fuzz/corpus/$t" | wc -l) inputs, $(( $(du -sb "fuzz/corpus/$t" | cut -f1) / 1024 )) KB"
  fi
done
exit $status
