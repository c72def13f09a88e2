#include "singers/frmSinger.h"
#include "controls/BusyWindow.h"
#include "controls/JobRunner.h"
#include "controls/RecordErrors.h"
#include "controls/Twips.h"
#include "controls/ctlButtons.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include "singers/PhotoView.h"
#include "singers/SingerExchange.h"
#include "songbook/SplitterBar.h"
#include "songdb/Connection.h"
#include "songdb/DeleteJournal.h"
#include "songdb/RecordAccess.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <atomic>

namespace td {

namespace {

const QString kViewProperty = QStringLiteral("SingerViewProperty");
const QString kViewPreview = QStringLiteral("SingerViewPreview");

QString quoted(const QString& value)
{
    QString q = value;
    return q.replace(u'\'', QStringLiteral("''"));
}

QVBoxLayout* edgeToEdge(QWidget* panel)
{
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

}  // namespace

frmSinger::frmSinger(WindowFrame& frame, QWidget* parent) : DataWindow(frame, QStringLiteral("Singer"), parent)
{
    setObjectName(QStringLiteral("frmSinger"));
    setWindowTitle(QStringLiteral("Singer list"));
    buildControls();
    BindParts({ctlView_, ctlFields_, ctlButtons_, QStringLiteral(" singer(s)"), QStringLiteral("mnuSinger")});
    connect(ctlView_, &ctlDataView::ItemsSelected, this, [this](const QList<int>& sel) { LoadFieldDatas(sel); });
    runner_ = new JobRunner(this);
    LoadWindowText();
    LoadFormat();
    LoadData();
    Frame().setMenuChecked(QStringLiteral("mnuSingerViewProperty"), GetViewProperty());
    Frame().setMenuChecked(QStringLiteral("mnuSingerViewPreview"), GetViewPreview());
}

frmSinger::~frmSinger()
{
    delete runner_;  // an exchange under way stops before the window goes
    runner_ = nullptr;
    StopListLoading();
    if (rsMain_)
        rsMain_->Close();
}

void frmSinger::buildControls()
{
    picButton_ = new QWidget(this);
    picButton_->setObjectName(QStringLiteral("picButton"));
    picButton_->resize(TwipsToPixels(1600, this), height());
    ctlButtons_ = new ctlButtons(picButton_);
    ctlButtons_->setObjectName(QStringLiteral("ctlButtons"));
    edgeToEdge(picButton_)->addWidget(ctlButtons_);

    picView_ = new QWidget(this);
    picView_->setObjectName(QStringLiteral("picView"));
    ctlView_ = new ctlDataView(picView_);
    ctlView_->setObjectName(QStringLiteral("ctlView"));
    edgeToEdge(picView_)->addWidget(ctlView_);

    const int bar = TwipsToPixels(90, this);
    lblMove_ = new SplitterBar(Qt::Vertical, this);
    lblMove_->setObjectName(QStringLiteral("lblMove"));
    lblMove_->resize(bar, bar);
    connect(lblMove_, &SplitterBar::dragged, this, &frmSinger::moveMainSplitter);

    picRight_ = new QWidget(this);
    picRight_->setObjectName(QStringLiteral("picRight"));
    picRight_->installEventFilter(this);

    fraImage_ = new QGroupBox(picRight_);
    fraImage_->setObjectName(QStringLiteral("fraImage"));
    picImage_ = new QWidget(fraImage_);
    picImage_->setObjectName(QStringLiteral("picImage"));
    imgPhoto_ = new PhotoView(picImage_);
    imgPhoto_->setObjectName(QStringLiteral("imgPhoto"));
    imgPhoto_->setDropHandler([this](const QString& file) { return DropPhoto(file); });
    edgeToEdge(picImage_)->addWidget(imgPhoto_);
    label2_ = new QLabel(QStringLiteral("Drag and drop singer's photograph here"), fraImage_);
    label2_->setObjectName(QStringLiteral("Label2"));
    label2_->setWordWrap(true);
    label3_ = new QLabel(QStringLiteral("Support jpg file only"), fraImage_);
    label3_->setObjectName(QStringLiteral("Label3"));
    cmdLoad_ = new QPushButton(QStringLiteral("Load ... (&L)"), fraImage_);
    cmdLoad_->setObjectName(QStringLiteral("cmdLoad"));
    cmdClear_ = new QPushButton(QStringLiteral("Clear (&C)"), fraImage_);
    cmdClear_->setObjectName(QStringLiteral("cmdClear"));
    connect(cmdLoad_, &QPushButton::clicked, this, &frmSinger::LoadPhotoFromDialog);
    connect(cmdClear_, &QPushButton::clicked, this, &frmSinger::ClearPhoto);
    auto* imageLayout = new QVBoxLayout(fraImage_);
    imageLayout->setContentsMargins(4, 4, 4, 4);
    imageLayout->addWidget(picImage_, 1);
    imageLayout->addWidget(label2_);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(label3_, 1);
    buttons->addWidget(cmdLoad_);
    buttons->addWidget(cmdClear_);
    imageLayout->addLayout(buttons);

    lblMove2_ = new SplitterBar(Qt::Horizontal, picRight_);
    lblMove2_->setObjectName(QStringLiteral("lblMove2"));
    lblMove2_->resize(bar, bar);
    connect(lblMove2_, &SplitterBar::dragged, this, &frmSinger::moveRightSplitter);

    picField_ = new QWidget(picRight_);
    picField_->setObjectName(QStringLiteral("picField"));
    ctlFields_ = new ctlDataFields(picField_);
    ctlFields_->setObjectName(QStringLiteral("ctlFields"));
    edgeToEdge(picField_)->addWidget(ctlFields_);
}

void frmSinger::ExecuteCommand(const QString& command)
{
    setFocus();
    const QString c = command.toLower();
    // Commands work on the whole list: one that is still filling completes first.
    if (c != u"refresh")
        ctlView_->FinishLoading();
    if (ctlView_->ListCommand(c))
        return;
    if (c == u"add")
        AddItem();
    else if (c == u"save")
        SaveItem();
    else if (c == u"delete")
        DeleteItem();
    else if (c == u"refresh")
        LoadData();
    else if (c == u"searchnewsinger")
        SearchNewSinger();
    else if (c == u"import")
        ImportSinger();
    else if (c == u"export")
        ExportSinger();
    else if (c == u"showproperty" || c == u"hideproperty")
        SetViewProperty(c == u"showproperty");
    else if (c == u"showpreview" || c == u"hidepreview")
        SetViewPreview(c == u"showpreview");
}

bool frmSinger::LoadFormat()
{
    LoadFormats();
    return true;
}

bool frmSinger::LoadData()
{
    return LoadList(SongRecordsetSql(QStringLiteral("*"), QStringLiteral("singer"), QString(), QStringLiteral("name")));
}

void frmSinger::ListReadFailed(const QString&, const QString&)
{
    MsgError(QStringLiteral("Can't open database!"));
}

bool frmSinger::RefreshData()
{
    return RefreshList();
}

QList<int> frmSinger::selection() const
{
    QList<int> selected;
    ctlView_->GetViewSelections(selected);
    return selected;
}

QString frmSinger::nameValue() const
{
    return ctlFields_->GetField(ctlFields_->GetFieldIndex(QStringLiteral("name")), QStringLiteral("value")).toString();
}

bool frmSinger::LoadFieldDatas(const QList<int>& selected)
{
    BusyWindow busy(this);
    QVariantList bookmarks{QVariant()};
    for (qsizetype i = 1; i < selected.size(); ++i)
        bookmarks << QVariant::fromValue(ctlView_->MainItems().Tag(selected[i]));
    ctlFields_->setMrsMain(rsMain_);
    const bool ok = ctlFields_->LoadFieldDatas(bookmarks);
    // The one singer's photograph goes through a file beside the program, rewritten at each selection.
    photoFile_.clear();
    if (selected.size() == 2 && rsMain_ && rsMain_->IsOpen() && rsMain_->setBookmark(bookmarks[1].toLongLong())) {
        const QString file = AppPath() + QStringLiteral("/ssinger.jpg");
        if (LoadImageField(rsMain_.get(), file))
            photoFile_ = file;
    }
    // A stored picture Qt cannot read (a refused file saved on purpose) shows as none, without a message
    // at every selection.
    if (photoFile_.isEmpty() || !imgPhoto_->load(photoFile_))
        imgPhoto_->clear();
    photoChanged_ = false;
    SetPane(StatusPane::Selected, QString::number(selected.size() - 1) + QStringLiteral(" selected"));
    return ok;
}

bool frmSinger::LoadPhoto(const QString& file)
{
    if (file.isEmpty()) {
        imgPhoto_->clear();
        return true;
    }
    if (FileKind(file) != u"f") {
        MsgInfo(QStringLiteral("Can't find selected file"));
        return false;
    }
    // A renamed PNG, an empty or a cut-off file is refused like any file that is no .jpg.
    if (ExtensionOf(file).toLower() != u".jpg" || !IsJpegFile(file) || !imgPhoto_->load(file)) {
        MsgInfo(QStringLiteral("Only jpg file support."));
        return false;
    }
    return true;
}

void frmSinger::LoadPhotoFromDialog()
{
    OpenFileRequest request;
    request.title = QStringLiteral("select singer image file");
    request.filter = QStringLiteral("jpg file|*.jpg|All files|*.*");
    const QStringList chosen = Dialogs().openFiles(request);
    if (chosen.isEmpty())
        return;
    // A refused file stays the one a save stores, though the picture shown is the old one.
    LoadPhoto(chosen.first());
    photoChanged_ = true;
    photoFile_ = chosen.first();
}

void frmSinger::ClearPhoto()
{
    LoadPhoto(QString());
    photoChanged_ = true;
    photoFile_.clear();
}

bool frmSinger::DropPhoto(const QString& file)
{
    if (ExtensionOf(file).toLower() != u".jpg" || !LoadPhoto(file))
        return false;
    photoChanged_ = true;
    photoFile_ = file;
    return true;
}

// "The singer's name existed already!" when a singer has the name; false, after the failure's
// message, when the question cannot be put.
bool frmSinger::nameTaken(const QString& name, const QString& failure)
{
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(QStringLiteral("select * from singer where name='") + quoted(name) + u'\'', rs)) {
        MsgError(failure + ErrSuffix(SongLastError()));
        return true;
    }
    const bool taken = rs->RecordCount() > 0;
    rs->Close();
    if (taken)
        MsgInfo(QStringLiteral("The singer's name existed already!"));
    return taken;
}

bool frmSinger::savePhotoTo(Bookmark bookmark)
{
    return rsMain_ && rsMain_->setBookmark(bookmark) && SaveImageField(rsMain_.get(), photoFile_);
}

bool frmSinger::AddItem()
{
    const QString name = nameValue();
    if (name.isEmpty()) {
        MsgInfo(QStringLiteral("Please input singer's name first!"));
        return false;
    }
    if (nameTaken(name, QStringLiteral("Add item failed! ")))
        return false;
    BusyWindow busy(this);
    bool ok = false;
    ErrorTrap trap;
    QVariant bookmark;
    int item = 0;
    // The photograph shown goes to the new singer unless the operator cleared or replaced it.
    if (ctlFields_->AddData(bookmark) && (photoFile_.isEmpty() || savePhotoTo(bookmark.toLongLong())) &&
        trap.run([&] { return ctlView_->AddViewItem(bookmark.toLongLong(), item); })) {
        ctlView_->MainItems().SelectOnly(item);
        SetLogPane(QStringLiteral("1 singer added!"));
        ok = true;
    } else {
        MsgError(QStringLiteral("Add item failed! ") + trap.suffix());
    }
    LoadFieldDatas(selection());
    return ok;
}

bool frmSinger::SaveItem()
{
    bool changed = photoChanged_;
    for (int i = 1; i <= ctlFields_->GetFieldCount() && !changed; ++i)
        changed = ctlFields_->GetField(i, QStringLiteral("changed")).toBool();
    if (!changed) {
        MsgInfo(QStringLiteral("No field need to update!"));
        return false;
    }
    const QList<int> selected = selection();
    const int n = int(selected.size()) - 1;
    if (n == 0) {
        MsgInfo(QStringLiteral("Please select a singer to update!"));
        return false;
    }
    // The name passes through a number, as the songs' index check does: only a name that is a number
    // is looked for, so "Alice" reads "0" and the guard holds for numeric names alone.
    const QString name = QString::number(NumericValue(nameValue()));
    if (name.isEmpty()) {
        MsgInfo(QStringLiteral("Please input singer's name first!"));
        return false;
    }
    const int nameField = ctlFields_->GetFieldIndex(QStringLiteral("name"));
    if (ctlFields_->GetField(nameField, QStringLiteral("changed")).toBool()) {
        if (n > 1) {
            MsgInfo(QStringLiteral("Can't save more than one singer with same name!"));
            return false;
        }
        if (nameTaken(name, QStringLiteral("Save item failed! ")))
            return false;
    }
    BusyWindow busy(this);
    int saved = 0;
    ErrorTrap trap;
    for (int i = 1; i <= n; ++i) {
        const Bookmark bookmark = ctlView_->MainItems().Tag(selected[i]);
        if (!ctlFields_->SaveData(bookmark) || (photoChanged_ && !savePhotoTo(bookmark)) ||
            !trap.run([&] { return ctlView_->SaveViewItem(bookmark, selected[i]); })) {
            MsgError(QStringLiteral("Save item failed! ") + trap.suffix());
            break;
        }
        ++saved;
    }
    LoadFieldDatas(selection());
    SetLogPane(QString::number(saved) + QStringLiteral(" singer(s) saved!"));
    return saved == n;
}

bool frmSinger::DeleteItem()
{
    const QList<int> selected = selection();
    const int n = int(selected.size()) - 1;
    if (n == 0) {
        MsgInfo(QStringLiteral("Please select a singer to delete!"));
        return false;
    }
    BusyWindow busy(this);
    DeleteBatch batch;  // one event log line for the whole selection
    const int position = std::max(1, selected[1] - 1);
    int deleted = 0;
    ErrorTrap trap;
    for (int i = n; i >= 1; --i) {
        const Bookmark bookmark = ctlView_->MainItems().Tag(selected[i]);
        if (!ctlFields_->DeleteData(bookmark) || !trap.run([&] { return ctlView_->DeleteViewItem(selected[i]); })) {
            MsgError(QStringLiteral("Delete item failed! ") + trap.suffix());
            break;
        }
        ++deleted;
    }
    ListItems& items = ctlView_->MainItems();
    if (deleted == n && items.Count() > 0) {
        const int row = items.Count() < position ? 1 : position;
        items.setSelected(row, true);
        items.EnsureVisible(row);
    }
    LoadFieldDatas(selection());
    SetLogPane(QString::number(deleted) + QStringLiteral(" singer(s) deleted!"));
    return deleted == n;
}

int frmSinger::SearchNewSinger()
{
    if (Dialogs().message(
            QStringLiteral("This will search new singers used by songs, and rebuild singers' list, continue?"),
            MsgButtons::YesNo, MsgIcon::Information, QString()) != MsgAnswer::Yes)
        return 0;
    int added = 0;
    {
        BusyWindow busy(this);
        std::unique_ptr<Recordset> names, singers;
        bool failed = !SongOpenRecordset(QStringLiteral("select distinct singer from song where singer not in "
                                                        "(select distinct name from singer) order by singer"),
                                         names);
        // Only added to, so none of the singers' photographs is read for it.
        if (!failed && names->RecordCount() > 0)
            failed = !SongOpenRecordset(QStringLiteral("select * from singer where 1=0"), singers);
        QString description = failed ? SongLastError() : QString();
        if (!failed && singers) {
            try {
                for (names->MoveFirst(); !names->IsEOF(); names->MoveNext()) {
                    const QString name = names->Fields(0).Text();
                    if (name.isEmpty())
                        continue;
                    singers->AddNew();
                    singers->Fields(QStringLiteral("name")).setValue(name);
                    singers->Update();
                    ++added;
                }
            } catch (const std::exception& e) {
                CancelPendingEdit(singers.get());
                failed = true;
                description = ErrorText(e);
            }
        }
        for (Recordset* rs : {names.get(), singers.get()})
            if (rs)
                rs->Close();
        if (failed)
            MsgError(QStringLiteral("Search new singer failed! ") + ErrSuffix(description));
        if (added > 0)
            LoadData();
    }
    MsgInfo(QString::number(added) + QStringLiteral(" new singer(s) added!"));
    return added;
}

bool frmSinger::ExportSinger()
{
    return runExchange(true);
}

bool frmSinger::ImportSinger()
{
    return runExchange(false);
}

bool frmSinger::ExchangeRunning() const
{
    return runner_ && runner_->running();
}

bool frmSinger::runExchange(bool exporting)
{
    if (!SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        return false;
    }
    const QString file = SongDatabaseFile();
    const QString folder = SingerFolder();
    auto infos = std::make_shared<std::atomic<qint64>>(0);
    return runner_->start(
        [file, folder, exporting, infos](JobHost& host) {
            std::unique_ptr<Connection> db;
            try {
                db = OpenConnection(IsServerAddress(file) ? file : NativePath(file));
            } catch (const std::exception& e) {
                host.Fail((exporting ? QStringLiteral("ExportSinger failed! ") : QStringLiteral("ImportSinger failed! ")) +
                          ErrSuffix(e));
                return;
            }
            if (exporting)
                ExportSingers(*db, folder, host);
            else
                *infos = ImportSingers(*db, folder, host).infos;
        },
        [this, infos] {
            // Pictures alone don't ask: the list shows no picture.
            if (*infos >= 1 && Frame().menuVisible(QStringLiteral("mnuSinger")) &&
                MsgAsk(QStringLiteral("You need refresh singer list to reflect the changes. Do you want to do it now?"),
                       MsgButtons::YesNo) == MsgAnswer::Yes)
                RefreshData();
            emit ExchangeFinished();
        });
}

void frmSinger::WindowClosing()
{
    if (runner_)
        runner_->stop();
}

bool frmSinger::GetViewProperty() const
{
    return ViewSetting(kViewProperty);
}

bool frmSinger::GetViewPreview() const
{
    return ViewSetting(kViewPreview);
}

void frmSinger::setViewFlag(const QString& key, const char* menuEntry, bool visible)
{
    StoreViewSetting(Frame(), key, menuEntry, visible);
    arrangeMain();
    arrangeRight();
}

void frmSinger::SetViewProperty(bool visible)
{
    setViewFlag(kViewProperty, "mnuSingerViewProperty", visible);
}

void frmSinger::SetViewPreview(bool visible)
{
    setViewFlag(kViewPreview, "mnuSingerViewPreview", visible);
}

// The operator's splitter position doesn't survive a resize of the window.
void frmSinger::resizeEvent(QResizeEvent*)
{
    moveLeft_ = width() * 2 / 3;
    arrangeMain();
}

void frmSinger::arrangeMain()
{
    ArrangeSidePanels(this, {picButton_, picView_, lblMove_, picRight_}, moveLeft_,
                      GetViewProperty() || GetViewPreview());
}

// The photograph over the fields, the splitter between them; either may be hidden.
void frmSinger::arrangeRight()
{
    const int w = picRight_->width(), h = picRight_->height();
    const bool property = GetViewProperty(), preview = GetViewPreview();
    const int bar = lblMove2_->height();
    if (move2Top_ < 0 || move2Top_ > std::max(0, h - bar))
        move2Top_ = h / 2;
    lblMove2_->setGeometry(0, move2Top_, w, bar);
    lblMove2_->setVisible(property && preview);
    fraImage_->setVisible(preview);
    fraImage_->setGeometry(0, 0, w, property ? move2Top_ : h);
    picField_->setVisible(property);
    const int fieldTop = preview ? move2Top_ + bar : 0;
    picField_->setGeometry(0, fieldTop, w, std::max(0, h - fieldTop));
}

void frmSinger::moveMainSplitter(int left)
{
    moveLeft_ = SplitterPosition(left, width(), this);
    arrangeMain();
}

void frmSinger::moveRightSplitter(int top)
{
    move2Top_ = SplitterPosition(top, picRight_->height(), this);
    arrangeRight();
}

bool frmSinger::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == picRight_ && event->type() == QEvent::Resize)
        arrangeRight();
    return QWidget::eventFilter(watched, event);
}

}  // namespace td
