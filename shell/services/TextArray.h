#pragma once
#include <QString>
#include <QStringList>

namespace td {

// A list result of the helpers: element 0 stays empty, the first item is at 1,
// and the upper bound equals the count. An empty result has upper bound 0.
using TextArray = QStringList;

inline TextArray NewTextArray()
{
    return TextArray{QString()};
}
inline int UBound(const TextArray& a)
{
    return a.isEmpty() ? 0 : int(a.size()) - 1;
}
inline void AppendItem(TextArray& a, const QString& item)
{
    if (a.isEmpty())
        a.append(QString());
    a.append(item);
}

}  // namespace td
