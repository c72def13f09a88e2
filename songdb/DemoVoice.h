#pragma once
#include <QString>

namespace td {

// Where a generated karaoke track carries its singing voice.
enum class VoicePlace {
    Left,    // voice and band on the left, the band alone on the right
    Right,   // the other way round
    Both,    // the same mix on both channels: a mono programme in stereo
    None,    // the band alone on both channels
    Silent,  // digital silence
};

struct DemoVoiceOptions {
    VoicePlace place = VoicePlace::Left;
    double seconds = 30.0;
    double voiceDb = -6.0;   // level of the voice against the band
    double bandGainDb = 0.0; // extra gain of the band on the channel without the voice
    unsigned seed = 1;       // melody, vowels, rhythm and chords follow from it
    int rate = 44100;
};

// Writes a 16-bit stereo WAV file of a karaoke-like track: a formant-filtered voice with syllables,
// vibrato and phrase pauses over a band of chords, bass and drums. Answers false when the file could
// not be written.
bool WriteDemoVoiceWav(const QString& path, const DemoVoiceOptions& options);

}  // namespace td
