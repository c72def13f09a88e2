#pragma once
#include "config/MixerDevice.h"
#include <QMap>
#include <QStringList>

namespace td::test {

struct FakeElement {
    MixerElement caps{true, true, false};
    long min = 0, max = 65535;
};

// A card with the elements a test gives it; every call is written to the log.
class FakeMixer : public MixerDeviceSeam {
public:
    FakeMixer() { SetMixerDevice(this); }
    ~FakeMixer() override { SetMixerDevice(nullptr); }

    QMap<QString, FakeElement> playback, capture;
    int openResult = 0;
    int failingSetResult = 0;  // the result of setVolume on the left channel, when not 0
    QStringList log;

    int open() override { return log << QStringLiteral("open"), openResult; }
    void close() override { log << QStringLiteral("close"); }
    std::optional<MixerElement> findElement(const QString& name, MixerDirection direction) override
    {
        const auto& elements = of(direction);
        if (!elements.contains(name))
            return std::nullopt;
        return elements[name].caps;
    }
    int volumeRange(const QString& name, MixerDirection direction, long& min, long& max) override
    {
        min = of(direction)[name].min;
        max = of(direction)[name].max;
        return 0;
    }
    int setVolume(const QString& name, MixerDirection direction, MixerChannel channel, long value) override
    {
        const bool left = channel == MixerChannel::FrontLeft;
        log << QStringLiteral("%1 %2 %3 %4").arg(prefix(direction), name, left ? u"FL" : u"FR").arg(value);
        return left ? failingSetResult : 0;
    }
    int setSwitch(const QString& name, MixerDirection direction, int value) override
    {
        log << QStringLiteral("%1 %2 switch %3").arg(prefix(direction), name).arg(value);
        return 0;
    }

    // The calls between open and close.
    QStringList sets() const { return log.mid(1, log.size() - 2); }

private:
    QMap<QString, FakeElement>& of(MixerDirection d)
    {
        return d == MixerDirection::Playback ? playback : capture;
    }
    static QString prefix(MixerDirection d)
    {
        return d == MixerDirection::Playback ? QStringLiteral("play") : QStringLiteral("capture");
    }
};

}  // namespace td::test
