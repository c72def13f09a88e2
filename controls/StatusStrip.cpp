#include "controls/StatusStrip.h"
#include "shell/services/AppError.h"
#include "shell/services/Translate.h"
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <limits>

namespace td {

namespace {
// How often a whole pass, which runs without the event loop, repaints its counter.
constexpr qint64 kRepaintMs = 30;
}  // namespace

namespace {
struct MoveButton {
    const char16_t* tag;
    const char16_t* tip;
    QStyle::StandardPixmap icon;
};
constexpr MoveButton kMoveButtons[4] = {
    {u"first", u"First", QStyle::SP_MediaSkipBackward},
    {u"previous", u"Previous", QStyle::SP_MediaSeekBackward},
    {u"next", u"Next", QStyle::SP_MediaSeekForward},
    {u"last", u"Last", QStyle::SP_MediaSkipForward},
};
}  // namespace

StatusStrip::StatusStrip(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picStatus"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 2, 0, 0);
    layout->setSpacing(2);
    for (int i = 0; i < 4; ++i) {
        auto* button = new QPushButton(this);
        button->setObjectName(QStringLiteral("cmdMove(%1)").arg(i));
        const QString tag = QString::fromUtf16(kMoveButtons[i].tag);
        button->setProperty("Tag", tag);
        button->setIcon(style()->standardIcon(kMoveButtons[i].icon));
        button->setToolTip(TranslateText(QString::fromUtf16(kMoveButtons[i].tip)));
        button->setFocusPolicy(Qt::NoFocus);
        button->setFixedWidth(button->sizeHint().height() + 4);
        connect(button, &QPushButton::clicked, this, [this, tag] { emit MoveRequested(tag); });
        cmdMove_[std::size_t(i)] = button;
    }
    txtMove_ = new QLineEdit(this);
    txtMove_->setObjectName(QStringLiteral("txtMove"));
    txtMove_->setAlignment(Qt::AlignRight);
    txtMove_->setFixedWidth(txtMove_->fontMetrics().horizontalAdvance(QStringLiteral("00000000")) + 8);
    txtMove_->installEventFilter(this);
    layout->addWidget(cmdMove_[0]);
    layout->addWidget(cmdMove_[1]);
    layout->addWidget(txtMove_);
    layout->addWidget(cmdMove_[2]);
    layout->addWidget(cmdMove_[3]);

    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName(QStringLiteral("lblStatus"));
    lblStatus_->setMinimumWidth(
        lblStatus_->fontMetrics().horizontalAdvance(QStringLiteral("0000000 / 0000000")));
    layout->addWidget(lblStatus_);
    pbrStatus_ = new QProgressBar(this);
    pbrStatus_->setObjectName(QStringLiteral("pbrStatus"));
    pbrStatus_->setTextVisible(false);
    layout->addWidget(pbrStatus_, 1);
    layout->addStretch(0);
    cmdCancel_ = new QPushButton(TranslateText(QStringLiteral("Cancel")), this);
    cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { canceled_ = true; });
    layout->addWidget(cmdCancel_);
    pbrStatus_->hide();
    cmdCancel_->hide();
}

void StatusStrip::setPosition(const QString& text)
{
    txtMove_->setText(text);
}

QString StatusStrip::Text() const
{
    return text_;
}

void StatusStrip::StartStatus(const QString& text, qint64 min, qint64 max, bool canCancel)
{
    canceled_ = false;
    text_ = text.isEmpty() ? QStringLiteral("%1 / %2").arg(min).arg(max) : text;
    max_ = max;
    value_ = min;
    cmdCancel_->setEnabled(canCancel);
    pbrStatus_->show();
    cmdCancel_->show();
    showNow();
}

void StatusStrip::StepStatus(qint64 n)
{
    if (n != 0) {
        if (max_ < n)
            max_ = n;
        value_ = n;
    } else {
        if (value_ >= max_)
            max_ = value_ + 1;
        ++value_;
    }
    showCounter();
}

// A step only changes numbers; the widgets follow a few dozen times a second, which is all an eye
// can see and keeps a million steps cheap.
void StatusStrip::showCounter()
{
    text_ = QStringLiteral("%1 / %2").arg(value_).arg(max_);
    if (!sinceRepaint_.isValid() || sinceRepaint_.elapsed() >= kRepaintMs) {
        showNow();
        pbrStatus_->repaint();
        lblStatus_->repaint();
    }
}

void StatusStrip::showNow()
{
    constexpr qint64 kIntMax = std::numeric_limits<int>::max();
    const int scale = max_ > kIntMax ? int(max_ / kIntMax + 1) : 1;
    pbrStatus_->setRange(0, int(max_ / scale));
    pbrStatus_->setValue(int(value_ / scale));
    lblStatus_->setText(text_);
    sinceRepaint_.restart();
}

void StatusStrip::EndStatus()
{
    pbrStatus_->hide();
    cmdCancel_->hide();
    text_.clear();
    lblStatus_->clear();
}

bool StatusStrip::CheckCancel()
{
    showNow();
    return canceled_;
}

bool StatusStrip::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == txtMove_ && event->type() == QEvent::KeyRelease) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter)
            emit MoveToRequested(IntegerValue(txtMove_->text()));
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace td
