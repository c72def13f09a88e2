#pragma once
#include <QImage>
#include <QWidget>
#include <functional>

namespace td {

// The singer's photograph, scaled to the panel with its aspect kept and centred; a drop target for
// files. A drag shows "copy" when it carries at least one file; the drop hands the first file to the
// owner, whose answer decides between "copy" and "none".
class PhotoView : public QWidget {
    Q_OBJECT
public:
    explicit PhotoView(QWidget* parent = nullptr);

    // False, with nothing shown, when the file holds no picture Qt can read.
    bool load(const QString& file);
    void clear();
    const QImage& image() const { return image_; }
    // Where the picture is drawn inside the view.
    QRect pictureRect() const;

    void setDropHandler(std::function<bool(const QString& file)> handler) { dropHandler_ = std::move(handler); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QImage image_;
    std::function<bool(const QString&)> dropHandler_;
};

}  // namespace td
