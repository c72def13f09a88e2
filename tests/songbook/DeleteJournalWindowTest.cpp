// "Select all" then Delete empties the songbook at once, and everything comes back from the journal.
#include "SongbookFixture.h"
#include "songbook/frmSong.h"
#include "songdb/Connection.h"
#include "songdb/DeleteJournal.h"
#include "songdb/SongSession.h"
#include "support/TableRows.h"

namespace td::test {
namespace {

class SongbookDeleteJournal : public SongbookFixture {};

TEST_F(SongbookDeleteJournal, SelectAllThenDeleteEmptiesTheSongbookAndRestoreBringsItBack)
{
    for (int i = 1; i <= 40; ++i)
        addSong(QStringLiteral("Song '%1' 歌").arg(i), QStringLiteral("Singer %1").arg(i % 3),
                QStringLiteral("China"), 1000 + i, i % 2 ? QStringLiteral("remark\r\nline") : QString());
    sql(QStringLiteral("update song set lupd_time = '2025-03-04 05:06:07', media_file = '/Pop/a.dat', library = '") +
        libRoot() + QStringLiteral("', channel = 'R', order_time = 9"));
    const QString all = QStringLiteral("select * from song order by id");
    const QStringList before = TableRows(*SongConnection(), all);
    openSongbook();
    ASSERT_EQ(listedTitles().size(), 40);

    song->ExecuteCommand(QStringLiteral("selectall"));
    song->ExecuteCommand(QStringLiteral("delete"));
    EXPECT_TRUE(dialogs.calls().empty()) << "Delete asks nothing";
    EXPECT_TRUE(listedTitles().isEmpty());
    EXPECT_EQ(value(QStringLiteral("select count(*) from song")), QStringLiteral("0"));
    const QStringList lines = EventLogLines(dir.path(), QStringLiteral("Event:Deleted"));
    ASSERT_EQ(lines.size(), 1) << lines.join(u'\n').toStdString();
    EXPECT_TRUE(lines[0].contains(u"Deleted 40 song(s) on console ")) << lines[0].toStdString();

    const RestoreOutcome outcome = RestoreDeleted(*SongConnection());
    EXPECT_EQ(outcome.songs, 40);
    EXPECT_TRUE(outcome.refused.isEmpty());
    EXPECT_EQ(TableRows(*SongConnection(), all), before);
}

}  // namespace
}  // namespace td::test
