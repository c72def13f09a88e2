#include "regions/frmGlobeRegion.h"
#include "regions/RegionLists.h"
#include "regions/RegionStore.h"
#include "shell/services/Dialogs.h"
#include "songdb/CatalogueLookups.h"
#include <QBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace td {

frmGlobeRegion::frmGlobeRegion(WindowFrame& frame, QWidget* parent)
    : SettingsWindow(frame, QStringLiteral("frmGlobeRegion"), QStringLiteral("Globe region for songs"),
                     parent)
{
    const RegionListPair lists =
        MakeRegionListPair(this, body(), "lstGlobe", "Globe region for songs", "lstAvailable",
                           "Available region for songs and interface");
    lstGlobe_ = lists.left;
    lstAvailable_ = lists.right;
    cmdAdd_ = lists.cmdAdd;
    cmdDel_ = lists.cmdDel;
    lblNote_ = new QLabel(
        QStringLiteral("The songs of globe region is visible for room player of other regions"), this);
    lblNote_->setObjectName(QStringLiteral("lblNote"));
    body()->addWidget(lblNote_);

    connect(cmdAdd_, &QPushButton::clicked, this, &frmGlobeRegion::add);
    connect(cmdDel_, &QPushButton::clicked, this, &frmGlobeRegion::del);
    LoadWindowText();
    load();
}

void frmGlobeRegion::load()
{
    // Only regions the songbook offers can be globe regions.
    GetRegionNames(names_);
    lstAvailable_->clear();
    lstGlobe_->clear();
    for (int i = 1; i <= UBound(names_); ++i)
        AddRegionEntry(IsGlobeRegion(names_[i]) ? lstGlobe_ : lstAvailable_, names_, i);
    cmdApply()->setEnabled(false);
}

void frmGlobeRegion::add()
{
    if (!MoveSelectedEntries(lstAvailable_, lstGlobe_)) {
        MsgInfo(QStringLiteral("Please select a region from right list to add!"));
        return;
    }
    Changed();
}

void frmGlobeRegion::del()
{
    if (!MoveSelectedEntries(lstGlobe_, lstAvailable_)) {
        MsgInfo(QStringLiteral("Please select a region from left list to delete!"));
        return;
    }
    Changed();
}

void frmGlobeRegion::Apply()
{
    if (SaveGlobeRegions(EntryNames(lstGlobe_, names_)))
        cmdApply()->setEnabled(false);
}

}  // namespace td
