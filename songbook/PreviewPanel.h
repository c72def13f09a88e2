#pragma once
#include <QPixmap>
#include <QWidget>
#include <array>

class QGroupBox;
class QLabel;
class QPushButton;
class QScrollBar;
class QSlider;

namespace td {

// The picture area of the preview: the logo, stretched over the panel, while nothing plays.
class PictureArea : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    void setPicture(const QPixmap& picture);
    bool hasPicture() const { return !picture_.isNull(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap picture_;
};

// The preview panel below the property editor: the frame whose caption names what plays, the picture
// area with the logo, and the row of transport controls. The player itself is not part of this
// version, so the transport controls stand disabled.
class PreviewPanel : public QWidget {
    Q_OBJECT
public:
    explicit PreviewPanel(QWidget* parent);

    // The first logo found: the interface region's Logo.bmp or Logo.jpg, then English's.
    bool LoadLogo();
    // The stored volume in steps of ten; 5 when the stored value is no number.
    void LoadVolume();
    void Stop();

    PictureArea* picMoni1() const { return picMoni1_; }
    QWidget* picMoni2() const { return picMoni2_; }
    QGroupBox* fraMoni() const { return fraMoni_; }
    QSlider* sldVolume() const { return sldVolume_; }
    QPushButton* cmdPlay() const { return cmdPlay_; }
    QPushButton* cmdStop() const { return cmdStop_; }
    QScrollBar* hsbPosi() const { return hsbPosi_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildTransport();
    void layoutTransport();

    QGroupBox* fraMoni_ = nullptr;
    PictureArea* picMoni1_ = nullptr;
    QWidget* picMoni2_ = nullptr;
    QScrollBar* hsbPosi_ = nullptr;
    QPushButton* cmdPlay_ = nullptr;
    QPushButton* cmdPause_ = nullptr;
    QPushButton* cmdStop_ = nullptr;
    QSlider* sldVolume_ = nullptr;
    std::array<QPushButton*, 2> cmdChan_{};
    std::array<QLabel*, 2> lblChan_{};
};

}  // namespace td
