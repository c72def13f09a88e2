#include "controls/DataViewModel.h"
#include <algorithm>
#include <numeric>

namespace td {

DataViewModel::DataViewModel(QObject* parent) : QAbstractTableModel(parent) {}

void DataViewModel::setHeadings(const QStringList& captions)
{
    beginResetModel();
    rows_.clear();
    published_ = 0;
    headings_ = captions;
    endResetModel();
}

int DataViewModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(published_);
}

int DataViewModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(headings_.size());
}

QVariant DataViewModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == Qt::DisplayRole)
        return rows_.cell(index.row(), index.column()).toString();
    if (role == Qt::DecorationRole && index.column() == 0 && smallImages_) {
        const quint16 image = rows_.smallIcon(index.row());
        if (image)
            return smallImages_->value(imageKeys_[image]);
    }
    return {};
}

QVariant DataViewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < headings_.size())
        return headings_[section];
    return {};
}

void DataViewModel::clearRows()
{
    beginResetModel();
    rows_.clear();
    published_ = 0;
    endResetModel();
}

void DataViewModel::appendRow(QStringView joined, Bookmark tag)
{
    rows_.append(joined, tag);
}

void DataViewModel::publish()
{
    if (published_ == rows_.count())
        return;
    beginInsertRows({}, int(published_), int(rows_.count() - 1));
    published_ = rows_.count();
    endInsertRows();
}

void DataViewModel::removeRow(qsizetype row)
{
    beginRemoveRows({}, int(row), int(row));
    rows_.remove(row);
    --published_;
    endRemoveRows();
}

void DataViewModel::setRowText(qsizetype row, QStringView joined)
{
    int first = -1, last = -1;
    for (int c = 0; c < headings_.size(); ++c) {
        const QStringView old = rows_.cell(row, c);
        QStringView now = joined;
        for (int k = 0; k < c && !now.isNull(); ++k) {
            const qsizetype at = now.indexOf(QChar(ViewRows::kSeparator));
            now = at < 0 ? QStringView() : now.mid(at + 1);
        }
        const qsizetype end = now.indexOf(QChar(ViewRows::kSeparator));
        if (end >= 0)
            now = now.left(end);
        if (old != now) {
            if (first < 0)
                first = c;
            last = c;
        }
    }
    rows_.setJoined(row, joined);
    if (first >= 0 && row < published_)
        emit dataChanged(index(int(row), first), index(int(row), last), {Qt::DisplayRole});
}

quint16 DataViewModel::imageNumber(const QString& key)
{
    if (key.isEmpty())
        return 0;
    qsizetype i = imageKeys_.indexOf(key);
    if (i < 0 && imageKeys_.size() < 65535) {
        imageKeys_.append(key);
        i = imageKeys_.size() - 1;
    }
    return quint16(std::max<qsizetype>(i, 0));
}

void DataViewModel::setIcon(qsizetype row, const QString& key)
{
    rows_.setIcon(row, imageNumber(key));
}

void DataViewModel::setSmallIcon(qsizetype row, const QString& key)
{
    const quint16 image = imageNumber(key);
    if (rows_.smallIcon(row) == image)
        return;
    rows_.setSmallIcon(row, image);
    if (row < published_)
        emit dataChanged(index(int(row), 0), index(int(row), 0), {Qt::DecorationRole});
}

void DataViewModel::sortRows(int column, Qt::SortOrder order)
{
    publish();
    const qsizetype n = rows_.count();
    std::vector<qsizetype> byText(static_cast<std::size_t>(n));
    std::iota(byText.begin(), byText.end(), 0);
    std::vector<QStringView> keys(static_cast<std::size_t>(n));
    for (qsizetype r = 0; r < n; ++r)
        keys[std::size_t(r)] = rows_.cell(r, column);
    std::stable_sort(byText.begin(), byText.end(), [&](qsizetype a, qsizetype b) {
        const int cmp = keys[std::size_t(a)].compare(keys[std::size_t(b)], Qt::CaseInsensitive);
        return order == Qt::AscendingOrder ? cmp < 0 : cmp > 0;
    });

    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    std::vector<qsizetype> newRowOf(static_cast<std::size_t>(n));
    for (qsizetype i = 0; i < n; ++i)
        newRowOf[std::size_t(byText[std::size_t(i)])] = i;
    rows_.permute(byText);
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& i : from)
        to.append(index(int(newRowOf[std::size_t(i.row())]), i.column()));
    changePersistentIndexList(from, to);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

}  // namespace td
