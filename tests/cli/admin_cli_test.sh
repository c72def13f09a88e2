#!/usr/bin/env bash
# tunedesk-admin answers bad arguments and bad files with a message on stderr and exit status 2.
set -u
admin=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
printf 'not a database' >"$work/garbage.db"
"$admin" create "$work/good.db" >/dev/null || { echo "FAIL: create"; exit 1; }

fails=0
expect_two() {
  local what=$1; shift
  "$admin" "$@" >"$work/out" 2>"$work/err"
  local rc=$?
  if [ "$rc" -ne 2 ] || [ ! -s "$work/err" ]; then
    echo "FAIL: $what: exit $rc, stderr: $(head -c 200 "$work/err")"
    fails=$((fails + 1))
  fi
}
expect_two "no command"
expect_two "unknown command" frobnicate
expect_two "create without file" create
expect_two "create over an existing file" create "$work/good.db"
expect_two "demo with a bad count" demo "$work/d" --songs many
expect_two "sql on a missing file" sql "$work/none.db" "select * from song"
expect_two "sql on a file that is no database" sql "$work/garbage.db" "select * from song"
expect_two "sql with two statements" sql "$work/good.db" "select * from song; delete * from song"
expect_two "sql with bad syntax" sql "$work/good.db" "selec * frm song"
expect_two "search without path" search "$work/good.db"
expect_two "library without subcommand" library
expect_two "library update without root" library update "$work/good.db"
expect_two "library update of a root that is no library" library update "$work/good.db" "$work/nowhere"

"$admin" sql "$work/good.db" "select [value] from config where [section]='Database' and [key]='Format'" >"$work/out" 2>&1
grep -qx "SongDatabase" "$work/out" || { echo "FAIL: sql output: $(cat "$work/out")"; fails=$((fails + 1)); }

"$admin" sql "$work/good.db" "insert into region (name) values ('Taiwan')" >"$work/out" 2>&1 ||
  { echo "FAIL: sql insert: $(cat "$work/out")"; fails=$((fails + 1)); }
"$admin" sql "$work/good.db" "select name from region" >"$work/out" 2>&1
[ "$(cat "$work/out")" = "$(printf 'name\nTaiwan')" ] || { echo "FAIL: sql after insert: $(cat "$work/out")"; fails=$((fails + 1)); }

# library update writes the song files of that library's songs and its ktvlibrary.ini; a song file that
# cannot be written is one line on stderr, the others are still written, and the exit status is 2.
lib="$work/lib"
mkdir -p "$lib/Pop" "$lib/Rock/blocked.mpg.son" "$lib/Rock/other.mpg.son"
: >"$lib/Pop/a.mpg"; : >"$lib/Rock/blocked.mpg"; : >"$lib/Rock/other.mpg"
"$admin" sql "$work/good.db" "insert into library (root_path) values ('$lib')" >/dev/null 2>&1
for m in /Pop/a.mpg /Pop/missing.mpg; do
  "$admin" sql "$work/good.db" "insert into song (title, region, media_file, library) values ('A=1', 'China', '$m', '$lib')" >/dev/null 2>&1
done
"$admin" library update "$work/good.db" "$lib" >"$work/out" 2>"$work/err" ||
  { echo "FAIL: library update: $(cat "$work/err")"; fails=$((fails + 1)); }
grep -qx "2 song(s) in selected library were updated successfully!" "$work/out" ||
  { echo "FAIL: library update output: $(cat "$work/out")"; fails=$((fails + 1)); }
[ "$(head -c 8 "$lib/Pop/a.mpg.son" | od -An -tx1 | tr -d ' \n')" = "fffe0d000a005b00" ] ||
  { echo "FAIL: song file does not start with BOM, empty line, ["; fails=$((fails + 1)); }
iconv -f UTF-16LE -t UTF-8 "$lib/Pop/a.mpg.son" 2>/dev/null | tr -d '\r' | grep -qx "title=A=1" ||
  { echo "FAIL: song file lacks title=A=1"; fails=$((fails + 1)); }
grep -qx "a.mpg.son" "$lib/Pop/.hidden" || { echo "FAIL: song file not hidden"; fails=$((fails + 1)); }
[ ! -e "$lib/Pop/missing.mpg.son" ] || { echo "FAIL: song file for a missing media file"; fails=$((fails + 1)); }
grep -qx "nSong=2" "$lib/ktvlibrary.ini" && grep -qx "lupd=$(date +%F)" "$lib/ktvlibrary.ini" ||
  { echo "FAIL: ktvlibrary.ini: $(cat "$lib/ktvlibrary.ini")"; fails=$((fails + 1)); }

for m in /Rock/blocked.mpg /Rock/other.mpg; do
  "$admin" sql "$work/good.db" "insert into song (title, media_file, library) values ('B', '$m', '$lib')" >/dev/null 2>&1
done
"$admin" library update "$work/good.db" "$lib" >"$work/out" 2>"$work/err"
rc=$?
[ "$rc" -eq 2 ] && [ "$(wc -l <"$work/err")" -eq 2 ] && [ "$(grep -c '^SetSongInfoToLibrary failed. Err = ' "$work/err")" -eq 2 ] ||
  { echo "FAIL: library update with two unwritable song files: exit $rc, stderr: $(cat "$work/err")"; fails=$((fails + 1)); }
grep -qx "2 song(s) in selected library were updated successfully!" "$work/out" ||
  { echo "FAIL: library update after failures: $(cat "$work/out")"; fails=$((fails + 1)); }

# library import reads those song files into an empty songbook; the library's own place and the
# media file below it come from where the files lie, not from what they say.
"$admin" create "$work/empty.db" >/dev/null 2>&1
"$admin" library import "$work/empty.db" "$lib" --region China --region "" >"$work/out" 2>"$work/err"
rc=$?
[ "$rc" -eq 0 ] && grep -qx "1song(s) imported to songbook successfully!" "$work/out" ||
  { echo "FAIL: library import: exit $rc, $(cat "$work/out" "$work/err")"; fails=$((fails + 1)); }
[ "$("$admin" sql "$work/empty.db" "select title, region, media_file, library from song order by media_file" | tail -n +2 | tr '\t' '|' | tr '\n' ';')" = "A=1|China|/Pop/a.mpg|$lib;" ] ||
  { echo "FAIL: library import rows: $("$admin" sql "$work/empty.db" "select * from song")"; fails=$((fails + 1)); }
"$admin" library import "$work/empty.db" "$lib" --index index --from 5000 --region China >"$work/out" 2>"$work/err"
[ "$("$admin" sql "$work/empty.db" "select [index] from song where [index]>0" | tail -n +2)" = "5001" ] ||
  { echo "FAIL: library import --index index --from 5000"; fails=$((fails + 1)); }
printf '\377' >"$lib/Pop/broken.son"
"$admin" library import "$work/empty.db" "$lib" --region China >"$work/out" 2>"$work/err"
rc=$?
[ "$rc" -eq 2 ] && [ "$(grep -c '^An error take place while import library! Err=' "$work/err")" -eq 1 ] &&
  grep -qx "1song(s) imported to songbook successfully!" "$work/out" ||
  { echo "FAIL: library import of a broken song file: exit $rc, $(cat "$work/out" "$work/err")"; fails=$((fails + 1)); }
expect_two "library import of a folder that is gone" library import "$work/empty.db" "$work/gone"
expect_two "library import with an unknown index class" library import "$work/empty.db" "$lib" --index other

[ "$fails" -eq 0 ] && echo "admin command line: all cases pass"
exit "$fails"
