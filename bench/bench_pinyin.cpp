// The pinyin search beside the initial-letter search of the same songbook and the same typed letters,
// in one process; and the one-off reading of every title, beside the console's opening of the songbook.
//   bench_pinyin DATA_DIR [SONGS...]    (default 1,000,000 songs)
#include "BenchSupport.h"
#include "shell/services/Dialogs.h"
#include "shell/services/HeadlessDialogs.h"
#include "songdb/Connection.h"
#include "songdb/SongReadings.h"
#include "songdb/SongSearch.h"
#include "songdb/SongSession.h"
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <functional>

using namespace td;

namespace {

double milliseconds(const std::function<void()>& work)
{
    QElapsedTimer t;
    t.start();
    work();
    return double(t.nsecsElapsed()) / 1e6;
}

// A copy of the shared songbook, so that its readings table stays out of the other benchmarks.
QString ownCopy(const QString& dataDir, int songs)
{
    const QString shared = bench::Songbook(dataDir, songs);
    const QString copy = QDir(dataDir).filePath(QStringLiteral("pinyin_%1.db").arg(songs));
    QFile::remove(copy);
    QFile::copy(shared, copy);
    return copy;
}

int run(const QString& dataDir, int songs)
{
    const QString tag = songs % 1000000 == 0 ? QStringLiteral("%1m").arg(songs / 1000000)
                                              : QStringLiteral("%1k").arg(songs / 1000);
    const QString file = ownCopy(dataDir, songs);

    // The one-off reading of every title, beside reading the whole songbook as the console opens it.
    const double open = milliseconds([&] { OpenConnection(file)->openRecordset(QStringLiteral("select * from song")); });
    const double build = milliseconds([&] { UpdateSongReadings(*OpenConnection(file)); });
    bench::Print(QStringLiteral("pinyin_build_") + tag + QStringLiteral("_ms"), build, "ms");
    bench::Print(QStringLiteral("songdb_open_") + tag + QStringLiteral("_ms"), open, "ms");
    bench::Print(QStringLiteral("pinyin_build_") + tag + QStringLiteral("_ratio"), build / open, "x");

    QTemporaryDir scratch;
    if (!bench::OpenSession(scratch, file))
        return 1;
    int status = 0;
    for (const char* typed : {"Z", "ZG", "ZGX"}) {
        const QString value = QString::fromLatin1(typed);
        int initialCount = 0, pinyinCount = 0;
        const auto search = [&](const QString& path, int& count) {
            TextArray names, keys;
            count = SongSearchTree(1000, path, value, names, keys);
            return count >= 0;
        };
        const double initial =
            bench::BestMilliseconds([&] { return search(QStringLiteral("title"), initialCount); });
        const double pinyin =
            bench::BestMilliseconds([&] { return search(QStringLiteral("pinyin"), pinyinCount); });
        if (initial < 0 || pinyin < 0)
            status = 1;
        const QString name = QStringLiteral("_search_") + value.toLower() + u'_' + tag;
        bench::Print(QStringLiteral("pinyin") + name + QStringLiteral("_ms"), pinyin, "ms");
        bench::Print(QStringLiteral("initials") + name + QStringLiteral("_ms"), initial, "ms");
        bench::Print(QStringLiteral("pinyin") + name + QStringLiteral("_items"), pinyinCount, "items");
        bench::Print(QStringLiteral("initials") + name + QStringLiteral("_items"), initialCount, "items");
        bench::Print(QStringLiteral("pinyin") + name + QStringLiteral("_ratio"), pinyin / initial, "x");
    }
    SongCloseDatabase();
    QFile::remove(file);
    return status;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_pinyin DATA_DIR [SONGS...]");
    if (args.isEmpty())
        return 2;
    HeadlessDialogs dialogs;
    SetDialogs(&dialogs);
    int status = 0;
    for (int songs : bench::SongCounts(args, 2, {1000000}))
        status |= run(args[1], songs);
    SetDialogs(nullptr);
    return status;
}
