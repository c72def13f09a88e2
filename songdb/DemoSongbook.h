#pragma once
#include <QString>

namespace td {

struct DemoOptions {
    int songs = 300;
    bool media = true;  // a library folder with real media files and singer photographs
    QString language = QStringLiteral("Chinese Simplified");
};

// Writes a demo installation into dir: song.db with generated songs (Chinese and English titles),
// singers, languages, styles, regions, grades and order counts; with media, a folder library/
// holding small real media files (made with ffmpeg when it is installed) that the songs point to,
// and JPEG photographs of the singers. The same songbooks serve the benchmarks. Throws AppError.
// Answers the path of the song database.
QString CreateDemoSongbook(const QString& dir, const DemoOptions& options);

}  // namespace td
