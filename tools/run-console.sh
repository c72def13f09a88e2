#!/usr/bin/env bash
# Installs what is needed, builds Tunedesk and starts the console.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bash "$here/tools/install-deps.sh"
build=${TUNEDESK_BUILD_DIR:-$here/build}
export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/tunedesk-ccache}
cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$(nproc)" --target tunedesk
exec "$build/tunedesk"
