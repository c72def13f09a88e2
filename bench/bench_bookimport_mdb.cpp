// The songbook import of a legacy Access songbook of 100,000 songs (Access 97, GBK titles) into an empty
// songbook, beside mdb-export of mdbtools writing the same table as text.
// Usage: bench_bookimport_mdb DATA_DIR [SONGS...]
#include "BookImportBench.h"
#include "LegacySongbook.h"
#include "songdb/Recordset.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

using namespace td;

namespace {

// The legacy songbook of that many songs, written once into DATA_DIR and kept.
QString legacySongbook(const QString& dataDir, int songs)
{
    const QString file = QDir(dataDir).filePath(QStringLiteral("ktv_%1.mdb").arg(songs));
    if (!QFileInfo::exists(file)) {
        QDir().mkpath(dataDir);
        QString error;
        if (!test::WriteLegacySongbook(file, test::JetFileOptions{3, 936, 0, QString()}, songs, &error)) {
            std::fprintf(stderr, "bench_bookimport_mdb: %s\n", qPrintable(error));
            return {};
        }
    }
    return file;
}

// Milliseconds for mdb-export to write the song table to a file; -1 when it fails.
double exportMs(const QString& source, const QString& csv)
{
    QProcess p;
    p.setStandardOutputFile(csv);
    QElapsedTimer timer;
    timer.start();
    p.start(QStringLiteral("mdb-export"), {source, QStringLiteral("song")});
    if (!p.waitForFinished(-1) || p.exitCode() != 0) {
        std::fprintf(stderr, "mdb-export: %s\n", p.readAllStandardError().constData());
        return -1;
    }
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    QFile::remove(csv);
    return ms;
}

bool measure(const QString& dataDir, int songs)
{
    const QString source = legacySongbook(dataDir, songs);
    if (source.isEmpty())
        return false;
    const double mdbExportMs = exportMs(source, QDir(dataDir).filePath(QStringLiteral("bookimport_mdb.csv")));
    if (mdbExportMs <= 0)
        return false;

    // The reading alone: the file opened and its song table read whole, as the import does first.
    QElapsedTimer readTimer;
    readTimer.start();
    const qsizetype read = OpenAccessDatabase(source, kSongDatabasePassword, {})
                               ->openRecordset(QStringLiteral("select * from song"))
                               ->RecordCount();
    const double readMs = double(readTimer.nsecsElapsed()) / 1e6;

    const bench::TimedImport import = bench::ImportIntoNewSongbook(dataDir, source, songs);
    const double importMs = import.ms;

    const QByteArray name = QStringLiteral("bookimport_mdb_%1").arg(songs).toUtf8();
    bench::Print((name + "_mdb_export_ms").constData(), mdbExportMs, "ms");
    bench::Print((name + "_read_ms").constData(), readMs, "ms");
    bench::Print((name + "_ms").constData(), importMs, "ms");
    bench::Print((name + "_per_song_us").constData(), importMs * 1000.0 / songs, "us");
    bench::Print("bookimport_mdb_ratio", importMs / mdbExportMs, "x");
    return read == songs && import.whole;
}

}  // namespace

int main(int argc, char** argv)
{
    return bench::RunImportBenchmark(argc, argv, "bench_bookimport_mdb", measure);
}
