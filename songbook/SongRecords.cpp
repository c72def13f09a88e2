// Adding, saving and deleting songs, and the counts over the song table.
#include "controls/BusyWindow.h"
#include "controls/RecordErrors.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "songbook/frmSong.h"
#include "songdb/CatalogueLookups.h"
#include "songdb/DeleteJournal.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"

namespace td {

namespace {

Recordset& Opened(Recordset* rs)
{
    if (!rs || !rs->IsOpen())
        throw AppError(QStringLiteral("Operation is not allowed when the object is closed."));
    return *rs;
}

}  // namespace

int frmSong::AddFiles(const TextArray& files)
{
    ctlView_->FinishLoading();
    BusyWindow busy(this);
    ListItems& items = ctlView_->MainItems();
    const QList<int> before = selection();
    for (qsizetype i = 1; i < before.size(); ++i)
        items.setSelected(before[i], false);
    int added = 0;
    int last = 0;
    try {
        Recordset& rs = Opened(rsMain_.get());
        bool complete = true;
        for (int i = 1; i <= UBound(files); ++i) {
            QString rest = files[i], library;
            if (!GetLocalPath(rest, library, i == 1)) {
                MsgError(
                    QStringLiteral("The file < ") + files[i] +
                    QStringLiteral(" > is not in any of library path, you can't add it to system. \n") +
                    QStringLiteral("Please copy the files to a library path before add them into system!"));
                complete = false;
                break;
            }
            const QString title = BaseNameOf(files[i]);
            rs.AddNew();
            rs.Fields(QStringLiteral("Index")).setValue(0);
            rs.Fields(QStringLiteral("Title")).setValue(title);
            rs.Fields(QStringLiteral("chars")).setValue(int(title.size()));
            rs.Fields(QStringLiteral("media_file")).setValue(rest);
            rs.Fields(QStringLiteral("library")).setValue(library);
            rs.Update();
            ctlView_->AddViewItem(rs.bookmark(), last);
            ++added;
        }
        items.setSelected(last - added + 1, last, true);
        if (complete && last > 0)
            items.EnsureVisible(last);
    } catch (const std::exception& e) {
        CancelPendingEdit(rsMain_.get());
        items.setSelected(last - added + 1, last, true);  // the songs added before the failure
        MsgError(QStringLiteral("Add file(s) to database failed! ") + ErrSuffix(e));
    }
    LoadFieldDatas(selection());
    SetLogPane(QString::number(added) + QStringLiteral(" file(s) added!"));
    return added;
}

bool frmSong::AddItem()
{
    const int indexField = ctlFields_->GetFieldIndex(QStringLiteral("index"));
    if (!SongCheckIndex(IntegerValue(ctlFields_->GetField(indexField, QStringLiteral("value")).toString()))) {
        MsgInfo(QStringLiteral("Song index crashed!"));
        return false;
    }
    BusyWindow busy(this);
    bool ok = false;
    ErrorTrap trap;
    QVariant bookmark;
    int item = 0;
    if (ctlFields_->AddData(bookmark) &&
        trap.run([&] { return ctlView_->AddViewItem(bookmark.toLongLong(), item); })) {
        ctlView_->MainItems().SelectOnly(item);
        SetLogPane(QStringLiteral("1 added!"));
        ok = true;
    } else {
        MsgError(QStringLiteral("Add item failed! ") + trap.suffix());
    }
    LoadFieldDatas(selection());
    return ok;
}

bool frmSong::anyFieldChanged() const
{
    for (int i = 1; i <= ctlFields_->GetFieldCount(); ++i)
        if (ctlFields_->GetField(i, QStringLiteral("changed")).toBool())
            return true;
    return false;
}

// A new number must fit the bounds and be free; it goes to one song only.
bool frmSong::indexChangeRefused(int selected)
{
    const int field = ctlFields_->GetFieldIndex(QStringLiteral("index"));
    const long long number = IntegerValue(ctlFields_->GetField(field, QStringLiteral("value")).toString());
    if (number == 0 || !ctlFields_->GetField(field, QStringLiteral("changed")).toBool())
        return false;
    const QString title = QStringLiteral("Song index crashed");
    if (selected > 1) {
        MsgInfo(QStringLiteral("Can't save more than one songs with same index"));
        return true;
    }
    if (number < SongMinIndex()) {
        MsgInfo(QStringLiteral("The index less than MinIndex, MinIndex=") + QString::number(SongMinIndex()),
                title);
        return true;
    }
    if (number > SongMaxIndex()) {
        MsgInfo(
            QStringLiteral("The index is more than MaxIndex, MaxIndex=") + QString::number(SongMaxIndex()),
            title);
        return true;
    }
    if (!SongIndexFree(number)) {
        MsgInfo(QStringLiteral("The index is used by another song"), title);
        return true;
    }
    // The number checked is the number stored: "1000.7" is song 1000, never 1001.
    const QString whole = QString::number(number);
    if (ctlFields_->GetField(field, QStringLiteral("value")).toString() != whole) {
        ctlFields_->SetField(field, QStringLiteral("value"), whole);
        ctlFields_->SetField(field, QStringLiteral("changed"), true);
    }
    return false;
}

bool frmSong::SaveItem()
{
    if (!anyFieldChanged()) {
        MsgInfo(QStringLiteral("No field need to update!"));
        return false;
    }
    QList<int> selected;
    const int n = selectionOrSay(selected, QStringLiteral("Please select a song to update!"));
    if (n == 0 || indexChangeRefused(n))
        return false;
    BusyWindow busy(this);
    const int saved = saveSelected(selected, QStringLiteral("Save item failed! "), [](int) {});
    LoadFieldDatas(selection());
    SetLogPane(QString::number(saved) + QStringLiteral(" saved!"));
    return saved == n;
}

// Tells the operator when nothing is selected; answers the count.
int frmSong::selectionOrSay(QList<int>& selected, const QString& message) const
{
    ctlView_->GetViewSelections(selected);
    const int n = int(selected.size()) - 1;
    if (n == 0)
        MsgInfo(message);
    return n;
}

// Writes what the editor holds as changed into each selected song, first to last, and rewrites its
// row; prepare(i) runs before the i-th save. Stops at the first failure; answers how many were saved.
int frmSong::saveSelected(const QList<int>& selected, const QString& failure,
                          const std::function<void(int)>& prepare)
{
    ErrorTrap trap;
    for (int i = 1; i < selected.size(); ++i) {
        prepare(i);
        const Bookmark bookmark = ctlView_->MainItems().Tag(selected[i]);
        if (!ctlFields_->SaveData(bookmark) ||
            !trap.run([&] { return ctlView_->SaveViewItem(bookmark, selected[i]); })) {
            MsgError(failure + trap.suffix());
            return i - 1;
        }
    }
    return int(selected.size()) - 1;
}

bool frmSong::DeleteItem()
{
    QList<int> selected;
    const int n = selectionOrSay(selected, QStringLiteral("Please select a song to delete!"));
    if (n == 0)
        return false;
    BusyWindow busy(this);
    DeleteBatch batch;  // one event log line for the whole selection
    const int position = std::max(1, selected[1] - 1);
    int deleted = 0;
    ErrorTrap trap;
    for (int i = n; i >= 1; --i) {
        const Bookmark bookmark = ctlView_->MainItems().Tag(selected[i]);
        if (!ctlFields_->DeleteData(bookmark) ||
            !trap.run([&] { return ctlView_->DeleteViewItem(selected[i]); })) {
            MsgError(QStringLiteral("Delete item failed! ") + trap.suffix());
            break;
        }
        ++deleted;
    }
    if (deleted == n)
        reselectAfterDelete(position);
    LoadFieldDatas(selection());
    SetLogPane(QString::number(deleted) + QStringLiteral(" deleted!"));
    return deleted == n;
}

// The row before the first deleted one takes the selection; the first row if the list got shorter.
void frmSong::reselectAfterDelete(int position)
{
    ListItems& items = ctlView_->MainItems();
    const int row = items.Count() < position ? (items.Count() > 0 ? 1 : 0) : position;
    if (row == 0)
        return;
    items.setSelected(row, true);
    items.EnsureVisible(row);
}

int frmSong::CountSongs()
{
    try {
        auto rs = OpenSongRecordset(QStringLiteral("select count(*) from song"));
        return rs->Fields(0).Value().toInt();
    } catch (const std::exception& e) {
        MsgError(QStringLiteral("Get nSong failed! ") + ErrSuffix(e));
        return 0;
    }
}

void frmSong::ResetGrade()
{
    SongExecute(QStringLiteral("update Song set grade=0"));
}

}  // namespace td
