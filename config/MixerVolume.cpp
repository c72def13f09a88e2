#include "config/MixerVolume.h"
#include "config/MixerAlsa.h"
#include "shell/services/AppError.h"
#include "shell/services/Seam.h"
#include <array>
#include <atomic>
#include <cerrno>

namespace td {
namespace {

enum class Control {
    Level,  // volume with balance
    Tone,   // bass and treble: one value for every channel
    Mute,   // 1 is silent: the opposite of the element's switch
    OnOff,  // 1 is sound on, as the switch itself
};

struct MixerLine {
    const char* element;
    MixerDirection direction;
    Control control;
};

constexpr auto P = MixerDirection::Playback;

// By selector.
constexpr std::array<MixerLine, 16> kLines{{
    {"Master", P, Control::Level},
    {"Master", P, Control::Mute},
    {"Bass", P, Control::Tone},
    {"Treble", P, Control::Tone},
    {"Master", P, Control::OnOff},
    {"PCM", P, Control::Level},
    {"PCM", P, Control::Mute},
    {"Synth", P, Control::Level},
    {"Synth", P, Control::Mute},
    {"CD", P, Control::Level},
    {"CD", P, Control::Mute},
    {"Mic", P, Control::Level},
    {"Mic", P, Control::Mute},
    {"Line", P, Control::Level},
    {"Line", P, Control::Mute},
    {"Capture", MixerDirection::Capture, Control::Level},
}};

std::atomic<int> lastResult{0};

// Keeps the step's result for MixerLastResult; true when it succeeded.
bool step(int result)
{
    lastResult = result;
    return result >= 0;
}

bool isSwitch(Control control)
{
    return control == Control::Mute || control == Control::OnOff;
}

class OpenMixer {
public:
    explicit OpenMixer(MixerDeviceSeam& device) : device_(device) { opened_ = step(device_.open()); }
    ~OpenMixer() { device_.close(); }
    OpenMixer(const OpenMixer&) = delete;
    OpenMixer& operator=(const OpenMixer&) = delete;
    bool opened() const { return opened_; }

private:
    MixerDeviceSeam& device_;
    bool opened_ = false;
};

bool setSwitch(MixerDeviceSeam& device, const MixerLine& line, int volume)
{
    const int on = volume != 0 ? 1 : 0;
    const int value = line.control == Control::Mute ? 1 - on : on;
    return step(device.setSwitch(QString::fromLatin1(line.element), line.direction, value));
}

bool setLevel(MixerDeviceSeam& device, const MixerLine& line, bool mono, int volume, int balance)
{
    const QString name = QString::fromLatin1(line.element);
    long min = 0, max = 0;
    if (!step(device.volumeRange(name, line.direction, min, max)))
        return false;
    const long scaled = min + (max - min) * volume / 100;
    const long left = balance > 0 ? scaled - balance * scaled / 100 : scaled;
    const long right = balance < 0 ? scaled + balance * scaled / 100 : scaled;
    return step(device.setVolume(name, line.direction, MixerChannel::FrontLeft, left)) &&
           (mono || step(device.setVolume(name, line.direction, MixerChannel::FrontRight, right)));
}

}  // namespace

MixerDeviceSeam& MixerDevice()
{
    return Seam<MixerDeviceSeam, AlsaMixerDevice>::get();
}

void SetMixerDevice(MixerDeviceSeam* seam)
{
    Seam<MixerDeviceSeam, AlsaMixerDevice>::install(seam);
}

int MixerLastResult()
{
    return lastResult;
}

bool MixerVolume(int selector, int& volume, int& balance)
{
    if (selector < 0 || selector >= int(kLines.size()))
        throw AppError(QStringLiteral("Type mismatch"));
    if (volume < 0)
        volume = 1;
    const MixerLine& line = kLines[size_t(selector)];
    MixerDeviceSeam& device = MixerDevice();
    OpenMixer mixer(device);
    const std::optional<MixerElement> element =
        mixer.opened() ? device.findElement(QString::fromLatin1(line.element), line.direction) : std::nullopt;
    const bool hasControl = element && (isSwitch(line.control) ? element->hasSwitch : element->hasVolume);
    if (!hasControl) {
        if (mixer.opened())
            step(-ENOENT);
        volume = balance = 0;
        return false;
    }
    if (isSwitch(line.control))
        return setSwitch(device, line, volume);
    // Bass and treble take one value for every channel.
    return setLevel(device, line, element->mono, volume, line.control == Control::Tone ? 0 : balance);
}

}  // namespace td
