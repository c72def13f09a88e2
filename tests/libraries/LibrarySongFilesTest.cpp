// The song information files beside the media files, ktvlibrary.ini after a full update, and a
// library's own empty database.
#include "libraries/LibrarySongFiles.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "songdb/SqliteBackend.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QDate>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace td;

namespace {

// A host that records what the job shows and answers its questions from a script (OK or Yes when
// the script has run out); the cancel button is "pressed" after a given number of songs.
class RecordingHost : public JobHost {
public:
    void StartProcess(const QString&, const QString& hint, qint64 start, qint64 max, bool canCancel) override
    {
        events << QStringLiteral("start %1 %2..%3 %4").arg(hint).arg(start).arg(max).arg(canCancel ? 1 : 0);
    }
    void Processing(qint64 value) override { lastProgress = value; }
    bool IsProcessCanceled() override { return cancelAfter >= 0 && lastProgress >= cancelAfter && !resumed; }
    void ResumeProcess() override { resumed = true; }
    void EndProcess() override { events << QStringLiteral("end"); }
    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& = {}) override
    {
        events << QStringLiteral("ask ") + text;
        if (!answers.empty()) {
            const MsgAnswer a = answers.front();
            answers.pop_front();
            return a;
        }
        return buttons == MsgButtons::YesNo || buttons == MsgButtons::YesNoCancel ? MsgAnswer::Yes
                                                                                  : MsgAnswer::Ok;
    }
    void Inform(const QString& text, const QString& = {}) override
    {
        events << QStringLiteral("info ") + text;
    }
    void Fail(const QString& text, const QString& = {}) override { events << QStringLiteral("fail ") + text; }

    QStringList events;
    std::deque<MsgAnswer> answers;
    qint64 lastProgress = -1;
    qint64 cancelAfter = -1;
    bool resumed = false;
};

struct Song {
    QString title;
    QString media;    // below the library root
    QVariant region;  // invalid for NULL
    QString singer = QStringLiteral("Singer");
    int index = 0;
};

QByteArray fileBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// A song database beside a library folder, both in one temporary folder.
class SongFilesTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(root));
        CreateSongDatabase(dbPath, QStringLiteral("English"));
        db = OpenConnection(dbPath);
    }

    qint64 add(const Song& s, const QString& library = {})
    {
        const auto text = [](QString v) { return u'\'' + v.replace(u'\'', QStringLiteral("''")) + u'\''; };
        db->execute(QStringLiteral("insert into song ([index], title, singer, region, media_file, library, "
                                   "lupd_time) values (%1, %2, %3, %4, %5, %6, '2024-03-05 10:20:30')")
                        .arg(s.index)
                        .arg(text(s.title), text(s.singer),
                             s.region.isValid() ? text(s.region.toString()) : QStringLiteral("NULL"),
                             text(s.media), text(library.isEmpty() ? root : library)));
        return db->openRecordset(QStringLiteral("select max(id) as last from song"))
            ->Fields(0)
            .Value()
            .toLongLong();
    }
    QString media(const QString& relative)
    {
        const QString path = LinkFileByPath(root, relative);
        QDir().mkpath(ParentPath(path));
        QFile(path).open(QIODevice::WriteOnly);
        return path;
    }
    bool writeSong(qint64 id)
    {
        auto rs = db->openRecordset(QStringLiteral("select * from song where id=%1").arg(id));
        return SetSongInfoToLibrary(*rs, host);
    }
    QString sonText(const QString& relative)
    {
        return ReadTextStore(LinkFileByPath(root, relative) + QStringLiteral(".son"));
    }
    QString value(const QString& text, const QString& section, const QString& key)
    {
        return ReadTextValue(text, section, key, QStringLiteral("<none>"));
    }
    QString marker(const QString& key)
    {
        return IniRead(root + QStringLiteral("/ktvlibrary.ini"), QStringLiteral("Default"), key,
                       QStringLiteral("<none>"));
    }

    QTemporaryDir tmp;
    QString root = tmp.filePath(QStringLiteral("Songs"));
    QString dbPath = tmp.filePath(QStringLiteral("song.db"));
    std::unique_ptr<Connection> db;
    RecordingHost host;
};

TEST_F(SongFilesTest, SmallFileHasExactlyTheseBytes)
{
    media(QStringLiteral("Pop/0001.dat"));
    const qint64 id =
        add({QStringLiteral("歌"), QStringLiteral("\\Pop\\0001.dat"), QStringLiteral("China"), QString(), 7});
    ASSERT_TRUE(writeSong(id));
    // The BOM, an empty first line, the section, then every column but id in the table's order.
    QByteArray expected("\xFF\xFE\r\0\n\0[\0C\0h\0i\0n\0a\0]\0\r\0\n\0", 24);
    const QString lines = QStringLiteral(
                              "index=7\r\ntitle=\x01\r\nchars=0\r\nsinger=\r\nlanguage=\r\nstyle=\r\n"
                              "grade=0\r\nchannel=\r\norder_time=0\r\nregion=China\r\n"
                              "media_file=\\Pop\\0001.dat\r\nlibrary=%1\r\nlupd_by=\r\n"
                              "lupd_time=2024-03-05 10:20:30\r\nremark=\r\n")
                              .arg(root);
    for (QChar c : lines) {
        if (c == u'\x01') {
            expected.append("\x4C\x6B", 2);  // U+6B4C, little endian
            continue;
        }
        expected.append(char(c.unicode() & 0xFF)).append(char(c.unicode() >> 8));
    }
    const QByteArray written = fileBytes(root + QStringLiteral("/Pop/0001.dat.son"));
    EXPECT_EQ(written, expected) << written.toHex(' ').toStdString() << "\n"
                                 << expected.toHex(' ').toStdString();
}

TEST_F(SongFilesTest, TwoRegionsShareOneFileAndNullRegionIsTheEmptySection)
{
    media(QStringLiteral("Pop/0001.dat"));
    const qint64 china =
        add({QStringLiteral("First"), QStringLiteral("/Pop/0001.dat"), QStringLiteral("China")});
    const qint64 none = add({QStringLiteral("Second"), QStringLiteral("/Pop/0001.dat"), QVariant()});
    ASSERT_TRUE(writeSong(china));
    const QString first = sonText(QStringLiteral("Pop/0001.dat"));
    ASSERT_TRUE(writeSong(none));
    const QString both = sonText(QStringLiteral("Pop/0001.dat"));

    EXPECT_TRUE(both.startsWith(first.chopped(2)));  // the first section untouched
    EXPECT_TRUE(both.mid(first.size() - 2).startsWith(QStringLiteral("\r\n\r\n[]\r\nindex=0\r\n")));
    EXPECT_EQ(value(both, QStringLiteral("China"), QStringLiteral("title")), QStringLiteral("First"));
    EXPECT_EQ(value(both, QString(), QStringLiteral("title")), QStringLiteral("Second"));
    EXPECT_EQ(value(both, QString(), QStringLiteral("region")), QString());
    EXPECT_EQ(both.count(QStringLiteral("\r\ntitle=")), 2);
}

TEST_F(SongFilesTest, RewriteReplacesValuesInTheOrderOfTheFirstWriting)
{
    const QString son = media(QStringLiteral("a.mpg")) + QStringLiteral(".son");
    // A file written by another songbook, with its keys in an order of its own and a key unknown here.
    WriteTextStore(son,
                   QStringLiteral("\r\n[China]\r\nremark=old\r\ntitle=Old\r\nextra=kept\r\nindex=1\r\n"));
    const qint64 id = add({QStringLiteral("New"), QStringLiteral("a.mpg"), QStringLiteral("China"), {}, 42});
    ASSERT_TRUE(writeSong(id));
    db->execute(QStringLiteral("update song set title='Newer' where id=%1").arg(id));
    ASSERT_TRUE(writeSong(id));

    const QString text = sonText(QStringLiteral("a.mpg"));
    TextArray keys;
    ReadTextKeys(text, keys);
    EXPECT_EQ(keys.mid(1, 5),
              QStringList({QStringLiteral("remark"), QStringLiteral("title"), QStringLiteral("extra"),
                           QStringLiteral("index"), QStringLiteral("chars")}));
    EXPECT_EQ(keys.count(QStringLiteral("title")), 1);
    EXPECT_EQ(value(text, QStringLiteral("China"), QStringLiteral("title")), QStringLiteral("Newer"));
    EXPECT_EQ(value(text, QStringLiteral("China"), QStringLiteral("index")), QStringLiteral("42"));
    EXPECT_EQ(value(text, QStringLiteral("China"), QStringLiteral("remark")), QString());
    EXPECT_EQ(value(text, QStringLiteral("China"), QStringLiteral("extra")), QStringLiteral("kept"));
}

TEST_F(SongFilesTest, ValuesComeBackWhole)
{
    struct Case {
        const char* title;
        const char* singer;
    } cases[] = {
        {"a=b=c", "="},
        {"月亮代表我的心", "邓丽君"},
        {"演唱會 'live'", "張學友"},
        {"", ""},
    };
    int n = 0;
    for (const Case& c : cases) {
        const QString file = QStringLiteral("v%1.vob").arg(++n);
        media(file);
        ASSERT_TRUE(writeSong(
            add({QString::fromUtf8(c.title), file, QStringLiteral("台灣"), QString::fromUtf8(c.singer)})));
        const QString text = sonText(file);
        SCOPED_TRACE(c.title);
        EXPECT_EQ(value(text, QStringLiteral("台灣"), QStringLiteral("title")), QString::fromUtf8(c.title));
        EXPECT_EQ(value(text, QStringLiteral("台灣"), QStringLiteral("singer")), QString::fromUtf8(c.singer));
    }
}

TEST_F(SongFilesTest, MissingMediaFileWritesNothingAndStillCounts)
{
    media(QStringLiteral("here.mpg"));
    add({QStringLiteral("Here"), QStringLiteral("/here.mpg"), QStringLiteral("China")});
    add({QStringLiteral("Gone"), QStringLiteral("/gone.mpg"), QStringLiteral("China")});
    add({QStringLiteral("Elsewhere"), QStringLiteral("/here.mpg"), QStringLiteral("Taiwan")}, tmp.path());

    const LibraryUpdate done = UpdateLibrary(*db, root, host);
    EXPECT_TRUE(done.completed);
    EXPECT_EQ(done.updated, 2);
    EXPECT_FALSE(QFile::exists(root + QStringLiteral("/gone.mpg.son")));
    EXPECT_EQ(value(sonText(QStringLiteral("here.mpg")), QStringLiteral("Taiwan"), QStringLiteral("title")),
              QStringLiteral("<none>"));  // a song of another library is not written
    EXPECT_EQ(marker(QStringLiteral("nSong")), QStringLiteral("2"));
    EXPECT_EQ(marker(QStringLiteral("lupd")), QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")));
    EXPECT_EQ(host.events,
              QStringList({QStringLiteral("ask 2 song(s) in selected library will be updated, process?"),
                           QStringLiteral("start Update Library ... 0..2 1"), QStringLiteral("end"),
                           QStringLiteral("info 2 song(s) in selected library were updated successfully!")}));
    EXPECT_EQ(host.lastProgress, 2);
}

TEST_F(SongFilesTest, SongFilesAreHiddenOnceEach)
{
    for (const char* f : {"x/1.mpg", "x/2.mpg", "3.mpg"}) {
        media(QString::fromLatin1(f));
        add({QStringLiteral("T"), QString::fromLatin1(f), QStringLiteral("China")});
    }
    UpdateLibrary(*db, root, host);
    UpdateLibrary(*db, root, host);
    EXPECT_TRUE(IsFileHidden(root + QStringLiteral("/x/1.mpg.son")));
    EXPECT_TRUE(IsFileHidden(root + QStringLiteral("/3.mpg.son")));
    EXPECT_FALSE(IsFileHidden(root + QStringLiteral("/3.mpg")));
    EXPECT_EQ(
        QString::fromUtf8(fileBytes(root + QStringLiteral("/x/.hidden"))).split(u'\n', Qt::SkipEmptyParts),
        QStringList({QStringLiteral("1.mpg.son"), QStringLiteral("2.mpg.son")}));
}

TEST_F(SongFilesTest, StopsBeforeThePassWhereTheConsoleStops)
{
    struct Case {
        const char* name;
        QString root;
        std::deque<MsgAnswer> answers;
        QString event;
    };
    media(QStringLiteral("a.mpg"));
    const Case cases[] = {
        {"no such folder",
         root + QStringLiteral("/none"),
         {},
         QStringLiteral("fail Invaild root path < ") + root + QStringLiteral("/none > !")},
        {"a library without songs",
         tmp.path(),
         {},
         QStringLiteral("info There is no song in selected library need to be updated!")},
        {"the count question cancelled",
         root,
         {MsgAnswer::Cancel},
         QStringLiteral("ask 1 song(s) in selected library will be updated, process?")},
    };
    add({QStringLiteral("A"), QStringLiteral("a.mpg"), QStringLiteral("China")});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RecordingHost h;
        h.answers = c.answers;
        EXPECT_FALSE(UpdateLibrary(*db, c.root, h).completed);
        EXPECT_EQ(h.events, QStringList{c.event});
    }
    EXPECT_FALSE(QFile::exists(root + QStringLiteral("/a.mpg.son")));
    EXPECT_FALSE(QFile::exists(root + QStringLiteral("/ktvlibrary.ini")));
}

TEST_F(SongFilesTest, CancelLeavesWhatWasWrittenAndNoMarker)
{
    for (int i = 0; i < 4; ++i) {
        media(QStringLiteral("%1.mpg").arg(i));
        add({QStringLiteral("T"), QStringLiteral("%1.mpg").arg(i), QStringLiteral("China")});
    }
    host.cancelAfter = 2;
    host.answers = {MsgAnswer::Ok, MsgAnswer::Yes};  // go on with 4 songs; yes, cancel
    const LibraryUpdate done = UpdateLibrary(*db, root, host);
    EXPECT_FALSE(done.completed);
    EXPECT_EQ(done.updated, 2);
    EXPECT_TRUE(QFile::exists(root + QStringLiteral("/1.mpg.son")));
    EXPECT_FALSE(QFile::exists(root + QStringLiteral("/2.mpg.son")));
    EXPECT_TRUE(IsFileHidden(root + QStringLiteral("/1.mpg.son")));
    EXPECT_FALSE(QFile::exists(root + QStringLiteral("/ktvlibrary.ini")));
    EXPECT_EQ(host.events.mid(2),
              QStringList({QStringLiteral("ask Do you want to cancel the process?"), QStringLiteral("end"),
                           QStringLiteral("info 2 song(s) in selected library were updated successfully!")}));
}

// Root writes into any folder; for the folder's permission to count, file access then runs as nobody.
class AsNobodyWhenRoot {
public:
    explicit AsNobodyWhenRoot(const QString& tree)
    {
        if (::geteuid() != 0)
            return;
        // Nobody must reach everything but the read-only folder, as its owner would.
        ::chmod(QFile::encodeName(tree).constData(), 0777);
        for (const QString& entry : QDir(tree).entryList(QDir::AllEntries | QDir::NoDotAndDotDot))
            ::chmod(QFile::encodeName(tree + u'/' + entry).constData(), 0777);
        ::setfsuid(65534);
        active_ = ::setfsuid(uid_t(-1)) == 65534;
    }
    ~AsNobodyWhenRoot()
    {
        if (active_)
            ::setfsuid(0);
    }
    bool works() const { return ::geteuid() != 0 || active_; }

private:
    bool active_ = false;
};

TEST_F(SongFilesTest, ReadOnlyFolderFailsItsSongAndAsksWhetherToGoOn)
{
    // The recordset runs in the order of media_file, so the locked folder comes second.
    for (const char* f : {"1.mpg", "2locked/2.mpg", "3.mpg"}) {
        media(QString::fromLatin1(f));
        add({QStringLiteral("T"), QString::fromLatin1(f), QStringLiteral("China")});
    }
    const QByteArray locked = QFile::encodeName(root + QStringLiteral("/2locked"));
    for (MsgAnswer answer : {MsgAnswer::Cancel, MsgAnswer::Ok}) {
        RecordingHost h;
        h.answers = {MsgAnswer::Ok, answer};
        LibraryUpdate done;
        {
            AsNobodyWhenRoot nobody(tmp.path());
            if (!nobody.works())
                GTEST_SKIP() << "cannot act as another user";
            ::chmod(QFile::encodeName(root).constData(), 0777);
            ::chmod(locked.constData(), 0555);
            done = UpdateLibrary(*db, root, h);
            ::chmod(locked.constData(), 0755);
        }
        ASSERT_GE(h.events.size(), 3);
        EXPECT_TRUE(h.events[2].startsWith(QStringLiteral("fail SetSongInfoToLibrary failed. Err = ")))
            << h.events[2].toStdString();
        EXPECT_TRUE(h.events[2].contains(QStringLiteral("2locked/2.mpg.son")));
        EXPECT_EQ(h.events[3], QStringLiteral("ask An error occurs, do you want to process anyway?"));
        EXPECT_FALSE(QFile::exists(root + QStringLiteral("/2locked/2.mpg.son")));
        EXPECT_EQ(QFile::exists(root + QStringLiteral("/3.mpg.son")), answer == MsgAnswer::Ok);
        EXPECT_EQ(done.completed, answer == MsgAnswer::Ok);
        EXPECT_EQ(done.updated, answer == MsgAnswer::Ok ? 2 : 1);
        EXPECT_EQ(marker(QStringLiteral("nSong")),
                  answer == MsgAnswer::Ok ? QStringLiteral("2") : QStringLiteral("<none>"));
        EXPECT_EQ(h.events.last(),
                  QStringLiteral("info %1 song(s) in selected library were updated successfully!")
                      .arg(done.updated));
    }
}

TEST_F(SongFilesTest, UnreadableSongFileFailsItsSong)
{
    media(QStringLiteral("a.mpg"));
    QFile(root + QStringLiteral("/a.mpg.son"))
        .open(QIODevice::WriteOnly);  // shorter than its two first bytes
    QDir().mkpath(media(QStringLiteral("b.mpg")) + QStringLiteral(".son"));  // a folder in the way
    const qint64 a = add({QStringLiteral("A"), QStringLiteral("a.mpg"), QStringLiteral("China")});
    const qint64 b = add({QStringLiteral("B"), QStringLiteral("b.mpg"), QStringLiteral("China")});
    EXPECT_FALSE(writeSong(a));
    EXPECT_FALSE(writeSong(b));
    ASSERT_EQ(host.events.size(), 2);
    // The temporary file that could not take the place of the folder is gone.
    EXPECT_EQ(QDir(root).entryList(QDir::Files | QDir::Hidden, QDir::Name),
              QStringList({QStringLiteral("a.mpg"), QStringLiteral("a.mpg.son"), QStringLiteral("b.mpg")}));
    for (const QString& e : host.events)
        EXPECT_TRUE(e.startsWith(QStringLiteral("fail SetSongInfoToLibrary failed. Err = ")))
            << e.toStdString();
}

TEST(SongInfoPath, JoinsRootAndMediaFileWithOneSeparator)
{
    struct Case {
        const char *library, *media, *expected;
    } cases[] = {
        {"/srv/Songs", "/Pop/0001.dat", "/srv/Songs/Pop/0001.dat.son"},
        {"/srv/Songs/", "\\Pop\\0001.dat", "/srv/Songs/Pop/0001.dat.son"},
        {"/srv/Songs", "Pop/0001.dat", "/srv/Songs/Pop/0001.dat.son"},
        {"\\srv\\Songs\\", "0001.dat", "/srv/Songs/0001.dat.son"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(SongInfoPath(QString::fromUtf8(c.library), QString::fromUtf8(c.media)),
                  QString::fromUtf8(c.expected))
            << c.library << " + " << c.media;
}

class LibraryDatabaseTest : public testing::Test {
protected:
    void SetUp() override
    {
        CreateTemplateDatabase(app.file(QStringLiteral("default.db")));
        const QString song = app.file(QStringLiteral("KtvPublic/song.db"));
        QDir().mkpath(app.file(QStringLiteral("KtvPublic")));
        CreateSongDatabase(song, QStringLiteral("English"));
        QString local = song;
        DatabaseHomePath(QStringLiteral("SongServer"), local, true);
        ASSERT_TRUE(SongOpenDatabase());
        SongConnection()->execute(QStringLiteral("insert into song (title) values ('kept out')"));
        SongConnection()->execute(QStringLiteral("insert into singer (name) values ('kept out')"));
        QDir().mkpath(root);
    }
    void TearDown() override { SongCloseDatabase(); }
    QStringList columns(Connection& c, const QString& table)
    {
        auto rs = c.openRecordset(QStringLiteral("select * from ") + table);
        QStringList names;
        for (int i = 0; i < rs->FieldCount(); ++i)
            names << rs->Column(i).name;
        names << QString::number(rs->RecordCount());
        return names;
    }

    test::TempAppDir app;
    test::ScriptedDialogs dialogs;
    QString root = app.file(QStringLiteral("Library"));
    int midStatementBefore = StatementsStartedMidStatement();
    QString target = root + QStringLiteral("/library.db");
};

TEST_F(LibraryDatabaseTest, HoldsTheTwoTablesWithoutRowsAndIsHidden)
{
    // An older one, hidden and read-only, is replaced.
    QFile(target).open(QIODevice::WriteOnly);
    SetFileHidden(target);
    QFile::setPermissions(target, QFile::ReadOwner);
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(CreateLibraryDatabase(root)) << dialogs.messages().join(u'\n').toStdString();
        EXPECT_TRUE(IsFileHidden(target));
        auto library = OpenConnection(target);
        for (const QString& table : {QStringLiteral("song"), QStringLiteral("singer")}) {
            QStringList expected = columns(*SongConnection(), table);
            expected.last() = QStringLiteral("0");
            EXPECT_EQ(columns(*library, table), expected);
        }
    }
    EXPECT_TRUE(dialogs.messages().isEmpty());
    EXPECT_EQ(StatementsStartedMidStatement(), midStatementBefore);
}

TEST_F(LibraryDatabaseTest, FailsWithoutTheTemplate)
{
    QFile::remove(app.file(QStringLiteral("default.db")));
    EXPECT_FALSE(CreateLibraryDatabase(root));
    EXPECT_FALSE(QFile::exists(target));
}

}  // namespace
