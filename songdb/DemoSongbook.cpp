#include "songdb/DemoSongbook.h"
#include "shell/services/AppError.h"
#include "songdb/Connection.h"
#include "songdb/DemoMedia.h"
#include "songdb/PostgresBackend.h"
#include "songdb/Schema.h"
#include "songdb/SqliteBackend.h"
#include "songdb/SqliteStatement.h"
#include <QDir>
#include <QFile>
#include <QStringList>
#include <random>

namespace td {

namespace {

const QString kHanzi = QString::fromUtf8(
    "爱安把白半北本边冰不才唱长车城春从大带到的地第东冬动都对多儿发飞风歌给故光国过哈海好和河红后花话欢回火"
    "家见江今金九酒开看快来蓝老乐泪离里恋亮林流龙路梦美门米明你年鸟女朋平期起千情秋去让人日如三山上少深生声诗"
    "十时世是手水说思四送他天听同晚万往忘为我无舞西喜夏想小笑心新星行雪烟眼阳夜一依音英雨月云在再早张真只中重"
    "祝追走最昨左做");
const char* const kWords[] = {"Love", "Night", "Dream",   "Heart", "Star", "Rain",   "Dance",
                              "Fire", "Sky",   "Road",    "Home",  "Blue", "Summer", "Moon",
                              "Time", "Light", "Forever", "River", "Song", "Wind"};
// Titles an operator knows, first in the demo, so that typing their initials ("ZGX", "JSQ") finds them.
const char* const kKnownTitles[] = {"中国心", "今生情",   "月亮代表我的心", "甜蜜蜜",   "小城故事",
                                    "朋友",   "童年",     "大海",           "同桌的你", "光辉岁月"};
const char* const kLanguages[] = {"Mandarin", "Cantonese", "English", "Japanese", "Korean", ""};
const char* const kStyles[] = {"Pop", "Rock", "Folk", "Ballad", "Dance", "Jazz"};
// Named as the region folders the console ships; Hong Kong has none and the demo does not offer it.
const char* const kRegions[] = {"Chinese(PRC)", "Chinese(Taiwan)", "Chinese(HongKong)"};
const char* const kSingerTypes[] = {"male", "female", "band", "mix"};

class Generator {
public:
    explicit Generator(int songs) : rng_(20240601u), singers_(std::max(10, songs / 20)) {}

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }

    QString chineseText(int minLen, int maxLen)
    {
        QString t;
        for (int i = minLen + pick(maxLen - minLen + 1); i > 0; --i)
            t += kHanzi[pick(int(kHanzi.size()))];
        return t;
    }
    QString englishTitle()
    {
        QStringList w;
        for (int i = 1 + pick(3); i > 0; --i)
            w << QString::fromLatin1(kWords[pick(20)]);
        return w.join(u' ');
    }
    QString title() { return pick(3) < 2 ? chineseText(2, 6) : englishTitle(); }
    QString singerName(int i) const
    {
        // Stable per number, so songs and singer rows agree.
        if (i % 3 == 2)
            return QString::fromLatin1(kWords[i % 20]) + QStringLiteral(" Band ") + QString::number(i);
        QString n;
        for (int k = 0, v = i * 7919 + 13; k < 3; ++k, v /= int(kHanzi.size()))
            n += kHanzi[v % kHanzi.size()];
        return n + QString::number(i);
    }
    int singerCount() const { return singers_; }

private:
    std::mt19937 rng_;
    int singers_;
};

void insertSongs(sqlite3* db, Generator& g, int songs, const QString& library, const QStringList& mediaFiles)
{
    SqliteStatement st(
        db, QStringLiteral("INSERT INTO song (\"index\", title, chars, singer, language, style, grade, "
                           "channel, order_time, region, "
                           "media_file, library, lupd_by, lupd_time) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    for (int i = 0; i < songs; ++i) {
        QString title = g.title();  // drawn for every song, so the songs after the known ones stay as they were
        int region = g.pick(4);
        if (i < int(std::size(kKnownTitles))) {
            title = QString::fromUtf8(kKnownTitles[i]);
            region = 0;  // listed in the demo's regions
        }
        const QVariant values[] = {1000 + i,
                                   title,
                                   title.size(),
                                   g.singerName(g.pick(g.singerCount())),
                                   QString::fromLatin1(kLanguages[g.pick(6)]),
                                   QString::fromLatin1(kStyles[g.pick(6)]),
                                   g.pick(4),
                                   g.pick(2) ? QStringLiteral("L") : QStringLiteral("R"),
                                   g.pick(3) ? g.pick(500) : 0,
                                   region < 3 ? QVariant(QString::fromLatin1(kRegions[region])) : QVariant(),
                                   mediaFiles.isEmpty()
                                       ? QStringLiteral("/Pop/%1.mpg").arg(i, 6, 10, QLatin1Char('0'))
                                       : mediaFiles[i % mediaFiles.size()],
                                   library,
                                   QStringLiteral("demo"),
                                   QStringLiteral("2024-06-01 12:00:00")};
        for (int k = 0; k < 14; ++k)
            st.bind(k + 1, values[k]);
        st.step();
        st.reset();
    }
}

void insertSingers(sqlite3* db, Generator& g, const QString& photoDir)
{
    SqliteStatement st(
        db,
        QStringLiteral(
            "INSERT INTO singer (name, type, region, image, image_len, description) VALUES (?,?,?,?,?,?)"));
    for (int i = 0; i < g.singerCount(); ++i) {
        const QByteArray photo = photoDir.isEmpty() || i >= 200 ? QByteArray() : DemoPhoto(i);
        st.bind(1, g.singerName(i));
        st.bind(2, QString::fromLatin1(kSingerTypes[i % 4]));
        st.bind(3, QString::fromLatin1(kRegions[i % 3]));
        st.bind(4, photo.isEmpty() ? QVariant() : QVariant(photo));
        st.bind(5, photo.size());
        st.bind(6, QStringLiteral("Demo singer"));
        st.step();
        st.reset();
    }
}

void execAll(Connection& db, const QStringList& statements)
{
    for (const QString& s : statements)
        db.execute(s);
}

}  // namespace

QString CreateDemoSongbook(const QString& dir, const DemoOptions& options)
{
    if (options.songs < 0)
        throw AppError(QStringLiteral("The number of songs must not be negative."));
    if (!QDir().mkpath(dir))
        throw AppError(QStringLiteral("Cannot create folder ") + dir);
    const QString path = QDir(dir).filePath(QStringLiteral("song.db"));
    const QString library = QDir(dir).filePath(QStringLiteral("library"));
    CreateSongDatabase(path, options.language);
    QStringList mediaFiles;
    if (options.media)
        mediaFiles = CreateDemoMedia(library, std::min(options.songs, 2000));

    auto db = OpenConnection(path);
    auto* sqlite = dynamic_cast<SqliteBackend*>(&db->backend());
    Generator g(options.songs);
    db->execute(QStringLiteral("begin"));
    insertSongs(sqlite->handle(), g, options.songs, library, mediaFiles);
    insertSingers(sqlite->handle(), g, options.media ? library : QString());
    execAll(*db, {QStringLiteral("insert into region (name) values ('Chinese(PRC)')"),
                  QStringLiteral("insert into region (name) values ('Chinese(Taiwan)')"),
                  QStringLiteral("insert into region (name) values ('English')"),
                  QStringLiteral("insert into library (root_path, shared_as, name, remark) values ('") +
                      library + QStringLiteral("', '\\library', 'Demo library', 'generated')"),
                  QStringLiteral("commit")});
    if (options.database.isEmpty())
        return path;
    // The server's songbook is the same demo, copied over and the file removed.
    db.reset();
    CopySongbookToServer(path, options.database, options.language);
    QFile::remove(path);
    return options.database;
}

void CopySongbookToServer(const QString& file, const QString& address, const QString& language)
{
    auto db = OpenConnection(file);  // a read-only one would leave the file's journal behind
    CreateSongDatabase(address, language);
    auto server = OpenConnection(address);
    auto& pg = static_cast<PostgresBackend&>(server->backend());
    for (const char* table : {"song", "singer", "region", "library"})
        pg.copyRows(QString::fromLatin1(table),
                    *db->backend().query(QStringLiteral("SELECT * FROM ") + QString::fromLatin1(table), false,
                                         nullptr));
}

}  // namespace td
