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

"$admin" sql "$work/good.db" "select [value] from config where [section]='Database' and [key]='Format'" >"$work/out" 2>&1
grep -qx "SongDatabase" "$work/out" || { echo "FAIL: sql output: $(cat "$work/out")"; fails=$((fails + 1)); }

"$admin" sql "$work/good.db" "insert into region (name) values ('Taiwan')" >"$work/out" 2>&1 ||
  { echo "FAIL: sql insert: $(cat "$work/out")"; fails=$((fails + 1)); }
"$admin" sql "$work/good.db" "select name from region" >"$work/out" 2>&1
[ "$(cat "$work/out")" = "$(printf 'name\nTaiwan')" ] || { echo "FAIL: sql after insert: $(cat "$work/out")"; fails=$((fails + 1)); }

[ "$fails" -eq 0 ] && echo "admin command line: all cases pass"
exit "$fails"
