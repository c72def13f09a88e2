#include "songbook/SplitterBar.h"
#include <QMouseEvent>

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

}  // namespace td
