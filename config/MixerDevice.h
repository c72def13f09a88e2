#pragma once
#include <QString>
#include <optional>

namespace td {

enum class MixerDirection { Playback, Capture };
enum class MixerChannel { FrontLeft, FrontRight };

// What a simple mixer element offers in one direction.
struct MixerElement {
    bool hasVolume = false;
    bool hasSwitch = false;
    bool mono = false;  // one channel only: it takes the left channel's value
};

// The sound card's mixer, one named element at a time. Results are 0 or a negative error code, as ALSA
// gives them. Tests replace it.
class MixerDeviceSeam {
public:
    virtual ~MixerDeviceSeam() = default;
    // Opens the mixer for one setting; close() follows every open(), failed or not.
    virtual int open() = 0;
    virtual void close() = 0;
    virtual std::optional<MixerElement> findElement(const QString& name, MixerDirection direction) = 0;
    virtual int volumeRange(const QString& name, MixerDirection direction, long& min, long& max) = 0;
    virtual int setVolume(const QString& name, MixerDirection direction, MixerChannel channel,
                          long value) = 0;
    // Sets the switch of every channel; 1 lets the sound through.
    virtual int setSwitch(const QString& name, MixerDirection direction, int value) = 0;
};

MixerDeviceSeam& MixerDevice();
void SetMixerDevice(MixerDeviceSeam* seam);

}  // namespace td
