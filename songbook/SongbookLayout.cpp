// The panels of the songbook: the button bar at the left, the list, the vertical splitter, and the
// right-hand panel with the tabs over the preview.
#include "controls/Twips.h"
#include "controls/ctlButtons.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"
#include "songbook/PreviewPanel.h"
#include "songbook/SplitterBar.h"
#include "songbook/frmSong.h"
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace td {

namespace {

const QString kViewProperty = QStringLiteral("SongViewProperty");
const QString kViewPreview = QStringLiteral("SongViewPreview");

QVBoxLayout* edgeToEdge(QWidget* panel)
{
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

}  // namespace

// Panels other than the four main ones and the right-hand pair lay their children out edge to edge.
void frmSong::buildPanelLayouts()
{
    edgeToEdge(picButton_)->addWidget(ctlButtons_);
    auto* search = new QHBoxLayout(picSearch_);
    search->setContentsMargins(2, 2, 2, 2);
    search->addWidget(cboSearchType_, 2);
    search->addWidget(cboSearchValue_, 3);
    search->addWidget(cmdSearch_);
    QVBoxLayout* view = edgeToEdge(picView_);
    view->addWidget(picSearch_);
    view->addWidget(ctlView_, 1);
    edgeToEdge(picRight2_)->addWidget(tabRight_);
    edgeToEdge(picField_)->addWidget(ctlFields_);
    picRight_->installEventFilter(this);
    const int bar = TwipsToPixels(90, this);
    lblMove_->resize(bar, bar);
    lblMove2_->resize(bar, bar);
    picButton_->resize(TwipsToPixels(1600, this), height());
    moveLeft_ = 1 << 20;  // beyond any width: the first arrangement puts it at two thirds
}

bool frmSong::GetViewProperty() const
{
    return ViewSetting(kViewProperty);
}
bool frmSong::GetViewPreview() const
{
    return ViewSetting(kViewPreview);
}

// The setting is stored at once, and the menu's check mark follows it.
void frmSong::setViewFlag(const QString& key, const char* menuEntry, bool visible)
{
    StoreViewSetting(Frame(), key, menuEntry, visible);
    ArrangeMain();
    ArrangeRight();
}

void frmSong::SetViewProperty(bool visible)
{
    setViewFlag(kViewProperty, "mnuSongViewProperty", visible);
}
void frmSong::SetViewPreview(bool visible)
{
    setViewFlag(kViewPreview, "mnuSongViewPreview", visible);
}

// The operator's splitter position doesn't survive a resize of the window.
void frmSong::resizeEvent(QResizeEvent*)
{
    moveLeft_ = width() * 2 / 3;
    ArrangeMain();
}

void frmSong::ArrangeMain()
{
    ArrangeSidePanels(this, {picButton_, picView_, lblMove_, picRight_}, moveLeft_,
                      GetViewProperty() || GetViewPreview());
}

// The preview keeps a 4:3 picture over the panel's width, plus room for its frame and transport row.
void frmSong::ArrangeRight()
{
    const int w = picRight_->width(), h = picRight_->height();
    const bool property = GetViewProperty(), preview = GetViewPreview();
    const int previewHeight =
        (w - 2 * picRight2_->x() - TwipsToPixels(120, this)) * 3 / 4 + TwipsToPixels(900, this);
    const int bar = lblMove2_->height();
    // The splitter is placed over the preview's height when it lies at or beyond the window's height;
    // otherwise it stays where it is.
    int top = move2Top_;
    if (top >= height())
        top = std::max(TwipsToPixels(120, this), h - bar - previewHeight);
    if (move2Settled_)
        move2Top_ = top;
    lblMove2_->setGeometry(0, top, w, bar);
    lblMove2_->setVisible(property && preview);
    picRight2_->setVisible(property);
    picRight2_->setGeometry(0, 0, w, preview ? top : h);
    picMoni_->setVisible(preview);
    const int moniTop = property ? top + bar : 0;
    picMoni_->setGeometry(0, moniTop, w, std::max(0, h - moniTop));
}

void frmSong::moveMainSplitter(int left)
{
    moveLeft_ = SplitterPosition(left, width(), this);
    ArrangeMain();
}

void frmSong::moveRightSplitter(int top)
{
    move2Top_ = SplitterPosition(top, picRight_->height(), this);
    move2Settled_ = true;
    ArrangeRight();
}

bool frmSong::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == picRight_ && event->type() == QEvent::Resize)
        ArrangeRight();
    return QWidget::eventFilter(watched, event);
}

}  // namespace td
