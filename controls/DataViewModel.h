#pragma once
#include "controls/ViewRows.h"
#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>
#include <QStringList>

namespace td {

// Images by key, as an image list gives them to a list.
using ImageList = QHash<QString, QIcon>;

// The model behind ctlDataView's list. Rows appended during a load are held back and published to
// the view in batches, so a million rows cost a few hundred insert notifications, not a million.
class DataViewModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit DataViewModel(QObject* parent = nullptr);

    void setHeadings(const QStringList& captions);
    void setSmallImages(const ImageList* images) { smallImages_ = images; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void clearRows();
    void reserveRows(qsizetype n) { rows_.reserve(n); }
    // Stores a row at the end; the view sees it at the next publish().
    void appendRow(QStringView joined, Bookmark tag);
    void publish();
    qsizetype pendingCount() const { return rows_.count() - published_; }
    void removeRow(qsizetype row);
    // Rewrites a row; only the columns whose text differs are announced.
    void setRowText(qsizetype row, QStringView joined);

    const ViewRows& rows() const { return rows_; }
    QString text(qsizetype row, int column) const { return rows_.cell(row, column).toString(); }
    Bookmark tag(qsizetype row) const { return rows_.tag(row); }
    void setTag(qsizetype row, Bookmark tag) { rows_.setTag(row, tag); }
    QString icon(qsizetype row) const { return imageKeys_[rows_.icon(row)]; }
    QString smallIcon(qsizetype row) const { return imageKeys_[rows_.smallIcon(row)]; }
    void setIcon(qsizetype row, const QString& key);
    void setSmallIcon(qsizetype row, const QString& key);

    // Orders the rows by the text of one column, without regard to case; equal texts keep their order.
    void sortRows(int column, Qt::SortOrder order);

private:
    quint16 imageNumber(const QString& key);

    ViewRows rows_;
    qsizetype published_ = 0;
    QStringList headings_;
    QStringList imageKeys_{QString()};  // number 0 is "no image"
    const ImageList* smallImages_ = nullptr;
};

}  // namespace td
