#include "shell/frmLogin.h"
#include "regions/WindowText.h"
#include "shell/services/Translate.h"
#include "songdb/SongStatements.h"
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace td {

namespace {

// Selects a box's text once the focus has arrived; a click would otherwise place the cursor after it.
class SelectOnFocus : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::FocusIn)
            if (auto* box = qobject_cast<QLineEdit*>(watched))
                QTimer::singleShot(0, box, &QLineEdit::selectAll);
        return false;
    }
};

}  // namespace

void SelectTextOnFocus(QLineEdit* box)
{
    box->installEventFilter(new SelectOnFocus(box));
}

frmLogin::frmLogin(WindowFrame& frame) : QDialog(frame.dialogOwner())
{
    setObjectName(QStringLiteral("frmLogin"));
    setWindowTitle(QStringLiteral("Login"));
    setModal(true);
    auto* lblUser = new QLabel(QStringLiteral("User id (&U)"), this);
    lblUser->setObjectName(QStringLiteral("lblLabels_0"));
    auto* lblPassword = new QLabel(QStringLiteral("Password (&P)"), this);
    lblPassword->setObjectName(QStringLiteral("lblLabels_1"));
    txtUserID_ = new QLineEdit(this);
    txtUserID_->setObjectName(QStringLiteral("txtUserID"));
    txtPassword_ = new QLineEdit(this);
    txtPassword_->setObjectName(QStringLiteral("txtPassword"));
    txtPassword_->setEchoMode(QLineEdit::Password);
    lblUser->setBuddy(txtUserID_);
    lblPassword->setBuddy(txtPassword_);
    cmdOk_ = new QPushButton(QStringLiteral("Ok (&O)"), this);
    cmdOk_->setObjectName(QStringLiteral("cmdOk"));
    cmdOk_->setDefault(true);
    cmdCancel_ = new QPushButton(QStringLiteral("Cancel (&C)"), this);
    cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));

    auto* grid = new QGridLayout(this);
    grid->addWidget(lblUser, 0, 0);
    grid->addWidget(txtUserID_, 0, 1);
    grid->addWidget(lblPassword, 1, 0);
    grid->addWidget(txtPassword_, 1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk_);
    buttons->addWidget(cmdCancel_);
    grid->addLayout(buttons, 2, 0, 1, 2);

    for (QLineEdit* box : {txtUserID_, txtPassword_})
        SelectTextOnFocus(box);
    connect(cmdOk_, &QPushButton::clicked, this, &frmLogin::ok);
    connect(cmdCancel_, &QPushButton::clicked, this, &frmLogin::cancel);

    ExportWindowText(this);
    ApplyWindowText(this);
    setWindowTitle(TranslateText(QStringLiteral("Please login as editor")));
    txtUserID_->setText(SongReadValue(QStringLiteral("Default"), QStringLiteral("LastUser"), QStringLiteral("Editor")));
    // The id is shown, not typed.
    txtUserID_->setEnabled(false);
}

void frmLogin::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    QLineEdit* first = !txtUserID_->isEnabled() || !txtUserID_->text().isEmpty() ? txtPassword_ : txtUserID_;
    first->setFocus();
}

void frmLogin::ok()
{
    UserID = txtUserID_->text();
    Password = txtPassword_->text();
    Ok = true;
    hide();
}

void frmLogin::cancel()
{
    Ok = false;
    hide();
}

}  // namespace td
