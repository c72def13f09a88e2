#pragma once
#include "config/MixerDevice.h"
#include <QByteArray>

struct _snd_mixer;
struct _snd_mixer_elem;

namespace td {

// The simple mixer of an ALSA device, "default" in the console. Opened afresh for every setting, so a
// card or sound server that comes or goes later is found; a machine without one just gets errors back.
class AlsaMixerDevice : public MixerDeviceSeam {
public:
    explicit AlsaMixerDevice(QByteArray device = QByteArrayLiteral("default"));
    ~AlsaMixerDevice() override;
    AlsaMixerDevice(const AlsaMixerDevice&) = delete;
    AlsaMixerDevice& operator=(const AlsaMixerDevice&) = delete;

    int open() override;
    void close() override;
    std::optional<MixerElement> findElement(const QString& name, MixerDirection direction) override;
    int volumeRange(const QString& name, MixerDirection direction, long& min, long& max) override;
    int setVolume(const QString& name, MixerDirection direction, MixerChannel channel, long value) override;
    int setSwitch(const QString& name, MixerDirection direction, int value) override;

private:
    _snd_mixer_elem* element(const QString& name) const;

    QByteArray device_;
    _snd_mixer* mixer_ = nullptr;
};

// ALSA prints its own complaints to stderr (no card, no sound server); the console drops them.
void SilenceAlsaMessages();

}  // namespace td
