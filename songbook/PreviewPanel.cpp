#include "songbook/PreviewPanel.h"
#include "controls/Twips.h"
#include "regions/WindowText.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include <QGroupBox>
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

PreviewPanel::PreviewPanel(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picMoni"));
    fraMoni_ = new QGroupBox(this);
    fraMoni_->setObjectName(QStringLiteral("fraMoni"));
    picMoni1_ = new PictureArea(fraMoni_);
    picMoni1_->setObjectName(QStringLiteral("picMoni1"));
    picMoni2_ = new QWidget(fraMoni_);
    picMoni2_->setObjectName(QStringLiteral("picMoni2"));
    buildTransport();
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
        lblChan_[std::size_t(i)] = new QLabel(QString::fromLatin1(names[i]), picMoni2_);
        lblChan_[std::size_t(i)]->setObjectName(QStringLiteral("lblChan(%1)").arg(i));
        lblChan_[std::size_t(i)]->setAlignment(Qt::AlignCenter);
        lblChan_[std::size_t(i)]->setFrameShape(QFrame::StyledPanel);
        lblChan_[std::size_t(i)]->setToolTip(QStringLiteral("Channel - L+R"));
    }
    // Until the player comes, nothing here can act; the controls show where it will stand.
    picMoni2_->setEnabled(false);
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
}

void PreviewPanel::Stop()
{
    cmdPause_->hide();
    cmdPlay_->show();
    hsbPosi_->setRange(0, 100);
    hsbPosi_->setValue(0);
    fraMoni_->setTitle(QString());
}

void PreviewPanel::resizeEvent(QResizeEvent*)
{
    fraMoni_->setGeometry(rect());
    const QRect inner = fraMoni_->contentsRect();
    const int margin = TwipsToPixels(60, this);
    const int transport = TwipsToPixels(900, this);
    picMoni1_->setGeometry(inner.left() + margin, inner.top(), std::max(0, inner.width() - 2 * margin),
                           std::max(0, height() - inner.top() - transport));
    const int top = picMoni1_->geometry().bottom() + 1 + TwipsToPixels(30, this);
    picMoni2_->setGeometry(picMoni1_->x(), top, picMoni1_->width(), std::max(0, height() - top - margin));
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
