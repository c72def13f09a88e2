// Saving, numbering, deleting and adding songs through the songbook window.
#include "SongbookFixture.h"
#include "controls/ctlDataView.h"
#include "shell/services/FilePaths.h"
#include "songbook/frmSong.h"

using namespace td;
using test::ScriptedDialogs;

namespace {

class SongbookRecords : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        for (int i = 1; i <= 5; ++i)
            ids << addSong(QStringLiteral("Song %1").arg(i), QStringLiteral("Singer %1").arg(i),
                           QStringLiteral("China"), 1000 + i, QStringLiteral("remark %1").arg(i));
        openSongbook();
    }
    QString field(int song, const char* name)
    {
        return value(QStringLiteral("select [%1] from song where id=%2")
                         .arg(QString::fromLatin1(name))
                         .arg(ids[song - 1]));
    }
    QList<qint64> ids;
};

// A number typed with decimals is checked and stored as the same whole number.
TEST_F(SongbookRecords, ANumberWithDecimalsIsCheckedAndStoredWhole)
{
    select({4});
    edit(QStringLiteral("index"), QStringLiteral("6000.7"));
    ASSERT_TRUE(song->SaveItem());
    EXPECT_EQ(field(4, "index"), QStringLiteral("6000"));
    select({5});
    edit(QStringLiteral("index"), QStringLiteral("6000.2"));
    EXPECT_FALSE(song->SaveItem());
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("The index is used by another song")});
    EXPECT_EQ(field(5, "index"), QStringLiteral("1005"));
}

TEST_F(SongbookRecords, SaveOnSeveralSongsWritesOnlyTheChangedField)
{
    select({2, 3});
    sql(QStringLiteral("update song set remark='changed elsewhere' where id=%1").arg(ids[2]));
    edit(QStringLiteral("singer"), QStringLiteral("Choir"));
    EXPECT_TRUE(song->SaveItem());
    for (int s : {2, 3})
        EXPECT_EQ(field(s, "singer"), QStringLiteral("Choir")) << s;
    // Titles differed in the editor and stay each song's own; what another console wrote stays too.
    EXPECT_EQ(field(2, "title"), QStringLiteral("Song 2"));
    EXPECT_EQ(field(3, "title"), QStringLiteral("Song 3"));
    EXPECT_EQ(field(3, "remark"), QStringLiteral("changed elsewhere"));
    EXPECT_EQ(field(1, "singer"), QStringLiteral("Singer 1"));
    EXPECT_EQ(logPane(), QStringLiteral("2 saved!"));
    EXPECT_EQ(song->ctlView()->MainItems().SubItems(3, 2), QStringLiteral("Choir"));  // the row shows it
    // The save ends with the editor reloaded: nothing left to save.
    song->SaveItem();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("No field need to update!")});
}

TEST_F(SongbookRecords, SaveChecksTheIndexInItsOrder)
{
    struct Case {
        QList<int> rows;  // selected rows; empty: the editor keeps a song but the list has none
        const char* field;
        QString value;
        QString message;  // empty: the save goes through
        QString title;
    };
    const QString crashed = QStringLiteral("Song index crashed");
    const Case cases[] = {
        {{2}, nullptr, {}, QStringLiteral("No field need to update!"), {}},
        {{}, "singer", QStringLiteral("X"), QStringLiteral("Please select a song to update!"), {}},
        {{2, 3},
         "index",
         QStringLiteral("5000"),
         QStringLiteral("Can't save more than one songs with same index"),
         {}},
        {{2},
         "index",
         QStringLiteral("999"),
         QStringLiteral("The index less than MinIndex, MinIndex=1000"),
         crashed},
        {{2},
         "index",
         QStringLiteral("1000000"),
         QStringLiteral("The index is more than MaxIndex, MaxIndex=999999"),
         crashed},
        {{2}, "index", QStringLiteral("1004"), QStringLiteral("The index is used by another song"), crashed},
        {{2},
         "index",
         QStringLiteral("1002"),
         QStringLiteral("The index is used by another song"),
         crashed},                                       // its own
        {{2, 3}, "index", QStringLiteral("0"), {}, {}},  // 0 takes the number away from any number of songs
        {{4}, "index", QStringLiteral("5000"), {}, {}},
    };
    for (const Case& c : cases) {
        dialogs.clear();
        select(c.rows.isEmpty() ? QList<int>{1} : c.rows);
        if (c.field) {
            edit(QString::fromLatin1(c.field), QStringLiteral("1"));  // marked changed even when it goes back
            edit(QString::fromLatin1(c.field), c.value);
        }
        if (c.rows.isEmpty())
            song->ctlView()->MainItems().setSelected(1, false);
        const bool saved = song->SaveItem();
        const std::string label = c.value.toStdString() + " -> " + c.message.toStdString();
        EXPECT_EQ(saved, c.message.isEmpty()) << label;
        if (c.message.isEmpty()) {
            EXPECT_TRUE(dialogs.messages().isEmpty()) << label;
            continue;
        }
        ASSERT_EQ(dialogs.calls().size(), 1u) << label;
        EXPECT_EQ(dialogs.calls()[0].text, c.message);
        EXPECT_EQ(dialogs.calls()[0].title, c.title) << label;
        EXPECT_EQ(dialogs.calls()[0].icon, MsgIcon::Information) << label;
    }
    EXPECT_EQ(field(2, "index"), QStringLiteral("0"));
    EXPECT_EQ(field(3, "index"), QStringLiteral("0"));
    EXPECT_EQ(field(4, "index"), QStringLiteral("5000"));
}

TEST_F(SongbookRecords, IndexGivesConsecutiveNumbersOrRefusesTheWholeRange)
{
    struct Case {
        QList<int> rows;
        std::optional<QString> answer;  // nullopt: the input box is cancelled
        QString message;                // the one message expected, or empty
        QList<int> numbers;             // the songs' numbers afterwards, songs 1 to 5
    };
    const QList<int> untouched{1001, 1002, 1003, 1004, 1005};
    const Case cases[] = {
        {{2, 3, 4}, std::nullopt, {}, untouched},
        {{2, 3, 4}, QString(), {}, untouched},
        {{2, 3, 4},
         QStringLiteral("999"),
         QStringLiteral("The index less than MinIndex, MinIndex=1000"),
         untouched},
        {{2, 3, 4},
         QStringLiteral("999998"),
         QStringLiteral("The index is more than MaxIndex, MaxIndex=999999"),
         untouched},
        // The range meets the selection's own numbers: nothing changes.
        {{2, 3, 4},
         QStringLiteral("1003"),
         QStringLiteral("The index is used by another song, Index=1003"),
         untouched},
        {{2, 3, 4},
         QStringLiteral("abc"),
         QStringLiteral("Reset selected songs' index to 0.\nContinue?"),
         untouched},
        {{2, 3, 4}, QStringLiteral("2000.4"), {}, {1001, 2000, 2001, 2002, 1005}},
        {{1, 5}, QStringLiteral("999998"), {}, {999998, 2000, 2001, 2002, 999999}},
    };
    for (const Case& c : cases) {
        dialogs.clear();
        select(c.rows);
        if (c.answer)
            dialogs.input(*c.answer);
        else
            dialogs.cancelInput();
        if (c.answer == QStringLiteral("abc"))
            dialogs.answer(MsgAnswer::No);  // to the reset question
        song->IndexItems();
        const std::string label = c.answer.value_or(QStringLiteral("<cancel>")).toStdString();
        EXPECT_EQ(dialogs.messages(), c.message.isEmpty() ? QStringList{} : QStringList{c.message}) << label;
        QList<int> numbers;
        for (int s = 1; s <= 5; ++s)
            numbers << field(s, "index").toInt();
        EXPECT_EQ(numbers, c.numbers) << label;
    }
    EXPECT_EQ(logPane(), QStringLiteral("2 song(s) indexed."));
    ASSERT_FALSE(dialogs.calls().empty());
    EXPECT_EQ(
        dialogs.calls()[0].text,
        QStringLiteral("2 song(s) to be indexed.\nPlease input an available index from which to start."));
}

TEST_F(SongbookRecords, IndexWithoutSelectionAsksNothing)
{
    song->IndexItems();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Please select a song to index")});
}

TEST_F(SongbookRecords, DeleteSelectsTheRowBeforeTheFirstDeleted)
{
    struct Case {
        QList<int> rows;
        QStringList left;
        int selectedAfter;  // 0: nothing selected
    };
    const Case cases[] = {
        {{3},
         {QStringLiteral("Song 1"), QStringLiteral("Song 2"), QStringLiteral("Song 4"),
          QStringLiteral("Song 5")},
         2},
        {{1}, {QStringLiteral("Song 2"), QStringLiteral("Song 4"), QStringLiteral("Song 5")}, 1},
        {{2, 3}, {QStringLiteral("Song 2")}, 1},
        {{1}, {}, 0},  // an emptied list selects nothing
    };
    for (const Case& c : cases) {
        select(c.rows);
        EXPECT_TRUE(song->DeleteItem());
        EXPECT_EQ(listedTitles(), c.left);
        QList<int> selection;
        song->ctlView()->GetViewSelections(selection);
        EXPECT_EQ(selection, (c.selectedAfter ? QList<int>{0, c.selectedAfter} : QList<int>{0}));
        EXPECT_EQ(value(QStringLiteral("select count(*) from song")).toInt(), c.left.size());
        EXPECT_EQ(logPane(), QString::number(c.rows.size()) + QStringLiteral(" deleted!"));
    }
    EXPECT_TRUE(dialogs.messages().isEmpty());
    EXPECT_FALSE(song->DeleteItem());
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Please select a song to delete!")});
}

TEST_F(SongbookRecords, AddFilesStopsAtTheFirstFileOutsideEveryLibrary)
{
    select({1});
    const QString outside = makeFile(QStringLiteral("elsewhere/Outside.mp3"));
    TextArray files = NewTextArray();
    for (const QString& f :
         {makeFile(QStringLiteral("lib/a.b.mp3")), makeFile(QStringLiteral("lib/Pop/My.Song.Live.mpg")),
          outside, makeFile(QStringLiteral("lib/After.mp3"))})
        AppendItem(files, f);
    EXPECT_EQ(song->AddFiles(files), 2);
    EXPECT_EQ(
        dialogs.messages(),
        QStringList{QStringLiteral("The file < ") + outside +
                    QStringLiteral(" > is not in any of library path, you can't add it to system. \nPlease "
                                   "copy the files to a library path before add them into system!")});
    EXPECT_EQ(logPane(), QStringLiteral("2 file(s) added!"));
    EXPECT_EQ(value(QStringLiteral("select count(*) from song where title='After'")), QStringLiteral("0"));
    EXPECT_EQ(
        value(QStringLiteral(
            "select media_file & '|' & library & '|' & chars & '|' & [index] from song where title='My'")),
        QStringLiteral("/Pop/My.Song.Live.mpg|") + libRoot() + QStringLiteral("|2|0"));
    // The added songs, and only they, are the selection.
    QList<int> selection;
    song->ctlView()->GetViewSelections(selection);
    EXPECT_EQ(selection, (QList<int>{0, 6, 7}));
    EXPECT_EQ(listedTitles().mid(5), (QStringList{QStringLiteral("a"), QStringLiteral("My")}));
}

TEST_F(SongbookRecords, RecountCharsWithOrWithoutSpaces)
{
    sql(QStringLiteral("update song set title='A B  C' where id=%1").arg(ids[0]));
    sql(QStringLiteral("update song set title='   ' where id=%1").arg(ids[1]));
    ASSERT_TRUE(loadList());
    select({1, 2});
    dialogs.answer(MsgAnswer::Ok);
    dialogs.answer(MsgAnswer::No);
    EXPECT_TRUE(song->RecountChars());
    EXPECT_EQ(field(1, "chars"), QStringLiteral("3"));
    EXPECT_EQ(field(2, "chars"), QStringLiteral("0"));
    dialogs.answer(MsgAnswer::Ok);
    dialogs.answer(MsgAnswer::Yes);
    EXPECT_TRUE(song->RecountChars());
    EXPECT_EQ(field(1, "chars"), QStringLiteral("6"));
    EXPECT_EQ(logPane(), QStringLiteral("2 songs' chars recounted."));
}

TEST_F(SongbookRecords, AddFromTheEditorRefusesAUsedNumber)
{
    select({1});
    edit(QStringLiteral("title"), QStringLiteral("New song"));
    EXPECT_FALSE(song->AddItem());  // the editor still holds song 1's number
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Song index crashed!")});
    edit(QStringLiteral("index"), QStringLiteral("0"));
    edit(QStringLiteral("title"), QStringLiteral("New song"));
    EXPECT_TRUE(song->AddItem());
    EXPECT_EQ(value(QStringLiteral("select chars & '|' & singer from song where title='New song'")),
              QStringLiteral("8|Singer 1"));
    QList<int> selection;
    song->ctlView()->GetViewSelections(selection);
    EXPECT_EQ(selection, (QList<int>{0, 6}));
    EXPECT_EQ(song->CountSongs(), 6);
}

}  // namespace
