#include "support/TableRows.h"
#include "songdb/Connection.h"
#include <QDir>
#include <QFile>

namespace td::test {

QStringList TableRows(Connection& db, const QString& select)
{
    QStringList out;
    auto rs = db.openRecordset(select);
    for (qsizetype p = 0; p < rs->RecordCount(); ++p) {
        QStringList fields;
        for (int c = 0; c < rs->FieldCount(); ++c) {
            const QVariant v = rs->value(p, c);
            fields << (rs->isNull(p, c)                          ? QStringLiteral("NULL")
                       : v.typeId() == QMetaType::QByteArray ? QString::fromLatin1(v.toByteArray().toHex())
                                                             : v.toString());
        }
        out << fields.join(u'|');
    }
    return out;
}

QStringList EventLogLines(const QString& appDir, const QString& containing)
{
    QFile f(QDir(appDir).filePath(QStringLiteral("event.log")));
    QStringList lines;
    if (f.open(QIODevice::ReadOnly))
        for (const QString& line : QString::fromUtf8(f.readAll()).split(u'\n'))
            if (line.contains(containing))
                lines << line.trimmed();
    return lines;
}

}  // namespace td::test
