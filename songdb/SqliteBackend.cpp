#include "songdb/SqliteBackend.h"
#include "shell/services/AppError.h"
#include "songdb/AdoTypes.h"
#include "songdb/Gb2312Order.h"
#include "songdb/JournalMode.h"
#include "songdb/SqliteFunctions.h"
#include "songdb/SqliteStatement.h"
#include "songdb/StoreLog.h"
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>
#include <sqlite3.h>

namespace td {

namespace {

std::atomic<int> g_midStatementStarts{0};

// A statement that starts while another of its connection is mid-step would see (or make) a
// half-done state: the mark of an event loop run from inside the store.
int watchStatementStart(unsigned, void*, void* statement, void* text)
{
    auto* started = static_cast<sqlite3_stmt*>(statement);
    if (static_cast<const char*>(text)[0] == '-')
        return 0;  // a trigger's own statement, inside its parent
    sqlite3* db = sqlite3_db_handle(started);
    for (sqlite3_stmt* other = sqlite3_next_stmt(db, nullptr); other; other = sqlite3_next_stmt(db, other)) {
        if (other != started && sqlite3_stmt_busy(other)) {
            ++g_midStatementStarts;
            qCWarning(lcStore) << "a statement started in the middle of another:" << sqlite3_sql(started)
                               << "inside" << sqlite3_sql(other);
            break;
        }
    }
    return 0;
}

QString utf8(const char* text)
{
    return text ? QString::fromUtf8(text) : QString();
}

int adoTypeOfValue(int sqliteType)
{
    switch (sqliteType) {
        case SQLITE_INTEGER:
            return adInteger;
        case SQLITE_FLOAT:
            return adDouble;
        case SQLITE_BLOB:
            return adLongVarBinary;
        default:
            return adVarWChar;
    }
}

// Detaches the other database of a "select into" on every path.
struct AttachedFile {
    sqlite3* db;
    bool attached = false;
    ~AttachedFile()
    {
        if (attached)
            sqlite3_exec(db, "DETACH DATABASE td_into", nullptr, nullptr, nullptr);
    }
};

// Copies one result column of the current row into a cell; answers SQLite's type of the value.
int storeColumn(sqlite3_stmt* s, int c, RowStore& into, qsizetype row, int target)
{
    const int type = sqlite3_column_type(s, c);
    switch (type) {
        case SQLITE_INTEGER:
            into.setInteger(row, target, sqlite3_column_int64(s, c));
            break;
        case SQLITE_FLOAT:
            into.setReal(row, target, sqlite3_column_double(s, c));
            break;
        case SQLITE_TEXT:
            into.setText(row, target, reinterpret_cast<const char*>(sqlite3_column_text(s, c)),
                         sqlite3_column_bytes(s, c));
            break;
        case SQLITE_BLOB:
            into.setBlob(row, target, sqlite3_column_blob(s, c), sqlite3_column_bytes(s, c));
            break;
        default:
            into.setNull(row, target);
    }
    return type;
}

void exec(sqlite3* db, const QString& sql)
{
    SqliteStatement st(db, sql);
    while (st.step()) {
    }
}

int pageCount(sqlite3* db)
{
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, "PRAGMA page_count", -1, &stmt, nullptr) != SQLITE_OK)
        return 0;
    const int pages = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int(stmt, 0) : 0;
    sqlite3_finalize(stmt);
    return pages;
}

}  // namespace

SqliteBackend::SqliteBackend(const QString& file, int busyTimeoutMs, bool readOnly, bool create)
    : readOnly_(readOnly), file_(file), busyTimeoutMs_(busyTimeoutMs)
{
    // A connection lives on one thread; without its mutex every column read of a row costs no lock.
    int flags = (readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) | SQLITE_OPEN_NOMUTEX;
    if (create && !readOnly)
        flags |= SQLITE_OPEN_CREATE;
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(file.toUtf8().constData(), &db, flags, nullptr);
    if (rc != SQLITE_OK) {
        const QString error = db ? SqliteError(db) : QStringLiteral("out of memory");
        sqlite3_close(db);
        throw AppError(error);
    }
    sqlite3_extended_result_codes(db, 0);
    sqlite3_trace_v2(db, SQLITE_TRACE_STMT, &watchStatementStart, nullptr);
    sqlite3_busy_timeout(db, busyTimeoutMs);
    RegisterGb2312Collation(db);
    RegisterJetFunctions(db);
    // Opening is lazy: reading the schema finds a file that is no database, or one that is locked.
    const int check = sqlite3_exec(db, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
    if (check != SQLITE_OK) {
        const QString error = SqliteError(db);
        sqlite3_close(db);
        throw AppError(error);
    }
    // A file without a single page is no songbook yet; setting its journal would write one into it.
    if (!readOnly && (create || pageCount(db) > 0))
        ApplyJournalMode(db, file);
    db_ = db;
    if (!readOnly)
        shadowScratchTable(QStringLiteral("media"));
}

// The media table holds one console's last search of a library. Each connection keeps its own copy
// in memory, named like the shared one, so two consoles' searches don't mix and a search over a
// large library writes nothing to the database file.
void SqliteBackend::shadowScratchTable(const QString& table)
{
    sqlite3_stmt* stmt = nullptr;
    const QByteArray find = "SELECT sql FROM main.sqlite_master WHERE type='table' AND lower(name)=lower(?1)";
    if (sqlite3_prepare_v2(db_, find.constData(), -1, &stmt, nullptr) != SQLITE_OK)
        return;
    const QByteArray name = table.toUtf8();
    sqlite3_bind_text(stmt, 1, name.constData(), int(name.size()), SQLITE_TRANSIENT);
    QString ddl;
    if (sqlite3_step(stmt) == SQLITE_ROW)
        ddl = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    static const QRegularExpression create(QStringLiteral("^\\s*CREATE\\s+TABLE\\s+"),
                                           QRegularExpression::CaseInsensitiveOption);
    if (!ddl.contains(create))
        return;
    ddl.replace(create, QStringLiteral("CREATE TEMP TABLE "));
    sqlite3_exec(db_, "PRAGMA temp_store=MEMORY", nullptr, nullptr, nullptr);
    sqlite3_exec(db_, ddl.toUtf8().constData(), nullptr, nullptr, nullptr);
}

int StatementsStartedMidStatement()
{
    return g_midStatementStarts;
}

SqliteBackend::~SqliteBackend()
{
    close();
}

std::shared_ptr<Backend> SqliteBackend::openReader() const
{
    // A memory database is private to its connection: nothing else can read it.
    if (!db_ || file_.isEmpty() || file_.startsWith(u':'))
        return nullptr;
    auto reader = std::make_shared<SqliteBackend>(file_, busyTimeoutMs_, true, false);
    // A reader looks at the interrupt mark every thousand steps, so an interrupt that comes just
    // before its statement starts is not lost.
    sqlite3_progress_handler(
        reader->db_, 1000,
        [](void* self) { return static_cast<SqliteBackend*>(self)->interrupted_.load() ? 1 : 0; },
        reader.get());
    return reader;
}

void SqliteBackend::interrupt()
{
    interrupted_ = true;
    if (db_)
        sqlite3_interrupt(db_);
}

const SqlDialect& SqliteBackend::dialect() const
{
    static const SqlDialect d{QStringLiteral("rowid"), QStringLiteral(" COLLATE GB2312"),
                              QStringLiteral("td_ucase"), QStringLiteral("td_char_")};
    return d;
}

void SqliteBackend::close()
{
    rowStatements_.clear();
    if (db_)
        sqlite3_close_v2(db_);
    db_ = nullptr;
}

sqlite3* SqliteBackend::requireOpen() const
{
    if (!db_)
        throw StoreClosedError();
    return db_;
}

void SqliteBackend::checkWritable() const
{
    requireOpen();
    if (readOnly_)
        throw StoreReadOnlyError();
}

std::unique_ptr<RowStore> SqliteBackend::query(const QString& sql, bool keyed, std::vector<qint64>* keys)
{
    return query(sql, keyed, keys, [] {});
}

std::unique_ptr<RowStore> SqliteBackend::query(const QString& sql, bool keyed, std::vector<qint64>* keys,
                                               const std::function<void()>& beforeRows)
{
    SqliteStatement st(requireOpen(), sql);
    sqlite3_stmt* s = st.get();
    const int first = keyed ? 1 : 0;
    const int n = sqlite3_column_count(s);
    std::vector<ColumnInfo> columns;
    for (int c = first; c < n; ++c)
        columns.push_back({utf8(sqlite3_column_name(s, c)),
                           AdoTypeOfDeclared(utf8(sqlite3_column_decltype(s, c))),
                           utf8(sqlite3_column_table_name(s, c)), utf8(sqlite3_column_origin_name(s, c))});
    auto store = std::make_unique<RowStore>(std::move(columns));
    if (keys)
        keys->clear();
    // The first step takes the read lock and finds most faults; only then may the caller let go.
    bool more = st.step();
    beforeRows();
    for (; more; more = st.step()) {
        const qsizetype row = store->appendRow();
        if (keyed && keys)
            keys->push_back(sqlite3_column_int64(s, 0));
        for (int c = first; c < n; ++c) {
            const int target = c - first;
            const int type = storeColumn(s, c, *store, row, target);
            if (type == SQLITE_NULL)
                continue;
            if (store->column(target).type == adEmpty)  // an expression takes the type of its first value
                store->column(target).type = adoTypeOfValue(type);
        }
    }
    for (int c = 0; c < store->columnCount(); ++c)
        if (store->column(c).type == adEmpty)
            store->column(c).type = adVarWChar;
    return store;
}

qint64 SqliteBackend::execute(const QString& sql)
{
    SqliteStatement st(requireOpen(), sql);
    if (readOnly_ && !sqlite3_stmt_readonly(st.get()))
        checkWritable();
    while (st.step()) {
    }
    return sqlite3_changes64(db_);
}

QString SqliteBackend::createTableFor(sqlite3_stmt* select, const QString& table, const QString& schema) const
{
    QStringList defs;
    bool havePrimaryKey = false;
    for (int c = 0; c < sqlite3_column_count(select); ++c) {
        QString def = SqlName(utf8(sqlite3_column_name(select, c)));
        const QString declared = utf8(sqlite3_column_decltype(select, c));
        if (!declared.isEmpty())
            def += u' ' + declared;
        const char* originTable = sqlite3_column_table_name(select, c);
        const char* originColumn = sqlite3_column_origin_name(select, c);
        const char *type = nullptr, *collation = nullptr;
        int notNull = 0, primaryKey = 0, autoIncrement = 0;
        if (originTable && originColumn &&
            sqlite3_table_column_metadata(db_, sqlite3_column_database_name(select, c), originTable,
                                          originColumn, &type, &collation, &notNull, &primaryKey,
                                          &autoIncrement) == SQLITE_OK) {
            if (primaryKey && !havePrimaryKey && declared.compare(u"INTEGER", Qt::CaseInsensitive) == 0) {
                def += autoIncrement ? QStringLiteral(" PRIMARY KEY AUTOINCREMENT")
                                     : QStringLiteral(" PRIMARY KEY");
                havePrimaryKey = true;
            }
            if (collation &&
                QLatin1String(collation).compare(QLatin1String("BINARY"), Qt::CaseInsensitive) != 0)
                def += QStringLiteral(" COLLATE ") + QString::fromUtf8(collation);
        }
        defs << def;
    }
    return QStringLiteral("CREATE TABLE ") + schema + u'.' + SqlName(table) + QStringLiteral(" (") +
           defs.join(u", ") + u')';
}

void SqliteBackend::selectInto(const QString& selectSql, const QString& table, const QString& file)
{
    checkWritable();
    AttachedFile other{db_};
    QString schema = QStringLiteral("main");
    if (!file.isEmpty()) {
        if (!QFileInfo(file).isFile())
            throw AppError(QStringLiteral("Could not find file '") + file + QStringLiteral("'."));
        SqliteStatement attach(db_, QStringLiteral("ATTACH DATABASE ? AS td_into"));
        attach.bind(1, file);
        attach.step();
        other.attached = true;
        schema = QStringLiteral("td_into");
    }
    {
        // Finished before the statements below start, so none of them runs inside it.
        SqliteStatement exists(
            db_, QStringLiteral("SELECT count(*) FROM ") + schema +
                     QStringLiteral(".sqlite_master WHERE type='table' AND name=? COLLATE NOCASE"));
        exists.bind(1, table);
        if (exists.step() && sqlite3_column_int(exists.get(), 0) > 0)
            throw AppError(QStringLiteral("Table '") + table + QStringLiteral("' already exists."));
    }

    QString create;
    {
        SqliteStatement select(db_, selectSql);
        create = createTableFor(select.get(), table, schema);
    }
    exec(db_, QStringLiteral("SAVEPOINT td_select_into"));
    try {
        exec(db_, create);
        exec(db_, QStringLiteral("INSERT INTO ") + schema + u'.' + SqlName(table) + u' ' + selectSql);
        exec(db_, QStringLiteral("RELEASE td_select_into"));
    } catch (...) {
        sqlite3_exec(db_, "ROLLBACK TO td_select_into; RELEASE td_select_into", nullptr, nullptr, nullptr);
        throw;
    }
}

qint64 SqliteBackend::insertRow(const QString& table, const ColumnValues& values)
{
    checkWritable();
    QStringList names, marks;
    for (const auto& [name, value] : values) {
        names << SqlName(name);
        marks << QStringLiteral("?");
    }
    const QString sql =
        values.empty() ? QStringLiteral("INSERT INTO ") + SqlName(table) + QStringLiteral(" DEFAULT VALUES")
                       : QStringLiteral("INSERT INTO ") + SqlName(table) + QStringLiteral(" (") +
                             names.join(u", ") + QStringLiteral(") VALUES (") + marks.join(u", ") + u')';
    SqliteStatement st(db_, sql, rowStatements_);
    for (std::size_t i = 0; i < values.size(); ++i)
        st.bind(int(i) + 1, values[i].second);
    st.step();
    return sqlite3_last_insert_rowid(db_);
}

// Optimistic: the row must still hold the values read for the columns being changed.
void SqliteBackend::updateRow(const QString& table, qint64 key, const ColumnValues& values,
                              const ColumnValues& originals)
{
    checkWritable();
    QStringList sets, checks;
    for (const auto& [name, value] : values)
        sets << SqlName(name) + QStringLiteral("=?");
    for (const auto& [name, value] : originals)
        checks << SqlName(name) + QStringLiteral(" IS ?");
    QString sql = QStringLiteral("UPDATE ") + SqlName(table) + QStringLiteral(" SET ") + sets.join(u", ") +
                  QStringLiteral(" WHERE rowid=?");
    for (const auto& check : checks)
        sql += QStringLiteral(" AND ") + check;
    SqliteStatement st(db_, sql, rowStatements_);
    int i = 1;
    for (const auto& [name, value] : values)
        st.bind(i++, value);
    st.bind(i++, key);
    for (const auto& [name, value] : originals)
        st.bind(i++, value);
    st.step();
    if (sqlite3_changes(db_) == 0)
        throw RowGoneError();
}

void SqliteBackend::removeRow(const QString& table, qint64 key)
{
    checkWritable();
    SqliteStatement st(db_, QStringLiteral("DELETE FROM ") + SqlName(table) + QStringLiteral(" WHERE rowid=?"),
                       rowStatements_);
    st.bind(1, key);
    st.step();
    if (sqlite3_changes(db_) == 0)
        throw RowGoneError();
}

bool SqliteBackend::readRow(const QString& table, qint64 key, RowStore& into, qsizetype row)
{
    QStringList names;
    std::vector<int> targets;
    for (int c = 0; c < into.columnCount(); ++c) {
        if (into.column(c).baseColumn.isEmpty() ||
            into.column(c).baseTable.compare(table, Qt::CaseInsensitive) != 0)
            continue;
        names << SqlName(into.column(c).baseColumn);
        targets.push_back(c);
    }
    if (names.isEmpty())
        return true;
    SqliteStatement st(requireOpen(),
                       QStringLiteral("SELECT ") + names.join(u", ") + QStringLiteral(" FROM ") + SqlName(table) +
                           QStringLiteral(" WHERE rowid=?"),
                       rowStatements_);
    st.bind(1, key);
    if (!st.step())
        return false;
    for (std::size_t i = 0; i < targets.size(); ++i)
        storeColumn(st.get(), int(i), into, row, targets[i]);
    return true;
}

}  // namespace td
