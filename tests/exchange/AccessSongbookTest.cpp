// Legacy Access songbooks, written here as Jet 3 and Jet 4 files: what readers of other hands see in
// them, what OpenAccessDatabase reads of every kind of column, and what the songbook import brings.
#include "ExchangeTestSupport.h"
#include "LegacySongbook.h"
#include "exchange/AccessDatabase.h"
#include "exchange/SongbookImport.h"
#include "songdb/Connection.h"
#include "songdb/Recordset.h"
#include "songdb/Schema.h"
#include "support/QtPrint.h"
#include "support/TempAppDir.h"
#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

using namespace td;
using namespace td::test;

namespace {

struct Version {
    int jet;
    int codePage;
    const char* name;
};
const Version kVersions[] = {{3, 936, "Jet 3"}, {4, 1252, "Jet 4"}};

JetFileOptions optionsOf(const Version& v)
{
    JetFileOptions o;
    o.version = v.jet;
    o.codePage = v.codePage;
    return o;
}

// Bytes of every value, zeros among them, different for each seed.
QByteArray picture(int size, quint32 seed)
{
    QByteArray bytes(size, 0);
    for (int i = 0; i < size; ++i) {
        seed = seed * 1103515245u + 12345u;
        bytes[i] = char(seed >> 16);
    }
    return bytes;
}

QString standardOutput(const QString& program, const QStringList& arguments)
{
    QProcess p;
    p.start(program, arguments);
    if (!p.waitForFinished(60000) || p.exitCode() != 0)
        return QStringLiteral("failed: ") + QString::fromUtf8(p.readAllStandardError());
    return QString::fromUtf8(p.readAllStandardOutput());
}

const QDateTime kWhen(QDate(1998, 5, 6), QTime(7, 8, 9));

// One column of every kind the songbooks use, with a value that travels whole and the same value
// read back.
struct Kind {
    JetColumn column;
    QVariant written;
    QVariant read;  // invalid: the value written
};

std::vector<Kind> everyKind()
{
    const QString longMemo = QStringLiteral("歌词") + QString(9000, u'x') + QStringLiteral("完");
    return {
        {{QStringLiteral("flag"), JetType::Bool}, true, {}},
        {{QStringLiteral("off"), JetType::Bool}, false, {}},
        {{QStringLiteral("byte"), JetType::Byte}, 200, qint64(200)},
        {{QStringLiteral("int"), JetType::Int}, -1234, qint64(-1234)},
        {{QStringLiteral("long"), JetType::Long}, qint64(-2000000000), {}},
        {{QStringLiteral("double"), JetType::Double}, 2.5, {}},
        {{QStringLiteral("date"), JetType::DateTime}, QDateTime(QDate(2031, 12, 30), QTime(23, 59, 58)), {}},
        {{QStringLiteral("old_date"), JetType::DateTime}, QDateTime(QDate(1900, 3, 1), QTime(0, 0, 1)), {}},
        {{QStringLiteral("text"), JetType::Text, 40}, QStringLiteral("月亮代表我的心 it's"), {}},
        {{QStringLiteral("empty"), JetType::Text, 40}, QString(QLatin1String("")), {}},
        {{QStringLiteral("nothing"), JetType::Text, 40}, QVariant(), {}},
        {{QStringLiteral("binary"), JetType::Binary, 16}, QByteArray("\x01\x00\x02\x00", 4), {}},
        {{QStringLiteral("memo"), JetType::Memo}, QStringLiteral("短"), {}},
        {{QStringLiteral("page_memo"), JetType::Memo}, QString(700, u'm'), {}},
        {{QStringLiteral("long_memo"), JetType::Memo}, longMemo, {}},
        {{QStringLiteral("small_ole"), JetType::Ole}, picture(40, 1), {}},
        {{QStringLiteral("page_ole"), JetType::Ole}, picture(1500, 2), {}},
        {{QStringLiteral("long_ole"), JetType::Ole}, picture(30000, 3), {}},
        {{QStringLiteral("empty_ole"), JetType::Ole}, QByteArray(""), {}},
        {{QStringLiteral("null_ole"), JetType::Ole}, QVariant(), {}},
    };
}

JetTable kindsTable(const std::vector<Kind>& kinds)
{
    JetTable t{QStringLiteral("kinds"), {}, {}, {}, 0};
    QVariantList row;
    for (const Kind& k : kinds) {
        t.columns.push_back(k.column);
        row << k.written;
    }
    t.rows = {row, row};
    return t;
}

TEST(AccessDatabaseRead, EveryKindOfColumnReadsBackAsWritten)
{
    TempAppDir app;
    const std::vector<Kind> kinds = everyKind();
    for (const Version& v : kVersions) {
        SCOPED_TRACE(v.name);
        const QString path = app.file(QStringLiteral("kinds%1.mdb").arg(v.jet));
        QString error;
        ASSERT_TRUE(WriteJetDatabase(path, optionsOf(v), {kindsTable(kinds)}, &error)) << error.toStdString();
        auto db = OpenAccessDatabase(path, kSongDatabasePassword, {});
        ASSERT_TRUE(db);
        const QList<QVariantList> rows = valuesOf(*db, QStringLiteral("select * from kinds"));
        ASSERT_EQ(rows.size(), 2);
        for (std::size_t c = 0; c < kinds.size(); ++c) {
            SCOPED_TRACE(kinds[c].column.name.toStdString());
            const QVariant expected = kinds[c].read.isValid() ? kinds[c].read : kinds[c].written;
            const QVariant got = rows[1].value(qsizetype(c));
            EXPECT_EQ(got.isValid(), expected.isValid());  // NULL stays NULL, an empty text stays a text
            if (expected.typeId() == QMetaType::QByteArray)
                EXPECT_EQ(got.toByteArray(), expected.toByteArray());
            else
                EXPECT_EQ(got, expected) << got.toString().left(80).toStdString();
        }
    }
}

TEST(AccessDatabaseRead, ReadersOfOtherHandsSeeTheSameFile)
{
    if (standardOutput(QStringLiteral("mdb-export"), {QStringLiteral("--version")}).startsWith(u'f'))
        GTEST_SKIP() << "mdbtools is not installed";
    TempAppDir app;
    for (const Version& v : kVersions) {
        SCOPED_TRACE(v.name);
        const QString path = app.file(QStringLiteral("song%1.mdb").arg(v.jet));
        JetTable singer{QStringLiteral("singer"), LegacySingerColumns(), {}, {}, 0};
        singer.rows = {{QStringLiteral("邓丽君"), false, true, QVariant(), QByteArray("\x01\x02", 2), 2,
                        QString(5000, u'd'), QString(QLatin1String(""))}};
        JetTable song{QStringLiteral("song"), LegacySongColumns(), {}, LegacySongRow, 600};
        ASSERT_TRUE(WriteJetDatabase(path, optionsOf(v), {song, singer}));

        EXPECT_EQ(standardOutput(QStringLiteral("mdb-tables"), {QStringLiteral("-1"), path}),
                  QStringLiteral("song\nsinger\n"));
        const QString schema = standardOutput(QStringLiteral("mdb-schema"), {path});
        EXPECT_TRUE(schema.contains(QStringLiteral("[Name]\t\t\tText (80)"))) << schema.toStdString();
        EXPECT_TRUE(schema.contains(QStringLiteral("[Male]\t\t\tBoolean NOT NULL")));
        EXPECT_TRUE(schema.contains(QStringLiteral("[Image]\t\t\tOLE")));

        const QStringList songs =
            standardOutput(QStringLiteral("mdb-export"),
                           {QStringLiteral("-H"), QStringLiteral("-T"), QStringLiteral("%Y-%m-%d %H:%M:%S"),
                            path, QStringLiteral("song")})
                .split(u'\n', Qt::SkipEmptyParts);
        ASSERT_EQ(songs.size(), 600);
        EXPECT_EQ(songs[599],
                  QStringLiteral("600,1599,\"Yesterday Once More 599\",23,\"Carpenters\",\"English\","
                                 "\"流行\",4,\"L\",17,\"China\",\"\\Pop\\000599.vob\",\"D:\\Songs\","
                                 "\"admin\",\"2000-07-17 23:59:58\",\"from the old console\""));
        const QString singers =
            standardOutput(QStringLiteral("mdb-export"),
                           {QStringLiteral("-H"), QStringLiteral("-0"), QStringLiteral("~"),
                            QStringLiteral("-b"), QStringLiteral("hex"), path, QStringLiteral("singer")});
        // mdb-export prints an empty text as it prints NULL; the rows themselves tell them apart (above).
        EXPECT_EQ(singers, QStringLiteral("\"邓丽君\",0,1,~,\"0102\",2,\"") + QString(5000, u'd') +
                               QStringLiteral("\",~\n"));
    }
}

TEST(AccessDatabaseRead, RowsFromBeforeAColumnWasAddedReadItAsNull)
{
    TempAppDir app;
    for (const Version& v : kVersions) {
        SCOPED_TRACE(v.name);
        JetTable song{QStringLiteral("song"), LegacySongColumns(), {}, {}, 0};
        QVariantList old = LegacySongRow(0);
        old.removeLast();  // written before the table had its Remark
        song.rows = {old, LegacySongRow(1), old};
        const QString path = app.file(QStringLiteral("added%1.mdb").arg(v.jet));
        QString error;
        ASSERT_TRUE(WriteJetDatabase(path, optionsOf(v), {song}, &error)) << error.toStdString();
        auto db = OpenAccessDatabase(path, QString(), {});
        const QList<QVariantList> rows = valuesOf(*db, QStringLiteral("select * from song"));
        ASSERT_EQ(rows.size(), 3);
        for (int r : {0, 2}) {
            EXPECT_FALSE(rows[r][15].isValid());
            EXPECT_EQ(rows[r][2].toString(), QStringLiteral("月亮代表我的心 0"));
            EXPECT_EQ(rows[r][13].toString(), QStringLiteral("admin"));
            EXPECT_EQ(rows[r][14].toDateTime(), QDateTime(QDate(1999, 12, 31), QTime(23, 59, 58)));
        }
        EXPECT_EQ(rows[1][15].toString(), QStringLiteral("from the old console"));
    }
}

TEST(AccessDatabaseRead, TablesOverManyPagesAreReadWhole)
{
    // Rows of nearly a page each: more pages than the table's own page map can name, so a map of maps
    // is written and read.
    TempAppDir app;
    for (const Version& v : kVersions) {
        SCOPED_TRACE(v.name);
        const int rows = v.jet == 3 ? 1100 : 560;
        const int filler = v.jet == 3 ? 1800 : 1700;  // characters: one byte each in Jet 3, two in Jet 4
        // A text after the long value: in Jet 3 its place lies past 256 and is told by the jump table.
        JetTable big{QStringLiteral("song"),
                     {{QStringLiteral("Index"), JetType::Long},
                      {QStringLiteral("Name"), JetType::Text, 255},
                      {QStringLiteral("Remark"), JetType::Binary, 2000},
                      {QStringLiteral("Tail"), JetType::Text, 20}},
                     {},
                     [&](qsizetype i) {
                         return QVariantList{qint64(i), QString::number(i), picture(filler, quint32(i)),
                                             QStringLiteral("end %1").arg(i)};
                     },
                     rows};
        const QString path = app.file(QStringLiteral("big%1.mdb").arg(v.jet));
        QString error;
        ASSERT_TRUE(WriteJetDatabase(path, optionsOf(v), {big}, &error)) << error.toStdString();
        auto db = OpenAccessDatabase(path, QString(), {});
        const QList<QVariantList> read = valuesOf(*db, QStringLiteral("select * from song"));
        ASSERT_EQ(read.size(), rows);
        for (int r : {0, rows / 2, rows - 1}) {
            EXPECT_EQ(read[r][1].toString(), QString::number(r));
            EXPECT_EQ(read[r][2].toByteArray(), picture(filler, quint32(r)));
            EXPECT_EQ(read[r][3].toString(), QStringLiteral("end %1").arg(r));
        }
        const QStringList exported = standardOutput(QStringLiteral("mdb-export"),
                                                    {QStringLiteral("-H"), QStringLiteral("-b"),
                                                     QStringLiteral("hex"), path, QStringLiteral("song")})
                                         .split(u'\n', Qt::SkipEmptyParts);
        ASSERT_EQ(exported.size(), rows);
        EXPECT_TRUE(exported.last().endsWith(QStringLiteral(",\"end %1\"").arg(rows - 1)))
            << exported.last().right(40).toStdString();
    }
}

class AccessImportTest : public testing::Test {
protected:
    void SetUp() override
    {
        CreateSongDatabase(app.file(QStringLiteral("target.db")), QStringLiteral("English"));
        target = OpenConnection(app.file(QStringLiteral("target.db")));
        settings.indexClass = QStringLiteral("import");
        settings.indexFrom = QStringLiteral("1000");
    }

    SongbookImportResult import(const QString& source)
    {
        host.events.clear();
        settings.source = source;
        return ImportSongbook(*target, settings, host);
    }
    QStringList table(const QString& sql) { return rowsOf(*target, sql); }
    // Everything the songbook holds, to tell that a failed import changed nothing.
    QStringList everything()
    {
        return table(QStringLiteral("select * from song order by id")) +
               table(QStringLiteral("select name, type, image_len from singer order by name"));
    }

    TempAppDir app;
    std::unique_ptr<Connection> target;
    SongbookImportSettings settings;
    RecordingHost host;
};

TEST_F(AccessImportTest, AnEarlierVersionsSongbookArrivesWhole)
{
    const QByteArray small = picture(50, 7), onePage = picture(1800, 8), large = picture(40000, 9);
    const QString story = QStringLiteral("出道于一九七四年。") + QString(6000, u'.') + QStringLiteral("完");
    for (const Version& v : kVersions) {
        SCOPED_TRACE(v.name);
        target->execute(QStringLiteral("delete * from song"));
        target->execute(QStringLiteral("delete * from singer"));
        JetTable song{QStringLiteral("song"), LegacySongColumns(), {}, LegacySongRow, 400};
        JetTable singer{QStringLiteral("singer"), LegacySingerColumns(), {}, {}, 0};
        // Sex from two yes/no columns (the later one wins), photographs of each size, NULL and empty texts.
        singer.rows = {
            {QStringLiteral("邓丽君"), false, true, QStringLiteral("台湾"), large, 40000, story,
             QString(QLatin1String(""))},
            {QStringLiteral("周华健"), true, false, QVariant(), onePage, 1800, QVariant(), QVariant()},
            {QStringLiteral("Both"), true, true, QString(QLatin1String("")), small, 50, QStringLiteral("d"),
             QStringLiteral("r")},
            {QStringLiteral("Neither"), false, false, QVariant(), QVariant(), QVariant(), QVariant(),
             QVariant()}};
        const QString path = app.file(QStringLiteral("ktv%1.mdb").arg(v.jet));
        ASSERT_TRUE(WriteJetDatabase(path, optionsOf(v), {song, singer}));

        const SongbookImportResult result = import(path);
        EXPECT_EQ(result.songs, 400);
        EXPECT_EQ(result.singers, 4);
        EXPECT_EQ(host.last(), QStringLiteral("info 400 songs and 4 singers imported to songbook!"));
        const QString columns = QStringLiteral(
            "[index], title, chars, singer, language, style, grade, channel, "
            "order_time, region, media_file, library, lupd_by, lupd_time, remark");
        const QStringList songs =
            table(QStringLiteral("select ") + columns + QStringLiteral(" from song order by id"));
        ASSERT_EQ(songs.size(), 400);
        EXPECT_EQ(songs[0],
                  QStringLiteral("1000|月亮代表我的心 0|9|邓丽君|国语|流行|0|R|0|China|\\Pop\\000000.vob|"
                                 "D:\\Songs|admin|1999-12-31 23:59:58|from the old console"));
        EXPECT_EQ(songs[399],
                  QStringLiteral("1399|Yesterday Once More 399|23|邓丽君|English|流行|4|L|11|China|"
                                 "\\Pop\\000399.vob|D:\\Songs|admin|2001-02-02 23:59:58|"
                                 "from the old console"));

        const QList<QVariantList> singers = valuesOf(
            *target,
            QStringLiteral("select name, type, region, image, image_len, description, remark from singer "
                           "order by rowid"));
        ASSERT_EQ(singers.size(), 4);
        EXPECT_EQ(singers[0][1].toString(), QStringLiteral("female"));
        EXPECT_EQ(singers[1][1].toString(), QStringLiteral("male"));
        EXPECT_EQ(singers[2][1].toString(), QStringLiteral("female"));
        EXPECT_FALSE(singers[3][1].isValid());
        EXPECT_EQ(singers[0][3].toByteArray(), large);
        EXPECT_EQ(singers[1][3].toByteArray(), onePage);
        EXPECT_EQ(singers[2][3].toByteArray(), small);
        EXPECT_EQ(singers[0][4].toLongLong(), 40000);
        EXPECT_EQ(singers[0][5].toString(), story);
        EXPECT_EQ(singers[0][2].toString(), QStringLiteral("台湾"));
        EXPECT_FALSE(singers[1][2].isValid());  // NULL stays NULL ...
        EXPECT_TRUE(singers[2][2].isValid());   // ... and an empty text stays empty
        EXPECT_EQ(singers[2][2].toString(), QString());
        EXPECT_TRUE(singers[0][6].isValid());
        EXPECT_FALSE(singers[1][6].isValid());
    }
}

TEST_F(AccessImportTest, Access97TitlesAreReadInTheCodePageAsked)
{
    const QString title = QStringLiteral("月亮代表我的心");
    struct Case {
        const char* name;
        int fileCodePage;
        int textCodePage;
        AccessReadOptions::Gbk gbk;
        bool readsChinese;
    } cases[] = {
        {"the file says GBK", 936, 936, AccessReadOptions::Gbk::CodePage, true},
        {"GBK turned off", 936, 936, AccessReadOptions::Gbk::No, false},
        {"a Western file holding GBK, read as asked", 1252, 936, AccessReadOptions::Gbk::Yes, true},
        {"a Western file holding GBK, read by its word", 1252, 936, AccessReadOptions::Gbk::CodePage, false},
        {"a Western file", 1252, 1252, AccessReadOptions::Gbk::CodePage, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        target->execute(QStringLiteral("delete * from song"));
        JetFileOptions options{3, c.fileCodePage, c.textCodePage, QString()};
        const QString path = app.file(QStringLiteral("song.mdb"));
        const QString written = c.textCodePage == 936 ? title : QStringLiteral("Café");
        JetTable song{QStringLiteral("song"),
                      {{QStringLiteral("Index"), JetType::Long}, {QStringLiteral("Name"), JetType::Text, 50}},
                      {{1000, written}},
                      {},
                      0};
        ASSERT_TRUE(WriteJetDatabase(path, options, {song}));
        EXPECT_EQ(ReadAccessFileInfo(path).codePage, c.fileCodePage);
        settings.access.gbk = c.gbk;
        import(path);
        const QStringList titles = table(QStringLiteral("select title from song"));
        ASSERT_EQ(titles.size(), 1);
        if (c.textCodePage == 1252)
            EXPECT_EQ(titles[0], written);
        else
            EXPECT_EQ(titles[0] == title, c.readsChinese) << titles[0].toStdString();
    }
}

TEST_F(AccessImportTest, BadFilesAreToldAndChangeNothing)
{
    target->execute(QStringLiteral("insert into song ([index], title) values (1, 'kept')"));
    target->execute(QStringLiteral("insert into singer (name) values ('kept')"));
    const QStringList before = everything();

    QString whole[2];
    for (const Version& v : kVersions) {
        whole[v.jet - 3] = app.file(QStringLiteral("whole%1.mdb").arg(v.jet));
        JetTable singer{QStringLiteral("singer"), LegacySingerColumns(), {}, {}, 0};
        singer.rows = {
            {QStringLiteral("S"), true, false, QVariant(), picture(9000, 1), 9000, QVariant(), QVariant()}};
        JetTable song{QStringLiteral("song"), LegacySongColumns(), {}, LegacySongRow, 300};
        ASSERT_TRUE(WriteJetDatabase(whole[v.jet - 3], optionsOf(v), {singer, song}));
    }
    auto cut = [&](int jet, double pages, const char* name) {
        QFile in(whole[jet - 3]);
        EXPECT_TRUE(in.open(QIODevice::ReadOnly));
        const qint64 pageSize = jet == 3 ? 2048 : 4096;
        const QByteArray bytes = in.readAll();
        return app.write(QString::fromLatin1(name), bytes.left(qint64(pages * double(pageSize))));
    };
    auto locked = [&](int jet, const QString& password) {
        const QString path = app.file(QStringLiteral("locked%1.mdb").arg(jet));
        JetTable song{QStringLiteral("song"), LegacySongColumns(), {}, LegacySongRow, 3};
        EXPECT_TRUE(WriteJetDatabase(path, JetFileOptions{jet, 936, 0, password}, {song}));
        return path;
    };
    // The first page of long values wiped, as a disk error would leave it.
    auto wiped = [&](const char* name) {
        QFile in(whole[1]);
        EXPECT_TRUE(in.open(QIODevice::ReadOnly));
        QByteArray bytes = in.readAll();
        for (qsizetype at = 0; at < bytes.size(); at += 4096) {
            if (bytes.mid(at + 4, 4) == "LVAL") {
                bytes.replace(at, 4096, QByteArray(4096, 0));
                break;
            }
        }
        return app.write(QString::fromLatin1(name), bytes);
    };
    const qint64 pages3 = QFile(whole[0]).size() / 2048, pages4 = QFile(whole[1]).size() / 4096;
    struct Case {
        const char* name;
        QString path;
        const char* reason;
    } cases[] = {
        {"cut inside a page", cut(4, 2.5, "cut1.mdb"), "damaged or cut short"},
        {"cut after the catalog's definition", cut(3, 3, "cut2.mdb"), "damaged or cut short"},
        {"cut among the songs, Jet 3", cut(3, double(pages3) * 0.5, "cut3.mdb"), "damaged or cut short"},
        {"cut among the songs, Jet 4", cut(4, double(pages4) * 0.5, "cut4.mdb"), "damaged or cut short"},
        {"not a database",
         app.write(QStringLiteral("notes.mdb"), QByteArray("a list of songs\n").repeated(500)),
         "Unrecognized database format"},
        {"another password, Jet 3", locked(3, QStringLiteral("venue")), "Not a valid password."},
        {"another password, Jet 4", locked(4, QStringLiteral("venue")), "Not a valid password."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host.answers = {MsgAnswer::Ok, MsgAnswer::Yes};  // Yes: stop the import at the error
        const SongbookImportResult result = import(c.path);
        const QStringList errors =
            host.asked().filter(QStringLiteral("An error take place while import to songbook!"));
        ASSERT_FALSE(errors.isEmpty()) << host.events.join(u'\n').toStdString();
        EXPECT_TRUE(errors[0].contains(QString::fromLatin1(c.reason))) << errors[0].toStdString();
        EXPECT_TRUE(errors[0].endsWith(QStringLiteral("\r\nStop import?")));
        EXPECT_EQ(result.songs + result.singers, 0);
        EXPECT_EQ(everything(), before);
    }

    // Damage among the singers, which come second: the songs before stay, row by row.
    host.answers = {MsgAnswer::Ok, MsgAnswer::Ok, MsgAnswer::Yes};
    const SongbookImportResult result = import(wiped("wiped.mdb"));
    EXPECT_EQ(result.songs, 300);
    EXPECT_EQ(result.singers, 0);
    const QStringList errors =
        host.asked().filter(QStringLiteral("An error take place while import to songbook!"));
    ASSERT_EQ(errors.size(), 1) << host.events.join(u'\n').toStdString();
    EXPECT_TRUE(
        errors[0].contains(QStringLiteral("damaged or cut short: a picture or object of Image is not whole")))
        << errors[0].toStdString();
}

TEST_F(AccessImportTest, TheConsolesOwnPasswordOpensALockedFile)
{
    for (const Version& v : kVersions) {
        SCOPED_TRACE(v.name);
        target->execute(QStringLiteral("delete * from song"));
        const QString path = app.file(QStringLiteral("locked.mdb"));
        JetTable song{QStringLiteral("song"), LegacySongColumns(), {}, LegacySongRow, 3};
        ASSERT_TRUE(
            WriteJetDatabase(path, JetFileOptions{v.jet, v.codePage, 0, kSongDatabasePassword}, {song}));
        EXPECT_EQ(import(path).songs, 3);
    }
}

TEST_F(AccessImportTest, AFileWithoutSongsStillGivesItsSingers)
{
    const QString path = app.file(QStringLiteral("singers.mdb"));
    JetTable singer{QStringLiteral("singer"), LegacySingerColumns(), {}, {}, 0};
    singer.rows = {
        {QStringLiteral("S"), true, false, QVariant(), QVariant(), QVariant(), QVariant(), QVariant()}};
    ASSERT_TRUE(WriteJetDatabase(path, JetFileOptions{4, 1252, 0, QString()}, {singer}));
    const SongbookImportResult result = import(path);  // No: go on after the missing table
    ASSERT_GE(host.asked().size(), 2);
    EXPECT_TRUE(host.asked()[1].contains(QStringLiteral("cannot find the input table or query 'song'")))
        << host.asked()[1].toStdString();
    EXPECT_EQ(result.singers, 1);
    EXPECT_EQ(table(QStringLiteral("select name, type from singer")), QStringList{QStringLiteral("S|male")});

    target->execute(QStringLiteral("delete * from singer"));
    host.answers = {MsgAnswer::Ok, MsgAnswer::Yes};  // Yes: stop there
    EXPECT_EQ(import(path).singers, 0);
    EXPECT_TRUE(table(QStringLiteral("select name from singer")).isEmpty());
}

}  // namespace
