#include "songdb/DateText.h"
#include <QDateTime>

namespace td {

namespace {
const QString kStoreFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss");

QDateTime parseDate(const QString& text)
{
    QDateTime dt = QDateTime::fromString(text, kStoreFormat);
    if (!dt.isValid())
        dt = QDateTime::fromString(text, Qt::ISODate);
    if (!dt.isValid()) {
        const QDate d = QDate::fromString(text, Qt::ISODate);
        if (d.isValid())
            dt = d.startOfDay();
    }
    return dt;
}
}  // namespace

QVariant DateFromStore(const QString& text)
{
    const QDateTime dt = parseDate(text);
    return dt.isValid() ? QVariant(dt) : QVariant(text);
}

QString DateToStore(const QVariant& value)
{
    switch (value.typeId()) {
        case QMetaType::QDateTime:
            return value.toDateTime().toString(kStoreFormat);
        case QMetaType::QDate:
            return value.toDate().startOfDay().toString(kStoreFormat);
        default: {
            const QDateTime dt = parseDate(value.toString());
            return dt.isValid() ? dt.toString(kStoreFormat) : QString();
        }
    }
}

bool HasStoreShape(QByteArrayView utf8)
{
    static constexpr char kShape[] = "dddd-dd-dd dd:dd:dd";
    if (utf8.size() != qsizetype(sizeof kShape) - 1)
        return false;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const char c = utf8[i];
        if (kShape[i] == 'd' ? (c < '0' || c > '9') : c != kShape[i])
            return false;
    }
    return true;
}

QString DateText(const QString& stored)
{
    if (HasStoreShape(QByteArrayView(stored.toLatin1())))
        return stored;
    const QString text = DateToStore(stored);
    return text.isEmpty() ? stored : text;
}

}  // namespace td
