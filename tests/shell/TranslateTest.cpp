#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"
#include "shell/services/Translate.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <gtest/gtest.h>

using namespace td;

namespace {

class TranslateTest : public ::testing::Test {
protected:
    test::TempAppDir dir;
    void region(const QString& name, const QString& text)
    {
        QDir().mkpath(dir.file(QStringLiteral("Region/") + name));
        WriteTextStore(dir.file(QStringLiteral("Region/") + name + QStringLiteral("/string.txt")), text);
    }
    void SetUp() override
    {
        region(QStringLiteral("Chinese"),
               QStringLiteral("[Resource]\r\nSave=X\r\nsave=lower\r\nPlay=播放\r\n"
                              "Formula=a=b\r\nAbout (me)=关于\r\nSave more=保存更多\r\n"));
        IniWrite(dir.file(QStringLiteral("Region.ini")), QStringLiteral("Home"), QStringLiteral("Default"),
                 QStringLiteral("Chinese"));
    }
};

TEST_F(TranslateTest, AcceleratorAndDotsRules)
{
    struct Case {
        const char *in, *out;
    } cases[] = {
        {"Save", "X"},          {"Save (&S)", "X (&S)"},
        {"Save ...", "X ..."},  {"Save ... (&S)", "X ... (&S)"},
        {"save", "lower"},                                          // keys are exact, also in case
        {"SAVE", "SAVE"},       {"Load (&L)", "Load"},              // no line: the accelerator goes too
        {"Load ...", "Load"},   {"Save ... more", "保存更多 ..."},  // dots in the middle move to the end
        {"Formula", "a=b"},                                         // a translation with "=" is kept whole
        {"About (me)", "关于"},  // a bracket without "&" is looked up whole
        {"Sav", "Sav"},          // fewer than five characters keep them all
        {"Play", "播放"},       {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(TranslateText(QString::fromUtf8(c.in)), QString::fromUtf8(c.out)) << c.in;
}

TEST_F(TranslateTest, EmptyTextDoesNotTouchTheFile)
{
    EXPECT_EQ(TranslateText(QString()), QString());
    EXPECT_TRUE(InterfaceRegion().isEmpty());
}

TEST_F(TranslateTest, FileWithoutResourceSectionGivesStrippedEnglish)
{
    region(QStringLiteral("Empty"), QStringLiteral("[Other]\r\nSave=Y\r\n"));
    ASSERT_TRUE(SetInterfaceRegion(QStringLiteral("Empty")));
    EXPECT_EQ(TranslateText(QStringLiteral("Save ... (&S)")), QStringLiteral("Save"));
}

TEST_F(TranslateTest, SetInterfaceRegionRecordsTheDefault)
{
    region(QStringLiteral("English"), QStringLiteral("[Resource]\r\nSave=Save\r\n"));
    EXPECT_EQ(GetDefaultRegion(), QStringLiteral("Chinese"));
    ASSERT_TRUE(SetInterfaceRegion(QStringLiteral("English")));
    EXPECT_EQ(InterfaceRegion(), QStringLiteral("English"));
    EXPECT_EQ(GetDefaultRegion(), QStringLiteral("English"));
    EXPECT_EQ(TranslateText(QStringLiteral("Play")), QStringLiteral("Play"));
}

TEST_F(TranslateTest, UnusableRegionUnloadsTheLanguageAndKeepsTheDefault)
{
    EXPECT_EQ(TranslateText(QStringLiteral("Play")), QStringLiteral("播放"));
    EXPECT_FALSE(SetInterfaceRegion(QStringLiteral("Klingon")));
    EXPECT_FALSE(SetInterfaceRegion(QString()));
    EXPECT_EQ(GetDefaultRegion(), QStringLiteral("Chinese"));
    EXPECT_TRUE(GetRegionFile(QStringLiteral("Klingon")).isEmpty());
    EXPECT_TRUE(
        GetRegionFile(QStringLiteral("Chinese")).endsWith(QStringLiteral("/Region/Chinese/string.txt")));
}

TEST(TranslateDefaults, MissingRegionIniMeansEnglish)
{
    test::TempAppDir dir;
    EXPECT_EQ(GetDefaultRegion(), QStringLiteral("English"));
    EXPECT_EQ(TranslateText(QStringLiteral("Open (&O)")), QStringLiteral("Open"));
}

}  // namespace
