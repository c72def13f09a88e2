// A songbook on the server is chosen by its address, in the database dialog as in the admin tool.
#include "PostgresServer.h"
#include "config/frmDatabase.h"
#include "shell/services/AppError.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QLineEdit>
#include <QPushButton>

namespace td {
namespace {

TEST(ServerAddress, TypedIntoTheDatabaseDialogOpensTheSession)
{
    test::EnsureQtApp();
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    const QString address = test::PostgresServer::instance().newDatabase();
    CreateSongDatabase(address, QStringLiteral("English"));

    frmDatabase dialog;
    dialog.txtLocal()->setText(address);
    dialog.cmdOpen()->click();
    EXPECT_TRUE(dialog.Ok);
    QString read;
    EXPECT_EQ(DatabaseHomePath(QStringLiteral("SongServer"), read, false), address);

    ASSERT_TRUE(SongOpenDatabase()) << dialogs.messages().join(u'\n').toStdString();
    EXPECT_EQ(SongServerHost(), u"127.0.0.1");
    EXPECT_EQ(SongDatabaseFile(), address);
    EXPECT_EQ(SongReadValue(QStringLiteral("Database"), QStringLiteral("Language"), {}), u"English");
    SongCloseDatabase();
}

TEST(ServerAddress, ServerThatDoesNotAnswerFailsTheOpeningWithItsReason)
{
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    QString address = test::PostgresServer::instance().address(QStringLiteral("nosuch"));
    DatabaseHomePath(QStringLiteral("SongServer"), address, true);
    EXPECT_FALSE(SongOpenDatabase());
    ASSERT_EQ(dialogs.messages().size(), 1);
    EXPECT_TRUE(dialogs.messages()[0].startsWith(u"Open song database failed!  Err=")) << dialogs.messages()[0].toStdString();
    EXPECT_TRUE(dialogs.messages()[0].contains(u"nosuch")) << dialogs.messages()[0].toStdString();
}

TEST(ServerAddress, CreateRefusesADatabaseThatHoldsASongbook)
{
    const QString address = test::PostgresServer::instance().newDatabase();
    CreateSongDatabase(address, QStringLiteral("English"));
    EXPECT_THROW(CreateSongDatabase(address, QStringLiteral("English")), AppError);
}

}  // namespace
}  // namespace td
