#include "singers/PhotoView.h"
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImageReader>
#include <QMimeData>
#include <QPainter>
#include <QUrl>
#include <algorithm>

namespace td {

namespace {

// A photograph never needs more pixels than a screen has; a camera's 30 MB original is read smaller.
constexpr int kLargestSide = 2048;

bool carriesFiles(const QMimeData* data)
{
    if (!data || !data->hasUrls())
        return false;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile())
            return true;
    return false;
}

}  // namespace

PhotoView::PhotoView(QWidget* parent) : QWidget(parent)
{
    setAcceptDrops(true);
    setMinimumSize(16, 16);
}

bool PhotoView::load(const QString& file)
{
    QImageReader reader(file);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() && std::max(size.width(), size.height()) > kLargestSide)
        reader.setScaledSize(size.scaled(kLargestSide, kLargestSide, Qt::KeepAspectRatio));
    QImage image = reader.read();
    if (image.isNull())
        return false;
    image_ = std::move(image);
    update();
    return true;
}

void PhotoView::clear()
{
    image_ = QImage();
    update();
}

QRect PhotoView::pictureRect() const
{
    if (image_.isNull())
        return {};
    const QSize fitted = image_.size().scaled(size(), Qt::KeepAspectRatio);
    return QRect(QPoint((width() - fitted.width()) / 2, (height() - fitted.height()) / 2), fitted);
}

void PhotoView::paintEvent(QPaintEvent*)
{
    if (image_.isNull())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(pictureRect(), image_);
}

void PhotoView::dragEnterEvent(QDragEnterEvent* event)
{
    dragMoveEvent(event);
}

void PhotoView::dragMoveEvent(QDragMoveEvent* event)
{
    if (carriesFiles(event->mimeData())) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    } else {
        event->ignore();
    }
}

void PhotoView::dropEvent(QDropEvent* event)
{
    QString first;
    if (carriesFiles(event->mimeData()))
        for (const QUrl& url : event->mimeData()->urls())
            if (url.isLocalFile()) {
                first = url.toLocalFile();
                break;
            }
    if (!first.isEmpty() && dropHandler_ && dropHandler_(first)) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    } else {
        event->setDropAction(Qt::IgnoreAction);
        event->ignore();
    }
}

}  // namespace td
