#include "songbook/frmSong.h"
#include "controls/StatusStrip.h"
#include "controls/ctlButtons.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "songbook/PreviewPanel.h"
#include "songbook/SplitterBar.h"
#include "songdb/BackgroundRead.h"
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>

namespace td {

frmSong::frmSong(WindowFrame& frame, QWidget* parent) : DataWindow(frame, QStringLiteral("Song"), parent)
{
    setObjectName(QStringLiteral("frmSong"));
    setWindowTitle(QStringLiteral("Songbook"));
    buildControls();
    connectEvents();
    Form_Load();
}

frmSong::~frmSong()
{
    StopListLoading();
    if (rsMain_)
        rsMain_->Close();
    if (rsMedia_)
        rsMedia_->Close();
}

void frmSong::buildControls()
{
    picButton_ = new QWidget(this);
    picButton_->setObjectName(QStringLiteral("picButton"));
    ctlButtons_ = new ctlButtons(picButton_);
    ctlButtons_->setObjectName(QStringLiteral("ctlButtons"));

    picView_ = new QWidget(this);
    picView_->setObjectName(QStringLiteral("picView"));
    buildSearchPanel();
    ctlView_ = new ctlDataView(picView_);
    ctlView_->setObjectName(QStringLiteral("ctlView"));

    lblMove_ = new SplitterBar(Qt::Vertical, this);
    lblMove_->setObjectName(QStringLiteral("lblMove"));
    buildRightPanel();

    valuesRead_ = new BackgroundRead(this);
    connect(valuesRead_, &BackgroundRead::Finished, this, &frmSong::valuesReadFinished);
    tmrLoadData_ = new QTimer(this);
    tmrLoadData_->setObjectName(QStringLiteral("tmrLoadData"));
    tmrLoadData_->setSingleShot(true);
    buildPanelLayouts();
}

void frmSong::buildRightPanel()
{
    picRight_ = new QWidget(this);
    picRight_->setObjectName(QStringLiteral("picRight"));
    picRight2_ = new QWidget(picRight_);
    picRight2_->setObjectName(QStringLiteral("picRight2"));
    tabRight_ = new QTabWidget(picRight2_);
    tabRight_->setObjectName(QStringLiteral("tabRight"));
    tabRight_->setDocumentMode(true);

    picField_ = new QWidget;
    picField_->setObjectName(QStringLiteral("picField"));
    ctlFields_ = new ctlDataFields(picField_);
    ctlFields_->setObjectName(QStringLiteral("ctlFields"));
    tabRight_->addTab(picField_, QStringLiteral("Property"));
    tabRight_->tabBar()->setTabData(0, QStringLiteral("field"));

    buildMediaPage();
    tabRight_->addTab(picMedia_, QStringLiteral("Media files"));
    tabRight_->tabBar()->setTabData(1, QStringLiteral("media"));

    lblMove2_ = new SplitterBar(Qt::Horizontal, picRight_);
    lblMove2_->setObjectName(QStringLiteral("lblMove2"));
    picMoni_ = new PreviewPanel(picRight_);
}

void frmSong::connectEvents()
{
    BindParts({ctlView_, ctlFields_, ctlButtons_, QStringLiteral(" song(s)"), QStringLiteral("mnuSong")});
    connect(ctlView_, &ctlDataView::DblClick, this,
            [this] { PlaySong(QStringLiteral("songbook"), QStringLiteral("preview")); });
    connect(ctlView_, &ctlDataView::MouseUp, this,
            [this](int button, int, int, int) { ctlView_MouseUp(button); });
    connect(ctlView_, &ctlDataView::ItemsSelected, this,
            [this](const QList<int>& sel) { LoadFieldDatas(sel); });
    connect(ctlFields_, &ctlDataFields::AfterValueChanged, this,
            [this](int index, const QString&, const QString& newValue) {
                ctlFields_AfterValueChanged(index, newValue);
            });
    connect(ctlFields_, &ctlDataFields::Click, this, &frmSong::ctlFields_Click);
    connect(ctlMedia_, &ctlDataView::DblClick, this, &frmSong::ctlMedia_DblClick);
    connect(ctlMedia_, &ctlDataView::MouseUp, this,
            [this](int button, int, int, int) { ctlMedia_MouseUp(button); });
    connect(cboSearchType_, &QComboBox::activated, this, [this] { cboSearchType_Click(); });
    connect(cmdSearch_, &QPushButton::clicked, this, &frmSong::cmdSearch_Click);
    connect(cboSearchValue_->lineEdit(), &QLineEdit::returnPressed, this, &frmSong::cmdSearch_Click);
    connect(cmdMedia_, &QPushButton::clicked, this, &frmSong::SearchMedia);
    connect(lblMove_, &SplitterBar::dragged, this, &frmSong::moveMainSplitter);
    connect(lblMove2_, &SplitterBar::dragged, this, &frmSong::moveRightSplitter);
    // Play with nothing playing always previews from the song list, whatever the last preview was.
    connect(picMoni_, &PreviewPanel::PlayWanted, this,
            [this] { PlaySong(QStringLiteral("songbook"), QStringLiteral("preview")); });
    connect(picMoni_, &PreviewPanel::HandOffWanted, this,
            [this](const QString& file) { AddToPlayer({file}, QStringLiteral("p")); });
    connect(tmrLoadData_, &QTimer::timeout, this, [this] { LoadData(); });
}

void frmSong::Form_Load()
{
    LoadWindowText();
    LoadFormat();
    // The list fills a second after the window shows, so the frame answers before a large songbook is read.
    tmrLoadData_->start(1000);
    picMoni_->LoadLogo();
    picMoni_->LoadVolume();
    checkViewMenus();
    lblMove_->setFrameShape(QFrame::NoFrame);
    lblMove2_->setFrameShape(QFrame::NoFrame);
}

bool frmSong::LoadFormat()
{
    LoadSearchType();
    LoadFormats();
    prepareMediaTab();
    return true;
}

void frmSong::checkViewMenus()
{
    Frame().setMenuChecked(QStringLiteral("mnuSongViewProperty"), GetViewProperty());
    Frame().setMenuChecked(QStringLiteral("mnuSongViewPreview"), GetViewPreview());
}

void frmSong::ExecuteCommand(const QString& command)
{
    setFocus();
    const QString c = command.toLower();
    // Commands work on the whole list: one that is still filling completes first.
    if (c != u"refresh")
        ctlView_->FinishLoading();
    if (ctlView_->ListCommand(c))
        return;
    if (c == u"add") {
        const QString tab = tabRight_->tabBar()->tabData(tabRight_->currentIndex()).toString();
        if (tab == u"field")
            AddItem();
        else if (tab == u"media")
            AddMedia();
    } else if (c == u"save")
        SaveItem();
    else if (c == u"delete")
        DeleteItem();
    else if (c == u"index")
        IndexItems();
    else if (c == u"chars")
        RecountChars();
    else if (c == u"channels")
        DetectSongChannels();
    else if (c == u"refresh")
        LoadData();
    else if (c == u"showproperty" || c == u"hideproperty")
        SetViewProperty(c == u"showproperty");
    else if (c == u"showpreview" || c == u"hidepreview")
        SetViewPreview(c == u"showpreview");
}

void frmSong::ctlView_MouseUp(int button)
{
    if (button == 2)
        Frame().popupMenu(QStringLiteral("mnuSong"));
}

// On close the preview stops first; the media list keeps its column layout like the song list.
void frmSong::WindowClosing()
{
    StopSong();
    ctlMedia_->SaveViewFormat();
}

// Once the events of its first showing have run, the window stands at the size the frame gives it, and
// the splitter over the preview is placed for good.
void frmSong::showEvent(QShowEvent*)
{
    if (move2Settled_)
        return;
    QTimer::singleShot(0, this, [this] {
        move2Settled_ = true;
        ArrangeRight();
    });
}

// Keys reach the window and do nothing here.
void frmSong::keyPressEvent(QKeyEvent*) {}

}  // namespace td
