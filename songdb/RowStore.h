#pragma once
#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QVariant>
#include <cstdint>
#include <memory>
#include <vector>

namespace td {

// What a recordset knows about one of its columns.
struct ColumnInfo {
    QString name;
    int type = 0;       // ADO type code
    QString baseTable;  // table and column the value comes from; empty for expressions
    QString baseColumn;
};

enum class CellKind : std::uint8_t { Null, Integer, Real, Text, Blob };

// The rows of a recordset in compact form: one 8-byte cell per value, and the bytes of texts
// (UTF-8) and blobs in large shared chunks. A million songs take a few hundred bytes per row,
// with no heap object per cell and no reallocation of the whole table while it grows.
class RowStore {
public:
    explicit RowStore(std::vector<ColumnInfo> columns);
    ~RowStore();
    RowStore(const RowStore&) = delete;
    RowStore& operator=(const RowStore&) = delete;

    int columnCount() const { return int(columns_.size()); }
    const ColumnInfo& column(int c) const { return columns_[std::size_t(c)]; }
    ColumnInfo& column(int c) { return columns_[std::size_t(c)]; }
    qsizetype rowCount() const { return rows_; }

    // Appends a row with every cell NULL and answers its number.
    qsizetype appendRow();

    void setNull(qsizetype row, int c);
    void setInteger(qsizetype row, int c, qint64 v);
    void setReal(qsizetype row, int c, double v);
    void setText(qsizetype row, int c, const char* utf8, qsizetype size);
    void setBlob(qsizetype row, int c, const void* data, qsizetype size);
    // Stores a value converted to the column's type; throws AppError when it cannot be converted.
    void setValue(qsizetype row, int c, const QVariant& v);

    CellKind kind(qsizetype row, int c) const;
    bool isNull(qsizetype row, int c) const { return kind(row, c) == CellKind::Null; }
    qint64 integer(qsizetype row, int c) const;
    double real(qsizetype row, int c) const;
    // Raw bytes of a text (UTF-8) or blob cell; empty for other kinds.
    QByteArrayView bytes(qsizetype row, int c) const;

    // The value as the column's type gives it: NULL as an invalid QVariant, dates as QDateTime.
    QVariant value(qsizetype row, int c) const;
    // The value as text, NULL as empty text; a date column's texts as DateText gives them.
    QString text(qsizetype row, int c) const;
    // The same text appended to out; for the common kinds no string of its own is made.
    void appendText(qsizetype row, int c, QString& out) const;

    std::size_t memoryUsed() const;

private:
    struct Cell {
        std::uint32_t ref = 0;       // inline integer, arena address, or index into big_
        std::uint32_t sizeKind = 0;  // size, big flag and kind
    };
    Cell& cell(qsizetype row, int c);
    const Cell& cell(qsizetype row, int c) const;
    std::uint32_t storeBytes(const void* data, qsizetype size, bool& big);
    std::uint32_t storeText(int c, const char* utf8, qsizetype size, bool& big);
    bool isDateColumn(int c) const;

    std::vector<ColumnInfo> columns_;
    qsizetype rows_ = 0;
    std::vector<std::unique_ptr<Cell[]>> cellChunks_;
    std::vector<std::unique_ptr<char[]>> arenaChunks_;
    std::uint32_t arenaUsed_ = 0;  // bytes used in the last arena chunk
    std::vector<QByteArray> big_;  // values too large for an arena chunk
    // The last few short texts stored per column. Songbooks repeat a column's value row after row
    // (library, language, style, editor, time), and a repeat shares the bytes stored first.
    // A column that seldom repeats (titles, file names) stops looking for a while.
    struct Recent {
        static constexpr int kSlots = 8;
        std::uint32_t ref[kSlots] = {};
        std::uint32_t size[kSlots] = {};  // 0: free
        int next = 0;
        std::uint32_t tries = 0;
        std::uint32_t hits = 0;
        std::uint32_t skip = 0;  // texts still to store without looking
    };
    std::vector<Recent> recent_;
};

// Appends UTF-8 text decoded, as QString::fromUtf8 would, without a string in between.
void AppendUtf8(QString& out, QByteArrayView utf8);

}  // namespace td
