#include "TheatreMedia.h"
#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QtEndian>
#include <cmath>
#include <numbers>
#include <sys/stat.h>

namespace td::test {
namespace {

QStringList words(std::initializer_list<const char*> list)
{
    QStringList result;
    for (const char* word : list)
        result << QString::fromUtf8(word);
    return result;
}

// Two tones of the given length, 440 Hz left and 880 Hz right, as the stream [a]; the picture or
// cover is the third input.
QStringList twoTonesAnd(int seconds, const char* picture)
{
    const QString tone = QStringLiteral("sine=frequency=%1:duration=%2");
    const QStringList input = words({"-f", "lavfi", "-i"});
    return input + QStringList{tone.arg(440).arg(seconds)} + input + QStringList{tone.arg(880).arg(seconds)} +
           input + QStringList{QString::fromUtf8(picture)} +
           words({"-filter_complex", "[0:a][1:a]join=inputs=2:channel_layout=stereo[a]", "-map", "[a]",
                  "-map", "2:v"});
}

}  // namespace

const TheatreMedia& TheatreMedia::Get()
{
    static const TheatreMedia media;
    return media;
}

// Each test runs in a process of its own: the media are made by the first and kept beside the build.
TheatreMedia::TheatreMedia() : dir_(QStringLiteral(TUNEDESK_BINARY_DIR "/test-media"))
{
    QDir().mkpath(dir_);
    QLockFile lock(file(QStringLiteral(".lock")));
    lock.setStaleLockTime(120000);
    lock.lock();
    if (QFile::exists(file(QStringLiteral("made"))))
        return;
    ffmpeg_ = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (ffmpeg_.isEmpty()) {
        error_ = QStringLiteral("ffmpeg is not on PATH; the player tests need it to make their media");
        return;
    }
    const bool made =
        run(twoTonesAnd(4, "testsrc=size=160x120:rate=25:duration=4") +
                words({"-c:v", "mpeg1video", "-c:a", "mp2", "-b:a", "128k", "-f", "mpeg"})
            << file(QStringLiteral("clip.mpg"))) &&
        run(twoTonesAnd(3, "color=c=red:size=64x64:duration=0.04") +
                words({"-frames:v", "1", "-c:a", "libmp3lame", "-c:v", "mjpeg", "-disposition:v:0",
                       "attached_pic", "-id3v2_version", "3"})
            << file(QStringLiteral("cover.mp3"))) &&
        run(words({"-f", "lavfi", "-i", "sine=frequency=440:duration=2", "-ac", "1", "-c:a", "libmp3lame"})
            << file(QStringLiteral("mono.mp3")));
    if (!made)
        return;
    QFile::copy(file(QStringLiteral("clip.mpg")), file(QStringLiteral("clip.dat")));
    QFile::copy(file(QStringLiteral("clip.mpg")), oddlyNamedClip());
    writeBadFiles();
    QFile stamp(file(QStringLiteral("made")));
    stamp.open(QIODevice::WriteOnly);
}

QString TheatreMedia::oddlyNamedClip() const
{
    return file(QStringLiteral("it's a \"歌曲\" 测试 clip.mpg"));
}

bool TheatreMedia::run(const QStringList& arguments)
{
    QProcess ffmpeg;
    ffmpeg.setProcessChannelMode(QProcess::MergedChannels);
    ffmpeg.start(ffmpeg_, words({"-hide_banner", "-loglevel", "error", "-y"}) + arguments);
    if (!ffmpeg.waitForFinished(30000) || ffmpeg.exitCode() != 0) {
        error_ = QStringLiteral("ffmpeg failed: ") + QString::fromLocal8Bit(ffmpeg.readAll());
        return false;
    }
    return true;
}

void TheatreMedia::writeBadFiles()
{
    auto write = [this](const QString& name, const QByteArray& bytes) {
        QFile out(file(name));
        if (out.open(QIODevice::WriteOnly))
            out.write(bytes);
    };
    write(QStringLiteral("empty.mpg"), {});
    mkfifo(QFile::encodeName(file(QStringLiteral("pipe.mpg"))).constData(), 0600);
    write(QStringLiteral("words.vob"), QByteArrayLiteral("Track list for room 12\nnot a video at all\n"));
    QByteArray noise(200000, '\0');
    QRandomGenerator generator(12);
    for (char& byte : noise)
        byte = static_cast<char>(generator.bounded(256));
    write(QStringLiteral("noise.mpg"), noise);
    QFile clip(file(QStringLiteral("clip.mpg")));
    if (clip.open(QIODevice::ReadOnly))
        write(QStringLiteral("truncated.mpg"), clip.read(clip.size() / 5));
}

bool ReadWav(const QString& path, WavSound& sound)
{
    QFile in(path);
    if (!in.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = in.readAll();
    if (bytes.size() < 12 || !bytes.startsWith("RIFF") || bytes.mid(8, 4) != "WAVE")
        return false;
    auto u16 = [&](qsizetype at) { return qFromLittleEndian<quint16>(bytes.constData() + at); };
    auto u32 = [&](qsizetype at) { return qFromLittleEndian<quint32>(bytes.constData() + at); };
    int format = 0, channels = 0, bits = 0;
    for (qsizetype at = 12; at + 8 <= bytes.size();) {
        const QByteArray id = bytes.mid(at, 4);
        const qsizetype size = u32(at + 4);
        const qsizetype body = at + 8;
        if (id == "fmt " && body + 16 <= bytes.size()) {
            format = u16(body);
            channels = u16(body + 2);
            sound.rate = static_cast<int>(u32(body + 4));
            bits = u16(body + 14);
            if (format == 0xFFFE && size >= 26)
                format = u16(body + 24);  // the sub-format's first two bytes
        } else if (id == "data") {
            // The length is written last; a file cut short is read to its end.
            const qsizetype end = size > 0 && body + size <= bytes.size() ? body + size : bytes.size();
            if (channels < 1 || !((format == 1 && bits == 16) || (format == 3 && bits == 32)))
                return false;
            const int step = bits / 8;
            sound.channels.assign(channels, {});
            for (qsizetype frame = body; frame + channels * step <= end; frame += channels * step) {
                for (int c = 0; c < channels; ++c) {
                    const char* sample = bytes.constData() + frame + c * step;
                    sound.channels[c].push_back(format == 1 ? qFromLittleEndian<qint16>(sample) / 32768.0
                                                            : qFromLittleEndian<float>(sample));
                }
            }
            return true;
        }
        at = body + size + (size & 1);
    }
    return false;
}

double ToneStrength(const std::vector<double>& samples, int rate, double frequency, size_t from, size_t count)
{
    const double coefficient = 2.0 * std::cos(2.0 * std::numbers::pi * frequency / rate);
    double previous = 0.0, beforePrevious = 0.0;
    for (size_t i = from; i < from + count && i < samples.size(); ++i) {
        const double current = samples[i] + coefficient * previous - beforePrevious;
        beforePrevious = previous;
        previous = current;
    }
    return previous * previous + beforePrevious * beforePrevious - coefficient * previous * beforePrevious;
}

}  // namespace td::test
