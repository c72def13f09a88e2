#include "songdb/RowStore.h"
#include "shell/services/AppError.h"
#include "songdb/AdoTypes.h"
#include "songdb/DateText.h"
#include <QStringDecoder>
#include <charconv>
#include <cstring>
#include <limits>

namespace td {

namespace {
constexpr qsizetype kRowsPerChunk = 4096;
constexpr std::uint32_t kArenaShift = 22;  // 4 MiB arena chunks
constexpr std::uint32_t kArenaChunk = 1u << kArenaShift;
constexpr std::uint32_t kKindMask = 7u;  // sizeKind: size << 4 | big << 3 | kind
constexpr std::uint32_t kBigFlag = 1u << 3;
constexpr int kSizeShift = 4;

std::uint32_t pack(std::uint32_t size, CellKind k)
{
    return size << kSizeShift | std::uint32_t(k);
}
}  // namespace

RowStore::RowStore(std::vector<ColumnInfo> columns) : columns_(std::move(columns)), recent_(columns_.size())
{
}
RowStore::~RowStore() = default;

qsizetype RowStore::appendRow()
{
    const qsizetype row = rows_;
    if (row % kRowsPerChunk == 0) {
        const auto n = std::size_t(kRowsPerChunk) * std::max<std::size_t>(1, columns_.size());
        cellChunks_.emplace_back(new Cell[n]());
    }
    ++rows_;
    return row;
}

RowStore::Cell& RowStore::cell(qsizetype row, int c)
{
    return cellChunks_[std::size_t(row / kRowsPerChunk)]
                      [std::size_t(row % kRowsPerChunk) * columns_.size() + std::size_t(c)];
}

const RowStore::Cell& RowStore::cell(qsizetype row, int c) const
{
    return cellChunks_[std::size_t(row / kRowsPerChunk)]
                      [std::size_t(row % kRowsPerChunk) * columns_.size() + std::size_t(c)];
}

// Texts and blobs go into the arena; a value larger than a chunk keeps a QByteArray of its own.
std::uint32_t RowStore::storeBytes(const void* data, qsizetype size, bool& big)
{
    big = size >= qsizetype(kArenaChunk) / 4;
    if (big) {
        big_.emplace_back(static_cast<const char*>(data), size);
        return std::uint32_t(big_.size() - 1);
    }
    if (arenaChunks_.empty() || arenaUsed_ + std::uint32_t(size) > kArenaChunk) {
        if (arenaChunks_.size() >= (1u << (32 - kArenaShift)))
            throw AppError(QStringLiteral("Out of memory: the recordset is too large."));
        arenaChunks_.emplace_back(new char[kArenaChunk]);
        arenaUsed_ = 0;
    }
    const auto chunk = std::uint32_t(arenaChunks_.size() - 1);
    if (size > 0)
        std::memcpy(arenaChunks_.back().get() + arenaUsed_, data, std::size_t(size));
    const std::uint32_t ref = chunk << kArenaShift | arenaUsed_;
    arenaUsed_ += std::uint32_t(size);
    return ref;
}

void RowStore::setNull(qsizetype row, int c)
{
    cell(row, c) = Cell{};
}

void RowStore::setInteger(qsizetype row, int c, qint64 v)
{
    if (v >= std::numeric_limits<std::int32_t>::min() && v <= std::numeric_limits<std::int32_t>::max()) {
        cell(row, c) = Cell{std::uint32_t(std::int32_t(v)), pack(0, CellKind::Integer)};
        return;
    }
    bool big = false;
    const std::uint32_t ref = storeBytes(&v, sizeof v, big);
    cell(row, c) = Cell{ref, pack(sizeof v, CellKind::Integer)};
}

void RowStore::setReal(qsizetype row, int c, double v)
{
    bool big = false;
    const std::uint32_t ref = storeBytes(&v, sizeof v, big);
    cell(row, c) = Cell{ref, pack(sizeof v, CellKind::Real)};
}

std::uint32_t RowStore::storeText(int c, const char* utf8, qsizetype size, bool& big)
{
    constexpr qsizetype kShortText = 256;
    if (size == 0 || size > kShortText)
        return storeBytes(utf8, size, big);
    Recent& recent = recent_[std::size_t(c)];
    if (recent.skip > 0) {
        --recent.skip;
        return storeBytes(utf8, size, big);
    }
    constexpr std::uint32_t kProbe = 1024, kPause = 16 * kProbe;
    if (++recent.tries == kProbe) {
        if (recent.hits < kProbe / 8)
            recent.skip = kPause;
        recent.tries = recent.hits = 0;
    }
    for (int i = 0; i < Recent::kSlots; ++i) {
        if (recent.size[i] != std::uint32_t(size))
            continue;
        const std::uint32_t ref = recent.ref[i];
        if (std::memcmp(arenaChunks_[ref >> kArenaShift].get() + (ref & (kArenaChunk - 1)), utf8,
                        std::size_t(size)) == 0) {
            big = false;
            ++recent.hits;
            return ref;
        }
    }
    const std::uint32_t ref = storeBytes(utf8, size, big);
    recent.ref[recent.next] = ref;
    recent.size[recent.next] = std::uint32_t(size);
    recent.next = (recent.next + 1) % Recent::kSlots;
    return ref;
}

void RowStore::setText(qsizetype row, int c, const char* utf8, qsizetype size)
{
    bool big = false;
    const std::uint32_t ref = storeText(c, utf8, size, big);
    cell(row, c) =
        Cell{ref, big ? pack(0, CellKind::Text) | kBigFlag : pack(std::uint32_t(size), CellKind::Text)};
}

void RowStore::setBlob(qsizetype row, int c, const void* data, qsizetype size)
{
    bool big = false;
    const std::uint32_t ref = storeBytes(data, size, big);
    cell(row, c) =
        Cell{ref, big ? pack(0, CellKind::Blob) | kBigFlag : pack(std::uint32_t(size), CellKind::Blob)};
}

CellKind RowStore::kind(qsizetype row, int c) const
{
    return CellKind(cell(row, c).sizeKind & kKindMask);
}

qint64 RowStore::integer(qsizetype row, int c) const
{
    const Cell& x = cell(row, c);
    switch (CellKind(x.sizeKind & kKindMask)) {
        case CellKind::Integer:
            if ((x.sizeKind >> kSizeShift) == 0)
                return std::int32_t(x.ref);
            else {
                qint64 v;
                std::memcpy(&v, bytes(row, c).data(), sizeof v);
                return v;
            }
        case CellKind::Real:
            return qint64(real(row, c));
        case CellKind::Text:
            return IntegerValue(text(row, c));
        default:
            return 0;
    }
}

double RowStore::real(qsizetype row, int c) const
{
    const Cell& x = cell(row, c);
    switch (CellKind(x.sizeKind & kKindMask)) {
        case CellKind::Real: {
            double v;
            std::memcpy(&v, arenaChunks_[x.ref >> kArenaShift].get() + (x.ref & (kArenaChunk - 1)), sizeof v);
            return v;
        }
        case CellKind::Integer:
            return double(integer(row, c));
        case CellKind::Text:
            return NumericValue(text(row, c));
        default:
            return 0;
    }
}

QByteArrayView RowStore::bytes(qsizetype row, int c) const
{
    const Cell& x = cell(row, c);
    if ((x.sizeKind & kKindMask) == std::uint32_t(CellKind::Null))
        return {};
    if (x.sizeKind & kBigFlag)
        return QByteArrayView(big_[x.ref]);
    if ((x.sizeKind >> kSizeShift) == 0)
        return {};
    return QByteArrayView(arenaChunks_[x.ref >> kArenaShift].get() + (x.ref & (kArenaChunk - 1)),
                          qsizetype(x.sizeKind >> kSizeShift));
}

bool RowStore::isDateColumn(int c) const
{
    return column(c).type == adDate;
}

QString RowStore::text(qsizetype row, int c) const
{
    switch (kind(row, c)) {
        case CellKind::Null:
            return {};
        case CellKind::Integer:
            return QString::number(integer(row, c));
        case CellKind::Real:
            return QString::number(real(row, c), 'g', 15);
        case CellKind::Text:
            if (isDateColumn(c) && !HasStoreShape(bytes(row, c)))
                return DateText(QString::fromUtf8(bytes(row, c)));
            break;
        case CellKind::Blob:
            break;
    }
    return QString::fromUtf8(bytes(row, c));
}

void RowStore::appendText(qsizetype row, int c, QString& out) const
{
    switch (kind(row, c)) {
        case CellKind::Null:
            return;
        case CellKind::Integer: {
            char digits[24];
            const auto end = std::to_chars(digits, digits + sizeof digits, integer(row, c)).ptr;
            out.append(QLatin1StringView(digits, end - digits));
            return;
        }
        case CellKind::Text:
            if (!isDateColumn(c) || HasStoreShape(bytes(row, c))) {
                AppendUtf8(out, bytes(row, c));
                return;
            }
            break;
        default:
            break;
    }
    out.append(text(row, c));
}

QVariant RowStore::value(qsizetype row, int c) const
{
    const CellKind k = kind(row, c);
    if (k == CellKind::Null)
        return {};
    switch (column(c).type) {
        case adSmallInt:
        case adInteger:
            if (k == CellKind::Integer)
                return QVariant::fromValue(integer(row, c));
            break;
        case adDouble:
            return real(row, c);
        case adBoolean:
            return integer(row, c) != 0;
        case adDate:
            return DateFromStore(text(row, c));
        default:
            break;
    }
    switch (k) {
        case CellKind::Integer:
            return QVariant::fromValue(integer(row, c));
        case CellKind::Real:
            return real(row, c);
        case CellKind::Blob:
            return QVariant(bytes(row, c).toByteArray());
        default:
            return text(row, c);
    }
}

void RowStore::setValue(qsizetype row, int c, const QVariant& v)
{
    const QVariant x = CoerceToType(v, column(c).type);
    switch (x.typeId()) {
        case QMetaType::UnknownType:
            setNull(row, c);
            return;
        case QMetaType::LongLong:
            setInteger(row, c, x.toLongLong());
            return;
        case QMetaType::Double:
            setReal(row, c, x.toDouble());
            return;
        case QMetaType::QByteArray: {
            const QByteArray b = x.toByteArray();
            setBlob(row, c, b.constData(), b.size());
            return;
        }
        default: {
            const QByteArray u = x.toString().toUtf8();
            setText(row, c, u.constData(), u.size());
            return;
        }
    }
}

void AppendUtf8(QString& out, QByteArrayView utf8)
{
    const qsizetype start = out.size();
    out.resize(start + utf8.size());  // never more UTF-16 units than UTF-8 bytes
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QChar* end = decoder.appendToBuffer(out.data() + start, utf8);
    out.truncate(end - out.constData());
}

std::size_t RowStore::memoryUsed() const
{
    std::size_t total = cellChunks_.size() * std::size_t(kRowsPerChunk) * columns_.size() * sizeof(Cell);
    total += arenaChunks_.size() * kArenaChunk;
    for (const auto& b : big_)
        total += std::size_t(b.size());
    return total;
}

}  // namespace td
