#pragma once
#include "songdb/Backend.h"
#include <QString>

namespace td {

// A Jet SQL statement made ready for a backend.
struct TranslatedStatement {
    enum class Kind { Rows, NoRows, SelectInto };
    Kind kind = Kind::NoRows;
    QString sql;        // the native statement (for SelectInto: the select without "into ... in")
    QString keyedSql;   // a one-table select with the row key as its first column; else empty
    QString baseTable;  // the table of keyedSql
    QString intoTable;  // SelectInto: the new table
    QString intoFile;   // SelectInto: the other database file, empty for this one
};

// Translates one Jet SQL statement: "delete * from", [bracketed] names, the bare column index,
// UCASE, Mid (compared in GB2312 order), "select ... into T in 'file'", Jet's double-quoted texts.
// Throws AppError for a second statement after ";" and for any construct it does not support,
// naming it.
TranslatedStatement TranslateJetSql(const QString& jet, const SqlDialect& dialect);

}  // namespace td
