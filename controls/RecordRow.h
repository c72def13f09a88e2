#pragma once
#include "controls/ViewFormat.h"
#include "songdb/Recordset.h"
#include <QString>
#include <vector>

namespace td {

// The image rule of a list: a fixed image id wins over an image named by a field of the record.
struct ImageRule {
    QString Id;
    QString Field;
};

// Reads the texts of list rows from a recordset by position, with the field names resolved once.
class RecordRow {
public:
    // Throws AppError when the recordset lacks a column's field.
    RecordRow(const Recordset& rs, const std::vector<ViewColumn>& columns, const ImageRule& icon,
              const ImageRule& smallIcon);

    // The column texts of the record at a 0-based position, joined as ViewRows keeps them.
    void joinedText(qsizetype position, QString& joined) const;
    QString icon(qsizetype position) const { return image(position, icon_, iconField_); }
    QString smallIcon(qsizetype position) const { return image(position, smallIcon_, smallIconField_); }

private:
    QString image(qsizetype position, const ImageRule& rule, int field) const;

    const Recordset& rs_;
    std::vector<int> fields_;
    ImageRule icon_, smallIcon_;
    int iconField_ = -1, smallIconField_ = -1;
};

// Finds records by bookmark, trying first the place next to the last one found: rows of a list
// mostly stand in recordset order, so a pass over them seldom needs the recordset's key index.
class BookmarkFinder {
public:
    explicit BookmarkFinder(const Recordset& rs) : rs_(rs) {}
    // 0-based position, or -1 when no record has the bookmark any more.
    qsizetype find(Bookmark key, int direction);

private:
    const Recordset& rs_;
    qsizetype last_ = -2;
};

// The column of a field, or AppError as the recordset gives it for an unknown name.
int RequireField(const Recordset& rs, const QString& name);

}  // namespace td
