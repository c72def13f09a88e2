#include "songdb/SongSearch.h"
#include "songdb/SongStatements.h"

namespace td {

namespace {

struct InitialRange {
    char letter;
    const char* lower;
    const char* upper;
};

// First characters of each pinyin initial in GB2312 order, as written: U ends below where it
// starts (only a real letter U matches), and W begins at the 挖 that ends T.
const InitialRange kRanges[] = {
    {'A', "啊", "八"}, {'B', "八", "擦"}, {'C', "擦", "搭"}, {'D', "搭", "蛾"}, {'E', "蛾", "发"},
    {'F', "发", "噶"}, {'G', "噶", "哈"}, {'H', "哈", "击"}, {'J', "击", "喀"}, {'K', "喀", "垃"},
    {'L', "垃", "妈"}, {'M', "妈", "拿"}, {'N', "拿", "哦"}, {'O', "哦", "啪"}, {'P', "啪", "期"},
    {'Q', "期", "然"}, {'R', "然", "撒"}, {'S', "撒", "塌"}, {'T', "塌", "挖"}, {'U', "挖", "撒"},
    {'W', "挖", "昔"}, {'X', "昔", "压"}, {'Y', "压", "匝"},
};

bool chineseMode(const QString& language)
{
    return language == u"Chinese Simplified" || language == u"Chinese Traditional";
}

bool singerMode()
{
    return SearchMode() == u"frmmenu/singer/name" || SearchMode() == u"frmmenu/f1search/singer/name";
}

QString characterTest(QChar c, const QString& at)
{
    const QString ucase = QStringLiteral("UCASE(") + at + QStringLiteral(")='");
    if (c >= u'0' && c <= u'9')
        return QStringLiteral(" And ") + at + QStringLiteral("='") + c + u'\'';
    if (c == u'I' || c == u'V')
        return QStringLiteral(" And ") + ucase + c + u'\'';
    if (c == u'Z')
        return QStringLiteral(" and (") + at + QStringLiteral(">='") + QString::fromUtf8("匝") +
               QStringLiteral("' or ") + ucase + QStringLiteral("Z')");
    for (const auto& r : kRanges)
        if (c == QLatin1Char(r.letter))
            return QStringLiteral(" and (") + at + QStringLiteral(">='") + QString::fromUtf8(r.lower) +
                   QStringLiteral("' And ") + at + QStringLiteral("<'") + QString::fromUtf8(r.upper) +
                   QStringLiteral("' or ") + ucase + c + QStringLiteral("')");
    return {};
}

}  // namespace

QString AlphabetCondition(const QString& value)
{
    if (value.isEmpty())
        return {};
    const QString language = SongReadValue(QStringLiteral("Database"), QStringLiteral("Language"), {});
    if (!chineseMode(language)) {
        QString pattern = value;
        pattern.replace(u'?', u'%');
        return QStringLiteral(" and (") +
               (singerMode() ? QStringLiteral("[name]") : QStringLiteral("[title]")) +
               QStringLiteral(" like '") + pattern + QStringLiteral("%')");
    }
    const QString field = singerMode() ? QStringLiteral("Mid([name],") : QStringLiteral("Mid([title],");
    QString condition;
    for (qsizetype i = 0; i < value.size(); ++i)
        condition += characterTest(value[i], field + QString::number(i + 1) + QStringLiteral(",1)"));
    return condition;
}

}  // namespace td
