#include "songdb/AdoTypes.h"
#include "songdb/RowStore.h"
#include "support/QtPrint.h"
#include <QByteArray>
#include <functional>
#include <gtest/gtest.h>

namespace td {
namespace {

std::unique_ptr<RowStore> storeOf(int type)
{
    return std::make_unique<RowStore>(std::vector<ColumnInfo>{{QStringLiteral("v"), type, {}, {}}});
}

void setUtf8(RowStore& store, qsizetype row, const QByteArray& utf8)
{
    store.setText(row, 0, utf8.constData(), utf8.size());
}

struct TextCase {
    const char* name;
    int type;
    std::function<void(RowStore&, qsizetype)> set;
    QString expected;
};

// The list's fill path appends what text() answers, for every kind of cell.
TEST(RowStore, AppendTextGivesWhatTextGives)
{
    const TextCase cases[] = {
        {"null", adVarWChar, [](RowStore& s, qsizetype r) { s.setNull(r, 0); }, QString()},
        {"small integer", adInteger, [](RowStore& s, qsizetype r) { s.setInteger(r, 0, -42); },
         QStringLiteral("-42")},
        {"large integer", adInteger, [](RowStore& s, qsizetype r) { s.setInteger(r, 0, -9000000000123LL); },
         QStringLiteral("-9000000000123")},
        {"real", adDouble, [](RowStore& s, qsizetype r) { s.setReal(r, 0, 2.5); }, QStringLiteral("2.5")},
        {"empty text", adVarWChar, [](RowStore& s, qsizetype r) { setUtf8(s, r, ""); }, QString()},
        {"chinese", adVarWChar, [](RowStore& s, qsizetype r) { setUtf8(s, r, "月亮代表我的心"); },
         QString::fromUtf8("月亮代表我的心")},
        {"outside the basic plane", adVarWChar,
         [](RowStore& s, qsizetype r) { setUtf8(s, r, "a\xF0\x9F\x8E\xA4z"); },
         QString::fromUtf8("a\xF0\x9F\x8E\xA4z")},
        {"broken utf-8", adVarWChar, [](RowStore& s, qsizetype r) { setUtf8(s, r, "ab\xE6\x9C"); },
         QString::fromUtf8("ab\xE6\x9C")},
        {"blob", adLongVarBinary, [](RowStore& s, qsizetype r) { s.setBlob(r, 0, "xy", 2); },
         QStringLiteral("xy")},
        {"date in the stored form", adDate,
         [](RowStore& s, qsizetype r) { setUtf8(s, r, "2024-06-01 07:08:09"); },
         QStringLiteral("2024-06-01 07:08:09")},
        {"date with a T", adDate, [](RowStore& s, qsizetype r) { setUtf8(s, r, "2024-06-01T07:08:09"); },
         QStringLiteral("2024-06-01 07:08:09")},
        {"day alone", adDate, [](RowStore& s, qsizetype r) { setUtf8(s, r, "2024-06-01"); },
         QStringLiteral("2024-06-01 00:00:00")},
        {"no date", adDate, [](RowStore& s, qsizetype r) { setUtf8(s, r, "soon"); }, QStringLiteral("soon")},
        {"date shape, no date", adDate,
         [](RowStore& s, qsizetype r) { setUtf8(s, r, "2024-13-45 99:99:99"); },
         QStringLiteral("2024-13-45 99:99:99")},
    };
    for (const TextCase& c : cases) {
        auto store = storeOf(c.type);
        const qsizetype row = store->appendRow();
        c.set(*store, row);
        EXPECT_EQ(store->text(row, 0), c.expected) << c.name;
        QString out = QStringLiteral("before|");
        store->appendText(row, 0, out);
        EXPECT_EQ(out, QStringLiteral("before|") + c.expected) << c.name;
    }
}

// Repeated texts share their bytes; every row still reads its own value, also after one of them
// is rewritten and after more distinct values than are remembered have come by.
TEST(RowStore, RepeatedTextsShareBytesAndReadBackTheirOwn)
{
    auto store = storeOf(adVarWChar);
    const QByteArray path(200, 'p');
    constexpr int kRows = 60000;  // 12 MB if every copy were kept
    for (int i = 0; i < kRows; ++i)
        setUtf8(*store, store->appendRow(), path);
    EXPECT_LT(store->memoryUsed(), std::size_t(6) << 20);

    const qsizetype cycled = store->appendRow();
    for (int i = 0; i < 20; ++i)
        setUtf8(*store, store->appendRow(), QByteArray::number(i % 10));
    store->setValue(0, 0, QStringLiteral("changed"));
    setUtf8(*store, cycled, "3");

    EXPECT_EQ(store->text(0, 0), u"changed");
    EXPECT_EQ(store->text(1, 0), QString::fromLatin1(path));
    EXPECT_EQ(store->text(kRows - 1, 0), QString::fromLatin1(path));
    EXPECT_EQ(store->text(cycled, 0), u"3");
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(store->text(cycled + 1 + i, 0), QString::number(i % 10)) << i;
}

}  // namespace
}  // namespace td
