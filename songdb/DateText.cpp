#include "songdb/DateText.h"
#include <QDateTime>

namespace td {

namespace {
const QString kStoreFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss");

char16_t unit(QChar c)
{
    return c.unicode();
}
char16_t unit(char c)
{
    return char16_t(uchar(c));
}

// Whether text has the store's shape, digits where digits go; Text is bytes or UTF-16.
template <typename Text>
bool storeShaped(Text text)
{
    static constexpr char kShape[] = "dddd-dd-dd dd:dd:dd";
    if (text.size() != qsizetype(sizeof kShape) - 1)
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = unit(text[i]);
        if (kShape[i] == 'd' ? (c < u'0' || c > u'9') : c != char16_t(kShape[i]))
            return false;
    }
    return true;
}

int number(QStringView text, qsizetype from, qsizetype length)
{
    int n = 0;
    for (qsizetype i = from; i < from + length; ++i)
        n = n * 10 + (text[i].unicode() - u'0');
    return n;
}

QDateTime parseStoreShape(QStringView text)
{
    const QDate date(number(text, 0, 4), number(text, 5, 2), number(text, 8, 2));
    const QTime time(number(text, 11, 2), number(text, 14, 2), number(text, 17, 2));
    return date.isValid() && time.isValid() ? QDateTime(date, time) : QDateTime();
}

QDateTime parseDate(const QString& text)
{
    // Most dates come in the store's shape, and the general parser is slow.
    if (storeShaped(QStringView(text))) {
        const QDateTime quick = parseStoreShape(text);
        if (quick.isValid())
            return quick;
    }
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
    return storeShaped(utf8);
}

QString DateText(const QString& stored)
{
    if (HasStoreShape(QByteArrayView(stored.toLatin1())))
        return stored;
    const QString text = DateToStore(stored);
    return text.isEmpty() ? stored : text;
}

}  // namespace td
