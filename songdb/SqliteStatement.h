#pragma once
#include "songdb/Backend.h"
#include <QHash>
#include <QString>
#include <QVariant>

struct sqlite3;
struct sqlite3_stmt;

namespace td {

class StatementCache;

// A prepared SQLite statement that finalizes itself; failures throw AppError with SQLite's text.
class SqliteStatement {
public:
    SqliteStatement(sqlite3* db, const QString& sql);
    // Takes the statement from the cache when it holds one for this text, and gives it back after.
    SqliteStatement(sqlite3* db, const QString& sql, StatementCache& cache);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    sqlite3_stmt* get() const { return stmt_; }
    void bind(int index, const QVariant& value);  // 1-based
    bool step();                                  // true while a row is ready
    void reset();                                 // ready to run again with new bindings

private:
    void prepare(const QString& sql);

    sqlite3* db_;
    sqlite3_stmt* stmt_ = nullptr;
    StatementCache* cache_ = nullptr;
    QString text_;
};

// Prepared statements of a connection kept for the row reads and writes that repeat with the same
// text, so that an import of 100,000 rows parses each of its statements once. A statement in use is
// out of the cache, so two of the same text can run at once.
class StatementCache {
public:
    StatementCache() = default;
    ~StatementCache();
    StatementCache(const StatementCache&) = delete;
    StatementCache& operator=(const StatementCache&) = delete;

    sqlite3_stmt* take(const QString& sql);
    void give(const QString& sql, sqlite3_stmt* stmt);  // reset, bindings cleared
    void clear();                                      // before the connection closes

private:
    QHash<QString, sqlite3_stmt*> statements_;
};

// SQLite's text of the last error on db.
QString SqliteError(sqlite3* db);
// "name" quoted as an identifier.
QString SqlName(const QString& name);

}  // namespace td
