#include "songdb/Connection.h"
#include "shell/services/AppError.h"
#include "songdb/DeleteJournal.h"
#include "songdb/JetSql.h"
#include "songdb/PostgresBackend.h"
#include "songdb/SqliteBackend.h"

namespace td {

Connection::Connection(std::shared_ptr<Backend> backend, QString refusal)
    : backend_(std::move(backend)), refusal_(std::move(refusal))
{
}
Connection::~Connection() = default;

void Connection::throwClosed() const
{
    if (!refusal_.isEmpty())
        throw AppError(refusal_);
    throw StoreClosedError();
}

bool Connection::isOpen() const
{
    return backend_ && backend_->isOpen();
}
void Connection::close()
{
    if (backend_)
        backend_->close();
}
bool Connection::readOnly() const
{
    return backend_ && backend_->readOnly();
}

RecordSource Connection::prepareRead(const QString& jetSql)
{
    if (!isOpen())
        throwClosed();
    const TranslatedStatement st = TranslateJetSql(jetSql, backend_->dialect());
    if (st.kind != TranslatedStatement::Kind::Rows) {
        execute(jetSql);  // runs, and like ADO gives no open recordset for a statement without rows
        throw StoreClosedError();
    }
    RecordSource source{backend_, jetSql, st.sql, {}, false};
    if (!st.keyedSql.isEmpty() && !backend_->readOnly()) {
        source.nativeSql = st.keyedSql;
        source.baseTable = st.baseTable;
        source.keyed = true;
    }
    return source;
}

std::unique_ptr<Recordset> Connection::recordsetFrom(RecordSource source, std::unique_ptr<RowStore> rows,
                                                     std::vector<qint64> keys)
{
    return std::make_unique<Recordset>(std::move(source), std::move(rows), std::move(keys));
}

std::unique_ptr<Recordset> Connection::openRecordset(const QString& jetSql)
{
    RecordSource source = prepareRead(jetSql);
    std::vector<qint64> keys;
    auto rows = backend_->query(source.nativeSql, source.keyed, &keys);
    return recordsetFrom(std::move(source), std::move(rows), std::move(keys));
}

qint64 Connection::execute(const QString& jetSql)
{
    if (!isOpen())
        throwClosed();
    const TranslatedStatement st = TranslateJetSql(jetSql, backend_->dialect());
    if (st.kind == TranslatedStatement::Kind::SelectInto) {
        backend_->selectInto(st.sql, st.intoTable, st.intoFile);
        return 0;
    }
    const QString kept = KeptTableOfDelete(st.sql);
    if (kept.isEmpty())
        return backend_->execute(st.sql);
    EnsureDeleteJournal(*backend_, false);
    const qint64 deleted = backend_->execute(st.sql);
    NoteDeleted(backend_, kept, deleted);
    return deleted;
}

bool IsServerAddress(const QString& location)
{
    return location.startsWith(u"postgresql://", Qt::CaseInsensitive);
}

std::unique_ptr<Connection> OpenConnection(const QString& location, const OpenOptions& options)
{
    if (IsServerAddress(location))
        return std::make_unique<Connection>(
            std::make_shared<PostgresBackend>(location, options.busyTimeoutMs, options.readOnly));
    if (location.endsWith(QStringLiteral(".mdb"), Qt::CaseInsensitive))
        throw AppError(QStringLiteral("Reading Access databases (.mdb) is not available in this version."));
    auto backend =
        std::make_shared<SqliteBackend>(location, options.busyTimeoutMs, options.readOnly, options.create);
    return std::make_unique<Connection>(std::move(backend));
}

}  // namespace td
