#!/usr/bin/env bash
# Installs what is needed, builds Tunedesk, makes a demo songbook on the first start, and starts the console.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bash "$here/tools/install-deps.sh"
build=${TUNEDESK_BUILD_DIR:-$here/build}
export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/tunedesk-ccache}
cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$(nproc)" --target tunedesk tunedesk-admin tunedesk_data

# The first start gets a demo installation; an existing songbook or setting is never replaced.
demo="$build/demo"
home="$build/KtvPublic/database_home.ini"
if [ ! -e "$demo/song.db" ]; then
  echo "Creating the demo songbook in $demo ..."
  "$build/tunedesk-admin" demo "$demo" >/dev/null
fi
if [ ! -e "$home" ]; then
  mkdir -p "$(dirname "$home")"
  # Stored relative to the program folder, as the console itself stores such paths.
  printf '[SongServer]\nLocal=./demo/song.db\n' >"$home"
fi
exec "$build/tunedesk"
