#pragma once
// What the benchmark programs share: the generated songbooks, the figure lines, the application.
#include "songdb/DemoSongbook.h"
#include <QApplication>
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

// One figure: "name value unit".
inline void Print(const char* name, double value, const char* unit)
{
    std::printf("%s %.3f %s\n", name, value, unit);
}

// Widgets run offscreen unless told otherwise; the platform's complaints about window size hints
// are silenced, the figures are what matters.
inline void PrepareApplication()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

}  // namespace bench
