#include "exchange/SongbookExport.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include "songdb/Connection.h"
#include "songdb/Recordset.h"
#include <QFile>
#include <QFileInfo>

namespace td {

namespace {

bool sameFile(const QString& a, const QString& b)
{
    const QFileInfo x(a), y(b);
    if (x.exists() && y.exists())
        return x.canonicalFilePath() == y.canonicalFilePath();
    return x.absoluteFilePath() == y.absoluteFilePath();
}

void removeFile(const QString& path)
{
    QFile file(path);
    file.setPermissions(file.permissions() | QFileDevice::WriteOwner);
    if (!file.remove())
        throw AppError(QStringLiteral("Permission denied: ") + path);
}

void copyTable(Connection& db, const QString& table, const QString& target)
{
    QString file = target;
    file.replace(u'\'', QStringLiteral("''"));
    db.execute(QStringLiteral("select * into ") + table + QStringLiteral(" in '") + file + QStringLiteral("' from ") +
               table);
}

qint64 rowsOf(Connection& db, const QString& statement)
{
    return db.openRecordset(statement)->RecordCount();
}

}  // namespace

QString DefaultExportTarget(const QString& databaseFile)
{
    return ParentPath(databaseFile) + QStringLiteral("/song.db");
}

SongbookExportResult ExportSongbook(Connection& db, const QString& databaseFile, const QString& target,
                                    JobHost& host)
{
    SongbookExportResult result;
    if (sameFile(target, databaseFile)) {
        host.Fail(QStringLiteral("Can not export to current database!"));
        return result;
    }
    if (host.Ask(QStringLiteral("Export all songs & singers to <") + target + QStringLiteral("> ?"),
                 MsgButtons::OkCancel) == MsgAnswer::Cancel)
        return result;
    try {
        if (FileKind(target) == u"f") {
            if (host.Ask(QStringLiteral("A prior exported file detected. Delete it and create a new export file?"),
                         MsgButtons::OkCancel) == MsgAnswer::Cancel)
                return result;
            removeFile(target);
        }
        host.StartProcess(QString(), QStringLiteral("Copy database file ..."), 0, 100, false);
        host.Processing(20);
        const QString emptyDatabase = AppPath() + QStringLiteral("/default.db");
        if (!QFile::copy(emptyDatabase, target))
            throw AppError(QStringLiteral("Can't copy <") + emptyDatabase + QStringLiteral("> to <") + target +
                           QStringLiteral(">"));
        host.StartProcess(QString(), QStringLiteral("Copy songs ..."), 0, 100, false);
        host.Processing(40);
        copyTable(db, QStringLiteral("song"), target);
        host.StartProcess(QString(), QStringLiteral("Copy singer ..."), 0, 100, false);
        host.Processing(60);
        copyTable(db, QStringLiteral("singer"), target);
        // What arrived, read back from the new file.
        auto exported = OpenConnection(target);
        result.songs = rowsOf(*exported, QStringLiteral("select index from song"));
        result.singers = rowsOf(*exported, QStringLiteral("select name from singer"));
        exported->close();
    } catch (const std::exception& e) {
        host.EndProcess();
        host.Fail(QStringLiteral("An error take place while export! Err=") + ErrorText(e));
        return result;
    }
    host.EndProcess();
    result.done = true;
    host.Inform(QString::number(result.songs) + QStringLiteral(" songs and ") + QString::number(result.singers) +
                QStringLiteral(" singers exported!"));
    return result;
}

}  // namespace td
