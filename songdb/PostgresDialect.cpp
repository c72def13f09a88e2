#include "songdb/PostgresBackend.h"
#include <QStringList>

namespace td {

// Texts compare in GB2312 order (hanzi of the first level by their pinyin) through ICU's
// collation of that name. The character tests of the initial-letter search compare the GB18030
// bytes of one character with ASCII letters in upper case, exactly as the embedded store's
// collation does, so both stores find the same songs.
QStringList PostgresSongbookSetup()
{
    return {
        QStringLiteral("CREATE COLLATION IF NOT EXISTS td_gb2312 (provider = icu, locale = 'zh-u-co-gb2312')"),
        QStringLiteral(
            "CREATE OR REPLACE FUNCTION td_gb(x text) RETURNS bytea LANGUAGE sql IMMUTABLE STRICT "
            "PARALLEL SAFE AS $$ SELECT convert_to(translate(x, 'abcdefghijklmnopqrstuvwxyz', "
            "'ABCDEFGHIJKLMNOPQRSTUVWXYZ'), 'GB18030') $$"),
        QStringLiteral(
            "CREATE OR REPLACE FUNCTION td_char_in(x text, pos integer, lo text, hi text) RETURNS boolean "
            "LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT td_gb(substr(x, pos, 1)) >= td_gb(lo) AND "
            "(hi IS NULL OR td_gb(substr(x, pos, 1)) < td_gb(hi)) $$"),
        QStringLiteral(
            "CREATE OR REPLACE FUNCTION td_char_upper_is(x text, pos integer, c text) RETURNS boolean "
            "LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT td_gb(upper(substr(x, pos, 1))) = td_gb(c) $$"),
        QStringLiteral(
            "CREATE OR REPLACE FUNCTION td_char_in_or_upper_is(x text, pos integer, lo text, hi text, c text) "
            "RETURNS boolean LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT td_char_in(x, pos, lo, hi) "
            "OR td_char_upper_is(x, pos, c) $$"),
        QStringLiteral("CREATE OR REPLACE FUNCTION td_now() RETURNS timestamp(0) LANGUAGE sql STABLE AS "
                       "$$ SELECT localtimestamp(0) $$"),
        QStringLiteral("CREATE OR REPLACE FUNCTION td_date() RETURNS date LANGUAGE sql STABLE AS "
                       "$$ SELECT current_date $$"),
    };
}

}  // namespace td
