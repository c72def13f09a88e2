// The songbook export and the pair it makes with the import: the file it writes, the counts it reads
// back, the questions about an earlier file, the refusal to overwrite the database in use, and a
// songbook of 10,000 songs that comes back field for field.
#include "exchange/SongbookExport.h"
#include "exchange/SongbookImport.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "support/TempAppDir.h"
#include "ExchangeTestSupport.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <gtest/gtest.h>

using namespace td;
using td::test::RecordingHost;
using td::test::rowsOf;
using td::test::valuesOf;

namespace {

class SongbookExportTest : public testing::Test {
protected:
    void SetUp() override
    {
        CreateTemplateDatabase(app.file(QStringLiteral("default.db")));
        QDir().mkpath(app.file(QStringLiteral("db")));
        CreateSongDatabase(dbPath, QStringLiteral("English"));
        db = OpenConnection(dbPath);
    }
    SongbookExportResult run() { return ExportSongbook(*db, dbPath, target, host); }

    test::TempAppDir app;
    QString dbPath = app.file(QStringLiteral("db/song2024.db"));
    QString target = DefaultExportTarget(dbPath);
    std::unique_ptr<Connection> db;
    RecordingHost host;
};

TEST_F(SongbookExportTest, AnEmptySongbookExportsEmptyTables)
{
    EXPECT_EQ(target, app.file(QStringLiteral("db/song.db")));
    const SongbookExportResult result = run();
    EXPECT_TRUE(result.done);
    EXPECT_EQ(host.events,
              (QStringList{QStringLiteral("ask Export all songs & singers to <") + target + QStringLiteral("> ?"),
                           QStringLiteral("start Copy database file ... 100"), QStringLiteral("start Copy songs ... 100"),
                           QStringLiteral("start Copy singer ... 100"), QStringLiteral("end"),
                           QStringLiteral("info 0 songs and 0 singers exported!")}));
    auto exported = OpenConnection(target);
    EXPECT_EQ(rowsOf(*exported, QStringLiteral("select count(*) from song")), QStringList{QStringLiteral("0")});
}

TEST_F(SongbookExportTest, ASecondExportAsksBeforeReplacingTheFirst)
{
    db->execute(QStringLiteral("insert into song ([index], title) values (1000, 'A')"));
    run();
    db->execute(QStringLiteral("insert into singer (name) values ('S')"));
    host.events.clear();
    host.answers = {MsgAnswer::Ok, MsgAnswer::Cancel};
    EXPECT_FALSE(run().done);
    EXPECT_EQ(host.last(), QStringLiteral("ask A prior exported file detected. Delete it and create a new export "
                                          "file?"));
    EXPECT_EQ(rowsOf(*OpenConnection(target), QStringLiteral("select count(*) from singer")),
              QStringList{QStringLiteral("0")});
    QFile(target).setPermissions(QFileDevice::ReadOwner);  // a read-only earlier file goes too
    host.events.clear();
    const SongbookExportResult result = run();
    EXPECT_EQ(result.songs, 1);
    EXPECT_EQ(result.singers, 1);
    EXPECT_EQ(host.last(), QStringLiteral("info 1 songs and 1 singers exported!"));
}

TEST_F(SongbookExportTest, TheDatabaseInUseIsNeverTheTarget)
{
    const QString inUse = app.file(QStringLiteral("db/song.db"));
    CreateSongDatabase(inUse, QStringLiteral("English"));
    auto open = OpenConnection(inUse);
    open->execute(QStringLiteral("insert into song ([index], title) values (1000, 'A')"));
    const SongbookExportResult result = ExportSongbook(*open, inUse, DefaultExportTarget(inUse), host);
    EXPECT_FALSE(result.done);
    EXPECT_EQ(host.events, QStringList{QStringLiteral("fail Can not export to current database!")});
    EXPECT_EQ(rowsOf(*open, QStringLiteral("select title from song")), QStringList{QStringLiteral("A")});
}

TEST_F(SongbookExportTest, AMissingTemplateIsReportedAndNothingCounted)
{
    QFile::remove(app.file(QStringLiteral("default.db")));
    EXPECT_FALSE(run().done);
    EXPECT_TRUE(host.last().startsWith(QStringLiteral("fail An error take place while export! Err=")));
}

// Texts with the characters that statements and files are most likely to spoil.
QString text(QRandomGenerator& g, int n)
{
    static const QString alphabet = QStringLiteral("abcXYZ 0189'\"\\/%_;,月亮代表我的心甜蜜蜜鄧麗君國語");
    QString s;
    for (int i = 0; i < n; ++i)
        s += alphabet[g.bounded(int(alphabet.size()))];
    return s;
}

TEST_F(SongbookExportTest, TenThousandSongsComeBackFieldForField)
{
    QRandomGenerator g(2026);
    db->execute(QStringLiteral("begin"));
    {
        auto rs = db->openRecordset(QStringLiteral("select * from song where id=-1"));
        for (int i = 0; i < 10000; ++i) {
            rs->AddNew();
            rs->Fields(QStringLiteral("index")).setValue(1000 + i);
            rs->Fields(QStringLiteral("title")).setValue(text(g, 1 + g.bounded(30)));
            rs->Fields(QStringLiteral("chars")).setValue(g.bounded(20));
            rs->Fields(QStringLiteral("singer")).setValue(text(g, 5));
            rs->Fields(QStringLiteral("language")).setValue(text(g, 2));
            rs->Fields(QStringLiteral("style")).setValue(text(g, 2));
            rs->Fields(QStringLiteral("grade")).setValue(g.bounded(6));
            rs->Fields(QStringLiteral("channel")).setValue(i % 3 ? QVariant(QStringLiteral("L")) : QVariant());
            rs->Fields(QStringLiteral("order_time")).setValue(g.bounded(100000));
            rs->Fields(QStringLiteral("region")).setValue(i % 7 ? QVariant(text(g, 6)) : QVariant());
            rs->Fields(QStringLiteral("media_file")).setValue(QStringLiteral("/Pop/%1.dat").arg(i));
            rs->Fields(QStringLiteral("library")).setValue(QStringLiteral("/media/lib"));
            rs->Fields(QStringLiteral("lupd_by")).setValue(text(g, 4));
            rs->Fields(QStringLiteral("lupd_time"))
                .setValue(QStringLiteral("20%1-0%2-1%3 1%4:2%5:3%6")
                              .arg(10 + g.bounded(15)).arg(1 + g.bounded(9)).arg(g.bounded(9))
                              .arg(g.bounded(9)).arg(g.bounded(9)).arg(g.bounded(9)));
            rs->Fields(QStringLiteral("remark")).setValue(text(g, g.bounded(80)));
            rs->Update();
        }
        auto singers = db->openRecordset(QStringLiteral("select * from singer"));
        for (int i = 0; i < 50; ++i) {
            QByteArray photo(1 + g.bounded(20000), Qt::Uninitialized);
            for (char& b : photo)
                b = char(g.bounded(256));
            singers->AddNew();
            singers->Fields(QStringLiteral("name")).setValue(QStringLiteral("Singer %1 ").arg(i) + text(g, 4));
            singers->Fields(QStringLiteral("type")).setValue(i % 2 ? QStringLiteral("male") : QStringLiteral("female"));
            singers->Fields(QStringLiteral("region")).setValue(text(g, 3));
            singers->Fields(QStringLiteral("image")).setValue(photo);
            singers->Fields(QStringLiteral("image_len")).setValue(photo.size());
            singers->Fields(QStringLiteral("description")).setValue(text(g, 200));
            singers->Fields(QStringLiteral("remark")).setValue(text(g, 10));
            singers->Update();
        }
    }
    db->execute(QStringLiteral("commit"));

    const SongbookExportResult exported = run();
    ASSERT_EQ(exported.songs, 10000);
    ASSERT_EQ(exported.singers, 50);

    const QString backPath = app.file(QStringLiteral("back.db"));
    CreateSongDatabase(backPath, QStringLiteral("English"));
    auto back = OpenConnection(backPath);
    SongbookImportSettings settings;
    settings.source = target;
    settings.indexClass = QStringLiteral("import");
    RecordingHost importHost;
    const SongbookImportResult imported = ImportSongbook(*back, settings, importHost);
    EXPECT_EQ(imported.songs, 10000);
    EXPECT_EQ(imported.singers, 50);

    const QString songColumns = QStringLiteral("[index], title, chars, singer, language, style, grade, channel, "
                                               "order_time, region, media_file, library, lupd_by, lupd_time, remark");
    const QString singerColumns = QStringLiteral("name, type, region, image, image_len, description, remark");
    for (const auto& [columns, table] : {std::pair{songColumns, QStringLiteral("song")},
                                         std::pair{singerColumns, QStringLiteral("singer")}}) {
        const QString sql = QStringLiteral("select ") + columns + QStringLiteral(" from ") + table +
                            QStringLiteral(" order by rowid");
        const QList<QVariantList> want = valuesOf(*db, sql);
        const QList<QVariantList> got = valuesOf(*back, sql);
        ASSERT_EQ(got.size(), want.size());
        for (qsizetype i = 0; i < want.size(); ++i)
            for (qsizetype c = 0; c < want[i].size(); ++c) {
                ASSERT_EQ(got[i][c].isNull(), want[i][c].isNull()) << "row " << i << " of " << table.toStdString();
                ASSERT_EQ(got[i][c], want[i][c]) << "row " << i << " column " << c << " of " << table.toStdString();
            }
    }
}

}  // namespace
