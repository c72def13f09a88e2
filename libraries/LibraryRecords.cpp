#include "libraries/LibraryRecords.h"
#include "songdb/Connection.h"

namespace td {

namespace {

QString literal(QString value)
{
    return u'\'' + value.replace(u'\'', QStringLiteral("''")) + u'\'';
}

bool isSeparator(QChar c)
{
    return c == u'/' || c == u'\\';
}

}  // namespace

QString SharedAsFor(const QString& rootPath)
{
    // The tail starts at the separator that ends the parent, and keeps it.
    qsizetype parentEnd = rootPath.size();
    while (parentEnd > 0 && !isSeparator(rootPath[parentEnd - 1]))
        --parentEnd;
    if (parentEnd == 0)
        return rootPath;
    return rootPath.mid(parentEnd - 1);
}

bool LibraryRootTaken(Connection& db, const QString& rootPath)
{
    return db.openRecordset(QStringLiteral("select * from library where root_path=") + literal(rootPath))
               ->RecordCount() > 0;
}

qint64 LibrarySongCount(Connection& db, const QString& rootPath)
{
    // Counted by the store: a library of 100,000 songs is never read into the window to be counted.
    auto rs =
        db.openRecordset(QStringLiteral("select count(*) from song where library = ") + literal(rootPath));
    return rs->Fields(0).Value().toLongLong();
}

qint64 MoveLibrarySongs(Connection& db, const QString& oldRoot, const QString& newRoot)
{
    return db.execute(QStringLiteral("update Song set Library = ") + literal(newRoot) +
                      QStringLiteral(" where Library = ") + literal(oldRoot));
}

qint64 DeleteLibrarySongs(Connection& db, const QString& rootPath)
{
    return db.execute(QStringLiteral("delete * from song where Library = ") + literal(rootPath));
}

}  // namespace td
