#include "controls/ViewRows.h"
#include <algorithm>
#include <cstring>

namespace td {

namespace {
constexpr quint32 kChunkUnits = 1u << 20;  // 2 MB of text per chunk
}

void BlankSeparators(QString& joined, qsizetype from)
{
    const QStringView tail = QStringView(joined).mid(from);
    if (!tail.contains(QChar(ViewRows::kSeparator)))
        return;
    auto* text = reinterpret_cast<char16_t*>(joined.data());
    std::replace(text + from, text + joined.size(), ViewRows::kSeparator, u' ');
}

void AppendCell(QString& joined, QStringView cell, bool first)
{
    if (!first)
        joined += QChar(ViewRows::kSeparator);
    const qsizetype start = joined.size();
    joined += cell;
    BlankSeparators(joined, start);
}

void ViewRows::clear()
{
    rows_.clear();
    rows_.shrink_to_fit();
    chunks_.clear();
    liveUnits_ = wastedUnits_ = 0;
}

void ViewRows::store(Row& row, QStringView text)
{
    const quint32 n = quint32(text.size());
    if (chunks_.empty() || chunks_.back().size - chunks_.back().used < n) {
        Chunk chunk;
        chunk.size = std::max(n, kChunkUnits);
        chunk.data = std::make_unique<char16_t[]>(chunk.size);
        chunks_.push_back(std::move(chunk));
    }
    Chunk& chunk = chunks_.back();
    if (n)
        std::memcpy(chunk.data.get() + chunk.used, text.utf16(), n * sizeof(char16_t));
    row.chunk = quint32(chunks_.size() - 1);
    row.offset = chunk.used;
    row.length = n;
    chunk.used += n;
    liveUnits_ += n;
}

void ViewRows::append(QStringView joined, Bookmark tag)
{
    Row row;
    row.tag = tag;
    store(row, joined);
    rows_.push_back(row);
}

void ViewRows::remove(qsizetype row)
{
    const quint32 n = rows_[std::size_t(row)].length;
    liveUnits_ -= n;
    wastedUnits_ += n;
    rows_.erase(rows_.begin() + row);
    compactIfWasteful();
}

void ViewRows::permute(const std::vector<qsizetype>& order)
{
    std::vector<Row> sorted;
    sorted.reserve(rows_.size());
    for (qsizetype old : order)
        sorted.push_back(rows_[std::size_t(old)]);
    rows_.swap(sorted);
}

QStringView ViewRows::joined(qsizetype row) const
{
    const Row& r = rows_[std::size_t(row)];
    return QStringView(chunks_[r.chunk].data.get() + r.offset, qsizetype(r.length));
}

void ViewRows::setJoined(qsizetype row, QStringView joined)
{
    Row& r = rows_[std::size_t(row)];
    liveUnits_ -= r.length;
    wastedUnits_ += r.length;
    store(r, joined);
    compactIfWasteful();
}

QStringView ViewRows::cell(qsizetype row, int column) const
{
    QStringView rest = joined(row);
    for (int c = 0; c < column; ++c) {
        const qsizetype at = rest.indexOf(QChar(kSeparator));
        if (at < 0)
            return {};
        rest = rest.mid(at + 1);
    }
    const qsizetype end = rest.indexOf(QChar(kSeparator));
    return end < 0 ? rest : rest.left(end);
}

// Rewritten and removed rows leave their old text behind; once that outweighs the live text, the
// arena is rebuilt with the live texts only.
void ViewRows::compactIfWasteful()
{
    if (wastedUnits_ < qsizetype(kChunkUnits) || wastedUnits_ < liveUnits_)
        return;
    std::vector<Chunk> old;
    old.swap(chunks_);
    liveUnits_ = wastedUnits_ = 0;
    for (Row& r : rows_)
        store(r, QStringView(old[r.chunk].data.get() + r.offset, qsizetype(r.length)));
}

std::size_t ViewRows::memoryUsed() const
{
    std::size_t bytes = rows_.capacity() * sizeof(Row);
    for (const Chunk& c : chunks_)
        bytes += std::size_t(c.size) * sizeof(char16_t);
    return bytes;
}

}  // namespace td
