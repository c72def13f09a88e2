#include "exchange/AccessDatabase.h"
#include "shell/services/AppError.h"
#include "songdb/AdoTypes.h"
#include "songdb/Backend.h"
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtEndian>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <vector>
#include <mdbtools.h>

namespace td {

namespace {

constexpr qsizetype kHeaderSize = 0x16;
// Large enough for any memo a songbook holds; libmdb cuts texts at this size.
constexpr size_t kBindSize = 4 * 1024 * 1024;

QString jetError(const QString& text)
{
    return QStringLiteral("[Microsoft][ODBC Microsoft Access Driver] ") + text;
}

// libmdb chooses the code page of Jet 3 texts from the environment while it opens a file.
std::mutex& environmentLock()
{
    static std::mutex lock;
    return lock;
}

void useCharset(MdbHandle* mdb, const QByteArray& charset)
{
    std::lock_guard<std::mutex> guard(environmentLock());
    const char* old = std::getenv("MDB_JET3_CHARSET");
    const QByteArray kept = old ? QByteArray(old) : QByteArray();
    mdb_iconv_close(mdb);
    setenv("MDB_JET3_CHARSET", charset.constData(), 1);
    mdb_iconv_init(mdb);
    if (old)
        setenv("MDB_JET3_CHARSET", kept.constData(), 1);
    else
        unsetenv("MDB_JET3_CHARSET");
}

QByteArray jet3Charset(int codePage, AccessReadOptions::Gbk gbk)
{
    switch (gbk) {
    case AccessReadOptions::Gbk::Yes:
        return "GBK";
    case AccessReadOptions::Gbk::No:
        return "CP1252";
    case AccessReadOptions::Gbk::CodePage:
        break;
    }
    if (codePage == 936)
        return "GBK";
    return codePage > 0 ? "CP" + QByteArray::number(codePage) : QByteArray("CP1252");
}

int adoType(int mdbType)
{
    switch (mdbType) {
    case MDB_BOOL:
        return adBoolean;
    case MDB_BYTE:
    case MDB_INT:
        return adSmallInt;
    case MDB_LONGINT:
        return adInteger;
    case MDB_MONEY:
    case MDB_FLOAT:
    case MDB_DOUBLE:
    case MDB_NUMERIC:
        return adDouble;
    case MDB_DATETIME:
        return adDate;
    case MDB_OLE:
    case MDB_BINARY:
        return adLongVarBinary;
    default:
        return adVarWChar;
    }
}

// One Access file, read through libmdb: tables are read whole, nothing is ever written.
class MdbBackend : public Backend {
public:
    MdbBackend(MdbHandle* mdb) : mdb_(mdb) {}
    ~MdbBackend() override { close(); }

    const SqlDialect& dialect() const override
    {
        static const SqlDialect d{QString(), QString(), QStringLiteral("upper")};
        return d;
    }
    bool isOpen() const override { return mdb_ != nullptr; }
    void close() override
    {
        if (mdb_)
            mdb_close(mdb_);
        mdb_ = nullptr;
    }
    bool readOnly() const override { return true; }

    std::unique_ptr<RowStore> query(const QString& sql, bool, std::vector<qint64>*) override
    {
        static const QRegularExpression selectAll(
            QStringLiteral(R"(^\s*select\s+\*\s+from\s+["\[`]?([^"\]`\s]+)["\]`]?\s*$)"),
            QRegularExpression::CaseInsensitiveOption);
        const auto match = selectAll.match(sql);
        if (!match.hasMatch())
            throw AppError(jetError(QStringLiteral("Only whole tables can be read from an Access file: ")) + sql);
        return readTable(match.captured(1));
    }
    qint64 execute(const QString&) override { refuse(); }
    void selectInto(const QString&, const QString&, const QString&) override { refuse(); }
    qint64 insertRow(const QString&, const ColumnValues&) override { refuse(); }
    void updateRow(const QString&, qint64, const ColumnValues&, const ColumnValues&) override { refuse(); }
    void removeRow(const QString&, qint64) override { refuse(); }
    bool readRow(const QString&, qint64, RowStore&, qsizetype) override { return false; }

private:
    [[noreturn]] static void refuse()
    {
        throw AppError(jetError(QStringLiteral("Cannot update. Database or object is read-only.")));
    }

    MdbTableDef* openTable(const QString& name)
    {
        if (!mdb_read_catalog(mdb_, MDB_TABLE))
            throw AppError(jetError(QStringLiteral("The file is damaged or cut short: its table list cannot be read.")));
        for (unsigned i = 0; i < mdb_->num_catalog; ++i) {
            auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb_->catalog, i));
            if (entry->object_type == MDB_TABLE &&
                QString::fromUtf8(entry->object_name).compare(name, Qt::CaseInsensitive) == 0) {
                MdbTableDef* table = mdb_read_table(entry);
                if (table && mdb_read_columns(table))
                    return table;
                if (table)
                    mdb_free_tabledef(table);
                throw AppError(damaged(QStringLiteral("the definition of ") + name +
                                       QStringLiteral(" cannot be read.")));
            }
        }
        throw AppError(jetError(QStringLiteral("The Microsoft Jet database engine cannot find the input table or "
                                               "query '") +
                                name + QStringLiteral("'.")));
    }

    std::unique_ptr<RowStore> readTable(const QString& name)
    {
        MdbTableDef* table = openTable(name);
        std::unique_ptr<MdbTableDef, void (*)(MdbTableDef*)> owner(table, mdb_free_tabledef);
        const int columns = int(table->num_cols);
        std::vector<ColumnInfo> info;
        std::vector<MdbColumn*> cols;
        for (int c = 0; c < columns; ++c) {
            auto* col = static_cast<MdbColumn*>(g_ptr_array_index(table->columns, c));
            cols.push_back(col);
            info.push_back(ColumnInfo{QString::fromUtf8(col->name), adoType(col->col_type),
                                      QString::fromUtf8(table->name), QString::fromUtf8(col->name)});
        }
        auto store = std::make_unique<RowStore>(std::move(info));
        std::vector<std::vector<char>> buffers(std::size_t(columns), std::vector<char>(kBindSize + 1));
        std::vector<int> lengths(static_cast<std::size_t>(columns), 0);
        for (int c = 0; c < columns; ++c)
            mdb_bind_column(table, c + 1, buffers[std::size_t(c)].data(), &lengths[std::size_t(c)]);
        std::vector<MdbField> fields(std::size_t(columns) + 1);
        mdb_rewind_table(table);
        while (mdb_fetch_row(table)) {
            // The null flags and places of the row just read, which the bound values alone do not tell.
            int start = 0;
            size_t size = 0;
            // A row written before columns were added holds fewer of them; those read as NULL.
            if (mdb_find_row(mdb_, int(table->cur_row) - 1, &start, &size) != 0 ||
                mdb_crack_row(table, start & 0x1fff, size, fields.data()) < 0)
                throw AppError(damaged(QStringLiteral("a row of ") + name + QStringLiteral(" cannot be read.")));
            const qsizetype row = store->appendRow();
            for (int c = 0; c < columns; ++c) {
                MdbColumn* col = cols[std::size_t(c)];
                const char* value = buffers[std::size_t(c)].data();
                const MdbField& field = fields[std::size_t(c)];
                if (col->col_type == MDB_BOOL) {
                    store->setInteger(row, c, std::strcmp(value, mdb_->boolean_true_value) == 0 ? 1 : 0);
                    continue;
                }
                if (field.is_null)
                    continue;
                storeValue(*store, row, c, col, value, field);
            }
        }
        // Rows on pages past the end of a cut file are not found at all: the table's own count tells.
        if (table->num_rows > 0 && store->rowCount() < qsizetype(table->num_rows))
            throw AppError(damaged(name + QStringLiteral(" holds ") + QString::number(table->num_rows) +
                                   QStringLiteral(" rows, ") + QString::number(store->rowCount()) +
                                   QStringLiteral(" of them can be read.")));
        return store;
    }

    static QString damaged(const QString& detail)
    {
        return jetError(QStringLiteral("The file is damaged or cut short: ") + detail);
    }

    // The length a memo or OLE value says it has; its bytes are elsewhere unless it lies in the row.
    static quint32 longValueLength(const MdbField& field)
    {
        if (field.siz < 12)
            return 0;
        return qFromLittleEndian<quint32>(field.value) & 0x3fffffffu;
    }

    void storeValue(RowStore& store, qsizetype row, int c, MdbColumn* col, const char* value, const MdbField& field)
    {
        switch (col->col_type) {
        case MDB_BYTE:
        case MDB_INT:
        case MDB_LONGINT:
            store.setInteger(row, c, std::strtoll(value, nullptr, 10));
            break;
        case MDB_MONEY:
        case MDB_FLOAT:
        case MDB_DOUBLE:
        case MDB_NUMERIC:
            store.setReal(row, c, std::strtod(value, nullptr));
            break;
        case MDB_OLE: {
            size_t size = 0;
            std::unique_ptr<void, void (*)(void*)> bytes(mdb_ole_read_full(mdb_, col, &size), free);
            if (!bytes || size != longValueLength(field))
                throw AppError(damaged(QStringLiteral("a picture or object of ") + QString::fromUtf8(col->name) +
                                       QStringLiteral(" is not whole.")));
            store.setBlob(row, c, bytes.get(), qsizetype(size));
            break;
        }
        case MDB_BINARY:
            // The bound text of a binary value ends at its first zero byte; the row holds all of it.
            store.setBlob(row, c, field.value, field.siz);
            break;
        case MDB_MEMO:
            if (*value == 0 && longValueLength(field) > 0)
                throw AppError(damaged(QStringLiteral("a memo of ") + QString::fromUtf8(col->name) +
                                       QStringLiteral(" is not whole.")));
            store.setText(row, c, value, qsizetype(std::strlen(value)));
            break;
        default:
            store.setText(row, c, value, qsizetype(std::strlen(value)));
            break;
        }
    }

    MdbHandle* mdb_;
};

// The database password the header keeps, read while the opened file's first page is at hand and
// its cipher undone; empty when there is none. Jet 4 masks it with the day the file was made.
QString headerPassword(const MdbHandle* mdb)
{
    const unsigned char* at = mdb->pg_buf + 0x42;
    QString password;
    if (mdb->f->jet_version == MDB_VER_JET3) {
        for (int i = 0; i < 20 && at[i]; ++i)
            password += QChar(char16_t(at[i]));
        return password;
    }
    const double created = qFromLittleEndian<double>(mdb->pg_buf + 0x72);
    unsigned char mask[4] = {};
    if (created > -2147483648.0 && created < 2147483648.0)
        qToLittleEndian(qint32(created), mask);
    for (int i = 0; i < 40; i += 2) {
        const char16_t c = char16_t((at[i] ^ mask[i % 4]) | (at[i + 1] ^ mask[(i + 1) % 4]) << 8);
        if (!c)
            break;
        password += QChar(c);
    }
    return password;
}

QByteArray readHeader(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.read(0x80);
}

}  // namespace

bool IsAccessFile(const QString& path)
{
    const QByteArray head = readHeader(path);
    return head.size() >= kHeaderSize && head.startsWith(QByteArray("\x00\x01\x00\x00", 4)) &&
           (head.mid(4, 15) == "Standard Jet DB" || head.mid(4, 15) == "Standard ACE DB");
}

AccessFileInfo ReadAccessFileInfo(const QString& path)
{
    AccessFileInfo info;
    if (!IsAccessFile(path))
        return info;
    MdbHandle* mdb = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
    if (!mdb)
        return info;
    info.jetVersion = mdb->f->jet_version == MDB_VER_JET3 ? 3 : 4;
    info.codePage = mdb->f->code_page;
    mdb_close(mdb);
    return info;
}

std::unique_ptr<Connection> OpenAccessDatabase(const QString& path, const QString& password,
                                               const AccessReadOptions& options)
{
    if (!QFileInfo(path).isFile())
        return nullptr;
    if (!IsAccessFile(path)) {
        if (path.endsWith(QStringLiteral(".mdb"), Qt::CaseInsensitive))
            return std::make_unique<Connection>(
                nullptr, jetError(QStringLiteral("Unrecognized database format '") + path + QStringLiteral("'.")));
        try {
            OpenOptions readOnly;
            readOnly.readOnly = true;
            return OpenConnection(path, readOnly);
        } catch (const std::exception& e) {
            return std::make_unique<Connection>(nullptr, ErrorText(e));
        }
    }
    MdbHandle* mdb = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
    if (!mdb)
        return std::make_unique<Connection>(
            nullptr, jetError(QStringLiteral("Unrecognized database format '") + path + QStringLiteral("'.")));
    if (mdb->f->jet_version != MDB_VER_JET3 && mdb->f->jet_version != MDB_VER_JET4) {
        mdb_close(mdb);
        return std::make_unique<Connection>(
            nullptr, jetError(QStringLiteral("Only Access 97 to 2003 files (.mdb) can be read: '") + path +
                              QStringLiteral("'.")));
    }
    // A file cut inside a page was never written whole by Access.
    if (QFileInfo(path).size() % mdb->fmt->pg_size != 0) {
        mdb_close(mdb);
        return std::make_unique<Connection>(
            nullptr, jetError(QStringLiteral("The file is damaged or cut short: '") + path + QStringLiteral("'.")));
    }
    // libmdb reads the pages without the password; the console still opens only what it may open.
    const QString stored = headerPassword(mdb);
    if (!stored.isEmpty() && stored != password) {
        mdb_close(mdb);
        return std::make_unique<Connection>(nullptr, jetError(QStringLiteral("Not a valid password.")));
    }
    mdb_set_date_fmt(mdb, "%Y-%m-%d %H:%M:%S");
    mdb_set_bind_size(mdb, kBindSize);
    if (mdb->f->jet_version == MDB_VER_JET3)
        useCharset(mdb, jet3Charset(mdb->f->code_page, options.gbk));
    return std::make_unique<Connection>(std::make_shared<MdbBackend>(mdb));
}

}  // namespace td
