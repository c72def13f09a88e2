// The vocal channel analysis on generated karaoke media with known answers, in the formats a library
// holds, and the files it must not pretend to judge.
#include "VocalMedia.h"
#include "songbook/VocalChannel.h"
#include "songdb/DemoVoice.h"
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace td;
using td::test::VocalMedia;

namespace {

struct Known {
    const char* file;
    const char* channel;
    const char* reason;  // for "unknown"
};

class VocalChannelTest : public testing::TestWithParam<Known> {
protected:
    void SetUp() override
    {
        if (!VocalMedia::Get().ready())
            GTEST_SKIP() << qPrintable(VocalMedia::Get().error());
    }
};

TEST_P(VocalChannelTest, AnswersAsKnown)
{
    const Known& known = GetParam();
    QElapsedTimer timer;
    timer.start();
    const ChannelVerdict verdict = DetectVocalChannel(VocalMedia::Get().file(QString::fromUtf8(known.file)));
    EXPECT_EQ(verdict.channel, QString::fromUtf8(known.channel))
        << "confidence " << verdict.confidence << " leaning " << qPrintable(verdict.leaning) << " reason "
        << qPrintable(verdict.reason);
    EXPECT_EQ(verdict.reason, QString::fromUtf8(known.reason));
    if (verdict.channel != u"unknown")
        EXPECT_GE(verdict.confidence, kChannelConfident);
    else
        EXPECT_LT(verdict.confidence, kChannelConfident);
    EXPECT_LT(timer.elapsed(), 2000) << "one song should take well under a second";
}

INSTANTIATE_TEST_SUITE_P(
    Media, VocalChannelTest,
    testing::Values(Known{"left.wav", "L", ""}, Known{"right.wav", "R", ""}, Known{"quiet_left.mp3", "L", ""},
                    Known{"long_right.wav", "R", ""}, Known{"long_right.mpg", "R", ""},
                    Known{"mono_in_stereo.wav", "s", ""}, Known{"mono_in_stereo.mp2", "s", ""},
                    Known{"mono.mp3", "s", ""}, Known{"silent.wav", "unknown", "silent"},
                    Known{"short_left.wav", "unknown", "too little sound"},
                    Known{"words.vob", "unknown", "not a media file"},
                    Known{"missing.mpg", "unknown", "not a media file"}),
    [](const testing::TestParamInfo<Known>& info) {
        return QString::fromUtf8(info.param.file).replace(u'.', u'_').toStdString();
    });

TEST(VocalChannelSpeech, RealSpeechOnTheRightIsFound)
{
    if (!VocalMedia::Get().ready() || !VocalMedia::Get().hasSpeech())
        GTEST_SKIP() << "espeak-ng is not installed";
    EXPECT_EQ(DetectVocalChannel(VocalMedia::Get().file(QStringLiteral("speech_right.wav"))).channel, u"R");
}

// The judgement does not favour a side: the same track with its channels swapped gets the other answer,
// at every voice level and with the band a little louder on either side.
TEST(JudgeChannels, SwappedChannelsGiveTheOtherSide)
{
    QTemporaryDir dir;
    for (const double voiceDb : {-18.0, -6.0, 0.0}) {
        for (const double bandGainDb : {-1.0, 0.0, 1.0}) {
            DemoVoiceOptions o;
            o.place = VoicePlace::Left;
            o.voiceDb = voiceDb;
            o.bandGainDb = bandGainDb;
            o.seconds = 12;
            o.rate = 16000;
            o.seed = unsigned(voiceDb * 10 + bandGainDb + 100);
            const QString path = dir.filePath(QStringLiteral("t.wav"));
            ASSERT_TRUE(WriteDemoVoiceWav(path, o));
            const ChannelVerdict left = DetectVocalChannel(path);
            o.place = VoicePlace::Right;
            ASSERT_TRUE(WriteDemoVoiceWav(path, o));
            const ChannelVerdict right = DetectVocalChannel(path);
            SCOPED_TRACE(QStringLiteral("voice %1 dB, band %2 dB").arg(voiceDb).arg(bandGainDb).toStdString());
            EXPECT_EQ(left.channel, u"L");
            EXPECT_EQ(right.channel, u"R");
        }
    }
}

TEST(JudgeChannels, NothingToJudgeIsUnknown)
{
    EXPECT_EQ(JudgeChannels({}, 16000).reason, u"silent");
    StereoStretch quiet{std::vector<float>(16000, 0.0f), std::vector<float>(16000, 0.0f)};
    EXPECT_EQ(JudgeChannels({quiet}, 16000).channel, u"unknown");
}

}  // namespace
