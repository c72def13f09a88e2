#pragma once
#include "controls/ctlTheatre.h"
#include <QLabel>
#include <QPixmap>
#include <QWidget>
#include <array>

class QGroupBox;
class QPushButton;
class QScrollBar;
class QSlider;

namespace td {

// The picture area of the preview: the logo, stretched over the panel, while nothing with a picture plays.
class PictureArea : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    void setPicture(const QPixmap& picture);
    bool hasPicture() const { return !picture_.isNull(); }

signals:
    void DblClick();
    void Resized();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QPixmap picture_;
};

// A channel mark that turns its channel off when clicked.
class ChannelLabel : public QLabel {
    Q_OBJECT
public:
    using QLabel::QLabel;

signals:
    void clicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
};

// The preview panel below the property editor: the frame whose caption names what plays, the picture
// area with the player over the logo, and the row of transport controls.
class PreviewPanel : public QWidget {
    Q_OBJECT
public:
    explicit PreviewPanel(QWidget* parent);

    // Where the players of panels made from now on send picture and sound; tests send them nowhere.
    static ctlTheatre::Output& PlayerOutput();

    // The first logo found: the interface region's Logo.bmp or Logo.jpg, then English's.
    bool LoadLogo();
    // The stored volume in steps of ten; 5 when the stored value is no number. From then on a move of
    // the slider sets the master volume and is stored.
    void LoadVolume();

    // Opens and plays one file in the panel; false, after telling the operator, when it can't be played.
    // A failure of the player itself throws.
    bool Preview(const QString& path);
    void StopSong();
    // "L" or "R" when only that channel's mark shows, else "S". The marks are the only record of it.
    QString GetChannel() const;
    void SetChannel(const QString& channel);

    PictureArea* picMoni1() const { return picMoni1_; }
    QWidget* picMoni2() const { return picMoni2_; }
    QGroupBox* fraMoni() const { return fraMoni_; }
    ctlTheatre* player() const { return ctlTheatre_; }
    QSlider* sldVolume() const { return sldVolume_; }
    QPushButton* cmdPlay() const { return cmdPlay_; }
    QPushButton* cmdPause() const { return cmdPause_; }
    QPushButton* cmdStop() const { return cmdStop_; }
    QScrollBar* hsbPosi() const { return hsbPosi_; }
    QPushButton* cmdChan(int i) const { return cmdChan_.at(std::size_t(i)); }
    ChannelLabel* lblChan(int i) const { return lblChan_.at(std::size_t(i)); }

signals:
    // Play pressed while nothing plays: the song list's selection is to be previewed.
    void PlayWanted();
    // The picture was double-clicked while this file was open: it goes to the room player.
    void HandOffWanted(const QString& file);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildTransport();
    void connectTransport();
    void layoutTransport();
    int playerState() const;
    void showStateButtons(int state);
    void setMasterVolume();
    void fitPicture();

    void cmdPlay_Click();
    void cmdPause_Click();
    void cmdChan_Click(int index);
    void ctlTheatre_PositionChanged();
    void hsbPosi_Change(int value);
    void picMoni1_DblClick();
    void sldVolume_Change(int value);

    QGroupBox* fraMoni_ = nullptr;
    PictureArea* picMoni1_ = nullptr;
    ctlTheatre* ctlTheatre_ = nullptr;
    QWidget* picMoni2_ = nullptr;
    QScrollBar* hsbPosi_ = nullptr;
    QString hsbPosiTag_;  // "0" while the player's own position is being shown, so it isn't sought
    QPushButton* cmdPlay_ = nullptr;
    QPushButton* cmdPause_ = nullptr;
    QPushButton* cmdStop_ = nullptr;
    QSlider* sldVolume_ = nullptr;
    std::array<QPushButton*, 2> cmdChan_{};
    std::array<ChannelLabel*, 2> lblChan_{};
};

}  // namespace td
