#pragma once
#include <QString>
#include <QStringList>

namespace td {
class Connection;
}

namespace td::test {

// Every field of every row a select gives, one text per row ("|" between fields, NULL as "NULL", bytes
// in hex): two of them are equal when the rows are, field for field and byte for byte.
QStringList TableRows(Connection& db, const QString& select);

// The lines of event.log in a program folder that carry a text.
QStringList EventLogLines(const QString& appDir, const QString& containing);

}  // namespace td::test
