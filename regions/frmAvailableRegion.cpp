#include "regions/frmAvailableRegion.h"
#include "regions/RegionLists.h"
#include "regions/RegionStore.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Shell.h"
#include "shell/services/Translate.h"
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>

namespace td {

frmAvailableRegion::frmAvailableRegion(WindowFrame& frame, QWidget* parent)
    : SettingsWindow(frame, QStringLiteral("frmAvailableRegion"),
                     QStringLiteral("Available region for songs and interface"), parent)
{
    const RegionListPair lists = MakeRegionListPair(
        this, body(), "lstAvailable", "Available region for songs and interface", "lstAll", "All regions");
    lstAvailable_ = lists.left;
    lstAll_ = lists.right;
    cmdAdd_ = lists.cmdAdd;
    cmdDel_ = lists.cmdDel;
    cmdLocalize_ = new QPushButton(QStringLiteral("Localize software (&L)"), this);
    cmdLocalize_->setObjectName(QStringLiteral("cmdLocalize"));
    buttonRow()->insertWidget(0, cmdLocalize_);

    connect(cmdAdd_, &QPushButton::clicked, this, &frmAvailableRegion::add);
    connect(cmdDel_, &QPushButton::clicked, this, &frmAvailableRegion::del);
    connect(cmdLocalize_, &QPushButton::clicked, this, &frmAvailableRegion::localize);
    LoadWindowText();
    load();
}

void frmAvailableRegion::load()
{
    GetInterfaceRegions(names_);
    lstAll_->clear();
    lstAvailable_->clear();
    for (int i = 1; i <= UBound(names_); ++i)
        AddRegionEntry(IsAvailableRegion(names_[i]) ? lstAvailable_ : lstAll_, names_, i);
    cmdApply()->setEnabled(false);
}

void frmAvailableRegion::add()
{
    if (!MoveSelectedEntries(lstAll_, lstAvailable_)) {
        MsgInfo(TranslateText(QStringLiteral("Please select a region from right list")));
        return;
    }
    Changed();
}

void frmAvailableRegion::del()
{
    if (!MoveSelectedEntries(lstAvailable_, lstAll_)) {
        MsgInfo(QStringLiteral("Please select a region from left list to delete!"));
        return;
    }
    Changed();
}

void frmAvailableRegion::Apply()
{
    if (!SaveAvailableRegions(EntryNames(lstAvailable_, names_)))
        return;
    // The open songbook lists the songs of the regions it offered when it searched.
    if (frame().menuVisible(QStringLiteral("mnuSong")) &&
        MsgAsk(QStringLiteral("Available regions changed. You need refresh songbook list to reflect the "
                              "changes. Do you want to do it now?"),
               MsgButtons::YesNo) == MsgAnswer::Yes)
        frame().windowCommand(QStringLiteral("frmSong"), QStringLiteral("refresh"));
    cmdApply()->setEnabled(false);
}

void frmAvailableRegion::localize()
{
    // The entry with the focus when it is selected, else the first selected one.
    int row = lstAll_->currentRow();
    if (row < 0 || !lstAll_->item(row)->isSelected()) {
        row = -1;
        for (int r = 0; r < lstAll_->count() && row < 0; ++r)
            if (lstAll_->item(r)->isSelected())
                row = r;
    }
    if (row < 0) {
        MsgInfo(TranslateText(QStringLiteral("Please select a region from right list")));
        return;
    }
    const QString name = names_.value(EntryItemData(lstAll_, row));
    if (MsgAsk(QStringLiteral("Localize karaoke software for <") + name + QStringLiteral("> region?"),
               MsgButtons::YesNo) != MsgAnswer::Yes)
        return;
    // The localiser edits the region's text file; the program neither waits nor reads it again.
    const QString file = GetRegionFile(name);
    if (!Shell().edit(file))
        SayNoProgramStarted(file);
}

}  // namespace td
