#pragma once
#include "songdb/SqliteStatement.h"
#include "songdb/Backend.h"
#include <QString>
#include <atomic>

struct sqlite3;
struct sqlite3_stmt;

namespace td {

// How many statements this process started on a connection while another statement of the same
// connection was in the middle of its steps. Nothing in the console does that; a count above zero
// is a fault, and each one is logged.
int StatementsStartedMidStatement();

// The embedded store: one SQLite file, with the GB2312 collation registered and a busy timeout,
// so that consoles writing the same file wait for each other instead of failing.
class SqliteBackend : public Backend {
public:
    // Opens and reads the file's schema; throws AppError with SQLite's text when it is no
    // database, is locked past the timeout, or cannot be read.
    SqliteBackend(const QString& file, int busyTimeoutMs, bool readOnly, bool create);
    ~SqliteBackend() override;

    const SqlDialect& dialect() const override;
    bool isOpen() const override { return db_ != nullptr; }
    void close() override;
    bool readOnly() const override { return readOnly_; }

    std::unique_ptr<RowStore> query(const QString& sql, bool keyed, std::vector<qint64>* keys) override;
    std::unique_ptr<RowStore> query(const QString& sql, bool keyed, std::vector<qint64>* keys,
                                    const std::function<void()>& beforeRows) override;
    qint64 execute(const QString& sql) override;
    void selectInto(const QString& selectSql, const QString& table, const QString& file) override;

    qint64 insertRow(const QString& table, const ColumnValues& values) override;
    void updateRow(const QString& table, qint64 key, const ColumnValues& values,
                   const ColumnValues& originals) override;
    void removeRow(const QString& table, qint64 key) override;
    bool readRow(const QString& table, qint64 key, RowStore& into, qsizetype row) override;

    std::shared_ptr<Backend> openReader() const override;
    void interrupt() override;

    sqlite3* handle() const { return db_; }

private:
    sqlite3* requireOpen() const;
    void shadowScratchTable(const QString& table);
    void checkWritable() const;
    QString createTableFor(sqlite3_stmt* select, const QString& table, const QString& schema) const;

    sqlite3* db_ = nullptr;
    bool readOnly_ = false;
    QString file_;
    int busyTimeoutMs_ = 0;
    std::atomic<bool> interrupted_{false};
    StatementCache rowStatements_;
};

}  // namespace td
