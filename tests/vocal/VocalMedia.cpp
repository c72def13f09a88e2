#include "VocalMedia.h"
#include "songdb/DemoVoice.h"
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QStandardPaths>

namespace td::test {
namespace {

DemoVoiceOptions track(VoicePlace place, double voiceDb = -6.0, double seconds = 20.0, unsigned seed = 7)
{
    DemoVoiceOptions o;
    o.place = place;
    o.voiceDb = voiceDb;
    o.seconds = seconds;
    o.seed = seed;
    o.rate = 22050;
    return o;
}

}  // namespace

const VocalMedia& VocalMedia::Get()
{
    static const VocalMedia media;
    return media;
}

QString VocalMedia::file(const QString& name) const
{
    return QDir(dir_).filePath(name);
}

// The test programs run side by side: the first makes the files, the others wait at the lock.
VocalMedia::VocalMedia() : dir_(QStringLiteral(TUNEDESK_BINARY_DIR "/test-media/vocal"))
{
    QDir().mkpath(dir_);
    QLockFile lock(file(QStringLiteral(".lock")));
    lock.setStaleLockTime(120000);
    lock.lock();
    speech_ = QFile::exists(file(QStringLiteral("speech_right.wav")));
    if (QFile::exists(file(QStringLiteral("made"))))
        return;
    ffmpeg_ = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (ffmpeg_.isEmpty()) {
        error_ = QStringLiteral("ffmpeg is not on PATH; the vocal channel tests need it to make their media");
        return;
    }
    const struct {
        const char* name;
        DemoVoiceOptions options;
    } wavs[] = {
        {"left.wav", track(VoicePlace::Left)},
        {"right.wav", track(VoicePlace::Right, -6.0, 20.0, 8)},
        {"quiet_left.wav", track(VoicePlace::Left, -15.0, 20.0, 9)},
        {"long_right.wav", track(VoicePlace::Right, -8.0, 50.0, 10)},
        {"mono_in_stereo.wav", track(VoicePlace::Both)},
        {"silent.wav", track(VoicePlace::Silent)},
        {"short_left.wav", track(VoicePlace::Left, -6.0, 0.5)},
    };
    for (const auto& w : wavs)
        if (!WriteDemoVoiceWav(file(QString::fromUtf8(w.name)), w.options)) {
            error_ = QStringLiteral("can't write ") + file(QString::fromUtf8(w.name));
            return;
        }
    const QString hide = QStringLiteral("-hide_banner");
    const bool made =
        ffmpeg({QStringLiteral("-i"), file(QStringLiteral("quiet_left.wav")), QStringLiteral("-b:a"),
                QStringLiteral("128k"), file(QStringLiteral("quiet_left.mp3"))}) &&
        ffmpeg({QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                QStringLiteral("testsrc=size=160x120:rate=25:duration=50"), QStringLiteral("-i"),
                file(QStringLiteral("long_right.wav")), QStringLiteral("-c:v"), QStringLiteral("mpeg1video"),
                QStringLiteral("-c:a"), QStringLiteral("mp2"), QStringLiteral("-b:a"), QStringLiteral("128k"),
                QStringLiteral("-shortest"), QStringLiteral("-f"), QStringLiteral("mpeg"),
                file(QStringLiteral("long_right.mpg"))}) &&
        ffmpeg({QStringLiteral("-i"), file(QStringLiteral("mono_in_stereo.wav")), QStringLiteral("-c:a"),
                QStringLiteral("mp2"), QStringLiteral("-b:a"), QStringLiteral("128k"),
                file(QStringLiteral("mono_in_stereo.mp2"))}) &&
        ffmpeg({QStringLiteral("-i"), file(QStringLiteral("left.wav")), QStringLiteral("-ac"), QStringLiteral("1"),
                file(QStringLiteral("mono.mp3"))});
    if (!made)
        return;
    QFile words(file(QStringLiteral("words.vob")));
    if (words.open(QIODevice::WriteOnly))
        words.write("Track list for room 12\nnot a video at all\n");
    makeSpeech();
    QFile stamp(file(QStringLiteral("made")));
    stamp.open(QIODevice::WriteOnly);
}

bool VocalMedia::ffmpeg(const QStringList& arguments)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(ffmpeg_, QStringList{QStringLiteral("-hide_banner"), QStringLiteral("-loglevel"),
                                 QStringLiteral("error"), QStringLiteral("-y")} +
                         arguments);
    if (!p.waitForFinished(60000) || p.exitCode() != 0) {
        error_ = QStringLiteral("ffmpeg failed: ") + QString::fromLocal8Bit(p.readAll());
        return false;
    }
    return true;
}

// Speech of espeak-ng on the right over the band on both channels.
void VocalMedia::makeSpeech()
{
    const QString espeak = QStandardPaths::findExecutable(QStringLiteral("espeak-ng"));
    if (espeak.isEmpty())
        return;
    const QString speech = file(QStringLiteral("speech.wav"));
    const QString text = QStringLiteral(
        "Tonight the room is full and everybody sings along. The lights go down, the music starts, and the "
        "first voice comes in softly. Then the chorus rises and the whole room joins the song again.");
    if (QProcess::execute(espeak, {QStringLiteral("-w"), speech, QStringLiteral("-s"), QStringLiteral("140"), text}) !=
            0 ||
        !WriteDemoVoiceWav(file(QStringLiteral("band.wav")), track(VoicePlace::None, 0, 20, 11)))
        return;
    speech_ = ffmpeg({QStringLiteral("-i"), file(QStringLiteral("band.wav")), QStringLiteral("-i"), speech,
                      QStringLiteral("-filter_complex"),
                      QStringLiteral("[0:a]channelsplit=channel_layout=stereo[bl][br];"
                                     "[1:a]aresample=22050,volume=0.5[sp];"
                                     "[br][sp]amix=inputs=2:duration=first,volume=2[r];"
                                     "[bl][r]join=inputs=2:channel_layout=stereo[a]"),
                      QStringLiteral("-map"), QStringLiteral("[a]"), file(QStringLiteral("speech_right.wav"))});
    error_.clear();
}

}  // namespace td::test
