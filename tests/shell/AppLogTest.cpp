#include "FakePlatform.h"
#include "shell/services/AppLog.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace td;

namespace {

class AppLogTest : public ::testing::Test {
protected:
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    test::FakePlatform platform;
    QString log = dir.file(QStringLiteral("event.log"));
    QString index()
    {
        return IniRead(log, QStringLiteral("Default"), QStringLiteral("Index"), QStringLiteral("?"));
    }
    QString entry(const char* key)
    {
        return IniRead(log, QStringLiteral("Event"), QString::fromLatin1(key), {});
    }
    void SetUp() override { SetAppExeName(QStringLiteral("tunedesk")); }
    void TearDown() override { SetAppExeName({}); }
};

TEST_F(AppLogTest, FirstLineCreatesTheFileWithKey001AndExactForm)
{
    AppLogEvent(QStringLiteral("Application Started. Version=8.02 Build 0001"));
    AppLogError(QStringLiteral("Open failed"));
    EXPECT_EQ(index(), QStringLiteral("002"));
    const QRegularExpression form(QStringLiteral(
        R"(^\d{4}/\d{2}/\d{2} \d{2}:\d{2}:\d{2}  App:tunedesk  Event:Application Started\. Version=8\.02 Build 0001$)"));
    EXPECT_TRUE(form.match(entry("001")).hasMatch()) << entry("001").toStdString();
    EXPECT_TRUE(entry("002").endsWith(QStringLiteral("  App:tunedesk  Error:Open failed")));
    EXPECT_TRUE(dialogs.calls().empty());
}

TEST_F(AppLogTest, RingWrapsAfter500)
{
    IniWrite(log, QStringLiteral("Default"), QStringLiteral("Index"), QStringLiteral("499"));
    IniWrite(log, QStringLiteral("Event"), QStringLiteral("001"), QStringLiteral("oldest"));
    AppLogEvent(QStringLiteral("five hundred"));
    EXPECT_EQ(index(), QStringLiteral("500"));
    EXPECT_TRUE(entry("500").endsWith(QStringLiteral("five hundred")));
    AppLogEvent(QStringLiteral("wrapped"));
    EXPECT_EQ(index(), QStringLiteral("001"));
    EXPECT_TRUE(entry("001").endsWith(QStringLiteral("wrapped")));
}

TEST_F(AppLogTest, DamagedIndexCountsAsZero)
{
    for (const char* damaged : {"abc", "", "-7", "9999"}) {
        IniWrite(log, QStringLiteral("Default"), QStringLiteral("Index"), QString::fromLatin1(damaged));
        AppLogEvent(QStringLiteral("x"));
        EXPECT_EQ(index(), QStringLiteral("001")) << damaged;
    }
}

TEST_F(AppLogTest, SystemInfoWritesItsThreeKeys)
{
    AppLogSystemInfo();
    auto sys = [&](const char* key) {
        return IniRead(log, QStringLiteral("System"), QString::fromLatin1(key), {});
    };
    EXPECT_EQ(sys("Windows"), QStringLiteral("Major6 Minor1 Build76 PlatformId2 CSDVersionDebian 12"));
    EXPECT_EQ(sys("AppVersion"), AppVersion());
    EXPECT_EQ(sys("AppPath"), dir.path());
}

TEST_F(AppLogTest, VersionTextsHaveTheirFixedForm)
{
    EXPECT_TRUE(
        QRegularExpression(QStringLiteral(R"(^\d+\.\d{2} Build \d{4}$)")).match(AppVersion()).hasMatch());
    platform.version.csdVersion = QStringLiteral("Pack 3") + QChar(0) + QStringLiteral("junk");
    EXPECT_TRUE(WindowsVersionText().endsWith(QStringLiteral("CSDVersionPack 3")));
}

}  // namespace
