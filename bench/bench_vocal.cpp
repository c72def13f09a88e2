// The vocal channel detection on a generated set of karaoke tracks (made once into DATA_DIR/vocal_set):
// the voice on the left or on the right, from 24 dB under the band to as loud as the band, the band
// up to 1 dB louder or softer on the side without the voice, a third of the files as MP3. Prints how
// many were found right, wrong and left undecided, and the analysis time per song beside the time of
// reading the same files whole. Usage: bench_vocal DATA_DIR [FILES]
#include "BenchSupport.h"
#include "songbook/VocalChannel.h"
#include "songdb/DemoVoice.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

using namespace td;

namespace {

struct Track {
    QString path;
    QString channel;
};

DemoVoiceOptions trackOptions(int i)
{
    DemoVoiceOptions o;
    o.place = i % 2 ? VoicePlace::Right : VoicePlace::Left;
    o.voiceDb = -24.0 + 2.0 * ((i / 2) % 13);
    o.bandGainDb = 0.5 * ((i / 26) % 5 - 2);
    o.seed = unsigned(i + 1);
    o.seconds = 45;
    o.rate = 22050;
    return o;
}

QList<Track> prepareSet(const QString& dataDir, int count)
{
    const QDir dir(QDir(dataDir).filePath(QStringLiteral("vocal_set")));
    QDir().mkpath(dir.path());
    const QString ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    QList<Track> tracks;
    for (int i = 0; i < count; ++i) {
        const DemoVoiceOptions o = trackOptions(i);
        const QString wav = dir.filePath(QStringLiteral("track%1.wav").arg(i));
        const bool mp3 = i % 3 == 2 && !ffmpeg.isEmpty();
        const QString path = mp3 ? dir.filePath(QStringLiteral("track%1.mp3").arg(i)) : wav;
        if (!QFile::exists(path)) {
            WriteDemoVoiceWav(wav, o);
            if (mp3) {
                QProcess::execute(ffmpeg, {QStringLiteral("-loglevel"), QStringLiteral("error"), QStringLiteral("-y"),
                                           QStringLiteral("-i"), wav, QStringLiteral("-b:a"),
                                           QStringLiteral("128k"), path});
                QFile::remove(wav);
            }
        }
        tracks.push_back({path, o.place == VoicePlace::Left ? QStringLiteral("L") : QStringLiteral("R")});
    }
    return tracks;
}

double readWholeMs(const QList<Track>& tracks)
{
    QElapsedTimer timer;
    timer.start();
    qint64 bytes = 0;
    for (const Track& t : tracks) {
        QFile f(t.path);
        if (f.open(QIODevice::ReadOnly))
            bytes += f.readAll().size();
    }
    return bytes > 0 ? double(timer.nsecsElapsed()) / 1e6 : 0.0;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_vocal DATA_DIR [FILES]");
    if (args.isEmpty())
        return 2;
    const int count = args.size() > 2 ? args[2].toInt() : 200;
    const QList<Track> tracks = prepareSet(args[1], count);
    const bool trace = qEnvironmentVariableIsSet("TUNEDESK_VOCAL_TRACE");
    readWholeMs(tracks);  // the files in the page cache for both
    const double readMs = readWholeMs(tracks);
    int right = 0, wrong = 0, undecided = 0;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < tracks.size(); ++i) {
        const ChannelVerdict verdict = DetectVocalChannel(tracks[i].path);
        if (verdict.channel == tracks[i].channel)
            ++right;
        else if (verdict.channel == u"unknown")
            ++undecided;
        else
            ++wrong;
        if (trace)
            std::fprintf(stderr, "%d %s voice %.0f dB band %+.1f dB -> %s %.2f %s\n", i,
                         qPrintable(tracks[i].channel), trackOptions(i).voiceDb, trackOptions(i).bandGainDb,
                         qPrintable(verdict.channel), verdict.confidence, qPrintable(verdict.leaning));
    }
    const double ms = double(timer.nsecsElapsed()) / 1e6 / std::max<qsizetype>(1, tracks.size());
    bench::Print("vocal_songs", double(tracks.size()), "songs");
    bench::Print("vocal_right", right, "songs");
    bench::Print("vocal_wrong", wrong, "songs");
    bench::Print("vocal_undecided", undecided, "songs");
    bench::Print("vocal_ms_per_song", ms, "ms");
    bench::Print("vocal_read_whole_ms_per_song", readMs / std::max<qsizetype>(1, tracks.size()), "ms");
    return 0;
}
