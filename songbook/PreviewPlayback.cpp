// The preview's transport: open and play one file, stop, pause with its lag, the position bar, the
// volume, the channel marks and the double click that hands the picture to the room player.
#include "config/MixerVolume.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "songbook/PreviewPanel.h"
#include <QGroupBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>

namespace td {

namespace {

enum PlayerState { kStopped = 0, kPlaying = 1, kPaused = 2 };

bool isLeft(const QString& c)
{
    return c == u"L" || c == u"l" || c == u"left";
}

bool isRight(const QString& c)
{
    return c == u"R" || c == u"r" || c == u"right";
}

}  // namespace

void PreviewPanel::connectTransport()
{
    connect(cmdPlay_, &QPushButton::clicked, this, &PreviewPanel::cmdPlay_Click);
    connect(cmdPause_, &QPushButton::clicked, this, &PreviewPanel::cmdPause_Click);
    connect(cmdStop_, &QPushButton::clicked, this, &PreviewPanel::StopSong);
    connect(ctlTheatre_, &ctlTheatre::PlayStopped, this, &PreviewPanel::StopSong);
    connect(ctlTheatre_, &ctlTheatre::PositionChanged, this, &PreviewPanel::ctlTheatre_PositionChanged);
    connect(ctlTheatre_, &ctlTheatre::DblClick, this, &PreviewPanel::picMoni1_DblClick);
    connect(picMoni1_, &PictureArea::DblClick, this, &PreviewPanel::picMoni1_DblClick);
    connect(picMoni1_, &PictureArea::Resized, this, &PreviewPanel::fitPicture);
    connect(hsbPosi_, &QScrollBar::valueChanged, this, &PreviewPanel::hsbPosi_Change);
    connect(hsbPosi_, &QScrollBar::sliderMoved, this,
            [this](int value) { ctlTheatre_->DoCommand(QStringLiteral("Seek"), value); });
    for (int i = 0; i < 2; ++i) {
        connect(cmdChan_[std::size_t(i)], &QPushButton::clicked, this, [this, i] { cmdChan_Click(i); });
        // A click on a mark turns its channel off: the other one is left.
        connect(lblChan_[std::size_t(i)], &ChannelLabel::clicked, this,
                [this, i] { SetChannel(i == 0 ? QStringLiteral("R") : QStringLiteral("L")); });
    }
}

bool PreviewPanel::Preview(const QString& path)
{
    hsbPosi_->setValue(0);
    if (!ctlTheatre_->DoCommand(QStringLiteral("open"), path)) {
        MsgInfo(QStringLiteral("Can't play <") + path + QStringLiteral(">!"));
        return false;
    }
    if (ctlTheatre_->GetInfo(QStringLiteral("HasVideo")) == u"True") {
        ctlTheatre_->show();
        ctlTheatre_->setGeometry(0, 0, picMoni1_->width(), picMoni1_->height());
        ctlTheatre_->DoCommand(QStringLiteral("RefreshVideo"));
    } else {
        ctlTheatre_->hide();  // the logo stays in sight
    }
    SetChannel(GetChannel());
    setMasterVolume();
    // Positions are whole seconds, so any length fits the bar.
    hsbPosi_->setMaximum(int(IntegerValue(ctlTheatre_->GetInfo(QStringLiteral("Length")))));
    fraMoni_->setTitle(QStringLiteral("Playing - ") + path);
    ctlTheatre_->DoCommand(QStringLiteral("play"));
    showStateButtons(playerState());
    return true;
}

void PreviewPanel::StopSong()
{
    ctlTheatre_->DoCommand(QStringLiteral("close"));
    ctlTheatre_->hide();
    cmdPlay_->raise();
    hsbPosi_->setValue(0);
    hsbPosi_->setMaximum(100);
    fraMoni_->setTitle(QString());
    showStateButtons(playerState());
}

int PreviewPanel::playerState() const
{
    return int(IntegerValue(ctlTheatre_->GetInfo(QStringLiteral("PlayerState"))));
}

void PreviewPanel::showStateButtons(int state)
{
    cmdPause_->setVisible(state == kPlaying);
    cmdPlay_->setVisible(state != kPlaying);
}

// Both buttons show what the state was before the click: after a resume "Play" stays in sight until the
// next click, as after a pause "Pause" does.
void PreviewPanel::cmdPlay_Click()
{
    const int state = playerState();
    if (state == kStopped)
        emit PlayWanted();
    else if (state == kPaused)
        ctlTheatre_->DoCommand(QStringLiteral("Play"));
    showStateButtons(state);
}

void PreviewPanel::cmdPause_Click()
{
    const int state = playerState();
    if (state == kPlaying)
        ctlTheatre_->DoCommand(QStringLiteral("Pause"));
    showStateButtons(state);
}

void PreviewPanel::ctlTheatre_PositionChanged()
{
    hsbPosiTag_ = QStringLiteral("0");
    hsbPosi_->setValue(int(IntegerValue(ctlTheatre_->GetInfo(QStringLiteral("position")))));
    hsbPosiTag_.clear();
}

void PreviewPanel::hsbPosi_Change(int value)
{
    if (hsbPosiTag_.isEmpty())
        ctlTheatre_->DoCommand(QStringLiteral("Seek"), value);
}

void PreviewPanel::picMoni1_DblClick()
{
    const QString file = ctlTheatre_->GetInfo(QStringLiteral("FileName"));
    if (file.isEmpty())
        return;
    StopSong();
    emit HandOffWanted(file);
}

void PreviewPanel::fitPicture()
{
    if (ctlTheatre_->GetInfo(QStringLiteral("HasVideo")) == u"True") {
        ctlTheatre_->setGeometry(0, 0, picMoni1_->width(), picMoni1_->height());
        ctlTheatre_->DoCommand(QStringLiteral("RefreshVideo"));
    } else if (picMoni1_->hasPicture()) {
        picMoni1_->update();
    }
}

void PreviewPanel::setMasterVolume()
{
    int volume = sldVolume_->value() * 10, balance = 0;
    MixerVolume(0, volume, balance);
}

void PreviewPanel::sldVolume_Change(int value)
{
    setMasterVolume();
    AppIniWrite(QStringLiteral("Volume"), QString::number(value * 10));
}

QString PreviewPanel::GetChannel() const
{
    const bool left = !lblChan_[0]->isHidden(), right = !lblChan_[1]->isHidden();
    if (left && !right)
        return QStringLiteral("L");
    if (right && !left)
        return QStringLiteral("R");
    return QStringLiteral("S");
}

void PreviewPanel::SetChannel(const QString& channel)
{
    const bool left = isLeft(channel), right = isRight(channel);
    ctlTheatre_->DoCommand(QStringLiteral("channel"), left || right ? channel : QStringLiteral("s"));
    lblChan_[0]->setVisible(!right);
    cmdChan_[0]->setVisible(right);
    lblChan_[1]->setVisible(!left);
    cmdChan_[1]->setVisible(left);
    const QString tip = left ? QStringLiteral("Channel - L")
                             : (right ? QStringLiteral("Channel - R") : QStringLiteral("Channel - L+R"));
    for (int i = 0; i < 2; ++i) {
        lblChan_[std::size_t(i)]->setToolTip(tip);
        cmdChan_[std::size_t(i)]->setToolTip(tip);
    }
}

// A button turns its channel on: alone when the other channel is off too, else both play.
void PreviewPanel::cmdChan_Click(int index)
{
    const bool otherOff = !cmdChan_[std::size_t(1 - index)]->isHidden();
    if (otherOff)
        SetChannel(index == 0 ? QStringLiteral("L") : QStringLiteral("R"));
    else
        SetChannel(QStringLiteral("B"));
}

}  // namespace td
