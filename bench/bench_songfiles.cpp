// The library update's song information files on generated songbooks of 10,000 and 100,000 songs, every
// media file present (empty) in one folder: the first pass writes every file, the second reads and
// rewrites each. Usage: bench_songfiles DATA_DIR [SONGS...]
#include "BenchSupport.h"
#include "libraries/LibrarySongFiles.h"
#include "shell/services/ConsoleJobHost.h"
#include "songdb/Connection.h"
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>

using namespace td;

namespace {

// Every question answered OK, nothing printed: the figures are what matters.
class QuietHost : public ConsoleJobHost {
public:
    MsgAnswer Ask(const QString&, MsgButtons, const QString& = {}) override { return MsgAnswer::Ok; }
    void Inform(const QString&, const QString& = {}) override {}
};

QString libraryOf(Connection& db)
{
    return db.openRecordset(QStringLiteral("select root_path from library"))->Fields(0).Text();
}

void makeMedia(Connection& db, const QString& root)
{
    auto rs = db.openRecordset(QStringLiteral("select media_file from song"));
    for (qsizetype r = 0; r < rs->RecordCount(); ++r) {
        const QString path = root + rs->text(r, 0);
        QDir().mkpath(path.section(u'/', 0, -2));
        QFile(path).open(QIODevice::WriteOnly);
    }
}

// The same bytes the update wrote, each file written again by a plain open, write and close: what
// writing that many small files costs on this disk at the least.
double plainWrites(const QString& root)
{
    QList<QPair<QString, QByteArray>> files;
    QDirIterator it(root, {QStringLiteral("*.son")}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile f(it.next());
        if (f.open(QIODevice::ReadOnly))
            files.append({f.fileName(), f.readAll()});
    }
    for (const auto& [path, bytes] : files)
        QFile::remove(path);
    QElapsedTimer timer;
    timer.start();
    for (const auto& [path, bytes] : files) {
        QFile f(path);
        if (f.open(QIODevice::WriteOnly))
            f.write(bytes);
    }
    return double(timer.nsecsElapsed()) / 1e6;
}

bool measure(const QString& dataDir, int songs)
{
    auto db = OpenConnection(bench::Songbook(dataDir, songs));
    const QString root = libraryOf(*db);
    QDir(root).removeRecursively();
    makeMedia(*db, root);
    bool ok = true;
    double firstMs = 0;
    for (const char* pass : {"first", "rewrite"}) {
        QuietHost host;
        QElapsedTimer timer;
        timer.start();
        const LibraryUpdate done = UpdateLibrary(*db, root, host);
        const double ms = double(timer.nsecsElapsed()) / 1e6;
        ok = ok && done.completed && done.updated == songs && host.failures() == 0;
        const QByteArray name =
            QStringLiteral("songfiles_%1_%2").arg(songs).arg(QLatin1String(pass)).toUtf8();
        bench::Print((name + "_ms").constData(), ms, "ms");
        bench::Print((name + "_per_song_us").constData(), ms * 1000.0 / songs, "us");
        if (firstMs == 0)
            firstMs = ms;
    }
    const double plainMs = plainWrites(root);
    const QByteArray name = QStringLiteral("songfiles_%1").arg(songs).toUtf8();
    bench::Print((name + "_plain_writes_ms").constData(), plainMs, "ms");
    bench::Print((name + "_ratio").constData(), firstMs / plainMs, "x");
    QDir(root).removeRecursively();
    return ok;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_songfiles DATA_DIR [SONGS...]");
    if (args.isEmpty())
        return 2;
    bool ok = true;
    for (int songs : bench::SongCounts(args, 2, {10000, 100000}))
        ok = measure(args[1], songs) && ok;
    if (!ok)
        std::fprintf(stderr, "bench_songfiles: an update did not write every song\n");
    return ok ? 0 : 1;
}
