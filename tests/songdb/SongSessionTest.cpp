#include "../shell/FakePlatform.h"
#include "SessionFixture.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "songdb/RecordAccess.h"
#include "songdb/Schema.h"
#include "songdb/SongStatements.h"
#include "support/QtPrint.h"
#include <QDir>
#include <QFile>
#include <cmath>

namespace td {
namespace {

using test::SessionFixture;

QString eventLog(const test::TempAppDir& app)
{
    QFile f(app.file(QStringLiteral("event.log")));
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

class OpenDatabase : public SessionFixture {};

TEST_F(OpenDatabase, ValidDatabaseOpensWithoutQuestions)
{
    EXPECT_TRUE(SongOpenDatabase());
    EXPECT_TRUE(SongDatabaseOpen());
    EXPECT_EQ(SongDatabaseFile(), file.path());
    EXPECT_TRUE(dialogs.messages().isEmpty());
    EXPECT_TRUE(eventLog(app).contains(QStringLiteral("Open access database ok! File=") + file.path()));
}

TEST_F(OpenDatabase, MissingHomeOrFileIsReported)
{
    QFile::remove(app.file(QStringLiteral("KtvPublic/database_home.ini")));
    EXPECT_FALSE(SongOpenDatabase());
    pointAt(file.dir());  // a directory is no database file
    EXPECT_FALSE(SongOpenDatabase());
    EXPECT_EQ(dialogs.messages(),
              (QStringList{QStringLiteral("Did not set song database file yet!"),
                           QStringLiteral("Can not find song database file! <") + file.dir() + u'>'}));
    EXPECT_FALSE(SongDatabaseOpen());
}

TEST_F(OpenDatabase, FileThatIsNoDatabaseFailsWithStoreText)
{
    const QString junk = app.write(QStringLiteral("junk.db"), QByteArray(4096, 'x'));
    pointAt(junk);
    EXPECT_FALSE(SongOpenDatabase());
    EXPECT_EQ(dialogs.messages(),
              QStringList{QStringLiteral("Open song database failed!  Err=file is not a database")});
    EXPECT_TRUE(
        eventLog(app).contains(QStringLiteral("Open song database failed! Err = file is not a database")));
    EXPECT_FALSE(SongDatabaseOpen());
    EXPECT_EQ(SongConnection(), nullptr);
}

// An address takes the place of the file test; a server that does not answer fails the opening
// with the client library's reason.
TEST_F(OpenDatabase, ServerAddressThatDoesNotAnswerFailsTheOpening)
{
    pointAt(QStringLiteral("postgresql://ktv@127.0.0.1:1/songs"));
    EXPECT_FALSE(SongOpenDatabase());
    ASSERT_EQ(dialogs.messages().size(), 1);
    EXPECT_TRUE(dialogs.messages()[0].startsWith(u"Open song database failed!  Err=")) << dialogs.messages()[0].toStdString();
    EXPECT_TRUE(dialogs.messages()[0].contains(u"127.0.0.1")) << dialogs.messages()[0].toStdString();
    EXPECT_FALSE(SongDatabaseOpen());
    EXPECT_EQ(SongConnection(), nullptr);
}

TEST_F(OpenDatabase, DatabaseWithoutTheTablesAsksAndAnswerNoLeavesNothingOpen)
{
    const QString bare = app.file(QStringLiteral("bare.db"));
    OpenConnection(bare, {5000, false, true})->execute(QStringLiteral("create table other (x integer)"));
    pointAt(bare);
    dialogs.answer(MsgAnswer::No);
    EXPECT_FALSE(SongOpenDatabase());
    const QStringList shown = dialogs.messages();
    ASSERT_EQ(shown.size(), 3) << shown.join(QStringLiteral("\n")).toStdString();
    EXPECT_TRUE(shown[0].startsWith(QStringLiteral("SongOpenRecordset failed! Err=")));
    EXPECT_TRUE(shown[0].contains(QStringLiteral("config")));
    EXPECT_TRUE(shown[1].startsWith(QStringLiteral("SongReadValue failed! Err=")));
    EXPECT_EQ(shown[2], QStringLiteral("Invalid database format! Process anyway?"));
    EXPECT_FALSE(SongDatabaseOpen());
    EXPECT_TRUE(SongDatabaseFile().isEmpty());
}

TEST_F(OpenDatabase, FileLockedByAnotherConsoleWaitsThenReportsTheStoreText)
{
    // A database on a share keeps the rollback journal, which keeps readers out while another
    // console writes.
    AppIniWrite(QStringLiteral("NetworkRoot"), app.path());
    const QString shared = app.file(QStringLiteral("Server1/KtvPublic/song.db"));
    QDir().mkpath(app.file(QStringLiteral("Server1/KtvPublic")));
    CreateSongDatabase(shared, QStringLiteral("English"));
    pointAt(shared);
    auto other = OpenConnection(shared);
    other->execute(QStringLiteral("begin exclusive"));
    EXPECT_FALSE(SongOpenDatabase());
    // The store refuses the open once the connection timeout has passed.
    EXPECT_EQ(dialogs.messages(),
              QStringList{QStringLiteral("Open song database failed!  Err=database is locked")});
    EXPECT_FALSE(SongDatabaseOpen());
    EXPECT_EQ(SongConnection(), nullptr);
    other->execute(QStringLiteral("rollback"));
    dialogs.clear();
    EXPECT_TRUE(SongOpenDatabase());
    EXPECT_TRUE(dialogs.messages().isEmpty());
}

struct QuestionCase {
    const char* format;
    const char* version;
    std::vector<MsgAnswer> answers;
    int questions;
    bool opened;
};

class FormatAndVersion : public SessionFixture, public ::testing::WithParamInterface<QuestionCase> {};

// A null text stands for a missing row.
void setDatabaseValue(Connection& db, const char* key, const char* value)
{
    const QString where = QStringLiteral(" where [key]='") + QString::fromUtf8(key) + u'\'';
    if (value)
        db.execute(QStringLiteral("update config set [value]='") + QString::fromUtf8(value) + u'\'' + where);
    else
        db.execute(QStringLiteral("delete * from config") + where);
}

TEST_P(FormatAndVersion, AsksAndFollowsTheAnswers)
{
    const auto& c = GetParam();
    setDatabaseValue(file.db(), "Format", c.format);
    setDatabaseValue(file.db(), "Version", c.version);
    for (MsgAnswer a : c.answers)
        dialogs.answer(a);
    EXPECT_EQ(SongOpenDatabase(), c.opened);
    EXPECT_EQ(dialogs.messages().size(), c.questions);
    EXPECT_EQ(SongDatabaseOpen(), c.opened);
    if (c.opened) {  // the session is usable
        EXPECT_EQ(SongDatabaseFile(), file.path());
        EXPECT_TRUE(SongExecute(QStringLiteral("delete * from media")));
    } else {
        EXPECT_EQ(SongConnection(), nullptr);
        EXPECT_TRUE(SongDatabaseFile().isEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    SongDatabase, FormatAndVersion,
    ::testing::Values(QuestionCase{"SongDatabase", "8.1", {}, 0, true},
                      QuestionCase{"SongDatabase", "8.10", {}, 0, true},
                      QuestionCase{"SongDatabase", "8.09", {MsgAnswer::No}, 1, false},
                      QuestionCase{"SongDatabase", "", {MsgAnswer::Yes}, 1, true},
                      QuestionCase{"SongDatabase", nullptr, {MsgAnswer::No}, 1, false},
                      QuestionCase{"songdatabase", "8.1", {MsgAnswer::No}, 1, false},
                      QuestionCase{nullptr, "8.1", {MsgAnswer::Yes}, 1, true},
                      QuestionCase{nullptr, nullptr, {MsgAnswer::Yes, MsgAnswer::Yes}, 2, true},
                      QuestionCase{"songdatabase", "7", {MsgAnswer::Yes, MsgAnswer::No}, 2, false}));

// The texts of both questions and their log lines; a missing version shows as empty text.
TEST_F(OpenDatabase, QuestionsAndLogLines)
{
    setDatabaseValue(file.db(), "Format", nullptr);
    setDatabaseValue(file.db(), "Version", nullptr);
    dialogs.answer(MsgAnswer::Yes);
    dialogs.answer(MsgAnswer::Yes);
    EXPECT_TRUE(SongOpenDatabase());
    EXPECT_EQ(
        dialogs.messages(),
        (QStringList{QStringLiteral("Invalid database format! Process anyway?"),
                     QStringLiteral("Database version is out of date! Process anyway?\r\nCurrent Version = "
                                    "    Expect Version = 8.1")}));
    const QString log = eventLog(app);
    EXPECT_TRUE(log.contains(QStringLiteral("Invalid database format!")));
    EXPECT_TRUE(log.contains(
        QStringLiteral("Database version is out of date! Current Version =     Expect Version = 8.1")));
}

TEST_F(OpenDatabase, VersionQuestionShowsBothVersions)
{
    file.db().execute(QStringLiteral("update config set [value]='8.09' where [key]='Version'"));
    dialogs.answer(MsgAnswer::No);
    SongOpenDatabase();
    EXPECT_EQ(dialogs.messages().value(0),
              u"Database version is out of date! Process anyway?\r\nCurrent Version = 8.09    Expect Version "
              u"= 8.1");
}

TEST_F(OpenDatabase, HomePathInsideProgramFolderIsStoredRelative)
{
    QString chosen = AppPath() + QStringLiteral("/data/song.db");
    EXPECT_EQ(DatabaseHomePath(QStringLiteral("SongServer"), chosen, true), u"./data/song.db");
    QString read;
    EXPECT_EQ(DatabaseHomePath(QStringLiteral("SongServer"), read, false),
              AppPath() + QStringLiteral("/data/song.db"));
    QString share = QStringLiteral("\\\\Server1\\KtvPublic\\song.db");
    DatabaseHomePath(QStringLiteral("SongServer"), share, true);
    EXPECT_EQ(DatabaseHomePath(QStringLiteral("SongServer"), read, false), share);
    EXPECT_EQ(GetServerHost(share), u"Server1");
    EXPECT_EQ(GetServerHost(QStringLiteral("postgresql://ktv@db1:5432/songs")), u"db1");
}

TEST_F(OpenDatabase, HomePathFromAWindowsInstallationAndInAnyCase)
{
    IniWrite(app.file(QStringLiteral("KtvPublic/database_home.ini")), QStringLiteral("SongServer"),
             QStringLiteral("Local"), QStringLiteral("\\data\\song.db"));
    QString read;
    EXPECT_EQ(DatabaseHomePath(QStringLiteral("SongServer"), read, false),
              AppPath() + QStringLiteral("/data/song.db"));
    QString chosen = AppPath().toUpper() + QStringLiteral("/data/song.db");
    EXPECT_EQ(DatabaseHomePath(QStringLiteral("SongServer"), chosen, true), u"./data/song.db");
    QString outside = AppPath() + QStringLiteral("x/song.db");  // a sibling folder is not inside
    EXPECT_EQ(DatabaseHomePath(QStringLiteral("SongServer"), outside, true), outside);
}

TEST(ServerHost, ShareHostOrThisComputer)
{
    test::TempAppDir app;
    test::FakePlatform machine;
    machine.name = QStringLiteral("Room1");
    AppIniWrite(QStringLiteral("NetworkRoot"), QStringLiteral("/net"));
    const std::pair<const char*, const char*> cases[] = {
        {"\\\\Server1\\KtvPublic\\song.db", "Server1"},
        {"//Server1/KtvPublic/song.db", "Server1"},
        {"/net/Server1/KtvPublic/song.db", "Server1"},
        {"/srv/ktv/song.db", "Room1"},
        {"D:\\Ktv\\song.db", "Room1"},
        {"postgresql://ktv@db1:5432/songs", "db1"},
    };
    for (const auto& [path, host] : cases)
        EXPECT_EQ(GetServerHost(QString::fromUtf8(path)), QString::fromUtf8(host)) << path;
}

class OtherDatabase : public SessionFixture {};

TEST_F(OtherDatabase, MissingFileIsReportedAndGivesNoConnection)
{
    const QString missing = app.file(QStringLiteral("gone.db"));
    EXPECT_EQ(OpenAccessDatabase(missing, QString()), nullptr);
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Can't find access database file <") + missing +
                                              QStringLiteral(">!")});
    EXPECT_TRUE(eventLog(app).contains(QStringLiteral("Can't find access database file <") + missing + u'>'));
}

// A refused file shows nothing at the open; the first statement fails with the store's reason.
TEST_F(OtherDatabase, RefusedFileGivesAClosedConnectionThatSaysWhy)
{
    const std::pair<const char*, const char*> cases[] = {
        {"ktv1.mdb", ".mdb"},
        {"junk.db", "file is not a database"},
    };
    for (const auto& [name, reason] : cases) {
        auto db = OpenAccessDatabase(app.write(QString::fromUtf8(name), QByteArray(4096, 'x')), QString());
        ASSERT_NE(db, nullptr) << name;
        EXPECT_FALSE(db->isOpen()) << name;
        EXPECT_TRUE(dialogs.messages().isEmpty()) << name;
        try {
            db->openRecordset(QStringLiteral("select * from song"));
            ADD_FAILURE() << name;
        } catch (const std::exception& e) {
            EXPECT_TRUE(ErrorText(e).contains(QString::fromUtf8(reason))) << ErrorText(e).toStdString();
        }
    }
    auto good = OpenAccessDatabase(file.path(), QString());
    ASSERT_NE(good, nullptr);
    EXPECT_TRUE(good->isOpen());
}

class ConfigStore : public SessionFixture {};

TEST_F(ConfigStore, ReadsDefaultsAndWritesOneRow)
{
    ASSERT_TRUE(openSession());
    EXPECT_EQ(SongReadValue(QString(), QStringLiteral("MinIndex"), QStringLiteral("1000")), u"1000");
    EXPECT_EQ(
        file.db().openRecordset(QStringLiteral("select * from config where [key]='MinIndex'"))->RecordCount(),
        0);  // reading a missing value writes nothing
    EXPECT_TRUE(SongWriteValue(QString(), QStringLiteral("MinIndex"), QStringLiteral("2000")));
    EXPECT_TRUE(
        SongWriteValue(QStringLiteral("Default"), QStringLiteral("MinIndex"), QStringLiteral("3000")));
    EXPECT_EQ(SongReadValue(QString(), QStringLiteral("MinIndex"), QStringLiteral("1000")), u"3000");
    auto rs = file.db().openRecordset(QStringLiteral("select * from config where [key]='MinIndex'"));
    EXPECT_EQ(rs->RecordCount(), 1);
}

TEST_F(ConfigStore, FailedStatementShowsBothMessages)
{
    ASSERT_TRUE(openSession());
    EXPECT_EQ(SongReadValue(QStringLiteral("it's"), QStringLiteral("k"), QStringLiteral("def")), u"def");
    ASSERT_EQ(dialogs.messages().size(), 2);
    EXPECT_TRUE(dialogs.messages()[0].startsWith(u"SongOpenRecordset failed! Err="));
    EXPECT_TRUE(dialogs.messages()[0].endsWith(
        u"\r\nSQL=select [value] from config where [section]='it's' and [key]='k'"));
    EXPECT_TRUE(dialogs.messages()[1].startsWith(u"SongReadValue failed! Err="));
    EXPECT_FALSE(SongExecute(QStringLiteral("delete * from song; delete * from singer")));
}

class ImageFields : public SessionFixture {};

TEST_F(ImageFields, PhotographRoundTripsByteForByte)
{
    ASSERT_TRUE(openSession());
    for (const qsizetype size : {qsizetype(25000), qsizetype(150000), qsizetype(1)}) {
        QByteArray photo(size, '\0');
        for (qsizetype i = 0; i < size; ++i)
            photo[i] = char(i * 31 + 7);
        const QString in = app.write(QStringLiteral("in.jpg"), photo);
        std::unique_ptr<Recordset> rs;
        ASSERT_TRUE(
            SongGetRecordset(QString(), QStringLiteral("singer"), QStringLiteral("name='x'"), QString(), rs));
        rs->AddNew();
        rs->Fields(QStringLiteral("name")).setValue(QStringLiteral("x"));
        ASSERT_TRUE(SaveImageField(rs.get(), in));
        rs->Requery();
        const QByteArray stored = rs->Fields(QStringLiteral("image")).Value().toByteArray();
        const qsizetype rest = size % 100000, blocks = qsizetype(std::nearbyint(double(size) / 100000));
        EXPECT_EQ(stored.size(), rest + 1 + blocks * 100001) << size;
        EXPECT_EQ(rs->Fields(QStringLiteral("image_len")).Value().toLongLong(), size);

        const QString out = app.file(QStringLiteral("out.jpg"));
        ASSERT_TRUE(LoadImageField(rs.get(), out));
        QFile f(out);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        EXPECT_EQ(f.readAll(), photo) << size;
        SongExecute(QStringLiteral("delete * from singer"));
    }
}

// An empty path clears the photograph; an empty file changes nothing but is still saved.
TEST_F(ImageFields, EmptyPathClearsAndEmptyFileKeeps)
{
    ASSERT_TRUE(openSession());
    SongExecute(QStringLiteral("insert into singer (name) values ('z')"));
    std::unique_ptr<Recordset> rs;
    ASSERT_TRUE(SongGetRecordset(QString(), QStringLiteral("singer"), QString(), QString(), rs));
    rs->Fields(QStringLiteral("remark")).setValue(QStringLiteral("kept"));
    ASSERT_TRUE(SaveImageField(rs.get(), app.write(QStringLiteral("p.jpg"), "jpeg")));
    rs->Fields(QStringLiteral("remark")).setValue(QStringLiteral("saved"));
    ASSERT_TRUE(SaveImageField(rs.get(), app.write(QStringLiteral("empty.jpg"), QByteArray())));
    rs->Requery();
    EXPECT_EQ(rs->Fields(QStringLiteral("image_len")).Value().toLongLong(), 4);
    EXPECT_EQ(rs->Fields(QStringLiteral("remark")).Text(), u"saved");
    ASSERT_TRUE(SaveImageField(rs.get(), QString()));
    rs->Requery();
    EXPECT_EQ(rs->Fields(QStringLiteral("image_len")).Value().toLongLong(), 0);
    EXPECT_TRUE(rs->Fields(QStringLiteral("image")).Value().toByteArray().isEmpty());
    EXPECT_TRUE(dialogs.messages().isEmpty());
}

TEST_F(ImageFields, NoPhotographWritesNoFile)
{
    ASSERT_TRUE(openSession());
    SongExecute(QStringLiteral("insert into singer (name) values ('y')"));
    std::unique_ptr<Recordset> rs;
    ASSERT_TRUE(SongGetRecordset(QStringLiteral("*"), QStringLiteral("singer"), QStringLiteral("all"),
                                 QString(), rs));
    EXPECT_FALSE(LoadImageField(rs.get(), app.file(QStringLiteral("none.jpg"))));
    EXPECT_FALSE(QFile::exists(app.file(QStringLiteral("none.jpg"))));
    EXPECT_FALSE(LoadImageField(nullptr, app.file(QStringLiteral("none.jpg"))));
}

}  // namespace
}  // namespace td
