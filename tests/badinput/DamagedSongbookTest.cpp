// Songbooks damaged on disk: cut short by a copy, overwritten in the middle, emptied, or missing
// columns an older program never had. The console says what is wrong and never writes to such a file,
// so whatever can still be saved from it stays there.
#include "songdb/RecordAccess.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include "support/CaseName.h"
#include "support/QtPrint.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QFile>
#include <functional>
#include <gtest/gtest.h>

namespace td::test {
namespace {

QByteArray bytesOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

// A songbook of a few hundred songs, written out whole (no write-ahead log beside it).
QString songbookWithSongs(const QString& dir)
{
    const QString path = dir + QStringLiteral("/damaged.db");
    CreateSongDatabase(path, QStringLiteral("English"));
    auto db = OpenConnection(path);
    for (int i = 1; i <= 400; ++i)
        db->execute(
            QStringLiteral("insert into song ([index], title, singer) values (%1, 'Song %1 %2', 'Singer %1')")
                .arg(1000 + i)
                .arg(QString(60, u'x')));
    db->close();
    return path;
}

struct Damage {
    const char* name;
    std::function<QByteArray(QByteArray)> apply;
};

QByteArray overwritten(QByteArray bytes, qsizetype at, qsizetype n)
{
    for (qsizetype i = at; i < at + n && i < bytes.size(); ++i)
        bytes[i] = char((i * 7919) & 0xFF);
    return bytes;
}

const Damage kDamages[] = {
    {"header overwritten", [](QByteArray b) { return overwritten(b, 0, 100); }},
    {"cut to half its length", [](QByteArray b) { return b.left(b.size() / 2); }},
    {"cut inside the first page", [](QByteArray b) { return b.left(1000); }},
    {"a page in the middle overwritten", [](QByteArray b) { return overwritten(b, b.size() / 2, 4096); }},
    {"the last pages overwritten",
     [](QByteArray b) { return overwritten(b, b.size() - 3 * 4096, 3 * 4096); }},
    {"every byte zero", [](QByteArray b) { return QByteArray(b.size(), '\0'); }},
    {"no byte at all", [](QByteArray) { return QByteArray(); }},
};

class DamagedSongbook : public ::testing::TestWithParam<Damage> {
protected:
    ~DamagedSongbook() override { SongCloseDatabase(); }
    void pointAt(const QString& path)
    {
        QString local = path;
        DatabaseHomePath(QStringLiteral("SongServer"), local, true);
    }

    TempAppDir app;
    ScriptedDialogs dialogs;
};

// Whatever the damage, the opening and the songbook's first read answer with messages, the event log
// names the failure when the opening fails, and the file is byte for byte what it was.
TEST_P(DamagedSongbook, IsReportedAndNeverWritten)
{
    const QString path = songbookWithSongs(app.path());
    writeBytes(path, GetParam().apply(bytesOf(path)));
    const QByteArray before = bytesOf(path);
    pointAt(path);
    // A question whether to go on with a file that is no songbook is answered No, then Yes.
    for (MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
        dialogs.clear();
        for (int i = 0; i < 4; ++i)
            dialogs.answer(answer);
        if (SongOpenDatabase()) {
            std::unique_ptr<Recordset> rs;
            if (SongGetRecordset(QStringLiteral("*"), QStringLiteral("song"), QString(),
                                 QStringLiteral("[index]"), rs)) {
                EXPECT_LT(rs->RecordCount(), 400) << "a damaged songbook read whole";
            }
            SongCloseDatabase();
        }
        EXPECT_FALSE(dialogs.messages().isEmpty()) << "nothing told the operator";
        EXPECT_TRUE(bytesOf(path) == before) << "the damaged file was written";
        EXPECT_FALSE(QFile::exists(path + QStringLiteral("-wal")) &&
                     bytesOf(path + QStringLiteral("-wal")).size() > 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Damages, DamagedSongbook, ::testing::ValuesIn(kDamages), kNamedCase);

}  // namespace
}  // namespace td::test
