// Song database benchmarks on generated songbooks, each beside the sqlite3 command-line tool doing
// the same work on the same file. Prints "name value unit" lines.
//   bench_songdb DATA_DIR            all figures (makes the songbooks once, under DATA_DIR)
//   bench_songdb open|search FILE    one measurement in a fresh process: milliseconds and peak MB
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "songdb/Connection.h"
#include "songdb/DemoSongbook.h"
#include "songdb/SongSearch.h"
#include "songdb/SongSession.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

using namespace td;

namespace {

constexpr int kRuns = 3;

double peakMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    return 0;
}

class NoDialogs : public DialogSeam {
public:
    MsgAnswer message(const QString& text, MsgButtons, MsgIcon, const QString&) override
    {
        std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
        return MsgAnswer::No;
    }
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { return {}; }
    QStringList openFiles(const OpenFileRequest&) override { return {}; }
    QString saveFile(const OpenFileRequest&) override { return {}; }
    QString pickFolder(const QString&, const QString&) override { return {}; }
};

int measureOpen(const QString& file)
{
    QElapsedTimer t;
    t.start();
    auto db = OpenConnection(file);
    auto rs = db->openRecordset(QStringLiteral("select * from song"));
    const qsizetype count = rs->RecordCount();
    std::printf("%.1f %.1f %lld\n", double(t.nsecsElapsed()) / 1e6, peakMegabytes(),
                static_cast<long long>(count));
    return 0;
}

int measureSearch(const QString& file)
{
    QTemporaryDir scratch;
    SetAppPath(scratch.path());
    QDir().mkpath(scratch.filePath(QStringLiteral("KtvPublic")));
    IniWrite(scratch.filePath(QStringLiteral("KtvPublic/database_home.ini")), QStringLiteral("SongServer"),
             QStringLiteral("Local"), file);
    NoDialogs dialogs;
    SetDialogs(&dialogs);
    if (!SongOpenDatabase())
        return 1;
    QElapsedTimer t;
    t.start();
    TextArray names, keys;
    const int count = SongSearchTree(1000, QStringLiteral("title"), QStringLiteral("ZG"), names, keys);
    std::printf("%.1f %.1f %d\n", double(t.nsecsElapsed()) / 1e6, peakMegabytes(), count);
    SongCloseDatabase();
    SetDialogs(nullptr);
    return count < 0 ? 1 : 0;
}

// Best of a few runs of a child process; fields of its first output line.
QStringList bestRun(const QString& program, const QStringList& args)
{
    QStringList best;
    for (int i = 0; i < kRuns; ++i) {
        QProcess p;
        p.start(program, args);
        p.waitForFinished(-1);
        const QStringList fields = QString::fromUtf8(p.readAllStandardOutput()).trimmed().split(u' ');
        if (p.exitCode() != 0 || fields.size() < 2)
            return {};
        if (best.isEmpty() || fields[0].toDouble() < best[0].toDouble())
            best = fields;
    }
    return best;
}

// Wall time of the sqlite3 tool with its output thrown away, best of a few runs.
double sqliteMilliseconds(const QString& file, const QString& sql)
{
    double best = -1;
    for (int i = 0; i < kRuns; ++i) {
        QProcess p;
        p.setStandardOutputFile(QProcess::nullDevice());
        QElapsedTimer t;
        t.start();
        p.start(QStringLiteral("sqlite3"), {file, sql});
        p.waitForFinished(-1);
        const double ms = double(t.nsecsElapsed()) / 1e6;
        if (p.exitCode() != 0)
            return -1;
        best = best < 0 ? ms : std::min(best, ms);
    }
    return best;
}

void line(const QString& name, double value, const char* unit)
{
    std::printf("%s %.2f %s\n", name.toUtf8().constData(), value, unit);
    std::fflush(stdout);
}

// Our time, the tool's time and their ratio.
void report(const QString& ours, double oursMs, const QString& theirs, double theirsMs)
{
    line(ours + QStringLiteral("_ms"), oursMs, "ms");
    line(theirs + QStringLiteral("_ms"), theirsMs, "ms");
    line(ours + QStringLiteral("_ratio"), oursMs / theirsMs, "x");
}

QString songbook(const QString& dataDir, int songs)
{
    const QString dir = QDir(dataDir).filePath(QStringLiteral("songbook_%1").arg(songs));
    const QString file = QDir(dir).filePath(QStringLiteral("song.db"));
    if (!QFileInfo::exists(file)) {
        QDir(dir).removeRecursively();
        DemoOptions options;
        options.songs = songs;
        options.media = false;
        CreateDemoSongbook(dir, options);
    }
    return file;
}

int runAll(const QString& dataDir)
{
    const QString self = QCoreApplication::applicationFilePath();
    int status = 0;
    for (const auto& [songs, label] : {std::pair{100000, "100k"}, std::pair{1000000, "1m"}}) {
        const QString file = songbook(dataDir, songs);
        const QString tag = QString::fromLatin1(label);

        const QStringList open = bestRun(self, {QStringLiteral("open"), file});
        const double sqlSelect = sqliteMilliseconds(file, QStringLiteral("select * from song"));
        if (open.isEmpty() || sqlSelect < 0)
            return 1;
        report(QStringLiteral("songdb_open_") + tag, open[0].toDouble(),
               QStringLiteral("sqlite3_select_") + tag, sqlSelect);
        line(QStringLiteral("songdb_open_") + tag + QStringLiteral("_peak_mb"), open[1].toDouble(), "MB");

        const QStringList search = bestRun(self, {QStringLiteral("search"), file});
        const double sqlLike =
            sqliteMilliseconds(file, QStringLiteral("select * from song where title like '%中%'"));
        if (search.isEmpty() || sqlLike < 0)
            return 1;
        report(QStringLiteral("songdb_search_zg_") + tag, search[0].toDouble(),
               QStringLiteral("sqlite3_like_") + tag, sqlLike);
        line(QStringLiteral("songdb_search_zg_") + tag + QStringLiteral("_items"), search.value(2).toDouble(),
             "items");
    }
    return status;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.size() == 2 && args[0] == u"open")
        return measureOpen(args[1]);
    if (args.size() == 2 && args[0] == u"search")
        return measureSearch(args[1]);
    if (args.size() == 1)
        return runAll(args[0]);
    std::fprintf(stderr, "usage: bench_songdb DATA_DIR | open FILE | search FILE\n");
    return 2;
}
