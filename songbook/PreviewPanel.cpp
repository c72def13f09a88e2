#include "songbook/PreviewPanel.h"
#include "controls/Twips.h"
#include "regions/WindowText.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include <QGroupBox>
#include <QMouseEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QStyle>
#include <cmath>

namespace td {

void PictureArea::setPicture(const QPixmap& picture)
{
    picture_ = picture;
    update();
}

void PictureArea::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    if (picture_.isNull())
        p.fillRect(rect(), Qt::black);
    else
        p.drawPixmap(rect(), picture_);
}

void PictureArea::mouseDoubleClickEvent(QMouseEvent*)
{
    emit DblClick();
}

void PictureArea::resizeEvent(QResizeEvent*)
{
    emit Resized();
}

void ChannelLabel::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit clicked();
}

ctlTheatre::Output& PreviewPanel::PlayerOutput()
{
    static ctlTheatre::Output output;
    return output;
}

PreviewPanel::PreviewPanel(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picMoni"));
    fraMoni_ = new QGroupBox(this);
    fraMoni_->setObjectName(QStringLiteral("fraMoni"));
    picMoni1_ = new PictureArea(fraMoni_);
    picMoni1_->setObjectName(QStringLiteral("picMoni1"));
    ctlTheatre_ = new ctlTheatre(PlayerOutput(), picMoni1_);
    ctlTheatre_->setObjectName(QStringLiteral("ctlTheatre"));
    ctlTheatre_->hide();
    picMoni2_ = new QWidget(fraMoni_);
    picMoni2_->setObjectName(QStringLiteral("picMoni2"));
    buildTransport();
    connectTransport();
}

void PreviewPanel::buildTransport()
{
    auto button = [this](const char* name, QStyle::StandardPixmap icon, const char* tip) {
        auto* b = new QPushButton(style()->standardIcon(icon), QString(), picMoni2_);
        b->setObjectName(QString::fromLatin1(name));
        b->setToolTip(QString::fromLatin1(tip));
        return b;
    };
    cmdPlay_ = button("cmdPlay", QStyle::SP_MediaPlay, "Play");
    cmdPause_ = button("cmdPause", QStyle::SP_MediaPause, "Pause");
    cmdPause_->hide();
    cmdStop_ = button("cmdStop", QStyle::SP_MediaStop, "Stop");
    hsbPosi_ = new QScrollBar(Qt::Horizontal, picMoni2_);
    hsbPosi_->setObjectName(QStringLiteral("hsbPosi"));
    hsbPosi_->setRange(0, 100);
    hsbPosi_->setPageStep(1);  // a second per click; a song of a few seconds still shows where it is
    sldVolume_ = new QSlider(Qt::Horizontal, picMoni2_);
    sldVolume_->setObjectName(QStringLiteral("sldVolume"));
    sldVolume_->setRange(0, 10);
    sldVolume_->setToolTip(QStringLiteral("Volume"));
    const char* names[] = {"L", "R"};
    const char* tips[] = {"Left channel", "Right channel"};
    for (int i = 0; i < 2; ++i) {
        cmdChan_[std::size_t(i)] = new QPushButton(QString::fromLatin1(names[i]), picMoni2_);
        cmdChan_[std::size_t(i)]->setObjectName(QStringLiteral("cmdChan(%1)").arg(i));
        cmdChan_[std::size_t(i)]->setToolTip(QString::fromLatin1(tips[i]));
        cmdChan_[std::size_t(i)]->hide();  // both channels are on
        lblChan_[std::size_t(i)] = new ChannelLabel(QString::fromLatin1(names[i]), picMoni2_);
        lblChan_[std::size_t(i)]->setObjectName(QStringLiteral("lblChan(%1)").arg(i));
        lblChan_[std::size_t(i)]->setAlignment(Qt::AlignCenter);
        lblChan_[std::size_t(i)]->setFrameShape(QFrame::StyledPanel);
        lblChan_[std::size_t(i)]->setToolTip(QStringLiteral("Channel - L+R"));
    }
    // The bar reports a drag once, when the thumb is let go; while it moves, the drag seeks by itself.
    hsbPosi_->setTracking(false);
}

bool PreviewPanel::LoadLogo()
{
    const QString english = AppPath() + QStringLiteral("/Region/English");
    for (const QString& candidate :
         {GetRegionFolder() + QStringLiteral("/Logo.bmp"), GetRegionFolder() + QStringLiteral("/Logo.jpg"),
          english + QStringLiteral("/Logo.bmp"), english + QStringLiteral("/Logo.jpg")}) {
        if (FileKind(candidate) != u"f")
            continue;
        QPixmap logo(candidate);
        picMoni1_->setPicture(logo);
        return !logo.isNull();
    }
    return false;
}

// The stored value is ten times the slider's step, rounded half to even; a value that is no number
// or lies beyond the slider gives the middle step.
void PreviewPanel::LoadVolume()
{
    bool ok = false;
    const double stored = AppIniRead(QStringLiteral("Volume"), QStringLiteral("50")).trimmed().toDouble(&ok);
    const double step = std::nearbyint(stored / 10);
    const bool fits = ok && step >= sldVolume_->minimum() && step <= sldVolume_->maximum();
    sldVolume_->setValue(fits ? int(step) : 5);
    connect(sldVolume_, &QSlider::valueChanged, this, &PreviewPanel::sldVolume_Change, Qt::UniqueConnection);
}

void PreviewPanel::resizeEvent(QResizeEvent*)
{
    fraMoni_->setGeometry(rect());
    const QRect inner = fraMoni_->contentsRect();
    const int margin = TwipsToPixels(60, this);
    const int transport = TwipsToPixels(900, this);
    // Room for the caption whether or not something plays now, so it is never drawn under the picture.
    const int top = std::max(inner.top(), fraMoni_->fontMetrics().height() + 2);
    picMoni1_->setGeometry(inner.left() + margin, top, std::max(0, inner.width() - 2 * margin),
                           std::max(0, height() - top - transport));
    const int rowTop = picMoni1_->geometry().bottom() + 1 + TwipsToPixels(30, this);
    picMoni2_->setGeometry(picMoni1_->x(), rowTop, picMoni1_->width(), std::max(0, height() - rowTop - margin));
    layoutTransport();
}

// Play, pause and stop at the left, the position bar, the volume ending 1400 twips short of the right
// edge and the two channel pairs at 700 and 350 from it.
void PreviewPanel::layoutTransport()
{
    const int w = picMoni2_->width();
    const int h = std::min(picMoni2_->height(), TwipsToPixels(400, this));
    const int gap = TwipsToPixels(60, this);
    int x = 0;
    for (QPushButton* b : {cmdPlay_, cmdPause_, cmdStop_}) {
        b->setGeometry(x, 0, h + gap, h);
        if (b != cmdPlay_)
            x += h + 2 * gap;
    }
    const int volumeRight = w - TwipsToPixels(1400, this);
    const int volumeWidth = TwipsToPixels(1200, this);
    sldVolume_->setGeometry(volumeRight - volumeWidth, 0, volumeWidth, h);
    hsbPosi_->setGeometry(x, (h - hsbPosi_->sizeHint().height()) / 2,
                          std::max(0, volumeRight - volumeWidth - gap - x), hsbPosi_->sizeHint().height());
    const int chanWidth = TwipsToPixels(330, this);
    for (int i = 0; i < 2; ++i) {
        const int left = w - TwipsToPixels(i == 0 ? 700 : 350, this);
        cmdChan_[std::size_t(i)]->setGeometry(left, 0, chanWidth, h);
        lblChan_[std::size_t(i)]->setGeometry(left, 0, chanWidth, h);
    }
}

}  // namespace td
