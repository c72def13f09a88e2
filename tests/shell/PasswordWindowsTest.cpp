// The login and password windows: the id shown and not typed, and the password change's checks in
// their order, each leaving the window open for another try.
#include "shell/frmChangePassword.h"
#include "shell/frmLogin.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QLineEdit>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace td;

namespace {

const QString kInvalid = QStringLiteral("Invalid userid or password\nPlease try again");

class PasswordWindowsTest : public testing::Test {
protected:
    PasswordWindowsTest()
    {
        test::EnsureQtApp();
        if (!app.openSongDatabase())
            ADD_FAILURE() << "the test database did not open";
        SongWriteValue(QStringLiteral("Editor"), QStringLiteral("Chief"), QStringLiteral("Secret"));
    }
    ~PasswordWindowsTest() override { SongCloseDatabase(); }

    QString stored() { return SongReadValue(QStringLiteral("Editor"), QStringLiteral("Chief"), QStringLiteral("<none>")); }

    test::TempAppDir app;
    test::ScriptedDialogs dialogs;
};

TEST_F(PasswordWindowsTest, LoginShowsTheLastUserAndHandsBackWhatWasTyped)
{
    frmLogin login;
    EXPECT_EQ(login.txtUserID()->text(), QStringLiteral("Editor"));
    EXPECT_FALSE(login.txtUserID()->isEnabled());
    login.show();
    EXPECT_EQ(login.txtPassword()->echoMode(), QLineEdit::Password);
    login.txtPassword()->setText(QStringLiteral("pw"));
    login.cmdOk()->click();
    EXPECT_TRUE(login.Ok);
    EXPECT_FALSE(login.isVisible());
    EXPECT_EQ(login.UserID, QStringLiteral("Editor"));
    EXPECT_EQ(login.Password, QStringLiteral("pw"));
    login.cmdCancel()->click();
    EXPECT_FALSE(login.Ok);

    SongWriteValue(QStringLiteral("Default"), QStringLiteral("LastUser"), QStringLiteral("Chief"));
    EXPECT_EQ(frmLogin().txtUserID()->text(), QStringLiteral("Chief"));
}

TEST_F(PasswordWindowsTest, ChecksRunInOrderAndEachKeepsTheWindowOpen)
{
    const struct {
        const char* level;
        const char* old;
        const char* fresh;
        const char* confirm;
        QString message;
    } cases[] = {
        // Differing new passwords fail before anything is read, even for a level that doesn't exist.
        {"Nobody", "x", "a", "b", QStringLiteral("Unmatched confirm password!")},
        {"Chief", "Secret", "a", "A", QStringLiteral("Unmatched confirm password!")},
        {"Nobody", "", "a", "a", kInvalid},
        {"Chief", "secret", "a", "a", kInvalid},  // upper and lower case count
        {"Chief", "Secret ", "a", "a", kInvalid},
    };
    for (const auto& c : cases) {
        dialogs.clear();
        frmChangePassword window(QString::fromLatin1(c.level));
        window.show();
        window.txtOld()->setText(QString::fromLatin1(c.old));
        window.txtNew()->setText(QString::fromLatin1(c.fresh));
        window.txtNew2()->setText(QString::fromLatin1(c.confirm));
        window.cmdOk()->click();
        EXPECT_EQ(dialogs.messages(), QStringList({c.message})) << c.level << "/" << c.old;
        ASSERT_FALSE(dialogs.calls().empty());
        EXPECT_EQ(dialogs.calls().front().icon, MsgIcon::Critical);
        EXPECT_FALSE(window.Ok);
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(stored(), QStringLiteral("Secret"));
    }
    EXPECT_EQ(SongReadValue(QStringLiteral("Editor"), QStringLiteral("Nobody"), QStringLiteral("<none>")),
              QStringLiteral("<none>"));
}

TEST_F(PasswordWindowsTest, ACorrectOldPasswordStoresTheNewOneEvenEmpty)
{
    frmChangePassword window(QStringLiteral("Chief"));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Change password - Chief"));
    window.show();
    window.txtOld()->setText(QStringLiteral("Secret"));
    window.cmdOk()->click();
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("Password is changed successfully!")}));
    EXPECT_TRUE(window.Ok);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.OldPassword, QStringLiteral("Secret"));
    EXPECT_EQ(window.NewPassword, QString());
    EXPECT_EQ(stored(), QString());

    frmChangePassword again(QStringLiteral("Chief"));
    again.show();
    again.txtNew()->setText(QStringLiteral("Neu"));
    again.txtNew2()->setText(QStringLiteral("Neu"));
    again.cmdOk()->click();
    EXPECT_TRUE(again.Ok);
    EXPECT_EQ(stored(), QStringLiteral("Neu"));
}

}  // namespace
