#include "songdb/SqliteStatement.h"
#include "shell/services/AppError.h"
#include <sqlite3.h>

namespace td {

QString SqliteError(sqlite3* db)
{
    return QString::fromUtf8(sqlite3_errmsg(db));
}

QString SqlName(const QString& name)
{
    QString n = name;
    n.replace(u'"', QStringLiteral("\"\""));
    return u'"' + n + u'"';
}

SqliteStatement::SqliteStatement(sqlite3* db, const QString& sql) : db_(db)
{
    prepare(sql);
}

SqliteStatement::SqliteStatement(sqlite3* db, const QString& sql, StatementCache& cache)
    : db_(db), stmt_(cache.take(sql)), cache_(&cache), text_(sql)
{
    if (!stmt_)
        prepare(sql);
}

void SqliteStatement::prepare(const QString& sql)
{
    const QByteArray utf8 = sql.toUtf8();
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(db_, utf8.constData(), int(utf8.size()), &stmt_, &tail) != SQLITE_OK)
        throw AppError(SqliteError(db_));
    if (!stmt_)
        throw AppError(QStringLiteral("The SQL statement is empty."));
    for (; tail && *tail; ++tail)
        if (!QChar(QLatin1Char(*tail)).isSpace() && *tail != ';') {
            sqlite3_finalize(stmt_);  // a constructor that throws has no destructor to do it
            throw AppError(
                QStringLiteral("Only one statement can run at a time: text after ';' is not allowed."));
        }
}

SqliteStatement::~SqliteStatement()
{
    if (cache_ && stmt_)
        cache_->give(text_, stmt_);
    else
        sqlite3_finalize(stmt_);
}

void SqliteStatement::bind(int index, const QVariant& value)
{
    int rc = SQLITE_OK;
    switch (value.typeId()) {
        case QMetaType::UnknownType:
        case QMetaType::Nullptr:
            rc = sqlite3_bind_null(stmt_, index);
            break;
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Bool:
            rc = sqlite3_bind_int64(stmt_, index, value.toLongLong());
            break;
        case QMetaType::Double:
        case QMetaType::Float:
            rc = sqlite3_bind_double(stmt_, index, value.toDouble());
            break;
        case QMetaType::QByteArray: {
            const QByteArray b = value.toByteArray();
            rc = sqlite3_bind_blob64(stmt_, index, b.constData(), sqlite3_uint64(b.size()), SQLITE_TRANSIENT);
            break;
        }
        default: {
            if (value.isNull()) {
                rc = sqlite3_bind_null(stmt_, index);
                break;
            }
            const QByteArray u = value.toString().toUtf8();
            rc = sqlite3_bind_text64(stmt_, index, u.constData(), sqlite3_uint64(u.size()), SQLITE_TRANSIENT,
                                     SQLITE_UTF8);
            break;
        }
    }
    if (rc != SQLITE_OK)
        throw AppError(SqliteError(db_));
}

void SqliteStatement::reset()
{
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
}

bool SqliteStatement::step()
{
    const int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW)
        return true;
    if (rc == SQLITE_DONE)
        return false;
    throw AppError(SqliteError(db_));
}

StatementCache::~StatementCache()
{
    clear();
}

sqlite3_stmt* StatementCache::take(const QString& sql)
{
    return statements_.take(sql);
}

void StatementCache::give(const QString& sql, sqlite3_stmt* stmt)
{
    constexpr qsizetype kMostKept = 64;  // a few per table and column set
    sqlite3_reset(stmt);
    sqlite3_clear_bindings(stmt);
    if (statements_.contains(sql) || statements_.size() >= kMostKept) {
        sqlite3_finalize(stmt);
        return;
    }
    statements_.insert(sql, stmt);
}

void StatementCache::clear()
{
    for (sqlite3_stmt* stmt : std::as_const(statements_))
        sqlite3_finalize(stmt);
    statements_.clear();
}

}  // namespace td
