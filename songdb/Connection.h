#pragma once
#include "songdb/Backend.h"
#include "songdb/Recordset.h"
#include <QString>
#include <memory>

namespace td {

// A connection to one database: Jet SQL in, through the translation, to its backend.
// Every operation throws AppError with the store's or the translation's error text.
class Connection {
public:
    // A connection without a backend is closed: every statement on it fails, with the reason the
    // store refused to open it when one is given.
    explicit Connection(std::shared_ptr<Backend> backend = nullptr, QString refusal = {});
    ~Connection();

    bool isOpen() const;
    void close();
    bool readOnly() const;
    Backend& backend() const { return *backend_; }  // only while open

    // Opens a client-side recordset: every row is read before this returns.
    std::unique_ptr<Recordset> openRecordset(const QString& jetSql);
    // The read of a statement with rows, translated and bound to this connection, for a reader
    // elsewhere (BackgroundRead); throws AppError as openRecordset does before it reads.
    RecordSource prepareRead(const QString& jetSql);
    // A recordset of this connection from rows read elsewhere for a prepared read.
    static std::unique_ptr<Recordset> recordsetFrom(RecordSource source, std::unique_ptr<RowStore> rows,
                                                    std::vector<qint64> keys);
    // Runs a statement without rows; answers the number of rows it changed.
    qint64 execute(const QString& jetSql);

private:
    [[noreturn]] void throwClosed() const;

    std::shared_ptr<Backend> backend_;
    QString refusal_;
};

// How a database file or address is opened.
struct OpenOptions {
    int busyTimeoutMs = 5000;  // how long a writer waits for another connection's lock
    bool readOnly = false;
    bool create = false;  // create the file when it does not exist (the admin tool)
};

// A postgresql:// address of a database server rather than a file path.
bool IsServerAddress(const QString& location);

// Opens the database at a location: a SQLite file, or a database on a PostgreSQL server by its
// postgresql://user@host:port/dbname address (busyTimeoutMs is then also the time to connect). Throws AppError when the store refuses it
// (not a database, locked, unreadable); the connection is then not left half open.
std::unique_ptr<Connection> OpenConnection(const QString& location, const OpenOptions& options = {});

}  // namespace td
