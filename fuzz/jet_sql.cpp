// Jet SQL as the windows, the format files and venue support write it, through the translation to
// both stores; what the embedded store accepts of a select also runs, read-only and cut short.
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"
#include "shell/services/AppError.h"
#include "songdb/Connection.h"
#include "songdb/JetSql.h"
#include "songdb/SqliteBackend.h"
#include <sqlite3.h>

namespace td::fuzz {
namespace {

// The server store's way of writing, as it sets it up for a songbook.
const SqlDialect& serverDialect()
{
    static const SqlDialect d = [] {
        SqlDialect s{QStringLiteral("td_rowid"), QStringLiteral(" COLLATE td_gb2312"), QStringLiteral("upper"),
                     QStringLiteral("td_char_")};
        s.foldNames = true;
        s.likeOperator = QStringLiteral("ILIKE");
        s.emptyList = QStringLiteral("SELECT NULL WHERE false");
        s.nowFunction = QStringLiteral("td_now");
        s.dateFunction = QStringLiteral("td_date");
        s.rowKeyOf = [](const QString& table) {
            return table.compare(QStringLiteral("config"), Qt::CaseInsensitive) == 0 ? QString()
                                                                                    : QStringLiteral("td_rowid");
        };
        return s;
    }();
    return d;
}

// A read-only connection to an empty songbook, so no statement can change a file; a statement stops
// after a bounded number of steps, so a select that would run for long ends as an error.
SqliteBackend& readOnlySongbook()
{
    static SqliteBackend* backend = [] {
        SongDatabase();
        auto* b = new SqliteBackend(WorkDir() + QStringLiteral("/song.db"), 0, true, false);
        sqlite3_progress_handler(b->handle(), 100000, [](void*) { return 1; }, nullptr);
        return b;
    }();
    return *backend;
}

void translated(const QString& jet, const SqlDialect& dialect, bool run)
{
    TranslatedStatement st;
    try {
        st = TranslateJetSql(jet, dialect);
    } catch (const AppError&) {
        return;
    }
    Expect(st.kind != TranslatedStatement::Kind::SelectInto || !st.intoTable.isEmpty(),
           "a select into names its new table");
    Expect(st.keyedSql.isEmpty() == st.baseTable.isEmpty(), "a keyed select names its table");
    if (!run || st.kind != TranslatedStatement::Kind::Rows)
        return;
    std::vector<qint64> keys;
    try {
        const bool keyed = !st.keyedSql.isEmpty();
        readOnlySongbook().query(keyed ? st.keyedSql : st.sql, keyed, &keys);
    } catch (const AppError&) {
    }
}

}  // namespace

int FuzzJetSql(const uint8_t* data, size_t size)
{
    const QString jet = QString::fromUtf8(Input(data, size));
    translated(jet, readOnlySongbook().dialect(), true);
    translated(jet, serverDialect(), false);
    return 0;
}

}  // namespace td::fuzz
