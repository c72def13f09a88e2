// While the songbook reads and fills a large list, what used to run from inside the read (the load
// timer, a search, a change of database, the end of the program) runs beside it: no statement starts
// on a connection in the middle of another, nothing is used after it is gone, and each step ends
// where it should.
#include "SongbookFixture.h"
#include "config/frmDatabase.h"
#include "controls/ctlDataView.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "shell/services/Ini.h"
#include "songbook/frmSong.h"
#include "songdb/SongSession.h"
#include "songdb/SqliteBackend.h"
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTimer>

namespace td::test {
namespace {

class Reentrance : public SongbookFixture {
protected:
    Reentrance()
    {
        addSong(QStringLiteral("Seed"), QStringLiteral("Choir"));
        for (int i = 0; i < 17; ++i)  // 131,072 songs: a read and a fill that take a while
            sql(
                QStringLiteral("insert into song (title, singer, region, chars) "
                               "select title, singer, region, chars from song"));
        RegisterWindows();
    }
    ~Reentrance() override { FreeMainWindow(); }

    frmSong* songbook() const
    {
        return MainFrame() ? qobject_cast<frmSong*>(MainFrame()->child(QStringLiteral("frmSong"))) : nullptr;
    }
    void pump(int ms)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < ms)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
    }
    // Opens the database dialog's choice as soon as it shows: the same file again.
    void openSameFileWhenAsked()
    {
        auto* poll = new QTimer(qApp);
        QObject::connect(poll, &QTimer::timeout, [poll] {
            if (auto* dialog = qobject_cast<frmDatabase*>(QApplication::activeModalWidget())) {
                poll->deleteLater();
                dialog->cmdOpen()->click();
            }
        });
        poll->start(2);
    }
};

TEST_F(Reentrance, TimerSearchChangeOfDatabaseAndExitDuringALoad)
{
    const int faultsBefore = StatementsStartedMidStatement();
    SongCloseDatabase();
    ASSERT_TRUE(DatabaseLogin());
    ShowMainWindow();
    frmSong* song = songbook();
    ASSERT_NE(song, nullptr);

    // The load timer fires while a search reads, and a search starts while the list fills.
    song->LoadData();
    song->tmrLoadData()->start(0);
    pump(3);
    EXPECT_TRUE(song->ListLoading());
    song->cmdSearch()->click();
    pump(60);
    song->cmdSearch()->click();
    QElapsedTimer clock;
    clock.start();
    while (song->ListLoading() && clock.elapsed() < 10000)
        pump(5);
    EXPECT_FALSE(song->ListLoading());
    EXPECT_EQ(song->ctlView()->MainItems().Count(), 131072);

    // A change of database while a search runs: the songbook comes back on the same file, filling.
    song->LoadData();
    openSameFileWhenAsked();
    ChangeDatabase();
    EXPECT_TRUE(SongDatabaseOpen());
    song = songbook();
    ASSERT_NE(song, nullptr);
    song->tmrLoadData()->stop();
    song->LoadData();
    pump(20);
    EXPECT_TRUE(song->ListLoading());

    // Exit in the middle of that load ends the run at once.
    MainFrame()->menuAction(QStringLiteral("mnuExit"))->trigger();
    pump(20);
    EXPECT_FALSE(SongDatabaseOpen());
    EXPECT_EQ(songbook(), nullptr);
    const QString log = dir.file(QStringLiteral("event.log"));
    const QString last = IniRead(log, QStringLiteral("Default"), QStringLiteral("Index"), {});
    EXPECT_TRUE(
        IniRead(log, QStringLiteral("Event"), last, {}).endsWith(QStringLiteral("Application Terminated")));
    EXPECT_EQ(StatementsStartedMidStatement(), faultsBefore);
}

}  // namespace
}  // namespace td::test
