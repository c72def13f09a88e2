#pragma once
#include "controls/WindowFrame.h"
#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace td {

// The login of an editor: shows the last user's id and takes a password. It compares nothing; the
// caller reads UserID, Password and Ok once the window has hidden.
class frmLogin : public QDialog {
    Q_OBJECT
public:
    explicit frmLogin(WindowFrame& frame = NoFrame());

    QString UserID;
    QString Password;
    bool Ok = false;

    QLineEdit* txtUserID() const { return txtUserID_; }
    QLineEdit* txtPassword() const { return txtPassword_; }
    QPushButton* cmdOk() const { return cmdOk_; }
    QPushButton* cmdCancel() const { return cmdCancel_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void ok();
    void cancel();

    QLineEdit* txtUserID_ = nullptr;
    QLineEdit* txtPassword_ = nullptr;
    QPushButton* cmdOk_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

// A box whose whole text is selected whenever it gets the focus, as the password windows' boxes are.
void SelectTextOnFocus(QLineEdit* box);

}  // namespace td
