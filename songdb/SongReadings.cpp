#include "songdb/SongReadings.h"
#include "shell/services/AppError.h"
#include "shell/services/JobHost.h"
#include "songdb/Connection.h"
#include "songdb/PinyinReadings.h"
#include <QStringList>
#include <vector>

namespace td {

namespace {

constexpr int kBatch = 20000;

// What differs between the stores: the table with the triggers that keep it in step with song, how a
// writer takes its turn, and whether the first reading of all titles has ended (its indexes exist).
// Every statement may run again on a table already made, so two consoles making it at once both get on.
// A title that does not change (a save that writes every field) leaves its readings alone.
struct ReadingsStore {
    std::vector<const char*> table;
    std::vector<const char*> begin;
    const char* indexesMade;
};

const ReadingsStore kSqlite{
    {
        "CREATE TABLE IF NOT EXISTS song_reading (song_id INTEGER NOT NULL, initials TEXT, spelling TEXT)",
        "CREATE INDEX IF NOT EXISTS song_reading_song ON song_reading (song_id)",
        "CREATE TRIGGER IF NOT EXISTS song_reading_added AFTER INSERT ON song BEGIN "
        "INSERT INTO song_reading (song_id) VALUES (new.id); END",
        "CREATE TRIGGER IF NOT EXISTS song_reading_retitled AFTER UPDATE OF title, id ON song "
        "WHEN old.title IS NOT new.title OR old.id IS NOT new.id BEGIN "
        "DELETE FROM song_reading WHERE song_id = old.id; "
        "INSERT INTO song_reading (song_id) VALUES (new.id); END",
        "CREATE TRIGGER IF NOT EXISTS song_reading_removed AFTER DELETE ON song BEGIN "
        "DELETE FROM song_reading WHERE song_id = old.id; END",
    },
    // Holds the write lock from the start: two consoles reading the same waiting titles take turns
    // instead of both writing their rows.
    {"BEGIN IMMEDIATE"},
    "SELECT count(*) FROM sqlite_master WHERE name = 'song_reading_initials'",
};

// The readings compare byte by byte (collation "C"), so a typed prefix is a range on their index.
const ReadingsStore kPostgres{
    {
        "CREATE TABLE IF NOT EXISTS song_reading (song_id bigint NOT NULL, initials text COLLATE \"C\", "
        "spelling text COLLATE \"C\")",
        "CREATE INDEX IF NOT EXISTS song_reading_song ON song_reading (song_id)",
        "CREATE OR REPLACE FUNCTION td_song_reading_follow() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN "
        "IF TG_OP <> 'INSERT' THEN DELETE FROM song_reading WHERE song_id = OLD.id; END IF; "
        "IF TG_OP <> 'DELETE' THEN INSERT INTO song_reading (song_id) VALUES (NEW.id); END IF; "
        "RETURN NULL; END $$",
        "CREATE OR REPLACE TRIGGER song_reading_added AFTER INSERT ON song FOR EACH ROW "
        "EXECUTE FUNCTION td_song_reading_follow()",
        "CREATE OR REPLACE TRIGGER song_reading_retitled AFTER UPDATE OF title, id ON song FOR EACH ROW "
        "WHEN (OLD.title IS DISTINCT FROM NEW.title OR OLD.id IS DISTINCT FROM NEW.id) "
        "EXECUTE FUNCTION td_song_reading_follow()",
        "CREATE OR REPLACE TRIGGER song_reading_removed AFTER DELETE ON song FOR EACH ROW "
        "EXECUTE FUNCTION td_song_reading_follow()",
    },
    // Writers of readings take turns on a lock of their own; writers of songs never wait for it.
    {"BEGIN", "SELECT pg_advisory_xact_lock(hashtext('song_reading'))"},
    "SELECT count(*) FROM pg_indexes WHERE indexname = 'song_reading_initials'",
};

// The indexes on the readings come once every title has been read: made in one sorted pass, not
// row by row.
const char* const kIndexes[] = {
    "CREATE INDEX IF NOT EXISTS song_reading_initials ON song_reading (initials)",
    "CREATE INDEX IF NOT EXISTS song_reading_spelling ON song_reading (spelling)",
};

const ReadingsStore& storeOf(Connection& db)
{
    return db.backend().dialect().rowKey == u"rowid" ? kSqlite : kPostgres;
}

// The one value of a statement, as Jet SQL and as the store's own.
qint64 count(Connection& db, const QString& sql)
{
    return db.openRecordset(sql)->value(0, 0).toLongLong();
}

qint64 nativeCount(Connection& db, const char* sql)
{
    return db.backend().query(QString::fromUtf8(sql), false, nullptr)->integer(0, 0);
}

// A write transaction in which this console alone writes readings.
class WriteTransaction {
public:
    explicit WriteTransaction(Connection& db) : db_(db)
    {
        const auto& begin = storeOf(db_).begin;
        db_.backend().execute(QString::fromUtf8(begin.front()));
        try {
            for (std::size_t i = 1; i < begin.size(); ++i)
                db_.backend().query(QString::fromUtf8(begin[i]), false, nullptr);
        } catch (const AppError&) {
            rollback();  // the lock was not had in time: the connection is left as it was
            throw;
        }
    }
    ~WriteTransaction()
    {
        if (!done_)
            rollback();
    }
    void commit()
    {
        db_.backend().execute(QStringLiteral("COMMIT"));
        done_ = true;
    }

private:
    void rollback()
    {
        try {
            db_.backend().execute(QStringLiteral("ROLLBACK"));
        } catch (const AppError&) {
        }
    }

    Connection& db_;
    bool done_ = false;
};

void runAll(Connection& db, const auto& statements)
{
    WriteTransaction tx(db);
    for (const char* sql : statements)
        db.backend().execute(QString::fromUtf8(sql));
    tx.commit();
}

// The table is there but its titles are still being read for the first time.
bool filling(Connection& db)
{
    return nativeCount(db, storeOf(db).indexesMade) == 0;
}

// Where a first reading of all titles goes on: after the last song it read.
qint64 filledUpTo(Connection& db)
{
    return count(db, QStringLiteral("select max(song_id) from song_reading where initials is not null"));
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

// Reads one batch of titles in a write transaction of its own. The first reading of all titles goes
// through the songs by id, on from where any console left it; after that only the titles waiting are
// read, each replacing its song's rows.
qsizetype readBatch(Connection& db, bool first)
{
    WriteTransaction tx(db);
    if (first && !filling(db))
        return 0;
    const qint64 after = first ? filledUpTo(db) : 0;
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
        return 0;
    writeReadings(db, *rs, !first);
    tx.commit();
    return n;
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
        runAll(db, storeOf(db).table);
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
        while (finished) {
            const qsizetype n = readBatch(db, true);
            if (n == 0)
                break;
            finished = goOn(n);
        }
        if (finished)
            runAll(db, kIndexes);
    }
    while (finished) {
        const qsizetype n = readBatch(db, false);
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
