#include "libraries/frmLibMana.h"
#include "controls/BusyWindow.h"
#include "controls/JobRunner.h"
#include "controls/RecordErrors.h"
#include "controls/Twips.h"
#include "controls/ctlButtons.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "libraries/FileBrowse.h"
#include "libraries/LibraryRecords.h"
#include "libraries/LibrarySongFiles.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Translate.h"
#include "songdb/CatalogueLookups.h"
#include "songdb/SongSession.h"
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <atomic>

namespace td {

namespace {

frmLibMana::ImportWizard& importWizard()
{
    static frmLibMana::ImportWizard wizard;
    return wizard;
}

Connection& songConnection()
{
    Connection* db = SongConnection();
    if (!db || !db->isOpen())
        throw AppError(QStringLiteral("Operation is not allowed when the object is closed."));
    return *db;
}

QString invalidRoot(const QString& path)
{
    return QStringLiteral("Invaild root path < ") + path + QStringLiteral(" > !");
}

bool isDirectory(const QString& path)
{
    return FileKind(NativePath(path)) == u"p";
}

// done(ok), where a caller asked for it.
std::function<void(bool)> reportingTo(std::function<void(bool)> done)
{
    return [done](bool ok) {
        if (done)
            done(ok);
    };
}

}  // namespace

void frmLibMana::SetImportWizard(ImportWizard wizard)
{
    importWizard() = std::move(wizard);
}

frmLibMana::frmLibMana(WindowFrame& frame, QWidget* parent)
    : DataWindow(frame, QStringLiteral("LibMana"), parent)
{
    setObjectName(QStringLiteral("frmLibMana"));
    setWindowTitle(QStringLiteral("Library manager"));
    buildControls();
    BindParts({ctlView_, ctlFields_, ctlButtons_, QStringLiteral(" library(s)"), QString()});
    connect(ctlView_, &ctlDataView::ItemsSelected, this,
            [this](const QList<int>& sel) { LoadFieldDatas(sel); });
    connect(ctlFields_, &ctlDataFields::Click, this, [this](int index) {
        ExecuteCommand(ctlFields_->GetField(index, QStringLiteral("field")).toString());
    });
    runner_ = new JobRunner(this);
    LoadWindowText();
    LoadFormat();
    LoadData();
}

frmLibMana::~frmLibMana()
{
    delete runner_;  // a job under way stops before the window goes
    runner_ = nullptr;
    StopListLoading();
    if (rsMain_)
        rsMain_->Close();
}

void frmLibMana::buildControls()
{
    // The button bar stands in a column on the left, as in the songbook.
    picButton_ = new QWidget(this);
    picButton_->setObjectName(QStringLiteral("picButton"));
    picButton_->setFixedWidth(TwipsToPixels(1800, this));
    ctlButtons_ = new ctlButtons(picButton_);
    ctlButtons_->setObjectName(QStringLiteral("ctlButtons"));
    auto* buttonLayout = new QVBoxLayout(picButton_);
    buttonLayout->setContentsMargins(0, 0, 0, 0);
    buttonLayout->addWidget(ctlButtons_);

    ctlView_ = new ctlDataView(this);
    ctlView_->setObjectName(QStringLiteral("ctlView"));

    picRight_ = new QWidget(this);
    picRight_->setObjectName(QStringLiteral("picRight"));
    ctlFields_ = new ctlDataFields(picRight_);
    ctlFields_->setObjectName(QStringLiteral("ctlFields"));
    auto* rightLayout = new QVBoxLayout(picRight_);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->addWidget(ctlFields_);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(picButton_);
    layout->addWidget(ctlView_, 3);
    layout->addWidget(picRight_, 2);
}

void frmLibMana::ExecuteCommand(const QString& command)
{
    const QString c = command.toLower();
    ctlView_->FinishLoading();
    if (c == u"add")
        AddLibrary();
    else if (c == u"delete")
        RemoveLibrary();
    else if (c == u"save")
        SaveLibrary();
    else if (c == u"update library")
        UpdateLibrary(QString());
    else if (c == u"update songbook")
        UpdateSongbook(QString());
    else if (c == u"close")
        close();
    else if (c == u"root_path")
        browseRootPath();
}

bool frmLibMana::LoadFormat()
{
    LoadFormats();
    return true;
}

bool frmLibMana::LoadData()
{
    return LoadList(QStringLiteral("select * from library"));
}

bool frmLibMana::LoadFieldDatas(const QList<int>& selection)
{
    QVariantList bookmarks{QVariant()};
    for (qsizetype i = 1; i < selection.size(); ++i)
        bookmarks << QVariant::fromValue(ctlView_->MainItems().Tag(selection[i]));
    ctlFields_->setMrsMain(rsMain_);
    const bool ok = ctlFields_->LoadFieldDatas(bookmarks);
    SetPane(StatusPane::Selected, QString::number(selection.size() - 1) + QStringLiteral(" selected"));
    return ok;
}

QList<int> frmLibMana::selection() const
{
    QList<int> selected;
    ctlView_->GetViewSelections(selected);
    return selected;
}

QString frmLibMana::fieldValue(const QString& field) const
{
    return ctlFields_->GetField(ctlFields_->GetFieldIndex(field), QStringLiteral("value")).toString();
}

void frmLibMana::setFieldValue(const QString& field, const QString& value)
{
    const int index = ctlFields_->GetFieldIndex(field);
    ctlFields_->SetField(index, QStringLiteral("value"), value);
    ctlFields_->SetField(index, QStringLiteral("changed"), true);
}

// root_path of the first selected row, as the window's recordset holds it.
QString frmLibMana::selectedRoot(const QList<int>& selected)
{
    if (!rsMain_ || !rsMain_->setBookmark(ctlView_->MainItems().Tag(selected[1])))
        throw AppError(QStringLiteral("The selected library is no longer in the list."));
    return rsMain_->Fields(QStringLiteral("root_path")).Text();
}

void frmLibMana::selectOnly(int item)
{
    ListItems& items = ctlView_->MainItems();
    const QList<int> before = selection();
    for (qsizetype i = 1; i < before.size(); ++i)
        items.setSelected(before[i], false);
    if (item > 0) {
        items.setSelected(item, true);
        items.EnsureVisible(item);
    }
    LoadFieldDatas(selection());
}

// Media references of songs are resolved through the roots of the library table.
void frmLibMana::libraryTableChanged()
{
    QString path, library;
    GetLocalPath(path, library, true);
}

void frmLibMana::refreshSongbook()
{
    if (Frame().menuVisible(QStringLiteral("mnuSong")))
        Frame().windowCommand(QStringLiteral("frmSong"), QStringLiteral("refresh"));
}

void frmLibMana::browseRootPath()
{
    const QString path = BrowsePath(Frame().dialogOwner());
    if (path.isEmpty())
        return;
    setFieldValue(QStringLiteral("root_path"), path);
    setFieldValue(QStringLiteral("shared_as"), SharedAsFor(path));
}

bool frmLibMana::AddLibrary()
{
    const QString path = fieldValue(QStringLiteral("root_path"));
    if (!isDirectory(path)) {
        MsgError(invalidRoot(path));
        return false;
    }
    ErrorTrap trap;
    bool taken = false;
    QVariant bookmark;
    int item = 0;
    const bool added = [&] {
        BusyWindow busy(this);
        if (!trap.run([&] { return (taken = LibraryRootTaken(songConnection(), path)), true; }) || taken)
            return false;
        return ctlFields_->AddData(bookmark) &&
               trap.run([&] { return ctlView_->AddViewItem(bookmark.toLongLong(), item); });
    }();
    if (taken) {
        MsgInfo(QStringLiteral("The library was added already!"));
        return false;
    }
    if (!added) {
        MsgError(QStringLiteral("Add library failed! ") + trap.suffix());
        return false;
    }
    selectOnly(item);
    libraryTableChanged();
    SetLogPane(QStringLiteral("1 library added!"));
    if (MsgAsk(QStringLiteral("Update songbook with new library?"), MsgButtons::YesNo) == MsgAnswer::Yes &&
        !UpdateSongbook(path))
        MsgError(QStringLiteral("Update songbook with new library failed!"));
    MsgInfo(QStringLiteral("New library is added to system successfully!"));
    return true;
}

void frmLibMana::SaveLibrary(std::function<void(bool)> done)
{
    const auto finish = reportingTo(done);
    const QList<int> selected = selection();
    if (selected.size() <= 1) {
        MsgInfo(QStringLiteral("Please select a library to update!"));
        return finish(false);
    }
    ErrorTrap trap;
    const QString newRoot = fieldValue(QStringLiteral("root_path"));
    QString oldRoot;
    if (!trap.run([&] { return oldRoot = selectedRoot(selected), true; })) {
        MsgError(QStringLiteral("Update library failed !\n") + trap.suffix());
        return finish(false);
    }
    const bool moves = newRoot != oldRoot;
    if (moves) {
        if (!isDirectory(newRoot)) {
            MsgError(invalidRoot(newRoot));
            return finish(false);
        }
        bool taken = false;
        if (!trap.run([&] { return (taken = LibraryRootTaken(songConnection(), newRoot)), true; })) {
            MsgError(QStringLiteral("Update library failed !\n") + trap.suffix());
            return finish(false);
        }
        if (taken) {
            MsgInfo(QStringLiteral("The library was added already!"));
            return finish(false);
        }
    }
    const Bookmark bookmark = ctlView_->MainItems().Tag(selected[1]);
    auto saveRow = [this, moves, newRoot, bookmark, position = selected[1], finish](bool songsMoved) {
        if (!songsMoved)
            return finish(false);
        if (moves)
            setFieldValue(QStringLiteral("root_path"), newRoot);
        setFieldValue(QStringLiteral("shared_as"), fieldValue(QStringLiteral("shared_as")));
        if (!ctlFields_->SaveData(bookmark))
            return finish(false);
        ErrorTrap trap;
        trap.run([&] { return ctlView_->SaveViewItem(bookmark, position); });
        if (moves)
            refreshSongbook();
        LoadFieldDatas(selection());
        libraryTableChanged();
        MsgInfo(QStringLiteral("Library update successfully!"));
        finish(true);
    };
    if (!moves)
        return saveRow(true);
    // The songs move before the row: a failure between the two leaves them on the new root.
    if (!runSongJob(QStringLiteral("Update library failed !\n"),
                    [oldRoot, newRoot](Connection& db, JobHost&) {
                        MoveLibrarySongs(db, oldRoot, newRoot);
                        return true;
                    },
                    saveRow))
        finish(false);
}

void frmLibMana::RemoveLibrary(std::function<void(bool)> done)
{
    const auto finish = reportingTo(done);
    const QList<int> selected = selection();
    if (selected.size() <= 1) {
        MsgInfo(QStringLiteral("Please select a library to delete!"));
        return finish(false);
    }
    ErrorTrap trap;
    QString root;
    qint64 songs = 0;
    if (!trap.run([&] {
            root = selectedRoot(selected);
            songs = LibrarySongCount(songConnection(), root);
            return true;
        })) {
        MsgError(QStringLiteral("Remove library failed! ") + trap.suffix());
        return finish(false);
    }
    auto removeSongsAndRow = [this, root, selected, finish] {
        const bool started = runSongJob(
            QStringLiteral("Remove library failed! "),
            [root](Connection& db, JobHost&) {
                DeleteLibrarySongs(db, root);
                return true;
            },
            [this, selected, finish](bool songsDeleted) {
                if (!songsDeleted)
                    return finish(false);
                refreshSongbook();
                finish(deleteLibraryRow(selected));
            });
        if (!started)
            finish(false);
    };
    if (songs == 0)
        return finish(deleteLibraryRow(selected));
    const MsgAnswer answer =
        MsgAsk(QStringLiteral("There are ") + QString::number(songs) +
                   QStringLiteral(" song(s) in selected library. They will not be available any more!\n") +
                   QStringLiteral("Do you want to update selected library with them before continue?"),
               MsgButtons::YesNoCancel);
    if (answer == MsgAnswer::Cancel)
        return finish(false);
    if (answer == MsgAnswer::No)
        return removeSongsAndRow();
    // The songs' information goes beside their files first, so a later import brings them back.
    UpdateLibrary(root, [removeSongsAndRow, finish](bool completed) {
        if (completed)
            removeSongsAndRow();
        else
            finish(false);
    });
}

bool frmLibMana::deleteLibraryRow(const QList<int>& selected)
{
    const int position = selected[1];
    ErrorTrap trap;
    if (!ctlFields_->DeleteData(ctlView_->MainItems().Tag(position)) ||
        !trap.run([&] { return ctlView_->DeleteViewItem(position); }))
        return false;
    const int count = ctlView_->MainItems().Count();
    selectOnly(position <= count ? position : count);
    libraryTableChanged();
    MsgInfo(QStringLiteral("Removed library successfully!"));
    return true;
}

bool frmLibMana::UpdateSongbook(const QString& path)
{
    if (!SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        return false;
    }
    QString root = path;
    if (root.isEmpty()) {
        const QList<int> selected = selection();
        if (selected.size() <= 1) {
            MsgInfo(QStringLiteral("Please select a library from which to update!"));
            return false;
        }
        ErrorTrap trap;
        if (!trap.run([&] { return root = selectedRoot(selected), true; })) {
            MsgError(QStringLiteral("Import library failed! ") + trap.suffix());
            return false;
        }
    }
    if (!importWizard()) {
        MsgError(QStringLiteral("Import library failed! ") +
                 ErrSuffix(QStringLiteral("The import is not available.")));
        return false;
    }
    importWizard()(Frame().dialogOwner(), root);
    return true;
}

bool frmLibMana::UpdateRunning() const
{
    return runner_ && runner_->running();
}

bool frmLibMana::UpdateLibrary(const QString& path, std::function<void(bool)> done)
{
    auto refused = [done] {
        if (done)
            done(false);
        return false;
    };
    if (!SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        return refused();
    }
    QString root = path;
    if (root.isEmpty()) {
        const QList<int> selected = selection();
        if (selected.size() <= 1) {
            MsgInfo(QStringLiteral("Please select a library to update!"));
            return refused();
        }
        ErrorTrap trap;
        if (!trap.run([&] { return root = selectedRoot(selected), true; })) {
            MsgError(QStringLiteral("UpdateLibrary failed! ") + trap.suffix());
            return refused();
        }
    }
    if (!isDirectory(root)) {
        MsgError(invalidRoot(root));
        return refused();
    }
    const bool started = runSongJob(
        QStringLiteral("UpdateLibrary failed! "),
        [root](Connection& db, JobHost& host) { return td::UpdateLibrary(db, root, host).completed; },
        [this, done](bool completed) {
            if (done)
                done(completed);
            emit UpdateFinished(completed);
        });
    return started || refused();
}

bool frmLibMana::runSongJob(const QString& failed, std::function<bool(Connection&, JobHost&)> work,
                            std::function<void(bool)> then)
{
    const QString file = SongDatabaseFile();
    auto ok = std::make_shared<std::atomic_bool>(false);
    return runner_->start(
        [file, failed, work = std::move(work), ok](JobHost& host) {
            try {
                auto db = OpenConnection(IsServerAddress(file) ? file : NativePath(file));
                *ok = work(*db, host);
            } catch (const std::exception& e) {
                host.Fail(failed + ErrSuffix(e));
            }
        },
        [ok, then = std::move(then)] { then(*ok); });
}

void frmLibMana::ListReadFailed(const QString&, const QString& description)
{
    MsgError(QStringLiteral("Load data failed! ") + ErrSuffix(description));
}

void frmLibMana::WindowClosing()
{
    if (runner_)
        runner_->stop();
}

}  // namespace td
