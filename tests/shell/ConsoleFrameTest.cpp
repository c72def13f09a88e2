#include "config/frmDatabase.h"
#include "shell/CommandTarget.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <gtest/gtest.h>

using namespace td;

namespace {

// Answers the database dialogs as they come up, one answer each, in order.
class DatabaseDialogScript : public QObject {
public:
    using Answer = std::function<void(frmDatabase&)>;
    DatabaseDialogScript()
    {
        timer_.setInterval(5);
        QObject::connect(&timer_, &QTimer::timeout, [this] { poll(); });
        timer_.start();
    }
    void then(Answer a) { answers_.push_back(std::move(a)); }
    int shown = 0;

private:
    void poll()
    {
        auto* dialog = qobject_cast<frmDatabase*>(QApplication::activeModalWidget());
        if (!dialog || dialog == last_ || !dialog->isVisible())
            return;
        last_ = dialog;
        ++shown;
        if (answers_.empty()) {
            ADD_FAILURE() << "an unexpected database dialog";
            dialog->cmdCancel()->click();
            return;
        }
        Answer a = std::move(answers_.front());
        answers_.erase(answers_.begin());
        a(*dialog);
    }
    QTimer timer_;
    std::vector<Answer> answers_;
    QPointer<frmDatabase> last_;
};

auto openWith(const QString& path)
{
    return [path](frmDatabase& d) {
        d.txtLocal()->setText(path);
        d.cmdOpen()->click();
    };
}
auto cancel()
{
    return [](frmDatabase& d) { d.cmdCancel()->click(); };
}

// A working window that records the commands the frame sends it, and calls the songbook menu its
// own as the songbook does.
class FakeSongWindow : public QWidget, public CommandTarget {
public:
    explicit FakeSongWindow(WindowFrame& frame) : frame(frame)
    {
        frame.setOwnMenu(QStringLiteral("mnuSong"));
    }
    WindowFrame& frame;
    QStringList received;
    void ExecuteCommand(const QString& keyword) override { received << keyword; }
    void PlaySong(const QString& source, const QString& action) override
    {
        received << source + u'/' + action;
    }
};

class ConsoleFrameTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        SetAppExeName(QStringLiteral("tunedesk"));
        CreateSongDatabase(songs, QStringLiteral("Chinese"));
        mdiMain::registerWindow(QStringLiteral("frmSong"), [this](WindowFrame& frame) {
            fake = new FakeSongWindow(frame);
            return fake;
        });
    }
    void TearDown() override
    {
        SongCloseDatabase();
        FreeMainWindow();
        SetAppExeName({});
    }
    QString logLine(int i)
    {
        return IniRead(dir.file(QStringLiteral("event.log")), QStringLiteral("Event"),
                       QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0')), {});
    }
    QString homeLocal()
    {
        return IniRead(dir.file(QStringLiteral("KtvPublic/database_home.ini")), QStringLiteral("SongServer"),
                       QStringLiteral("Local"), QStringLiteral("<none>"));
    }

    bool appReady = (test::EnsureQtApp(), true);  // before any member that needs the application
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    DatabaseDialogScript script;
    QString songs = dir.file(QStringLiteral("song1.db"));
    FakeSongWindow* fake = nullptr;
};

TEST_F(ConsoleFrameTest, FirstStartWithoutDatabaseHomeAsksAndCancelEndsTheLogin)
{
    script.then(cancel());
    EXPECT_FALSE(DatabaseLogin());
    EXPECT_EQ(script.shown, 1);
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Did not set song database file yet!")});
    EXPECT_TRUE(SessionUser().isEmpty());
}

TEST_F(ConsoleFrameTest, DialogOpenStoresThePathAndTheLoopRetries)
{
    script.then(openWith(dir.file(QStringLiteral("missing.db"))));
    script.then(openWith(songs));
    EXPECT_TRUE(DatabaseLogin());
    EXPECT_EQ(script.shown, 2);
    EXPECT_TRUE(SongDatabaseOpen());
    EXPECT_EQ(SessionUser(), QStringLiteral("admin"));
    ASSERT_GE(dialogs.messages().size(), 2);
    EXPECT_EQ(dialogs.messages()[0], QStringLiteral("Did not set song database file yet!"));
    EXPECT_TRUE(dialogs.messages()[1].startsWith(QStringLiteral("Can not find song database file! <")));
    // Inside the program folder the path is kept relative, so the folder can move.
    EXPECT_FALSE(homeLocal().startsWith(dir.path()));
}

TEST_F(ConsoleFrameTest, EmptyPathConfirmedIsStoredAndReportedNextTime)
{
    script.then(openWith(QString()));
    script.then(cancel());
    EXPECT_FALSE(DatabaseLogin());
    EXPECT_EQ(homeLocal(), QString());
    EXPECT_EQ(dialogs.messages(), (QStringList{QStringLiteral("Did not set song database file yet!"),
                                               QStringLiteral("Did not set song database file yet!")}));
}

TEST_F(ConsoleFrameTest, GuardAndFixedAnswersWithoutDatabase)
{
    mdiMain frame;
    struct Case {
        const char *entry, *message;
    } cases[] = {
        {"mnuManaSinger", "Please login first"},  {"mnuManaLib", "Please login first"},
        {"mnuToolCheck", "Please login first"},   {"mnuRegionGlobe", "Please login first"},
        {"mnuConfOptions", "Please login first"}, {"mnuLogin", "No support"},
        {"mnuChangePassword", "No Support"},
    };
    for (const auto& c : cases) {
        dialogs.clear();
        frame.menuAction(QString::fromLatin1(c.entry))->trigger();
        EXPECT_EQ(dialogs.messages(), QStringList{QString::fromLatin1(c.message)}) << c.entry;
    }
    dialogs.clear();
    frame.toolbarClick(QStringLiteral("login"));
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("No support")});
    dialogs.clear();
    frame.toolbarClick(QStringLiteral("nosuchkey"));
    EXPECT_TRUE(dialogs.calls().empty());

    // The database entry works without a database; Cancel leaves everything as it was.
    script.then(cancel());
    frame.toolbarClick(QStringLiteral("database"));
    EXPECT_EQ(script.shown, 1);
    EXPECT_TRUE(dialogs.calls().empty());
}

TEST_F(ConsoleFrameTest, SongMenuFollowsTheSongbookWindowAndRoutesCommands)
{
    QString local = songs;
    DatabaseHomePath(QStringLiteral("SongServer"), local, true);
    ASSERT_TRUE(DatabaseLogin());
    ShowMainWindow();
    mdiMain* frame = MainFrame();
    ASSERT_NE(frame, nullptr);
    QAction* songMenu = frame->menu(QStringLiteral("mnuSong"))->menuAction();
    EXPECT_TRUE(songMenu->isVisible());
    EXPECT_FALSE(frame->menu(QStringLiteral("mnuSinger"))->menuAction()->isVisible());
    EXPECT_FALSE(frame->menu(QStringLiteral("mnuMedia"))->menuAction()->isVisible());

    ASSERT_NE(fake, nullptr);
    for (const char* entry :
         {"mnuSongSave", "mnuSongNext", "mnuSongRefresh", "mnuSongPlayInsert", "mnuSongPreview"})
        frame->menuAction(QString::fromLatin1(entry))->trigger();
    // A view entry checked before the click hides its panel; an unchecked one shows it.
    frame->menuAction(QStringLiteral("mnuSongViewProperty"))->setChecked(true);
    frame->menuAction(QStringLiteral("mnuSongViewProperty"))->trigger();
    frame->menuAction(QStringLiteral("mnuSongViewPreview"))->setChecked(false);
    frame->menuAction(QStringLiteral("mnuSongViewPreview"))->trigger();
    EXPECT_EQ(fake->received,
              (QStringList{QStringLiteral("save"), QStringLiteral("next"), QStringLiteral("refresh"),
                           QStringLiteral("songbook/i"), QStringLiteral("songbook/preview"),
                           QStringLiteral("hideproperty"), QStringLiteral("showpreview")}));

    fake->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(songMenu->isVisible());
    frame->menuAction(QStringLiteral("mnuManaSong"))->trigger();
    EXPECT_TRUE(songMenu->isVisible());
    EXPECT_NE(frame->child(QStringLiteral("frmSong")), nullptr);
}

TEST_F(ConsoleFrameTest, ExitLogsTerminationTwiceAndTheWindowButtonOnce)
{
    QString local = songs;
    DatabaseHomePath(QStringLiteral("SongServer"), local, true);
    ASSERT_TRUE(DatabaseLogin());
    ShowMainWindow();
    MainFrame()->menuAction(QStringLiteral("mnuExit"))->trigger();
    EXPECT_FALSE(SongDatabaseOpen());
    EXPECT_TRUE(logLine(2).endsWith(QStringLiteral("Event:Application Terminated")));
    EXPECT_TRUE(logLine(3).endsWith(QStringLiteral("Event:Application Terminated")));
    FreeMainWindow();

    ASSERT_TRUE(DatabaseLogin());
    ShowMainWindow();
    MainFrame()->close();
    EXPECT_TRUE(logLine(5).endsWith(QStringLiteral("Event:Application Terminated")));
    EXPECT_TRUE(logLine(6).isEmpty());
}

TEST_F(ConsoleFrameTest, ChangeOfDatabaseEndsInAFreshSongbookInTheSameFrame)
{
    QString local = songs;
    DatabaseHomePath(QStringLiteral("SongServer"), local, true);
    ASSERT_TRUE(DatabaseLogin());
    ShowMainWindow();
    mdiMain* frame = MainFrame();
    QPointer<FakeSongWindow> before = fake;
    before->frame.setPane(StatusPane::Total, QStringLiteral("219 song(s)"));
    EXPECT_EQ(frame->pane(QStringLiteral("total")), QStringLiteral("219 song(s)"));

    const QString other = dir.file(QStringLiteral("song2.db"));
    CreateSongDatabase(other, QStringLiteral("Chinese"));
    for (const QString& path : {songs, other}) {  // the same file again, then another one
        script.then(openWith(path));
        ChangeDatabase();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(SongDatabaseOpen());
        EXPECT_EQ(MainFrame(), frame);  // loaded once per run
        EXPECT_TRUE(frame->isVisible());
        EXPECT_FALSE(before);
        ASSERT_NE(frame->child(QStringLiteral("frmSong")), nullptr) << path.toStdString();
        EXPECT_EQ(frame->child(QStringLiteral("frmSong")), fake);
        EXPECT_EQ(frame->children().size(), 1);
        EXPECT_TRUE(frame->menu(QStringLiteral("mnuSong"))->menuAction()->isVisible());
        EXPECT_EQ(frame->pane(QStringLiteral("total")), QString());  // the new songbook writes its own
        before = fake;
    }
    FreeMainWindow();
    EXPECT_EQ(MainFrame(), nullptr);
}

TEST_F(ConsoleFrameTest, ChangeDatabaseCancelledKeepsTheSession)
{
    QString local = songs;
    DatabaseHomePath(QStringLiteral("SongServer"), local, true);
    ASSERT_TRUE(DatabaseLogin());
    ShowMainWindow();
    script.then(cancel());
    ChangeDatabase();
    EXPECT_TRUE(SongDatabaseOpen());
    EXPECT_NE(MainFrame()->child(QStringLiteral("frmSong")), nullptr);

    // A change to a file that fails closes everything and brings the dialog back; Cancel ends it all.
    script.then(openWith(dir.file(QStringLiteral("gone.db"))));
    script.then(cancel());
    dialogs.clear();
    ChangeDatabase();
    EXPECT_FALSE(SongDatabaseOpen());
    EXPECT_EQ(dialogs.messages().back(), QStringLiteral("Login failed"));
}

}  // namespace
