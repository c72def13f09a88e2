#pragma once
#include "shell/services/AppError.h"
#include "songdb/RowStore.h"
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace td {

// How the Jet translation writes what differs between stores.
struct SqlDialect {
    QString rowKey;         // expression of a row's stable key in a one-table select ("rowid")
    QString textCollation;  // suffix that makes a text expression compare in GB2312 order
    QString upperFunction;  // UCASE
    // Prefix of the functions that stand for comparisons of Mid(x,i,1) with one character:
    // PREFIXin(x,i,lo,hi) for ">=lo And <hi" (hi NULL: ">=lo" alone), PREFIXupper_is(x,i,c) for
    // UCASE(...)=c, PREFIXin_or_upper_is(x,i,lo,hi,c) for both joined by "or". Empty: none.
    QString characterFunctions = {};
    bool foldNames = false;   // [Name] becomes "name": the store keeps names in lower case
    QString likeOperator = {};  // in place of "like" (one that ignores case where "like" does not)
    QString emptyList = {};     // inside the "()" of "in ()", where the store refuses an empty list
    QString nowFunction = {};   // Now() and Date() as calls without arguments; empty: SQLite's forms
    QString dateFunction = {};
    // The key of a table's rows where it differs from table to table; empty answer: no key.
    std::function<QString(const QString& table)> rowKeyOf = {};
};

using ColumnValues = std::vector<std::pair<QString, QVariant>>;

// The failures every store reports in the same words.
inline AppError StoreClosedError()
{
    return AppError(QStringLiteral("Operation is not allowed when the object is closed."));
}
inline AppError StoreReadOnlyError()
{
    return AppError(QStringLiteral("Cannot update. Database or object is read-only."));
}
// A row write whose row is gone, or whose changed columns no longer hold what was read.
inline AppError RowGoneError()
{
    return AppError(
        QStringLiteral("Row cannot be located for updating. Some values may have been changed "
                       "since it was last read."));
}

// One open database. Every caller reaches it through a Connection, which translates Jet SQL into
// the native statements this interface takes. Failures throw AppError with the store's error text.
class Backend {
public:
    virtual ~Backend() = default;

    virtual const SqlDialect& dialect() const = 0;
    virtual bool isOpen() const = 0;
    virtual void close() = 0;
    // A source that can only be read (a legacy songbook) refuses every write.
    virtual bool readOnly() const = 0;

    // Runs a statement with rows. When keyed, its first column is the row key and goes to keys,
    // not into the store.
    virtual std::unique_ptr<RowStore> query(const QString& sql, bool keyed, std::vector<qint64>* keys) = 0;
    // As query, calling beforeRows once the statement has run far enough to fail, before the first
    // row is stored: a caller that reads its rows again drops the old ones there, so a big result
    // is never held twice.
    virtual std::unique_ptr<RowStore> query(const QString& sql, bool keyed, std::vector<qint64>* keys,
                                            const std::function<void()>& beforeRows)
    {
        auto rows = query(sql, keyed, keys);
        beforeRows();
        return rows;
    }
    // Runs a statement without rows; answers the number of rows it changed.
    virtual qint64 execute(const QString& sql) = 0;
    // Creates table in the database file (empty file: this database) with the columns and rows of
    // the select, as "select ... into table in 'file'" does.
    virtual void selectInto(const QString& selectSql, const QString& table, const QString& file) = 0;

    // Row writes of a recordset bound to one table, addressed by the row key. update and remove
    // throw when the row is gone, or when a changed column no longer holds its original value.
    virtual qint64 insertRow(const QString& table, const ColumnValues& values) = 0;
    virtual void updateRow(const QString& table, qint64 key, const ColumnValues& values,
                           const ColumnValues& originals) = 0;
    virtual void removeRow(const QString& table, qint64 key) = 0;
    // Reads the named columns of one row into a row of the store (after an insert: generated ids).
    virtual bool readRow(const QString& table, qint64 key, RowStore& into, qsizetype row) = 0;

    // A second, read-only connection to the same database, for reading on another thread while
    // this one stays free; nullptr when the store cannot give one (the caller then reads here).
    virtual std::shared_ptr<Backend> openReader() const { return nullptr; }
    // Makes the statement running on this connection, or the next one to start, fail soon.
    // Safe to call from any thread while the connection is open.
    virtual void interrupt() {}

    // The delete journal on this connection (see DeleteJournal.h): known to be in the database, and
    // when its old rows last went (milliseconds since the epoch).
    bool deleteJournalReady = false;
    qint64 deleteJournalPrunedAt = 0;
};

}  // namespace td
