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

TEST(ServerAddress, ServerThatDoesNotAnswerFailsTheOpeningWithItsReasonOnOneLine)
{
    const struct {
        QString address, reason;
    } cases[] = {
        {test::PostgresServer::instance().address(QStringLiteral("nosuch")), QStringLiteral("nosuch")},
        {QStringLiteral("postgresql://ktv@127.0.0.1:1/songs"), QStringLiteral("port 1")},  // nothing listens
    };
    for (const auto& c : cases) {
        test::TempAppDir dir;
        test::ScriptedDialogs dialogs;
        QString address = c.address;
        DatabaseHomePath(QStringLiteral("SongServer"), address, true);
        EXPECT_FALSE(SongOpenDatabase());
        ASSERT_EQ(dialogs.messages().size(), 1) << c.reason.toStdString();
        const QString message = dialogs.messages()[0];
        EXPECT_TRUE(message.startsWith(u"Open song database failed!  Err=")) << message.toStdString();
        EXPECT_TRUE(message.contains(c.reason)) << message.toStdString();
        EXPECT_FALSE(message.contains(u'\n') || message.contains(u'\t')) << message.toStdString();
    }
}

TEST(ServerAddress, CreateRefusesADatabaseThatHoldsASongbook)
{
    const QString address = test::PostgresServer::instance().newDatabase();
    CreateSongDatabase(address, QStringLiteral("English"));
    EXPECT_THROW(CreateSongDatabase(address, QStringLiteral("English")), AppError);
}

}  // namespace
}  // namespace td
