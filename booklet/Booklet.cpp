#include "booklet/Booklet.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"
#include "songdb/Connection.h"
#include <QFile>
#include <algorithm>

namespace td {

QString BookletStatement(const QString& region)
{
    const QString select = QStringLiteral("select [index], title, singer, language, chars from song where ");
    if (region.isEmpty())
        return select + QStringLiteral("region in (select name from region) or region is null");
    return select + QStringLiteral("region = '") + QString(region).replace(u'\'', QStringLiteral("''")) +
           u'\'';
}

QList<BookletSong> ReadBookletSongs(Connection& db, const QString& region)
{
    auto rs = db.openRecordset(BookletStatement(region));
    QList<BookletSong> songs;
    songs.reserve(rs->RecordCount());
    for (qsizetype r = 0; r < rs->RecordCount(); ++r)
        songs.append({rs->value(r, 0).toLongLong(), rs->text(r, 1), rs->text(r, 2), rs->text(r, 3),
                      rs->value(r, 4).toInt()});
    return songs;
}

QList<BookletSection> ReadBookletSections(Connection& db, const BookletOptions& options, JobHost& host)
{
    host.StartProcess(QString(), QStringLiteral("Reading songs ..."), 0, 2, false);
    const QList<BookletSong> songs = ReadBookletSongs(db, options.region);
    host.Processing(1);
    QList<BookletSection> sections = GroupBookletSongs(songs, options.group);
    host.Processing(2);
    host.EndProcess();
    return sections;
}

BookletOutcome MakeBookletPdf(Connection& db, const BookletOptions& options, const QString& pdf,
                              JobHost& host)
{
    BookletOutcome out;
    const auto cantWrite = [&] { host.Fail(QStringLiteral("Can't write file - <") + pdf + u'>'); };
    if (QFile target(pdf); !target.open(QIODevice::WriteOnly)) {
        cantWrite();
        return out;
    }
    const QList<BookletSection> sections = ReadBookletSections(db, options, host);
    for (const BookletSection& s : sections)
        out.songs += s.songs.size();
    bool started = false;
    bool stopped = false;
    out.written = WriteBookletPdf(pdf, options, sections, [&](int page, int pages) {
        if (!started) {
            host.StartProcess(QString(), QStringLiteral("Writing the booklet ..."), 0, pages, true);
            started = true;
        }
        host.Processing(page);
        stopped = JobStopWanted(host);
        out.pages = page;
        return !stopped;
    });
    if (started)
        host.EndProcess();
    if (!out.written) {
        QFile::remove(pdf);
        if (!stopped)
            cantWrite();
    }
    return out;
}

BookletOptions LoadBookletOptions()
{
    BookletOptions o;
    BookletGroupFromName(AppIniRead(QStringLiteral("BookletGroup"), BookletGroupName(o.group)), o.group);
    o.columns = int(std::clamp<qint64>(
        IntegerValue(AppIniRead(QStringLiteral("BookletColumns"), QStringLiteral("3"))), 2, 4));
    o.paper = AppIniRead(QStringLiteral("BookletPaper"), o.paper)
                          .compare(QStringLiteral("Letter"), Qt::CaseInsensitive) == 0
                  ? QStringLiteral("Letter")
                  : QStringLiteral("A4");
    o.region = AppIniRead(QStringLiteral("BookletRegion"), QString());
    o.venue = AppIniRead(QStringLiteral("BookletVenue"), QString());
    return o;
}

void SaveBookletOptions(const BookletOptions& o)
{
    AppIniWrite(QStringLiteral("BookletGroup"), BookletGroupName(o.group));
    AppIniWrite(QStringLiteral("BookletColumns"), QString::number(o.columns));
    AppIniWrite(QStringLiteral("BookletPaper"), o.paper);
    AppIniWrite(QStringLiteral("BookletRegion"), o.region);
    AppIniWrite(QStringLiteral("BookletVenue"), o.venue);
}

}  // namespace td
