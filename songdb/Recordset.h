#pragma once
#include "songdb/AdoTypes.h"
#include "songdb/RowStore.h"
#include <QByteArray>
#include <QString>
#include <QVariant>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace td {

class Backend;
class Recordset;

// A bookmark is the row's stable key in its table (the SQLite rowid); for a recordset that is not
// bound to one table (a join, distinct, an aggregate) it is the row's ordinal in the result.
using Bookmark = qint64;

// Where a recordset reads its rows and writes its changes.
struct RecordSource {
    std::shared_ptr<Backend> backend;
    QString statement;  // the statement as the caller wrote it
    QString nativeSql;  // what the backend runs; when keyed, its first column is the row key
    QString baseTable;  // the one table the rows come from, empty when not updatable
    bool keyed = false;
};

// One field of the current record, as ADO's Field object. Cheap to copy; valid while the
// recordset lives.
class Field {
public:
    Field(Recordset* rs, int index) : rs_(rs), index_(index) {}
    QString Name() const;
    int Type() const;
    int Index() const { return index_; }
    QVariant Value() const;  // invalid QVariant for NULL
    QString Text() const;    // NULL as empty text
    bool IsNull() const;
    qsizetype ActualSize() const;
    // Starts or continues the edit of the current record.
    void setValue(const QVariant& v) const;
    Field& operator=(const QVariant& v)
    {
        setValue(v);
        return *this;
    }
    // Binary access in pieces, as ADO's GetChunk and AppendChunk: reads go on from where the last
    // read of this field ended; appends add to the value being edited.
    QByteArray GetChunk(qsizetype size) const;
    void AppendChunk(const QByteArray& bytes) const;

private:
    Recordset* rs_;
    int index_;
};

// A client-side recordset: opening reads every row, so RecordCount is exact at once. Moves never
// touch the database; AddNew/Update/Delete write one row each through the source's backend.
// Operations that need a current record, and writes the database refuses, throw AppError.
class Recordset {
public:
    enum class EditMode { None, Edit, Add };
    static constexpr qsizetype adPosBOF = -2;
    static constexpr qsizetype adPosEOF = -3;

    Recordset(RecordSource source, std::unique_ptr<RowStore> rows, std::vector<Bookmark> keys);
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    bool IsOpen() const { return open_; }
    void Close();
    // Reads the rows again and moves to the first one.
    void Requery();
    const QString& Source() const { return source_.statement; }
    bool Updatable() const { return !source_.baseTable.isEmpty(); }

    // Position
    qsizetype RecordCount() const;
    bool IsEOF() const;
    bool BOF() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    // Moves n records from the current one, or from the record of start when it is given.
    void Move(qsizetype n, std::optional<Bookmark> start = std::nullopt);
    // 1-based position of the current record, adPosBOF or adPosEOF.
    qsizetype AbsolutePosition() const;
    void setAbsolutePosition(qsizetype position);
    Bookmark bookmark() const;
    // Makes the record with that key current; false (position unchanged) when no row has it.
    bool setBookmark(Bookmark key);

    // Fields of the current record
    int FieldCount() const;
    Field Fields(int index);
    Field Fields(const QString& name);
    // Column by name, case-insensitively; -1 when there is none.
    int FieldIndex(QStringView name) const;
    const ColumnInfo& Column(int index) const;

    // Editing
    EditMode editMode() const { return editMode_; }
    void AddNew();
    void Update();
    void CancelUpdate();
    void Delete();

    // Bulk access for views, by 0-based position, without moving.
    QString text(qsizetype position, int column) const;
    // The same text appended to out, without a string of its own: for filling big lists.
    void appendText(qsizetype position, int column, QString& out) const;
    QVariant value(qsizetype position, int column) const;
    bool isNull(qsizetype position, int column) const;
    Bookmark bookmarkAt(qsizetype position) const;
    // Position of the record with that key, or -1.
    qsizetype positionOf(Bookmark key) const;

    std::size_t memoryUsed() const;

private:
    friend class Field;
    qsizetype requireCurrent() const;  // physical row of the current record
    QVariant fieldValue(int c) const;
    QString fieldText(int c) const;
    QVariant currentValue(int c) const;
    bool fieldIsNull(int c) const;
    void setFieldValue(int c, const QVariant& v);
    void beginEdit();
    QByteArray fieldChunk(int c, qsizetype size);
    void appendFieldChunk(int c, const QByteArray& bytes);
    void checkColumn(int c) const;
    void checkOpen() const;
    void finishEditBeforeMove();
    void clearEdit();
    void setPosition(qsizetype pos);
    void load(std::unique_ptr<RowStore> rows, std::vector<Bookmark> keys);
    void releaseRows();
    qsizetype physicalRowOf(Bookmark key) const;

    RecordSource source_;
    std::unique_ptr<RowStore> rows_;
    std::vector<Bookmark> keys_;        // per physical row
    std::vector<std::uint32_t> order_;  // physical rows in recordset order
    qsizetype pos_ = 0;                 // index into order_; -1 before the first, size() after the last
    bool currentDeleted_ = false;       // the current record was deleted and is gone from order_
    bool open_ = true;

    EditMode editMode_ = EditMode::None;
    std::vector<std::optional<QVariant>> pending_;  // edited values per column
    mutable std::vector<qsizetype> chunkRead_;      // GetChunk offsets per column
    bool keysAscending_ = true;                     // keys_ sorted, as rowids of a plain select mostly are
    // (key, physical row) sorted by key, built on demand when keys_ is not sorted.
    mutable std::vector<std::pair<Bookmark, std::uint32_t>> keyIndex_;
};

}  // namespace td
