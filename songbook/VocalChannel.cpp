#include "songbook/VocalChannel.h"
#include <QFile>
#include <algorithm>
#include <cmath>
#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace td {
namespace {

// The analysis runs at a low rate: the voice band ends well below 8 kHz, and less to decode is faster.
constexpr int kRate = 16000;
constexpr int kStretches = 6;
constexpr double kStretchSeconds = 3.0;
constexpr int kFrame = 512;            // 32 ms
constexpr double kSilentDb = -55.0;    // a frame quieter than this (band energy, dBFS) is left out
constexpr int kFewestFrames = 40;      // about 1.3 s of sound
constexpr double kSameDb = -40.0;      // a difference this far below the sum is no difference
constexpr double kFullShape = 0.5;     // a lean of the level ratios this strong is sure

// Biquad in direct form I (RBJ cookbook), for the band the voice's formants fill.
class Biquad {
public:
    Biquad(bool highPass, double frequency, int rate)
    {
        const double w = 2.0 * M_PI * frequency / rate;
        const double alpha = std::sin(w) / (2.0 * M_SQRT1_2);
        const double c = std::cos(w);
        const double a0 = 1.0 + alpha;
        const double b1 = highPass ? -(1.0 + c) : 1.0 - c;
        b0_ = (highPass ? (1.0 + c) / 2.0 : (1.0 - c) / 2.0) / a0;
        b1_ = b1 / a0;
        b2_ = b0_;
        a1_ = -2.0 * c / a0;
        a2_ = (1.0 - alpha) / a0;
    }
    double step(double x)
    {
        const double y = b0_ * x + b1_ * x1_ + b2_ * x2_ - a1_ * y1_ - a2_ * y2_;
        x2_ = x1_;
        x1_ = x;
        y2_ = y1_;
        y1_ = y;
        return y;
    }

private:
    double b0_, b1_, b2_, a1_, a2_;
    double x1_ = 0, x2_ = 0, y1_ = 0, y2_ = 0;
};

class VoiceBand {
public:
    explicit VoiceBand(int rate) : high_(true, 250.0, rate), low_(false, 3500.0, rate) {}
    double step(double x) { return low_.step(high_.step(x)); }

private:
    Biquad high_, low_;
};

struct Frame {
    double left, right, difference, sum;
    int stretch;
};

double decibels(double ratio)
{
    return 10.0 * std::log10(std::max(ratio, 1e-30));
}

double quantile(std::vector<double> values, double q)
{
    const size_t at = std::min(values.size() - 1, size_t(q * double(values.size() - 1) + 0.5));
    std::nth_element(values.begin(), values.begin() + qsizetype(at), values.end());
    return values[at];
}

std::vector<Frame> framesOf(const std::vector<StereoStretch>& stretches, int rate)
{
    std::vector<Frame> frames;
    const int frame = std::max(1, kFrame * rate / kRate);
    for (size_t s = 0; s < stretches.size(); ++s) {
        const StereoStretch& stretch = stretches[s];
        VoiceBand left(rate), right(rate);
        const size_t n = std::min(stretch.left.size(), stretch.right.size());
        // The filters settle over the first frame, which is left out.
        for (size_t start = 0; start + size_t(frame) <= n; start += size_t(frame)) {
            Frame f{0, 0, 0, 0, int(s)};
            for (size_t i = start; i < start + size_t(frame); ++i) {
                const double l = left.step(stretch.left[i]);
                const double r = right.step(stretch.right[i]);
                f.left += l * l;
                f.right += r * r;
                f.difference += (l - r) * (l - r);
                f.sum += (l + r) * (l + r);
            }
            if (start > 0 && decibels((f.left + f.right) / (2.0 * frame)) > kSilentDb)
                frames.push_back(f);
        }
    }
    return frames;
}

// The lean of the per-frame level ratios (dB, left over right): the spread of the outer fifth on the
// high side against the low side, from -1 to 1.
double shapeOf(const std::vector<double>& ratios)
{
    const double q05 = quantile(ratios, 0.05), q25 = quantile(ratios, 0.25), q75 = quantile(ratios, 0.75),
                 q95 = quantile(ratios, 0.95);
    return std::clamp(((q95 - q75) - (q25 - q05)) / std::max(q95 - q05, 0.3), -1.0, 1.0);
}

ChannelVerdict unknown(const QString& reason, double seconds = 0.0)
{
    ChannelVerdict verdict;
    verdict.reason = reason;
    verdict.seconds = seconds;
    return verdict;
}

}  // namespace

// Two cues from frame energies in the voice band, the band playing on both channels and the voice on
// one. The shape of the per-frame level ratio decides: between syllables it falls back to a floor (the
// band alone), while sung frames lift it away from that floor towards the voice only; a band louder on
// one side moves the floor, not the shape. The energy balance (L - R) / D, +1 for a voice on the left
// and -1 on the right at any voice level when the band is equally loud, only weighs in, as such a
// difference in the band can turn it.
ChannelVerdict JudgeChannels(const std::vector<StereoStretch>& stretches, int rate)
{
    double seconds = 0;
    for (const StereoStretch& s : stretches)
        seconds += double(s.left.size()) / rate;
    const std::vector<Frame> frames = framesOf(stretches, rate);
    if (frames.empty())
        return unknown(QStringLiteral("silent"), seconds);
    if (frames.size() < size_t(kFewestFrames))
        return unknown(QStringLiteral("too little sound"), seconds);

    double left = 0, right = 0, difference = 0, sum = 0;
    std::vector<double> ratios;
    for (const Frame& f : frames) {
        left += f.left;
        right += f.right;
        difference += f.difference;
        sum += f.sum;
        ratios.push_back(decibels(f.left / std::max(f.right, 1e-30)));
    }
    ChannelVerdict verdict;
    verdict.seconds = seconds;
    const double separation = decibels(difference / sum);
    if (separation < kSameDb) {
        verdict.channel = QStringLiteral("s");
        verdict.confidence = std::min(1.0, kChannelConfident + (kSameDb - separation) / 25.0);
        return verdict;
    }
    const double energyCue = std::clamp((left - right) / difference, -1.0, 1.0);
    const double shapeCue = shapeOf(ratios);
    // The share of the frames whose stretch, judged on its own, leans the same way as the whole.
    std::vector<std::vector<double>> stretchRatios(stretches.size());
    for (size_t i = 0; i < frames.size(); ++i)
        stretchRatios[size_t(frames[i].stretch)].push_back(ratios[i]);
    double agreeing = 0;
    for (const std::vector<double>& r : stretchRatios)
        if (!r.empty() && (shapeOf(r) > 0) == (shapeCue > 0))
            agreeing += double(r.size());
    const double agreement = agreeing / double(frames.size());
    if (qEnvironmentVariableIsSet("TUNEDESK_VOCAL_TRACE"))
        qInfo("sep %.1f energy %.3f shape %.3f agree %.2f", separation, energyCue, shapeCue, agreement);

    // The shape decides; the energy, which a band louder on one side can mislead, only weighs in.
    const bool energyAgrees = (energyCue > 0) == (shapeCue > 0);
    verdict.confidence =
        std::clamp(std::abs(shapeCue) / kFullShape * (energyAgrees ? 1.0 : 0.75) * agreement, 0.0, 1.0);
    verdict.leaning = shapeCue > 0 ? QStringLiteral("L") : QStringLiteral("R");
    if (verdict.confidence >= kChannelConfident) {
        verdict.channel = verdict.leaning;
        verdict.leaning.clear();
    } else {
        verdict.reason = QStringLiteral("no clear difference");
    }
    return verdict;
}

namespace {

struct FormatCloser {
    void operator()(AVFormatContext* c) const { avformat_close_input(&c); }
};
struct CodecFreer {
    void operator()(AVCodecContext* c) const { avcodec_free_context(&c); }
};
struct SwrFreer {
    void operator()(SwrContext* c) const { swr_free(&c); }
};
struct PacketFreer {
    void operator()(AVPacket* p) const { av_packet_free(&p); }
};
struct FrameFreer {
    void operator()(AVFrame* f) const { av_frame_free(&f); }
};

// The audio of one file, read stretch by stretch at kRate in two float channels.
class AudioReader {
public:
    QString open(const QString& path)
    {
        AVFormatContext* format = nullptr;
        if (avformat_open_input(&format, QFile::encodeName(path).constData(), nullptr, nullptr) < 0)
            return QStringLiteral("not a media file");
        format_.reset(format);
        if (avformat_find_stream_info(format, nullptr) < 0 || format->nb_streams == 0)
            return QStringLiteral("not a media file");
        const AVCodec* codec = nullptr;
        stream_ = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
        if (stream_ < 0 || !codec)
            return QStringLiteral("no sound");
        for (unsigned i = 0; i < format->nb_streams; ++i)
            format->streams[i]->discard = int(i) == stream_ ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
        codec_.reset(avcodec_alloc_context3(codec));
        if (!codec_ || avcodec_parameters_to_context(codec_.get(), format->streams[stream_]->codecpar) < 0 ||
            avcodec_open2(codec_.get(), codec, nullptr) < 0)
            return QStringLiteral("sound not readable");
        channels_ = codec_->ch_layout.nb_channels;
        if (channels_ >= 2) {
            SwrContext* swr = nullptr;
            AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
            if (swr_alloc_set_opts2(&swr, &stereo, AV_SAMPLE_FMT_FLTP, kRate, &codec_->ch_layout,
                                    codec_->sample_fmt, codec_->sample_rate, 0, nullptr) < 0)
                return QStringLiteral("sound not readable");
            swr_.reset(swr);
        }
        packet_.reset(av_packet_alloc());
        frame_.reset(av_frame_alloc());
        return {};
    }

    int channels() const { return channels_; }
    // Seconds, or 0 when the file does not say.
    double duration() const
    {
        return format_->duration > 0 ? double(format_->duration) / AV_TIME_BASE : 0.0;
    }

    // Reads seconds of sound from at (seconds); from the start when at is 0. Less at the end of the file.
    StereoStretch read(double at, double seconds)
    {
        StereoStretch out;
        if (at > 0) {
            if (av_seek_frame(format_.get(), -1, int64_t(at * AV_TIME_BASE), AVSEEK_FLAG_BACKWARD) < 0)
                return out;
            avcodec_flush_buffers(codec_.get());
        }
        if (swr_init(swr_.get()) < 0)
            return out;
        const size_t wanted = size_t(seconds * kRate);
        bool ended = false;
        while (out.left.size() < wanted && !ended) {
            const int read = av_read_frame(format_.get(), packet_.get());
            if (read < 0) {
                ended = true;
                avcodec_send_packet(codec_.get(), nullptr);
            } else if (packet_->stream_index == stream_) {
                avcodec_send_packet(codec_.get(), packet_.get());
            }
            av_packet_unref(packet_.get());
            while (avcodec_receive_frame(codec_.get(), frame_.get()) == 0) {
                append(out);
                av_frame_unref(frame_.get());
            }
        }
        out.left.resize(std::min(out.left.size(), wanted));
        out.right.resize(out.left.size());
        return out;
    }

private:
    void append(StereoStretch& out)
    {
        const int room = swr_get_out_samples(swr_.get(), frame_->nb_samples);
        if (room <= 0)
            return;
        const size_t had = out.left.size();
        out.left.resize(had + size_t(room));
        out.right.resize(had + size_t(room));
        uint8_t* planes[2] = {reinterpret_cast<uint8_t*>(out.left.data() + had),
                              reinterpret_cast<uint8_t*>(out.right.data() + had)};
        const int made = swr_convert(swr_.get(), planes, room, const_cast<const uint8_t**>(frame_->extended_data),
                                     frame_->nb_samples);
        out.left.resize(had + size_t(std::max(made, 0)));
        out.right.resize(out.left.size());
    }

    std::unique_ptr<AVFormatContext, FormatCloser> format_;
    std::unique_ptr<AVCodecContext, CodecFreer> codec_;
    std::unique_ptr<SwrContext, SwrFreer> swr_;
    std::unique_ptr<AVPacket, PacketFreer> packet_;
    std::unique_ptr<AVFrame, FrameFreer> frame_;
    int stream_ = -1;
    int channels_ = 0;
};

}  // namespace

ChannelVerdict DetectVocalChannel(const QString& path)
{
    av_log_set_level(AV_LOG_QUIET);
    AudioReader reader;
    if (const QString failure = reader.open(path); !failure.isEmpty())
        return unknown(failure);
    if (reader.channels() < 1)
        return unknown(QStringLiteral("no sound"));
    if (reader.channels() == 1) {
        ChannelVerdict mono;
        mono.channel = QStringLiteral("s");
        mono.confidence = 1.0;
        return mono;
    }
    std::vector<StereoStretch> stretches;
    const double duration = reader.duration();
    // Stretches spread over the song, away from its intro and its end; a short or unmeasured file
    // is read from its start.
    if (duration > kStretches * kStretchSeconds * 2) {
        for (int i = 0; i < kStretches; ++i)
            stretches.push_back(reader.read(duration * (0.1 + 0.8 * (i + 0.5) / kStretches), kStretchSeconds));
    } else {
        stretches.push_back(reader.read(0, kStretches * kStretchSeconds));
    }
    return JudgeChannels(stretches, kRate);
}

}  // namespace td
