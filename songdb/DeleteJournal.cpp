#include "songdb/DeleteJournal.h"
#include "shell/services/AppError.h"
#include "shell/services/AppLog.h"
#include "shell/services/Ini.h"
#include "shell/services/Platform.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>

namespace td {

namespace {

const QString kStoredTime = QStringLiteral("yyyy-MM-dd HH:mm:ss");
const QString kDeletedAt = QStringLiteral("deleted_at");
// Pruning reads the whole journal: after the first batch of a connection, at most this often.
constexpr qint64 kPruneEveryMs = 10 * 60 * 1000;

// A kept table and where its deleted rows go.
struct Kept {
    const char* table;
    const char* journal;
    const char* trigger;
};
constexpr Kept kKept[] = {
    {"song", "deleted_song", "song_deleted_kept"},
    {"singer", "deleted_singer", "singer_deleted_kept"},
};

const SchemaTable& schemaOf(const char* name)
{
    for (const auto& t : SongDatabaseTables())
        if (qstrcmp(t.name, name) == 0)
            return t;
    throw AppError(QStringLiteral("No table ") + QString::fromLatin1(name));
}

QStringList columnNames(const char* table)
{
    QStringList names;
    for (const auto& c : schemaOf(table).columns)
        names << QString::fromLatin1(c.name);
    return names;
}

// The journal holds the table's columns as they are, its key a plain number, and the time of the delete.
// No index: each row deleted would write one more page, and pruning reads the journal seldom.
SchemaTable journalSchema(const Kept& kept)
{
    SchemaTable journal{kept.journal, schemaOf(kept.table).columns, {}};
    for (auto& c : journal.columns)
        if (c.type == ColumnType::Key)
            c.type = ColumnType::Integer;
    journal.columns.push_back({"deleted_at", ColumnType::Date});
    return journal;
}

QString quotedList(const QStringList& names, const QString& prefix = {})
{
    QStringList out;
    for (const auto& n : names)
        out << prefix + u'"' + n + u'"';
    return out.join(u", ");
}

QStringList triggerStatements(const Kept& kept, bool postgres)
{
    const QString table = QString::fromLatin1(kept.table);
    const QString journal = QString::fromLatin1(kept.journal);
    const QString trigger = QString::fromLatin1(kept.trigger);
    const QStringList columns = columnNames(kept.table);
    const QString insert = QStringLiteral("INSERT INTO ") + journal + QStringLiteral(" (") + quotedList(columns) +
                           QStringLiteral(", deleted_at) VALUES (") +
                           quotedList(columns, postgres ? QStringLiteral("OLD.") : QStringLiteral("old.")) +
                           QStringLiteral(", ");
    if (!postgres)
        return {QStringLiteral("CREATE TRIGGER IF NOT EXISTS ") + trigger + QStringLiteral(" BEFORE DELETE ON ") +
                table + QStringLiteral(" BEGIN ") + insert +
                QStringLiteral("strftime('%Y-%m-%d %H:%M:%S', 'now')); END")};
    const QString function = QStringLiteral("td_keep_deleted_") + table;
    return {QStringLiteral("CREATE OR REPLACE FUNCTION ") + function +
                QStringLiteral("() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN ") + insert +
                QStringLiteral("(now() AT TIME ZONE 'UTC')::timestamp(0)); RETURN OLD; END $$"),
            QStringLiteral("CREATE OR REPLACE TRIGGER ") + trigger + QStringLiteral(" BEFORE DELETE ON ") + table +
                QStringLiteral(" FOR EACH ROW EXECUTE FUNCTION ") + function + QStringLiteral("()")};
}

QStringList journalStatements(const Kept& kept, bool postgres)
{
    QStringList statements;
    for (QString sql : SchemaStatements(journalSchema(kept), postgres)) {
        if (sql.startsWith(u"CREATE TABLE "))
            sql.insert(13, QStringLiteral("IF NOT EXISTS "));
        else if (sql.startsWith(u"CREATE INDEX "))
            sql.insert(13, QStringLiteral("IF NOT EXISTS "));
        statements << sql;
    }
    return statements + triggerStatements(kept, postgres);
}

bool onPostgres(const Backend& backend)
{
    return backend.dialect().rowKey != u"rowid";
}

// Which of the kept tables, journals and triggers the database has, lower case.
QSet<QString> presentNames(Backend& backend)
{
    QStringList wanted;
    for (const Kept& k : kKept)
        wanted << QString::fromLatin1(k.table) << QString::fromLatin1(k.journal) << QString::fromLatin1(k.trigger);
    const QString list = u'\'' + wanted.join(QStringLiteral("', '")) + u'\'';
    const QString sql =
        onPostgres(backend)
            ? QStringLiteral("SELECT relname::text FROM pg_class WHERE relkind = 'r' AND pg_table_is_visible(oid) "
                             "AND relname IN (%1) UNION SELECT tgname::text FROM pg_trigger WHERE tgname IN (%1)")
                  .arg(list)
            : QStringLiteral("SELECT lower(name) FROM sqlite_master WHERE lower(name) IN (%1)").arg(list);
    const auto rows = backend.query(sql, false, nullptr);
    QSet<QString> names;
    for (qsizetype r = 0; r < rows->rowCount(); ++r)
        names.insert(rows->text(r, 0));
    return names;
}

QString storedTime(const QDateTime& t)
{
    return t.toUTC().toString(kStoredTime);
}

QString literal(const QString& text)
{
    return u'\'' + QString(text).replace(u'\'', QStringLiteral("''")) + u'\'';
}

// The open batch of this thread: rows counted so far and the database they came from.
struct OpenBatch {
    int depth = 0;
    qint64 songs = 0;
    qint64 singers = 0;
    std::weak_ptr<Backend> backend;
};
thread_local OpenBatch openBatch;

QString consoleName()
{
    try {
        return Platform().computerName();
    } catch (const std::exception&) {
        return {};
    }
}

QString counted(qint64 songs, qint64 singers)
{
    QStringList parts;
    if (songs > 0 || singers == 0)
        parts << QString::number(songs) + QStringLiteral(" song(s)");
    if (singers > 0)
        parts << QString::number(singers) + QStringLiteral(" singer(s)");
    return parts.join(QStringLiteral(" and "));
}

void finishBatch()
{
    OpenBatch done = std::exchange(openBatch, OpenBatch{});
    if (done.songs + done.singers == 0)
        return;
    const int days = KeepDeletedDays();
    AppLogEvent(QStringLiteral("Deleted %1 on console %2, kept %3 day(s)")
                    .arg(counted(done.songs, done.singers), consoleName())
                    .arg(days));
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const auto backend = done.backend.lock();
    if (backend && backend->isOpen() && now - backend->deleteJournalPrunedAt >= kPruneEveryMs) {
        backend->deleteJournalPrunedAt = now;
        PruneDeleteJournal(*backend, days);
    }
}

}  // namespace

int KeepDeletedDays()
{
    const QString text = AppIniRead(kKeepDeletedDaysKey, QString::number(kKeepDeletedDaysDefault)).trimmed();
    if (text.isEmpty() || !(text[0].isDigit() || text[0] == u'-'))
        return kKeepDeletedDaysDefault;  // a slip of the pen never turns the journal off
    return int(std::clamp<long long>(IntegerValue(text), 0, 100000));
}

QString KeptTableOfDelete(const QString& sql)
{
    static const QRegularExpression deleteFrom(
        QStringLiteral(R"(^\s*delete\s+(?:\*\s+)?from\s+[\["]?(\w+)[\]"]?(?:\s|$))"),
        QRegularExpression::CaseInsensitiveOption);
    const auto m = deleteFrom.match(sql);
    const QString table = m.hasMatch() ? m.captured(1).toLower() : QString();
    return IsKeptTable(table) ? table : QString();
}

bool IsKeptTable(const QString& table)
{
    for (const Kept& k : kKept)
        if (table.compare(QLatin1String(k.table), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

QStringList DeleteJournalStatements(bool postgres)
{
    QStringList statements;
    for (const Kept& k : kKept)
        statements << journalStatements(k, postgres);
    return statements;
}

namespace {

// The kept tables whose journal or trigger the database lacks.
std::vector<const Kept*> missingJournals(Backend& backend)
{
    const QSet<QString> present = presentNames(backend);
    std::vector<const Kept*> missing;
    for (const Kept& k : kKept)
        if (present.contains(QString::fromLatin1(k.table)) &&
            !(present.contains(QString::fromLatin1(k.journal)) && present.contains(QString::fromLatin1(k.trigger))))
            missing.push_back(&k);
    return missing;
}

// Two consoles making the journal at once on a server would both create its tables, and one would
// fail on the catalogue: they take turns, and the second finds it made.
class ServerTurn {
public:
    explicit ServerTurn(Backend& backend) : backend_(onPostgres(backend) ? &backend : nullptr)
    {
        if (backend_)
            backend_->execute(QStringLiteral("SELECT pg_advisory_lock(7301904417)"));
    }
    ~ServerTurn()
    {
        try {
            if (backend_)
                backend_->execute(QStringLiteral("SELECT pg_advisory_unlock(7301904417)"));
        } catch (const AppError&) {
            // The connection is gone, and its lock with it.
        }
    }
    ServerTurn(const ServerTurn&) = delete;
    ServerTurn& operator=(const ServerTurn&) = delete;

private:
    Backend* backend_;
};

}  // namespace

void EnsureDeleteJournal(Backend& backend, bool cached)
{
    if ((cached && backend.deleteJournalReady) || backend.readOnly())
        return;
    if (!missingJournals(backend).empty()) {
        const ServerTurn turn(backend);
        for (const Kept* k : missingJournals(backend))
            for (const QString& sql : journalStatements(*k, onPostgres(backend)))
                backend.execute(sql);
    }
    backend.deleteJournalReady = true;
}

void NoteDeleted(const std::shared_ptr<Backend>& backend, const QString& table, qint64 rows)
{
    if (rows <= 0 || !IsKeptTable(table))
        return;
    (table.compare(u"song", Qt::CaseInsensitive) == 0 ? openBatch.songs : openBatch.singers) += rows;
    openBatch.backend = backend;
    if (openBatch.depth == 0)
        finishBatch();
}

DeleteBatch::DeleteBatch()
{
    ++openBatch.depth;
}

DeleteBatch::~DeleteBatch()
{
    if (--openBatch.depth == 0)
        finishBatch();
}

void PruneDeleteJournal(Backend& backend, int days)
{
    const QString cutoff = literal(storedTime(QDateTime::currentDateTimeUtc().addDays(-days)));
    for (const Kept& k : kKept) {
        try {
            backend.execute(QStringLiteral("DELETE FROM ") + QString::fromLatin1(k.journal) +
                            QStringLiteral(" WHERE deleted_at < ") + cutoff);
        } catch (const AppError&) {
            // No journal yet, or the database is busy: the rows go after the next batch.
        }
    }
}

namespace {

// The rows of one journal since a time, the last deleted first: of two kept songs with one index, the one
// deleted last is the one the operator misses.
struct JournalRows {
    std::unique_ptr<Recordset> rs;
    std::vector<qsizetype> order;
};

JournalRows journalRows(Connection& db, const Kept& kept, const QDateTime& since)
{
    QString sql = QStringLiteral("select * from ") + QString::fromLatin1(kept.journal);
    if (since.isValid())
        sql += QStringLiteral(" where deleted_at >= ") + literal(storedTime(since));
    JournalRows rows{db.openRecordset(sql), {}};
    const int at = rows.rs->FieldIndex(kDeletedAt);
    for (qsizetype p = 0; p < rows.rs->RecordCount(); ++p)
        rows.order.push_back(p);
    std::vector<std::pair<QString, Bookmark>> keys;
    for (qsizetype p : rows.order)
        keys.emplace_back(rows.rs->text(p, at), rows.rs->bookmarkAt(p));
    std::sort(rows.order.begin(), rows.order.end(), [&](qsizetype a, qsizetype b) {
        return keys[std::size_t(b)] < keys[std::size_t(a)];
    });
    return rows;
}

ColumnValues valuesAt(const Recordset& rs, qsizetype position, const QStringList& columns, bool withId)
{
    ColumnValues values;
    for (const QString& name : columns) {
        if (!withId && name == u"id")
            continue;
        const int c = rs.FieldIndex(name);
        values.emplace_back(name, rs.isNull(position, c) ? QVariant() : rs.value(position, c));
    }
    return values;
}

// Takes the restored rows out of the journal, by their keys.
void forget(Recordset& rs, const std::vector<Bookmark>& keys)
{
    for (const Bookmark key : keys)
        if (rs.setBookmark(key))
            rs.Delete();
}

void restoreSongs(Connection& db, const QDateTime& since, RestoreOutcome& outcome)
{
    QHash<qint64, QString> indexes;
    QSet<qint64> ids;
    {
        auto songs = db.openRecordset(QStringLiteral("select id, [index], title from song"));
        for (qsizetype p = 0; p < songs->RecordCount(); ++p) {
            ids.insert(songs->value(p, 0).toLongLong());
            if (const qint64 index = songs->value(p, 1).toLongLong(); index != 0)
                indexes.insert(index, songs->text(p, 2));
        }
    }
    JournalRows kept = journalRows(db, kKept[0], since);
    Recordset& rs = *kept.rs;
    const QStringList columns = columnNames("song");
    const int idAt = rs.FieldIndex(u"id"), indexAt = rs.FieldIndex(u"index"), titleAt = rs.FieldIndex(u"title");
    std::vector<Bookmark> restored;
    for (const qsizetype p : kept.order) {
        const qint64 index = rs.value(p, indexAt).toLongLong();
        const QString title = rs.text(p, titleAt);
        if (index != 0 && indexes.contains(index)) {
            outcome.refused << QStringLiteral("song %1 \"%2\" not restored: index %1 belongs to \"%3\"")
                                   .arg(QString::number(index), title, indexes.value(index));
            continue;
        }
        const qint64 id = rs.value(p, idAt).toLongLong();
        const bool sameId = !ids.contains(id);  // a song with its id now is another one: a new id then
        const qint64 key = db.backend().insertRow(QStringLiteral("song"), valuesAt(rs, p, columns, sameId));
        ids.insert(sameId ? id : key);
        if (index != 0)
            indexes.insert(index, title);
        restored.push_back(rs.bookmarkAt(p));
    }
    forget(rs, restored);
    outcome.songs = qint64(restored.size());
}

void restoreSingers(Connection& db, const QDateTime& since, RestoreOutcome& outcome)
{
    QSet<QString> names;
    {
        auto singers = db.openRecordset(QStringLiteral("select name from singer"));
        for (qsizetype p = 0; p < singers->RecordCount(); ++p)
            names.insert(singers->text(p, 0));
    }
    JournalRows kept = journalRows(db, kKept[1], since);
    Recordset& rs = *kept.rs;
    const QStringList columns = columnNames("singer");
    const int nameAt = rs.FieldIndex(u"name");
    std::vector<Bookmark> restored;
    for (const qsizetype p : kept.order) {
        const QString name = rs.text(p, nameAt);
        if (names.contains(name)) {
            outcome.refused << QStringLiteral("singer \"%1\" not restored: the name is taken").arg(name);
            continue;
        }
        db.backend().insertRow(QStringLiteral("singer"), valuesAt(rs, p, columns, true));
        names.insert(name);
        restored.push_back(rs.bookmarkAt(p));
    }
    forget(rs, restored);
    outcome.singers = qint64(restored.size());
}

}  // namespace

QDateTime ParseJournalTime(const QString& text)
{
    QString t = text.trimmed();
    if (t.size() > 10 && t[10] == u'T')
        t[10] = u' ';
    for (const char* format : {"yyyy-MM-dd HH:mm:ss", "yyyy-MM-dd HH:mm", "yyyy-MM-dd"}) {
        const QDateTime parsed = QDateTime::fromString(t, QString::fromLatin1(format));
        if (parsed.isValid())
            return parsed;
    }
    return {};
}

RestoreOutcome RestoreDeleted(Connection& db, const QDateTime& since)
{
    if (!db.isOpen())
        throw StoreClosedError();
    EnsureDeleteJournal(db.backend(), false);
    RestoreOutcome outcome;
    // One transaction: a restore cut off halfway leaves both the songbook and the journal as they were.
    db.execute(QStringLiteral("begin"));
    try {
        restoreSongs(db, since, outcome);
        restoreSingers(db, since, outcome);
        db.execute(QStringLiteral("commit"));
    } catch (...) {
        try {
            db.execute(QStringLiteral("rollback"));
        } catch (const AppError&) {
        }
        throw;
    }
    if (outcome.songs + outcome.singers > 0)
        AppLogEvent(QStringLiteral("Restored %1 on console %2").arg(counted(outcome.songs, outcome.singers),
                                                                   consoleName()));
    return outcome;
}

}  // namespace td
