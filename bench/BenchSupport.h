#pragma once
// What the benchmark programs share: the generated songbooks, the figure lines, the application.
#include "shell/services/ConsoleJobHost.h"
#include "songdb/DemoSongbook.h"
#include <QApplication>
#include <QStringList>
#include <QDir>
#include <QFileInfo>
#include <cstdio>

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
