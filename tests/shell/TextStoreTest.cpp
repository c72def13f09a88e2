#include "shell/services/AppError.h"
#include "shell/services/TextStore.h"
#include "support/TempAppDir.h"
#include <QFile>
#include <gtest/gtest.h>

using namespace td;

namespace {

const QString CRLF = QStringLiteral("\r\n");

QByteArray fileBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

TEST(TextStore, WritesByteOrderMarkThenUtf16LittleEndian)
{
    test::TempAppDir dir;
    const QString path = dir.file(QStringLiteral("s.txt"));
    ASSERT_TRUE(WriteTextStore(path, QStringLiteral("[A]\r\nk=歌\r\n")));
    const QByteArray expected =
        QByteArray("\xFF\xFE", 2) + QByteArray("[\0A\0]\0\r\0\n\0k\0=\0\x4C\x6B\r\0\n\0", 20);
    EXPECT_EQ(fileBytes(path), expected);
}

TEST(TextStore, RoundTripAddsLineBreaksAtBothEnds)
{
    test::TempAppDir dir;
    const QString path = dir.file(QStringLiteral("s.son"));
    WriteTextStore(path, QStringLiteral("[Song]\r\ntitle=月亮代表我的心"));
    const QString text = ReadTextStore(path);
    EXPECT_EQ(text, CRLF + QStringLiteral("[Song]\r\ntitle=月亮代表我的心") + CRLF);
    EXPECT_EQ(ReadTextValue(text, QStringLiteral("Song"), QStringLiteral("title"), {}),
              QStringLiteral("月亮代表我的心"));
}

TEST(TextStore, UnreadableOrShortFilesRaiseAnError)
{
    test::TempAppDir dir;
    EXPECT_THROW(ReadTextStore(dir.file(QStringLiteral("missing.txt"))), AppError);
    EXPECT_THROW(ReadTextStore(dir.write(QStringLiteral("one.txt"), QByteArray("\xFF", 1))), AppError);
    EXPECT_EQ(ReadTextStore(QString()), QString());
    EXPECT_FALSE(WriteTextStore(QString(), QStringLiteral("x")));
}

TEST(TextStore, FileWithoutByteOrderMarkLosesItsFirstCharacter)
{
    test::TempAppDir dir;
    const QString path = dir.write(QStringLiteral("nobom.txt"), QByteArray("[\0A\0]\0", 6));
    EXPECT_EQ(ReadTextStore(path), CRLF + QStringLiteral("A]") + CRLF);
}

TEST(TextStore, ReadValueStopsAtTheNextSection)
{
    const QString text = QStringLiteral("\r\n[A]\r\nx=1\r\nempty=\r\n[B]\r\ny=2\r\nz=a=b\r\n");
    struct Case {
        const char *section, *key, *expected;
    } cases[] = {
        {"A", "x", "1"},   {"A", "y", "DEF"}, {"B", "y", "2"},   {"A", "empty", ""},
        {"B", "z", "a=b"}, {"a", "x", "DEF"}, {"A", "X", "DEF"}, {"C", "x", "DEF"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ReadTextValue(text, QString::fromLatin1(c.section), QString::fromLatin1(c.key),
                                QStringLiteral("DEF")),
                  QString::fromLatin1(c.expected))
            << c.section << "/" << c.key;
}

TEST(TextStore, WriteValueReplacesAndAppends)
{
    QString text;
    WriteTextValue(text, QStringLiteral("Song"), QStringLiteral("title"), QStringLiteral("甜蜜蜜"));
    EXPECT_EQ(text, QStringLiteral("\r\n[Song]\r\ntitle=甜蜜蜜\r\n"));
    WriteTextValue(text, QStringLiteral("Song"), QStringLiteral("singer"), QStringLiteral("邓丽君"));
    WriteTextValue(text, QStringLiteral("Song"), QStringLiteral("title"), QStringLiteral("小城故事"));
    EXPECT_EQ(text, QStringLiteral("\r\n[Song]\r\ntitle=小城故事\r\nsinger=邓丽君\r\n"));
    WriteTextValue(text, QStringLiteral("Media"), QStringLiteral("file"), QStringLiteral("a.vob"));
    EXPECT_EQ(text, QStringLiteral(
                        "\r\n[Song]\r\ntitle=小城故事\r\nsinger=邓丽君\r\n\r\n[Media]\r\nfile=a.vob\r\n"));
}

TEST(TextStore, KeyAppendedToASectionThatIsNotLastCannotBeFoundAgain)
{
    QString text = QStringLiteral("\r\n[A]\r\nx=1\r\n[B]\r\ny=2\r\n");
    WriteTextValue(text, QStringLiteral("A"), QStringLiteral("x"), QStringLiteral("9"));
    EXPECT_EQ(text, QStringLiteral("\r\n[A]\r\nx=9\r\n[B]\r\ny=2\r\n"));
    WriteTextValue(text, QStringLiteral("A"), QStringLiteral("new"), QStringLiteral("v"));
    // The new key lands behind the lone CR that ends the body, so no LF precedes it.
    EXPECT_EQ(text, QStringLiteral("\r\n[A]\r\nx=9\rnew=v\r\n\n[B]\r\ny=2\r\n"));
    EXPECT_EQ(ReadTextValue(text, QStringLiteral("A"), QStringLiteral("new"), QStringLiteral("missing")),
              QStringLiteral("missing"));
    // ...and the next header, now behind a bare LF, is lost with it.
    EXPECT_EQ(ReadTextValue(text, QStringLiteral("B"), QStringLiteral("y"), QStringLiteral("lost")),
              QStringLiteral("lost"));
}

TEST(TextStore, ReadKeysFromAllSectionsSkippingComments)
{
    const QString text =
        QStringLiteral("\r\n[A]\r\nx=1\r\n;c=1\r\n:d=2\r\n'e=3\r\n\r\nnoequals\r\n[B]\r\nx=2\r\ny=\r\n");
    TextArray names{QStringLiteral("stale")};
    EXPECT_TRUE(ReadTextKeys(text, names));
    EXPECT_EQ(names, (TextArray{QString(), QStringLiteral("x"), QStringLiteral("x"), QStringLiteral("y")}));
}

TEST(TextStore, LongFilesBeyondSixteenBitPositionsWork)
{
    QString text;
    for (int i = 0; i < 5000; ++i)
        WriteTextValue(text, QStringLiteral("Resource"), QStringLiteral("Key number %1").arg(i),
                       QStringLiteral("值 %1").arg(i));
    EXPECT_GT(text.size(), 40000);
    EXPECT_EQ(ReadTextValue(text, QStringLiteral("Resource"), QStringLiteral("Key number 4999"), {}),
              QStringLiteral("值 4999"));
}

}  // namespace
