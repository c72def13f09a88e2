#include "songbook/SplitterBar.h"
#include "controls/Twips.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"
#include <QMouseEvent>
#include <algorithm>

namespace td {

SplitterBar::SplitterBar(Qt::Orientation orientation, QWidget* parent)
    : QFrame(parent), orientation_(orientation)
{
    setFrameShape(QFrame::NoFrame);
    setCursor(orientation == Qt::Vertical ? Qt::SplitHCursor : Qt::SplitVCursor);
}

void SplitterBar::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPoint at = event->position().toPoint();
    emit dragged(orientation_ == Qt::Vertical ? x() + at.x() : y() + at.y());
}

void ArrangeSidePanels(QWidget* window, const SidePanels& p, int& left, bool rightWanted)
{
    const int w = window->width(), h = window->height();
    if (left >= w)
        left = w * 2 / 3;
    const int bar = p.bar->width();
    p.bar->setGeometry(left, 0, bar, h);
    p.bar->setVisible(rightWanted);
    const int rightWidth = rightWanted ? std::max(0, w - left - bar) : 0;
    p.right->setGeometry(w - rightWidth, 0, rightWidth, h);
    p.right->setVisible(rightWidth > 0);
    p.buttons->setGeometry(0, 0, p.buttons->width(), h);
    const int viewWidth = w - rightWidth - p.buttons->width() - (rightWanted ? bar : 0);
    p.view->setGeometry(p.buttons->width(), 0, std::max(0, viewWidth), h);
}

int SplitterPosition(int position, int extent, const QWidget* window)
{
    const int least = TwipsToPixels(120, window);
    return std::clamp(position, least, std::max(least, extent - TwipsToPixels(240, window)));
}

bool ViewSetting(const QString& key)
{
    return NumericValue(AppIniRead(key, QStringLiteral("1"))) != 0;
}

void StoreViewSetting(WindowFrame& frame, const QString& key, const char* menuEntry, bool visible)
{
    AppIniWrite(key, visible ? QStringLiteral("1") : QStringLiteral("0"));
    frame.setMenuChecked(QString::fromLatin1(menuEntry), visible);
}

}  // namespace td
