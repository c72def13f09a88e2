// The songbook check against a songbook and libraries in a temporary folder: the reports line by line,
// the remark it writes, isolated files beside their song information files, libraries that are gone.
#include "checks/SongbookCheck.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "CheckHost.h"
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace td;
using td::test::CheckHost;
using td::test::rowsOf;

namespace {

const QString kStars = QString(9, u' ') + u' ' + QString(70, u'*');
const QString kRule = QString(80, u'-');

// The libraries lie below the current directory, so the roots and the report lines are the same in
// every run.
class SongbookCheckTest : public testing::Test {
protected:
    void SetUp() override
    {
        oldDir = QDir::currentPath();
        QDir::setCurrent(tmp.path());
        QDir().mkpath(QStringLiteral("reports"));
        CreateSongDatabase(QStringLiteral("song.db"), QStringLiteral("English"));
        db = OpenConnection(QStringLiteral("song.db"));
        settings.reportDir = QStringLiteral("reports");
        settings.showReport = [this](const QString& report) { shown << report; };
    }
    void TearDown() override
    {
        db.reset();
        QDir::setCurrent(oldDir);
    }

    void library(const QString& root, bool present = true)
    {
        if (present)
            QDir().mkpath(root);
        db->execute(QStringLiteral("insert into library (root_path) values ('") + root + QStringLiteral("')"));
    }
    void file(const QString& path)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("media");
    }
    // index and the texts as SQL literals ("NULL" for none).
    void song(const QString& index, const QString& title, const QString& lib, const QString& media,
              const QString& remark = QStringLiteral("NULL"))
    {
        db->execute(QStringLiteral("insert into song ([index], title, library, media_file, remark) values (%1, %2, "
                                   "%3, %4, %5)")
                        .arg(index, title, lib, media, remark));
    }
    static QStringList reportLines(const QString& path)
    {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly))
            return {QStringLiteral("<no report>")};
        return QString::fromUtf8(f.readAll()).split(u'\n');
    }
    // The report after its opening block, whose title line must hold the title and a date and time.
    static QStringList body(const QString& path, const QString& title)
    {
        QStringList lines = reportLines(path);
        EXPECT_GE(lines.size(), 4);
        EXPECT_EQ(lines.value(0), kStars);
        EXPECT_TRUE(QRegularExpression(QStringLiteral("^ {9}") + QRegularExpression::escape(title) +
                                       QStringLiteral("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"))
                        .match(lines.value(1))
                        .hasMatch())
            << lines.value(1).toStdString();
        EXPECT_EQ(lines.value(2), kStars);
        EXPECT_EQ(lines.value(3), QString());
        return lines.mid(4);
    }

    QTemporaryDir tmp;
    QString oldDir;
    std::unique_ptr<Connection> db;
    CheckSettings settings;
    QStringList shown;
    CheckHost host;
};

// The libraries come in the store's order of their roots.
TEST_F(SongbookCheckTest, LibraryReportPutsTheVerdictInTheNextPrintZone)
{
    library(QStringLiteral("lib"));
    library(QStringLiteral("gone"), false);
    library(QStringLiteral("歌库/流行"));
    library(QStringLiteral("a/root/that/runs/past/a/zone"));
    const CheckOutcome out = CheckLibraries(*db, settings, host);
    EXPECT_EQ(out.errors, 1);
    EXPECT_EQ(body(QStringLiteral("reports/CheckLibrary.log"),
                   QStringLiteral("             Check all libraries in system - ")),
              (QStringList{QStringLiteral("Check karaoke libraries :"), kRule,
                           QStringLiteral("Library1 : a/root/that/runs/past/a/zone   - checked ok"),
                           QStringLiteral("Library2 : gone             - can't find root path of the library"),
                           QStringLiteral("Library3 : lib              - checked ok"),
                           QStringLiteral("Library4 : 歌库/流行            - checked ok"),
                           QString(), QString()}));
    EXPECT_EQ(shown, QStringList{QStringLiteral("reports/CheckLibrary.log")});
    EXPECT_EQ(host.events,
              (QStringList{QStringLiteral("ask Begin to check all libraries in system?"),
                           QStringLiteral("start Check karaoke libraries ... 4"), QStringLiteral("end")}));
}

TEST_F(SongbookCheckTest, NoLibrariesIsAWarningAndNoError)
{
    CheckLibraries(*db, settings, host);
    EXPECT_EQ(body(QStringLiteral("reports/CheckLibrary.log"),
                   QStringLiteral("             Check all libraries in system - ")),
              (QStringList{QStringLiteral("Check karaoke libraries :"), kRule,
                           QStringLiteral("Warning : There isn't any karaoke library in the system!"), QString(),
                           QString()}));
    EXPECT_TRUE(shown.isEmpty());
    EXPECT_EQ(host.messages(), QStringList{QStringLiteral("info There is no error in karaoke libraries.")});
}

TEST_F(SongbookCheckTest, SaidNoToTheQuestionTouchesNothing)
{
    host.answers = {MsgAnswer::No};
    EXPECT_FALSE(CheckSongs(*db, settings, host).ran);
    EXPECT_FALSE(QFile::exists(QStringLiteral("reports/CheckSong.log")));
}

TEST_F(SongbookCheckTest, SongReportListsMissingFilesInTabColumnsAndWritesTheRemark)
{
    library(QStringLiteral("lib"));
    file(QStringLiteral("lib/a.mp3"));
    song(QStringLiteral("1001"), QStringLiteral("'Yesterday'"), QStringLiteral("'lib'"), QStringLiteral("'/a.mp3'"),
         QStringLiteral("'keep'"));
    song(QStringLiteral("1002"), QStringLiteral("'月亮代表我的心'"), QStringLiteral("'lib'"),
         QStringLiteral("'/missing.mp3'"), QStringLiteral("'old remark'"));
    song(QStringLiteral("1003"), QStringLiteral("'A Very Long Title That Runs Past Forty'"), QStringLiteral("'lib'"),
         QStringLiteral("'/missing2.vob'"));
    song(QStringLiteral("NULL"), QStringLiteral("'No number'"), QStringLiteral("NULL"), QStringLiteral("'/x.mp3'"));
    song(QStringLiteral("123456789"), QStringLiteral("'No file'"), QStringLiteral("'lib'"), QStringLiteral("NULL"));
    const CheckOutcome out = CheckSongs(*db, settings, host);
    EXPECT_EQ(out.errors, 4);
    EXPECT_EQ(body(QStringLiteral("reports/CheckSong.log"), QStringLiteral("             Check songs in Songbook - ")),
              (QStringList{
                  QStringLiteral("Can't find media files of these songs :"), kRule,
                  QStringLiteral("index              title               media_file"),
                  QStringLiteral(" 1002              月亮代表我的心             lib/missing.mp3"),
                  QStringLiteral(" 1003              A Very Long Title That Runs Past Forty"),
                  QString(39, u' ') + QStringLiteral("lib/missing2.vob"),
                  QStringLiteral("                   No number           /x.mp3"),
                  QStringLiteral(" 123456789         No file             lib/"),
                  QString(), QString()}));
    EXPECT_EQ(rowsOf(*db, QStringLiteral("select [index], remark from song order by id")),
              (QStringList{QStringLiteral("1001|keep"), QStringLiteral("1002|Error - media file missing"),
                           QStringLiteral("1003|Error - media file missing"), QStringLiteral("|Error - media file missing"),
                           QStringLiteral("123456789|Error - media file missing")}));
    EXPECT_EQ(shown, QStringList{QStringLiteral("reports/CheckSong.log")});
    EXPECT_EQ(host.messages(),
              QStringList{QStringLiteral("info 4 song(s) in songbook missed media files.\r\nTheir remark fields have "
                                         "be updated already, you can check them in songbook later")});
}

TEST_F(SongbookCheckTest, EmptySongbookLeavesOnlyTheOpeningBlock)
{
    CheckSongs(*db, settings, host);
    EXPECT_EQ(body(QStringLiteral("reports/CheckSong.log"), QStringLiteral("             Check songs in Songbook - ")),
              (QStringList{QString(), QString()}));
    EXPECT_EQ(host.messages(), QStringList{QStringLiteral("info There isn't media files error in songbook.")});
}

TEST_F(SongbookCheckTest, CancelKeepsTheRemarksWrittenAndShowsNothing)
{
    library(QStringLiteral("lib"));
    for (int i = 0; i < 5; ++i)
        song(QString::number(2000 + i), QStringLiteral("'t'"), QStringLiteral("'lib'"),
             QStringLiteral("'/none%1.mp3'").arg(i));
    host.cancelAt = 2;
    host.answers = {MsgAnswer::Yes, MsgAnswer::Yes};
    const CheckOutcome out = CheckSongs(*db, settings, host);
    EXPECT_TRUE(out.stopped);
    EXPECT_EQ(rowsOf(*db, QStringLiteral("select count(*) from song where remark is not null")),
              QStringList{QStringLiteral("2")});
    EXPECT_TRUE(shown.isEmpty());
    EXPECT_TRUE(host.messages().isEmpty());
    EXPECT_EQ(host.events.last(), QStringLiteral("end"));
}

TEST_F(SongbookCheckTest, ReportThatCannotBeCreatedEndsThroughTheErrorQuestion)
{
    settings.reportDir = QStringLiteral("no/such/dir");
    const CheckOutcome out = CheckLibraries(*db, settings, host);
    EXPECT_TRUE(out.stopped);
    ASSERT_EQ(host.events.size(), 3);
    EXPECT_TRUE(host.events[1].startsWith(
        QStringLiteral("ask An error take place while checking karaoke libraries! Err=Can't create file")));
    EXPECT_TRUE(host.events[1].endsWith(QStringLiteral("\r\nStop checking?")));
}

class IsolatedMediaTest : public SongbookCheckTest {
protected:
    void SetUp() override
    {
        SongbookCheckTest::SetUp();
        library(QStringLiteral("lib"));
        library(QStringLiteral("gone"), false);
        for (const char* name : {"lib/used.mp3", "lib/used.son", "lib/歌曲/孤单.vob", "lib/歌曲/孤单.son",
                                 "lib/deep/er/lost.DAT", "lib/notes.txt", "lib/slashless.avi", "outside/free.mp3"})
            file(QString::fromUtf8(name));
        song(QStringLiteral("1"), QStringLiteral("'used'"), QStringLiteral("'lib'"), QStringLiteral("'/used.mp3'"));
        // Written without its leading separator, so it does not refer to the file.
        song(QStringLiteral("2"), QStringLiteral("'x'"), QStringLiteral("'lib'"), QStringLiteral("'slashless.avi'"));
    }
    const QStringList isolated{QStringLiteral("lib/slashless.avi"), QStringLiteral("lib/歌曲/孤单.vob"),
                               QStringLiteral("lib/deep/er/lost.DAT")};
};

TEST_F(IsolatedMediaTest, SearchReportsMediaFilesNoSongUsesButNeverSongFiles)
{
    EXPECT_EQ(SearchIsolatedMedias(*db, settings, host), isolated);
    QStringList expected{QStringLiteral("Can't find relative songs of these media files :"), kRule,
                         QStringLiteral("media_file")};
    expected << isolated << QString() << QString();
    EXPECT_EQ(body(QStringLiteral("reports/IsolatedMedia.log"),
                   QStringLiteral("             Isolated media files in libraries - ")),
              expected);
    EXPECT_EQ(shown, QStringList{QStringLiteral("reports/IsolatedMedia.log")});
}

TEST_F(IsolatedMediaTest, FileTypeOfTheSongbookChoosesTheCandidates)
{
    db->execute(QStringLiteral("insert into config ([section], [key], [value]) values ('Default', 'FileType', '*.txt')"));
    EXPECT_EQ(SearchIsolatedMedias(*db, settings, host), QStringList{QStringLiteral("lib/notes.txt")});
}

TEST_F(IsolatedMediaTest, NoMediaAtAllSaysSoAndLeavesTheOpeningBlock)
{
    db->execute(QStringLiteral("delete from library where root_path='lib'"));
    EXPECT_TRUE(SearchIsolatedMedias(*db, settings, host).isEmpty());
    EXPECT_EQ(body(QStringLiteral("reports/IsolatedMedia.log"),
                   QStringLiteral("             Isolated media files in libraries - ")),
              QStringList{QString()});
    EXPECT_EQ(host.messages(), QStringList{QStringLiteral("info Didn't find any media file in libraries!")});
}

TEST_F(IsolatedMediaTest, AddGivesEachFileASongWithoutANumber)
{
    EXPECT_EQ(AddIsolatedMedias(*db, settings, host), 3);
    const QStringList rows = rowsOf(
        *db, QStringLiteral("select [index], title, library, media_file, remark from song where id > 2 order by id"));
    ASSERT_EQ(rows.size(), 3);
    const QRegularExpression stamp(QStringLiteral("\\|Add media at \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"));
    EXPECT_EQ(QString(rows[1]).remove(stamp), QStringLiteral("0|孤单|lib|/歌曲/孤单.vob"));
    EXPECT_EQ(QString(rows[2]).remove(stamp), QStringLiteral("0|lost|lib|/deep/er/lost.DAT"));
    EXPECT_TRUE(host.events.contains(QStringLiteral("ask 3 media files will be added to songbook, continue?")));
    EXPECT_EQ(host.messages().last(), QStringLiteral("info 3 media file(s) added to songbook."));
    // Now every file is used.
    CheckHost again;
    EXPECT_TRUE(SearchIsolatedMedias(*db, settings, again).isEmpty());
}

TEST_F(IsolatedMediaTest, DeleteRemovesTheMediaFilesAndLeavesTheirSongFiles)
{
    QFile::setPermissions(QStringLiteral("lib/deep/er/lost.DAT"), QFileDevice::ReadOwner);
    EXPECT_EQ(DeleteIsolatedMedias(*db, settings, host), 3);
    for (const QString& path : isolated)
        EXPECT_FALSE(QFile::exists(path)) << path.toStdString();
    EXPECT_TRUE(QFile::exists(QStringLiteral("lib/歌曲/孤单.son")));
    EXPECT_TRUE(QFile::exists(QStringLiteral("lib/used.mp3")));
    EXPECT_TRUE(QFile::exists(QStringLiteral("outside/free.mp3")));
    EXPECT_EQ(host.messages().last(), QStringLiteral("info 3 media file(s) deleted from harddisk."));
}

TEST_F(IsolatedMediaTest, NoToTheCountQuestionDeletesNothing)
{
    host.answers = {MsgAnswer::Yes, MsgAnswer::No};
    EXPECT_EQ(DeleteIsolatedMedias(*db, settings, host), 0);
    EXPECT_TRUE(QFile::exists(QStringLiteral("lib/slashless.avi")));
}

}  // namespace
