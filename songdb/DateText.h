#pragma once
#include <QString>
#include <QVariant>

namespace td {

// Dates are stored as text "yyyy-MM-dd HH:mm:ss", which sorts and compares in time order.
QVariant DateFromStore(const QString& text);
// The stored form of a date, date-time or date text; empty text when the value is no date.
QString DateToStore(const QVariant& value);

}  // namespace td
