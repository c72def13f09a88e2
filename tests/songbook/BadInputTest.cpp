// The songbook window with values and faults from outside: quotes, line breaks and long values in
// every text field, a songbook on a full disk, one locked by another console, one whose table lacks
// columns. Whatever fails is said, and no song already in the songbook is lost or changed.
#include "SongbookFixture.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "songbook/frmSong.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "support/MountedFolder.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <cstring>
#include <sqlite3.h>
#include <thread>

using namespace td;

namespace {

// The text fields of the song editor, as the format file links them.
const char* const kTextFields[] = {"title",   "singer", "language",   "style",
                                   "channel", "region", "media_file", "remark"};

struct OddValue {
    const char* name;
    QString value;
};

const OddValue kOddValues[] = {
    {"quotes", QStringLiteral("It's \"the\" ''best'' song'")},
    {"line breaks", QStringLiteral("one\r\ntwo\nthree\rfour\r\n")},
    {"1000 characters", QStringLiteral("歌'\"x").repeated(250)},
    {"statement text", QStringLiteral("x'; delete * from song; --")},
};

class SongbookOddValues : public test::SongbookFixture {
protected:
    QString stored(const char* field)
    {
        return value(
            QStringLiteral("select [%1] from song where id=%2").arg(QString::fromLatin1(field)).arg(id));
    }
    QString shown(const char* field)
    {
        ctlDataFields* fields = song->ctlFields();
        return fields->GetField(fields->GetFieldIndex(QString::fromLatin1(field)), QStringLiteral("value"))
            .toString();
    }
    // The list row of a song; on SQLite a row's bookmark is its id.
    int rowOf(qint64 song) const
    {
        ListItems& items = this->song->ctlView()->MainItems();
        for (int r = 1; r <= items.Count(); ++r)
            if (items.Tag(r) == song)
                return r;
        return 0;
    }
    qint64 id = 0;
};

// Each value goes into the songbook and comes back into the editor exactly as typed, field by field.
TEST_F(SongbookOddValues, EveryTextFieldKeepsItsValueExactly)
{
    id = addSong(QStringLiteral("Plain"), QStringLiteral("Someone"));
    const qint64 other = addSong(QStringLiteral("Other"), QStringLiteral("Else"));
    openSongbook();
    for (const OddValue& v : kOddValues) {
        for (const char* field : kTextFields) {
            select({rowOf(id)});
            edit(QString::fromLatin1(field), v.value);
            EXPECT_TRUE(song->SaveItem())
                << v.name << " in " << field << ": " << qPrintable(dialogs.messages().join(u'\n'));
            EXPECT_EQ(stored(field), v.value) << v.name << " in " << field;
            EXPECT_EQ(shown(field), v.value) << v.name << " in " << field << " back in the editor";
            dialogs.clear();
        }
    }
    // The other song was never touched, whatever the values held.
    EXPECT_EQ(value(QStringLiteral("select title & '|' & singer from song where id=%1").arg(other)),
              QStringLiteral("Other|Else"));
    EXPECT_EQ(value(QStringLiteral("select count(*) from song")), QStringLiteral("2"));
}

}  // namespace

namespace {

// A songbook of its own, opened as the session's, in place of the fixture's.
class SongbookElsewhere : public test::SongbookFixture {
protected:
    void useSongbook(const QString& path)
    {
        SongCloseDatabase();
        CreateSongDatabase(path, QStringLiteral("English"));
        QString local = path;
        DatabaseHomePath(QStringLiteral("SongServer"), local, true);
        ASSERT_TRUE(SongOpenDatabase());
        sql(QStringLiteral("insert into region (name) values ('China')"));
        for (int i = 1; i <= 20; ++i)
            addSong(QStringLiteral("Song %1").arg(i), QStringLiteral("Singer %1").arg(i),
                    QStringLiteral("China"), 1000 + i, QStringLiteral("remark %1").arg(i));
        dialogs.clear();
    }
    // A failed save shows the store's reason, then the window's own line.
    void expectSaveRefused(const char* reason)
    {
        const QStringList shown = dialogs.messages();
        ASSERT_EQ(shown.size(), 2) << qPrintable(shown.join(QStringLiteral(" // ")));
        EXPECT_TRUE(shown[0].startsWith(QStringLiteral("CtlDataFields - save data failed!  Err=")) &&
                    shown[0].contains(QString::fromLatin1(reason)))
            << qPrintable(shown[0]);
        EXPECT_EQ(shown[1], QStringLiteral("Save item failed! "));
    }
    // One text per song, in the order they were added.
    static QStringList songs(Connection& db, const QString& expression)
    {
        auto rs = db.openRecordset(QStringLiteral("select ") + expression +
                                   QStringLiteral(" from song order by id"));
        QStringList rows;
        for (qsizetype r = 0; r < rs->RecordCount(); ++r)
            rows << rs->text(r, 0);
        return rows;
    }
    QStringList titles() { return songs(*SongConnection(), QStringLiteral("[index] & '|' & title")); }
    QStringList everySong(Connection& db)
    {
        return songs(db, QStringLiteral("[index] & '|' & title & '|' & singer & '|' & remark"));
    }
};

TEST_F(SongbookElsewhere, ASaveOnAFullDiskIsReportedAndTheSongbookStaysWhole)
{
    const QString folder = dir.file(QStringLiteral("disk"));
    QDir().mkpath(folder);
    test::MountedFolder disk(folder, test::MountedFolder::Kind::SmallDisk, 4 * 1024 * 1024);
    SKIP_UNLESS_MOUNTED(disk);
    const QString path = folder + QStringLiteral("/song.db");
    useSongbook(path);
    const QStringList before = everySong(*SongConnection());
    openSongbook();
    select({3});
    // More than any room the songbook's files hold in reserve.
    edit(QStringLiteral("remark"), QString(600000, u'r'));
    const QString filler = test::FillDisk(folder);
    EXPECT_FALSE(song->SaveItem());
    expectSaveRefused("full");
    EXPECT_EQ(everySong(*SongConnection()), before);
    frame.reset();
    SongCloseDatabase();

    // With room again, another console finds the songbook as it was, and can write to it.
    QFile::remove(filler);
    auto db = OpenConnection(path);
    EXPECT_EQ(everySong(*db), before);
    EXPECT_EQ(db->execute(QStringLiteral("update song set remark='room again' where [index]=1003")), 1);
}

TEST_F(SongbookElsewhere, ASaveWaitsForAnotherConsoleAndReportsWhenItKeepsTheSongbookLocked)
{
    const QString path = dir.file(QStringLiteral("shared.db"));
    useSongbook(path);
    const QStringList before = everySong(*SongConnection());
    openSongbook();
    auto other = OpenConnection(path);

    // The other console finishes its write within the wait: the save goes through without a word.
    other->execute(QStringLiteral("begin exclusive"));
    other->execute(QStringLiteral("update song set singer='Other console' where [index]=1020"));
    std::thread finisher([&] {
        QThread::msleep(500);
        other->execute(QStringLiteral("commit"));
    });
    select({2});
    edit(QStringLiteral("remark"), QStringLiteral("saved after the wait"));
    EXPECT_TRUE(song->SaveItem());
    finisher.join();
    EXPECT_TRUE(dialogs.messages().isEmpty()) << qPrintable(dialogs.messages().join(u'\n'));
    EXPECT_EQ(value(QStringLiteral("select remark from song where [index]=1002")),
              QStringLiteral("saved after the wait"));
    EXPECT_EQ(value(QStringLiteral("select singer from song where [index]=1020")),
              QStringLiteral("Other console"));

    // The other console keeps its lock past the wait: the save says so, and both sides keep their rows.
    other->execute(QStringLiteral("begin exclusive"));
    select({3});
    edit(QStringLiteral("remark"), QStringLiteral("never saved"));
    EXPECT_FALSE(song->SaveItem());
    expectSaveRefused("locked");
    other->execute(QStringLiteral("rollback"));
    QStringList expected = before;
    expected[1] = QStringLiteral("1002|Song 2|Singer 2|saved after the wait");
    expected[19] = QStringLiteral("1020|Song 20|Other console|remark 20");
    EXPECT_EQ(everySong(*other), expected);
}

// A songbook made by an older program, whose table of songs lacks columns the list and editor show.
TEST_F(SongbookElsewhere, ATableWithoutColumnsIsReportedAndItsSongsStay)
{
    const QString path = dir.file(QStringLiteral("old.db"));
    useSongbook(path);
    SongCloseDatabase();
    // The table as the older program made it, written past the console's own statements.
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &raw), SQLITE_OK);
    // The rename reads the other tables' indexes, whose collation only needs a name here.
    sqlite3_create_collation(raw, "GB2312", SQLITE_UTF8, nullptr,
                             [](void*, int n1, const void* a, int n2, const void* b) {
                                 const int c = std::memcmp(a, b, size_t(std::min(n1, n2)));
                                 return c != 0 ? c : n1 - n2;
                             });
    const char* older =
        "create table old_song (id integer primary key, \"index\" integer, title text, region text, "
        "media_file text, library text);"
        "insert into old_song select id, \"index\", title, region, media_file, library from song;"
        "drop table song; alter table old_song rename to song;";
    EXPECT_EQ(sqlite3_exec(raw, older, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(raw);
    sqlite3_close(raw);
    ASSERT_TRUE(SongOpenDatabase());
    const QStringList before = titles();
    RegisterWindows();
    frame = std::make_unique<mdiMain>();
    song = dynamic_cast<frmSong*>(frame->ShowWindow(QStringLiteral("frmSong")));
    ASSERT_NE(song, nullptr);
    song->tmrLoadData()->stop();
    song->LoadData();
    EXPECT_TRUE(waitForList());
    ASSERT_FALSE(dialogs.messages().isEmpty());
    // The songbook's load names what the list asked for and could not find.
    EXPECT_EQ(dialogs.messages().first(),
              QStringLiteral("Load data failed!  Err=Item cannot be found in the collection "
                             "corresponding to the requested name or ordinal."));
    EXPECT_EQ(titles(), before);
}

}  // namespace

namespace {

// A program folder that may not be written (a locked-down kiosk, a folder of another user): the console
// opens its songbook, lists it and saves to it; what it keeps in the folder itself is simply not kept.
TEST_F(SongbookElsewhere, AReadOnlyProgramFolderStillLetsTheSongbookBeUsed)
{
    QTemporaryDir elsewhere;
    useSongbook(elsewhere.filePath(QStringLiteral("song.db")));
    SongCloseDatabase();
    test::MountedFolder locked(dir.path(), test::MountedFolder::Kind::ReadOnly);
    SKIP_UNLESS_MOUNTED(locked);
    ASSERT_FALSE(QFile(dir.file(QStringLiteral("probe"))).open(QIODevice::WriteOnly));

    ASSERT_TRUE(SongOpenDatabase()) << qPrintable(dialogs.messages().join(u'\n'));
    openSongbook();
    EXPECT_EQ(song->ctlView()->MainItems().Count(), 20);
    select({4});
    edit(QStringLiteral("remark"), QStringLiteral("saved from a locked folder"));
    EXPECT_TRUE(song->SaveItem()) << qPrintable(dialogs.messages().join(u'\n'));
    EXPECT_EQ(value(QStringLiteral("select remark from song where [index]=1004")),
              QStringLiteral("saved from a locked folder"));
    EXPECT_TRUE(dialogs.messages().isEmpty()) << qPrintable(dialogs.messages().join(u'\n'));
}

// The songbook itself in the read-only folder: it is read as it is, and a save says why it fails.
TEST_F(SongbookElsewhere, ASongbookInAReadOnlyFolderIsListedAndASaveSaysWhyNot)
{
    useSongbook(dir.file(QStringLiteral("KtvPublic/song.db")));
    const QStringList before = everySong(*SongConnection());
    SongCloseDatabase();
    test::MountedFolder locked(dir.path(), test::MountedFolder::Kind::ReadOnly);
    SKIP_UNLESS_MOUNTED(locked);

    ASSERT_TRUE(SongOpenDatabase()) << qPrintable(dialogs.messages().join(u'\n'));
    openSongbook();
    EXPECT_EQ(song->ctlView()->MainItems().Count(), 20);
    select({4});
    edit(QStringLiteral("remark"), QStringLiteral("never saved"));
    EXPECT_FALSE(song->SaveItem());
    expectSaveRefused("read");
    EXPECT_EQ(everySong(*SongConnection()), before);
}

}  // namespace
