// Numbering the selected songs and recounting the length of their titles.
#include "controls/BusyWindow.h"
#include "controls/RecordErrors.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "songbook/frmSong.h"
#include "songdb/CatalogueLookups.h"
#include <climits>
#include <cmath>

namespace td {

namespace {

int StartNumber(const QString& answer)
{
    const double value = std::nearbyint(NumericValue(answer));
    return int(std::clamp(value, double(INT_MIN), double(INT_MAX)));
}

}  // namespace

// The whole range must lie within the bounds and be free, the selected songs' own numbers included.
bool frmSong::indexRangeRefused(long long start, int count)
{
    const QString title = QStringLiteral("Song index crashed");
    if (start < SongMinIndex()) {
        MsgInfo(QStringLiteral("The index less than MinIndex, MinIndex=") + QString::number(SongMinIndex()),
                title);
        return true;
    }
    if (start + count - 1 > SongMaxIndex()) {
        MsgInfo(
            QStringLiteral("The index is more than MaxIndex, MaxIndex=") + QString::number(SongMaxIndex()),
            title);
        return true;
    }
    for (long long number = start; number <= start + count - 1; ++number) {
        if (!SongIndexFree(number)) {
            MsgInfo(QStringLiteral("The index is used by another song, Index=") + QString::number(number),
                    title);
            return true;
        }
    }
    return false;
}

bool frmSong::IndexItems()
{
    QList<int> selected;
    const int n = selectionOrSay(selected, QStringLiteral("Please select a song to index"));
    if (n == 0)
        return false;
    const QString suggestion = AppIniRead(QStringLiteral("DefaultStartIndex"), QStringLiteral("1000"));
    const std::optional<QString> answer = Dialogs().inputBox(
        QString::number(n) +
            QStringLiteral(" song(s) to be indexed.\nPlease input an available index from which to start."),
        AppTitle(), suggestion);
    if (!answer || answer->isEmpty())
        return false;
    const int start = StartNumber(*answer);
    if (start == 0) {
        if (MsgAsk(QStringLiteral("Reset selected songs' index to 0.\nContinue?"), MsgButtons::YesNo) !=
            MsgAnswer::Yes)
            return false;
    } else if (indexRangeRefused(start, n)) {
        return false;
    }
    BusyWindow busy(this);
    // With start 0 nothing is assigned: the save writes what the editor holds as changed.
    const int field = ctlFields_->GetFieldIndex(QStringLiteral("index"));
    const int indexed = saveSelected(selected, QStringLiteral("Index song(s) failed! "), [&](int i) {
        if (start != 0)
            ctlFields_->SetField(field, QStringLiteral("value"), QString::number(start + i - 1));
    });
    LoadFieldDatas(selection());
    SetLogPane(QString::number(indexed) + QStringLiteral(" song(s) indexed."));
    return indexed == n;
}

bool frmSong::RecountChars()
{
    QList<int> selected;
    const int n = selectionOrSay(selected, QStringLiteral("Please select a song to be recounted"));
    if (n == 0)
        return false;
    if (MsgAsk(QString::number(n) + QStringLiteral(" songs' chars to be recounted. Continued?"),
               MsgButtons::OkCancel) != MsgAnswer::Ok)
        return false;
    const bool spacesCount =
        MsgAsk(QStringLiteral("Will space be counted as char?"), MsgButtons::YesNo) == MsgAnswer::Yes;
    BusyWindow busy(this);
    int recounted = 0;
    ErrorTrap trap;
    for (int i = 1; i <= n; ++i) {
        const bool ok = trap.run([&] {
            Recordset* rs = ctlView_->mrsMain();
            const Bookmark bookmark = ctlView_->MainItems().Tag(selected[i]);
            if (!rs || !rs->setBookmark(bookmark))
                throw AppError(QStringLiteral("Bookmark is invalid."));
            QString title = rs->Fields(QStringLiteral("Title")).Text();
            if (!spacesCount)
                title.remove(u' ');
            rs->Fields(QStringLiteral("chars")).setValue(int(title.size()));
            rs->Update();
            return ctlView_->SaveViewItem(bookmark, selected[i]);
        });
        if (!ok) {
            CancelPendingEdit(ctlView_->mrsMain());
            MsgError(QStringLiteral("Recount songs' chars failed! ") + trap.suffix());
            break;
        }
        ++recounted;
    }
    LoadFieldDatas(selection());
    SetLogPane(QString::number(recounted) + QStringLiteral(" songs' chars recounted."));
    return recounted == n;
}

}  // namespace td
