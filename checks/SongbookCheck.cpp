#include "checks/SongbookCheck.h"
#include "checks/CheckReport.h"
#include "libraries/FileFinder.h"
#include "shell/services/AppError.h"
#include "shell/services/FilePaths.h"
#include "songdb/Connection.h"
#include <QDateTime>
#include <QFile>
#include <optional>

namespace td {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString quoted(QString value)
{
    return value.replace(u'\'', QStringLiteral("''"));
}

QString nowText()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

// True when the operator wants the operation to stop after this failure.
bool stopAfter(JobHost& host, const QString& doing, const std::exception& e)
{
    return host.Ask(QStringLiteral("An error take place while ") + doing + QStringLiteral("! Err=") + ErrorText(e) +
                        kCrLf + QStringLiteral("Stop checking?"),
                    MsgButtons::YesNo) == MsgAnswer::Yes;
}

bool confirmed(JobHost& host, const QString& question)
{
    return host.Ask(question, MsgButtons::YesNo) == MsgAnswer::Yes;
}

void show(const CheckSettings& settings, const QString& report)
{
    if (settings.showReport)
        settings.showReport(report);
}

// The library roots of a songbook, as stored.
QStringList libraryRoots(Connection& db)
{
    auto rs = db.openRecordset(QStringLiteral("select root_path from library"));
    QStringList roots;
    for (qsizetype r = 0; r < rs->RecordCount(); ++r)
        roots << rs->text(r, 0);
    return roots;
}

// A full path as the library it lies in and the media file below that library's root, the latter with
// its leading separator; nothing when no root holds it. An empty root holds nothing.
struct MediaPlace {
    QString library;
    QString mediaFile;
};
std::optional<MediaPlace> placeOf(const QStringList& roots, const QString& path)
{
    for (const QString& root : roots) {
        if (root.isEmpty())
            continue;
        QString form = NativePath(root);
        if (!form.endsWith(u'/'))
            form += u'/';
        if (path.startsWith(form))
            return MediaPlace{root, path.mid(form.size() - 1)};
    }
    return std::nullopt;
}

// The isolated files, and whether the search was stopped on the way.
struct IsolatedSearch {
    QStringList paths;
    bool stopped = false;
};

IsolatedSearch searchIsolated(Connection& db, const CheckSettings& settings, JobHost& host)
{
    IsolatedSearch result;
    const QString doing = QStringLiteral("searching isolated media files");
    try {
        const QString patterns = MediaFileTypes(db);
        const QStringList roots = libraryRoots(db);
        QStringList candidates;
        for (const QString& root : roots) {
            TextArray found;
            int attributes = 0;
            FindFiles(NativePath(root), patterns, -1, found, attributes);
            candidates << found.mid(1);
        }
        CheckReport report(IsolatedMediaReport(settings.reportDir));
        report.openingBlock(QStringLiteral("             Isolated media files in libraries - "));
        if (candidates.isEmpty()) {
            report.close();
            host.Inform(QStringLiteral("Didn't find any media file in libraries!"));
            host.EndProcess();
            return result;
        }
        host.StartProcess(QString(), QStringLiteral("Check isolated media files ..."), 0, candidates.size(), true);
        report.line(QStringLiteral("Can't find relative songs of these media files :"));
        report.rule();
        report.line(QStringLiteral("media_file"));
        for (qsizetype i = 0; i < candidates.size(); ++i) {
            try {
                if (const auto place = placeOf(roots, candidates[i])) {
                    const QString sql = QStringLiteral("select id from Song where Library='") + quoted(place->library) +
                                        QStringLiteral("' and media_file='") + quoted(place->mediaFile) + u'\'';
                    if (db.openRecordset(sql)->RecordCount() == 0) {
                        result.paths << candidates[i];
                        report.line(candidates[i]);
                    }
                }
            } catch (const std::exception& e) {
                if (stopAfter(host, doing, e)) {
                    result.stopped = true;
                    host.EndProcess();
                    return result;
                }
            }
            host.Processing(i + 1);
            if (JobStopWanted(host)) {
                result.stopped = true;
                host.EndProcess();
                return result;
            }
        }
        report.line();
        report.close();
        if (!result.paths.isEmpty())
            show(settings, report.path());
        else
            host.Inform(QStringLiteral("There isn't any isolated media file in libraries."));
    } catch (const std::exception& e) {
        stopAfter(host, doing, e);
        result.stopped = true;
    }
    host.EndProcess();
    return result;
}

// The question, the search and the count question that both media operations begin with; empty when the
// operator stops at one of them or nothing was found.
QStringList isolatedToWorkOn(Connection& db, const CheckSettings& settings, JobHost& host,
                             const QString& countQuestion)
{
    if (!confirmed(host, QStringLiteral("Begin to check isolated media files in all libraries?")))
        return {};
    const IsolatedSearch search = searchIsolated(db, settings, host);
    if (search.stopped || search.paths.isEmpty() ||
        !confirmed(host, QString::number(search.paths.size()) + countQuestion))
        return {};
    return search.paths;
}

}  // namespace

QString CheckLibraryReport(const QString& dir)
{
    return dir + QStringLiteral("/CheckLibrary.log");
}

QString CheckSongReport(const QString& dir)
{
    return dir + QStringLiteral("/CheckSong.log");
}

QString IsolatedMediaReport(const QString& dir)
{
    return dir + QStringLiteral("/IsolatedMedia.log");
}

QString MediaFileTypes(Connection& db)
{
    auto rs = db.openRecordset(QStringLiteral("select [value] from config where [section]='Default' and [key]='FileType'"));
    return rs->RecordCount() >= 1 ? rs->Fields(0).Text() : QStringLiteral("*.vob;*.dat;*.mp3;*.avi");
}

CheckOutcome CheckLibraries(Connection& db, const CheckSettings& settings, JobHost& host)
{
    CheckOutcome out;
    if (!confirmed(host, QStringLiteral("Begin to check all libraries in system?")))
        return out;
    out.ran = true;
    const QString doing = QStringLiteral("checking karaoke libraries");
    try {
        CheckReport report(CheckLibraryReport(settings.reportDir));
        out.report = report.path();
        report.openingBlock(QStringLiteral("             Check all libraries in system - "));
        const QStringList roots = libraryRoots(db);
        report.line(QStringLiteral("Check karaoke libraries :"));
        report.rule();
        if (roots.isEmpty()) {
            report.line(QStringLiteral("Warning : There isn't any karaoke library in the system!"));
        } else {
            host.StartProcess(QString(), QStringLiteral("Check karaoke libraries ..."), 0, roots.size(), true);
            for (qsizetype i = 0; i < roots.size(); ++i) {
                report.text(QStringLiteral("Library") + QString::number(i + 1) + QStringLiteral(" : ") + roots[i])
                    .nextZone();
                if (FileKind(NativePath(roots[i])) == u"p") {
                    report.line(QStringLiteral("- checked ok"));
                } else {
                    report.line(QStringLiteral("- can't find root path of the library"));
                    ++out.errors;
                }
                host.Processing(i + 1);
                if (JobStopWanted(host)) {
                    out.stopped = true;
                    report.close();
                    host.EndProcess();
                    return out;
                }
            }
        }
        report.line();
        report.close();
        if (out.errors > 0)
            show(settings, report.path());
        else
            host.Inform(QStringLiteral("There is no error in karaoke libraries."));
    } catch (const std::exception& e) {
        stopAfter(host, doing, e);
        out.stopped = true;
    }
    host.EndProcess();
    return out;
}

CheckOutcome CheckSongs(Connection& db, const CheckSettings& settings, JobHost& host)
{
    CheckOutcome out;
    if (!confirmed(host, QStringLiteral("Begin to check songs in Songbook?")))
        return out;
    out.ran = true;
    const QString doing = QStringLiteral("checking media files");
    try {
        CheckReport report(CheckSongReport(settings.reportDir));
        out.report = report.path();
        report.openingBlock(QStringLiteral("             Check songs in Songbook - "));
        std::unique_ptr<Recordset> rs;
        try {
            // The fields the check reads and writes; the rest of a song plays no part.
            rs = db.openRecordset(
                QStringLiteral("select id, [index], title, library, media_file, remark from song"));
        } catch (const std::exception&) {
            host.Fail(QStringLiteral("CheckSong failed!"));
            out.stopped = true;
            return out;
        }
        if (rs->RecordCount() > 0) {
            host.StartProcess(QString(), QStringLiteral("Check songs ..."), 0, rs->RecordCount(), true);
            report.line(QStringLiteral("Can't find media files of these songs :"));
            report.rule();
            report.text(QStringLiteral("index")).tab(20).text(QStringLiteral("title")).tab(40).line(
                QStringLiteral("media_file"));
            const int index = rs->FieldIndex(u"index");
            const int title = rs->FieldIndex(u"title");
            const int library = rs->FieldIndex(u"library");
            const int media = rs->FieldIndex(u"media_file");
            const int remark = rs->FieldIndex(u"remark");
            const QString missing = QStringLiteral("Error - media file missing");
            for (qsizetype r = 0; r < rs->RecordCount(); ++r) {
                try {
                    const bool stored = !rs->isNull(r, library) && !rs->isNull(r, media);
                    const QString path = NativePath(LinkFileByPath(rs->text(r, library), rs->text(r, media)));
                    if (!stored || FileKind(path) != u"f") {
                        ++out.errors;
                        report.text(rs->isNull(r, index) ? QString()
                                                          : CheckReport::printedNumber(rs->value(r, index).toLongLong()))
                            .tab(20)
                            .text(rs->text(r, title))
                            .tab(40)
                            .line(path);
                        rs->setAbsolutePosition(r + 1);
                        rs->Fields(remark).setValue(missing);
                        rs->Update();
                    }
                } catch (const std::exception& e) {
                    if (rs->editMode() != Recordset::EditMode::None)
                        rs->CancelUpdate();
                    if (stopAfter(host, doing, e)) {
                        out.stopped = true;
                        host.EndProcess();
                        return out;
                    }
                }
                host.Processing(r + 1);
                if (JobStopWanted(host)) {
                    out.stopped = true;
                    host.EndProcess();
                    return out;
                }
            }
        }
        rs->Close();
        report.line();
        report.close();
        if (out.errors > 0) {
            show(settings, report.path());
            host.Inform(QString::number(out.errors) + QStringLiteral(" song(s) in songbook missed media files.") +
                        kCrLf +
                        QStringLiteral("Their remark fields have be updated already, you can check them in songbook later"));
        } else {
            host.Inform(QStringLiteral("There isn't media files error in songbook."));
        }
    } catch (const std::exception& e) {
        stopAfter(host, doing, e);
        out.stopped = true;
    }
    host.EndProcess();
    return out;
}

QStringList SearchIsolatedMedias(Connection& db, const CheckSettings& settings, JobHost& host)
{
    return searchIsolated(db, settings, host).paths;
}

qint64 AddIsolatedMedias(Connection& db, const CheckSettings& settings, JobHost& host)
{
    const QStringList paths =
        isolatedToWorkOn(db, settings, host, QStringLiteral(" media files will be added to songbook, continue?"));
    if (paths.isEmpty())
        return 0;
    const QString doing = QStringLiteral("AddIsolatedMedias");
    qint64 added = 0;
    try {
        const QStringList roots = libraryRoots(db);
        // Opened only to add to: what it finds does not matter.
        auto rs = db.openRecordset(QStringLiteral("select * from Song where ID=1"));
        host.StartProcess(QString(), QStringLiteral("Add isolated media files ..."), 0, paths.size(), true);
        for (qsizetype i = 0; i < paths.size(); ++i) {
            try {
                if (const auto place = placeOf(roots, paths[i])) {
                    rs->AddNew();
                    rs->Fields(QStringLiteral("library")).setValue(place->library);
                    rs->Fields(QStringLiteral("media_file")).setValue(place->mediaFile);
                    rs->Fields(QStringLiteral("Title")).setValue(BaseNameOf(paths[i]));
                    rs->Fields(QStringLiteral("remark")).setValue(QStringLiteral("Add media at ") + nowText());
                    rs->Update();
                    ++added;
                }
            } catch (const std::exception& e) {
                if (rs->editMode() != Recordset::EditMode::None)
                    rs->CancelUpdate();
                if (stopAfter(host, doing, e))
                    break;
            }
            host.Processing(i + 1);
            if (JobStopWanted(host))
                break;
        }
        host.EndProcess();
        rs->Close();
    } catch (const std::exception& e) {
        stopAfter(host, doing, e);
        host.EndProcess();
    }
    host.Inform(QString::number(added) + QStringLiteral(" media file(s) added to songbook."));
    return added;
}

qint64 DeleteIsolatedMedias(Connection& db, const CheckSettings& settings, JobHost& host)
{
    const QStringList paths =
        isolatedToWorkOn(db, settings, host, QStringLiteral(" media files will be deleted from harddisk, continue?"));
    if (paths.isEmpty())
        return 0;
    qint64 deleted = 0;
    host.StartProcess(QString(), QStringLiteral("Delete isolated media files ..."), 0, paths.size(), true);
    for (qsizetype i = 0; i < paths.size(); ++i) {
        try {
            QFile file(paths[i]);
            file.setPermissions(file.permissions() | QFileDevice::WriteOwner);
            if (!file.remove())
                throw AppError(file.errorString());
            ++deleted;
        } catch (const std::exception& e) {
            if (stopAfter(host, QStringLiteral("DeleteIsolatedMedias"), e))
                break;
        }
        host.Processing(i + 1);
        if (JobStopWanted(host))
            break;
    }
    host.EndProcess();
    host.Inform(QString::number(deleted) + QStringLiteral(" media file(s) deleted from harddisk."));
    return deleted;
}

}  // namespace td
