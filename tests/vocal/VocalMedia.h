#pragma once
#include <QString>

namespace td::test {

// Karaoke-like media with known answers, made once per build beside it (test-media/vocal): the voice on
// the left or the right as WAV, MP3 and an MPEG video, a mono programme in stereo, a mono file,
// silence, a very short file, and a file that is no media at all; with espeak-ng installed, also
// real speech on one channel.
class VocalMedia {
public:
    static const VocalMedia& Get();
    bool ready() const { return error_.isEmpty(); }
    QString error() const { return error_; }
    QString file(const QString& name) const;
    bool hasSpeech() const { return speech_; }

private:
    VocalMedia();
    bool ffmpeg(const QStringList& arguments);
    void makeSpeech();

    QString dir_;
    QString ffmpeg_;
    QString error_;
    bool speech_ = false;
};

}  // namespace td::test
