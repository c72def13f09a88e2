#include "songdb/SongReadings.h"
#include "shell/services/AppError.h"
#include "shell/services/JobHost.h"
#include "songdb/Connection.h"
#include "songdb/PinyinReadings.h"
#include <QStringList>

namespace td {

namespace {

constexpr int kBatch = 20000;

// The table and the triggers that keep it in step with song. A title that does not change (a save that
// writes every field) leaves its readings alone.
const char* const kSqliteTable[] = {
    "CREATE TABLE song_reading (song_id INTEGER NOT NULL, initials TEXT, spelling TEXT)",
    "CREATE INDEX song_reading_song ON song_reading (song_id)",
    "CREATE TRIGGER song_reading_added AFTER INSERT ON song BEGIN "
    "INSERT INTO song_reading (song_id) VALUES (new.id); END",
    "CREATE TRIGGER song_reading_retitled AFTER UPDATE OF title, id ON song "
    "WHEN old.title IS NOT new.title OR old.id IS NOT new.id BEGIN "
    "DELETE FROM song_reading WHERE song_id = old.id; "
    "INSERT INTO song_reading (song_id) VALUES (new.id); END",
    "CREATE TRIGGER song_reading_removed AFTER DELETE ON song BEGIN "
    "DELETE FROM song_reading WHERE song_id = old.id; END",
};

// Readings are lower-case ASCII compared byte by byte, so a typed prefix is a range on an index. The
// indexes come once every title has been read: made in one sorted pass, not row by row.
const char* const kSqliteIndexes[] = {
    "CREATE INDEX song_reading_initials ON song_reading (initials)",
    "CREATE INDEX song_reading_spelling ON song_reading (spelling)",
};

bool onSqlite(Connection& db)
{
    return db.backend().dialect().rowKey == u"rowid";
}

// A write transaction that holds its lock from the start: two consoles reading the same waiting
// titles then take turns instead of both writing their rows.
class WriteTransaction {
public:
    explicit WriteTransaction(Connection& db) : db_(db)
    {
        db_.backend().execute(onSqlite(db_) ? QStringLiteral("BEGIN IMMEDIATE") : QStringLiteral("BEGIN"));
    }
    ~WriteTransaction()
    {
        if (!done_) {
            try {
                db_.backend().execute(QStringLiteral("ROLLBACK"));
            } catch (const AppError&) {
            }
        }
    }
    void commit()
    {
        db_.backend().execute(QStringLiteral("COMMIT"));
        done_ = true;
    }

private:
    Connection& db_;
    bool done_ = false;
};

void createTable(Connection& db)
{
    if (!onSqlite(db))
        throw AppError(QStringLiteral("The pinyin readings need their table made on this database server"));
    WriteTransaction tx(db);
    for (const char* sql : kSqliteTable)
        db.backend().execute(QString::fromUtf8(sql));
    tx.commit();
}

// The table is there but its titles are still being read for the first time.
bool filling(Connection& db)
{
    return onSqlite(db) &&
           db.openRecordset(QStringLiteral(
                                "select count(*) from sqlite_master where name = 'song_reading_initials'"))
                   ->value(0, 0)
                   .toLongLong() == 0;
}

// Where a first reading of all titles goes on: after the last song it read.
qint64 filledUpTo(Connection& db)
{
    return db.openRecordset(QStringLiteral("select max(song_id) from song_reading where initials is not null"))
        ->value(0, 0)
        .toLongLong();
}

QString valuesOf(qint64 id, const TitleReading& r)
{
    return u'(' + QString::number(id) + QStringLiteral(", '") + r.initials + QStringLiteral("', '") +
           r.spelling + QStringLiteral("')");
}

// Writes the readings of a batch of titles (id, title); with replace, the songs' rows go first.
void writeReadings(Connection& db, const Recordset& rs, bool replace)
{
    QStringList ids, rows;
    for (qsizetype i = 0; i < rs.RecordCount(); ++i) {
        const qint64 id = rs.value(i, 0).toLongLong();
        ids << QString::number(id);
        for (const TitleReading& r : TitleReadings(rs.text(i, 1)))
            rows << valuesOf(id, r);
    }
    if (replace)
        db.execute(QStringLiteral("delete * from song_reading where song_id in (") + ids.join(u',') + u')');
    constexpr qsizetype kRowsPerInsert = 500;
    for (qsizetype i = 0; i < rows.size(); i += kRowsPerInsert)
        db.execute(QStringLiteral("insert into song_reading (song_id, initials, spelling) values ") +
                   rows.mid(i, kRowsPerInsert).join(u','));
}

struct Batch {
    qsizetype titles = 0;
    qint64 lastId = 0;
};

// Reads one batch of titles in a write transaction of its own. The first reading of all titles goes
// through the songs by id; after that only the titles waiting are read, each replacing its song's rows.
Batch readBatch(Connection& db, qint64 after, bool first)
{
    WriteTransaction tx(db);
    const QString sql =
        first ? QStringLiteral("select top %1 id, title from song where id > %2 order by id")
                    .arg(kBatch)
                    .arg(after)
              : QStringLiteral("select top %1 r.song_id, s.title from song_reading r inner join song s "
                               "on s.id = r.song_id where r.initials is null")
                    .arg(kBatch);
    auto rs = db.openRecordset(sql);
    const qsizetype n = rs->RecordCount();
    if (n == 0)
        return {};
    writeReadings(db, *rs, !first);
    tx.commit();
    return {n, rs->value(n - 1, 0).toLongLong()};
}

qint64 count(Connection& db, const QString& sql)
{
    return db.openRecordset(sql)->value(0, 0).toLongLong();
}

}  // namespace

bool SongReadingsExist(Connection& db)
{
    try {
        db.openRecordset(QStringLiteral("select top 1 song_id from song_reading"));
        return true;
    } catch (const AppError&) {
        return false;
    }
}

qint64 SongReadingsWaiting(Connection& db)
{
    if (!SongReadingsExist(db))
        return count(db, QStringLiteral("select count(*) from song"));
    qint64 waiting = count(db, QStringLiteral("select count(*) from song_reading where initials is null"));
    if (filling(db))
        waiting += count(db, QStringLiteral("select count(*) from song where id > ") +
                                 QString::number(filledUpTo(db)));
    return waiting;
}

bool UpdateSongReadings(Connection& db, JobHost* host)
{
    if (db.readOnly())
        return true;
    if (!SongReadingsExist(db))
        createTable(db);
    if (host)
        host->StartProcess(QString(), QStringLiteral("Reading titles in pinyin ..."), 0,
                           SongReadingsWaiting(db), true);
    qint64 done = 0;
    const auto goOn = [&](qsizetype n) {
        done += n;
        if (!host)
            return true;
        host->Processing(done);
        return !JobStopWanted(*host);
    };
    bool finished = true;
    if (filling(db)) {
        for (Batch b{0, filledUpTo(db)}; finished;) {
            b = readBatch(db, b.lastId, true);
            if (b.titles == 0)
                break;
            finished = goOn(b.titles);
        }
        if (finished) {
            WriteTransaction tx(db);
            for (const char* sql : kSqliteIndexes)
                db.backend().execute(QString::fromUtf8(sql));
            tx.commit();
        }
    }
    while (finished) {
        const qsizetype n = readBatch(db, 0, false).titles;
        if (n == 0)
            break;
        finished = goOn(n);
    }
    if (host)
        host->EndProcess();
    return finished;
}

QString PinyinCondition(const QString& typed)
{
    QString key = PinyinKey(typed);
    if (key.isEmpty())
        return {};
    // Nothing typed outside letters and digits can begin a reading: the range is then empty.
    QString above = key;
    if (key.contains(u'?'))
        above = key = QStringLiteral("?");
    else
        above.back() = QChar(above.back().unicode() + 1);
    const auto range = [&](const char* column) {
        const QString c = QString::fromLatin1(column);
        return c + QStringLiteral(" >= '") + key + QStringLiteral("' and ") + c + QStringLiteral(" < '") +
               above + u'\'';
    };
    return QStringLiteral("id in (select song_id from song_reading where ") + range("initials") +
           QStringLiteral(" or ") + range("spelling") + u')';
}

}  // namespace td
