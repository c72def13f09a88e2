#include "songdb/DemoMedia.h"
#include "shell/services/AppError.h"
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
#include <unistd.h>

namespace td {

namespace {

// Three seconds of tone, and of a test picture with tone, as tiny as ffmpeg makes them.
bool makeClip(const QString& ffmpeg, const QString& file, bool video)
{
    QStringList args{QStringLiteral("-y"), QStringLiteral("-loglevel"), QStringLiteral("error")};
    if (video)
        args << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
             << QStringLiteral("testsrc=duration=3:size=160x120:rate=25");
    args << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
         << QStringLiteral("sine=frequency=440:duration=3") << QStringLiteral("-ac") << QStringLiteral("2")
         << QStringLiteral("-b:a") << QStringLiteral("64k");
    if (video)
        args << QStringLiteral("-b:v") << QStringLiteral("64k") << QStringLiteral("-shortest");
    args << file;
    QProcess p;
    p.start(ffmpeg, args);
    return p.waitForFinished(60000) && p.exitCode() == 0 && QFile::exists(file);
}

// Without ffmpeg the files are still there to be found, just not playable.
void makePlaceholder(const QString& file)
{
    QFile f(file);
    if (f.open(QIODevice::WriteOnly))
        f.write(QByteArray(1024, '\0'));
}

}  // namespace

QStringList CreateDemoMedia(const QString& root, int count)
{
    const QString clips = QDir(root).filePath(QStringLiteral(".clips"));
    if (!QDir().mkpath(clips) || !QDir().mkpath(QDir(root).filePath(QStringLiteral("Pop"))))
        throw AppError(QStringLiteral("Cannot create folder ") + root);
    const QString ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    const QString sources[] = {QDir(clips).filePath(QStringLiteral("clip.vob")),
                               QDir(clips).filePath(QStringLiteral("clip.mp3"))};
    for (int i = 0; i < 2; ++i)
        if (ffmpeg.isEmpty() || !makeClip(ffmpeg, sources[i], i == 0))
            makePlaceholder(sources[i]);

    QStringList files;
    for (int i = 0; i < count; ++i) {
        const QString relative = QStringLiteral("/Pop/%1%2")
                                     .arg(i, 6, 10, QLatin1Char('0'))
                                     .arg(i % 2 ? QStringLiteral(".mp3") : QStringLiteral(".vob"));
        const QString target = root + relative;
        const QByteArray from = QFile::encodeName(sources[i % 2]);
        if (::link(from.constData(), QFile::encodeName(target).constData()) != 0 &&
            !QFile::copy(sources[i % 2], target))
            throw AppError(QStringLiteral("Cannot write ") + target);
        files << relative;
    }
    return files;
}

QByteArray DemoPhoto(int number)
{
    QImage image(96, 128, QImage::Format_RGB32);
    const QColor base = QColor::fromHsv((number * 47) % 360, 120, 220);
    image.fill(base);
    QPainter p(&image);
    p.setPen(Qt::NoPen);
    p.setBrush(base.darker(160));
    p.drawEllipse(28, 20, 40, 48);              // head
    p.drawRoundedRect(16, 76, 64, 60, 20, 20);  // shoulders
    p.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG", 80);
    return bytes;
}

}  // namespace td
