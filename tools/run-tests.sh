#!/usr/bin/env bash
# Installs what is needed, builds Tunedesk with its tests and runs every test: once in the normal
# build, once more under AddressSanitizer (with leak checks) and UndefinedBehaviorSanitizer.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bash "$here/tools/install-deps.sh"
export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/tunedesk-ccache}
export QT_QPA_PLATFORM=offscreen
jobs=$(nproc)

run_suite() {
  local build=$1; shift
  cmake -S "$here" -B "$build" "$@" >/dev/null
  cmake --build "$build" -j"$jobs"
  (cd "$build" && ctest --output-on-failure -j"$jobs" --timeout 300)
}

run_suite "${TUNEDESK_BUILD_DIR:-$here/build}" -DCMAKE_BUILD_TYPE=RelWithDebInfo
if [ "${TUNEDESK_SANITIZERS:-1}" != 0 ]; then
  echo "== the same tests under AddressSanitizer and UndefinedBehaviorSanitizer"
  ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS="suppressions=$here/tests/lsan.supp:print_suppressions=0" \
    UBSAN_OPTIONS=print_stacktrace=1 \
    run_suite "$here/build-asan" -DCMAKE_BUILD_TYPE=Debug -DTUNEDESK_SANITIZE=ON -DTUNEDESK_BENCH=OFF
fi
if [ "${TUNEDESK_FUZZ:-1}" != 0 ]; then
  echo "== every parser of outside input under libFuzzer, a bounded time each"
  bash "$here/tools/run-fuzzers.sh"
fi
