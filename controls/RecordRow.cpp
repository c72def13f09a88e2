#include "controls/RecordRow.h"
#include "controls/ViewRows.h"
#include "shell/services/AppError.h"

namespace td {

int RequireField(const Recordset& rs, const QString& name)
{
    const int c = rs.FieldIndex(name);
    if (c < 0)
        throw AppError(QStringLiteral(
            "Item cannot be found in the collection corresponding to the requested name or ordinal."));
    return c;
}

RecordRow::RecordRow(const Recordset& rs, const std::vector<ViewColumn>& columns, const ImageRule& icon,
                     const ImageRule& smallIcon)
    : rs_(rs), icon_(icon), smallIcon_(smallIcon)
{
    fields_.reserve(columns.size());
    for (const ViewColumn& col : columns)
        fields_.push_back(RequireField(rs, col.Field));
    if (icon.Id.isEmpty() && !icon.Field.isEmpty())
        iconField_ = RequireField(rs, icon.Field);
    if (smallIcon.Id.isEmpty() && !smallIcon.Field.isEmpty())
        smallIconField_ = RequireField(rs, smallIcon.Field);
}

void RecordRow::joinedText(qsizetype position, QString& joined) const
{
    joined.truncate(0);  // keeps the buffer, where clear() would free it on every row
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (i > 0)
            joined += QChar(ViewRows::kSeparator);
        const qsizetype start = joined.size();
        rs_.appendText(position, fields_[i], joined);
        BlankSeparators(joined, start);
    }
}

QString RecordRow::image(qsizetype position, const ImageRule& rule, int field) const
{
    if (!rule.Id.isEmpty())
        return rule.Id;
    if (field < 0)
        return {};
    return rs_.text(position, field);
}

qsizetype BookmarkFinder::find(Bookmark key, int direction)
{
    const qsizetype guess = last_ + direction;
    if (last_ != -2 && guess >= 0 && guess < rs_.RecordCount() && rs_.bookmarkAt(guess) == key)
        return last_ = guess;
    const qsizetype pos = rs_.positionOf(key);
    if (pos >= 0)
        last_ = pos;
    return pos;
}

}  // namespace td
