#pragma once
#include "songdb/Recordset.h"
#include <QString>
#include <QStringView>
#include <memory>
#include <vector>

namespace td {

// The rows of a list, compactly: a row is its column texts joined into one run of UTF-16 in a
// shared arena, its bookmark and two image numbers, 24 bytes beside the text. No object per row.
class ViewRows {
public:
    static constexpr char16_t kSeparator = u'\x1f';

    qsizetype count() const { return qsizetype(rows_.size()); }
    void reserve(qsizetype n) { rows_.reserve(std::size_t(n)); }
    void clear();

    void append(QStringView joined, Bookmark tag);
    void remove(qsizetype row);
    // Puts the rows in a new order: order[i] is the old number of the new row i.
    void permute(const std::vector<qsizetype>& order);

    QStringView joined(qsizetype row) const;
    void setJoined(qsizetype row, QStringView joined);
    QStringView cell(qsizetype row, int column) const;

    Bookmark tag(qsizetype row) const { return rows_[std::size_t(row)].tag; }
    void setTag(qsizetype row, Bookmark tag) { rows_[std::size_t(row)].tag = tag; }
    quint16 icon(qsizetype row) const { return rows_[std::size_t(row)].icon; }
    quint16 smallIcon(qsizetype row) const { return rows_[std::size_t(row)].smallIcon; }
    void setIcon(qsizetype row, quint16 image) { rows_[std::size_t(row)].icon = image; }
    void setSmallIcon(qsizetype row, quint16 image) { rows_[std::size_t(row)].smallIcon = image; }

    std::size_t memoryUsed() const;

private:
    struct Row {
        Bookmark tag = 0;
        quint32 chunk = 0;
        quint32 offset = 0;
        quint32 length = 0;
        quint16 icon = 0;
        quint16 smallIcon = 0;
    };
    struct Chunk {
        std::unique_ptr<char16_t[]> data;
        quint32 size = 0;
        quint32 used = 0;
    };
    void store(Row& row, QStringView text);
    void compactIfWasteful();

    std::vector<Row> rows_;
    std::vector<Chunk> chunks_;
    qsizetype liveUnits_ = 0;
    qsizetype wastedUnits_ = 0;
};

// Joins the texts of one row the way ViewRows keeps them.
void AppendCell(QString& joined, QStringView cell, bool first);
// Blanks the separators in joined from position from on: a separator inside a value would shift
// the columns after it.
void BlankSeparators(QString& joined, qsizetype from);

}  // namespace td
