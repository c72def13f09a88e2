// The library import of a generated library of 100,000 song information files (written once by the
// library update, every media file present and empty) into an empty songbook, beside reading the same
// files raw, as cat would. Usage: bench_libimport DATA_DIR [SONGS...]
#include "BenchSupport.h"
#include "exchange/LibraryImport.h"
#include "libraries/FileFinder.h"
#include "libraries/LibrarySongFiles.h"
#include "shell/services/ConsoleJobHost.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

using namespace td;

namespace {

// Writes the library's song files once; later runs find them in place.
QString prepareLibrary(const QString& dataDir, int songs)
{
    auto db = OpenConnection(bench::Songbook(dataDir, songs));
    const QString root = db->openRecordset(QStringLiteral("select root_path from library"))->Fields(0).Text();
    const QString done = root + QStringLiteral("/.bench_libimport_ready");
    if (QFile::exists(done))
        return root;
    QDir(root).removeRecursively();
    auto rs = db->openRecordset(QStringLiteral("select media_file from song"));
    for (qsizetype r = 0; r < rs->RecordCount(); ++r) {
        const QString path = root + rs->text(r, 0);
        QDir().mkpath(path.section(u'/', 0, -2));
        QFile(path).open(QIODevice::WriteOnly);
    }
    bench::GoOnHost host;
    if (!UpdateLibrary(*db, root, host).completed)
        return {};
    QFile(done).open(QIODevice::WriteOnly);
    return root;
}

double rawReadMs(const QString& root, qint64& files)
{
    QElapsedTimer timer;
    timer.start();
    TextArray names;
    int attributes = ATTR_READONLY | ATTR_HIDDEN;
    FindFiles(root, QStringLiteral("*.son"), -1, names, attributes);
    qint64 bytes = 0;
    for (int i = 1; i <= UBound(names); ++i) {
        QFile f(names[i]);
        if (f.open(QIODevice::ReadOnly))
            bytes += f.readAll().size();
    }
    files = UBound(names);
    return bytes > 0 ? double(timer.nsecsElapsed()) / 1e6 : 0;
}

bool measure(const QString& dataDir, int songs)
{
    const QString root = prepareLibrary(dataDir, songs);
    if (root.isEmpty())
        return false;
    qint64 files = 0;
    rawReadMs(root, files);  // the files in the page cache for both
    const double rawMs = rawReadMs(root, files);

    const QString target = QDir(dataDir).filePath(QStringLiteral("libimport_target.db"));
    QFile::remove(target);
    CreateSongDatabase(target, QStringLiteral("English"));
    auto db = OpenConnection(target);
    LibraryImportSettings settings;
    settings.library = root;
    settings.regions = {QStringLiteral("Chinese(PRC)"), QStringLiteral("Chinese(Taiwan)"),
                        QStringLiteral("Chinese(HongKong)"), QString()};
    settings.indexClass = QStringLiteral("import");
    settings.checkIndex = false;
    bench::GoOnHost host;
    QElapsedTimer timer;
    timer.start();
    const LibraryImportResult result = ImportLibrary(*db, settings, host);
    const double importMs = double(timer.nsecsElapsed()) / 1e6;
    db.reset();
    QFile::remove(target);

    const QByteArray name = QStringLiteral("libimport_%1").arg(songs).toUtf8();
    bench::Print((name + "_raw_ms").constData(), rawMs, "ms");
    bench::Print((name + "_ms").constData(), importMs, "ms");
    bench::Print((name + "_per_song_us").constData(), importMs * 1000.0 / songs, "us");
    bench::Print("libimport_ratio", importMs / rawMs, "x");
    return result.files == files && result.added > 0 && host.failures() == 0;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_libimport DATA_DIR [SONGS...]");
    if (args.isEmpty())
        return 2;
    bool ok = true;
    for (int songs : bench::SongCounts(args, 2, {100000}))
        ok = measure(args[1], songs) && ok;
    if (!ok)
        std::fprintf(stderr, "bench_libimport: the import did not read every file\n");
    return ok ? 0 : 1;
}
