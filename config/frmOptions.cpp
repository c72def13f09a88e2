#include "config/frmOptions.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "songdb/CatalogueLookups.h"
#include "songdb/SongStatements.h"
#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

namespace td {

namespace {

const QString kDefaultFileType = QStringLiteral("*.vob;*.dat;*.mp3;*.avi");

}  // namespace

frmOptions::frmOptions(WindowFrame& frame, QWidget* parent)
    : SettingsWindow(frame, QStringLiteral("frmOptions"), QStringLiteral("Options ..."), parent)
{
    tbsOpti_ = new QTabWidget(this);
    tbsOpti_->setObjectName(QStringLiteral("tbsOpti"));
    fraOpti_ = new QWidget;
    fraOpti_->setObjectName(QStringLiteral("fraOpti"));
    tbsOpti_->addTab(fraOpti_, QStringLiteral("Songbook"));
    auto* grid = new QGridLayout(fraOpti_);
    txtFileType_ = addBox("txtFileType", "File type (&T)", 0);
    auto* hint = new QLabel(QStringLiteral("(*.dat;*.mp3;*.cda)"), fraOpti_);
    hint->setObjectName(QStringLiteral("lblFileTypeHint"));
    grid->addWidget(hint, 1, 1);
    txtMinIndex_ = addBox("txtMinIndex", "Minimum index of songs", 2);
    txtMaxIndex_ = addBox("txtMaxIndex", "Maximum index of songs", 3);
    grid->setColumnMinimumWidth(1, 300);
    grid->setRowStretch(4, 1);
    body()->addWidget(tbsOpti_);

    for (QLineEdit* box : {txtFileType_, txtMinIndex_, txtMaxIndex_})
        connect(box, &QLineEdit::textChanged, this, [this] { Changed(); });
    connect(tbsOpti_, &QTabWidget::currentChanged, this, [this] { tabClick(); });
    LoadWindowText();
    tabClick();
}

QLineEdit* frmOptions::addBox(const char* name, const char* label, int row)
{
    auto* grid = static_cast<QGridLayout*>(fraOpti_->layout());
    auto* caption = new QLabel(QString::fromUtf8(label), fraOpti_);
    caption->setObjectName(QStringLiteral("lbl") + QString::fromLatin1(name).mid(3));
    auto* box = new QLineEdit(fraOpti_);
    box->setObjectName(QString::fromLatin1(name));
    caption->setBuddy(box);
    grid->addWidget(caption, row, 0);
    grid->addWidget(box, row, 1);
    return box;
}

void frmOptions::tabClick()
{
    // Filling the boxes counts as a change; Apply keeps the state it had before.
    const bool applyEnabled = cmdApply()->isEnabled();
    if (tbsOpti_->currentIndex() == 0) {
        txtFileType_->setText(SongReadValue({}, QStringLiteral("FileType"), kDefaultFileType));
        txtMinIndex_->setText(QString::number(SongMinIndex()));
        txtMaxIndex_->setText(QString::number(SongMaxIndex()));
    }
    cmdApply()->setEnabled(applyEnabled);
}

void frmOptions::Apply()
{
    const double minIndex = NumericValue(txtMinIndex_->text());
    const double maxIndex = NumericValue(txtMaxIndex_->text());
    if (minIndex == 0) {
        MsgInfo(QStringLiteral("Min of song's index should not be zero!"));
        return;
    }
    if (maxIndex == 0) {
        MsgInfo(QStringLiteral("Max of song's index should not be zero!"));
        return;
    }
    if (maxIndex <= minIndex) {
        MsgInfo(QStringLiteral("Max index can't less than or equal to Min index!"));
        return;
    }
    SongWriteValue({}, QStringLiteral("FileType"), txtFileType_->text());
    SongWriteValue({}, QStringLiteral("MinIndex"), txtMinIndex_->text());
    SongWriteValue({}, QStringLiteral("MaxIndex"), txtMaxIndex_->text());
    cmdApply()->setEnabled(false);
}

}  // namespace td
