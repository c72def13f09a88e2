#include "FinderTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace td::test {

FinderTree::FinderTree(const QStringList& entries)
{
    for (const QString& entry : entries) {
        if (entry.endsWith(u'/'))
            QDir(root()).mkpath(entry);
        else
            write(entry);
    }
}

void FinderTree::write(const QString& relative, const QByteArray& content) const
{
    const QString file = path(relative);
    QDir().mkpath(QFileInfo(file).path());
    QFile out(file);
    if (out.open(QIODevice::WriteOnly))
        out.write(content);
}

QStringList FinderTree::relative(const TextArray& names) const
{
    QStringList out;
    const QString prefix = root() + u'/';
    for (qsizetype i = 1; i < names.size(); ++i)
        out << (names[i].startsWith(prefix) ? names[i].mid(prefix.size()) : names[i]);
    return out;
}

}  // namespace td::test
