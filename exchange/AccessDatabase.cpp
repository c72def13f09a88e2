#include "exchange/AccessDatabase.h"
#include "shell/services/AppError.h"
#include "songdb/AdoTypes.h"
#include "songdb/Backend.h"
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
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
                break;
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
            // The null flags of the row just read, which the bound values alone do not tell.
            int start = 0;
            size_t size = 0;
            const bool cracked = mdb_find_row(mdb_, int(table->cur_row) - 1, &start, &size) == 0 &&
                                 mdb_crack_row(table, start, size, fields.data()) == columns;
            const qsizetype row = store->appendRow();
            for (int c = 0; c < columns; ++c) {
                MdbColumn* col = cols[std::size_t(c)];
                const char* value = buffers[std::size_t(c)].data();
                const int length = lengths[std::size_t(c)];
                if (col->col_type == MDB_BOOL) {
                    store->setInteger(row, c, std::strcmp(value, mdb_->boolean_true_value) == 0 ? 1 : 0);
                    continue;
                }
                if (cracked ? fields[std::size_t(c)].is_null : length == 0)
                    continue;
                storeValue(*store, row, c, col, value, length);
            }
        }
        return store;
    }

    void storeValue(RowStore& store, qsizetype row, int c, MdbColumn* col, const char* value, int length)
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
            void* bytes = mdb_ole_read_full(mdb_, col, &size);
            store.setBlob(row, c, bytes ? bytes : "", qsizetype(bytes ? size : 0));
            free(bytes);
            break;
        }
        case MDB_BINARY:
            store.setBlob(row, c, value, length);
            break;
        default:
            store.setText(row, c, value, qsizetype(std::strlen(value)));
            break;
        }
    }

    MdbHandle* mdb_;
};

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
    Q_UNUSED(password);  // the Jet password guards Access's own door, not the pages libmdb reads
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
    mdb_set_date_fmt(mdb, "%Y-%m-%d %H:%M:%S");
    mdb_set_bind_size(mdb, kBindSize);
    if (mdb->f->jet_version == MDB_VER_JET3)
        useCharset(mdb, jet3Charset(mdb->f->code_page, options.gbk));
    return std::make_unique<Connection>(std::make_shared<MdbBackend>(mdb));
}

}  // namespace td
