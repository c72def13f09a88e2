// How titles read in pinyin: initials and syllables of every hanzi, Traditional and rare ones too.
#include "songdb/PinyinReadings.h"
#include <gtest/gtest.h>

namespace td {
namespace {

QStringList initialsOf(const char* title)
{
    QStringList out;
    for (const TitleReading& r : TitleReadings(QString::fromUtf8(title)))
        out << r.initials;
    return out;
}

QStringList spellingsOf(const char* title)
{
    QStringList out;
    for (const TitleReading& r : TitleReadings(QString::fromUtf8(title)))
        out << r.spelling;
    return out;
}

TEST(TitleReadings, OneReadingPerTitleWithoutPolyphones)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"童話", "th", "tonghua"},
        {"聽海", "th", "tinghai"},
        {"愛", "a", "ai"},
        {"夢", "m", "meng"},
        {"們", "m", "men"},
        {"麼", "m", "me"},
        {"爱我", "aw", "aiwo"},
        {"ZG Band", "zgband", "zgband"},      // Latin letters stand for themselves, lower case
        {"Love 愛情", "loveaq", "loveaiqing"},  // blanks are skipped
        {"3 夢", "3m", "3meng"},
        {"夢 - Live (2)", "mlive2", "menglive2"},  // so are punctuation and symbols
        {"ＡＢ１愛", "ab1a", "ab1ai"},            // full-width letters and digits are folded
        {"Café", "cafe", "cafe"},
        {"あ愛", "?a", "?ai"},  // a character with no reading stops a match there
        {"", "", ""},
    };
    for (const auto& [title, initials, spelling] : cases) {
        EXPECT_EQ(initialsOf(title), QStringList{QString::fromUtf8(initials)}) << title;
        EXPECT_EQ(spellingsOf(title), QStringList{QString::fromUtf8(spelling)}) << title;
    }
}

TEST(TitleReadings, PolyphonicCharactersGiveEveryReadingTheUsualOneFirst)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"重來", "zl,cl", "zhonglai,chonglai"},
        {"长大", "zd,cd", "zhangda,zhangdai,changda,changdai"},
        {"長", "z,c", "zhang,chang"},
        {"快樂", "kl,ky", "kuaile,kuaiyue"},
        {"女人", "nr", "nvren,nuren"},
    };
    for (const auto& [title, initials, spellings] : cases) {
        QStringList i = initialsOf(title);
        i.removeDuplicates();
        EXPECT_EQ(i.join(u','), QString::fromUtf8(initials)) << title;
        EXPECT_EQ(spellingsOf(title).join(u','), QString::fromUtf8(spellings)) << title;
    }
}

TEST(TitleReadings, ManyPolyphonesKeepTheCountBoundedAndTheLaterOnesUsual)
{
    const QList<TitleReading> readings = TitleReadings(QString::fromUtf8("重重重重重重重重重重"));
    EXPECT_LE(readings.size(), kMaxTitleReadings);
    EXPECT_GE(readings.size(), 8);
    for (const TitleReading& r : readings)
        EXPECT_TRUE(r.initials.endsWith(u"zzz")) << r.initials.toStdString();
}

TEST(CharacterReadings, HanziOnly)
{
    EXPECT_EQ(CharacterReadings(U'龘'), QStringList{QStringLiteral("da")});
    EXPECT_EQ(CharacterReadings(U'𠀀').size(), 1);  // beyond the basic plane
    EXPECT_TRUE(CharacterReadings(U'A').isEmpty());
    EXPECT_TRUE(CharacterReadings(U'あ').isEmpty());
}

TEST(PinyinKey, FoldsCaseDropsBlanksAndMarksTheRest)
{
    const std::pair<const char*, const char*> cases[] = {
        {"TH", "th"}, {"Tong Hua", "tonghua"}, {"aqs", "aqs"}, {"3a", "3a"}, {"  ", ""},
        {"爱", "?"},  {"a'b", "a?b"},          {"a%", "a?"},
    };
    for (const auto& [typed, key] : cases)
        EXPECT_EQ(PinyinKey(QString::fromUtf8(typed)), QString::fromUtf8(key)) << typed;
}

}  // namespace
}  // namespace td
