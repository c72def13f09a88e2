#include "songbook/DetectChannels.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Translate.h"
#include "songdb/Connection.h"
#include <QDateTime>
#include <QFile>
#include <QLocale>

namespace td {
namespace {

struct SongRow {
    qint64 id;
    QString index, title, channel, path;
};

// The rows of the chosen songs, in id order; ids are read in bundles to keep each statement short.
QList<SongRow> readSongs(Connection& db, const QList<qint64>& ids)
{
    const QString select =
        QStringLiteral("select id, [index], title, channel, media_file, library from song");
    QStringList conditions;
    if (ids.isEmpty())
        conditions << QString();
    for (qsizetype at = 0; at < ids.size(); at += 500) {
        QStringList bundle;
        for (qint64 id : ids.mid(at, 500))
            bundle << QString::number(id);
        conditions << QStringLiteral(" where id in (") + bundle.join(u',') + u')';
    }
    QList<SongRow> rows;
    for (const QString& condition : conditions) {
        auto rs = db.openRecordset(select + condition + QStringLiteral(" order by id"));
        for (qsizetype r = 0; r < rs->RecordCount(); ++r)
            rows.push_back({rs->text(r, 0).toLongLong(), rs->text(r, 1), rs->text(r, 2), rs->text(r, 3).trimmed(),
                            NativePath(LinkFileByPath(rs->text(r, 5), rs->text(r, 4)))});
    }
    return rows;
}

// The report's text columns: a value that reaches past the next column goes on on the next line.
class ReportLine {
public:
    explicit ReportLine(QString& out) : out_(out) {}
    ReportLine& at(int column, const QString& text)
    {
        if (column_ > column) {
            out_ += u'\n';
            column_ = 1;
        }
        out_ += QString(column - column_, u' ') + text;
        column_ = column + int(text.size());
        return *this;
    }
    void end()
    {
        out_ += u'\n';
        column_ = 1;
    }

private:
    QString& out_;
    int column_ = 1;
};

QString reasonOf(const UndecidedSong& song)
{
    if (!song.verdict.reason.isEmpty() && song.verdict.leaning.isEmpty())
        return TranslateText(song.verdict.reason);
    return TranslateText(QStringLiteral("leans to")) + u' ' + song.verdict.leaning +
           QStringLiteral(" (%1)").arg(song.verdict.confidence, 0, 'f', 2);
}

}  // namespace

DetectChannelsResult DetectChannels(Connection& db, const DetectChannelsSettings& settings, JobHost& host,
                                    const ChannelAnalysis& analyse)
{
    DetectChannelsResult result;
    QList<SongRow> songs;
    try {
        songs = readSongs(db, settings.ids);
    } catch (const AppError& e) {
        host.Fail(TranslateText(QStringLiteral("Can't read songs to detect channels!")) + ErrSuffix(e));
        return result;
    }
    host.StartProcess(TranslateText(QStringLiteral("Detect channels")),
                      TranslateText(QStringLiteral("Listening to the songs...")), 0, songs.size(), true);
    for (const SongRow& song : songs) {
        if (JobStopWanted(host)) {
            result.canceled = true;
            break;
        }
        host.Processing(++result.songs);
        if (!song.channel.isEmpty() && !settings.redo) {
            ++result.kept;
            continue;
        }
        UndecidedSong entry{song.id, song.index, song.title, song.path, {}};
        if (FileKind(song.path) != u"f") {
            entry.verdict.reason = QStringLiteral("media file not found");
            result.undecided << entry;
            continue;
        }
        entry.verdict = analyse(song.path);
        ++result.analysed;
        if (entry.verdict.channel == u"unknown") {
            result.undecided << entry;
            continue;
        }
        if (entry.verdict.channel == song.channel)
            continue;
        try {
            db.execute(QStringLiteral("update song set channel='") + entry.verdict.channel +
                       QStringLiteral("' where id=") + QString::number(song.id));
            ++result.written;
        } catch (const AppError& e) {
            host.Fail(TranslateText(QStringLiteral("Can't save channel of song")) + u' ' + song.title +
                      ErrSuffix(e));
        }
    }
    host.EndProcess();
    return result;
}

bool WriteChannelReport(const QString& file, const DetectChannelsResult& result)
{
    const QString stars = QStringLiteral(" ") + QString(70, u'*');
    const QString rule(80, u'-');
    QString text;
    ReportLine line(text);
    line.at(10, stars).end();
    line.at(10, QStringLiteral("             ") + TranslateText(QStringLiteral("Vocal channel of songs")) +
                    QStringLiteral(" - ") +
                    QLocale::system().toString(QDateTime::currentDateTime(), QLocale::ShortFormat))
        .end();
    line.at(10, stars).end();
    line.end();
    line.at(1, TranslateText(QStringLiteral("Listen to these songs in the preview :"))).end();
    line.at(1, rule).end();
    line.at(1, QStringLiteral("index"))
        .at(12, QStringLiteral("title"))
        .at(40, QStringLiteral("reason"))
        .at(62, QStringLiteral("media_file"))
        .end();
    for (const UndecidedSong& song : result.undecided)
        line.at(1, u' ' + song.index + u' ').at(12, song.title).at(40, reasonOf(song)).at(62, song.path).end();
    line.end();
    QFile out(file);
    const QByteArray bytes = text.toLocal8Bit();
    return out.open(QIODevice::WriteOnly | QIODevice::Truncate) && out.write(bytes) == bytes.size();
}

QString ChannelReportFile()
{
    return AppPath() + QStringLiteral("/VocalChannel.log");
}

}  // namespace td
