// The singer window's Delete on every singer, and the photographs back byte for byte from the journal.
#include "singers/frmSinger.h"
#include "songdb/Connection.h"
#include "songdb/DeleteJournal.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TableRows.h"
#include "support/TempAppDir.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

namespace td {
namespace {

TEST(SingerDeleteJournal, SelectAllThenDeleteKeepsEveryPhotographForRestore)
{
    test::EnsureQtApp();
    test::TempAppDir app;
    test::ScriptedDialogs dialogs;
    QFile::copy(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/ListSinger.ini"), app.file(QStringLiteral("ListSinger.ini")));
    ASSERT_TRUE(app.openSongDatabase());
    for (int i = 0; i < 5; ++i) {
        auto rs = SongConnection()->openRecordset(QStringLiteral("select * from singer where 1=0"));
        rs->AddNew();
        rs->Fields(QStringLiteral("name")).setValue(QStringLiteral("歌星 %1").arg(i));
        rs->Fields(QStringLiteral("description")).setValue(QStringLiteral("it's\nme"));
        QByteArray photo(1000 * (i + 1), '\0');
        for (qsizetype b = 0; b < photo.size(); ++b)
            photo[b] = char((b * 31 + i) % 256);
        rs->Fields(QStringLiteral("image")).AppendChunk(photo);
        rs->Fields(QStringLiteral("image_len")).setValue(int(photo.size()));
        rs->Update();
    }
    const QString all = QStringLiteral("select * from singer order by name");
    const QStringList before = test::TableRows(*SongConnection(), all);
    {
        frmSinger window;
        window.show();
        QElapsedTimer clock;
        clock.start();
        while (window.ListLoading() && clock.elapsed() < 10000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        dialogs.clear();
        window.ExecuteCommand(QStringLiteral("selectall"));
        window.ExecuteCommand(QStringLiteral("delete"));
        EXPECT_TRUE(dialogs.calls().empty()) << "Delete asks nothing";
    }
    EXPECT_TRUE(test::TableRows(*SongConnection(), all).isEmpty());
    EXPECT_EQ(test::EventLogLines(app.path(), QStringLiteral("Event:Deleted 5 singer(s) on console ")).size(), 1);

    EXPECT_EQ(RestoreDeleted(*SongConnection()).singers, 5);
    EXPECT_EQ(test::TableRows(*SongConnection(), all), before);
    SongCloseDatabase();
}

}  // namespace
}  // namespace td
