// The system configuration wizard: its pages, the server and room tests as a look at a host's
// KtvPublic folder, and the copy of palyer.ini to the servers, under a temporary NetworkRoot.
#include "config/frmSystemConfig.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace td::test {
namespace {

QByteArray contentOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<none>");
}

// A wizard whose list of servers is kept, as it would be once a place for it is chosen.
class KeptHosts : public frmSystemConfig {
public:
    TextArray kept = NewTextArray();

protected:
    bool ServerHostList(TextArray& hosts, bool write) override
    {
        if (write)
            kept = hosts;
        else
            hosts = kept;
        return true;
    }
};

class SystemConfig : public ::testing::Test {
protected:
    SystemConfig()
    {
        AppIniWrite(QStringLiteral("NetworkRoot"), dir.file(QStringLiteral("net")));
        for (const char* host : {"ktv-a", "ktv-c", "ktv-d"})
            QDir().mkpath(share(host));
        dialogs.clear();
    }
    ~SystemConfig() override { SystemUserLevel().clear(); }

    QString share(const char* host) const
    {
        return dir.file(QStringLiteral("net/") + QString::fromLatin1(host) + QStringLiteral("/KtvPublic"));
    }
    QString master() const { return dir.file(QStringLiteral("KtvPublic/palyer.ini")); }
    QString workingCopy() const { return dir.file(QStringLiteral("KtvPublic/player_source.ini")); }
    QString defaultServer() const
    {
        return IniRead(dir.file(QStringLiteral("KtvPublic/server.ini")), QStringLiteral("SongServer"),
                       QStringLiteral("DefaultServer"), QStringLiteral("<none>"));
    }
    void addSyn(const char* host, const char* address, bool checked)
    {
        auto* row =
            new QTreeWidgetItem(window.lsvSyn(), {QString::fromLatin1(host), QString::fromLatin1(address)});
        row->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
    }
    QStringList synchronize()
    {
        window.cmdSyn()->click();
        QDeadlineTimer deadline(10000);
        while (window.synchronizing() && !deadline.hasExpired())
            QApplication::processEvents(QEventLoop::AllEvents, 20);
        EXPECT_FALSE(window.synchronizing());
        return window.txtSyn()->toPlainText().split(u'\n', Qt::SkipEmptyParts);
    }

    bool appMade_ = (EnsureQtApp(), true);
    TempAppDir dir;
    ScriptedDialogs dialogs;
    frmSystemConfig window;
};

TEST_F(SystemConfig, WithoutAChiefNextClosesTheWizardAtTheFirstPage)
{
    EXPECT_TRUE(window.fraMain(0)->isVisibleTo(&window));
    EXPECT_FALSE(window.cmdPrevious()->isEnabled());
    EXPECT_EQ(window.cmdNext()->text(), QStringLiteral("Next (&N)"));
    window.cmdNext()->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(window.page(), 0);
    EXPECT_TRUE(dialogs.calls().empty());
}

TEST_F(SystemConfig, AChiefGoesThroughRoomsToTheSynchronisation)
{
    SystemUserLevel() = QStringLiteral("Chief");
    window.cmdNext()->click();
    EXPECT_EQ(window.page(), 1);
    EXPECT_TRUE(window.fraMain(1)->isVisibleTo(&window));
    EXPECT_FALSE(window.fraMain(0)->isVisibleTo(&window));
    window.cmdNext()->click();
    EXPECT_EQ(window.page(), 2);
    EXPECT_TRUE(window.fraMain(2)->isVisibleTo(&window));
    dialogs.answer(MsgAnswer::No);
    window.cmdNext()->click();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Do you like to synchronize all servers?")});
    EXPECT_EQ(window.result(), QDialog::Accepted);
}

TEST_F(SystemConfig, SavingTheServersFailsForTheListIsNotKept)
{
    window.txtServerIp(1)->setText(QStringLiteral("ktv-a"));
    window.optServer(1)->click();
    dialogs.answer(MsgAnswer::Yes);
    window.cmdNext()->click();
    EXPECT_EQ(dialogs.messages(),
              (QStringList{QStringLiteral("Do you like to save changes?"), QStringLiteral("Save failed")}));
    EXPECT_EQ(dialogs.calls()[1].icon, MsgIcon::Critical);
    EXPECT_EQ(defaultServer(), QStringLiteral("<none>"));
}

TEST_F(SystemConfig, AKeptListShowsTheDefaultServerInAnyCaseAndSavesIt)
{
    dir.write(QStringLiteral("KtvPublic/server.ini"), "[SongServer]\nDefaultServer=KTV-C\n");
    KeptHosts kept;
    kept.kept << QStringLiteral("ktv-a") << QStringLiteral("ktv-b") << QStringLiteral("ktv-c")
              << QStringLiteral("ktv-d") << QStringLiteral("ktv-e");
    kept.ShowConfigPage();
    EXPECT_EQ(kept.txtServerIp(4)->text(), QStringLiteral("ktv-d"));
    EXPECT_TRUE(kept.optServer(3)->isChecked());
    EXPECT_FALSE(kept.changed());

    kept.optServer(4)->click();
    kept.txtServerIp(4)->setText(QStringLiteral("ktv-x"));
    dialogs.answer(MsgAnswer::Yes);
    kept.cmdNext()->click();
    EXPECT_EQ(dialogs.messages().value(1), QStringLiteral("Save successfully"));
    EXPECT_EQ(defaultServer(), QStringLiteral("ktv-x"));
    EXPECT_EQ(kept.kept.value(4), QStringLiteral("ktv-x"));
}

TEST_F(SystemConfig, TheDefaultServersBoxStandsOutInYellow)
{
    window.optServer(2)->click();
    EXPECT_EQ(window.txtServerIp(2)->palette().color(QPalette::Base), QColor(255, 255, 0));
    window.optServer(3)->click();
    EXPECT_EQ(window.txtServerIp(3)->palette().color(QPalette::Base), QColor(255, 255, 0));
    EXPECT_NE(window.txtServerIp(2)->palette().color(QPalette::Base), QColor(255, 255, 0));
}

TEST_F(SystemConfig, AServerTestIsALookAtItsKtvPublicFolder)
{
    window.txtServerIp(1)->setText(QStringLiteral("ktv-a"));
    window.txtServerIp(2)->setText(QStringLiteral("ktv-b"));
    window.cmdServerTest(1)->click();
    window.cmdServerTest(2)->click();
    window.cmdServerTest(3)->click();  // no host at all
    EXPECT_EQ(window.lblServerState(1)->text(), QStringLiteral("Successfully"));
    EXPECT_EQ(window.lblServerState(1)->palette().color(QPalette::Window), QColor(0, 255, 0));
    EXPECT_EQ(window.lblServerState(2)->text(), QStringLiteral("No respond"));
    EXPECT_EQ(window.lblServerState(2)->palette().color(QPalette::Window), QColor(255, 0, 0));
    EXPECT_EQ(window.lblServerState(3)->text(), QStringLiteral("No respond"));
}

TEST_F(SystemConfig, ARoomIsEditedInTheListAndTested)
{
    auto* room = new QTreeWidgetItem(window.lsvRoom(), {QStringLiteral("101"), QStringLiteral("ktv-b")});
    window.lsvRoom()->setCurrentItem(room);
    emit window.lsvRoom()->itemClicked(room, 0);
    EXPECT_EQ(window.txtRoomID()->text(), QStringLiteral("101"));
    EXPECT_EQ(window.txtRoomIP()->text(), QStringLiteral("ktv-b"));
    window.cmdRoomTest()->click();
    window.txtRoomIP()->setText(QStringLiteral("ktv-a"));
    window.cmdRoomSave()->click();
    EXPECT_EQ(room->text(1), QStringLiteral("ktv-a"));
    EXPECT_TRUE(window.changed());
    window.cmdRoomTest()->click();
    EXPECT_EQ(
        dialogs.messages(),
        (QStringList{QStringLiteral("Room id - 101, Player name or ip address - ktv-b\nNo respond"),
                     QStringLiteral("Room id - 101, Player name or ip address - ktv-a\nSuccessfully")}));
}

TEST_F(SystemConfig, SynchronisationCopiesTheMasterToEachCheckedReachableHost)
{
    dir.write(QStringLiteral("KtvPublic/palyer.ini"), "[Player]\nVolume=80\n");
    dir.write(QStringLiteral("net/ktv-a/KtvPublic/player.ini"), "old");
    dir.write(QStringLiteral("net/ktv-d/KtvPublic/player.ini"), "not mine");
    addSyn("Room A", "ktv-a", true);
    addSyn("Room B", "ktv-b", true);  // no such host
    addSyn("Room D", "ktv-d", false);
    EXPECT_EQ(synchronize(), (QStringList{QStringLiteral("Synchronizing Room A - ktv-a ...... Successfully"),
                                          QStringLiteral("Synchronizing Room B - ktv-b ...... Failed")}));
    EXPECT_EQ(contentOf(share("ktv-a") + QStringLiteral("/player.ini")), QByteArray("[Player]\nVolume=80\n"));
    EXPECT_EQ(contentOf(share("ktv-d") + QStringLiteral("/player.ini")), QByteArray("not mine"));
    EXPECT_FALSE(QFile::exists(workingCopy()));
    EXPECT_TRUE(window.cmdSyn()->isEnabled());
    EXPECT_FALSE(window.cmdSynCancel()->isEnabled());
}

TEST_F(SystemConfig, AMissingMasterLosesTheHostsCopyAndReportsFailed)
{
    dir.write(QStringLiteral("net/ktv-a/KtvPublic/player.ini"), "old");
    addSyn("Room A", "ktv-a", true);
    EXPECT_EQ(synchronize(), QStringList{QStringLiteral("Synchronizing Room A - ktv-a ...... Failed")});
    EXPECT_FALSE(QFile::exists(share("ktv-a") + QStringLiteral("/player.ini")));
    EXPECT_FALSE(QFile::exists(workingCopy()));
}

TEST_F(SystemConfig, NoCheckedRowLeavesTheReportEmpty)
{
    dir.write(QStringLiteral("KtvPublic/palyer.ini"), "[Player]\n");
    addSyn("Room A", "ktv-a", false);
    EXPECT_TRUE(synchronize().isEmpty());
    EXPECT_FALSE(QFile::exists(share("ktv-a") + QStringLiteral("/player.ini")));
    EXPECT_FALSE(QFile::exists(workingCopy()));
    EXPECT_TRUE(QFile::exists(master()));
}

TEST_F(SystemConfig, StopDuringARunFinishesTheHostInWorkAndSaysAbort)
{
    dir.write(QStringLiteral("KtvPublic/palyer.ini"), "[Player]\n");
    addSyn("Room A", "ktv-a", true);
    addSyn("Room C", "ktv-c", true);
    QObject::connect(window.txtSyn(), &QPlainTextEdit::textChanged, &window, [this] {
        if (window.cmdSynCancel()->isEnabled() &&
            window.txtSyn()->toPlainText().startsWith(QStringLiteral("Synchronizing")))
            window.cmdSynCancel()->click();
    });
    EXPECT_EQ(synchronize(), (QStringList{QStringLiteral("Synchronizing Room A - ktv-a ...... Successfully"),
                                          QStringLiteral("Abort")}));
    EXPECT_FALSE(QFile::exists(share("ktv-c") + QStringLiteral("/player.ini")));
}

TEST_F(SystemConfig, AHostThatGoesAwayDuringTheRunFailsAndTheRunGoesOn)
{
    dir.write(QStringLiteral("KtvPublic/palyer.ini"), "[Player]\n");
    addSyn("Room C", "ktv-c", true);
    addSyn("Room A", "ktv-a", true);
    QObject::connect(window.txtSyn(), &QPlainTextEdit::textChanged, &window, [this] {
        if (window.txtSyn()->toPlainText().endsWith(QStringLiteral("Synchronizing Room C - ktv-c")))
            QDir(dir.file(QStringLiteral("net/ktv-c"))).removeRecursively();
    });
    EXPECT_EQ(synchronize(),
              (QStringList{QStringLiteral("Synchronizing Room C - ktv-c ...... Failed"),
                           QStringLiteral("Synchronizing Room A - ktv-a ...... Successfully")}));
}

}  // namespace
}  // namespace td::test
