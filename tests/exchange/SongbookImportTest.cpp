// The songbook import: the index classes, the delete boxes, the crash checks and their answers, the
// column names of earlier versions, photographs, failures and stops, and sources that are no songbook.
#include "exchange/SongbookImport.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "support/TempAppDir.h"
#include "ExchangeTestSupport.h"
#include <QFile>
#include <QRandomGenerator>
#include <gtest/gtest.h>

using namespace td;
using td::test::RecordingHost;
using td::test::rowsOf;
using td::test::valuesOf;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString closing(int songs, int singers)
{
    return QStringLiteral("info %1 songs and %2 singers imported to songbook!").arg(songs).arg(singers);
}

class SongbookImportTest : public testing::Test {
protected:
    void SetUp() override
    {
        CreateSongDatabase(app.file(QStringLiteral("target.db")), QStringLiteral("English"));
        target = OpenConnection(app.file(QStringLiteral("target.db")));
        CreateSongDatabase(sourcePath, QStringLiteral("English"));
        source = OpenConnection(sourcePath);
        settings.source = sourcePath;
        settings.indexClass = QStringLiteral("import");
        settings.indexFrom = QStringLiteral("1000");
    }

    void song(Connection& db, int index, const QString& title)
    {
        db.execute(QStringLiteral("insert into song ([index], title) values (%1, '%2')").arg(index).arg(title));
    }
    void singer(Connection& db, const QString& nameSql)
    {
        db.execute(QStringLiteral("insert into singer (name) values (%1)").arg(nameSql));
    }
    SongbookImportResult run() { return ImportSongbook(*target, settings, host); }
    QStringList songs(const QString& columns = QStringLiteral("[index], title"))
    {
        return rowsOf(*target, QStringLiteral("select ") + columns + QStringLiteral(" from song order by id"));
    }
    QStringList singers(const QString& columns = QStringLiteral("name"))
    {
        return rowsOf(*target, QStringLiteral("select ") + columns + QStringLiteral(" from singer order by rowid"));
    }

    test::TempAppDir app;
    QString sourcePath = app.file(QStringLiteral("song.db"));
    std::unique_ptr<Connection> target;
    std::unique_ptr<Connection> source;
    SongbookImportSettings settings;
    RecordingHost host;
};

TEST_F(SongbookImportTest, EachIndexClassNumbersTheNewSongs)
{
    song(*source, 1500, QStringLiteral("A"));
    song(*source, 1600, QStringLiteral("B"));
    song(*source, 1700, QStringLiteral("C"));
    struct Case {
        const char* indexClass;
        QStringList rows;
    } cases[] = {
        {"import", {QStringLiteral("1500|A"), QStringLiteral("1600|B"), QStringLiteral("1700|C")}},
        // Numbered from exactly the value given, unlike the library import.
        {"index", {QStringLiteral("2000|A"), QStringLiteral("2001|B"), QStringLiteral("2002|C")}},
        {"blank", {QStringLiteral("0|A"), QStringLiteral("0|B"), QStringLiteral("0|C")}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.indexClass);
        target->execute(QStringLiteral("delete * from song"));
        settings.indexClass = QString::fromLatin1(c.indexClass);
        settings.indexFrom = QStringLiteral("2000");
        const SongbookImportResult result = run();
        EXPECT_EQ(result.songs, 3);
        EXPECT_EQ(songs(), c.rows);
        EXPECT_EQ(host.last(), closing(3, 0));
    }
}

TEST_F(SongbookImportTest, EachSongCrashIsAskedAboutAndNothingIsImported)
{
    target->execute(QStringLiteral("insert into config ([section], [key], [value]) values ('Default', 'MinIndex', '1000')"));
    target->execute(QStringLiteral("insert into config ([section], [key], [value]) values ('Default', 'MaxIndex', '5000')"));
    song(*target, 1200, QStringLiteral("Taken"));
    song(*source, 999, QStringLiteral("Low"));
    song(*source, 5001, QStringLiteral("High"));
    song(*source, 1200, QStringLiteral("Crash"));
    song(*source, 0, QStringLiteral("Untested"));
    song(*source, 1300, QStringLiteral("Fine"));
    singer(*source, QStringLiteral("'Nobody'"));
    const SongbookImportResult result = run();
    EXPECT_TRUE(result.songCrash);
    const QString title = QStringLiteral("ask Song's index crashed: ");
    const QString tail = kCrLf + QStringLiteral("Continue checking?");
    EXPECT_EQ(host.asked().mid(2),
              (QStringList{title + QStringLiteral("A song's index to be imported less than MinIndex, Index=999") + tail,
                           title + QStringLiteral("A song's index to be imported is more than MaxIndex, Index=5001") + tail,
                           title + QStringLiteral("A song's index to be imported crashed with a song's index in songbook, "
                                                  "Index=1200") + tail}));
    // Neither songs nor singers: the crash ends the whole run.
    EXPECT_EQ(songs(), QStringList{QStringLiteral("1200|Taken")});
    EXPECT_TRUE(singers().isEmpty());
    EXPECT_EQ(host.last(), closing(0, 0));
}

TEST_F(SongbookImportTest, CancelAtACrashQuestionStopsTheCheckThere)
{
    song(*target, 1200, QStringLiteral("Taken"));
    song(*source, 1200, QStringLiteral("Crash"));
    song(*source, 999, QStringLiteral("Low"));
    host.answers = {MsgAnswer::Ok, MsgAnswer::Ok, MsgAnswer::Cancel};
    run();
    EXPECT_EQ(host.asked().size(), 3);
    EXPECT_EQ(songs(), QStringList{QStringLiteral("1200|Taken")});
    EXPECT_EQ(host.last(), closing(0, 0));
}

TEST_F(SongbookImportTest, AutoIndexIsCheckedFromItsFirstNumber)
{
    song(*target, 2001, QStringLiteral("Taken"));
    song(*source, 1, QStringLiteral("A"));
    song(*source, 2, QStringLiteral("B"));
    settings.indexClass = QStringLiteral("index");
    settings.indexFrom = QStringLiteral("2000");
    EXPECT_TRUE(run().songCrash);
    ASSERT_EQ(host.asked().size(), 3);
    EXPECT_TRUE(host.asked()[2].contains(QStringLiteral("Index=2001")));
    // Blank indexes have nothing to crash with.
    settings.indexClass = QStringLiteral("blank");
    EXPECT_EQ(run().songs, 2);
}

TEST_F(SongbookImportTest, DeleteSongsEmptiesTheTableAndSkipsTheCheck)
{
    song(*target, 1200, QStringLiteral("Old"));
    song(*source, 1200, QStringLiteral("New"));
    song(*source, 5, QStringLiteral("Below MinIndex"));
    settings.deleteSongs = true;
    run();
    EXPECT_EQ(songs(), (QStringList{QStringLiteral("1200|New"), QStringLiteral("5|Below MinIndex")}));
    EXPECT_TRUE(host.events.filter(QStringLiteral("Checking index crash")).isEmpty());
    EXPECT_TRUE(host.events.contains(QStringLiteral("start Delete exist songs ... 100")));
}

TEST_F(SongbookImportTest, SingerCrashesAreAskedAboutAndTheOthersImported)
{
    singer(*target, QStringLiteral("'O''Brien'"));
    singer(*source, QStringLiteral("'O''Brien'"));
    singer(*source, QStringLiteral("NULL"));
    singer(*source, QStringLiteral("''"));
    singer(*source, QStringLiteral("'New one'"));
    const SongbookImportResult result = run();
    EXPECT_TRUE(result.singerCrash);
    const QString title = QStringLiteral("ask Singer's name crashed: ");
    const QString tail = kCrLf + QStringLiteral("Continue checking?");
    EXPECT_EQ(host.asked().mid(2),
              (QStringList{title + QStringLiteral("A singer's name to be imported crashed with a singer's name in "
                                                  "songbook, Name=O'Brien") + tail,
                           title + QStringLiteral("A singer's name to be imported is NULL!") + tail,
                           title + QStringLiteral("A singer's name to be imported is blank!") + tail,
                           QStringLiteral("ask At least one singer's name crash detected, do you still want to "
                                          "import singers?") + kCrLf +
                               QStringLiteral("The crashed singer will not be imported!")}));
    // The songbook's O'Brien stays; the empty names never come in.
    EXPECT_EQ(singers(), (QStringList{QStringLiteral("O'Brien"), QStringLiteral("New one")}));
    EXPECT_EQ(host.events.filter(QStringLiteral("info ")),
              (QStringList{QStringLiteral("info Can't find any song to import!"), closing(0, 1)}));
}

TEST_F(SongbookImportTest, CancelAfterSingerCrashesImportsNoSinger)
{
    singer(*target, QStringLiteral("'A'"));
    singer(*source, QStringLiteral("'A'"));
    singer(*source, QStringLiteral("'B'"));
    // Cancel at the first crash ends the check with the crash flag set; then the final question.
    host.answers = {MsgAnswer::Ok, MsgAnswer::Ok, MsgAnswer::Cancel, MsgAnswer::Cancel};
    run();
    EXPECT_EQ(host.asked().size(), 4);
    EXPECT_EQ(singers(), QStringList{QStringLiteral("A")});
}

TEST_F(SongbookImportTest, DeleteSingersReplacesTheSingers)
{
    singer(*target, QStringLiteral("'A'"));
    singer(*target, QStringLiteral("'Old'"));
    singer(*source, QStringLiteral("'A'"));
    singer(*source, QStringLiteral("''"));
    settings.deleteSingers = true;
    run();
    EXPECT_EQ(singers(), QStringList{QStringLiteral("A")});
    EXPECT_TRUE(host.events.filter(QStringLiteral("crashed")).isEmpty());
}

TEST_F(SongbookImportTest, CancelAtTheSongCountSkipsTheSingersToo)
{
    song(*source, 1200, QStringLiteral("A"));
    singer(*source, QStringLiteral("'S'"));
    host.answers = {MsgAnswer::Ok, MsgAnswer::Cancel};
    run();
    EXPECT_TRUE(songs().isEmpty());
    EXPECT_TRUE(singers().isEmpty());
    EXPECT_EQ(host.last(), closing(0, 0));
}

TEST_F(SongbookImportTest, CancelAtTheFirstQuestionOpensNothing)
{
    song(*source, 1200, QStringLiteral("A"));
    host.answers = {MsgAnswer::Cancel};
    EXPECT_FALSE(run().closed);
    EXPECT_EQ(host.events, QStringList{QStringLiteral("ask Import songs & singers from <") + sourcePath +
                                       QStringLiteral("> ?")});
}

TEST_F(SongbookImportTest, OlderColumnNamesFillTodaysFields)
{
    QFile::remove(sourcePath);
    source = OpenConnection(sourcePath, OpenOptions{5000, false, true});
    source->backend().execute(QStringLiteral(
        "create table song (id integer, [Index] integer, Name text, Chars integer, Singer text, Language text, "
        "Style text, Grade integer, Channel text, OrderTimes integer, Region text, MediaFile text, "
        "LibraryLocalPath text, lupd_by text, lupd_time datetime, Remark text, Unknown text)"));
    source->backend().execute(QStringLiteral(
        "insert into song values (7, 1234, '老歌', 2, 'S', 'L', 'St', 4, 'R', 12, 'Hong Kong', '\\Pop\\1.dat', "
        "'/lib', 'me', '2001-02-03 04:05:06', NULL, 'dropped')"));
    source->backend().execute(QStringLiteral(
        "create table singer (Name text, Male boolean, Female boolean, Region text, Image blob, ImageLen integer, "
        "Description text, Remark text)"));
    source->backend().execute(QStringLiteral(
        "insert into singer values ('He', -1, 0, 'dropped', x'0102', 2, 'd', 'r'), "
        "('She', 0, 1, NULL, NULL, 0, NULL, NULL), ('Both', 1, 1, NULL, NULL, 0, NULL, NULL), "
        "('Neither', 0, 0, NULL, NULL, 0, NULL, NULL)"));
    settings.remark.clear();
    run();
    EXPECT_EQ(songs(QStringLiteral("id, [index], title, chars, singer, language, style, grade, channel, "
                                   "order_time, region, media_file, library, lupd_by, lupd_time, remark")),
              QStringList{QStringLiteral("1|1234|老歌|2|S|L|St|4|R|12|Hong Kong|\\Pop\\1.dat|/lib|me|"
                                         "2001-02-03 04:05:06|")});
    EXPECT_TRUE(rowsOf(*target, QStringLiteral("select id from song where remark is null")).size() == 1);
    EXPECT_EQ(singers(QStringLiteral("name, type, region, image_len, description, remark")),
              (QStringList{QStringLiteral("He|male||2|d|r"), QStringLiteral("She|female||0||"),
                           QStringLiteral("Both|female||0||"), QStringLiteral("Neither|||0||")}));
    EXPECT_EQ(valuesOf(*target, QStringLiteral("select image from singer where name='He'")).value(0).value(0),
              QVariant(QByteArray("\x01\x02")));
}

TEST_F(SongbookImportTest, TheRemarkReplacesTheSourcesUnlessItIsEmpty)
{
    source->execute(QStringLiteral("insert into song ([index], title, remark) values (1200, 'A', 'theirs')"));
    source->execute(QStringLiteral("insert into singer (name, remark) values ('S', 'theirs')"));
    settings.remark = QString(300, u'x');
    run();
    EXPECT_EQ(songs(QStringLiteral("remark")), QStringList{QString(255, u'x')});
    EXPECT_EQ(singers(QStringLiteral("remark")), QStringList{QString(255, u'x')});
    target->execute(QStringLiteral("delete * from song"));
    target->execute(QStringLiteral("delete * from singer"));
    settings.remark.clear();
    run();
    EXPECT_EQ(songs(QStringLiteral("remark")), QStringList{QStringLiteral("theirs")});
    EXPECT_EQ(singers(QStringLiteral("remark")), QStringList{QStringLiteral("theirs")});
}

TEST_F(SongbookImportTest, PhotographsArriveByteForByte)
{
    QByteArray photo(300 * 1024, Qt::Uninitialized);
    QRandomGenerator generator(13);
    for (char& b : photo)
        b = char(generator.bounded(256));
    photo[0] = 0;  // a photograph is binary from its first byte
    auto rs = source->openRecordset(QStringLiteral("select * from singer"));
    rs->AddNew();
    rs->Fields(QStringLiteral("name")).setValue(QStringLiteral("Pic"));
    rs->Fields(QStringLiteral("image")).setValue(photo);
    rs->Fields(QStringLiteral("image_len")).setValue(photo.size());
    rs->Update();
    run();
    auto got = target->openRecordset(QStringLiteral("select image, image_len from singer"));
    ASSERT_EQ(got->RecordCount(), 1);
    EXPECT_EQ(got->Fields(0).Value().toByteArray(), photo);
    EXPECT_EQ(got->Fields(1).Value().toLongLong(), photo.size());
}

TEST_F(SongbookImportTest, AFailedRowAsksAndWhatCameBeforeStays)
{
    for (int i = 0; i < 5; ++i)
        song(*source, 1200 + i, i == 2 ? QStringLiteral("bad") : QStringLiteral("ok"));
    singer(*source, QStringLiteral("'S'"));
    target->backend().execute(QStringLiteral(
        "create trigger refuse before insert on song when new.title='bad' begin select raise(abort, 'refused'); end"));
    // No goes on with the next row.
    run();
    EXPECT_EQ(songs(QStringLiteral("[index]")), (QStringList{QStringLiteral("1200"), QStringLiteral("1201"),
                                                             QStringLiteral("1203"), QStringLiteral("1204")}));
    ASSERT_EQ(host.asked().filter(QStringLiteral("An error take place")).size(), 1);
    EXPECT_TRUE(host.asked().filter(QStringLiteral("An error take place"))[0].endsWith(
        QStringLiteral("refused") + kCrLf + QStringLiteral("Stop import?")));
    EXPECT_EQ(singers(), QStringList{QStringLiteral("S")});

    // Yes stops there: the rows before stay, the singers are not reached.
    target->execute(QStringLiteral("delete * from song"));
    target->execute(QStringLiteral("delete * from singer"));
    host.answers = {MsgAnswer::Ok, MsgAnswer::Ok, MsgAnswer::Yes};
    settings.deleteSongs = true;
    run();
    EXPECT_EQ(songs(QStringLiteral("[index]")), (QStringList{QStringLiteral("1200"), QStringLiteral("1201")}));
    EXPECT_TRUE(singers().isEmpty());
    EXPECT_EQ(host.last(), closing(2, 0));
}

TEST_F(SongbookImportTest, ACancelKeepsTheRowsImported)
{
    for (int i = 0; i < 10; ++i)
        song(*source, 1200 + i, QStringLiteral("s"));
    singer(*source, QStringLiteral("'S'"));
    settings.deleteSongs = true;
    host.cancelAt = 4;
    host.answers = {MsgAnswer::Ok, MsgAnswer::Ok, MsgAnswer::Yes};
    run();
    EXPECT_EQ(songs().size(), 4);
    EXPECT_TRUE(singers().isEmpty());
    EXPECT_TRUE(host.asked().contains(QStringLiteral("ask Do you want to cancel the process?")));
}

TEST_F(SongbookImportTest, SourcesThatAreNoSongbookSayWhy)
{
    settings.source = app.file(QStringLiteral("missing.db"));
    run();
    EXPECT_EQ(host.last(), QStringLiteral("fail Can't found < ") + settings.source + QStringLiteral(" > to import!"));

    struct Case {
        const char* name;
        QByteArray content;
        const char* reason;
    } cases[] = {
        {"text.db", QByteArray(5000, 'x'), "not a database"},
        {"empty.mdb", QByteArray("\x00\x01\x00\x00Standard Jet DB\x00\x01\x00\x00\x00", 24), "damaged or cut short"},
        {"old.mdb", QByteArray(3000, 'x'), "Unrecognized database format"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host.events.clear();
        settings.source = app.write(QString::fromLatin1(c.name), c.content);
        target->execute(QStringLiteral("insert into singer (name) values ('kept')"));
        const SongbookImportResult result = run();
        const QStringList errors = host.asked().filter(QStringLiteral("An error take place while import to songbook!"));
        ASSERT_EQ(errors.size(), 2) << host.events.join(u'\n').toStdString();  // once for songs, once for singers
        EXPECT_TRUE(errors[0].contains(QString::fromLatin1(c.reason))) << errors[0].toStdString();
        EXPECT_EQ(host.last(), closing(0, 0));
        EXPECT_EQ(result.songs + result.singers, 0);
    }
    EXPECT_EQ(singers().size(), 3);
}

TEST_F(SongbookImportTest, ASourceWithoutASongTableStillGivesItsSingers)
{
    QFile::remove(sourcePath);
    source = OpenConnection(sourcePath, OpenOptions{5000, false, true});
    source->backend().execute(QStringLiteral("create table singer (name text)"));
    source->backend().execute(QStringLiteral("insert into singer values ('S')"));
    host.answers = {MsgAnswer::Ok, MsgAnswer::No};
    run();
    EXPECT_TRUE(host.asked()[1].contains(QStringLiteral("no such table")) ||
                host.asked()[1].contains(QStringLiteral("song")));
    EXPECT_EQ(singers(), QStringList{QStringLiteral("S")});
}

TEST_F(SongbookImportTest, ManyCollidingIndexesLeaveTheSongbookAsItWas)
{
    target->execute(QStringLiteral("begin"));
    source->execute(QStringLiteral("begin"));
    for (int i = 0; i < 3000; ++i) {
        song(*target, 1000 + i, QStringLiteral("mine"));
        song(*source, 1000 + i, QStringLiteral("theirs"));
    }
    target->execute(QStringLiteral("commit"));
    source->execute(QStringLiteral("commit"));
    const SongbookImportResult result = run();
    EXPECT_TRUE(result.songCrash);
    EXPECT_EQ(host.asked().filter(QStringLiteral("Song's index crashed")).size(), 3000);
    EXPECT_EQ(rowsOf(*target, QStringLiteral("select count(*) from song where title='mine'")),
              QStringList{QStringLiteral("3000")});
    EXPECT_EQ(rowsOf(*target, QStringLiteral("select count(*) from song")), QStringList{QStringLiteral("3000")});
}

TEST(SongbookImportDefaults, SharedKeysWithTheLibraryImportAndTheirDefaults)
{
    test::TempAppDir app;
    SongbookImportSettings s = DefaultSongbookImportSettings(1000);
    EXPECT_EQ(s.indexClass, QStringLiteral("import"));
    EXPECT_EQ(s.indexFrom, QStringLiteral("1000"));
    EXPECT_FALSE(s.deleteSongs);
    EXPECT_FALSE(s.deleteSingers);
    s.indexClass = QStringLiteral("index");
    s.indexFrom = QStringLiteral("4242");
    s.deleteSongs = true;
    SaveSongbookImportDefaults(s);
    const SongbookImportSettings back = DefaultSongbookImportSettings(1000);
    EXPECT_EQ(back.indexClass, QStringLiteral("index"));
    EXPECT_EQ(back.indexFrom, QStringLiteral("4242"));
    EXPECT_TRUE(back.deleteSongs);
    EXPECT_FALSE(back.deleteSingers);
    EXPECT_EQ(DefaultImportSource(QStringLiteral("/venue/db/song2024.db")), QStringLiteral("/venue/db/song.db"));
}

}  // namespace
