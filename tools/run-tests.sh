#!/usr/bin/env bash
# Installs what is needed, builds Tunedesk with its tests and runs every test.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bash "$here/tools/install-deps.sh"
build=${TUNEDESK_BUILD_DIR:-$here/build}
export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/tunedesk-ccache}
cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$(nproc)"
cd "$build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$(nproc)" --timeout 300
