#pragma once
#include <QString>
#include <vector>

namespace td {

// Which channel of a song's media carries the singing voice.
struct ChannelVerdict {
    QString channel = QStringLiteral("unknown");  // "L", "R", "s" (one programme on both) or "unknown"
    double confidence = 0.0;  // 0 to 1; "unknown" below kChannelConfident
    QString leaning;          // for "unknown": the side the figures lean to, "L", "R" or ""
    QString reason;           // for "unknown": why, in a few words of English
    double seconds = 0.0;     // audio analysed
};

// Below this a verdict is "unknown": nothing is written to the songbook.
constexpr double kChannelConfident = 0.6;

// Decodes several short stretches across the file's first audio stream and judges its two
// channels. A mono file is "s"; a file that cannot be read is "unknown" with the reason.
ChannelVerdict DetectVocalChannel(const QString& path);

// The judgement itself, on stretches of two channels at a sample rate; each stretch is
// analysed on its own, so a seek between them does not count as a change of sound.
struct StereoStretch {
    std::vector<float> left;
    std::vector<float> right;
};
ChannelVerdict JudgeChannels(const std::vector<StereoStretch>& stretches, int rate);

}  // namespace td
