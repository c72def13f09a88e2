// Songs to the room player: the command file for each mode, and what the hand-off leaves out.
#include "SongbookFixture.h"
#include "controls/ctlDataView.h"
#include "songbook/frmSong.h"
#include <QFile>

using namespace td;

namespace {

class SongbookHandOff : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        for (int i = 1; i <= 4; ++i) {
            const QString media = QStringLiteral("/Pop/%1.mpg").arg(i);
            if (i != 3)  // song 3's file is missing
                files << makeFile(QStringLiteral("lib") + media);
            else
                files << libRoot() + media;
            addSong(QStringLiteral("Song %1").arg(i));
            sql(QStringLiteral("update song set media_file='%1', library='%2' where title='Song %3'")
                    .arg(media, libRoot())
                    .arg(i));
        }
        addSong(QStringLiteral("Song 1 again"));  // a second record of song 1's file
        sql(QStringLiteral("update song set media_file='/Pop/1.mpg', library='%1' where title='Song 1 again'")
                .arg(libRoot()));
        openSongbook();
    }
    QStringList handOff(const QList<int>& rows, const QString& mode)
    {
        shell.commandLines.clear();
        select(rows);
        song->PlaySong(QStringLiteral("songbook"), mode);
        return shell.commandLines;
    }
    QString line(int song, const char* mode) const
    {
        return files[song - 1] + u'=' + QString::fromLatin1(mode);
    }
    QStringList files;
};

TEST_F(SongbookHandOff, TheFirstSongCarriesTheModeAndTheOthersAreAppended)
{
    const QString section = QStringLiteral("[Default]");
    for (const char* mode : {"p", "a", "i"})
        EXPECT_EQ(handOff({4, 1, 2}, QString::fromLatin1(mode)),
                  (QStringList{section, line(1, mode), line(2, "a"), line(4, "a")}))
            << mode;
    EXPECT_EQ(shell.played, QStringList(3, frmSong::CommandFile()));
    // A missing first file takes its line with it, and with it the mode.
    EXPECT_EQ(handOff({3, 4}, QStringLiteral("i")), (QStringList{section, line(4, "a")}));
    // One file selected through two records stands once.
    EXPECT_EQ(handOff({1, 5}, QStringLiteral("p")), (QStringList{section, line(1, "a")}));
    // With no file at all the player is still asked, on a file with nothing to play.
    EXPECT_EQ(handOff({3}, QStringLiteral("p")), QStringList{});
    EXPECT_EQ(shell.played.size(), 6);
    EXPECT_TRUE(dialogs.messages().isEmpty()) << dialogs.messages().join(u'|').toStdString();
}

TEST_F(SongbookHandOff, NothingOrTooMuchSelectedWritesNothing)
{
    for (int i = 1; i <= 46; ++i)
        addSong(QStringLiteral("Filler %1").arg(i));
    ASSERT_TRUE(loadList());
    QList<int> fifty, fiftyOne;
    for (int r = 1; r <= 51; ++r)
        (r <= 50 ? fifty : fiftyOne) << r;
    fiftyOne = fifty + fiftyOne;

    handOff(fiftyOne, QStringLiteral("p"));
    song->ctlView()->DeSelect();
    song->ctlView()->MainItems().setSelected(1, false);
    song->PlaySong(QStringLiteral("songbook"), QStringLiteral("a"));
    song->PlaySong(QStringLiteral("elsewhere"), QStringLiteral("a"));
    EXPECT_EQ(dialogs.messages(), (QStringList{QStringLiteral("Can't add too many songs at one time."),
                                               QStringLiteral("No song or media selected!"),
                                               QStringLiteral("No song or media selected!")}));
    EXPECT_EQ(dialogs.calls()[0].icon, MsgIcon::Critical);
    EXPECT_TRUE(shell.played.isEmpty());
    EXPECT_FALSE(QFile::exists(frmSong::CommandFile()));

    handOff(fifty, QStringLiteral("p"));  // fifty pass
    EXPECT_EQ(shell.played.size(), 1);
}

TEST_F(SongbookHandOff, APlayerThatCannotBeStartedIsReported)
{
    shell.playerStarts = false;
    EXPECT_EQ(handOff({1}, QStringLiteral("p")), QStringList({QStringLiteral("[Default]"), line(1, "p")}));
    ASSERT_EQ(dialogs.messages().size(), 1);
    EXPECT_TRUE(dialogs.messages()[0].startsWith(QStringLiteral("No program could be started for <") +
                                                 frmSong::CommandFile()));
}

}  // namespace
