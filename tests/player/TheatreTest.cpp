// The preview player over media made at test time: what opens and what is refused (and how fast),
// the state through play, pause, seek, end and close, and which recorded channel reaches the speakers.
#include "support/TheatreMedia.h"
#include "controls/ctlTheatre.h"
#include "support/QtApp.h"
#include "support/QtPrint.h"
#include "support/TempAppDir.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>

using namespace td;
using test::TheatreMedia;

namespace {

// A bad file must be answered well inside the player's own deadline for opening (4 s).
constexpr qint64 kRefusalMs = 1500;

const ctlTheatre::Output kSilent{QStringLiteral("null"), QStringLiteral("null"), {}};

// Lets the interface thread work, as the console's loop would, until the condition holds.
bool waitFor(const std::function<bool()>& condition, int ms = 3000)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return condition();
}

void runFor(int ms)
{
    waitFor([] { return false; }, ms);
}

class TheatreTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!media.ready())
            GTEST_SKIP() << media.error().toStdString();
    }

    QString file(const char* name) const { return media.file(QString::fromUtf8(name)); }
    static QString state(const ctlTheatre& player) { return player.GetInfo(QStringLiteral("PlayerState")); }
    static int position(const ctlTheatre& player)
    {
        return player.GetInfo(QStringLiteral("position")).toInt();
    }

    bool appReady = (test::EnsureQtApp(), true);
    const TheatreMedia& media = TheatreMedia::Get();
    test::TempAppDir appDir;  // the event log goes here
};

struct GoodFile {
    const char* name;
    const char* length;
    const char* hasVideo;
};

class TheatreOpens : public TheatreTest, public ::testing::WithParamInterface<GoodFile> {};

TEST_P(TheatreOpens, ReportsLengthPictureAndName)
{
    ctlTheatre player(kSilent);
    const QString path = QString::fromUtf8(GetParam().name) == QLatin1String("odd") ? media.oddlyNamedClip()
                                                                                    : file(GetParam().name);
    ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), path));
    EXPECT_EQ(player.GetInfo(QStringLiteral("Length")), QString::fromUtf8(GetParam().length));
    EXPECT_EQ(player.GetInfo(QStringLiteral("HasVideo")), QString::fromUtf8(GetParam().hasVideo));
    EXPECT_EQ(player.GetInfo(QStringLiteral("FileName")), path);
    EXPECT_EQ(state(player), QStringLiteral("0"));
}

INSTANTIATE_TEST_SUITE_P(Media, TheatreOpens,
                         ::testing::Values(GoodFile{"clip.mpg", "4", "True"},
                                           GoodFile{"clip.dat", "4", "True"},
                                           GoodFile{"cover.mp3", "3", "False"},  // cover art is no picture
                                           GoodFile{"mono.mp3", "2", "False"}, GoodFile{"odd", "4", "True"}));

class TheatreRefuses : public TheatreTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(TheatreRefuses, BadFilesPromptlyAndLeavesNothingOpen)
{
    ctlTheatre player(kSilent);
    ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
    ASSERT_TRUE(player.DoCommand(QStringLiteral("play")));

    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(player.DoCommand(QStringLiteral("open"), file(GetParam())));
    const qint64 took = clock.elapsed();
    EXPECT_LT(took, kRefusalMs);
    RecordProperty("refusal_ms", static_cast<int>(took));

    EXPECT_EQ(player.GetInfo(QStringLiteral("FileName")), QString());
    EXPECT_EQ(state(player), QStringLiteral("0"));
    EXPECT_EQ(player.GetInfo(QStringLiteral("Length")), QStringLiteral("0"));
    EXPECT_FALSE(player.DoCommand(QStringLiteral("play"))) << "nothing is left to play";
    runFor(200);
    EXPECT_EQ(position(player), 0);
}

INSTANTIATE_TEST_SUITE_P(Media, TheatreRefuses,
                         ::testing::Values("missing.mpg", "empty.mpg", "words.vob", "noise.mpg", ".",
                                           "pipe.mpg"));

TEST_F(TheatreTest, TruncatedFileIsAnsweredInTimeAndEndsByItself)
{
    ctlTheatre player(kSilent);
    QSignalSpy stopped(&player, &ctlTheatre::PlayStopped);
    QElapsedTimer clock;
    clock.start();
    const bool opened = player.DoCommand(QStringLiteral("open"), file("truncated.mpg"));
    EXPECT_LT(clock.elapsed(), kRefusalMs);
    if (opened) {
        ASSERT_TRUE(player.DoCommand(QStringLiteral("play")));
        EXPECT_TRUE(waitFor([&] { return stopped.count() > 0; }, 3000));
        EXPECT_EQ(state(player), QStringLiteral("0"));
    }
}

TEST_F(TheatreTest, PlayPauseResumeAndCloseMoveTheState)
{
    ctlTheatre player(kSilent);
    QSignalSpy moved(&player, &ctlTheatre::PositionChanged);
    QSignalSpy stopped(&player, &ctlTheatre::PlayStopped);
    EXPECT_FALSE(player.DoCommand(QStringLiteral("play"))) << "nothing opened yet";
    EXPECT_FALSE(player.DoCommand(QStringLiteral("Pause")));

    ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
    EXPECT_FALSE(player.DoCommand(QStringLiteral("Pause"))) << "not playing yet";
    ASSERT_TRUE(player.DoCommand(QStringLiteral("play")));
    EXPECT_EQ(state(player), QStringLiteral("1"));
    ASSERT_TRUE(waitFor([&] { return position(player) >= 1; }));
    EXPECT_TRUE(waitFor([&] { return moved.count() >= 1; }));

    ASSERT_TRUE(player.DoCommand(QStringLiteral("Pause")));
    EXPECT_EQ(state(player), QStringLiteral("2"));
    runFor(100);
    const QString pausedAt = player.GetInfo(QStringLiteral("position"));
    const qsizetype movesWhilePaused = moved.count();
    runFor(1100);
    EXPECT_EQ(player.GetInfo(QStringLiteral("position")), pausedAt);
    EXPECT_EQ(moved.count(), movesWhilePaused);

    ASSERT_TRUE(player.DoCommand(QStringLiteral("Play")));
    EXPECT_EQ(state(player), QStringLiteral("1"));
    EXPECT_TRUE(waitFor([&] { return moved.count() > movesWhilePaused; }));

    ASSERT_TRUE(player.DoCommand(QStringLiteral("close")));
    EXPECT_EQ(state(player), QStringLiteral("0"));
    EXPECT_EQ(player.GetInfo(QStringLiteral("FileName")), QString());
    EXPECT_EQ(player.GetInfo(QStringLiteral("HasVideo")), QStringLiteral("False"));
    runFor(200);
    EXPECT_EQ(stopped.count(), 0) << "a close is no stop by itself";
}

TEST_F(TheatreTest, SeekTakesWholeSecondsAndRefusesWhatIsNoPosition)
{
    ctlTheatre player(kSilent);
    EXPECT_FALSE(player.DoCommand(QStringLiteral("Seek"), 1)) << "nothing opened";
    ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
    QSignalSpy moved(&player, &ctlTheatre::PositionChanged);
    ASSERT_TRUE(player.DoCommand(QStringLiteral("Seek"), 2));
    EXPECT_TRUE(waitFor([&] { return position(player) == 2; })) << position(player);
    // The position can be read before the core's notice of it has been drained into the event.
    EXPECT_TRUE(waitFor([&] { return moved.count() >= 1; }));
    EXPECT_EQ(state(player), QStringLiteral("0")) << "a seek does not start playing";
    EXPECT_TRUE(player.DoCommand(QStringLiteral("Seek"), QStringLiteral("1")));
    EXPECT_TRUE(waitFor([&] { return position(player) == 1; }));
    EXPECT_FALSE(player.DoCommand(QStringLiteral("Seek"), QStringLiteral("later")));
    EXPECT_FALSE(player.DoCommand(QStringLiteral("Seek"), -3));
}

TEST_F(TheatreTest, EndOfFileStopsOnceKeepsTheFileAndPlaysAgainFromTheStart)
{
    ctlTheatre player(kSilent);
    QSignalSpy stopped(&player, &ctlTheatre::PlayStopped);
    ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
    ASSERT_TRUE(player.DoCommand(QStringLiteral("Seek"), 3));
    ASSERT_TRUE(player.DoCommand(QStringLiteral("play")));
    ASSERT_TRUE(waitFor([&] { return stopped.count() > 0; }, 3000));
    EXPECT_EQ(state(player), QStringLiteral("0"));
    runFor(300);
    EXPECT_EQ(stopped.count(), 1);
    EXPECT_EQ(player.GetInfo(QStringLiteral("FileName")), file("clip.mpg"));

    ASSERT_TRUE(player.DoCommand(QStringLiteral("play")));
    EXPECT_EQ(state(player), QStringLiteral("1"));
    EXPECT_TRUE(waitFor([&] { return position(player) == 0; }, 1000));
    runFor(300);
    EXPECT_EQ(state(player), QStringLiteral("1"));
    EXPECT_EQ(stopped.count(), 1);
}

TEST_F(TheatreTest, UnknownVerbsAndNamesAnswerNothing)
{
    ctlTheatre player(kSilent);
    ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
    for (const char* verb : {"Open", "PLAY", "pause", "seek", "Close", "stop", ""})
        EXPECT_FALSE(player.DoCommand(QString::fromUtf8(verb), 1)) << verb;
    for (const char* choice : {"LEFT", "x", "", "S"})
        EXPECT_FALSE(player.DoCommand(QStringLiteral("channel"), QString::fromUtf8(choice))) << choice;
    for (const char* name : {"playerstate", "Position", "length", "Volume", ""})
        EXPECT_EQ(player.GetInfo(QString::fromUtf8(name)), QString()) << name;
    EXPECT_EQ(state(player), QStringLiteral("0")) << "nothing above started anything";
}

TEST_F(TheatreTest, DoubleClickOnThePictureIsReported)
{
    ctlTheatre player(kSilent);
    player.resize(160, 120);
    QSignalSpy clicked(&player, &ctlTheatre::DblClick);
    QTest::mouseDClick(&player, Qt::LeftButton);
    EXPECT_EQ(clicked.count(), 1);
}

TEST_F(TheatreTest, ErrorsOfTheMediaLibraryGoToTheEventLog)
{
    ctlTheatre player(kSilent);
    EXPECT_FALSE(player.DoCommand(QStringLiteral("open"), file("words.vob")));
    QFile log(appDir.file(QStringLiteral("event.log")));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("Player")) << "the refusal is on record";
}

// The sound the player put out, written to a WAV file: which tone each speaker got.
class TheatreChannels : public TheatreTest {
protected:
    ctlTheatre::Output pcm() const
    {
        return {QStringLiteral("null"), QStringLiteral("pcm"), appDir.file(QStringLiteral("out.wav"))};
    }

    test::WavSound heard()
    {
        test::WavSound sound;
        EXPECT_TRUE(test::ReadWav(appDir.file(QStringLiteral("out.wav")), sound));
        return sound;
    }

    // "440", "880" or "none" for the tone that carries a speaker over a stretch of the sound.
    static std::string tone(const test::WavSound& sound, size_t channel, double fromSecond, double seconds)
    {
        if (channel >= sound.channels.size())
            return "no channel";
        const auto from = static_cast<size_t>(fromSecond * sound.rate);
        const auto count = static_cast<size_t>(seconds * sound.rate);
        const auto& samples = sound.channels[channel];
        if (samples.size() < from + count)
            return "too short: " + std::to_string(samples.size()) + " samples";
        const double low = test::ToneStrength(samples, sound.rate, 440, from, count);
        const double high = test::ToneStrength(samples, sound.rate, 880, from, count);
        if (low > 20 * high)
            return "440";
        if (high > 20 * low)
            return "880";
        return "none";
    }

    static double secondsOf(const test::WavSound& sound)
    {
        return sound.channels.empty() ? 0.0 : static_cast<double>(sound.channels[0].size()) / sound.rate;
    }
};

struct ChannelCase {
    const char* choice;
    const char* left;
    const char* right;
};

class TheatreChannelChoice : public TheatreChannels, public ::testing::WithParamInterface<ChannelCase> {};

TEST_P(TheatreChannelChoice, PutsTheChosenRecordingOnBothSpeakers)
{
    {
        ctlTheatre player(pcm());
        // Chosen before the file: the choice holds for what is opened after it.
        ASSERT_TRUE(player.DoCommand(QStringLiteral("channel"), QString::fromUtf8(GetParam().choice)));
        ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
        ASSERT_TRUE(player.DoCommand(QStringLiteral("play")));
        runFor(450);
    }
    const test::WavSound sound = heard();
    ASSERT_EQ(sound.channels.size(), 2u);
    EXPECT_EQ(tone(sound, 0, 0.05, 0.2), GetParam().left);
    EXPECT_EQ(tone(sound, 1, 0.05, 0.2), GetParam().right);
}

INSTANTIATE_TEST_SUITE_P(Choices, TheatreChannelChoice,
                         ::testing::Values(ChannelCase{"L", "440", "440"}, ChannelCase{"left", "440", "440"},
                                           ChannelCase{"r", "880", "880"}, ChannelCase{"s", "440", "880"}));

// The WAV writer takes sound as fast as it comes, up to a second and a half ahead of the picture, so
// the switch is looked for in what was written after it: the end of the clip.
TEST_F(TheatreChannels, SwitchWhilePlayingTakesEffectWithoutReopening)
{
    {
        ctlTheatre player(pcm());
        QSignalSpy stopped(&player, &ctlTheatre::PlayStopped);
        ASSERT_TRUE(player.DoCommand(QStringLiteral("channel"), QStringLiteral("l")));
        ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
        ASSERT_TRUE(player.DoCommand(QStringLiteral("Seek"), 1));
        ASSERT_TRUE(player.DoCommand(QStringLiteral("play")));
        runFor(300);
        ASSERT_TRUE(player.DoCommand(QStringLiteral("channel"), QStringLiteral("right")));
        EXPECT_EQ(state(player), QStringLiteral("1"));
        ASSERT_TRUE(waitFor([&] { return stopped.count() > 0; }, 4000));
    }
    const test::WavSound sound = heard();
    const double end = secondsOf(sound);
    ASSERT_GT(end, 1.5);
    EXPECT_EQ(tone(sound, 0, 0.05, 0.2), "440");
    EXPECT_EQ(tone(sound, 1, 0.05, 0.2), "440");
    EXPECT_EQ(tone(sound, 0, end - 0.3, 0.2), "880");
    EXPECT_EQ(tone(sound, 1, end - 0.3, 0.2), "880");
}

TEST_F(TheatreChannels, OpenedFileIsSilentUntilPlayed)
{
    {
        ctlTheatre player(pcm());
        ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
        runFor(300);
    }
    test::WavSound sound;
    test::ReadWav(appDir.file(QStringLiteral("out.wav")), sound);  // no file at all is silence too
    EXPECT_LT(secondsOf(sound), 0.02);
}

// A file with no picture is written faster than it plays: it is heard to its end.
TEST_F(TheatreChannels, ChoiceOutlivesTheFileAndMonoStillPlays)
{
    {
        ctlTheatre player(pcm());
        QSignalSpy stopped(&player, &ctlTheatre::PlayStopped);
        ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
        ASSERT_TRUE(player.DoCommand(QStringLiteral("channel"), QStringLiteral("R")));
        ASSERT_TRUE(player.DoCommand(QStringLiteral("close")));
        ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("mono.mp3")));
        ASSERT_TRUE(player.DoCommand(QStringLiteral("play")));
        ASSERT_TRUE(waitFor([&] { return stopped.count() > 0; }, 4000));
    }
    const test::WavSound sound = heard();
    ASSERT_EQ(sound.channels.size(), 2u) << "mono is put on both speakers";
    EXPECT_GT(secondsOf(sound), 1.5);
    EXPECT_EQ(tone(sound, 0, 0.5, 0.5), "440");
    EXPECT_EQ(tone(sound, 1, 0.5, 0.5), "440");
}

// Under a real display the picture is drawn inside the widget, also for a file opened while the
// widget was hidden; the offscreen test platform has no GL and the player runs without a picture.
TEST_F(TheatreTest, PictureIsDrawnWhereGlIsAvailable)
{
    ctlTheatre player;
    player.resize(160, 120);
    QWidget* picture = player.findChild<QWidget*>();
    if (!picture)
        GTEST_SKIP() << "no GL on the platform " << qgetenv("QT_QPA_PLATFORM").toStdString();
    ASSERT_TRUE(player.DoCommand(QStringLiteral("open"), file("clip.mpg")));
    ASSERT_TRUE(player.DoCommand(QStringLiteral("play")));
    player.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&player));
    // The test pattern is mostly bright colour bars; an empty picture is black.
    auto lit = [&] {
        const QImage image = picture->grab().toImage();
        int bright = 0;
        for (int y = 0; y < image.height(); y += 8)
            for (int x = 0; x < image.width(); x += 8)
                bright += image.pixelColor(x, y).lightness() > 40;
        return bright > 100;
    };
    EXPECT_TRUE(waitFor(lit, 3000)) << "the test picture never showed";
}

}  // namespace
