#include "exchange/frmImportBook.h"
#include "exchange/IndexClassOptions.h"
#include "exchange/AccessDatabase.h"
#include "exchange/LibraryImport.h"
#include "exchange/SongbookImport.h"
#include "exchange/frmExportBook.h"
#include "regions/WindowText.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Translate.h"
#include "songdb/CatalogueLookups.h"
#include "songdb/SongSession.h"
#include <QBoxLayout>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace td {

namespace {

constexpr int kRemarkLength = 255;

template <typename W>
W* named(W* widget, const char* name)
{
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

}  // namespace

frmImportBook::frmImportBook(WindowFrame& frame, QWidget* parent) : QWidget(parent), frame_(frame)
{
    setObjectName(QStringLiteral("frmImportBook"));
    setWindowTitle(QStringLiteral("Songbook import wizard"));
    build();
    load();
}

void frmImportBook::build()
{
    auto* fraSource = named(new QGroupBox(QStringLiteral("Select database to import from"), this), "fraSource");
    lblFrom_ = named(new QLabel(fraSource), "lblFrom");
    lblFrom_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblFrom_->setWordWrap(true);
    cmdBrowse_ = named(new QPushButton(QStringLiteral("Browse (&B)"), fraSource), "cmdBrowse");
    connect(cmdBrowse_, &QPushButton::clicked, this, [this] { browse(); });
    auto* sourceRow = new QHBoxLayout(fraSource);
    sourceRow->addWidget(lblFrom_, 1);
    sourceRow->addWidget(cmdBrowse_);
    lblTo_ = named(new QLabel(this), "lblTo");
    lblTo_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* fraIndex = named(new QGroupBox(QStringLiteral("Index of new songs"), this), "fraIndex");
    const char* captions[] = {"Import form source", "Auto index", "Leave blank"};
    auto* indexGrid = new QGridLayout(fraIndex);
    for (int i = 0; i < 3; ++i) {
        optIndex_[i] = new QRadioButton(QString::fromLatin1(captions[i]), fraIndex);
        optIndex_[i]->setObjectName(QStringLiteral("optIndex%1").arg(i));
        indexGrid->addWidget(optIndex_[i], i, 0);
        connect(optIndex_[i], &QRadioButton::clicked, this, [this] { txtFrom_->setEnabled(optIndex_[1]->isChecked()); });
    }
    txtFrom_ = named(new QLineEdit(fraIndex), "txtFrom");
    indexGrid->addWidget(txtFrom_, 1, 1);
    indexGrid->setColumnStretch(1, 1);

    auto* fraOptions = named(new QGroupBox(QStringLiteral("Options"), this), "fraOptions");
    chkDeleteSong_ = named(new QCheckBox(QStringLiteral("Delete all exist songs before import"), fraOptions), "chkDeleteSong");
    chkDeleteSinger_ =
        named(new QCheckBox(QStringLiteral("Delete all exist singers before import"), fraOptions), "chkDeleteSinger");
    chkGbk_ = named(new QCheckBox(QStringLiteral("Read Chinese text of Access 97 files as GBK"), fraOptions), "chkGbk");
    auto* optionRows = new QVBoxLayout(fraOptions);
    for (QCheckBox* box : {chkDeleteSong_, chkDeleteSinger_, chkGbk_})
        optionRows->addWidget(box);
    optionRows->addStretch(1);

    auto* fraRemark = named(new QGroupBox(QStringLiteral("Remark"), this), "fraRemark");
    txtRemark_ = named(new QLineEdit(fraRemark), "txtRemark");
    (new QVBoxLayout(fraRemark))->addWidget(txtRemark_);

    auto* label1 =
        named(new QLabel(QStringLiteral("Please backup your database file (songXXX.mdb) before start"), this), "Label1");
    label1->setWordWrap(true);

    cmdImport_ = named(new QPushButton(QStringLiteral("Start (&S)"), this), "cmdImport");
    cmdSave_ = named(new QPushButton(QStringLiteral("Save as default (&S)"), this), "cmdSave");
    cmdClose_ = named(new QPushButton(QStringLiteral("Close (&C)"), this), "cmdClose");
    connect(cmdImport_, &QPushButton::clicked, this, [this] { startImport(); });
    connect(cmdSave_, &QPushButton::clicked, this, [this] { saveDefaults(); });
    connect(cmdClose_, &QPushButton::clicked, this, [this] { CloseBookWindow(this); });

    auto* choices = new QHBoxLayout;
    choices->addWidget(fraIndex, 1);
    choices->addWidget(fraOptions, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(label1, 1);
    for (QPushButton* b : {cmdImport_, cmdSave_, cmdClose_})
        buttons->addWidget(b);

    auto* page = new QVBoxLayout(this);
    page->addWidget(fraSource);
    page->addWidget(lblTo_);
    page->addLayout(choices);
    page->addWidget(fraRemark);
    page->addStretch(1);
    page->addLayout(buttons);
    resize(720, 400);
}

void frmImportBook::load()
{
    ExportWindowText(this);
    ApplyWindowText(this);
    const QString database = SongDatabaseFile();
    showSource(DefaultImportSource(database));
    lblTo_->setText(TranslateText(QStringLiteral("Destination")) + QStringLiteral(" - ") + database);
    const SongbookImportSettings defaults = DefaultSongbookImportSettings(SongDatabaseOpen() ? SongMinIndex() : 0);
    indexOptions().show(defaults.indexClass, defaults.indexFrom);
    chkDeleteSong_->setChecked(defaults.deleteSongs);
    chkDeleteSinger_->setChecked(defaults.deleteSingers);
    txtRemark_->setText(LibraryImportRemark(lblFrom_->text()));
}

// The GBK box follows the code page of each Access 97 file chosen; other files need no choice.
void frmImportBook::showSource(const QString& path)
{
    lblFrom_->setText(path);
    const AccessFileInfo info = ReadAccessFileInfo(path);
    chkGbk_->setEnabled(info.jetVersion == 3);
    chkGbk_->setChecked(info.jetVersion == 3 && info.codePage == 936);
}

// The test looks at the source shown before the choice: a choice is let through, but while the label
// holds the database in use, Browse is refused.
void frmImportBook::browse()
{
    OpenFileRequest request;
    request.title = QStringLiteral("Select ver8.04 database file to transfer");
    request.filter = QStringLiteral("Song database (song*.db)|song*.db|KTV database (ktvXXX.mdb)|ktv*.mdb|"
                                    "Song database (song.mdb)|song*.mdb");
    request.initialDir = ParentPath(lblFrom_->text());
    const QStringList chosen = Dialogs().openFiles(request);
    if (lblFrom_->text().toLower() == SongDatabaseFile().toLower()) {
        MsgError(QStringLiteral("Can not import from current database!"));
        return;
    }
    if (!chosen.isEmpty())
        showSource(chosen.first());
}

IndexClassOptions frmImportBook::indexOptions() const
{
    return {{optIndex_[0], optIndex_[1], optIndex_[2]}, txtFrom_};
}

QString frmImportBook::GetImportClass(const QString& cls) const
{
    const QString c = cls.toLower();
    if (c == u"index")
        return indexOptions().checked();
    if (c == u"indexfrom")
        return txtFrom_->text();
    if (c == u"deletesong")
        return chkDeleteSong_->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    if (c == u"deletesinger")
        return chkDeleteSinger_->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    return {};
}

SongbookImportSettings frmImportBook::chosen() const
{
    SongbookImportSettings s;
    s.source = lblFrom_->text();
    s.indexClass = GetImportClass(QStringLiteral("index"));
    s.indexFrom = GetImportClass(QStringLiteral("indexfrom"));
    s.deleteSongs = GetImportClass(QStringLiteral("deletesong")) != u"0";
    s.deleteSingers = GetImportClass(QStringLiteral("deletesinger")) != u"0";
    s.remark = txtRemark_->text();
    if (chkGbk_->isEnabled())
        s.access.gbk = chkGbk_->isChecked() ? AccessReadOptions::Gbk::Yes : AccessReadOptions::Gbk::No;
    return s;
}

void frmImportBook::saveDefaults()
{
    SaveSongbookImportDefaults(chosen());
}

void frmImportBook::startImport()
{
    if (!SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        CloseBookWindow(this);
        return;
    }
    if (txtRemark_->text().size() > kRemarkLength)
        txtRemark_->setText(txtRemark_->text().left(kRemarkLength));
    const SongbookImportSettings settings = chosen();
    bool reachedEnd = false;
    RunBookJob(this, [settings, &reachedEnd](Connection& db, JobHost& host) {
        reachedEnd = ImportSongbook(db, settings, host).closed;
    });
    if (reachedEnd && frame_.menuVisible(QStringLiteral("mnuSong")) &&
        MsgAsk(QStringLiteral("You need refresh songbook list to reflect the changes. Do you want to do it now?"),
               MsgButtons::YesNo) == MsgAnswer::Yes)
        frame_.windowCommand(QStringLiteral("frmSong"), QStringLiteral("refresh"));
    if (reachedEnd && frame_.menuVisible(QStringLiteral("mnuSinger")) &&
        MsgAsk(QStringLiteral("You need refresh singer list to reflect the changes. Do you want to do it now?"),
               MsgButtons::YesNo) == MsgAnswer::Yes)
        frame_.windowCommand(QStringLiteral("frmSinger"), QStringLiteral("refresh"));
    CloseBookWindow(this);
}

void frmImportBook::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    frame_.windowClosed();
}

}  // namespace td
