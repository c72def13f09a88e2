#pragma once
#include <QString>
#include <QVariant>
#include <QWidget>
#include <memory>

namespace td {

class MpvSession;
class MpvVideo;

// The preview player: a file opened, played, paused, sought and closed through verbs, its state read
// through names, its picture inside the widget. One recorded channel can be put on both speakers
// (karaoke discs carry the singer on one of them); the choice outlives the file.
class ctlTheatre : public QWidget {
    Q_OBJECT
public:
    // Where picture and sound go: "" is the widget and the system's sound; "null" is nowhere; "pcm"
    // audio writes a WAV file to audioFile. Anything but "" video makes no picture widget.
    struct Output {
        QString video;
        QString audio;
        QString audioFile;
    };

    explicit ctlTheatre(QWidget* parent = nullptr);
    ctlTheatre(const Output& output, QWidget* parent = nullptr);
    ~ctlTheatre() override;

    // "open" (path), "play", "Play" (resume), "Pause", "close", "Seek" (seconds), "RefreshVideo",
    // "channel" ("L"/"l"/"left", "R"/"r"/"right", "s"). False for any other verb, and when it failed.
    bool DoCommand(const QString& verb, const QVariant& argument = {});
    // "PlayerState" ("0" stopped, "1" playing, "2" paused), "HasVideo" ("True"/"False"), "Length" and
    // "position" (whole seconds), "FileName". "" for any other name.
    QString GetInfo(const QString& name) const;

signals:
    void DblClick();
    // Playing stopped by itself: the end of the file or a playback error; not after "close".
    void PlayStopped();
    void PositionChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    enum class State { Stopped, Playing, Paused };

    bool openFile(const QVariant& path);
    bool startPlay(const QVariant&);
    bool resumePlay(const QVariant&);
    bool pausePlay(const QVariant&);
    bool closeFile(const QVariant&);
    bool seekTo(const QVariant& seconds);
    bool refreshVideo(const QVariant&);
    bool chooseChannel(const QVariant& choice);

    void timeChanged(double seconds);
    void endReached();
    void fileLost();
    void forgetFile();

    std::unique_ptr<MpvSession> session_;
    MpvVideo* video_ = nullptr;
    State state_ = State::Stopped;
    QString fileName_;
    bool hasVideo_ = false;
    int second_ = -1;
};

}  // namespace td
