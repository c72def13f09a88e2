// The channel detection over songs: which fields it writes (empty ones, or all when asked, and only on
// a confident verdict), what it lists for the operator, a cancel, the report and the admin command.
#include "VocalMedia.h"
#include "exchange/ExchangeTestSupport.h"
#include "songbook/DetectChannels.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace td;
using td::test::RecordingHost;
using td::test::rowsOf;
using td::test::VocalMedia;

namespace {

QStringList texts(std::initializer_list<const char*> list)
{
    QStringList out;
    for (const char* s : list)
        out << QString::fromUtf8(s);
    return out;
}

class DetectChannelsTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!VocalMedia::Get().ready())
            GTEST_SKIP() << qPrintable(VocalMedia::Get().error());
        CreateSongDatabase(file(), QStringLiteral("English"));
        db = OpenConnection(file());
    }
    QString file() const { return tmp.filePath(QStringLiteral("song.db")); }
    void song(int index, const QString& media, const QString& channel)
    {
        const QString library = QFileInfo(VocalMedia::Get().file(QStringLiteral("left.wav"))).absolutePath();
        db->execute(QStringLiteral("insert into song ([index], title, channel, media_file, library) values "
                                   "(%1, 'Song %1', %2, '/%3', '%4')")
                        .arg(index)
                        .arg(channel.isNull() ? QStringLiteral("null") : u'\'' + channel + u'\'')
                        .arg(media, library));
    }
    QStringList channels() { return rowsOf(*db, QStringLiteral("select [index], channel from song order by id")); }
    QStringList undecided(const DetectChannelsResult& result)
    {
        QStringList out;
        for (const UndecidedSong& s : result.undecided)
            out << s.index + u' ' + s.verdict.reason;
        return out;
    }

    QTemporaryDir tmp;
    std::unique_ptr<Connection> db;
    RecordingHost host;
};

TEST_F(DetectChannelsTest, FillsOnlyEmptyFieldsWithConfidentVerdicts)
{
    song(1, QStringLiteral("left.wav"), {});
    song(2, QStringLiteral("right.wav"), QStringLiteral("L"));
    song(3, QStringLiteral("silent.wav"), {});
    song(4, QStringLiteral("gone.wav"), QStringLiteral(""));
    song(5, QStringLiteral("mono_in_stereo.wav"), QStringLiteral(" "));
    const DetectChannelsResult result = DetectChannels(*db, {}, host);
    EXPECT_EQ(channels(), texts({"1|L", "2|L", "3|", "4|", "5|s"}));
    EXPECT_EQ(result.songs, 5);
    EXPECT_EQ(result.analysed, 3);
    EXPECT_EQ(result.written, 2);
    EXPECT_EQ(result.kept, 1);
    EXPECT_EQ(undecided(result), texts({"3 silent", "4 media file not found"}));
    EXPECT_EQ(host.events.value(0), QStringLiteral("start Listening to the songs... 5"));
    EXPECT_EQ(host.last(), u"end");
}

TEST_F(DetectChannelsTest, RedoRewritesFilledFieldsButNeverWithAGuess)
{
    song(1, QStringLiteral("right.wav"), QStringLiteral("L"));
    song(2, QStringLiteral("silent.wav"), QStringLiteral("R"));
    song(3, QStringLiteral("left.wav"), QStringLiteral("L"));
    DetectChannelsSettings settings;
    settings.redo = true;
    const DetectChannelsResult result = DetectChannels(*db, settings, host);
    EXPECT_EQ(channels(), texts({"1|R", "2|R", "3|L"}));
    EXPECT_EQ(result.written, 1);
    EXPECT_EQ(result.kept, 0);
}

TEST_F(DetectChannelsTest, WorksOnTheChosenSongsOnly)
{
    song(1, QStringLiteral("left.wav"), {});
    song(2, QStringLiteral("right.wav"), {});
    song(3, QStringLiteral("left.wav"), {});
    DetectChannelsSettings settings;
    settings.ids = {2, 3};
    DetectChannels(*db, settings, host);
    EXPECT_EQ(channels(), texts({"1|", "2|R", "3|L"}));
}

TEST_F(DetectChannelsTest, ACancelKeepsWhatWasWritten)
{
    for (int i = 1; i <= 5; ++i)
        song(i, QStringLiteral("left.wav"), {});
    host.cancelAt = 2;
    host.answers = {MsgAnswer::Yes};
    int analysed = 0;
    const DetectChannelsResult result = DetectChannels(*db, {}, host, [&analysed](const QString&) {
        ++analysed;
        ChannelVerdict v;
        v.channel = QStringLiteral("R");
        v.confidence = 0.9;
        return v;
    });
    EXPECT_TRUE(result.canceled);
    EXPECT_EQ(analysed, 2);
    EXPECT_EQ(channels(), texts({"1|R", "2|R", "3|", "4|", "5|"}));
    EXPECT_EQ(host.asked(), texts({"ask Do you want to cancel the process?"}));
}

TEST(ChannelReport, ListsTheUndecidedSongsInColumns)
{
    QTemporaryDir tmp;
    DetectChannelsResult result;
    UndecidedSong quiet{1, QStringLiteral("1001"), QStringLiteral("Moon River"), QStringLiteral("/lib/a.mpg"), {}};
    quiet.verdict.leaning = QStringLiteral("L");
    quiet.verdict.confidence = 0.42;
    quiet.verdict.reason = QStringLiteral("no clear difference");
    UndecidedSong lost{2, QStringLiteral("1002"), QStringLiteral("A title long enough to pass the next column"),
                       QStringLiteral("/lib/b.mpg"), {}};
    lost.verdict.reason = QStringLiteral("media file not found");
    result.undecided = {quiet, lost};
    const QString path = tmp.filePath(QStringLiteral("VocalChannel.log"));
    ASSERT_TRUE(WriteChannelReport(path, result));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromLocal8Bit(f.readAll()).split(u'\n');
    ASSERT_EQ(lines.size(), 12);  // the last one after the closing line break
    EXPECT_EQ(lines[0], QString(9, u' ') + u' ' + QString(70, u'*'));
    EXPECT_TRUE(lines[1].startsWith(QString(9 + 13, u' ') + QStringLiteral("Vocal channel of songs - ")));
    EXPECT_EQ(lines[2], lines[0]);
    EXPECT_EQ(lines[3], QString());
    EXPECT_EQ(lines[4], QStringLiteral("Listen to these songs in the preview :"));
    EXPECT_EQ(lines[5], QString(80, u'-'));
    EXPECT_EQ(lines[6], QStringLiteral("index      title                       reason                media_file"));
    EXPECT_EQ(lines[7], QStringLiteral(" 1001      Moon River                  leans to L (0.42)     /lib/a.mpg"));
    EXPECT_EQ(lines[8], QStringLiteral(" 1002      A title long enough to pass the next column"));
    EXPECT_EQ(lines[9], QString(39, u' ') + QStringLiteral("media file not found  /lib/b.mpg"));
    EXPECT_EQ(lines[10], QString());
}

TEST_F(DetectChannelsTest, AdminCommandFillsTheSongbook)
{
    song(1, QStringLiteral("left.wav"), {});
    song(2, QStringLiteral("right.wav"), QStringLiteral("L"));
    song(3, QStringLiteral("silent.wav"), {});
    db.reset();
    const QString admin = QStringLiteral(TUNEDESK_BINARY_DIR "/tunedesk-admin");
    auto run = [&](const QStringList& args, QString* out = nullptr) {
        QProcess p;
        p.start(admin, args);
        p.waitForFinished(60000);
        if (out)
            *out = QString::fromUtf8(p.readAllStandardOutput());
        return p.exitCode();
    };
    QString out;
    ASSERT_EQ(run({QStringLiteral("channels"), file()}, &out), 0);
    EXPECT_TRUE(out.startsWith(QStringLiteral("3 songs, 2 analysed, 1 channels written, 1 kept, 1 undecided")))
        << qPrintable(out);
    db = OpenConnection(file());
    EXPECT_EQ(channels(), texts({"1|L", "2|L", "3|"}));
    db.reset();
    ASSERT_EQ(run({QStringLiteral("channels"), file(), QStringLiteral("--all")}), 0);
    db = OpenConnection(file());
    EXPECT_EQ(channels(), texts({"1|L", "2|R", "3|"}));
    EXPECT_EQ(run({QStringLiteral("channels"), file(), QStringLiteral("--all"), QStringLiteral("--empty-only")}), 2);
    EXPECT_EQ(run({QStringLiteral("channels"), tmp.filePath(QStringLiteral("none.db"))}), 2);
}

}  // namespace
