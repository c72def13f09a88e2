#include "support/FakeMixer.h"
#include "config/MixerVolume.h"
#include "shell/services/AppError.h"
#include <QMap>
#include <QStringList>
#include <cerrno>
#include <gtest/gtest.h>
#include <ostream>

using namespace td;
using td::test::FakeElement;
using td::test::FakeMixer;

namespace {

// A card with every element the selectors name.
void addEveryElement(FakeMixer& mixer)
{
    for (const char* name : {"Master", "Bass", "Treble", "PCM", "Synth", "CD", "Mic", "Line"})
        mixer.playback[QString::fromLatin1(name)] = {};
    mixer.capture[QStringLiteral("Capture")] = {};
}

struct LevelCase {
    int selector;
    long min, max;
    int volume, balance;
    QStringList sets;
};

void PrintTo(const LevelCase& c, std::ostream* os)
{
    *os << "selector " << c.selector << " on " << c.min << ".." << c.max << ", volume " << c.volume
        << ", balance " << c.balance;
}

class MixerLevels : public testing::TestWithParam<LevelCase> {};

TEST_P(MixerLevels, ScaleToTheElementsRangeAndSplitTheBalance)
{
    const LevelCase& c = GetParam();
    FakeMixer mixer;
    addEveryElement(mixer);
    for (auto* elements : {&mixer.playback, &mixer.capture})
        for (FakeElement& e : *elements)
            e.min = c.min, e.max = c.max;
    int volume = c.volume, balance = c.balance;
    EXPECT_TRUE(MixerVolume(c.selector, volume, balance));
    EXPECT_EQ(mixer.sets(), c.sets);
    EXPECT_EQ(MixerLastResult(), 0);
}

QStringList L(std::initializer_list<const char*> lines)
{
    QStringList out;
    for (const char* line : lines)
        out << QString::fromLatin1(line);
    return out;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MixerLevels,
    testing::Values(LevelCase{0, 0, 65535, 50, 0, L({"play Master FL 32767", "play Master FR 32767"})},
                    LevelCase{0, 0, 65535, 100, 0, L({"play Master FL 65535", "play Master FR 65535"})},
                    LevelCase{0, 0, 65535, 0, 0, L({"play Master FL 0", "play Master FR 0"})},
                    LevelCase{0, 0, 65535, 50, 100, L({"play Master FL 0", "play Master FR 32767"})},
                    LevelCase{0, 0, 65535, 50, -100, L({"play Master FL 32767", "play Master FR 0"})},
                    LevelCase{0, 0, 65535, 50, 50, L({"play Master FL 16384", "play Master FR 32767"})},
                    // -30 * 32767 / 100 is -9830.01: the share is cut toward zero
                    LevelCase{5, 0, 65535, 50, -30, L({"play PCM FL 32767", "play PCM FR 22937"})},
                    // the element's own range, not the 0..65535 of the old mixer
                    LevelCase{7, 0, 31, 50, 0, L({"play Synth FL 15", "play Synth FR 15"})},
                    LevelCase{9, -20, 80, 33, 0, L({"play CD FL 13", "play CD FR 13"})},
                    LevelCase{11, 0, 65535, 50, 100, L({"play Mic FL 0", "play Mic FR 32767"})},
                    LevelCase{13, 0, 100, 70, 0, L({"play Line FL 70", "play Line FR 70"})},
                    LevelCase{15, 0, 65535, 50, 0,
                              L({"capture Capture FL 32767", "capture Capture FR 32767"})},
                    // bass and treble keep one value on every channel, whatever the balance
                    LevelCase{2, 0, 65535, 50, 100, L({"play Bass FL 32767", "play Bass FR 32767"})},
                    LevelCase{3, 0, 65535, 50, -100, L({"play Treble FL 32767", "play Treble FR 32767"})}));

TEST(MixerVolume, ANegativeVolumeBecomesOnePercent)
{
    FakeMixer mixer;
    addEveryElement(mixer);
    int volume = -5, balance = 0;
    EXPECT_TRUE(MixerVolume(0, volume, balance));
    EXPECT_EQ(volume, 1);
    EXPECT_EQ(mixer.sets(), L({"play Master FL 655", "play Master FR 655"}));
}

TEST(MixerVolume, AMonoElementTakesTheLeftValueOnly)
{
    FakeMixer mixer;
    mixer.playback[QStringLiteral("PCM")].caps.mono = true;
    int volume = 50, balance = 50;
    EXPECT_TRUE(MixerVolume(5, volume, balance));
    EXPECT_EQ(mixer.sets(), L({"play PCM FL 16384"}));
}

struct SwitchCase {
    int selector, volume;
    const char* set;
};

void PrintTo(const SwitchCase& c, std::ostream* os)
{
    *os << "selector " << c.selector << ", volume " << c.volume;
}

class MixerSwitches : public testing::TestWithParam<SwitchCase> {};

// A mute written as 1 silences the line, so the switch that lets the sound through goes off.
TEST_P(MixerSwitches, WriteOneSwitchForEveryChannel)
{
    const SwitchCase& c = GetParam();
    FakeMixer mixer;
    addEveryElement(mixer);
    int volume = c.volume, balance = 40;
    EXPECT_TRUE(MixerVolume(c.selector, volume, balance));
    EXPECT_EQ(mixer.sets(), QStringList{QString::fromLatin1(c.set)});
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MixerSwitches,
    testing::Values(SwitchCase{1, 1, "play Master switch 0"}, SwitchCase{1, 0, "play Master switch 1"},
                    SwitchCase{1, 7, "play Master switch 0"}, SwitchCase{4, 1, "play Master switch 1"},
                    SwitchCase{4, 0, "play Master switch 0"}, SwitchCase{6, 1, "play PCM switch 0"},
                    SwitchCase{8, 0, "play Synth switch 1"}, SwitchCase{10, 1, "play CD switch 0"},
                    SwitchCase{12, 1, "play Mic switch 0"}, SwitchCase{14, 0, "play Line switch 1"}));

struct MissingCase {
    const char* what;
    int selector;
    MixerElement caps;  // of the element the selector names
};

void PrintTo(const MissingCase& c, std::ostream* os)
{
    *os << "selector " << c.selector << ", " << c.what;
}

class MixerMissing : public testing::TestWithParam<MissingCase> {};

TEST_P(MixerMissing, ClearVolumeAndBalanceAndSetNothing)
{
    const MissingCase& c = GetParam();
    FakeMixer mixer;
    addEveryElement(mixer);
    mixer.playback[QStringLiteral("CD")].caps = c.caps;
    mixer.playback.remove(QStringLiteral("Synth"));
    int volume = 60, balance = -20;
    EXPECT_FALSE(MixerVolume(c.selector, volume, balance)) << c.what;
    EXPECT_EQ(volume, 0) << c.what;
    EXPECT_EQ(balance, 0) << c.what;
    EXPECT_TRUE(mixer.sets().isEmpty()) << c.what;
    EXPECT_EQ(mixer.log.last(), QStringLiteral("close")) << c.what;
    EXPECT_EQ(MixerLastResult(), -ENOENT) << c.what;
}

INSTANTIATE_TEST_SUITE_P(Cases, MixerMissing,
                         testing::Values(MissingCase{"no element", 7, {}}, MissingCase{"no element", 8, {}},
                                         MissingCase{"no volume", 9, {false, true, false}},
                                         MissingCase{"no switch", 10, {true, false, false}}));

TEST(MixerVolume, AMachineWithoutACardSetsNothing)
{
    FakeMixer mixer;
    addEveryElement(mixer);
    mixer.openResult = -ENODEV;
    int volume = 50, balance = 10;
    EXPECT_FALSE(MixerVolume(0, volume, balance));
    EXPECT_EQ(volume, 0);
    EXPECT_EQ(balance, 0);
    EXPECT_EQ(mixer.log, L({"open", "close"}));
    EXPECT_EQ(MixerLastResult(), -ENODEV);
}

TEST(MixerVolume, AFailedSettingStopsThereAndIsKept)
{
    FakeMixer mixer;
    addEveryElement(mixer);
    mixer.failingSetResult = -EIO;
    int volume = 50, balance = 0;
    EXPECT_FALSE(MixerVolume(0, volume, balance));
    EXPECT_EQ(volume, 50);  // the line is there: the caller's values stay
    EXPECT_EQ(mixer.sets(), L({"play Master FL 32767"}));
    EXPECT_EQ(MixerLastResult(), -EIO);
}

TEST(MixerVolume, ASelectorBeyondTheTableIsATypeMismatch)
{
    FakeMixer mixer;
    addEveryElement(mixer);
    for (int selector : {16, 17, 1000, -1}) {
        int volume = 50, balance = 0;
        try {
            MixerVolume(selector, volume, balance);
            ADD_FAILURE() << "selector " << selector << " was taken";
        } catch (const AppError& e) {
            EXPECT_EQ(e.description(), QStringLiteral("Type mismatch"));
        }
        EXPECT_EQ(volume, 50);
    }
    EXPECT_TRUE(mixer.log.isEmpty());
}

}  // namespace
