// A region's text file of 10 MB, as a careless merge or a wrong file copied into the region folder
// makes one: the interface still finds its texts, soon enough that a window opens without a wait, and
// the file is never written.
#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"
#include "shell/services/Translate.h"
#include "support/CaseName.h"
#include "support/TempAppDir.h"
#include "support/Timing.h"
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <functional>
#include <gtest/gtest.h>

namespace td::test {
namespace {

constexpr qsizetype kFileBytes = 10 * 1024 * 1024;

QByteArray utf16File(const QString& text)
{
    QByteArray bytes("\xFF\xFE", 2);
    bytes.reserve(2 + 2 * text.size());
    for (QChar c : text)
        bytes.append(char(c.unicode() & 0xFF)).append(char(c.unicode() >> 8));
    return bytes;
}

// Lines "Text000123=译文000123" after the section header until the file is 10 MB.
QByteArray manyTexts()
{
    QString text = QStringLiteral("\r\n[Resource]\r\n");
    for (int i = 0; 2 * text.size() < kFileBytes; ++i)
        text += QStringLiteral("Text%1=译文%1\r\n").arg(i, 6, 10, QChar(u'0'));
    return utf16File(text);
}

// A few real lines, then one value of 5 million characters without a line break.
QByteArray oneLongValue()
{
    return utf16File(QStringLiteral("\r\n[Resource]\r\nText000000=译文000000\r\nLong=") +
                     QString(kFileBytes / 2, u'长') + QStringLiteral("\r\nText000001=译文000001\r\n"));
}

// Random bytes: no section, no line, nothing to find.
QByteArray noise()
{
    QByteArray bytes(kFileBytes, Qt::Uninitialized);
    QRandomGenerator rng(17);
    rng.fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
    return bytes;
}

struct BigFile {
    const char* name;
    std::function<QByteArray()> bytes;
    bool translated;  // whether Text000001 finds its translation
};

const BigFile kBigFiles[] = {
    {"many texts", manyTexts, true},
    {"one long value", oneLongValue, true},
    {"noise", noise, false},
};

class LargeTextFile : public ::testing::TestWithParam<BigFile> {};

TEST_P(LargeTextFile, TextsAreFoundAtOnceAndTheFileStaysAsItWas)
{
    TempAppDir app;
    const QByteArray bytes = GetParam().bytes();
    ASSERT_GE(bytes.size(), kFileBytes);
    const QString file = app.write(QStringLiteral("Region/Big/string.txt"), bytes);
    IniWrite(app.file(QStringLiteral("Region.ini")), QStringLiteral("Home"), QStringLiteral("Default"),
             QStringLiteral("Big"));
    ResetInterfaceRegion();

    // A window's worth of texts, most of them not in the file, as the menus of the frame ask for them.
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 300; ++i)
        TranslateText(QStringLiteral("Menu entry %1 (&M)").arg(i));
    const QString found = TranslateText(QStringLiteral("Text000001 ..."));
    const qint64 ms = clock.elapsed();
    RecordProperty("lookup_ms", static_cast<int>(ms));

    EXPECT_EQ(found, GetParam().translated ? QStringLiteral("译文000001 ...") : QStringLiteral("Text000001"));
    EXPECT_EQ(TranslateText(QStringLiteral("Save (&S)")), QStringLiteral("Save"));  // not in the file
    EXPECT_LT(ms, 8 * kPromptMs) << "300 texts took " << ms << " ms";
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_TRUE(f.readAll() == bytes) << "the text file was written";
    ResetInterfaceRegion();
}

INSTANTIATE_TEST_SUITE_P(Files, LargeTextFile, ::testing::ValuesIn(kBigFiles), kNamedCase);

// The section read once must answer every key exactly as the search through the whole text does.
TEST(TextSection, AnswersAsTheSearchThroughTheText)
{
    const char* const texts[] = {
        "\r\n[Resource]\r\na=1\r\nb=2\r\n",
        "\r\n[Resource]\r\na=1\r\na=2\r\n[Other]\r\nc=3\r\n[Resource]\r\nc=4\r\n",
        "\r\n[Other]\r\na=0\r\n[Resource]\r\na=b=c\r\na=b=d\r\nSave item=Keep\r\n",
        "\r\n[Resource]\r\nx=1\ny=2\r\nno equals sign\r\n=empty key\r\nlast=unended",
        "\r\n[Resource]\r\na=1\rb=2\r\nc=\r\nd= spaced \r\n",
        "\r\n[Resource]\r\na\r\nb=split key\r\n",
        "\r\n[Resource]\r\n",
        "\r\n[Resource]",
        "a=no section\r\n",
        "",
    };
    const char* const keys[] = {
        "a",   "b", "c", "d", "x", "y", "", "a=b", "Save item", "last", "missing", "a\r\nb", "no equals sign",
        "1\rb"};
    for (const char* t : texts) {
        const QString text = QString::fromUtf8(t);
        const TextSection section(text, QStringLiteral("Resource"));
        for (const char* k : keys) {
            const QString key = QString::fromUtf8(k);
            EXPECT_EQ(section.value(key, QStringLiteral("<def>")),
                      ReadTextValue(text, QStringLiteral("Resource"), key, QStringLiteral("<def>")))
                << "key " << qPrintable(key) << " in " << qPrintable(text);
        }
    }
}

}  // namespace
}  // namespace td::test
