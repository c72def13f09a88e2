#include "shell/services/Ini.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <QFile>
#include <QThread>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace td;

namespace {

class IniTest : public ::testing::Test {
protected:
    test::TempAppDir dir;
    QString file = dir.file(QStringLiteral("a.ini"));
    void write(const char* text) { dir.write(QStringLiteral("a.ini"), QByteArray(text)); }
    QString read(const char* section, const char* key, const char* def = "DEF")
    {
        return IniRead(file, QString::fromUtf8(section), QString::fromUtf8(key), QString::fromUtf8(def));
    }
};

TEST_F(IniTest, ReadsWithWindowsProfileSemantics)
{
    write(
        "; comment\n"
        "[Default]\n"
        "  Volume  =  70  \n"
        "volume=99\n"
        "Empty=\n"
        "Quoted=\"  spaced  \"\n"
        "Chinese=中文歌曲\n"
        "[ Other ]\n"
        "Volume=1\n");
    struct Case {
        const char *section, *key, *expected;
    } cases[] = {
        {"Default", "Volume", "70"},    // blanks trimmed, first key wins
        {"DEFAULT", "VOLUME", "70"},    // names without regard to case
        {"Default", "Empty", ""},       // a present empty value is empty, not the default
        {"Default", "Missing", "DEF"},  // missing key
        {"Nowhere", "Volume", "DEF"},   // missing section
        {"other", "volume", "1"},       // blanks inside the brackets
        {"Default", "Quoted", "  spaced  "},
        {"Default", "Chinese", "中文歌曲"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(read(c.section, c.key), QString::fromUtf8(c.expected)) << c.section << "/" << c.key;
}

TEST_F(IniTest, MissingFileGivesDefault)
{
    EXPECT_EQ(read("Default", "Volume", "50"), QStringLiteral("50"));
}

TEST_F(IniTest, LongValueReadsAsFirst254Characters)
{
    const QString value(300, u'x');
    ASSERT_TRUE(IniWrite(file, QStringLiteral("S"), QStringLiteral("K"), value));
    EXPECT_EQ(IniRead(file, QStringLiteral("S"), QStringLiteral("K"), {}), QString(254, u'x'));
}

TEST_F(IniTest, WriteCreatesFileAndSectionAndReplacesFirstKey)
{
    ASSERT_TRUE(IniWrite(file, QStringLiteral("Default"), QStringLiteral("Volume"), QStringLiteral("10")));
    ASSERT_TRUE(IniWrite(file, QStringLiteral("Second"), QStringLiteral("A"), QStringLiteral("1")));
    ASSERT_TRUE(IniWrite(file, QStringLiteral("default"), QStringLiteral("VOLUME"), QStringLiteral("20")));
    ASSERT_TRUE(IniWrite(file, QStringLiteral("Default"), QStringLiteral("New"), QStringLiteral("n")));
    EXPECT_EQ(read("Default", "Volume"), QStringLiteral("20"));
    EXPECT_EQ(read("Default", "New"), QStringLiteral("n"));
    EXPECT_EQ(read("Second", "A"), QStringLiteral("1"));
    TextArray names;
    EXPECT_EQ(IniReadSection(file, QStringLiteral("Default"), names), 2);
    EXPECT_EQ(names, (TextArray{QString(), QStringLiteral("VOLUME"), QStringLiteral("New")}));
}

TEST_F(IniTest, ReadSectionSkipsCommentLines)
{
    write("[List]\n;semi=1\n'quote=2\n/slash=3\nFirst=1\nBare line\n\nLast = 3\n[Next]\nX=1\n");
    TextArray names;
    EXPECT_EQ(IniReadSection(file, QStringLiteral("list"), names), 3);
    EXPECT_EQ(names, (TextArray{QString(), QStringLiteral("First"), QStringLiteral("Bare line"),
                                QStringLiteral("Last")}));
    EXPECT_EQ(IniReadSection(file, QStringLiteral("None"), names), 0);
    EXPECT_EQ(names, TextArray{QString()});
}

TEST_F(IniTest, DeleteSectionRemovesOnlyThatSection)
{
    write("[A]\nx=1\n[B]\ny=2\n[C]\nz=3\n");
    ASSERT_TRUE(IniDeleteSection(file, QStringLiteral("b")));
    EXPECT_EQ(read("B", "y"), QStringLiteral("DEF"));
    EXPECT_EQ(read("A", "x"), QStringLiteral("1"));
    EXPECT_EQ(read("C", "z"), QStringLiteral("3"));
}

TEST_F(IniTest, RewriteIsAtomicUnderConcurrentWriters)
{
    // Writers in parallel may lose each other's updates, but never leave a half-written file.
    std::vector<std::thread> writers;
    for (int t = 0; t < 4; ++t)
        writers.emplace_back([this, t] {
            for (int i = 0; i < 50; ++i)
                IniWrite(file, QStringLiteral("S%1").arg(t), QStringLiteral("K"),
                         QString(100, QChar(u'a' + t)));
        });
    for (auto& w : writers)
        w.join();
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    for (const QByteArray& line : f.readAll().split('\n')) {
        if (line.isEmpty())
            continue;
        EXPECT_TRUE(line.startsWith('[') || line.startsWith("K=")) << line.constData();
        if (line.startsWith("K=")) {
            EXPECT_EQ(line.size(), 102);
        }
    }
    const QStringList leftovers = QDir(dir.path()).entryList(QDir::Files);
    EXPECT_EQ(leftovers, QStringList{QStringLiteral("a.ini")});
}

TEST_F(IniTest, AppIniLiesBesideTheProgramInSectionDefault)
{
    ASSERT_TRUE(AppIniWrite(QStringLiteral("Volume"), QStringLiteral("65")));
    EXPECT_TRUE(AppIniFile().startsWith(dir.path()));
    EXPECT_TRUE(AppIniFile().endsWith(QStringLiteral(".ini")));
    EXPECT_EQ(IniRead(AppIniFile(), QStringLiteral("Default"), QStringLiteral("Volume"), {}),
              QStringLiteral("65"));
    EXPECT_EQ(AppIniRead(QStringLiteral("volume"), QStringLiteral("50")), QStringLiteral("65"));
    EXPECT_EQ(AppIniRead(QStringLiteral("Other"), QStringLiteral("50")), QStringLiteral("50"));
}

}  // namespace
