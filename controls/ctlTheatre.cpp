#include "controls/ctlTheatre.h"
#include "controls/MpvSession.h"
#include "controls/MpvVideo.h"
#include <QFileInfo>
#include <QMouseEvent>
#include <cmath>

namespace td {
namespace {

// Long enough for any sound file on a local or shared disk to be probed; short enough that a bad one
// never looks like a hang.
constexpr int kOpenTimeoutMs = 4000;

int wholeSeconds(double seconds)
{
    return seconds > 0.0 ? static_cast<int>(std::floor(seconds)) : 0;
}

}  // namespace

ctlTheatre::ctlTheatre(QWidget* parent) : ctlTheatre(Output{}, parent) {}

ctlTheatre::ctlTheatre(const Output& output, QWidget* parent) : QWidget(parent)
{
    setAutoFillBackground(true);
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);

    // Without GL (the offscreen test platform, a broken driver) sound, state and events still work.
    const bool picture = output.video.isEmpty() && MpvVideo::GlAvailable();
    QString vo = output.video;
    if (vo.isEmpty() && !picture)
        vo = QStringLiteral("null");
    session_ = std::make_unique<MpvSession>(MpvSession::Outputs{vo, output.audio, output.audioFile});
    connect(session_.get(), &MpvSession::timeChanged, this, &ctlTheatre::timeChanged);
    connect(session_.get(), &MpvSession::endReached, this, &ctlTheatre::endReached);
    connect(session_.get(), &MpvSession::fileLost, this, &ctlTheatre::fileLost);
    if (picture && session_->valid()) {
        video_ = new MpvVideo(*session_, this);
        video_->setGeometry(rect());
    }
}

ctlTheatre::~ctlTheatre()
{
    // The renderer must be gone before its core.
    delete video_;
    session_.reset();
}

bool ctlTheatre::DoCommand(const QString& verb, const QVariant& argument)
{
    using Verb = bool (ctlTheatre::*)(const QVariant&);
    static const std::pair<QLatin1StringView, Verb> verbs[] = {
        {QLatin1StringView("open"), &ctlTheatre::openFile},
        {QLatin1StringView("play"), &ctlTheatre::startPlay},
        {QLatin1StringView("Play"), &ctlTheatre::resumePlay},
        {QLatin1StringView("Pause"), &ctlTheatre::pausePlay},
        {QLatin1StringView("close"), &ctlTheatre::closeFile},
        {QLatin1StringView("Seek"), &ctlTheatre::seekTo},
        {QLatin1StringView("RefreshVideo"), &ctlTheatre::refreshVideo},
        {QLatin1StringView("channel"), &ctlTheatre::chooseChannel},
    };
    for (const auto& [name, handler] : verbs)
        if (verb == name)
            return (this->*handler)(argument);
    return false;
}

QString ctlTheatre::GetInfo(const QString& name) const
{
    if (name == QLatin1String("PlayerState"))
        return QString::number(static_cast<int>(state_));
    if (name == QLatin1String("HasVideo"))
        return hasVideo_ ? QStringLiteral("True") : QStringLiteral("False");
    if (name == QLatin1String("Length"))
        return QString::number(qRound(session_->duration()));
    if (name == QLatin1String("position"))
        return QString::number(wholeSeconds(session_->timePos()));
    if (name == QLatin1String("FileName"))
        return fileName_;
    return QString();
}

bool ctlTheatre::openFile(const QVariant& path)
{
    const QString file = path.toString();
    forgetFile();
    // A folder would load as a playlist of everything in it.
    if (!QFileInfo(file).isFile()) {
        session_->unload();
        return false;
    }
    if (!session_->load(file, kOpenTimeoutMs))
        return false;
    fileName_ = file;
    hasVideo_ = session_->hasVideo();
    return true;
}

bool ctlTheatre::startPlay(const QVariant&)
{
    if (!session_->loaded())
        return false;
    if (state_ == State::Playing)
        return true;
    // A file that played to its end stays open at its last frame; playing it again starts it over.
    if (session_->eofReached())
        session_->seek(0.0);
    if (!session_->setPaused(false))
        return false;
    state_ = State::Playing;
    return true;
}

bool ctlTheatre::resumePlay(const QVariant& argument)
{
    return startPlay(argument);
}

bool ctlTheatre::pausePlay(const QVariant&)
{
    if (state_ == State::Paused)
        return true;
    if (state_ != State::Playing || !session_->setPaused(true))
        return false;
    state_ = State::Paused;
    return true;
}

bool ctlTheatre::closeFile(const QVariant&)
{
    session_->unload();
    forgetFile();
    return session_->valid();
}

bool ctlTheatre::seekTo(const QVariant& seconds)
{
    bool number = false;
    const double target = seconds.toDouble(&number);
    if (!number || target < 0.0)
        return false;
    // At or past the end the core holds the last frame and never reports the end: the song is over.
    const double length = session_->duration();
    if (state_ != State::Stopped && length > 0.0 && target >= length - 0.25) {
        QMetaObject::invokeMethod(this, &ctlTheatre::endReached, Qt::QueuedConnection);
        return true;
    }
    return session_->seek(std::floor(target));
}

bool ctlTheatre::refreshVideo(const QVariant&)
{
    if (video_)
        video_->update();
    return true;
}

bool ctlTheatre::chooseChannel(const QVariant& choice)
{
    // The filter is the core's own setting: it stays for the next file and applies while playing.
    const std::optional<QString> filter = ChannelFilter(choice.toString());
    return filter && session_->setAudioFilter(*filter);
}

void ctlTheatre::timeChanged(double seconds)
{
    const int second = wholeSeconds(seconds);
    if (second == second_)
        return;
    second_ = second;
    emit PositionChanged();
}

void ctlTheatre::endReached()
{
    if (state_ == State::Stopped)
        return;
    state_ = State::Stopped;
    emit PlayStopped();
}

void ctlTheatre::fileLost()
{
    const bool active = state_ != State::Stopped;
    forgetFile();
    if (active)
        emit PlayStopped();
}

void ctlTheatre::forgetFile()
{
    state_ = State::Stopped;
    fileName_.clear();
    hasVideo_ = false;
    second_ = -1;
}

void ctlTheatre::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (video_)
        video_->setGeometry(rect());
}

void ctlTheatre::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->accept();
    emit DblClick();
}

}  // namespace td
