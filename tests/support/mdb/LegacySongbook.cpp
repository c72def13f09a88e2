#include "LegacySongbook.h"
#include <QDateTime>

namespace td::test {

std::vector<JetColumn> LegacySongColumns()
{
    return {{QStringLiteral("id"), JetType::Long},
            {QStringLiteral("Index"), JetType::Long},
            {QStringLiteral("Name"), JetType::Text, 80},
            {QStringLiteral("Chars"), JetType::Int},
            {QStringLiteral("Singer"), JetType::Text, 50},
            {QStringLiteral("Language"), JetType::Text, 20},
            {QStringLiteral("Style"), JetType::Text, 20},
            {QStringLiteral("Grade"), JetType::Byte},
            {QStringLiteral("Channel"), JetType::Text, 10},
            {QStringLiteral("OrderTimes"), JetType::Long},
            {QStringLiteral("Region"), JetType::Text, 20},
            {QStringLiteral("MediaFile"), JetType::Text, 120},
            {QStringLiteral("LibraryLocalPath"), JetType::Text, 120},
            {QStringLiteral("lupd_by"), JetType::Text, 20},
            {QStringLiteral("lupd_time"), JetType::DateTime},
            {QStringLiteral("Remark"), JetType::Memo}};
}

std::vector<JetColumn> LegacySingerColumns()
{
    return {{QStringLiteral("Name"), JetType::Text, 50},    {QStringLiteral("Male"), JetType::Bool},
            {QStringLiteral("Female"), JetType::Bool},      {QStringLiteral("region"), JetType::Text, 20},
            {QStringLiteral("Image"), JetType::Ole},        {QStringLiteral("ImageLen"), JetType::Long},
            {QStringLiteral("Description"), JetType::Memo}, {QStringLiteral("Remark"), JetType::Text, 255}};
}

QVariantList LegacySongRow(qsizetype i)
{
    static const QString titles[] = {QStringLiteral("月亮代表我的心"), QStringLiteral("甜蜜蜜"),
                                     QStringLiteral("朋友"), QStringLiteral("Yesterday Once More")};
    static const QString singers[] = {QStringLiteral("邓丽君"), QStringLiteral("周华健"),
                                      QStringLiteral("Carpenters")};
    const QString title = titles[i % 4] + QStringLiteral(" %1").arg(i);
    return {qint64(i + 1),
            qint64(1000 + i),
            title,
            int(title.size()),
            singers[i % 3],
            i % 4 == 3 ? QStringLiteral("English") : QStringLiteral("国语"),
            QStringLiteral("流行"),
            int(i % 5),
            i % 2 ? QStringLiteral("L") : QStringLiteral("R"),
            qint64(i % 97),
            QStringLiteral("China"),
            QStringLiteral("\\Pop\\%1.vob").arg(i, 6, 10, QLatin1Char('0')),
            QStringLiteral("D:\\Songs"),
            QStringLiteral("admin"),
            QDateTime(QDate(1999, 12, 31).addDays(i % 400), QTime(23, 59, 58)),
            QStringLiteral("from the old console")};
}

bool WriteLegacySongbook(const QString& path, const JetFileOptions& options, qsizetype songs, QString* error)
{
    JetTable song{QStringLiteral("song"), LegacySongColumns(), {}, LegacySongRow, songs};
    JetTable singer{QStringLiteral("singer"), LegacySingerColumns(), {}, {}, 0};
    return WriteJetDatabase(path, options, {song, singer}, error);
}

}  // namespace td::test
