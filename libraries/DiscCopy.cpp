#include "libraries/DiscCopy.h"
#include "shell/services/AppError.h"
#include "shell/services/FilePaths.h"
#include <QFile>
#include <QSaveFile>

namespace td {

QString DiscDirectoryOf(const QString& library, const QString& identity)
{
    return LinkFileByPath(library, identity);
}

bool CopyTrackFile(const QString& from, const QString& to, QString& error)
{
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly)) {
        error = source.errorString();
        return false;
    }
    // QSaveFile writes beside the target under a name of its own and renames at commit; a failure
    // removes what it wrote.
    QSaveFile target(to);
    if (!target.open(QIODevice::WriteOnly)) {
        error = target.errorString();
        return false;
    }
    constexpr qint64 chunk = 1 << 20;
    for (;;) {
        const QByteArray bytes = source.read(chunk);
        if (bytes.isEmpty()) {
            if (source.error() != QFileDevice::NoError || !source.atEnd()) {
                error = source.errorString();
                target.cancelWriting();
                return false;
            }
            break;
        }
        if (target.write(bytes) != bytes.size()) {
            error = target.errorString();
            target.cancelWriting();
            return false;
        }
    }
    if (!target.commit()) {
        error = target.errorString();
        return false;
    }
    return true;
}

DiscCopyReport CopyDiscTracks(const QString& directory, const TextArray& tracks, JobHost& host,
                              const DiscCopyEvents& events)
{
    DiscCopyReport report;
    const int count = UBound(tracks);
    try {
        for (int i = 1; i <= count; ++i) {
            if (host.StopRequested())
                return report;
            if (events.step)
                events.step(i, count);
            const QString target = LinkFileByPath(directory, FileNameOf(tracks[i]));
            QString error;
            if (FileKind(target).isEmpty() && !CopyTrackFile(tracks[i], target, error)) {
                host.Fail(QStringLiteral("Copy media files from disc to Songbook failed !") +
                          ErrSuffix(error));
                return report;
            }
            if (events.copied)
                events.copied(target);
            report.done = i;
        }
        report.complete = true;
        host.Inform(QString::number(count) + QStringLiteral(" song(s) copied into Song Library."));
    } catch (const std::exception& e) {
        host.Fail(QStringLiteral("Copy file from disc to Song Library failed. ") + ErrSuffix(e));
    }
    return report;
}

}  // namespace td
