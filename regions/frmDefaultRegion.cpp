#include "regions/frmDefaultRegion.h"
#include "regions/RegionStore.h"
#include "regions/WindowText.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"
#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

namespace td {

frmDefaultRegion::frmDefaultRegion(WindowFrame& frame, QWidget* parent)
    : SettingsWindow(frame, QStringLiteral("frmDefaultRegion"),
                     QStringLiteral("Default region for interface"), parent)
{
    lblRegion_ = new QLabel(QStringLiteral("Region"), this);
    lblRegion_->setObjectName(QStringLiteral("lblRegion"));
    cboRegion_ = new QComboBox(this);
    cboRegion_->setObjectName(QStringLiteral("cboRegion"));
    cboRegion_->setEditable(true);
    cboRegion_->setMinimumWidth(320);
    lblRegion_->setBuddy(cboRegion_);
    auto* row = new QHBoxLayout;
    row->addWidget(lblRegion_);
    row->addWidget(cboRegion_, 1);
    body()->addLayout(row);
    body()->addStretch(1);

    connect(cboRegion_, &QComboBox::editTextChanged, this, [this] { Changed(); });
    connect(cboRegion_, &QComboBox::activated, this, [this] { Changed(); });
    LoadWindowText();
    load();
}

void frmDefaultRegion::load()
{
    TextArray names;
    GetInterfaceRegions(names);
    const QString present = GetDefaultRegion();
    cboRegion_->clear();
    for (int i = 1; i <= UBound(names); ++i) {
        if (!IsAvailableRegion(names[i]))
            continue;
        cboRegion_->addItem(names[i]);
        if (names[i] == present)
            cboRegion_->setCurrentIndex(cboRegion_->count() - 1);
    }
    cmdApply()->setEnabled(false);
}

void frmDefaultRegion::Apply()
{
    if (!cmdApply()->isEnabled())
        return;
    SetRegionAndApply(cboRegion_->currentText());
    // The switch may have passed this window over.
    ApplyWindowText(this);
    cmdApply()->setEnabled(false);
    MsgInfo(QStringLiteral("You might restart program for new default region to take effect."));
}

}  // namespace td
