#pragma once
#include <QObject>
#include <QString>
#include <atomic>
#include <cstdint>
#include <optional>

struct mpv_handle;
struct mpv_event;
struct mpv_event_log_message;

namespace td {

// The audio filter that puts one recorded channel on both speakers: "L"/"l"/"left", "R"/"r"/"right",
// or "s" for both as recorded (no filter). Nothing for any other choice.
std::optional<QString> ChannelFilter(const QString& choice);

// One libmpv player core. Its events are drained on the thread that made it (the interface thread),
// woken by the core rather than by a timer. Files load paused, and a load waits for the core's answer
// only up to a deadline, so a bad file never holds the caller.
class MpvSession : public QObject {
    Q_OBJECT
public:
    // The core's video and audio outputs: "" video is the render API (vo=libmpv), "" audio is the
    // system's device or silence when there is none; "pcm" audio writes a WAV file.
    struct Outputs {
        QString vo;
        QString ao;
        QString aoFile;
    };

    explicit MpvSession(const Outputs& outputs, QObject* parent = nullptr);
    ~MpvSession() override;

    bool valid() const { return handle_ != nullptr; }
    mpv_handle* handle() const { return handle_; }

    // True when the file loaded within timeoutMs and has sound or a picture; otherwise nothing stays
    // loaded.
    bool load(const QString& path, int timeoutMs);
    void unload();
    bool loaded() const { return loadedId_ >= 0; }

    bool setPaused(bool paused);
    bool seek(double seconds);
    bool setAudioFilter(const QString& filter);
    // The picture is decoded only while something can show it.
    void setVideoWanted(bool wanted);

    double duration() const;
    double timePos() const;
    bool eofReached() const;
    bool hasVideo() const;
    bool hasAudio() const;

signals:
    void timeChanged(double seconds);
    // The loaded file played to its end; it stays loaded at its last frame.
    void endReached();
    // The loaded file stopped by itself before its end (a playback error) and is no longer loaded.
    void fileLost();

private:
    static void onWakeup(void* self);
    void drain();
    void handleEvent(const mpv_event& event);
    void logCoreMessage(const mpv_event_log_message& message);
    void loseFile();
    bool command(const char* const* args);
    bool flag(const char* name) const;
    double number(const char* name) const;
    bool hasTrack(const char* type) const;

    mpv_handle* handle_ = nullptr;
    std::atomic<bool> drainQueued_{false};
    int64_t loadedId_ = -1;
    int loggedForFile_ = 0;
};

}  // namespace td
