#!/usr/bin/env bash
# tunedesk-admin restore: what was deleted comes back, a taken index is reported on stderr with exit 2,
# --since leaves older deletes in the journal, bad arguments exit 2.
set -u
admin=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
db=$work/song.db
fails=0
fail() { echo "FAIL: $*"; fails=$((fails + 1)); }
sql() { "$admin" sql "$db" "$1" >"$work/sql" 2>&1 || fail "sql $1: $(cat "$work/sql")"; }

"$admin" create "$db" >/dev/null || { echo "FAIL: create"; exit 1; }
sql "insert into song ([index], title) values (5, 'Five')"
sql "insert into singer (name) values ('Old singer')"
sql "delete * from song"
sql "delete * from singer"
sql "update deleted_song set deleted_at = '$(date -u -d '10 days ago' '+%Y-%m-%d %H:%M:%S')'"
sql "insert into song ([index], title) values (6, 'Six')"
sql "delete * from song where [index] = 6"

"$admin" restore "$db" --since "$(date -d '5 days ago' '+%Y-%m-%d %H:%M')" >"$work/out" 2>"$work/err"
rc=$?
[ "$rc" -eq 0 ] || fail "restore --since: exit $rc, $(cat "$work/err")"
grep -qx "1 song(s) and 1 singer(s) restored, 0 refused" "$work/out" || fail "restore --since said: $(cat "$work/out")"

sql "insert into song ([index], title) values (5, 'New five')"
"$admin" restore "$db" >"$work/out" 2>"$work/err"
rc=$?
[ "$rc" -eq 2 ] || fail "restore onto a taken index: exit $rc"
grep -qx 'tunedesk-admin: song 5 "Five" not restored: index 5 belongs to "New five"' "$work/err" ||
  fail "restore onto a taken index said: $(cat "$work/err")"
"$admin" sql "$db" "select title from song order by title" >"$work/out" 2>&1
[ "$(cat "$work/out")" = "$(printf 'title\nNew five\nSix')" ] || fail "songs after restore: $(cat "$work/out")"

for args in "restore" "restore $work/none.db" "restore $db --since" "restore $db --since yesterday" \
            "restore $db $db"; do
  # shellcheck disable=SC2086
  "$admin" $args >/dev/null 2>"$work/err"
  rc=$?
  { [ "$rc" -eq 2 ] && [ "$(wc -l <"$work/err")" -eq 1 ]; } || fail "$args: exit $rc, $(cat "$work/err")"
done

[ "$fails" -eq 0 ] && echo "admin restore: all passed"
exit $((fails > 0))
