#!/usr/bin/env bash
# The console as a venue starts it: its own folder, a songbook named in KtvPublic/database_home.ini.
# It must open the songbook, load the songbook window and end in order when the system stops it.
set -u
console=$1
admin=$2
data=$3
work=$(mktemp -d)
trap 'kill "$pid" 2>/dev/null; rm -rf "$work"' EXIT

cp "$console" "$work/"
cp "$data"/List*.ini "$work/"
cp -r "$data/Region" "$work/"
"$admin" demo "$work/demo" --songs 50 --no-media >/dev/null || { echo "FAIL: demo"; exit 1; }
mkdir -p "$work/KtvPublic"
printf '[SongServer]\nLocal=./demo/song.db\n' >"$work/KtvPublic/database_home.ini"

QT_QPA_PLATFORM=offscreen "$work/$(basename "$console")" >"$work/out.txt" 2>&1 &
pid=$!
for _ in $(seq 1 100); do
  [ -e "$work/ResfrmSong.tmp" ] && break
  sleep 0.1
done
sleep 2.5   # the first load of the list runs a second after the window; let it finish
kill -TERM "$pid"
wait "$pid"
status=$?

fails=0
check() { grep -qa -- "$1" "$work/event.log" || { echo "FAIL: event.log lacks: $1"; fails=$((fails + 1)); }; }
[ "$status" -eq 0 ] || { echo "FAIL: exit status $status"; fails=$((fails + 1)); }
[ -e "$work/ResfrmSong.tmp" ] || { echo "FAIL: the songbook window did not load"; fails=$((fails + 1)); }
check "Event:Application Started. Version="
check "Event:Open access database ok! File=$work/demo/song.db"
check "Event:Application Terminated"
[ "$fails" -eq 0 ] && echo "console start and orderly end: all checks pass"
exit "$fails"
