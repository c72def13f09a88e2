#include "MdbWriter.h"
#include <QDate>
#include <QDateTime>
#include <QFile>
#include <QtEndian>
#include <iconv.h>
#include <optional>
#include <stdexcept>

namespace td::test {

namespace {

// Long values up to this many bytes stay in their row.
constexpr int kInlineLimit = 64;
constexpr quint32 kInline = 0x80000000u;
constexpr quint32 kOnePage = 0x40000000u;
constexpr quint32 kTablesContainer = 0x0F000001u;
constexpr quint32 kSystemObject = 0x80000000u;
constexpr quint16 kGeneralSortOrder = 0x409;
constexpr quint8 kFixedColumn = 0x01;
constexpr quint8 kNullableColumn = 0x02;
// The days Jet counts from: 1899-12-30 is day 0.
const QDate kDayZero(1899, 12, 30);
// Creation date of every written file: 2001-02-03 04:05:06.
constexpr double kCreated = 36925.170208333;

struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

[[noreturn]] void fail(const QString& why)
{
    throw Failure(why.toStdString());
}

void put16(QByteArray& b, qsizetype at, quint32 v)
{
    qToLittleEndian(quint16(v), b.data() + at);
}
void put32(QByteArray& b, qsizetype at, quint32 v)
{
    qToLittleEndian(v, b.data() + at);
}
void append16(QByteArray& b, quint32 v)
{
    b.resize(b.size() + 2);
    put16(b, b.size() - 2, v);
}
void append32(QByteArray& b, quint32 v)
{
    b.resize(b.size() + 4);
    put32(b, b.size() - 4, v);
}
void appendDouble(QByteArray& b, double v)
{
    b.resize(b.size() + 8);
    qToLittleEndian(v, b.data() + b.size() - 8);
}

// The stream cipher Jet hides the header's settings with (RC4); the same call encrypts and decrypts.
void rc4(const QByteArray& key, char* data, qsizetype length)
{
    quint8 s[256];
    for (int i = 0; i < 256; ++i)
        s[i] = quint8(i);
    for (int i = 0, j = 0; i < 256; ++i) {
        j = (j + s[i] + quint8(key[i % key.size()])) & 0xff;
        std::swap(s[i], s[j]);
    }
    for (qsizetype n = 0, i = 0, j = 0; n < length; ++n) {
        i = (i + 1) & 0xff;
        j = (j + s[i]) & 0xff;
        std::swap(s[i], s[j]);
        data[n] = char(data[n] ^ s[(s[i] + s[j]) & 0xff]);
    }
}

double jetDate(const QDateTime& when)
{
    return double(kDayZero.daysTo(when.date())) + when.time().msecsSinceStartOfDay() / 86400000.0;
}

// What differs between the two versions.
struct Format {
    int version = 4;
    int pageSize = 4096;
    int rowCountAt = 12;  // data pages: the row count, then the rows' offsets

    bool jet3() const { return version == 3; }
    int firstOffsetAt() const { return rowCountAt + 2; }
    // The most a row may take when it is alone on its page.
    int roomForOneRow() const { return pageSize - firstOffsetAt() - 2; }
};

// Texts as the file keeps them: UCS-2 in Jet 4, the database's code page in Jet 3.
class TextEncoder {
public:
    TextEncoder(const Format& format, int codePage) : jet3_(format.jet3())
    {
        if (!jet3_)
            return;
        const QByteArray name = codePage == 936 ? QByteArray("GBK") : "CP" + QByteArray::number(codePage);
        cd_ = iconv_open(name.constData(), "UTF-8");
        if (cd_ == iconv_t(-1))
            fail(QStringLiteral("no converter for code page %1").arg(codePage));
    }
    ~TextEncoder()
    {
        if (cd_ != iconv_t(-1))
            iconv_close(cd_);
    }
    TextEncoder(const TextEncoder&) = delete;
    TextEncoder& operator=(const TextEncoder&) = delete;

    QByteArray encode(const QString& text) const
    {
        if (!jet3_) {
            QByteArray out(text.size() * 2, 0);
            for (qsizetype i = 0; i < text.size(); ++i)
                put16(out, i * 2, text[i].unicode());
            return out;
        }
        QByteArray in = text.toUtf8();
        QByteArray out(in.size() * 2 + 4, 0);
        char* from = in.data();
        size_t left = size_t(in.size());
        char* to = out.data();
        size_t room = size_t(out.size());
        iconv(cd_, nullptr, nullptr, nullptr, nullptr);
        if (iconv(cd_, &from, &left, &to, &room) == size_t(-1))
            fail(QStringLiteral("\"%1\" has no form in the file's code page").arg(text));
        out.resize(out.size() - qsizetype(room));
        return out;
    }

private:
    bool jet3_;
    iconv_t cd_ = iconv_t(-1);
};

// One data page being filled: rows run from the page's end towards its header.
class RowPage {
public:
    RowPage(const Format& format, int number, QByteArray owner)
        : format_(format), number_(number), owner_(std::move(owner))
    {
    }
    int number() const { return number_; }
    bool fits(qsizetype size) const
    {
        return rows_.size() < 255 &&
               format_.firstOffsetAt() + 2 * (qsizetype(rows_.size()) + 1) + used_ + size <= format_.pageSize;
    }
    // The row's number on the page.
    int add(const QByteArray& row)
    {
        rows_.push_back(row);
        used_ += row.size();
        return int(rows_.size()) - 1;
    }
    QByteArray page() const
    {
        QByteArray page(format_.pageSize, 0);
        page[0] = 0x01;
        page[1] = 0x01;
        put16(page, 2,
              quint32(format_.pageSize - format_.firstOffsetAt() - 2 * qsizetype(rows_.size()) - used_));
        page.replace(4, 4, owner_);
        put16(page, format_.rowCountAt, quint32(rows_.size()));
        qsizetype end = format_.pageSize;
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            end -= rows_[i].size();
            page.replace(end, rows_[i].size(), rows_[i]);
            put16(page, format_.firstOffsetAt() + 2 * qsizetype(i), quint32(end));
        }
        return page;
    }

private:
    const Format& format_;
    int number_;
    QByteArray owner_;
    std::vector<QByteArray> rows_;
    qsizetype used_ = 0;
};

QByteArray ownerOf(int tableDefinitionPage)
{
    QByteArray owner(4, 0);
    put32(owner, 0, quint32(tableDefinitionPage));
    return owner;
}

int fixedSize(JetType type)
{
    switch (type) {
        case JetType::Bool:
            return 0;
        case JetType::Byte:
            return 1;
        case JetType::Int:
            return 2;
        case JetType::Long:
            return 4;
        case JetType::Double:
        case JetType::DateTime:
            return 8;
        default:
            return -1;
    }
}

// Where each column of a table lies in its rows.
struct Layout {
    struct Column {
        JetColumn def;
        bool fixed = false;
        int fixedOffset = 0;
        int varIndex = 0;
        int maxBytes = 0;  // of a text or binary value
    };
    std::vector<Column> columns;
    int fixedBytes = 0;
    int varCount = 0;

    Layout(const std::vector<JetColumn>& defs, const Format& format)
    {
        for (const JetColumn& def : defs) {
            Column c{def};
            const int size = fixedSize(def.type);
            c.fixed = size >= 0;
            if (c.fixed) {
                c.fixedOffset = fixedBytes;
                fixedBytes += size;
            } else {
                c.varIndex = varCount++;
            }
            if (def.type == JetType::Text)
                c.maxBytes = format.jet3() ? def.length : 2 * def.length;
            else if (def.type == JetType::Binary)
                c.maxBytes = def.length;
            columns.push_back(c);
        }
    }
    // The column length the table definition gives.
    static int definedLength(const Column& c) { return c.fixed ? fixedSize(c.def.type) : c.maxBytes; }
};

class FileWriter {
public:
    FileWriter(const JetFileOptions& options)
        : options_(options),
          format_{options.version, options.version == 3 ? 2048 : 4096, options.version == 3 ? 8 : 12},
          text_(format_, options.textCodePage ? options.textCodePage : options.codePage)
    {
        if (options.version != 3 && options.version != 4)
            fail(QStringLiteral("Jet version %1 is not written").arg(options.version));
    }

    QByteArray file(const std::vector<JetTable>& tables)
    {
        for (int i = 0; i < 3; ++i)
            reserve();  // the header, the file's page map, the catalog's definition
        // The catalog comes first, as Access keeps it, naming the definitions' pages kept for them.
        std::vector<std::pair<QString, int>> catalog;
        for (const JetTable& table : tables)
            catalog.emplace_back(table.name, reserve());
        writeTable(2, catalogTable(catalog), true);
        for (std::size_t t = 0; t < tables.size(); ++t)
            writeTable(catalog[t].second, tables[t], false);
        flushLongValues();
        pages_[1] = filePageMap();
        pages_[0] = header();
        QByteArray out;
        out.reserve(qsizetype(pages_.size()) * format_.pageSize);
        for (const QByteArray& page : pages_)
            out += page;
        return out;
    }

private:
    int reserve()
    {
        pages_.emplace_back(format_.pageSize, char(0));
        return int(pages_.size()) - 1;
    }
    void store(const RowPage& page) { pages_[std::size_t(page.number())] = page.page(); }

    // Writes the rows and the definition.
    void writeTable(int definitionPage, const JetTable& table, bool system)
    {
        const Layout layout(table.columns, format_);
        std::vector<int> dataPages;
        std::optional<RowPage> page;
        const qsizetype rows = table.rowAt ? table.rowCount : qsizetype(table.rows.size());
        for (qsizetype r = 0; r < rows; ++r) {
            const QByteArray row =
                encodeRow(layout, table.rowAt ? table.rowAt(r) : table.rows[std::size_t(r)], table.name);
            if (!page || !page->fits(row.size())) {
                if (page)
                    store(*page);
                page.emplace(format_, reserve(), ownerOf(definitionPage));
                dataPages.push_back(page->number());
            }
            page->add(row);
        }
        if (page)
            store(*page);
        // The table's two page maps: the pages it owns and those with room left (none).
        RowPage maps(format_, reserve(), ownerOf(definitionPage));
        const int used = maps.add(usageMap(dataPages));
        const int free = maps.add(usageMap({}));
        store(maps);
        pages_[std::size_t(definitionPage)] =
            tableDefinition(layout, rows, quint32(maps.number()) << 8 | quint32(used),
                            quint32(maps.number()) << 8 | quint32(free), system);
    }

    // A page map in the row that holds it: the pages' bits from a first page on, or, when they do not
    // fit, pointers to map pages of their own.
    QByteArray usageMap(const std::vector<int>& pages)
    {
        const int mapBytes = format_.jet3() ? 128 : 64;
        const int first = pages.empty() ? 0 : pages.front();
        if (pages.empty() || pages.back() - first < (mapBytes - 5) * 8) {
            QByteArray map(mapBytes, 0);
            put32(map, 1, quint32(first));
            for (int p : pages)
                map[5 + (p - first) / 8] = char(map[5 + (p - first) / 8] | (1 << ((p - first) % 8)));
            return map;
        }
        const int bitsPerPage = (format_.pageSize - 4) * 8;
        const int mapPages = pages.back() / bitsPerPage + 1;
        QByteArray map(qMax(mapBytes, 1 + 4 * mapPages), 0);
        map[0] = 0x01;
        for (int m = 0; m < mapPages; ++m) {
            QByteArray bits(format_.pageSize, 0);
            bits[0] = 0x05;
            bits[1] = 0x01;
            bool any = false;
            for (int p : pages) {
                if (p / bitsPerPage != m)
                    continue;
                const int bit = p % bitsPerPage;
                bits[4 + bit / 8] = char(bits[4 + bit / 8] | (1 << (bit % 8)));
                any = true;
            }
            if (!any)
                continue;
            const int number = reserve();
            pages_[std::size_t(number)] = bits;
            put32(map, 1 + 4 * m, quint32(number));
        }
        return map;
    }

    QByteArray encodeRow(const Layout& layout, const QVariantList& values, const QString& table)
    {
        // A short row is one written before its table's last (variable) columns were added.
        qsizetype columns = qsizetype(layout.columns.size());
        int varCount = layout.varCount;
        for (; columns > values.size(); --columns, --varCount) {
            if (layout.columns[std::size_t(columns - 1)].fixed)
                fail(QStringLiteral("a row of %1 lacks a fixed column").arg(table));
        }
        QByteArray fixed(layout.fixedBytes, 0);
        QByteArray nulls((columns + 7) / 8, 0);
        std::vector<QByteArray> vars(static_cast<std::size_t>(varCount));
        for (qsizetype c = 0; c < columns; ++c) {
            const Layout::Column& col = layout.columns[std::size_t(c)];
            const QVariant value = values.value(c);
            const bool present = value.isValid() && (col.def.type != JetType::Bool || value.toBool());
            if (present)
                nulls[c / 8] = char(nulls[c / 8] | (1 << (c % 8)));
            if (!present || col.def.type == JetType::Bool)
                continue;
            if (col.fixed)
                fixed.replace(col.fixedOffset, fixedSize(col.def.type), fixedValue(col.def.type, value));
            else
                vars[std::size_t(col.varIndex)] = varValue(col, value, table);
        }
        QByteArray row =
            format_.jet3() ? jet3Row(columns, fixed, vars, nulls) : jet4Row(columns, fixed, vars, nulls);
        if (row.size() > format_.roomForOneRow())
            fail(QStringLiteral("a row of %1 takes %2 bytes, more than a page holds")
                     .arg(table)
                     .arg(row.size()));
        return row;
    }

    static QByteArray fixedValue(JetType type, const QVariant& value)
    {
        QByteArray out;
        switch (type) {
            case JetType::Byte:
                out.append(char(value.toInt()));
                break;
            case JetType::Int:
                append16(out, quint32(value.toInt()));
                break;
            case JetType::Long:
                append32(out, quint32(value.toLongLong()));
                break;
            case JetType::Double:
                appendDouble(out, value.toDouble());
                break;
            case JetType::DateTime:
                appendDouble(out, jetDate(value.toDateTime()));
                break;
            default:
                break;
        }
        return out;
    }

    QByteArray varValue(const Layout::Column& col, const QVariant& value, const QString& table)
    {
        switch (col.def.type) {
            case JetType::Text:
            case JetType::Binary: {
                const QByteArray bytes =
                    col.def.type == JetType::Text ? text_.encode(value.toString()) : value.toByteArray();
                if (bytes.size() > col.maxBytes)
                    fail(QStringLiteral("%1.%2 holds %3 bytes at most")
                             .arg(table, col.def.name)
                             .arg(col.maxBytes));
                return bytes;
            }
            case JetType::Memo:
                return longValue(text_.encode(value.toString()));
            default:
                return longValue(value.toByteArray());
        }
    }

    // A memo or OLE value: its 12-byte reference, followed by the bytes themselves when they are short.
    QByteArray longValue(const QByteArray& bytes)
    {
        QByteArray ref(12, 0);
        const qsizetype size = bytes.size();
        if (size <= kInlineLimit) {
            put32(ref, 0, quint32(size) | kInline);
            return ref + bytes;
        }
        if (size > 0xFFFFFF)
            fail(QStringLiteral("a long value of %1 bytes is more than 16 MiB").arg(size));
        if (size <= format_.roomForOneRow()) {
            if (!longValues_ || !longValues_->fits(size)) {
                flushLongValues();
                longValues_.emplace(format_, reserve(), QByteArray("LVAL"));
            }
            const int row = longValues_->add(bytes);
            put32(ref, 0, quint32(size) | kOnePage);
            put32(ref, 4, quint32(longValues_->number()) << 8 | quint32(row));
            return ref;
        }
        // Longer: a chain of pages, each piece led by the reference of the next.
        const int piece = format_.roomForOneRow() - 4;
        std::vector<int> chain;
        for (qsizetype at = 0; at < size; at += piece)
            chain.push_back(reserve());
        for (std::size_t k = 0; k < chain.size(); ++k) {
            QByteArray row;
            append32(row, k + 1 < chain.size() ? quint32(chain[k + 1]) << 8 : 0);
            row += bytes.mid(qsizetype(k) * piece, piece);
            RowPage page(format_, chain[k], QByteArray("LVAL"));
            page.add(row);
            store(page);
        }
        put32(ref, 0, quint32(size));
        put32(ref, 4, quint32(chain.front()) << 8);
        return ref;
    }

    void flushLongValues()
    {
        if (longValues_)
            store(*longValues_);
        longValues_.reset();
    }

    // Fixed columns, variable ones, then the offsets of the variable ones (last first, after the end
    // of their data), their count and the null mask.
    static QByteArray jet4Row(qsizetype columns, const QByteArray& fixed, const std::vector<QByteArray>& vars,
                              const QByteArray& nulls)
    {
        QByteArray row;
        append16(row, quint32(columns));
        row += fixed;
        std::vector<int> offsets;
        for (const QByteArray& v : vars) {
            offsets.push_back(int(row.size()));
            row += v;
        }
        if (!vars.empty()) {
            append16(row, quint32(row.size()));
            for (auto it = offsets.rbegin(); it != offsets.rend(); ++it)
                append16(row, quint32(*it));
            append16(row, quint32(vars.size()));
        }
        return row + nulls;
    }

    // As in Jet 4 with one-byte offsets; for rows over 256 bytes a jump table says from which
    // variable column on each further 256 is to be added.
    static QByteArray jet3Row(qsizetype columns, const QByteArray& fixed, const std::vector<QByteArray>& vars,
                              const QByteArray& nulls)
    {
        QByteArray row;
        row.append(char(columns));
        row += fixed;
        std::vector<int> offsets;
        for (const QByteArray& v : vars) {
            offsets.push_back(int(row.size()));
            row += v;
        }
        if (vars.empty())
            return row + nulls;
        offsets.push_back(int(row.size()));  // the end of the data is read as one more entry
        const qsizetype withoutJumps = row.size() + qsizetype(offsets.size()) + 1 + nulls.size();
        qsizetype jumps = 0;
        for (qsizetype next = (withoutJumps - 1) / 256; next != jumps;
             next = (withoutJumps + jumps - 1) / 256)
            jumps = next;
        for (auto it = offsets.rbegin(); it != offsets.rend(); ++it)
            row.append(char(*it & 0xff));
        for (qsizetype k = jumps - 1; k >= 0; --k) {
            char first = char(0xff);  // none: the last entry may be a filler
            for (std::size_t i = 0; i < offsets.size(); ++i) {
                if (offsets[i] >= (k + 1) * 256) {
                    first = char(i);
                    break;
                }
            }
            row.append(first);
        }
        row.append(char(vars.size()));
        return row + nulls;
    }

    QByteArray tableDefinition(const Layout& layout, qsizetype rows, quint32 usedMap, quint32 freeMap,
                               bool system)
    {
        const bool jet3 = format_.jet3();
        const int columnsAt = jet3 ? 43 : 63;
        const int columns = int(layout.columns.size());
        QByteArray d(columnsAt, 0);
        d[0] = 0x02;
        d[1] = 0x01;
        if (jet3) {
            d[2] = 'V';
            d[3] = 'C';
        }
        put32(d, jet3 ? 12 : 16, quint32(rows));
        const int at = jet3 ? 20 : 40;
        d[at] = char(system ? 0x53 : 0x4e);
        put16(d, at + 1, quint32(columns));
        put16(d, at + 3, quint32(layout.varCount));
        put16(d, at + 5, quint32(columns));
        put32(d, at + 15, usedMap);
        put32(d, at + 19, freeMap);
        for (int c = 0; c < columns; ++c)
            d += columnEntry(layout.columns[std::size_t(c)], c);
        for (const Layout::Column& c : layout.columns) {
            const QByteArray name = text_.encode(c.def.name);
            if (jet3)
                d.append(char(name.size()));
            else
                append16(d, quint32(name.size()));
            d += name;
        }
        append16(d, 0xFFFF);  // no long value columns own pages of their own
        if (d.size() > format_.pageSize)
            fail(QStringLiteral("a table definition longer than a page is not written"));
        put32(d, 8, quint32(d.size()));
        if (!jet3)
            put16(d, 2, quint32(format_.pageSize - d.size() - 8));
        d.resize(format_.pageSize);
        return d;
    }

    QByteArray columnEntry(const Layout::Column& c, int number) const
    {
        const bool jet3 = format_.jet3();
        QByteArray e(jet3 ? 18 : 25, 0);
        const int base = jet3 ? 1 : 5;  // the column's number, then its place among the variable ones
        e[0] = char(c.def.type);
        put16(e, base, quint32(number));
        put16(e, base + 2, quint32(c.fixed ? 0 : c.varIndex));
        put16(e, base + 4, quint32(number));
        const bool text = c.def.type == JetType::Text || c.def.type == JetType::Memo;
        if (text) {
            put16(e, base + 6, kGeneralSortOrder);
            if (jet3)
                put16(e, 9, quint32(options_.codePage));
        }
        e[jet3 ? 13 : 15] = char((c.fixed ? kFixedColumn : 0) | kNullableColumn);
        put16(e, jet3 ? 14 : 21, quint32(c.fixed ? c.fixedOffset : 0));
        put16(e, jet3 ? 16 : 23, quint32(Layout::definedLength(c)));
        return e;
    }

    // The catalog: the container of tables, the catalog itself, and one row per table.
    JetTable catalogTable(const std::vector<std::pair<QString, int>>& tables) const
    {
        JetTable t;
        t.name = QStringLiteral("MSysObjects");
        t.columns = {{QStringLiteral("Id"), JetType::Long},
                     {QStringLiteral("ParentId"), JetType::Long},
                     {QStringLiteral("Name"), JetType::Text, 128},
                     {QStringLiteral("Type"), JetType::Int},
                     {QStringLiteral("DateCreate"), JetType::DateTime},
                     {QStringLiteral("DateUpdate"), JetType::DateTime},
                     {QStringLiteral("Flags"), JetType::Long},
                     {QStringLiteral("LvProp"), JetType::Ole}};
        const QDateTime created(QDate(2001, 2, 3), QTime(4, 5, 6));
        auto row = [&](quint32 id, quint32 parent, const QString& name, int type, quint32 flags) {
            t.rows.push_back(
                {qint64(id), qint64(parent), name, type, created, created, qint64(flags), QVariant()});
        };
        row(kTablesContainer, 0x0F000000u, QStringLiteral("Tables"), 3, 0);
        row(2, kTablesContainer, QStringLiteral("MSysObjects"), 1, kSystemObject);
        for (const auto& [name, page] : tables)
            row(quint32(page), kTablesContainer, name, 1, 0);
        return t;
    }

    // Page 1: the pages in use, as far as one row holds them.
    QByteArray filePageMap() const
    {
        RowPage page(format_, 1, ownerOf(0));
        QByteArray map(format_.roomForOneRow() - 16, 0);
        const qsizetype pages = qMin(qsizetype(pages_.size()), (map.size() - 5) * 8);
        for (qsizetype p = 0; p < pages; ++p)
            map[5 + p / 8] = char(map[5 + p / 8] | (1 << (p % 8)));
        page.add(map);
        return page.page();
    }

    QByteArray header() const
    {
        const bool jet3 = format_.jet3();
        QByteArray h(format_.pageSize, 0);
        h[1] = 0x01;
        h.replace(4, 15, "Standard Jet DB");
        put32(h, 0x14, jet3 ? 0 : 1);
        put16(h, 0x3c, quint32(options_.codePage));
        if (jet3) {
            put16(h, 0x3a, kGeneralSortOrder);
            h.replace(0x42, 20, options_.password.toLatin1().leftJustified(20, '\0', true));
        } else {
            put32(h, 0x6e, kGeneralSortOrder);
            qToLittleEndian(kCreated, h.data() + 0x72);
            // Jet 4 masks its password with the creation day as well.
            QByteArray password(40, 0);
            for (qsizetype i = 0; i < options_.password.size() && i < 20; ++i)
                put16(password, 2 * i, options_.password[i].unicode());
            QByteArray mask(4, 0);
            put32(mask, 0, quint32(qint32(kCreated)));
            for (int i = 0; i < 40; ++i)
                password[i] = char(password[i] ^ mask[i % 4]);
            h.replace(0x42, 40, password);
        }
        rc4(QByteArray("\xC7\xDA\x39\x6B", 4), h.data() + 0x18, jet3 ? 126 : 128);
        return h;
    }

    const JetFileOptions options_;
    const Format format_;
    TextEncoder text_;
    std::vector<QByteArray> pages_;
    std::optional<RowPage> longValues_;
};

}  // namespace

bool WriteJetDatabase(const QString& path, const JetFileOptions& options, const std::vector<JetTable>& tables,
                      QString* error)
{
    try {
        const QByteArray bytes = FileWriter(options).file(tables);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
            fail(QStringLiteral("cannot write %1: %2").arg(path, file.errorString()));
        return true;
    } catch (const Failure& e) {
        if (error)
            *error = QString::fromStdString(e.what());
        return false;
    }
}

}  // namespace td::test
