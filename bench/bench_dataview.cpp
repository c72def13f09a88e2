// The data view over generated songbooks. Usage: bench_dataview DATA_DIR load|fill [SONGBOOK.db]
//   load: LoadViewData of every song at 100,000 and 1,000,000 rows with the recordset open, and
//         RefreshViewData of the unchanged 1,000,000-row list.
//   fill: the whole "open recordset + fill the list" path at 1,000,000 rows beside the sqlite3
//         command-line dump of the same table, and the peak memory of this process.
// Without SONGBOOK.db the songbooks are generated once into DATA_DIR and kept.
#include "controls/ctlDataView.h"
#include "songdb/Connection.h"
#include "shell/services/AppPaths.h"
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <cstdio>
#include <functional>
#include <random>
#include <sqlite3.h>
#include <sys/resource.h>

namespace {

const char* kFormat =
    "[View]\nMultiSelect=1\n"
    "[ColPosition]\nCol_index=0\nCol_title=0\nCol_singer=0\nCol_language=0\nCol_style=0\nCol_order_time=0\n"
    "[Col_index]\nCaption=Number\nWidth=900\n[Col_title]\nCaption=Title\nWidth=3000\n"
    "[Col_singer]\nCaption=Singer\n[Col_language]\nCaption=Language\n[Col_style]\nCaption=Style\n"
    "[Col_order_time]\nCaption=Ordered\n";

QString ChineseTitle(std::mt19937& rng)
{
    static const QString chars = QStringLiteral("爱你我的心情月亮代表天空海阔光辉岁月朋友一生不变红豆后来十年梦醒时分小城故事甜蜜传奇");
    QString t;
    const int n = 2 + int(rng() % 7);
    for (int i = 0; i < n; ++i)
        t += chars[qsizetype(rng() % chars.size())];
    return t;
}

QString EnglishTitle(std::mt19937& rng)
{
    static const char* words[] = {"Love", "Night", "Heart", "Dream", "Forever", "Moon", "Rain", "Golden", "Road", "Home"};
    QString t;
    const int n = 1 + int(rng() % 4);
    for (int i = 0; i < n; ++i)
        t += (i ? QStringLiteral(" ") : QString()) + QLatin1String(words[rng() % 10]);
    return t;
}

void Check(int rc, sqlite3* db)
{
    if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW) {
        std::fprintf(stderr, "sqlite: %s\n", sqlite3_errmsg(db));
        std::exit(2);
    }
}

// A songbook with the song table of the console, written once and kept beside the other bench data.
QString EnsureSongbook(const QString& dir, int songs)
{
    const QString file = dir + QStringLiteral("/songbook-%1.db").arg(songs);
    if (QFile::exists(file))
        return file;
    QDir().mkpath(dir);
    const QString partial = file + QStringLiteral(".part");
    QFile::remove(partial);
    sqlite3* db = nullptr;
    Check(sqlite3_open(partial.toUtf8().constData(), &db), db);
    Check(sqlite3_exec(db,
                       "create table song (id integer primary key autoincrement, [index] integer, title text, "
                       "chars integer, singer text, language text, style text, grade integer, channel text, "
                       "order_time integer, region text, media_file text, library text, lupd_by text, "
                       "lupd_time datetime, remark text); begin;",
                       nullptr, nullptr, nullptr),
          db);
    sqlite3_stmt* insert = nullptr;
    Check(sqlite3_prepare_v2(db,
                             "insert into song ([index], title, chars, singer, language, style, grade, channel, "
                             "order_time, region, media_file, library, lupd_by, lupd_time) "
                             "values (?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
                             -1, &insert, nullptr),
          db);
    std::mt19937 rng(4);
    const char* languages[] = {"Mandarin", "Cantonese", "English", "Japanese"};
    const char* styles[] = {"Pop", "Rock", "Folk", "Duet"};
    for (int i = 1; i <= songs; ++i) {
        const bool chinese = rng() % 3 != 0;
        const QByteArray title = (chinese ? ChineseTitle(rng) : EnglishTitle(rng)).toUtf8();
        const QByteArray singer = (chinese ? ChineseTitle(rng).left(3) : EnglishTitle(rng)).toUtf8();
        const QByteArray media = QStringLiteral("/Pop/%1.mpg").arg(i, 7, 10, QLatin1Char('0')).toUtf8();
        sqlite3_bind_int(insert, 1, i);
        sqlite3_bind_text(insert, 2, title.constData(), int(title.size()), SQLITE_TRANSIENT);
        sqlite3_bind_int(insert, 3, int(QString::fromUtf8(title).size()));
        sqlite3_bind_text(insert, 4, singer.constData(), int(singer.size()), SQLITE_TRANSIENT);
        sqlite3_bind_text(insert, 5, languages[rng() % 4], -1, SQLITE_STATIC);
        sqlite3_bind_text(insert, 6, styles[rng() % 4], -1, SQLITE_STATIC);
        sqlite3_bind_int(insert, 7, int(rng() % 10));
        sqlite3_bind_text(insert, 8, "s", -1, SQLITE_STATIC);
        sqlite3_bind_int(insert, 9, int(rng() % 5000));
        sqlite3_bind_null(insert, 10);
        sqlite3_bind_text(insert, 11, media.constData(), int(media.size()), SQLITE_TRANSIENT);
        sqlite3_bind_text(insert, 12, "/srv/ktv/lib1", -1, SQLITE_STATIC);
        sqlite3_bind_text(insert, 13, "bench", -1, SQLITE_STATIC);
        sqlite3_bind_text(insert, 14, "2024-05-01 12:00:00", -1, SQLITE_STATIC);
        Check(sqlite3_step(insert), db);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    Check(sqlite3_exec(db, "commit;", nullptr, nullptr, nullptr), db);
    sqlite3_close(db);
    QFile::rename(partial, file);
    return file;
}

double PeakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

void Print(const char* name, double value, const char* unit) { std::printf("%s %.3f %s\n", name, value, unit); }

struct Window {
    explicit Window(const QString& format)
    {
        view.setIniFile(format);
        view.LoadViewFormat();
        view.resize(900, 600);
        view.show();
    }
    td::ctlDataView view;
};

double Seconds(const std::function<void()>& work)
{
    QElapsedTimer t;
    t.start();
    work();
    return double(t.nsecsElapsed()) / 1e9;
}

void RunLoad(const QString& format, const QString& small, const QString& big)
{
    for (const auto& [file, name] : {std::pair{small, "dataview_load_100k"}, std::pair{big, "dataview_load_1m"}}) {
        auto connection = td::OpenConnection(file);
        auto rs = connection->openRecordset(QStringLiteral("select * from song"));
        Window w(format);
        w.view.mrsMain = rs.get();
        Print(name, Seconds([&] { w.view.LoadViewData(); }), "s");
        if (file == big) {
            Print("dataview_rows_memory_1m", double(w.view.model()->rows().memoryUsed()) / 1048576.0, "MB");
            Print("recordset_memory_1m", double(rs->memoryUsed()) / 1048576.0, "MB");
            Print("recordset_requery_1m", Seconds([&] { rs->Requery(); }), "s");
            Print("dataview_refresh_1m_unchanged", Seconds([&] { w.view.RefreshViewData(); }), "s");
        }
        w.view.setIniFile(QString());
    }
    Print("dataview_load_peak_memory", PeakMegabytes(), "MB");
}

void RunFill(const QString& format, const QString& big)
{
    QProcess dump;
    dump.setStandardOutputFile(QProcess::nullDevice());
    const double sqliteSeconds = Seconds([&] {
        dump.start(QStringLiteral("sqlite3"), {big, QStringLiteral("select * from song")});
        dump.waitForFinished(-1);
    });
    std::unique_ptr<td::Connection> connection;
    std::unique_ptr<td::Recordset> rs;
    Window w(format);
    const double fillSeconds = Seconds([&] {
        connection = td::OpenConnection(big);
        rs = connection->openRecordset(QStringLiteral("select * from song"));
        w.view.mrsMain = rs.get();
        w.view.LoadViewData();
    });
    Print("dataview_open_fill_1m", fillSeconds, "s");
    Print("sqlite3_dump_1m", sqliteSeconds, "s");
    Print("dataview_open_fill_vs_sqlite3", fillSeconds / sqliteSeconds, "x");
    Print("dataview_open_fill_peak_memory", PeakMegabytes(), "MB");
    w.view.setIniFile(QString());
}

}  // namespace

int main(int argc, char** argv)
{
    // The offscreen platform complains about window size hints; the figures are what matters here.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 3) {
        std::fprintf(stderr, "usage: bench_dataview DATA_DIR load|fill [SONGBOOK.db]\n");
        return 2;
    }
    const QString dir = args[1];
    QDir().mkpath(dir);
    td::SetAppPath(dir);
    const QString format = dir + QStringLiteral("/ListBench.ini");
    QFile f(format);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(kFormat);
    f.close();
    const QString big = args.size() > 3 ? args[3] : EnsureSongbook(dir, 1000000);
    if (args[2] == u"fill") {
        RunFill(format, big);
    } else {
        RunLoad(format, EnsureSongbook(dir, 100000), big);
    }
    return 0;
}
