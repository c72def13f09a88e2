#include "shell/frmChangePassword.h"
#include "regions/WindowText.h"
#include "shell/frmLogin.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"
#include "songdb/SongStatements.h"
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace td {

namespace {

const QString kEditor = QStringLiteral("Editor");
// What a level without a row reads as; no typed password holds these control characters.
const QString kNoSuchLevel = QStringLiteral("\x01\x02no such level\x02\x01");

void refuse()
{
    MsgError(TranslateText(QStringLiteral("Invalid userid or password")) + u'\n' +
             TranslateText(QStringLiteral("Please try again")));
}

}  // namespace

frmChangePassword::frmChangePassword(const QString& userLevel, WindowFrame& frame)
    : QDialog(frame.dialogOwner()), UserLevel(userLevel)
{
    setObjectName(QStringLiteral("frmChangePassword"));
    setWindowTitle(QStringLiteral("Change password"));
    setModal(true);
    auto* fraPwd = new QGroupBox(this);
    fraPwd->setObjectName(QStringLiteral("fraPwd"));
    auto* grid = new QGridLayout(fraPwd);
    const struct {
        const char* label;
        const char* labelName;
        const char* boxName;
        QLineEdit** box;
    } rows[] = {
        {"Old password (&O)", "Label1", "txtOld", &txtOld_},
        {"New password (&N)", "Label2", "txtNew", &txtNew_},
        {"Confirm new password (&C)", "Label3", "txtNew2", &txtNew2_},
    };
    int row = 0;
    for (const auto& r : rows) {
        auto* label = new QLabel(QString::fromLatin1(r.label), fraPwd);
        label->setObjectName(QString::fromLatin1(r.labelName));
        *r.box = new QLineEdit(fraPwd);
        (*r.box)->setObjectName(QString::fromLatin1(r.boxName));
        (*r.box)->setEchoMode(QLineEdit::Password);
        label->setBuddy(*r.box);
        SelectTextOnFocus(*r.box);
        grid->addWidget(label, row, 0);
        grid->addWidget(*r.box, row++, 1);
    }
    cmdOk_ = new QPushButton(QStringLiteral("Ok (&O)"), this);
    cmdOk_->setObjectName(QStringLiteral("cmdOk"));
    cmdOk_->setDefault(true);
    cmdCancel_ = new QPushButton(QStringLiteral("Cancel (&C)"), this);
    cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk_);
    buttons->addWidget(cmdCancel_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fraPwd);
    layout->addLayout(buttons);
    connect(cmdOk_, &QPushButton::clicked, this, &frmChangePassword::ok);
    connect(cmdCancel_, &QPushButton::clicked, this, &frmChangePassword::cancel);

    ExportWindowText(this);
    ApplyWindowText(this);
    setWindowTitle(TranslateText(QStringLiteral("Change password")) + QStringLiteral(" - ") + UserLevel);
}

// Each check keeps the window open for another try.
void frmChangePassword::ok()
{
    if (txtNew_->text() != txtNew2_->text()) {
        MsgError(TranslateText(QStringLiteral("Unmatched confirm password!")));
        return;
    }
    OldPassword = SongReadValue(kEditor, UserLevel, kNoSuchLevel);
    if (OldPassword == kNoSuchLevel || txtOld_->text() != OldPassword) {
        refuse();
        return;
    }
    if (!SongWriteValue(kEditor, UserLevel, txtNew_->text())) {
        MsgError(TranslateText(QStringLiteral("Change password failed!")));
        return;
    }
    MsgInfo(QStringLiteral("Password is changed successfully!"));
    NewPassword = txtNew_->text();
    Ok = true;
    accept();
}

void frmChangePassword::cancel()
{
    Ok = false;
    reject();
}

}  // namespace td
