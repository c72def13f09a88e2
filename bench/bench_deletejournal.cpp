// Deleting a whole songbook with and without the delete journal, on copies of one generated songbook:
// row by row through a recordset (the songbook window's Delete on "Select all") and by one statement
// (an import that replaces the songbook). Prints "name value unit" lines.
//   bench_deletejournal DATA_DIR [SONGS...]   (default 100000 songs)
#include "BenchSupport.h"
#include "shell/services/AppPaths.h"
#include "songdb/Connection.h"
#include "songdb/DeleteJournal.h"
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>

using namespace td;

namespace {

constexpr int kRuns = 3;

// Milliseconds to delete every song of a fresh copy of the songbook.
double deleteAll(const QString& songbook, const QString& copy, bool journal, bool rowByRow)
{
    QFile::remove(copy);
    QFile::copy(songbook, copy);
    auto db = OpenConnection(copy);
    if (!journal)
        db->backend().deleteJournalReady = true;  // as before the journal: nothing made, nothing kept
    QElapsedTimer t;
    t.start();
    if (rowByRow) {
        DeleteBatch batch;
        auto rs = db->openRecordset(QStringLiteral("select * from song"));
        for (rs->MoveLast(); rs->RecordCount() > 0; rs->MoveLast())
            rs->Delete();
    } else {
        db->execute(QStringLiteral("delete * from song"));
    }
    const double ms = double(t.nsecsElapsed()) / 1e6;
    const qint64 left = db->openRecordset(QStringLiteral("select count(*) from song"))->value(0, 0).toLongLong();
    if (left != 0)
        std::fprintf(stderr, "%lld songs left\n", static_cast<long long>(left));
    return ms;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_deletejournal DATA_DIR [SONGS...]");
    if (args.isEmpty())
        return 2;
    QTemporaryDir work;
    SetAppPath(work.path());  // the event log of the runs goes there
    for (const int songs : bench::SongCounts(args, 2, {100000})) {
        const QString songbook = bench::Songbook(args[1], songs);
        const QString copy = QDir(work.path()).filePath(QStringLiteral("song.db"));
        for (const bool rowByRow : {true, false}) {
            // Turn about, the best of each: the disk's other work shows less.
            double before = 1e300, after = 1e300;
            for (int run = 0; run < kRuns; ++run) {
                before = std::min(before, deleteAll(songbook, copy, false, rowByRow));
                after = std::min(after, deleteAll(songbook, copy, true, rowByRow));
            }
            const QByteArray name = QByteArray(rowByRow ? "delete_rows" : "delete_statement") + '_' +
                                    QByteArray::number(songs);
            bench::Print((name + "_plain_ms").constData(), before, "ms");
            bench::Print((name + "_kept_ms").constData(), after, "ms");
            bench::Print((QByteArray(rowByRow ? "delete_rows" : "delete_statement") + "_ratio").constData(),
                         after / before, "x");
        }
    }
    return 0;
}
