// The songbook check and the song list workbook on a generated songbook of 100,000 songs whose media
// files all exist: CheckSongs beside a plain stat of the same paths, and SongList.xlsx beside sqlite3
// -csv of the same select. Usage: bench_check DATA_DIR [SONGS...]
#include "BenchSupport.h"
#include "checks/SongListPrint.h"
#include "checks/SongbookCheck.h"
#include "shell/services/ConsoleJobHost.h"
#include "shell/services/FilePaths.h"
#include "songdb/Connection.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <sys/stat.h>

using namespace td;

namespace {

// Every question answered yes, nothing printed: the figures are what matters.
class QuietHost : public ConsoleJobHost {
public:
    MsgAnswer Ask(const QString&, MsgButtons, const QString& = {}) override { return MsgAnswer::Yes; }
    void Inform(const QString&, const QString& = {}) override {}
};

// The full paths of the songs' media files, each made (empty) when it is not there yet.
QList<QByteArray> mediaPaths(Connection& db)
{
    auto rs = db.openRecordset(QStringLiteral("select library, media_file from song"));
    QList<QByteArray> paths;
    for (qsizetype r = 0; r < rs->RecordCount(); ++r) {
        const QString path = NativePath(LinkFileByPath(rs->text(r, 0), rs->text(r, 1)));
        if (!QFile::exists(path)) {
            QDir().mkpath(path.section(u'/', 0, -2));
            QFile(path).open(QIODevice::WriteOnly);
        }
        paths << QFile::encodeName(path);
    }
    return paths;
}

double statMs(const QList<QByteArray>& paths, qint64& found)
{
    QElapsedTimer timer;
    timer.start();
    found = 0;
    struct stat st {};
    for (const QByteArray& p : paths)
        if (::stat(p.constData(), &st) == 0 && S_ISREG(st.st_mode))
            ++found;
    return double(timer.nsecsElapsed()) / 1e6;
}

bool measureCheck(const QString& dataDir, int songs)
{
    const QString file = bench::Songbook(dataDir, songs);
    auto db = OpenConnection(file);
    const QList<QByteArray> paths = mediaPaths(*db);
    qint64 found = 0;
    statMs(paths, found);  // the directories in the cache for both
    const double rawMs = statMs(paths, found);
    const QString reports = QDir(dataDir).filePath(QStringLiteral("check_reports"));
    QDir().mkpath(reports);
    QuietHost host;
    QElapsedTimer timer;
    timer.start();
    const CheckOutcome out = CheckSongs(*db, CheckSettings{reports, {}}, host);
    const double checkMs = double(timer.nsecsElapsed()) / 1e6;
    const QByteArray name = QStringLiteral("checksongs_%1").arg(songs).toUtf8();
    bench::Print((name + "_stat_ms").constData(), rawMs, "ms");
    bench::Print((name + "_ms").constData(), checkMs, "ms");
    bench::Print("checksongs_ratio", checkMs / rawMs, "x");
    return found == paths.size() && out.errors == 0 && host.failures() == 0;
}

bool measureWorkbook(const QString& dataDir, int songs)
{
    const QString file = bench::Songbook(dataDir, songs);
    const QString csvSelect = QStringLiteral("select \"index\", title, singer, language, chars from song");
    const auto csvMs = [&] {
        QElapsedTimer timer;
        timer.start();
        QProcess sqlite;
        sqlite.setStandardOutputFile(QStringLiteral("/dev/null"));
        sqlite.start(QStringLiteral("sqlite3"), {QStringLiteral("-csv"), file, csvSelect});
        sqlite.waitForFinished(-1);
        return sqlite.exitCode() == 0 ? double(timer.nsecsElapsed()) / 1e6 : -1.0;
    };
    csvMs();
    const double rawMs = csvMs();

    auto db = OpenConnection(file);
    SongListRequest request;
    request.choice.fields = {QStringLiteral("index"), QStringLiteral("title"), QStringLiteral("singer"),
                             QStringLiteral("language"), QStringLiteral("chars")};
    request.captions = request.choice.fields;
    request.templateFile = QDir(dataDir).filePath(QStringLiteral("PrintTemplate.ini"));
    QFile(request.templateFile).open(QIODevice::WriteOnly);
    request.workbook = QDir(dataDir).filePath(QStringLiteral("SongList.xlsx"));
    request.keepRows = false;
    QuietHost host;
    QElapsedTimer timer;
    timer.start();
    const SongList list = MakeSongList(*db, request, host);
    const double xlsxMs = double(timer.nsecsElapsed()) / 1e6;
    const QByteArray name = QStringLiteral("songlist_xlsx_%1").arg(songs).toUtf8();
    bench::Print((name + "_csv_ms").constData(), rawMs, "ms");
    bench::Print((name + "_ms").constData(), xlsxMs, "ms");
    bench::Print("songlist_xlsx_ratio", xlsxMs / rawMs, "x");
    return rawMs > 0 && list.written && list.songs == songs;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_check DATA_DIR [SONGS...]");
    if (args.isEmpty())
        return 2;
    bool ok = true;
    for (int songs : bench::SongCounts(args, 2, {100000})) {
        ok = measureCheck(args[1], songs) && ok;
        ok = measureWorkbook(args[1], songs) && ok;
    }
    if (!ok)
        std::fprintf(stderr, "bench_check: a check or the workbook did not cover every song\n");
    return ok ? 0 : 1;
}
