#pragma once
// What the songbook import benchmarks share: the timed import into a new songbook and the program
// around their measurements.
#include "BenchSupport.h"
#include "exchange/SongbookImport.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <functional>

namespace bench {

struct TimedImport {
    double ms = 0;
    bool whole = false;  // every song came, and nothing failed
};

// Imports the source into a new, empty songbook in dataDir with the wizard's defaults, then removes it.
inline TimedImport ImportIntoNewSongbook(const QString& dataDir, const QString& source, qint64 songs)
{
    const QString target = QDir(dataDir).filePath(QStringLiteral("bookimport_target.db"));
    QFile::remove(target);
    td::CreateSongDatabase(target, QStringLiteral("English"));
    auto db = td::OpenConnection(target);
    td::SongbookImportSettings settings;
    settings.source = source;
    settings.indexClass = QStringLiteral("import");
    GoOnHost host;
    QElapsedTimer timer;
    timer.start();
    const td::SongbookImportResult result = td::ImportSongbook(*db, settings, host);
    TimedImport timed{double(timer.nsecsElapsed()) / 1e6, result.songs == songs && host.failures() == 0};
    db.reset();
    QFile::remove(target);
    return timed;
}

// The program of an import benchmark: "NAME DATA_DIR [SONGS...]", one measurement per song count
// (100,000 when none is given); exit 1 when one of them did not bring every song.
inline int RunImportBenchmark(int argc, char** argv, const char* name,
                              const std::function<bool(const QString& dataDir, int songs)>& measure)
{
    QCoreApplication app(argc, argv);
    const QStringList args =
        ArgumentsOrUsage(app, 2, (QByteArray(name) + " DATA_DIR [SONGS...]").constData());
    if (args.isEmpty())
        return 2;
    bool ok = true;
    for (int songs : SongCounts(args, 2, {100000}))
        ok = measure(args[1], songs) && ok;
    if (!ok)
        std::fprintf(stderr, "%s: the import did not bring every song\n", name);
    return ok ? 0 : 1;
}

}  // namespace bench
