// FindFiles over a library of 100,000 files in 1,000 folders, timed beside `find DIR -type f | wc -l`
// on the same tree in the same run. Usage: bench_findfiles [tree directory]
#include "libraries/FileFinder.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

constexpr int kTopFolders = 100;
constexpr int kSubFolders = 9;  // under each top folder: 100 + 900 folders in all
constexpr int kFilesPerFolder = 100;
constexpr int kRuns = 5;

void WriteFolder(const QString& dir)
{
    QDir().mkpath(dir);
    for (int i = 0; i < kFilesPerFolder; ++i) {
        const QString name = QStringLiteral("%1 Song %2.%3")
                                 .arg(i % 2 ? QStringLiteral("B") : QStringLiteral("a"))
                                 .arg(i, 5, 10, QLatin1Char('0'))
                                 .arg(i % 3 ? QStringLiteral("mpg") : QStringLiteral("DAT"));
        QFile(dir + u'/' + name).open(QIODevice::WriteOnly);
    }
}

// Built once and kept: a complete tree carries a marker file written last.
void EnsureTree(const QString& root)
{
    const QString marker = root + QStringLiteral("/.complete");
    if (QFile::exists(marker))
        return;
    QDir(root).removeRecursively();
    for (int t = 0; t < kTopFolders; ++t) {
        const QString top = root + QStringLiteral("/Top%1").arg(t, 3, 10, QLatin1Char('0'));
        WriteFolder(top);
        for (int s = 0; s < kSubFolders; ++s)
            WriteFolder(top + QStringLiteral("/sub%1").arg(s));
    }
    QFile(marker).open(QIODevice::WriteOnly);
}

// The best of several runs, in milliseconds; the first, unmeasured run warms the cache.
double BestMs(const std::function<qsizetype()>& run, qsizetype& count)
{
    count = run();
    double best = 1e300;
    for (int i = 0; i < kRuns; ++i) {
        QElapsedTimer timer;
        timer.start();
        count = run();
        best = std::min(best, timer.nsecsElapsed() / 1e6);
    }
    return best;
}

qsizetype RunFindFiles(const QString& root)
{
    td::TextArray names;
    int attributes = 33;
    td::FindFiles(root, QStringLiteral("*.*"), -1, names, attributes);
    return td::UBound(names);
}

qsizetype RunFind(const QString& root)
{
    QProcess shell;
    shell.start(QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("find \"$0\" -type f | wc -l"), root});
    shell.waitForFinished(-1);
    return shell.readAllStandardOutput().trimmed().toLongLong();
}

}  // namespace

int main(int argc, char** argv)
{
    QString root = argc > 1 ? QString::fromLocal8Bit(argv[1])
                            : QDir::tempPath() + QStringLiteral("/tunedesk-bench-findfiles");
    EnsureTree(root);
    // Both walks start from the real folder, so a link to the tree is measured like the tree.
    root = QFileInfo(root).canonicalFilePath();

    qsizetype found = 0, counted = 0;
    const double findFilesMs = BestMs([&] { return RunFindFiles(root); }, found);
    const double findMs = BestMs([&] { return RunFind(root); }, counted);
    // find also counts the marker file, which FindFiles leaves out as hidden.
    if (found != counted - 1)
        std::fprintf(stderr, "bench_findfiles: FindFiles found %lld files, find %lld\n", (long long)found,
                     (long long)counted);

    std::printf("findfiles_files %lld files\n", (long long)found);
    std::printf("findfiles_time %.1f ms\n", findFilesMs);
    std::printf("find_wc_time %.1f ms\n", findMs);
    std::printf("findfiles_ratio %.2f x\n", findFilesMs / findMs);
    return found == counted - 1 ? 0 : 1;
}
