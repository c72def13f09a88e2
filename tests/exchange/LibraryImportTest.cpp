// The library import: a songbook written to its song files and read back into an empty one, moved
// libraries, older files, the index classes, the crash check and what a stop or a broken file keeps.
#include "exchange/LibraryImport.h"
#include "libraries/LibrarySongFiles.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "support/TempAppDir.h"
#include "ExchangeTestSupport.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace td;
using td::test::RecordingHost;
using td::test::rowsOf;

namespace {

const QString kDone = QStringLiteral("song(s) imported to songbook successfully!");

class LibraryImportTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(root));
        CreateSongDatabase(tmp.filePath(QStringLiteral("target.db")), QStringLiteral("English"));
        target = OpenConnection(tmp.filePath(QStringLiteral("target.db")));
        settings.library = root;
        settings.regions = {QStringLiteral("China"), QStringLiteral("Taiwan"), QString()};
        settings.indexClass = QStringLiteral("import");
        settings.checkIndex = false;
    }

    // A song information file below the root with the given text after the byte order mark.
    void son(const QString& relative, const QString& text)
    {
        const QString path = LinkFileByPath(root, relative) + QStringLiteral(".son");
        QDir().mkpath(ParentPath(path));
        ASSERT_TRUE(WriteTextStore(path, text));
    }
    void songFile(const QString& relative, int index, const QString& region = QStringLiteral("China"))
    {
        son(relative, QStringLiteral("\r\n[%1]\r\nindex=%2\r\ntitle=%3\r\n").arg(region).arg(index).arg(relative));
    }
    LibraryImportResult run() { return ImportLibrary(*target, settings, host); }
    QStringList rows(const QString& columns = QStringLiteral("[index], title, library, media_file"))
    {
        return rowsOf(*target, QStringLiteral("select ") + columns + QStringLiteral(" from song order by id"));
    }
    void setConfig(const QString& key, const QString& value)
    {
        target->execute(QStringLiteral("delete * from config where [section]='Default' and [key]='%1'").arg(key));
        target->execute(
            QStringLiteral("insert into config ([section], [key], [value]) values ('Default', '%1', '%2')")
                .arg(key, value));
    }

    QTemporaryDir tmp;
    QString root = tmp.filePath(QStringLiteral("Songs"));
    std::unique_ptr<Connection> target;
    LibraryImportSettings settings;
    RecordingHost host;
};

TEST_F(LibraryImportTest, SongbookWrittenToItsFilesComesBackFieldForField)
{
    const QString sourcePath = tmp.filePath(QStringLiteral("source.db"));
    CreateSongDatabase(sourcePath, QStringLiteral("English"));
    auto source = OpenConnection(sourcePath);
    source->execute(QStringLiteral("insert into library (root_path) values ('%1')").arg(root));
    struct Row {
        const char* index;
        const char* title;
        const char* region;  // nullptr for NULL
        const char* media;
    };
    const Row songs[] = {
        {"1000", "月亮代表我的心", "China", "/國語/0001.dat"},
        {"1001", "甜蜜蜜", "Taiwan", "/國語/0001.dat"},  // a second region of the same media file
        {"1002", "Yesterday", nullptr, "/Pop/yesterday.mpg"},
        {"1003", "It's = fine", "China", "/Pop/a b.vob"},
    };
    for (const Row& s : songs) {
        const QString media = QString::fromUtf8(s.media);
        QDir().mkpath(ParentPath(root + media));
        QFile(root + media).open(QIODevice::WriteOnly);
        source->execute(
            QStringLiteral("insert into song ([index], title, chars, singer, language, style, grade, channel, "
                           "order_time, region, media_file, library, lupd_by, lupd_time, remark) values "
                           "(%1, '%2', %3, '鄧麗君', '國語', '抒情', 3, 'L', 77, %4, '%5', '%6', 'op', "
                           "'2024-03-05 10:20:30', '備註')")
                .arg(QString::fromLatin1(s.index), QString::fromUtf8(s.title).replace(u'\'', QStringLiteral("''")))
                .arg(QString::fromUtf8(s.title).size())
                .arg(s.region ? QStringLiteral("'%1'").arg(QString::fromLatin1(s.region)) : QStringLiteral("NULL"),
                     media, root));
    }
    RecordingHost writer;
    ASSERT_TRUE(UpdateLibrary(*source, root, writer).completed) << writer.events.join(u'\n').toStdString();

    settings.remark.clear();
    settings.checkIndex = true;
    const LibraryImportResult result = run();
    EXPECT_EQ(result.files, 3);
    EXPECT_EQ(result.added, 4);
    EXPECT_EQ(host.last(), QStringLiteral("info 4") + kDone);
    // NULL texts come back as empty texts; everything else as it was, the id aside.
    const QString columns = QStringLiteral("[index], title, chars, singer, language, style, grade, channel, "
                                           "order_time, region, media_file, library, lupd_by, lupd_time, remark");
    auto sorted = [&](Connection& db) {
        return rowsOf(db, QStringLiteral("select ") + columns + QStringLiteral(" from song order by [index]"));
    };
    EXPECT_EQ(sorted(*target), sorted(*source));
}

TEST_F(LibraryImportTest, MovedLibraryTakesItsNewPlaceNotTheOneInTheFiles)
{
    son(QStringLiteral("Pop/0001.dat"),
        QStringLiteral("\r\n[China]\r\nindex=1000\r\ntitle=A\r\nlibrary=/old/place\r\nmedia_file=/x/y.dat\r\n"
                       "id=99\r\n"));
    const QString moved = tmp.filePath(QStringLiteral("Moved/Here"));
    QDir().mkpath(ParentPath(moved));
    ASSERT_TRUE(QDir().rename(root, moved));
    settings.library = moved;
    run();
    EXPECT_EQ(rows(QStringLiteral("[index], title, library, media_file, id")),
              QStringList{QStringLiteral("1000|A|%1|/Pop/0001.dat|1").arg(moved)});
}

TEST_F(LibraryImportTest, OlderCapitalisedKeysFillTheirFields)
{
    son(QStringLiteral("old.dat"),
        QStringLiteral("\r\n[China]\r\nIndex=1234\r\nName=老歌\r\nChars=2\r\nSinger=S\r\nLanguage=L\r\n"
                       "Style=St\r\nGrade=4\r\nChannel=R\r\nOrderTimes=12\r\nRegion=Hong Kong\r\n"
                       "lupd_by=me\r\nlupd_time=not a date\r\nRemark=r\r\nUnknown=u\r\n"));
    run();
    EXPECT_EQ(rows(QStringLiteral("[index], title, chars, singer, language, style, grade, channel, order_time, "
                                  "region, lupd_by, lupd_time, remark, media_file")),
              QStringList{QStringLiteral("1234|老歌|2|S|L|St|4|R|12|Hong Kong|me||r|/old.dat")});
}

TEST_F(LibraryImportTest, EachIndexClassNumbersTheNewSongs)
{
    struct Case {
        const char* indexClass;
        QStringList indexes;
    } cases[] = {
        {"import", {QStringLiteral("1500"), QStringLiteral("1600"), QStringLiteral("1700")}},
        // The first song gets the number after the one given.
        {"index", {QStringLiteral("1001"), QStringLiteral("1002"), QStringLiteral("1003")}},
        {"blank", {QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0")}},
    };
    songFile(QStringLiteral("a"), 1500);
    son(QStringLiteral("b"), QStringLiteral("\r\n[China]\r\nindex=1600\r\n\r\n[Taiwan]\r\nindex=1700\r\n"));
    // No index at all: not a song of the songbook, whatever the class.
    son(QStringLiteral("c"), QStringLiteral("\r\n[China]\r\nindex=\r\ntitle=none\r\n"));
    settings.indexFrom = QStringLiteral("1000");
    for (const Case& c : cases) {
        target->execute(QStringLiteral("delete * from song"));
        settings.indexClass = QString::fromLatin1(c.indexClass);
        run();
        EXPECT_EQ(rows(QStringLiteral("[index]")), c.indexes) << c.indexClass;
    }
}

TEST_F(LibraryImportTest, AutoIndexFromTextThatIsNoNumberStartsAtOne)
{
    songFile(QStringLiteral("a"), 5);
    settings.indexClass = QStringLiteral("index");
    settings.indexFrom = QStringLiteral("abc");
    run();
    EXPECT_EQ(rows(QStringLiteral("[index]")), QStringList{QStringLiteral("1")});
}

TEST_F(LibraryImportTest, CrashCheckAsksForEachCrashAndOkStopsWithNothingImported)
{
    setConfig(QStringLiteral("MinIndex"), QStringLiteral("1000"));
    setConfig(QStringLiteral("MaxIndex"), QStringLiteral("2000"));
    target->execute(QStringLiteral("insert into song ([index], title) values (1500, 'there')"));
    songFile(QStringLiteral("1"), 999);
    songFile(QStringLiteral("2"), 2001);
    songFile(QStringLiteral("3"), 1500);
    songFile(QStringLiteral("4"), 0);  // no number: not tested
    son(QStringLiteral("5"), QStringLiteral("\r\n[China]\r\nindex=0\r\nIndex=1200\r\n"));
    settings.checkIndex = true;
    const LibraryImportResult result = run();
    const QString tail = QStringLiteral("\r\nContinue checking?");
    EXPECT_EQ(host.asked(),
              (QStringList{
                  QStringLiteral("ask 5 media file(s) in selected library will be imported, process?"),
                  QStringLiteral("ask Song index crashed: A song's index in library less than MinIndex, Index=999") + tail,
                  QStringLiteral("ask Song index crashed: A song's index in library is more than MaxIndex, Index=2001") +
                      tail,
                  QStringLiteral("ask Song index crashed: A song's index in library crashed with a song's index in "
                                 "songbook, Index=1500") +
                      tail}));
    EXPECT_TRUE(result.crashed);
    EXPECT_EQ(host.last(), QStringLiteral("end"));  // no closing message
    EXPECT_EQ(rows(QStringLiteral("title")), QStringList{QStringLiteral("there")});
}

TEST_F(LibraryImportTest, CancelOnACrashQuestionClosesWithNoSongsImported)
{
    target->execute(QStringLiteral("insert into song ([index], title) values (1500, 'there')"));
    songFile(QStringLiteral("1"), 1500);
    songFile(QStringLiteral("2"), 1600);
    settings.checkIndex = true;
    host.answers = {MsgAnswer::Ok, MsgAnswer::Cancel};
    run();
    EXPECT_EQ(host.asked().size(), 2);
    EXPECT_EQ(host.last(), QStringLiteral("info 0") + kDone);
    EXPECT_EQ(rows(QStringLiteral("title")).size(), 1);
}

TEST_F(LibraryImportTest, AutoIndexCheckTestsFromTheGivenNumberWhileTheImportStartsAfterIt)
{
    setConfig(QStringLiteral("MinIndex"), QStringLiteral("1000"));
    settings.indexClass = QStringLiteral("index");
    settings.indexFrom = QStringLiteral("1000");
    settings.checkIndex = true;
    settings.regions = {QStringLiteral("China"), QStringLiteral("Taiwan")};
    songFile(QStringLiteral("a"), 1);  // China only, yet both regions count in the check
    target->execute(QStringLiteral("insert into song ([index], title) values (1001, 'there')"));
    run();
    EXPECT_EQ(host.asked().value(1),
              QStringLiteral("ask Song index crashed: A song's index in library crashed with a song's index in "
                             "songbook, Index=1001\r\nContinue checking?"));
    EXPECT_EQ(host.asked().size(), 2);

    // 1000 itself is free, so the check passes, and the import gives 1001 all the same.
    target->execute(QStringLiteral("update song set [index]=1002"));
    settings.regions = {QStringLiteral("China")};
    host.events.clear();
    run();
    EXPECT_EQ(host.asked().size(), 1);
    EXPECT_EQ(rows(QStringLiteral("[index]")), (QStringList{QStringLiteral("1002"), QStringLiteral("1001")}));
}

TEST_F(LibraryImportTest, BlankClassCheckOnlyShowsItsProgress)
{
    songFile(QStringLiteral("a"), 5);
    settings.indexClass = QStringLiteral("blank");
    settings.checkIndex = true;
    run();
    EXPECT_EQ(host.events.mid(1, 3), (QStringList{QStringLiteral("start Checking index crash ... 1"),
                                                  QStringLiteral("end"), QStringLiteral("start Import songs ... 1")}));
    EXPECT_EQ(rows(QStringLiteral("[index]")), QStringList{QStringLiteral("0")});
}

TEST_F(LibraryImportTest, CancelInTheMiddleKeepsWhatWasAdded)
{
    for (int i = 1; i <= 5; ++i)
        songFile(QStringLiteral("%1").arg(i), 1000 + i);
    host.cancelAt = 2;
    host.answers = {MsgAnswer::Ok, MsgAnswer::Yes};
    run();
    EXPECT_EQ(host.asked().value(1), QStringLiteral("ask Do you want to cancel the process?"));
    EXPECT_EQ(rows(QStringLiteral("[index]")), (QStringList{QStringLiteral("1001"), QStringLiteral("1002")}));
    EXPECT_EQ(host.last(), QStringLiteral("info 2") + kDone);
}

TEST_F(LibraryImportTest, LibraryThatIsGoneOrEmptyHasNothingToImport)
{
    for (const QString& library : {root, tmp.filePath(QStringLiteral("gone"))}) {
        settings.library = library;
        host.events.clear();
        run();
        EXPECT_EQ(host.events,
                  QStringList{QStringLiteral("info There is no song in selected library can be imported!")});
    }
}

TEST_F(LibraryImportTest, BrokenFilesAskWhetherToStopAndNoGoesOn)
{
    songFile(QStringLiteral("1"), 1001);
    const QString truncated = root + QStringLiteral("/2.son");
    {
        QFile f(truncated);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("\xFF");
    }
    const QString plain = root + QStringLiteral("/3.son");
    {
        QFile f(plain);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("\r\n[China]\r\nindex=1003\r\n");  // UTF-8, no byte order mark: no text store
    }
    songFile(QStringLiteral("4"), 1004);
    run();
    ASSERT_EQ(host.asked().size(), 2);
    EXPECT_TRUE(host.asked()[1].startsWith(QStringLiteral("ask An error take place while import library! Err=")));
    EXPECT_TRUE(host.asked()[1].endsWith(QStringLiteral("\r\nStop import?")));
    EXPECT_EQ(rows(QStringLiteral("[index]")), (QStringList{QStringLiteral("1001"), QStringLiteral("1004")}));

    // Yes stops there and keeps the song before it.
    target->execute(QStringLiteral("delete * from song"));
    host.events.clear();
    host.answers = {MsgAnswer::Ok, MsgAnswer::Yes};
    run();
    EXPECT_EQ(rows(QStringLiteral("[index]")), QStringList{QStringLiteral("1001")});
    EXPECT_EQ(host.last(), QStringLiteral("info 1") + kDone);
}

TEST_F(LibraryImportTest, KeysOfTheFirstFileServeForAllAndTheRemarkOverrides)
{
    son(QStringLiteral("1"), QStringLiteral("\r\n[]\r\nindex=1\r\n"));
    son(QStringLiteral("2"), QStringLiteral("\r\n[]\r\nindex=2\r\ntitle=lost\r\nremark=file's\r\n"));
    settings.remark = QStringLiteral("from the wizard");
    run();
    EXPECT_EQ(rows(QStringLiteral("[index], title, remark")),
              (QStringList{QStringLiteral("1||from the wizard"), QStringLiteral("2||from the wizard")}));

    // Without "Any Region" the section "[]" is left out.
    target->execute(QStringLiteral("delete * from song"));
    settings.regions = {QStringLiteral("China")};
    run();
    EXPECT_TRUE(rows().isEmpty());
}

TEST(LibraryImportDefaults, ComeFromTheApplicationIniLowerCased)
{
    test::TempAppDir dir;
    LibraryImportSettings s = DefaultLibraryImportSettings(1000);
    EXPECT_EQ(s.indexClass, QStringLiteral("import"));
    EXPECT_EQ(s.indexFrom, QStringLiteral("1000"));
    EXPECT_TRUE(s.checkIndex);
    s.indexClass = QStringLiteral("index");
    s.indexFrom = QStringLiteral("5000");
    s.checkIndex = false;
    SaveLibraryImportDefaults(s);
    AppIniWrite(QStringLiteral("ImportIndex"), QStringLiteral("BLANK"));
    const LibraryImportSettings back = DefaultLibraryImportSettings(1000);
    EXPECT_EQ(back.indexClass, QStringLiteral("blank"));
    EXPECT_EQ(back.indexFrom, QStringLiteral("5000"));
    EXPECT_FALSE(back.checkIndex);
    EXPECT_EQ(AppIniRead(QStringLiteral("CheckIndex"), {}), QStringLiteral("0"));
}

}  // namespace
