#include "songdb/PostgresBackend.h"
#include "shell/services/AppError.h"
#include "songdb/AdoTypes.h"
#include "songdb/DateText.h"
#include "songdb/SqliteBackend.h"
#include "songdb/SqliteStatement.h"
#include "songdb/StoreLog.h"
#include <QDateTime>
#include <QFileInfo>
#include <QStringList>
#include <QUrl>
#include <QUrlQuery>
#include <libpq-fe.h>

namespace td {

namespace {

// Type oids of the server's built-in types.
enum : Oid {
    kBool = 16,
    kBytea = 17,
    kInt8 = 20,
    kInt2 = 21,
    kInt4 = 23,
    kOid = 26,
    kFloat4 = 700,
    kFloat8 = 701,
    kNumeric = 1700,
    kDate = 1082,
    kTimestamp = 1114,
    kTimestampTz = 1184,
};

// The column every table but song carries as its key, and that no select shows.
const QString kHiddenKey = QStringLiteral("td_rowid");

int adoTypeOf(Oid type)
{
    switch (type) {
        case kInt2:
            return adSmallInt;
        case kInt4:
        case kInt8:
        case kOid:
            return adInteger;
        case kBool:
            return adBoolean;
        case kFloat4:
        case kFloat8:
        case kNumeric:
            return adDouble;
        case kDate:
        case kTimestamp:
        case kTimestampTz:
            return adDate;
        case kBytea:
            return adLongVarBinary;
        default:
            return adVarWChar;
    }
}

QString errorOf(const PGresult* r, pg_conn* conn)
{
    const char* primary = r ? PQresultErrorField(r, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
    // The client library breaks its texts over lines; a message box shows them as one.
    const QString text = QString::fromUtf8(primary ? primary : PQerrorMessage(conn)).simplified();
    return text.isEmpty() ? QStringLiteral("The database server did not answer.") : text;
}

bool failed(const PGresult* r)
{
    const ExecStatusType s = PQresultStatus(r);
    return s != PGRES_COMMAND_OK && s != PGRES_TUPLES_OK && s != PGRES_SINGLE_TUPLE;
}

QString quoted(const QString& name)
{
    return u'"' + QString(name).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

// A value as the server reads a parameter: text, or bytes for binary values.
struct Param {
    QByteArray bytes;
    bool null = true;
    bool binary = false;
};

Param paramOf(const QVariant& v)
{
    Param p;
    if (!v.isValid() || v.isNull())
        return p;
    p.null = false;
    switch (v.typeId()) {
        case QMetaType::QByteArray:
            p.bytes = v.toByteArray();
            p.binary = true;
            break;
        case QMetaType::Bool:
            p.bytes = v.toBool() ? "1" : "0";
            break;
        case QMetaType::Double:
        case QMetaType::Float:
            p.bytes = QByteArray::number(v.toDouble(), 'g', 17);
            break;
        case QMetaType::QDateTime:
        case QMetaType::QDate:
            p.bytes = DateToStore(v).toUtf8();
            break;
        default:
            p.bytes = v.toString().toUtf8();
    }
    return p;
}

// Integer text of the server, without a string in between.
qint64 integerOf(const char* text)
{
    return std::strtoll(text, nullptr, 10);
}

void storeValue(const PGresult* r, int row, int c, Oid type, RowStore& into, qsizetype target, int column)
{
    if (PQgetisnull(r, row, c)) {
        into.setNull(target, column);
        return;
    }
    const char* text = PQgetvalue(r, row, c);
    switch (type) {
        case kInt2:
        case kInt4:
        case kInt8:
        case kOid:
            into.setInteger(target, column, integerOf(text));
            break;
        case kBool:
            into.setInteger(target, column, text[0] == 't' ? 1 : 0);
            break;
        case kFloat4:
        case kFloat8:
        case kNumeric:
            into.setReal(target, column, std::strtod(text, nullptr));
            break;
        case kBytea: {
            size_t size = 0;
            unsigned char* bytes = PQunescapeBytea(reinterpret_cast<const unsigned char*>(text), &size);
            into.setBlob(target, column, bytes, qsizetype(size));
            PQfreemem(bytes);
            break;
        }
        default:
            into.setText(target, column, text, PQgetlength(r, row, c));
    }
}

// The connection keywords for an address: the address itself, and what every console sets.
struct ConnectParams {
    QByteArray address, timeout, options;
    const char* const* keywords() const
    {
        static const char* const k[] = {"dbname", "connect_timeout", "client_encoding", "options",
                                        "application_name", nullptr};
        return k;
    }
    std::vector<const char*> values() const
    {
        return {address.constData(), timeout.constData(), "UTF8", options.constData(), "tunedesk", nullptr};
    }
};

pg_conn* connectTo(const QString& address, int timeoutMs, bool readOnly)
{
    ConnectParams p;
    p.address = address.toUtf8();
    p.timeout = QByteArray::number(std::max(1, (timeoutMs + 999) / 1000));
    // A writer waits for another console's lock as long as a SQLite writer would, then fails.
    // The server's notices (an index that already exists) are no business of the operator.
    p.options =
        "-c DateStyle=ISO -c client_min_messages=warning -c lock_timeout=" + QByteArray::number(timeoutMs);
    if (readOnly)
        p.options += " -c default_transaction_read_only=on";
    const auto values = p.values();
    pg_conn* conn = PQconnectdbParams(p.keywords(), values.data(), 1);
    if (!conn)
        throw AppError(QStringLiteral("out of memory"));
    if (PQstatus(conn) != CONNECTION_OK) {
        const QString error = QString::fromUtf8(PQerrorMessage(conn)).simplified();
        PQfinish(conn);
        throw AppError(error);
    }
    return conn;
}

}  // namespace

void PostgresBackend::ResultDeleter::operator()(pg_result* r) const
{
    PQclear(r);
}

PostgresBackend::PostgresBackend(const QString& address, int timeoutMs, bool readOnly)
    : address_(address), timeoutMs_(timeoutMs), readOnly_(readOnly)
{
    conn_ = connectTo(address, timeoutMs, readOnly);
    cancel_ = PQgetCancel(conn_);
    dialect_.rowKey = kHiddenKey;
    dialect_.textCollation = QStringLiteral(" COLLATE td_gb2312");
    dialect_.upperFunction = QStringLiteral("upper");
    dialect_.characterFunctions = QStringLiteral("td_char_");
    dialect_.foldNames = true;
    dialect_.likeOperator = QStringLiteral("ILIKE");
    dialect_.emptyList = QStringLiteral("SELECT NULL WHERE false");
    dialect_.nowFunction = QStringLiteral("td_now");
    dialect_.dateFunction = QStringLiteral("td_date");
    dialect_.rowKeyOf = [this](const QString& table) { return keyColumn(table); };
    if (!readOnly)
        createMediaShadow();
}

PostgresBackend::~PostgresBackend()
{
    close();
}

void PostgresBackend::close()
{
    {
        std::lock_guard lock(cancelMutex_);
        if (cancel_)
            PQfreeCancel(cancel_);
        cancel_ = nullptr;
    }
    if (conn_)
        PQfinish(conn_);
    conn_ = nullptr;
}

pg_conn* PostgresBackend::requireOpen() const
{
    if (!conn_)
        throw StoreClosedError();
    return conn_;
}

void PostgresBackend::checkWritable() const
{
    requireOpen();
    if (readOnly_)
        throw StoreReadOnlyError();
}

PostgresBackend::Result PostgresBackend::run(const QString& sql, const std::vector<QVariant>& values)
{
    pg_conn* conn = requireOpen();
    const QByteArray text = sql.toUtf8();
    std::vector<Param> params;
    for (const auto& v : values)
        params.push_back(paramOf(v));
    std::vector<const char*> data;
    std::vector<int> lengths, formats;
    std::vector<Oid> types;
    for (const auto& p : params) {
        data.push_back(p.null ? nullptr : p.bytes.constData());
        lengths.push_back(int(p.bytes.size()));
        formats.push_back(p.binary ? 1 : 0);
        types.push_back(p.binary ? Oid(kBytea) : Oid(0));
    }
    Result r(params.empty() ? PQexec(conn, text.constData())
                            : PQexecParams(conn, text.constData(), int(params.size()), types.data(),
                                           data.data(), lengths.data(), formats.data(), 0));
    if (!r || failed(r.get()))
        throw AppError(errorOf(r.get(), conn));
    return r;
}

// The media table holds one console's last search of a library. Each connection keeps its own,
// named like the shared one, so two consoles' searches don't mix.
void PostgresBackend::createMediaShadow()
{
    if (!hasTable(QStringLiteral("media")))
        return;
    Result r(PQexec(conn_, "CREATE TEMP TABLE media (LIKE public.media INCLUDING DEFAULTS)"));
}

bool PostgresBackend::hasTable(const QString& table)
{
    Result r = run(QStringLiteral("SELECT to_regclass($1) IS NOT NULL"), {quoted(table.toLower())});
    return PQgetvalue(r.get(), 0, 0)[0] == 't';
}

QString PostgresBackend::keyColumn(const QString& table)
{
    const QString name = table.toLower();
    if (const auto it = keyColumns_.find(name); it != keyColumns_.end())
        return it->second;
    Result r = run(QStringLiteral("SELECT a.attname FROM pg_index i JOIN pg_attribute a ON "
                                  "a.attrelid = i.indrelid AND a.attnum = i.indkey[0] "
                                  "WHERE i.indisprimary AND i.indnatts = 1 AND i.indrelid = to_regclass($1)"),
                   {quoted(name)});
    const QString key = PQntuples(r.get()) == 1 ? QString::fromUtf8(PQgetvalue(r.get(), 0, 0)) : QString();
    if (!key.isEmpty())  // a table made later under this name is looked at again
        keyColumns_[name] = key;
    return key;
}

void PostgresBackend::describeColumn(unsigned int tableOid, int column, ColumnInfo& info)
{
    if (tableOid == 0 || column <= 0)
        return;
    if (!tableNames_.count(tableOid)) {
        Result r = run(QStringLiteral("SELECT c.relname, a.attnum, a.attname FROM pg_class c JOIN pg_attribute a "
                                      "ON a.attrelid = c.oid WHERE c.oid = $1 AND a.attnum > 0"),
                       {QVariant::fromValue(qint64(tableOid))});
        for (int i = 0; i < PQntuples(r.get()); ++i) {
            tableNames_[tableOid] = QString::fromUtf8(PQgetvalue(r.get(), i, 0));
            columnNames_[{tableOid, int(integerOf(PQgetvalue(r.get(), i, 1)))}] =
                QString::fromUtf8(PQgetvalue(r.get(), i, 2));
        }
    }
    info.baseTable = tableNames_[tableOid];
    info.baseColumn = columnNames_[{tableOid, column}];
}

std::unique_ptr<RowStore> PostgresBackend::query(const QString& sql, bool keyed, std::vector<qint64>* keys)
{
    return query(sql, keyed, keys, [] {});
}

std::unique_ptr<RowStore> PostgresBackend::query(const QString& sql, bool keyed, std::vector<qint64>* keys,
                                                 const std::function<void()>& beforeRows)
{
    pg_conn* conn = requireOpen();
    qCDebug(lcStore).noquote() << "query:" << sql;
    if (!PQsendQuery(conn, sql.toUtf8().constData()))
        throw AppError(errorOf(nullptr, conn));
    // Rows come one by one, so a million songs are never held twice, once by the client library.
    PQsetSingleRowMode(conn);
    std::unique_ptr<RowStore> store;
    std::vector<int> sourceColumns;
    std::vector<Oid> types;
    std::vector<std::pair<Oid, int>> origins;  // described once the rows are in: no statement runs between
    QString error;
    const int first = keyed ? 1 : 0;
    if (keys)
        keys->clear();
    for (Result r(PQgetResult(conn)); r; r.reset(PQgetResult(conn))) {
        const ExecStatusType status = PQresultStatus(r.get());
        if (failed(r.get())) {
            if (error.isEmpty())
                error = errorOf(r.get(), conn);
            continue;
        }
        if (status == PGRES_COMMAND_OK || !error.isEmpty())
            continue;
        if (!store) {
            std::vector<ColumnInfo> columns;
            for (int c = first; c < PQnfields(r.get()); ++c) {
                const QString name = QString::fromUtf8(PQfname(r.get(), c));
                if (name == kHiddenKey)
                    continue;
                columns.push_back({name, adoTypeOf(PQftype(r.get(), c)), {}, {}});
                origins.emplace_back(PQftable(r.get(), c), PQftablecol(r.get(), c));
                sourceColumns.push_back(c);
                types.push_back(PQftype(r.get(), c));
            }
            store = std::make_unique<RowStore>(std::move(columns));
            beforeRows();
        }
        for (int row = 0; row < PQntuples(r.get()); ++row) {
            const qsizetype target = store->appendRow();
            if (keyed && keys)
                keys->push_back(integerOf(PQgetvalue(r.get(), row, 0)));
            for (std::size_t i = 0; i < sourceColumns.size(); ++i)
                storeValue(r.get(), row, sourceColumns[i], types[i], *store, target, int(i));
        }
    }
    if (!error.isEmpty())
        throw AppError(error);
    if (!store) {
        beforeRows();
        return std::make_unique<RowStore>(std::vector<ColumnInfo>{});
    }
    for (std::size_t i = 0; i < origins.size(); ++i)
        describeColumn(origins[i].first, origins[i].second, store->column(int(i)));
    return store;
}

qint64 PostgresBackend::execute(const QString& sql)
{
    Result r = run(sql);
    return integerOf(PQcmdTuples(r.get()));
}

void PostgresBackend::selectInto(const QString& selectSql, const QString& table, const QString& file)
{
    if (file.isEmpty()) {
        checkWritable();
        if (hasTable(table))
            throw AppError(QStringLiteral("Table '") + table + QStringLiteral("' already exists."));
        run(QStringLiteral("CREATE TABLE ") + quoted(table.toLower()) + QStringLiteral(" AS ") + selectSql);
        run(QStringLiteral("ALTER TABLE ") + quoted(table.toLower()) + QStringLiteral(" ADD COLUMN ") +
            kHiddenKey + QStringLiteral(" bigint GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY"));
        return;
    }
    // Another database is a SQLite file (an export, a library's own database): the rows are copied.
    if (!QFileInfo(file).isFile())
        throw AppError(QStringLiteral("Could not find file '") + file + QStringLiteral("'."));
    SqliteBackend target(file, timeoutMs_, false, false);
    {
        const QString literal = u'\'' + QString(table).replace(u'\'', QStringLiteral("''")) + u'\'';
        auto exists = target.query(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type='table' "
                                                  "AND name=") + literal + QStringLiteral(" COLLATE NOCASE"),
                                   false, nullptr);
        if (exists->integer(0, 0) > 0)
            throw AppError(QStringLiteral("Table '") + table + QStringLiteral("' already exists."));
    }
    auto rows = query(selectSql, false, nullptr);
    QStringList defs, names, marks;
    bool haveKey = false;
    for (int c = 0; c < rows->columnCount(); ++c) {
        const ColumnInfo& col = rows->column(c);
        QString def = SqlName(col.name);
        switch (col.type) {
            case adSmallInt:
                def += QStringLiteral(" SMALLINT");
                break;
            case adInteger:
            case adBoolean:
                def += QStringLiteral(" INTEGER");
                if (!haveKey && !col.baseTable.isEmpty() && keyColumn(col.baseTable) == col.baseColumn &&
                    col.baseColumn != kHiddenKey) {
                    def += QStringLiteral(" PRIMARY KEY AUTOINCREMENT");
                    haveKey = true;
                }
                break;
            case adDouble:
                def += QStringLiteral(" REAL");
                break;
            case adDate:
                def += QStringLiteral(" DATETIME");
                break;
            case adLongVarBinary:
                def += QStringLiteral(" BLOB");
                break;
            default:
                def += QStringLiteral(" TEXT COLLATE GB2312");
        }
        defs << def;
        names << SqlName(col.name);
        marks << QStringLiteral("?");
    }
    sqlite3* db = target.handle();
    target.execute(QStringLiteral("SAVEPOINT td_select_into"));
    try {
        target.execute(QStringLiteral("CREATE TABLE ") + SqlName(table) + QStringLiteral(" (") +
                       defs.join(u", ") + u')');
        SqliteStatement insert(db, QStringLiteral("INSERT INTO ") + SqlName(table) + QStringLiteral(" (") +
                                       names.join(u", ") + QStringLiteral(") VALUES (") + marks.join(u", ") +
                                       u')');
        for (qsizetype row = 0; row < rows->rowCount(); ++row) {
            for (int c = 0; c < rows->columnCount(); ++c) {
                const QVariant v = rows->value(row, c);
                insert.bind(c + 1, rows->column(c).type == adDate && v.isValid() ? QVariant(DateToStore(v)) : v);
            }
            insert.step();
            insert.reset();
        }
        target.execute(QStringLiteral("RELEASE td_select_into"));
    } catch (...) {
        target.execute(QStringLiteral("ROLLBACK TO td_select_into"));
        target.execute(QStringLiteral("RELEASE td_select_into"));
        throw;
    }
}

qint64 PostgresBackend::insertRow(const QString& table, const ColumnValues& values)
{
    checkWritable();
    const QString key = keyColumn(table);
    if (key.isEmpty())
        throw AppError(QStringLiteral("Table '") + table + QStringLiteral("' has no key column."));
    QStringList names, marks;
    std::vector<QVariant> params;
    for (const auto& [name, value] : values) {
        names << quoted(name.toLower());
        params.push_back(value);
        marks << u'$' + QString::number(params.size());
    }
    const QString into = QStringLiteral("INSERT INTO ") + quoted(table.toLower());
    const QString sql = (values.empty() ? into + QStringLiteral(" DEFAULT VALUES")
                                        : into + QStringLiteral(" (") + names.join(u", ") +
                                              QStringLiteral(") VALUES (") + marks.join(u", ") + u')') +
                        QStringLiteral(" RETURNING ") + quoted(key);
    Result r = run(sql, params);
    return integerOf(PQgetvalue(r.get(), 0, 0));
}

// Optimistic: the row must still hold the values read for the columns being changed.
void PostgresBackend::updateRow(const QString& table, qint64 key, const ColumnValues& values,
                                const ColumnValues& originals)
{
    checkWritable();
    QStringList sets;
    std::vector<QVariant> params;
    const auto mark = [&](const QVariant& v) {
        params.push_back(v);
        return u'$' + QString::number(params.size());
    };
    for (const auto& [name, value] : values)
        sets << quoted(name.toLower()) + u'=' + mark(value);
    QString sql = QStringLiteral("UPDATE ") + quoted(table.toLower()) + QStringLiteral(" SET ") +
                  sets.join(u", ") + QStringLiteral(" WHERE ") + quoted(keyColumn(table)) + u'=' +
                  mark(QVariant::fromValue(key));
    for (const auto& [name, value] : originals)
        sql += QStringLiteral(" AND ") + quoted(name.toLower()) + QStringLiteral(" IS NOT DISTINCT FROM ") +
               mark(value);
    if (execute(sql, params) == 0)
        throw RowGoneError();
}

void PostgresBackend::removeRow(const QString& table, qint64 key)
{
    checkWritable();
    const QString sql = QStringLiteral("DELETE FROM ") + quoted(table.toLower()) + QStringLiteral(" WHERE ") +
                        quoted(keyColumn(table)) + QStringLiteral("=$1");
    if (execute(sql, {QVariant::fromValue(key)}) == 0)
        throw RowGoneError();
}

qint64 PostgresBackend::execute(const QString& sql, const std::vector<QVariant>& params)
{
    Result r = run(sql, params);
    return integerOf(PQcmdTuples(r.get()));
}

bool PostgresBackend::readRow(const QString& table, qint64 key, RowStore& into, qsizetype row)
{
    QStringList names;
    std::vector<int> targets;
    for (int c = 0; c < into.columnCount(); ++c) {
        if (into.column(c).baseColumn.isEmpty() ||
            into.column(c).baseTable.compare(table, Qt::CaseInsensitive) != 0)
            continue;
        names << quoted(into.column(c).baseColumn);
        targets.push_back(c);
    }
    if (names.isEmpty())
        return true;
    Result r = run(QStringLiteral("SELECT ") + names.join(u", ") + QStringLiteral(" FROM ") +
                       quoted(table.toLower()) + QStringLiteral(" WHERE ") + quoted(keyColumn(table)) +
                       QStringLiteral("=$1"),
                   {QVariant::fromValue(key)});
    if (PQntuples(r.get()) == 0)
        return false;
    for (std::size_t i = 0; i < targets.size(); ++i)
        storeValue(r.get(), 0, int(i), PQftype(r.get(), int(i)), into, row, targets[i]);
    return true;
}

std::shared_ptr<Backend> PostgresBackend::openReader() const
{
    if (!conn_)
        return nullptr;
    return std::make_shared<PostgresBackend>(address_, timeoutMs_, true);
}

void PostgresBackend::interrupt()
{
    std::lock_guard lock(cancelMutex_);
    if (cancel_) {
        char error[256];
        PQcancel(cancel_, error, sizeof error);
    }
}

namespace {

// A value in COPY's text form: \N for NULL, and backslash, tab and line ends escaped.
void appendCopyValue(const RowStore& rows, qsizetype row, int c, QByteArray& line)
{
    if (rows.isNull(row, c)) {
        line += "\\N";
        return;
    }
    QByteArray text;
    switch (rows.kind(row, c)) {
        case CellKind::Integer:
            text = QByteArray::number(rows.integer(row, c));
            break;
        case CellKind::Real:
            text = QByteArray::number(rows.real(row, c), 'g', 17);
            break;
        case CellKind::Blob:
            text = "\\x" + rows.bytes(row, c).toByteArray().toHex();
            break;
        default:
            text = rows.text(row, c).toUtf8();
    }
    for (const char ch : text) {
        switch (ch) {
            case '\\':
                line += "\\\\";
                break;
            case '\t':
                line += "\\t";
                break;
            case '\n':
                line += "\\n";
                break;
            case '\r':
                line += "\\r";
                break;
            default:
                line += ch;
        }
    }
}

}  // namespace

void PostgresBackend::copyRows(const QString& table, const RowStore& rows)
{
    checkWritable();
    QStringList names;
    for (int c = 0; c < rows.columnCount(); ++c)
        names << quoted(rows.column(c).name.toLower());
    const QString name = quoted(table.toLower());
    {
        Result r(PQexec(conn_, (QStringLiteral("COPY ") + name + QStringLiteral(" (") + names.join(u", ") +
                                QStringLiteral(") FROM STDIN")).toUtf8().constData()));
        if (PQresultStatus(r.get()) != PGRES_COPY_IN)
            throw AppError(errorOf(r.get(), conn_));
    }
    QByteArray buffer;
    bool ok = true;
    for (qsizetype row = 0; row < rows.rowCount() && ok; ++row) {
        for (int c = 0; c < rows.columnCount(); ++c) {
            if (c > 0)
                buffer += '\t';
            appendCopyValue(rows, row, c, buffer);
        }
        buffer += '\n';
        if (buffer.size() > (1 << 20) || row + 1 == rows.rowCount()) {
            ok = PQputCopyData(conn_, buffer.constData(), int(buffer.size())) == 1;
            buffer.clear();
        }
    }
    PQputCopyEnd(conn_, ok ? nullptr : "the client stopped");
    QString error;
    for (Result r(PQgetResult(conn_)); r; r.reset(PQgetResult(conn_)))
        if (failed(r.get()) && error.isEmpty())
            error = errorOf(r.get(), conn_);
    if (!error.isEmpty())
        throw AppError(error);
    const QString key = keyColumn(table);
    if (!key.isEmpty() && names.contains(quoted(key)))
        run(QStringLiteral("SELECT setval(pg_get_serial_sequence($1, $2), GREATEST(1, (SELECT max(") + quoted(key) +
                QStringLiteral(") FROM ") + name + QStringLiteral(")))"),
            {name, key});
}

void EnsurePostgresDatabase(const QString& address, int timeoutMs)
{
    QUrl url(address);
    const QString name = url.path().mid(1);
    if (name.isEmpty())
        throw AppError(QStringLiteral("The address names no database: ") + address);
    try {
        PQfinish(connectTo(address, timeoutMs, true));
        return;
    } catch (const AppError&) {
        // Made below through the server's own database, when the server is there at all.
    }
    url.setPath(QStringLiteral("/postgres"));
    PostgresBackend server(url.toString(), timeoutMs, false);
    server.execute(QStringLiteral("CREATE DATABASE ") + quoted(name) +
                   QStringLiteral(" ENCODING 'UTF8' TEMPLATE template0"));
}

}  // namespace td
