#include "config/MixerAlsa.h"
#include "config/MixerVolume.h"
#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <alsa/asoundlib.h>
#include <deque>
#include <gtest/gtest.h>

using namespace td;

namespace {

// Sets an environment variable for the life of the object.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const QByteArray& value) : name_(name), had_(qEnvironmentVariableIsSet(name))
    {
        old_ = qgetenv(name);
        qputenv(name, value);
    }
    ~ScopedEnv() { had_ ? qputenv(name_, old_) : qunsetenv(name_); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    const char* name_;
    bool had_;
    QByteArray old_;
};

// The levels and switch of one element as a fresh mixer of the device reads them.
struct Readback {
    bool found = false;
    long min = 0, max = 0, left = 0, right = 0;
    int on = -1;
};

Readback readElement(const char* device, const char* name)
{
    Readback r;
    snd_mixer_t* mixer = nullptr;
    if (snd_mixer_open(&mixer, 0) < 0)
        return r;
    if (snd_mixer_attach(mixer, device) >= 0 && snd_mixer_selem_register(mixer, nullptr, nullptr) >= 0 &&
        snd_mixer_load(mixer) >= 0) {
        snd_mixer_selem_id_t* id = nullptr;
        snd_mixer_selem_id_alloca(&id);
        snd_mixer_selem_id_set_name(id, name);
        if (snd_mixer_elem_t* elem = snd_mixer_find_selem(mixer, id)) {
            r.found = true;
            snd_mixer_selem_get_playback_volume_range(elem, &r.min, &r.max);
            snd_mixer_selem_get_playback_volume(elem, SND_MIXER_SCHN_FRONT_LEFT, &r.left);
            snd_mixer_selem_get_playback_volume(elem, SND_MIXER_SCHN_FRONT_RIGHT, &r.right);
            snd_mixer_selem_get_playback_switch(elem, SND_MIXER_SCHN_FRONT_LEFT, &r.on);
        }
    }
    snd_mixer_close(mixer);
    return r;
}

// A sound server of the test's own with one silent output, reached by ALSA's "pulse" device. Nothing of
// the user's own server, cookie or session bus is touched; the server ends with the object.
class PrivateSoundServer {
public:
    PrivateSoundServer()
    {
        const QString program = QStandardPaths::findExecutable(QStringLiteral("pulseaudio"));
        if (program.isEmpty()) {
            why_ = "no pulseaudio program on the PATH";
            return;
        }
        const QString dir = dir_.path();
        QFile conf(dir + QStringLiteral("/client.conf"));
        if (!conf.open(QIODevice::WriteOnly) || conf.write("autospawn = no\n") < 0) {
            why_ = "the sound server's client settings could not be written";
            return;
        }
        conf.close();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"HOME", "XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH"})
            env.insert(QString::fromLatin1(name), dir);
        env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                   QStringLiteral("unix:path=%1/no-bus").arg(dir));
        env.remove(QStringLiteral("DISPLAY"));  // else D-Bus would start a session bus of its own for it
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        server_.setProcessEnvironment(env);
        server_.setProcessChannelMode(QProcess::MergedChannels);
        server_.start(
            program,
            {QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"), QStringLiteral("-n"),
             QStringLiteral("--use-pid-file=no"), QStringLiteral("--realtime=no"),
             QStringLiteral("--high-priority=no"), QStringLiteral("--log-target=stderr"),
             QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + dir +
                 QStringLiteral("/native"),
             QStringLiteral("--load=module-null-sink")});
        if (!server_.waitForStarted(5000)) {
            why_ = "pulseaudio did not start: " + server_.errorString().toStdString();
            return;
        }
        client_.emplace_back("PULSE_SERVER", QStringLiteral("unix:%1/native").arg(dir).toUtf8());
        client_.emplace_back("PULSE_CLIENTCONFIG", QFile::encodeName(dir + QStringLiteral("/client.conf")));
        client_.emplace_back("PULSE_COOKIE", QFile::encodeName(dir + QStringLiteral("/cookie")));
        client_.emplace_back("PULSE_RUNTIME_PATH", QFile::encodeName(dir));
        // Ready once ALSA reaches it and finds the output's volume; ALSA complains until then.
        SilenceAlsaMessages();
        const QDeadlineTimer deadline(5000);
        while (!readElement("pulse", "Master").found) {
            if (server_.state() != QProcess::Running) {
                why_ = "pulseaudio ended: " + server_.readAll().trimmed().toStdString();
                return;
            }
            if (deadline.hasExpired()) {
                why_ = "no Master element on ALSA's pulse device within 5 s (is libasound2-plugins there?)";
                return;
            }
            QThread::msleep(20);
        }
    }
    ~PrivateSoundServer()
    {
        client_.clear();
        if (server_.state() == QProcess::NotRunning)
            return;
        server_.terminate();
        if (!server_.waitForFinished(2000)) {
            server_.kill();
            server_.waitForFinished(2000);
        }
    }
    // Why the server cannot be used; empty when it can.
    const std::string& unavailable() const { return why_; }

private:
    QTemporaryDir dir_;
    QProcess server_;
    std::deque<ScopedEnv> client_;  // a deque keeps them in place
    std::string why_;
};

class InstalledMixer {
public:
    explicit InstalledMixer(QByteArray device) : device_(std::move(device)) { SetMixerDevice(&device_); }
    ~InstalledMixer() { SetMixerDevice(nullptr); }

private:
    AlsaMixerDevice device_;
};

TEST(AlsaMixer, SetsTheMasterVolumeOfARealMixer)
{
    PrivateSoundServer server;
    if (!server.unavailable().empty())
        GTEST_SKIP() << "no ALSA mixer to test against: " << server.unavailable();
    InstalledMixer mixer("pulse");

    int volume = 50, balance = 0;
    ASSERT_TRUE(MixerVolume(0, volume, balance)) << "ALSA error " << MixerLastResult();
    Readback r = readElement("pulse", "Master");
    const long half = r.min + (r.max - r.min) * 50 / 100;
    EXPECT_EQ(r.left, half);
    EXPECT_EQ(r.right, half);

    balance = 100;
    ASSERT_TRUE(MixerVolume(0, volume, balance));
    r = readElement("pulse", "Master");
    EXPECT_EQ(r.left, r.min);
    EXPECT_EQ(r.right, half);

    int mute = 1;
    ASSERT_TRUE(MixerVolume(1, mute, balance));
    EXPECT_EQ(readElement("pulse", "Master").on, 0);
    mute = 0;
    ASSERT_TRUE(MixerVolume(1, mute, balance));
    EXPECT_EQ(readElement("pulse", "Master").on, 1);
}

TEST(AlsaMixer, ADeviceThatIsNotThereIsQuietAndSetsNothing)
{
    InstalledMixer mixer("tunedesk_no_such_device");
    testing::internal::CaptureStderr();
    int volume = 50, balance = 0;
    const bool set = MixerVolume(0, volume, balance);
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(set);
    EXPECT_EQ(volume, 0);
    EXPECT_LT(MixerLastResult(), 0);
    EXPECT_EQ(printed, "");
}

}  // namespace
