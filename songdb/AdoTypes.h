#pragma once
#include <QString>
#include <QVariant>

namespace td {

// Field type codes as ADO reports them; format files and callers compare against these numbers.
enum AdoType : int {
    adEmpty = 0,
    adSmallInt = 2,
    adInteger = 3,
    adDouble = 5,
    adDate = 7,
    adBoolean = 11,
    adVarWChar = 202,
    adLongVarBinary = 205,
};

// The type code of a column from its declared type ("SMALLINT", "INTEGER", "DATETIME", ...);
// adEmpty when the declaration says nothing (an expression column).
int AdoTypeOfDeclared(const QString& declared);

// A value converted to what a column of that type stores: integers as qint64, dates as their stored
// text, binary as QByteArray; NULL stays an invalid QVariant. Throws AppError when it cannot convert.
QVariant CoerceToType(const QVariant& value, int adoType);

}  // namespace td
