#include "songdb/Recordset.h"
#include "shell/services/AppError.h"
#include "songdb/Backend.h"
#include "songdb/DeleteJournal.h"
#include <QDateTime>
#include <algorithm>

namespace td {

namespace {
// The texts ADO gives for the same faults, which callers show after " Err=".
AppError noCurrentRecord()
{
    return AppError(
        QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. "
                       "Requested operation requires a current record."));
}
AppError notUpdatable()
{
    return AppError(
        QStringLiteral("Current Recordset does not support updating. This may be a limitation "
                       "of the provider, or of the selected locktype."));
}
}  // namespace

Recordset::Recordset(RecordSource source, std::unique_ptr<RowStore> rows, std::vector<Bookmark> keys)
    : source_(std::move(source))
{
    load(std::move(rows), std::move(keys));
}

Recordset::~Recordset() = default;

void Recordset::load(std::unique_ptr<RowStore> rows, std::vector<Bookmark> keys)
{
    rows_ = std::move(rows);
    const qsizetype n = rows_->rowCount();
    if (qsizetype(keys.size()) != n) {
        keys.resize(std::size_t(n));
        for (qsizetype i = 0; i < n; ++i)
            keys[std::size_t(i)] = i + 1;
    }
    keys_ = std::move(keys);
    keysAscending_ = std::is_sorted(keys_.begin(), keys_.end());
    order_.resize(std::size_t(n));
    for (qsizetype i = 0; i < n; ++i)
        order_[std::size_t(i)] = std::uint32_t(i);
    keyIndex_.clear();
    pos_ = 0;
    currentDeleted_ = false;
    clearEdit();
    chunkRead_.assign(std::size_t(rows_->columnCount()), 0);
}

void Recordset::checkOpen() const
{
    if (!open_)
        throw AppError(QStringLiteral("Operation is not allowed when the object is closed."));
}

void Recordset::Close()
{
    open_ = false;
    clearEdit();
    order_.clear();
    keys_.clear();
    keyIndex_.clear();
    rows_ = std::make_unique<RowStore>(std::vector<ColumnInfo>{});
}

void Recordset::Requery()
{
    checkOpen();
    clearEdit();
    std::vector<qint64> keys;
    auto rows = source_.backend->query(source_.nativeSql, source_.keyed, &keys, [&] {
        const std::size_t expected = keys_.size();  // sized once, not grown by doubling
        releaseRows();
        keys.reserve(expected);
    });
    load(std::move(rows), std::move(keys));
}

// Lets go of every row but keeps the columns: what a requery leaves when reading fails half way.
void Recordset::releaseRows()
{
    std::vector<ColumnInfo> columns;
    for (int c = 0; c < rows_->columnCount(); ++c)
        columns.push_back(rows_->column(c));
    rows_ = std::make_unique<RowStore>(std::move(columns));
    keys_ = std::vector<Bookmark>();
    order_ = std::vector<std::uint32_t>();
    keyIndex_ = {};
    keysAscending_ = true;
    pos_ = 0;
    currentDeleted_ = false;
}

qsizetype Recordset::RecordCount() const
{
    checkOpen();
    return qsizetype(order_.size());
}

bool Recordset::IsEOF() const
{
    checkOpen();
    return !currentDeleted_ && pos_ >= qsizetype(order_.size());
}

bool Recordset::BOF() const
{
    checkOpen();
    return !currentDeleted_ && (pos_ < 0 || order_.empty());
}

void Recordset::setPosition(qsizetype pos)
{
    pos_ = std::clamp<qsizetype>(pos, -1, qsizetype(order_.size()));
    currentDeleted_ = false;
    std::fill(chunkRead_.begin(), chunkRead_.end(), 0);
}

// Moving away from a record being edited saves it first, as ADO does.
void Recordset::finishEditBeforeMove()
{
    checkOpen();
    if (editMode_ != EditMode::None)
        Update();
}

void Recordset::MoveFirst()
{
    finishEditBeforeMove();
    setPosition(0);
}

void Recordset::MoveLast()
{
    finishEditBeforeMove();
    setPosition(order_.empty() ? 0 : qsizetype(order_.size()) - 1);
}

void Recordset::MoveNext()
{
    finishEditBeforeMove();
    if (currentDeleted_) {  // the deleted record's place already holds the next one
        setPosition(pos_);
        return;
    }
    if (pos_ >= qsizetype(order_.size()))
        throw noCurrentRecord();
    setPosition(pos_ + 1);
}

void Recordset::MovePrevious()
{
    finishEditBeforeMove();
    if (!currentDeleted_ && pos_ < 0)
        throw noCurrentRecord();
    setPosition(pos_ - 1);
}

void Recordset::Move(qsizetype n, std::optional<Bookmark> start)
{
    finishEditBeforeMove();
    qsizetype base = pos_;
    if (start) {
        base = positionOf(*start);
        if (base < 0)
            throw AppError(QStringLiteral("Bookmark is invalid."));
    } else if (currentDeleted_ && n > 0) {
        --base;  // counted from the deleted record, whose place the next one took
    }
    if (n != 0 && !start && !currentDeleted_ && (pos_ < 0 || pos_ >= qsizetype(order_.size())))
        throw noCurrentRecord();
    setPosition(base + n);
}

qsizetype Recordset::AbsolutePosition() const
{
    checkOpen();
    if (pos_ < 0 || order_.empty())
        return adPosBOF;
    if (pos_ >= qsizetype(order_.size()))
        return adPosEOF;
    return pos_ + 1;
}

void Recordset::setAbsolutePosition(qsizetype position)
{
    finishEditBeforeMove();
    if (position < 1 || position > qsizetype(order_.size()))
        throw AppError(
            QStringLiteral("Arguments are of the wrong type, are out of acceptable range, or are in conflict "
                           "with one another."));
    setPosition(position - 1);
}

Bookmark Recordset::bookmark() const
{
    return keys_[std::size_t(requireCurrent())];
}

bool Recordset::setBookmark(Bookmark key)
{
    checkOpen();
    const qsizetype pos = positionOf(key);
    if (pos < 0)
        return false;
    finishEditBeforeMove();
    setPosition(pos);
    return true;
}

namespace {
bool keyBefore(const std::pair<Bookmark, std::uint32_t>& entry, Bookmark key)
{
    return entry.first < key;
}
}  // namespace

qsizetype Recordset::physicalRowOf(Bookmark key) const
{
    if (keysAscending_) {
        const auto it = std::lower_bound(keys_.begin(), keys_.end(), key);
        return it != keys_.end() && *it == key ? qsizetype(it - keys_.begin()) : -1;
    }
    if (keyIndex_.empty()) {
        keyIndex_.reserve(keys_.size());
        for (std::size_t i = 0; i < keys_.size(); ++i)
            keyIndex_.emplace_back(keys_[i], std::uint32_t(i));
        std::stable_sort(keyIndex_.begin(), keyIndex_.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
    }
    const auto it = std::lower_bound(keyIndex_.begin(), keyIndex_.end(), key, keyBefore);
    return it != keyIndex_.end() && it->first == key ? qsizetype(it->second) : -1;
}

qsizetype Recordset::positionOf(Bookmark key) const
{
    const qsizetype row = physicalRowOf(key);
    if (row < 0)
        return -1;
    const auto physical = std::uint32_t(row);
    // Rows keep their physical order until one is deleted, so look where it was first.
    const std::size_t guess = std::min<std::size_t>(physical, order_.empty() ? 0 : order_.size() - 1);
    if (!order_.empty() && order_[guess] == physical)
        return qsizetype(guess);
    const auto found = std::find(order_.begin(), order_.end(), physical);
    return found == order_.end() ? -1 : qsizetype(found - order_.begin());
}

qsizetype Recordset::requireCurrent() const
{
    checkOpen();
    if (currentDeleted_ || pos_ < 0 || pos_ >= qsizetype(order_.size()))
        throw noCurrentRecord();
    return order_[std::size_t(pos_)];
}

int Recordset::FieldCount() const
{
    return rows_->columnCount();
}

void Recordset::checkColumn(int c) const
{
    if (c < 0 || c >= rows_->columnCount())
        throw AppError(QStringLiteral(
            "Item cannot be found in the collection corresponding to the requested name or ordinal."));
}

Field Recordset::Fields(int index)
{
    checkOpen();
    checkColumn(index);
    return Field(this, index);
}

Field Recordset::Fields(const QString& name)
{
    checkOpen();
    const int c = FieldIndex(name);
    checkColumn(c);
    return Field(this, c);
}

int Recordset::FieldIndex(QStringView name) const
{
    for (int c = 0; c < rows_->columnCount(); ++c)
        if (rows_->column(c).name.compare(name, Qt::CaseInsensitive) == 0)
            return c;
    return -1;
}

const ColumnInfo& Recordset::Column(int index) const
{
    checkColumn(index);
    return rows_->column(index);
}

QVariant Recordset::fieldValue(int c) const
{
    // Reading a field ends a piecewise read: the next GetChunk starts at the beginning again.
    std::fill(chunkRead_.begin(), chunkRead_.end(), 0);
    return currentValue(c);
}

QVariant Recordset::currentValue(int c) const
{
    if (editMode_ != EditMode::None && pending_[std::size_t(c)])
        return *pending_[std::size_t(c)];
    if (editMode_ == EditMode::Add)
        return {};
    return rows_->value(requireCurrent(), c);
}

// A stored date reads as the store gives its text, so a field and a list show one form of it; an
// edited date is already held in that form.
QString Recordset::fieldText(int c) const
{
    const bool stored =
        editMode_ == EditMode::None || (editMode_ == EditMode::Edit && !pending_[std::size_t(c)]);
    if (stored && rows_->column(c).type == adDate) {
        std::fill(chunkRead_.begin(), chunkRead_.end(), 0);
        return rows_->text(requireCurrent(), c);
    }
    const QVariant v = fieldValue(c);
    if (!v.isValid() || v.isNull())
        return {};
    return v.toString();
}

bool Recordset::fieldIsNull(int c) const
{
    const QVariant v = fieldValue(c);
    return !v.isValid() || v.isNull();
}

void Recordset::beginEdit()
{
    checkOpen();
    if (!Updatable())
        throw notUpdatable();
    if (editMode_ != EditMode::None)
        return;
    requireCurrent();
    editMode_ = EditMode::Edit;
    pending_.assign(std::size_t(rows_->columnCount()), std::nullopt);
}

void Recordset::setFieldValue(int c, const QVariant& v)
{
    beginEdit();
    if (rows_->column(c).baseColumn.isEmpty())
        throw notUpdatable();
    pending_[std::size_t(c)] = CoerceToType(v, rows_->column(c).type);
}

QByteArray Recordset::fieldChunk(int c, qsizetype size)
{
    const QVariant v = currentValue(c);
    const QByteArray all = v.typeId() == QMetaType::QByteArray ? v.toByteArray() : v.toString().toUtf8();
    qsizetype& offset = chunkRead_[std::size_t(c)];
    const QByteArray part = all.mid(offset, std::max<qsizetype>(0, size));
    offset += part.size();
    return part;
}

void Recordset::appendFieldChunk(int c, const QByteArray& bytes)
{
    beginEdit();
    auto& slot = pending_[std::size_t(c)];
    QByteArray value = slot && slot->typeId() == QMetaType::QByteArray ? slot->toByteArray() : QByteArray();
    value.append(bytes);
    setFieldValue(c, value);
}

void Recordset::AddNew()
{
    checkOpen();
    if (!Updatable())
        throw notUpdatable();
    if (editMode_ != EditMode::None)
        Update();
    editMode_ = EditMode::Add;
    pending_.assign(std::size_t(rows_->columnCount()), std::nullopt);
}

void Recordset::clearEdit()
{
    editMode_ = EditMode::None;
    pending_.clear();
}

void Recordset::CancelUpdate()
{
    checkOpen();
    clearEdit();
}

void Recordset::Update()
{
    checkOpen();
    if (editMode_ == EditMode::None)
        return;
    ColumnValues values;
    std::vector<int> changed;
    for (int c = 0; c < rows_->columnCount(); ++c) {
        if (!pending_[std::size_t(c)])
            continue;
        changed.push_back(c);
        values.emplace_back(rows_->column(c).baseColumn, *pending_[std::size_t(c)]);
    }
    Backend& backend = *source_.backend;
    if (editMode_ == EditMode::Edit) {
        const qsizetype row = requireCurrent();
        if (!values.empty()) {
            ColumnValues originals;
            for (int c : changed)
                originals.emplace_back(rows_->column(c).baseColumn,
                                       CoerceToType(rows_->value(row, c), rows_->column(c).type));
            backend.updateRow(source_.baseTable, keys_[std::size_t(row)], values, originals);
            for (std::size_t i = 0; i < changed.size(); ++i)
                rows_->setValue(row, changed[i], values[i].second);
        }
    } else {
        const qint64 key = backend.insertRow(source_.baseTable, values);
        const qsizetype row = rows_->appendRow();
        for (std::size_t i = 0; i < changed.size(); ++i)
            rows_->setValue(row, changed[i], values[i].second);
        backend.readRow(source_.baseTable, key, *rows_, row);
        if (keysAscending_ && !keys_.empty() && key < keys_.back())
            keysAscending_ = false;  // the index is built when next needed
        else if (!keyIndex_.empty())
            keyIndex_.insert(std::upper_bound(keyIndex_.begin(), keyIndex_.end(), key,
                                              [](Bookmark k, const auto& entry) { return k < entry.first; }),
                             {key, std::uint32_t(row)});
        keys_.push_back(key);
        order_.push_back(std::uint32_t(row));
        setPosition(qsizetype(order_.size()) - 1);
    }
    clearEdit();
}

void Recordset::Delete()
{
    checkOpen();
    if (!Updatable())
        throw notUpdatable();
    if (editMode_ == EditMode::Add) {
        clearEdit();
        return;
    }
    clearEdit();
    const qsizetype row = requireCurrent();
    const bool kept = IsKeptTable(source_.baseTable);
    if (kept)
        EnsureDeleteJournal(*source_.backend);
    source_.backend->removeRow(source_.baseTable, keys_[std::size_t(row)]);
    order_.erase(order_.begin() + pos_);
    currentDeleted_ = true;
    if (kept)
        NoteDeleted(source_.backend, source_.baseTable, 1);
}

QString Recordset::text(qsizetype position, int column) const
{
    return rows_->text(order_[std::size_t(position)], column);
}

void Recordset::appendText(qsizetype position, int column, QString& out) const
{
    rows_->appendText(order_[std::size_t(position)], column, out);
}

QVariant Recordset::value(qsizetype position, int column) const
{
    return rows_->value(order_[std::size_t(position)], column);
}

bool Recordset::isNull(qsizetype position, int column) const
{
    return rows_->isNull(order_[std::size_t(position)], column);
}

Bookmark Recordset::bookmarkAt(qsizetype position) const
{
    return keys_[order_[std::size_t(position)]];
}

std::size_t Recordset::memoryUsed() const
{
    return rows_->memoryUsed() + keys_.capacity() * sizeof(Bookmark) +
           order_.capacity() * sizeof(std::uint32_t) + keyIndex_.capacity() * sizeof(keyIndex_[0]);
}

// Field

QString Field::Name() const
{
    return rs_->Column(index_).name;
}
int Field::Type() const
{
    return rs_->Column(index_).type;
}
QVariant Field::Value() const
{
    return rs_->fieldValue(index_);
}
bool Field::IsNull() const
{
    return rs_->fieldIsNull(index_);
}
void Field::setValue(const QVariant& v) const
{
    rs_->setFieldValue(index_, v);
}
QByteArray Field::GetChunk(qsizetype size) const
{
    return rs_->fieldChunk(index_, size);
}
void Field::AppendChunk(const QByteArray& bytes) const
{
    rs_->appendFieldChunk(index_, bytes);
}

QString Field::Text() const
{
    return rs_->fieldText(index_);
}

qsizetype Field::ActualSize() const
{
    const QVariant v = Value();
    if (!v.isValid() || v.isNull())
        return 0;
    return v.typeId() == QMetaType::QByteArray ? v.toByteArray().size() : v.toString().size();
}

}  // namespace td
