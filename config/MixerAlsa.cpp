#include "config/MixerAlsa.h"
#include <alsa/asoundlib.h>
#include <cerrno>
#include <mutex>

namespace td {
namespace {

void dropAlsaMessage(const char*, int, const char*, int, const char*, ...) {}

snd_mixer_selem_channel_id_t alsaChannel(MixerChannel channel)
{
    return channel == MixerChannel::FrontLeft ? SND_MIXER_SCHN_FRONT_LEFT : SND_MIXER_SCHN_FRONT_RIGHT;
}

}  // namespace

void SilenceAlsaMessages()
{
    static std::once_flag once;
    std::call_once(once, [] { snd_lib_error_set_handler(dropAlsaMessage); });
}

AlsaMixerDevice::AlsaMixerDevice(QByteArray device) : device_(std::move(device))
{
    SilenceAlsaMessages();
}

AlsaMixerDevice::~AlsaMixerDevice()
{
    close();
}

int AlsaMixerDevice::open()
{
    close();
    int result = snd_mixer_open(&mixer_, 0);
    if (result < 0) {
        mixer_ = nullptr;
        return result;
    }
    if ((result = snd_mixer_attach(mixer_, device_.constData())) < 0 ||
        (result = snd_mixer_selem_register(mixer_, nullptr, nullptr)) < 0 ||
        (result = snd_mixer_load(mixer_)) < 0)
        close();
    return result;
}

void AlsaMixerDevice::close()
{
    if (mixer_)
        snd_mixer_close(mixer_);
    mixer_ = nullptr;
}

snd_mixer_elem_t* AlsaMixerDevice::element(const QString& name) const
{
    if (!mixer_)
        return nullptr;
    snd_mixer_selem_id_t* id = nullptr;
    snd_mixer_selem_id_alloca(&id);
    snd_mixer_selem_id_set_index(id, 0);
    snd_mixer_selem_id_set_name(id, name.toUtf8().constData());
    return snd_mixer_find_selem(mixer_, id);
}

std::optional<MixerElement> AlsaMixerDevice::findElement(const QString& name, MixerDirection direction)
{
    snd_mixer_elem_t* elem = element(name);
    if (!elem)
        return std::nullopt;
    MixerElement found;
    if (direction == MixerDirection::Playback) {
        found.hasVolume = snd_mixer_selem_has_playback_volume(elem);
        found.hasSwitch = snd_mixer_selem_has_playback_switch(elem);
        found.mono = !snd_mixer_selem_has_playback_channel(elem, SND_MIXER_SCHN_FRONT_RIGHT);
    } else {
        found.hasVolume = snd_mixer_selem_has_capture_volume(elem);
        found.hasSwitch = snd_mixer_selem_has_capture_switch(elem);
        found.mono = !snd_mixer_selem_has_capture_channel(elem, SND_MIXER_SCHN_FRONT_RIGHT);
    }
    return found;
}

int AlsaMixerDevice::volumeRange(const QString& name, MixerDirection direction, long& min, long& max)
{
    snd_mixer_elem_t* elem = element(name);
    if (!elem)
        return -ENOENT;
    return direction == MixerDirection::Playback ? snd_mixer_selem_get_playback_volume_range(elem, &min, &max)
                                                 : snd_mixer_selem_get_capture_volume_range(elem, &min, &max);
}

int AlsaMixerDevice::setVolume(const QString& name, MixerDirection direction, MixerChannel channel,
                               long value)
{
    snd_mixer_elem_t* elem = element(name);
    if (!elem)
        return -ENOENT;
    return direction == MixerDirection::Playback
               ? snd_mixer_selem_set_playback_volume(elem, alsaChannel(channel), value)
               : snd_mixer_selem_set_capture_volume(elem, alsaChannel(channel), value);
}

int AlsaMixerDevice::setSwitch(const QString& name, MixerDirection direction, int value)
{
    snd_mixer_elem_t* elem = element(name);
    if (!elem)
        return -ENOENT;
    return direction == MixerDirection::Playback ? snd_mixer_selem_set_playback_switch_all(elem, value)
                                                 : snd_mixer_selem_set_capture_switch_all(elem, value);
}

}  // namespace td
