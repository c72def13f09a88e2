#include "songdb/CatalogueLookups.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "songdb/RecordAccess.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <cmath>

namespace td {

namespace {

struct LibraryPathCache {
    QDateTime loadTime;  // invalid at start, so the first use reads
    TextArray paths;
};

LibraryPathCache& cache()
{
    static LibraryPathCache c;
    return c;
}

QDateTime (*&clock())()
{
    static QDateTime (*now)() = nullptr;
    return now;
}

QDateTime now()
{
    return clock() ? clock()() : QDateTime::currentDateTime();
}

// Minute boundaries passed between two times, as the calendar counts them.
qint64 minutesBetween(const QDateTime& from, const QDateTime& to)
{
    const auto minute = [](const QDateTime& t) {
        return std::floor(double(t.toSecsSinceEpoch() + t.offsetFromUtc()) / 60.0);
    };
    return qint64(minute(to) - minute(from));
}

QString rootForm(const QString& root)
{
    const QString native = NativePath(root);
    return native.endsWith(u'/') ? native : native + u'/';
}

}  // namespace

long long SongMinIndex()
{
    return IntegerValue(SongReadValue({}, QStringLiteral("MinIndex"), QStringLiteral("1000")));
}

long long SongMaxIndex()
{
    return IntegerValue(SongReadValue({}, QStringLiteral("MaxIndex"), QStringLiteral("999999")));
}

bool SongIndexFree(long long index)
{
    if (index <= 0)
        return false;
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(QStringLiteral("select * from song where index=") + QString::number(index), rs)) {
        MsgError(QStringLiteral("Check song index crash failed! ") + ErrSuffix(SongLastError()));
        return false;
    }
    return rs->RecordCount() < 1;
}

bool SongCheckIndex(long long index)
{
    if (index == 0)
        return true;
    if (index < 0 || index < SongMinIndex() || index > SongMaxIndex())
        return false;
    return SongIndexFree(index);
}

bool LibraryExists(const QString& root)
{
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(QStringLiteral("select root_path from library where root_path='") + root + u'\'',
                           rs))
        return false;
    return rs->RecordCount() >= 1;
}

void LoadLibraryPaths(TextArray& paths)
{
    paths = NewTextArray();
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(QStringLiteral("select root_path from library"), rs))
        return;
    for (qsizetype r = 0; r < rs->RecordCount(); ++r)
        AppendItem(paths, rs->text(r, 0));
}

bool GetLocalPath(QString& path, QString& library, bool force)
{
    LibraryPathCache& c = cache();
    const QDateTime t = now();
    if (force || !c.loadTime.isValid() || minutesBetween(c.loadTime, t) > 1) {
        LoadLibraryPaths(c.paths);
        c.loadTime = t;
    }
    if (path.isEmpty())
        return false;
    for (int i = 1; i <= UBound(c.paths); ++i) {
        // An empty root's form "/" would take every path here; "\\" took no drive path.
        if (c.paths[i].isEmpty())
            continue;
        const QString form = rootForm(c.paths[i]);
        if (path.startsWith(form)) {
            library = c.paths[i];
            path = path.mid(form.size() - 1);
            return true;
        }
    }
    return false;
}

QString GetLibraryRemotePath(const QString& root)
{
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(QStringLiteral("select shared_as from library where root_path='") + root + u'\'',
                           rs)) {
        MsgError(QStringLiteral("Ktv Get library remote path failed! ") + ErrSuffix(SongLastError()));
        return {};
    }
    if (rs->RecordCount() < 1)
        return {};
    // One leading separator names a share on the database's host; two, a full share path, unused.
    QString shared = rs->text(0, 0).replace(u'\\', u'/');
    const QString host = SongServerHost();
    if (!host.isEmpty() && shared.startsWith(u'/') && !shared.startsWith(u"//"))
        return QStringLiteral("//") + host + shared;
    return {};
}

QString KtvGetFileById(long long id)
{
    if (id == 0)
        return {};
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(
            QStringLiteral("select media_file, library from song where Id=") + QString::number(id), rs) ||
        rs->RecordCount() < 1)
        return {};
    const QString media = rs->text(0, 0);
    const QString library = rs->text(0, 1);
    const QString remote = GetLibraryRemotePath(library);
    const QString local = NativePath(LinkFileByPath(library, media));
    if (FileKind(local) == u"f")
        return local;
    if (remote.isEmpty())
        return {};
    const QString network = NativePath(LinkFileByPath(remote, media));
    return FileKind(network) == u"f" ? network : QString();
}

bool GetRegionNames(TextArray& names)
{
    return SongGetNamesFromField(QStringLiteral("region"), QStringLiteral("Name"), {}, names);
}

void SetLookupClock(QDateTime (*nowFunction)())
{
    clock() = nowFunction;
}

}  // namespace td
