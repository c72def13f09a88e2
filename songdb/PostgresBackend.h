#pragma once
#include "songdb/Backend.h"
#include <QString>
#include <map>
#include <memory>
#include <mutex>

struct pg_conn;
struct pg_result;
struct pg_cancel;

namespace td {

// A song database on a PostgreSQL server, for sites where several consoles and room players share
// one songbook. Reached by an address "postgresql://user@host:port/dbname". A row's bookmark is
// its table's key column: song.id, or the td_rowid every other table carries and no select shows.
class PostgresBackend : public Backend {
public:
    // Connects, waiting at most timeoutMs for the server and for another connection's lock.
    // Throws AppError with the server's text when it cannot connect.
    PostgresBackend(const QString& address, int timeoutMs, bool readOnly);
    ~PostgresBackend() override;

    const SqlDialect& dialect() const override { return dialect_; }
    bool isOpen() const override { return conn_ != nullptr; }
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

    // Appends rows to a table in one stream (COPY), columns matched by name; a key column taken over
    // moves the table's key counter past the highest key.
    void copyRows(const QString& table, const RowStore& rows);

    // The key column of a table ("id", "td_rowid"); empty when it has none or is no table.
    QString keyColumn(const QString& table);
    bool hasTable(const QString& table);

private:
    struct ResultDeleter {
        void operator()(pg_result* r) const;
    };
    using Result = std::unique_ptr<pg_result, ResultDeleter>;

    pg_conn* requireOpen() const;
    void checkWritable() const;
    Result run(const QString& sql, const std::vector<QVariant>& params = {});
    qint64 execute(const QString& sql, const std::vector<QVariant>& params);
    void createMediaShadow();
    void describeColumn(unsigned int tableOid, int column, ColumnInfo& info);

    pg_conn* conn_ = nullptr;
    QString address_;
    int timeoutMs_ = 0;
    bool readOnly_ = false;
    SqlDialect dialect_;
    std::map<QString, QString> keyColumns_;                 // lower-case table name to its key column
    std::map<unsigned int, QString> tableNames_;            // table oid to name
    std::map<std::pair<unsigned int, int>, QString> columnNames_;
    std::mutex cancelMutex_;
    pg_cancel* cancel_ = nullptr;
};

// Statements that make a database ready to hold a songbook: the GB2312 collation and the
// functions the translated statements call. Run once, when the songbook is created.
QStringList PostgresSongbookSetup();

// The database named by a postgresql:// address, made when it does not exist yet (the admin
// tool's create); throws AppError when the server refuses.
void EnsurePostgresDatabase(const QString& address, int timeoutMs);

}  // namespace td
