#pragma once
#include <QByteArrayView>
#include <QString>
#include <QVariant>

namespace td {

// Dates are stored as text "yyyy-MM-dd HH:mm:ss", which sorts and compares in time order.
QVariant DateFromStore(const QString& text);
// The stored form of a date, date-time or date text; empty text when the value is no date.
QString DateToStore(const QVariant& value);
// True when the UTF-8 text has the shape of the stored form, which is then shown as it is.
bool HasStoreShape(QByteArrayView utf8);
// The one text a stored date shows everywhere: the stored form; a date kept in another form (ISO
// with a 'T', a day alone) in the stored form as well; text that is no date as it is.
QString DateText(const QString& stored);

}  // namespace td
