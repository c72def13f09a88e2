#pragma once
#include <QString>
#include <QDir>
#include <vector>

namespace td::test {

// Small media made with ffmpeg once per build, shared by the test programs: a clip whose left channel is a 440 Hz tone and
// right channel 880 Hz, with a picture; the same tones as an MP3 carrying cover art; a mono MP3; and
// files no player should take.
class TheatreMedia {
public:
    // Empty when ffmpeg is missing or failed: the reason is then in error().
    static const TheatreMedia& Get();

    bool ready() const { return error_.isEmpty(); }
    QString error() const { return error_; }
    QString file(const QString& name) const { return QDir(dir_).filePath(name); }
    // A copy of the clip under a name with quotes, spaces and Chinese characters.
    QString oddlyNamedClip() const;

private:
    TheatreMedia();
    bool run(const QStringList& arguments);
    void writeBadFiles();

    QString dir_;
    QString ffmpeg_;
    QString error_;
};

// A WAV file as read back from the player's sound output: one vector of samples per channel.
struct WavSound {
    int rate = 0;
    std::vector<std::vector<double>> channels;
};
bool ReadWav(const QString& path, WavSound& sound);

// The strength of one frequency in samples [from, from + count) of a channel (Goertzel).
double ToneStrength(const std::vector<double>& samples, int rate, double frequency, size_t from,
                    size_t count);

}  // namespace td::test
