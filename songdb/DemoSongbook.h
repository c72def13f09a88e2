#pragma once
#include <QString>

namespace td {

struct DemoOptions {
    int songs = 300;
    bool media = true;  // a library folder with real media files and singer photographs
    QString language = QStringLiteral("Chinese Simplified");
    // A postgresql:// address: the songbook goes to that database (made when missing) instead of
    // dir/song.db; the library and photographs still go to dir.
    QString database = {};
};

// Writes a demo installation into dir: song.db with generated songs (Chinese and English titles),
// singers, languages, styles, regions, grades and order counts; with media, a folder library/
// holding small real media files (made with ffmpeg when it is installed) that the songs point to,
// and JPEG photographs of the singers. The same songbooks serve the benchmarks. Throws AppError.
// Answers the path (or address) of the song database.
QString CreateDemoSongbook(const QString& dir, const DemoOptions& options);

// Makes a songbook on a server (its database made when missing) holding the songs, singers, regions
// and libraries of a songbook file. Throws AppError.
void CopySongbookToServer(const QString& file, const QString& address, const QString& language);

}  // namespace td
