#pragma once
#include "controls/WindowFrame.h"
#include <QDialog>

class QLineEdit;
class QPushButton;

namespace td {

// Changes the password of one editor level, kept in the song database's config table under
// [Editor]. Its checks run in a fixed order and never say whether the level or the password was wrong.
class frmChangePassword : public QDialog {
    Q_OBJECT
public:
    explicit frmChangePassword(const QString& userLevel, WindowFrame& frame = NoFrame());

    QString UserLevel;
    QString OldPassword;
    QString NewPassword;
    bool Ok = false;

    QLineEdit* txtOld() const { return txtOld_; }
    QLineEdit* txtNew() const { return txtNew_; }
    QLineEdit* txtNew2() const { return txtNew2_; }
    QPushButton* cmdOk() const { return cmdOk_; }
    QPushButton* cmdCancel() const { return cmdCancel_; }

private:
    void ok();
    void cancel();

    QLineEdit* txtOld_ = nullptr;
    QLineEdit* txtNew_ = nullptr;
    QLineEdit* txtNew2_ = nullptr;
    QPushButton* cmdOk_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

}  // namespace td
