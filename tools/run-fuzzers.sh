#!/usr/bin/env bash
# Builds the fuzz targets with clang (libFuzzer, AddressSanitizer, UndefinedBehaviorSanitizer) and runs
# each for a bounded time on its seed corpus and kept findings, as many at once as there are cores.
# Prints the executions per target; fails when a target finds a crash, a leak, a hang or broken promise.
#   TUNEDESK_FUZZ_SECONDS   time per target (default 30)
#   TUNEDESK_FUZZ_BUILD_DIR build directory (default build-fuzz)
#   TUNEDESK_FUZZ_TARGETS   names to run (default: every folder of fuzz/corpus)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${TUNEDESK_FUZZ_BUILD_DIR:-$here/build-fuzz}
seconds=${TUNEDESK_FUZZ_SECONDS:-30}
jobs=$(nproc)
export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/tunedesk-ccache}
export QT_QPA_PLATFORM=offscreen

cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_C_COMPILER=clang \
  -DCMAKE_CXX_COMPILER=clang++ -DTUNEDESK_FUZZ=ON -DTUNEDESK_TESTS=OFF -DTUNEDESK_BENCH=OFF >/dev/null
cmake --build "$build" --target fuzz_all -j"$jobs"

targets=${TUNEDESK_FUZZ_TARGETS:-$(cd "$here/fuzz/corpus" && ls)}
runs=$build/fuzz-runs
rm -rf "$runs"
mkdir -p "$runs"

# One target: new inputs go to a corpus of this run, so the seeds in the repository stay as they are.
fuzz_one() {
  local name=$1 dir=$runs/$1
  mkdir -p "$dir/corpus" "$dir/findings"
  local kept=()
  [ -d "$here/fuzz/regressions/$name" ] && kept=("$here/fuzz/regressions/$name")
  ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS="suppressions=$here/tests/lsan.supp:print_suppressions=0" \
    UBSAN_OPTIONS=print_stacktrace=1 \
    "$build/fuzz/fuzz_$name" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2560 -print_final_stats=1 \
      -artifact_prefix="$dir/findings/" "$dir/corpus" "$here/fuzz/corpus/$name" "${kept[@]}" >"$dir/log" 2>&1
}

failed=()
running=0
for name in $targets; do
  fuzz_one "$name" && echo ok >"$runs/$name/result" || echo failed >"$runs/$name/result" &
  running=$((running + 1))
  if [ "$running" -ge "$jobs" ]; then
    wait -n || true
    running=$((running - 1))
  fi
done
wait

echo "== fuzzing, $seconds s per target"
for name in $targets; do
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$runs/$name/log" | tail -1)
  printf '%-16s %10s executions  %s\n' "$name" "${execs:-?}" "$(cat "$runs/$name/result")"
  if [ "$(cat "$runs/$name/result")" != ok ]; then
    failed+=("$name")
    echo "---- $name: $(ls "$runs/$name/findings")"
    grep -E -m 20 'ERROR|SUMMARY|broken promise|==[0-9]+==' "$runs/$name/log" || tail -20 "$runs/$name/log"
  fi
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "findings in: ${failed[*]} (inputs and logs in $runs)"
  exit 1
fi
