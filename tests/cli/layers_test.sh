#!/usr/bin/env bash
# The layers keep their arrows: the services and the song database include no widget header and
# nothing of a layer above them, the controls nothing of the windows, and tunedesk-admin loads no
# widget library.
set -u
src=$1 widgets_include=$2 admin=$3
fails=0

# Every header name of Qt Widgets, as an include would write it.
widget_headers=$(ls "$widgets_include" | sed 's/^/<|/; s/$/>/' | paste -sd '|' | sed 's/<|/</g; s/^/(/; s/$/)/')

check() {
  local what=$1 pattern=$2; shift 2
  local hits
  hits=$(cd "$src" && grep -nE "^[[:space:]]*#[[:space:]]*include[[:space:]]*($pattern)" "$@" 2>/dev/null)
  if [ -n "$hits" ]; then
    echo "FAIL: $what:"
    echo "$hits" | sed 's/^/  /'
    fails=$((fails + 1))
  fi
}

core=(shell/services/*.h shell/services/*.cpp songdb/*.h songdb/*.cpp libraries/FileFinder.* libraries/FinderDirectory.*
  libraries/LibrarySongFiles.*)
check "a widget header below the controls" "<QtWidgets/|$widget_headers" "${core[@]}"
check "a layer above the song database" '"(controls|songbook|singers|config|regions|checks|exchange|shell/[A-Za-z]+\.h)' "${core[@]}"
check "the services reach up to the song database" '"songdb/' shell/services/*.h shell/services/*.cpp
check "the controls reach up to the windows" '"(songbook|singers|config|checks|exchange|shell/[A-Za-z]+\.h)' controls/*.h controls/*.cpp

if ldd "$admin" | grep -q 'libQt6Widgets'; then
  echo "FAIL: tunedesk-admin links Qt Widgets"
  fails=$((fails + 1))
fi

[ "$fails" -eq 0 ] && echo "layers hold"
exit "$fails"
