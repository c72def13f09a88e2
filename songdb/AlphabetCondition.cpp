#include "songdb/Gb2312Initials.h"
#include "songdb/SongSearch.h"
#include "songdb/SongStatements.h"

namespace td {

namespace {

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
        return QStringLiteral(" and (") + at + QStringLiteral(">='") + QString::fromUtf8(kGb2312InitialZ) +
               QStringLiteral("' or ") + ucase + QStringLiteral("Z')");
    for (const auto& r : kGb2312InitialRanges)
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
