// The song booklet of a generated songbook of 100,000 songs as a PDF, beside the song list workbook
// (.xlsx) of the same songs in the same run. Usage: bench_booklet DATA_DIR [SONGS...]
#include "BenchSupport.h"
#include "booklet/Booklet.h"
#include "checks/SongListPrint.h"
#include "songdb/Connection.h"
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>

using namespace td;

namespace {

double msSince(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

// The workbook of the printing wizard with the fields a booklet prints.
double workbookMs(Connection& db, const QString& dataDir, qint64& rows)
{
    SongListRequest request;
    request.choice.fields = {QStringLiteral("index"), QStringLiteral("title"), QStringLiteral("singer"),
                             QStringLiteral("language"), QStringLiteral("chars")};
    request.captions = request.choice.fields;
    request.templateFile = QDir(dataDir).filePath(QStringLiteral("PrintTemplate.ini"));
    QFile(request.templateFile).open(QIODevice::WriteOnly);
    request.workbook = QDir(dataDir).filePath(QStringLiteral("BookletSongs.xlsx"));
    request.keepRows = false;
    ConsoleJobHost host;
    host.setAnswer(QStringLiteral("An error take place"), MsgAnswer::No);
    host.setAnswer({}, MsgAnswer::Yes);  // print so many songs
    QElapsedTimer timer;
    timer.start();
    const SongList list = MakeSongList(db, request, host);
    rows = list.written ? list.songs : -1;
    return msSince(timer);
}

bool measure(const QString& dataDir, int songs)
{
    // A copy of the shared songbook in which every region is available, so that the booklet lists every
    // song, as the workbook does.
    const QString file = QDir(dataDir).filePath(QStringLiteral("booklet_%1.db").arg(songs));
    QFile::remove(file);
    QFile::copy(bench::Songbook(dataDir, songs), file);
    auto db = OpenConnection(file);
    db->execute(
        QStringLiteral("insert into region (name) select distinct region from song where region is not null "
                       "and region not in (select name from region)"));
    qint64 rows = 0;
    workbookMs(*db, dataDir, rows);  // the file in the cache for both
    const double xlsxMs = workbookMs(*db, dataDir, rows);

    bench::GoOnHost host;
    BookletOptions options;
    options.region = QString();
    options.venue = QStringLiteral("Bench KTV");
    const QString pdf = QDir(dataDir).filePath(QStringLiteral("booklet.pdf"));
    QElapsedTimer timer;
    timer.start();
    const QList<BookletSection> sections = ReadBookletSections(*db, options, host);
    const double groupMs = msSince(timer);
    const bool written = WriteBookletPdf(pdf, options, sections);
    const double bookletMs = msSince(timer);
    qint64 listed = 0;
    for (const BookletSection& s : sections)
        listed += s.songs.size();

    const QByteArray name = QStringLiteral("booklet_%1").arg(songs).toUtf8();
    bench::Print((name + "_xlsx_ms").constData(), xlsxMs, "ms");
    bench::Print((name + "_read_group_ms").constData(), groupMs, "ms");
    bench::Print((name + "_ms").constData(), bookletMs, "ms");
    bench::Print((name + "_pdf_mb").constData(), double(QFileInfo(pdf).size()) / 1e6, "MB");
    bench::Print("booklet_vs_xlsx_ratio", bookletMs / xlsxMs, "x");
    return written && rows == songs && listed == songs;
}

}  // namespace

int main(int argc, char** argv)
{
    bench::PrepareApplication();
    QGuiApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_booklet DATA_DIR [SONGS...]");
    if (args.isEmpty())
        return 2;
    bool ok = true;
    for (int songs : bench::SongCounts(args, 2, {100000}))
        ok = measure(args[1], songs) && ok;
    if (!ok)
        std::fprintf(stderr, "bench_booklet: the booklet or the workbook did not cover every song\n");
    return ok ? 0 : 1;
}
