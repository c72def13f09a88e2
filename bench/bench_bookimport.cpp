// The songbook import of a generated songbook of 100,000 songs (a song database as its source) into an
// empty songbook, beside the sqlite3 program copying the same table: ".dump song" piped into a new file.
// Usage: bench_bookimport DATA_DIR [SONGS...]
#include "BookImportBench.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

using namespace td;

namespace {

// Milliseconds for sqlite3 to dump the table and load it into a new file; -1 when it fails.
double dumpCopyMs(const QString& source, const QString& copy)
{
    QFile::remove(copy);
    // The song table's text columns sort in GB2312 order; the program learns it from an extension.
    const QString command = QStringLiteral("sqlite3 '%1' '.dump song' | sqlite3 -bail -cmd '.load %2' '%3'")
                                .arg(source, QStringLiteral(TUNEDESK_GB2312_EXTENSION), copy);
    QProcess p;
    QElapsedTimer timer;
    timer.start();
    p.start(QStringLiteral("bash"), {QStringLiteral("-o"), QStringLiteral("pipefail"), QStringLiteral("-c"), command});
    if (!p.waitForFinished(-1) || p.exitCode() != 0) {
        std::fprintf(stderr, "sqlite3: %s\n", p.readAllStandardError().constData());
        return -1;
    }
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    QFile::remove(copy);
    return ms;
}

bool measure(const QString& dataDir, int songs)
{
    const QString source = bench::Songbook(dataDir, songs);
    const double sqliteMs = dumpCopyMs(source, QDir(dataDir).filePath(QStringLiteral("bookimport_dump.db")));
    if (sqliteMs <= 0)
        return false;

    const bench::TimedImport import = bench::ImportIntoNewSongbook(dataDir, source, songs);
    const double importMs = import.ms;

    const QByteArray name = QStringLiteral("bookimport_%1").arg(songs).toUtf8();
    bench::Print((name + "_sqlite3_dump_ms").constData(), sqliteMs, "ms");
    bench::Print((name + "_ms").constData(), importMs, "ms");
    bench::Print((name + "_per_song_us").constData(), importMs * 1000.0 / songs, "us");
    bench::Print("bookimport_ratio", importMs / sqliteMs, "x");
    return import.whole;
}

}  // namespace

int main(int argc, char** argv)
{
    return bench::RunImportBenchmark(argc, argv, "bench_bookimport", measure);
}
