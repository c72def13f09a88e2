#pragma once
// What the benchmark programs share: the generated songbooks, the figure lines, the application.
#include "shell/services/ConsoleJobHost.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "songdb/DemoSongbook.h"
#include "songdb/SongSession.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>

namespace bench {

// The generated songbooks of the console, shared by the benchmarks: made once into
// DATA_DIR/songbook_<songs>, without media files, and kept.
inline QString Songbook(const QString& dataDir, int songs)
{
    const QString dir = QDir(dataDir).filePath(QStringLiteral("songbook_%1").arg(songs));
    const QString file = QDir(dir).filePath(QStringLiteral("song.db"));
    if (!QFileInfo::exists(file)) {
        QDir(dir).removeRecursively();
        td::DemoOptions options;
        options.songs = songs;
        options.media = false;
        td::CreateDemoSongbook(dir, options);
    }
    return file;
}

// A job run to its end without a word: every OK/Cancel question answered OK, "stop?" answered No.
class GoOnHost : public td::ConsoleJobHost {
public:
    td::MsgAnswer Ask(const QString&, td::MsgButtons buttons, const QString& = {}) override
    {
        return buttons == td::MsgButtons::OkCancel ? td::MsgAnswer::Ok : td::MsgAnswer::No;
    }
    void Inform(const QString&, const QString& = {}) override {}
};

// One figure: "name value unit".
inline void Print(const char* name, double value, const char* unit)
{
    std::printf("%s %.3f %s\n", name, value, unit);
}
// The same, written out at once, so a long benchmark shows its figures as they come.
inline void Print(const QString& name, double value, const char* unit)
{
    Print(name.toUtf8().constData(), value, unit);
    std::fflush(stdout);
}

// The best wall time of a few runs of work, in milliseconds; -1 as soon as a run fails.
inline double BestMilliseconds(const std::function<bool()>& work, int runs = 3)
{
    double best = -1;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        if (!work())
            return -1;
        const double ms = double(t.nsecsElapsed()) / 1e6;
        best = best < 0 ? ms : std::min(best, ms);
    }
    return best;
}

// Opens the console's session on a songbook (a file or an address), with the program directory in
// scratch and its database_home.ini naming the songbook.
inline bool OpenSession(const QTemporaryDir& scratch, const QString& location)
{
    td::SetAppPath(scratch.path());
    QDir().mkpath(scratch.filePath(QStringLiteral("KtvPublic")));
    td::IniWrite(scratch.filePath(QStringLiteral("KtvPublic/database_home.ini")),
                 QStringLiteral("SongServer"), QStringLiteral("Local"), location);
    return td::SongOpenDatabase();
}

// The program's arguments when at least count are given (its own name counted); otherwise the usage
// line goes to stderr and the answer is empty.
inline QStringList ArgumentsOrUsage(const QCoreApplication& app, int count, const char* usage)
{
    const QStringList args = app.arguments();
    if (args.size() >= count)
        return args;
    std::fprintf(stderr, "usage: %s\n", usage);
    return {};
}

// Widgets run offscreen unless told otherwise; the platform's complaints about window size hints
// are silenced, the figures are what matters.
// The song counts given after the first count arguments, or the defaults when none is given.
inline QList<int> SongCounts(const QStringList& args, int skip, QList<int> defaults)
{
    QList<int> counts;
    for (const QString& a : args.mid(skip))
        counts << a.toInt();
    return counts.isEmpty() ? defaults : counts;
}

inline void PrepareApplication()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

}  // namespace bench
