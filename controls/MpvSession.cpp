#include "controls/MpvSession.h"
#include "controls/ControlsLog.h"
#include "shell/services/AppLog.h"
#include <QElapsedTimer>
#include <QMetaObject>
#include <clocale>
#include <cstring>
#include <mpv/client.h>
#include <utility>

namespace td {
namespace {

enum Observed : uint64_t { kTimePos = 1, kEofReached, kIdleActive };

// What a console needs of the core: no user configuration, scripts, key bindings, on-screen display
// or terminal output; no network helpers; cover art of a song is not its picture; a file that ends
// stays at its end so the end is seen once; and nothing plays before it is asked to.
constexpr std::pair<const char*, const char*> kConsoleOptions[] = {
    {"config", "no"},
    {"terminal", "no"},
    {"msg-level", "all=error"},
    {"input-default-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"input-cursor", "no"},
    {"osc", "no"},
    {"osd-level", "0"},
    {"osd-bar", "no"},
    {"ytdl", "no"},
    {"load-scripts", "no"},
    {"load-stats-overlay", "no"},
    {"load-osd-console", "no"},
    {"load-auto-profiles", "no"},
    {"resume-playback", "no"},
    {"sub-auto", "no"},
    {"hwdec", "no"},
    {"gpu-hwdec-interop", "no"},
    {"audio-display", "no"},
    {"keep-open", "yes"},
    {"idle", "yes"},
    {"pause", "yes"},
    {"network-timeout", "5"},
    {"demuxer-lavf-analyzeduration", "3"},
};

bool setOption(mpv_handle* handle, const char* name, const QString& value)
{
    const QByteArray utf8 = value.toUtf8();
    const int error = mpv_set_option_string(handle, name, utf8.constData());
    if (error < 0)
        qCWarning(lcControls) << "player option" << name << "refused:" << mpv_error_string(error);
    return error >= 0;
}

// A damaged file can report a decoding error for every frame; the event log keeps the first few.
constexpr int kLoggedPerFile = 20;

}  // namespace

std::optional<QString> ChannelFilter(const QString& choice)
{
    // Mono and multichannel sources are made stereo first, so the pan always finds both channels.
    static const QString left =
        QStringLiteral("lavfi=[aformat=channel_layouts=stereo,pan=stereo|c0=c0|c1=c0]");
    static const QString right =
        QStringLiteral("lavfi=[aformat=channel_layouts=stereo,pan=stereo|c0=c1|c1=c1]");
    if (choice == QLatin1String("L") || choice == QLatin1String("l") || choice == QLatin1String("left"))
        return left;
    if (choice == QLatin1String("R") || choice == QLatin1String("r") || choice == QLatin1String("right"))
        return right;
    if (choice == QLatin1String("s"))
        return QString();
    return std::nullopt;
}

MpvSession::MpvSession(const Outputs& outputs, QObject* parent) : QObject(parent)
{
    // The core refuses to start under a locale whose numbers are not written the C way, and Qt sets
    // the user's.
    std::setlocale(LC_NUMERIC, "C");
    mpv_handle* handle = mpv_create();
    if (!handle) {
        AppLogError(QStringLiteral("Player: the media library could not be started."));
        return;
    }
    for (const auto& [name, value] : kConsoleOptions)
        setOption(handle, name, QString::fromLatin1(value));
    const QString vo = outputs.vo.isEmpty() ? QStringLiteral("libmpv") : outputs.vo;
    setOption(handle, "vo", vo);
    // The render API has nowhere to draw until the picture widget has its GL context.
    setOption(handle, "vid", vo == QLatin1String("libmpv") ? QStringLiteral("no") : QStringLiteral("auto"));
    // A machine without a working sound device still plays the picture, silently.
    setOption(handle, "audio-fallback-to-null", QStringLiteral("yes"));
    // The sound server first, then the card. PipeWire's own client is left out: without its configuration it
    // writes to the terminal, and a PipeWire desktop serves the PulseAudio client as well.
    setOption(handle, "ao", outputs.ao.isEmpty() ? QStringLiteral("pulse,alsa") : outputs.ao);
    if (outputs.ao == QLatin1String("pcm")) {
        setOption(handle, "ao-pcm-file", outputs.aoFile);
        setOption(handle, "ao-pcm-waveheader", QStringLiteral("yes"));
    }
    if (const int error = mpv_initialize(handle); error < 0) {
        AppLogError(QStringLiteral("Player: the media library failed to start: ") +
                    QString::fromUtf8(mpv_error_string(error)));
        mpv_terminate_destroy(handle);
        return;
    }
    handle_ = handle;
    mpv_request_log_messages(handle_, "error");
    mpv_observe_property(handle_, kTimePos, "time-pos", MPV_FORMAT_DOUBLE);
    mpv_observe_property(handle_, kEofReached, "eof-reached", MPV_FORMAT_FLAG);
    mpv_observe_property(handle_, kIdleActive, "idle-active", MPV_FORMAT_FLAG);
    mpv_set_wakeup_callback(handle_, &MpvSession::onWakeup, this);
}

MpvSession::~MpvSession()
{
    if (!handle_)
        return;
    // Once this returns the core calls no more; a drain already queued dies with this object.
    mpv_set_wakeup_callback(handle_, nullptr, nullptr);
    mpv_terminate_destroy(handle_);
}

void MpvSession::onWakeup(void* self)
{
    // Called on one of the core's threads: hand over to ours, once per batch of events.
    auto* session = static_cast<MpvSession*>(self);
    if (!session->drainQueued_.exchange(true))
        QMetaObject::invokeMethod(session, &MpvSession::drain, Qt::QueuedConnection);
}

void MpvSession::drain()
{
    drainQueued_ = false;
    while (handle_) {
        const mpv_event* event = mpv_wait_event(handle_, 0);
        if (event->event_id == MPV_EVENT_NONE)
            break;
        handleEvent(*event);
    }
}

void MpvSession::handleEvent(const mpv_event& event)
{
    switch (event.event_id) {
        case MPV_EVENT_LOG_MESSAGE:
            logCoreMessage(*static_cast<const mpv_event_log_message*>(event.data));
            break;
        case MPV_EVENT_END_FILE: {
            const auto* end = static_cast<const mpv_event_end_file*>(event.data);
            if (end->playlist_entry_id == loadedId_ && end->reason != MPV_END_FILE_REASON_STOP &&
                end->reason != MPV_END_FILE_REASON_QUIT)
                loseFile();
            break;
        }
        case MPV_EVENT_PROPERTY_CHANGE: {
            const auto* change = static_cast<const mpv_event_property*>(event.data);
            if (event.reply_userdata == kTimePos && change->format == MPV_FORMAT_DOUBLE && loaded()) {
                emit timeChanged(*static_cast<const double*>(change->data));
            } else if (change->format == MPV_FORMAT_FLAG && *static_cast<const int*>(change->data)) {
                // The notice may be older than the last command; the core's present word decides.
                if (event.reply_userdata == kEofReached && loaded() && eofReached())
                    emit endReached();
                else if (event.reply_userdata == kIdleActive && loaded() && flag("idle-active"))
                    loseFile();
            }
            break;
        }
        default:
            break;
    }
}

void MpvSession::logCoreMessage(const mpv_event_log_message& message)
{
    const QString text = QString::fromUtf8(message.text).trimmed();
    if (text.isEmpty() || loggedForFile_ > kLoggedPerFile)
        return;
    if (++loggedForFile_ > kLoggedPerFile)
        AppLogError(QStringLiteral("Player: further errors with this file are not logged."));
    else
        AppLogError(QStringLiteral("Player (%1): %2").arg(QString::fromUtf8(message.prefix), text));
}

void MpvSession::loseFile()
{
    if (!loaded())
        return;
    loadedId_ = -1;
    emit fileLost();
}

bool MpvSession::load(const QString& path, int timeoutMs)
{
    if (!handle_)
        return false;
    unload();
    loggedForFile_ = 0;
    const QByteArray file = path.toUtf8();
    const char* loadArgs[] = {"loadfile", file.constData(), "replace", nullptr};
    setPaused(true);
    if (!command(loadArgs))
        return false;
    // The playlist changes at once; the loading itself runs on the core's thread.
    int64_t id = -1;
    mpv_get_property(handle_, "playlist/0/id", MPV_FORMAT_INT64, &id);

    enum class Outcome { Waiting, Loaded, Failed } outcome = Outcome::Waiting;
    bool started = false;
    QElapsedTimer clock;
    clock.start();
    while (outcome == Outcome::Waiting) {
        const qint64 left = timeoutMs - clock.elapsed();
        if (left <= 0)
            break;
        const mpv_event* event = mpv_wait_event(handle_, static_cast<double>(left) / 1000.0);
        if (event->event_id == MPV_EVENT_START_FILE) {
            started = static_cast<const mpv_event_start_file*>(event->data)->playlist_entry_id == id;
        } else if (event->event_id == MPV_EVENT_FILE_LOADED && started) {
            outcome = Outcome::Loaded;
        } else if (event->event_id == MPV_EVENT_END_FILE &&
                   static_cast<const mpv_event_end_file*>(event->data)->playlist_entry_id == id) {
            outcome = Outcome::Failed;  // unreadable, or a playlist in disguise
        } else if (event->event_id != MPV_EVENT_NONE) {
            handleEvent(*event);
        }
    }
    if (outcome == Outcome::Loaded && (hasAudio() || hasVideo())) {
        loadedId_ = id;
        return true;
    }
    if (outcome == Outcome::Waiting)
        AppLogError(QStringLiteral("Player: %1 did not open within %2 ms.").arg(path).arg(timeoutMs));
    unload();
    return false;
}

void MpvSession::unload()
{
    loadedId_ = -1;
    const char* stopArgs[] = {"stop", nullptr};
    command(stopArgs);
}

bool MpvSession::setPaused(bool paused)
{
    int value = paused ? 1 : 0;
    return handle_ && mpv_set_property(handle_, "pause", MPV_FORMAT_FLAG, &value) >= 0;
}

bool MpvSession::seek(double seconds)
{
    const QByteArray target = QByteArray::number(seconds, 'f', 3);
    const char* seekArgs[] = {"seek", target.constData(), "absolute", nullptr};
    return loaded() && command(seekArgs);
}

bool MpvSession::setAudioFilter(const QString& filter)
{
    if (!handle_)
        return false;
    const QByteArray utf8 = filter.toUtf8();
    const int error = mpv_set_property_string(handle_, "af", utf8.constData());
    if (error < 0)
        AppLogError(QStringLiteral("Player: the audio filter %1 was refused: %2")
                        .arg(filter, QString::fromUtf8(mpv_error_string(error))));
    return error >= 0;
}

void MpvSession::setVideoWanted(bool wanted)
{
    if (handle_)
        mpv_set_property_string(handle_, "vid", wanted ? "auto" : "no");
}

double MpvSession::duration() const
{
    return loaded() ? number("duration") : 0.0;
}

double MpvSession::timePos() const
{
    return loaded() ? number("time-pos") : 0.0;
}

bool MpvSession::eofReached() const
{
    return flag("eof-reached");
}

bool MpvSession::hasVideo() const
{
    return hasTrack("video");
}

bool MpvSession::hasAudio() const
{
    return hasTrack("audio");
}

bool MpvSession::command(const char* const* args)
{
    if (!handle_)
        return false;
    const int error = mpv_command(handle_, const_cast<const char**>(args));
    if (error < 0)
        qCWarning(lcControls) << "player command" << args[0] << "failed:" << mpv_error_string(error);
    return error >= 0;
}

bool MpvSession::flag(const char* name) const
{
    int value = 0;
    return handle_ && mpv_get_property(handle_, name, MPV_FORMAT_FLAG, &value) >= 0 && value;
}

double MpvSession::number(const char* name) const
{
    double value = 0.0;
    if (!handle_ || mpv_get_property(handle_, name, MPV_FORMAT_DOUBLE, &value) < 0)
        return 0.0;
    return value;
}

bool MpvSession::hasTrack(const char* type) const
{
    // Cover art comes as a video track too; it is not the song's picture.
    mpv_node list{};
    if (!handle_ || mpv_get_property(handle_, "track-list", MPV_FORMAT_NODE, &list) < 0)
        return false;
    bool found = false;
    if (list.format == MPV_FORMAT_NODE_ARRAY) {
        for (int i = 0; i < list.u.list->num && !found; ++i) {
            const mpv_node& track = list.u.list->values[i];
            if (track.format != MPV_FORMAT_NODE_MAP)
                continue;
            bool typeMatches = false, albumArt = false;
            for (int k = 0; k < track.u.list->num; ++k) {
                const char* key = track.u.list->keys[k];
                const mpv_node& value = track.u.list->values[k];
                if (std::strcmp(key, "type") == 0 && value.format == MPV_FORMAT_STRING)
                    typeMatches = std::strcmp(value.u.string, type) == 0;
                else if (std::strcmp(key, "albumart") == 0 && value.format == MPV_FORMAT_FLAG)
                    albumArt = value.u.flag != 0;
            }
            found = typeMatches && !albumArt;
        }
    }
    mpv_free_node_contents(&list);
    return found;
}

}  // namespace td
