#include "songdb/DemoVoice.h"
#include <QFile>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>
#include <vector>

namespace td {
namespace {

constexpr double kPi = std::numbers::pi;

// A two-pole resonator: one formant of the voice.
class Resonator {
public:
    void tune(double frequency, double bandwidth, int rate)
    {
        const double r = std::exp(-kPi * bandwidth / rate);
        a1_ = 2.0 * r * std::cos(2.0 * kPi * frequency / rate);
        a2_ = -r * r;
        gain_ = 1.0 - r;
    }
    double step(double in)
    {
        const double out = gain_ * in + a1_ * y1_ + a2_ * y2_;
        y2_ = y1_;
        y1_ = out;
        return out;
    }

private:
    double a1_ = 0, a2_ = 0, gain_ = 0, y1_ = 0, y2_ = 0;
};

struct Vowel {
    double f1, f2, f3;
};
constexpr std::array<Vowel, 5> kVowels{{{730, 1090, 2440}, {530, 1840, 2480}, {270, 2290, 3010},
                                       {570, 840, 2410}, {300, 870, 2240}}};

double midiHz(double note)
{
    return 440.0 * std::pow(2.0, (note - 69.0) / 12.0);
}

double rms(const std::vector<double>& s)
{
    double sum = 0;
    for (double v : s)
        sum += v * v;
    return s.empty() ? 0.0 : std::sqrt(sum / double(s.size()));
}

// Chords, a bass line and drums, the same on both channels.
std::vector<double> band(size_t frames, int rate, std::mt19937& random)
{
    std::vector<double> out(frames, 0.0);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::normal_distribution<double> noise(0.0, 1.0);
    const double beat = 60.0 / (96.0 + 36.0 * unit(random));
    const int roots[4] = {48, 53, 55, 50 + int(unit(random) * 4)};
    const size_t beatFrames = size_t(beat * rate);
    for (size_t start = 0, n = 0; start < frames; start += beatFrames, ++n) {
        const int root = roots[(n / 4) % 4];
        const bool minor = (n / 4) % 4 == 3;
        const double notes[4] = {midiHz(root - 12), midiHz(root + 12), midiHz(root + 15 + (minor ? 0 : 1)),
                                 midiHz(root + 19)};
        double hat = 0;
        for (size_t i = 0; i < beatFrames && start + i < frames; ++i) {
            const double t = double(i) / rate;
            const double pluck = std::exp(-t * 3.0);
            double v = 0.5 * std::sin(2 * kPi * notes[0] * t) * std::exp(-t * 4.0);
            for (int k = 1; k < 4; ++k)
                for (int h = 1; h <= 6; ++h)
                    if (notes[k] * h < rate / 2.0)
                        v += 0.12 / h * pluck * std::sin(2 * kPi * notes[k] * h * t + k);
            if (n % 2 == 0 && t < 0.15)
                v += 0.8 * std::sin(2 * kPi * (50 + 70 * std::exp(-t * 30)) * t) * std::exp(-t * 25);
            if (n % 2 == 1 && t < 0.12)
                v += 0.3 * noise(random) * std::exp(-t * 30);
            const double half = std::fmod(t, beat / 2);
            const double white = noise(random);
            hat = 0.6 * (white - hat);  // a crude high pass
            if (half < 0.03)
                v += 0.15 * hat * std::exp(-half * 120);
            out[start + i] = v;
        }
    }
    return out;
}

// Sung syllables on a scale, with vibrato, changing vowels, a breathy onset, and pauses between phrases.
std::vector<double> voice(size_t frames, int rate, std::mt19937& random)
{
    std::vector<double> out(frames, 0.0);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::normal_distribution<double> noise(0.0, 1.0);
    const int scale[7] = {0, 2, 4, 5, 7, 9, 11};
    const double base = 50 + unit(random) * 12;  // a low or a high singer
    std::array<Resonator, 3> formants;
    double phase = 0;
    size_t at = size_t(rate * (0.3 + unit(random)));
    while (at < frames) {
        const size_t phraseEnd = std::min(frames, at + size_t(rate * (2.0 + 2.5 * unit(random))));
        while (at < phraseEnd) {
            const size_t length = size_t(rate * (0.18 + 0.3 * unit(random)));
            const double pitch = midiHz(base + scale[random() % 7] + 12 * (random() % 2));
            const Vowel& vowel = kVowels[random() % kVowels.size()];
            formants[0].tune(vowel.f1, 80, rate);
            formants[1].tune(vowel.f2, 100, rate);
            formants[2].tune(vowel.f3, 140, rate);
            const bool consonant = random() % 2 == 0;
            for (size_t i = 0; i < length && at + i < frames; ++i) {
                const double t = double(i) / rate;
                const double vibrato = t > 0.15 ? 1.0 + 0.015 * std::sin(2 * kPi * 5.5 * t) : 1.0;
                phase += pitch * vibrato / rate;
                phase -= std::floor(phase);
                const double source = 2.0 * phase - 1.0;
                double envelope = std::min({1.0, t / 0.03, (double(length) / rate - t) / 0.06});
                double v = formants[0].step(source) + 0.7 * formants[1].step(source) +
                           0.4 * formants[2].step(source);
                v *= envelope;
                if (consonant && t < 0.04)
                    v += 0.3 * noise(random) * (1.0 - t / 0.04);
                out[at + i] = v;
            }
            at += length;
        }
        at += size_t(rate * (0.4 + 1.2 * unit(random)));
    }
    return out;
}

bool writeWav(const QString& path, const std::vector<double>& left, const std::vector<double>& right, int rate)
{
    double peak = 1e-9;
    for (size_t i = 0; i < left.size(); ++i)
        peak = std::max({peak, std::abs(left[i]), std::abs(right[i])});
    const double scale = peak > 1e-6 ? 0.9 / peak : 0.0;
    const quint32 dataBytes = quint32(left.size() * 4);
    QByteArray bytes(44 + qsizetype(dataBytes), '\0');
    char* p = bytes.data();
    auto put32 = [](char* at, quint32 v) { qToLittleEndian(v, at); };
    auto put16 = [](char* at, quint16 v) { qToLittleEndian(v, at); };
    std::memcpy(p, "RIFF", 4);
    put32(p + 4, 36 + dataBytes);
    std::memcpy(p + 8, "WAVEfmt ", 8);
    put32(p + 16, 16);
    put16(p + 20, 1);
    put16(p + 22, 2);
    put32(p + 24, quint32(rate));
    put32(p + 28, quint32(rate * 4));
    put16(p + 32, 4);
    put16(p + 34, 16);
    std::memcpy(p + 36, "data", 4);
    put32(p + 40, dataBytes);
    for (size_t i = 0; i < left.size(); ++i) {
        put16(p + 44 + i * 4, quint16(qint16(std::lround(left[i] * scale * 32767))));
        put16(p + 46 + i * 4, quint16(qint16(std::lround(right[i] * scale * 32767))));
    }
    QFile out(path);
    return out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size();
}

}  // namespace

bool WriteDemoVoiceWav(const QString& path, const DemoVoiceOptions& options)
{
    const size_t frames = size_t(std::max(0.0, options.seconds) * options.rate);
    std::mt19937 random(options.seed);
    std::vector<double> music = band(frames, options.rate, random);
    std::vector<double> sung = voice(frames, options.rate, random);
    const double level = rms(music) / std::max(rms(sung), 1e-12) * std::pow(10.0, options.voiceDb / 20.0);
    const double clean = std::pow(10.0, options.bandGainDb / 20.0);
    std::vector<double> withVoice(frames), without(frames);
    for (size_t i = 0; i < frames; ++i) {
        withVoice[i] = music[i] + level * sung[i];
        without[i] = clean * music[i];
    }
    switch (options.place) {
    case VoicePlace::Left:
        return writeWav(path, withVoice, without, options.rate);
    case VoicePlace::Right:
        return writeWav(path, without, withVoice, options.rate);
    case VoicePlace::Both:
        return writeWav(path, withVoice, withVoice, options.rate);
    case VoicePlace::None:
        return writeWav(path, music, music, options.rate);
    case VoicePlace::Silent:
        std::fill(music.begin(), music.end(), 0.0);
        return writeWav(path, music, music, options.rate);
    }
    return false;
}

}  // namespace td
