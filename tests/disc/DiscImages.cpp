#include "DiscImages.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace td::test {

bool CanMakeImages()
{
    return !QStandardPaths::findExecutable(QStringLiteral("xorriso")).isEmpty();
}

QString MakeDiscImage(const QString& folder, const QList<Track>& files, const QString& volumeId,
                      const QString& image)
{
    QDir().mkpath(folder);
    for (const Track& t : files) {
        const QString path = folder + u'/' + t.first;
        QDir().mkpath(QFileInfo(path).path());
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(t.second) != t.second.size())
            return {};
    }
    QProcess p;
    p.start(QStringLiteral("xorriso"),
            {QStringLiteral("-as"), QStringLiteral("mkisofs"), QStringLiteral("-quiet"), QStringLiteral("-V"),
             volumeId, QStringLiteral("--modification-date=2026112312000000"),
             QStringLiteral("--set_all_file_dates"), QStringLiteral("2026112312000000"), QStringLiteral("-o"),
             image, folder});
    if (!p.waitForFinished(30000) || p.exitCode() != 0)
        return {};
    return image;
}

}  // namespace td::test
