#include "config/frmDatabase.h"
#include "shell/services/Ini.h"
#include "shell/services/Shell.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace td;

namespace {

class RecordingShell : public ShellSeam {
public:
    RecordingShell() { SetShell(this); }
    ~RecordingShell() override { SetShell(nullptr); }
    QStringList opened;
    bool starts = true;
    bool open(const QString& path) override { return opened << path, starts; }
    bool play(const QString&) override { return false; }
    bool edit(const QString&) override { return false; }
};

TEST(DesktopSeams, InternetShortcutIsWrittenAndItsLocationOpened)
{
    test::TempAppDir dir;
    RecordingShell shell;
    const QString before = QDir::currentPath();
    QDir::setCurrent(dir.path());
    OpenInternetShortcut(QStringLiteral("/opt/tunedesk/userguide_home.htm"));
    QDir::setCurrent(before);
    EXPECT_EQ(IniRead(dir.file(QStringLiteral("Internet.url")), QStringLiteral("InternetShortcut"),
                      QStringLiteral("URL"), {}),
              QStringLiteral("/opt/tunedesk/userguide_home.htm"));
    EXPECT_EQ(shell.opened, QStringList{QStringLiteral("/opt/tunedesk/userguide_home.htm")});
}

TEST(DesktopSeams, AHandOffThatStartsNoProgramSaysSo)
{
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    RecordingShell shell;
    shell.starts = false;
    const QString before = QDir::currentPath();
    QDir::setCurrent(dir.path());  // the shortcut file is written where the program stands
    EXPECT_FALSE(OpenInternetShortcut(dir.file(QStringLiteral("userguide_home.htm"))));
    QDir::setCurrent(before);
    ASSERT_EQ(dialogs.calls().size(), 1u);
    EXPECT_EQ(dialogs.calls()[0].icon, MsgIcon::Critical);
    EXPECT_TRUE(dialogs.calls()[0].text.startsWith(QStringLiteral("No program could be started for <") +
                                                   dir.file(QStringLiteral("userguide_home.htm"))));
}

TEST(DatabaseDialog, ShowsTheStoredPathAndBrowsesForSongDatabases)
{
    test::EnsureQtApp();
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    QString stored = dir.file(QStringLiteral("data/song1.db"));
    DatabaseHomePath(QStringLiteral("SongServer"), stored, true);

    frmDatabase dialog;
    // The designed " - <productname>" becomes the product's name, also before any language is chosen.
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Database configuration - Tunedesk"));
    EXPECT_EQ(dialog.txtLocal()->text(), dir.file(QStringLiteral("data/song1.db")));
    EXPECT_EQ(dialog.txtLocal()->toolTip(), dialog.txtLocal()->text());

    dialogs.files({QStringLiteral("/srv/ktv/song2.db")});
    dialog.cmdBrowse()->click();
    ASSERT_EQ(dialogs.calls().size(), 1u);
    EXPECT_EQ(dialogs.calls()[0].text, QStringLiteral("Select database file for song server"));
    EXPECT_EQ(dialogs.calls()[0].title,
              QStringLiteral("Song Server (songXXX.db)|song*.db|Other database file (*.*)|*.*"));
    EXPECT_EQ(dialog.txtLocal()->text(), QStringLiteral("/srv/ktv/song2.db"));

    // A cancelled dialog hands over what it held before.
    dialog.txtLocal()->setText(QStringLiteral("typed"));
    dialog.cmdBrowse()->click();
    EXPECT_EQ(dialog.txtLocal()->text(), QStringLiteral("/srv/ktv/song2.db"));

    dialog.cmdOpen()->click();
    EXPECT_TRUE(dialog.Ok);
    QString read;
    EXPECT_EQ(DatabaseHomePath(QStringLiteral("SongServer"), read, false),
              QStringLiteral("/srv/ktv/song2.db"));
}

TEST(DatabaseDialog, DefaultServerNameLivesInServerIni)
{
    test::TempAppDir dir;
    QDir().mkpath(dir.file(QStringLiteral("KtvPublic")));
    QString name = QStringLiteral("SONGSRV");
    EXPECT_EQ(DefaultServerName(QStringLiteral("SongServer"), name, true), QStringLiteral("SONGSRV"));
    QString unused;
    EXPECT_EQ(DefaultServerName(QStringLiteral("SongServer"), unused, false), QStringLiteral("SONGSRV"));
    EXPECT_EQ(DefaultServerName(QStringLiteral("RoomServer"), unused, false), QString());
}

}  // namespace
