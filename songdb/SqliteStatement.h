#pragma once
#include "songdb/Backend.h"
#include <QString>
#include <QVariant>

struct sqlite3;
struct sqlite3_stmt;

namespace td {

// A prepared SQLite statement that finalizes itself; failures throw AppError with SQLite's text.
class SqliteStatement {
public:
    SqliteStatement(sqlite3* db, const QString& sql);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    sqlite3_stmt* get() const { return stmt_; }
    void bind(int index, const QVariant& value);  // 1-based
    bool step();                                  // true while a row is ready
    void reset();                                 // ready to run again with new bindings

private:
    sqlite3* db_;
    sqlite3_stmt* stmt_ = nullptr;
};

// SQLite's text of the last error on db.
QString SqliteError(sqlite3* db);
// "name" quoted as an identifier.
QString SqlName(const QString& name);

}  // namespace td
