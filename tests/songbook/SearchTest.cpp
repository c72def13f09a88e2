// The search panel: each search type lists the right songs of the regions on offer.
#include "SongbookFixture.h"
#include "controls/ctlDataView.h"
#include "shell/mdiMain.h"
#include "shell/services/Translate.h"
#include "songbook/frmSong.h"
#include "songdb/SongSearch.h"
#include <QComboBox>
#include <QPushButton>
#include <QTreeView>

using namespace td;

namespace {

class SongbookSearch : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        addSong(QStringLiteral("Moon River"), QStringLiteral("Andy"), QStringLiteral("China"), 0, {});
        addSong(QStringLiteral("月亮代表我的心"), QStringLiteral("邓丽君"), QStringLiteral("China"));
        addSong(QStringLiteral("River Deep"), QStringLiteral("Tina"), QString());  // no region: always listed
        addSong(QStringLiteral("It's Now"), QStringLiteral("O'Brien"), QStringLiteral("China"));
        addSong(QStringLiteral("Taiwan River"), QStringLiteral("Andy"),
                QStringLiteral("Taiwan"));  // not on offer
        sql(QStringLiteral("update song set [language]='Mandarin', style='Ballad' where singer='邓丽君'"));
        sql(QStringLiteral("update song set [language]='English', style='Pop' where singer<>'邓丽君'"));
        sql(QStringLiteral("update song set chars=0 where title='River Deep'"));
        openSongbook();
    }
    QStringList search(const QString& code, const QString& value)
    {
        song->cboSearchType()->setCurrentIndex(typeRow(code));
        song->cboSearchType()->activated(song->cboSearchType()->currentIndex());
        EXPECT_TRUE(waitForValues());
        song->cboSearchValue()->setEditText(value);
        song->cmdSearch()->click();
        EXPECT_TRUE(waitForList());
        QStringList titles = listedTitles();
        titles.sort();
        return titles;
    }
    int typeRow(const QString& code)
    {
        for (int i = 0; i < song->cboSearchType()->count(); ++i)
            if (song->cboSearchType()->itemText(i) == SearchTypeCaption(code))
                return i;
        ADD_FAILURE() << "no search type " << code.toStdString();
        return 0;
    }
};

TEST_F(SongbookSearch, EachSearchTypeListsItsSongsOfTheRegionsOnOffer)
{
    struct Case {
        const char* code;
        QString value;
        QStringList titles;
    };
    const QString moon = QStringLiteral("Moon River"), deep = QStringLiteral("River Deep"),
                  now = QStringLiteral("It's Now");
    const QString chinese = QStringLiteral("月亮代表我的心");
    const Case cases[] = {
        {"song", {}, {now, moon, deep, chinese}},
        {"song", QStringLiteral("river"), {moon, deep}},
        {"song", QStringLiteral("It's"), {now}},  // the quote reaches the query doubled
        {"song",
         TranslateText(QStringLiteral("song selector")),
         {now, moon, deep, chinese}},  // counts as empty
        {"singer", QStringLiteral("邓丽"), {chinese}},
        {"singer", QStringLiteral("O'Brien"), {now}},
        {"language", QStringLiteral("Mandarin"), {chinese}},
        {"style", QStringLiteral("Pop"), {now, moon, deep}},
        {"chars", QStringLiteral("7Character"), {chinese}},
        {"chars", {}, {deep}},  // empty means chars = 0
        {"chars", QStringLiteral("many"), {deep}},
        {"singer", QStringLiteral("Nobody"), {}},
    };
    for (const Case& c : cases) {
        QStringList expected = c.titles;
        expected.sort();
        EXPECT_EQ(search(QString::fromLatin1(c.code), c.value), expected)
            << c.code << " " << c.value.toStdString();
    }
    EXPECT_TRUE(dialogs.messages().isEmpty()) << dialogs.messages().join(u'|').toStdString();
}

TEST_F(SongbookSearch, ChoosingATypeFillsTheValuesButDoesNotSearch)
{
    search(QStringLiteral("song"), QStringLiteral("Moon"));
    song->cboSearchValue()->setEditText(QString());
    song->cboSearchType()->setCurrentIndex(typeRow(QStringLiteral("singer")));
    song->cboSearchType()->activated(song->cboSearchType()->currentIndex());
    ASSERT_TRUE(waitForValues());
    EXPECT_EQ(listedTitles(), QStringList{QStringLiteral("Moon River")});
    QStringList singers;
    for (int i = 0; i < song->cboSearchValue()->count(); ++i)
        singers << song->cboSearchValue()->itemText(i);
    EXPECT_TRUE(singers.contains(QStringLiteral("邓丽君"))) << singers.join(u',').toStdString();
    EXPECT_FALSE(singers.contains(QStringLiteral("Nobody")));
}

// A refresh reads in the background and brings the list shown up to date without losing its place.
TEST_F(SongbookSearch, RefreshInTheBackgroundChangesRemovesAndAddsRowsAndKeepsTheSelection)
{
    search(QStringLiteral("song"), QStringLiteral("River"));
    ASSERT_EQ(listedTitles().size(), 2);
    const int moon = row(QStringLiteral("Moon River"));
    select({moon});
    sql(QStringLiteral("update song set title='Moon River (live)' where title='Moon River'"));
    sql(QStringLiteral("delete from song where title='River Deep'"));
    addSong(QStringLiteral("River Song"), QStringLiteral("Choir"));
    ASSERT_TRUE(song->RefreshData());
    EXPECT_FALSE(song->RefreshData());  // one at a time
    ASSERT_TRUE(waitForList());
    QStringList titles = listedTitles();
    titles.sort();
    EXPECT_EQ(titles, (QStringList{QStringLiteral("Moon River (live)"), QStringLiteral("River Song")}));
    QList<int> selection;
    song->ctlView()->GetViewSelections(selection);
    ASSERT_EQ(selection.size(), 2);
    EXPECT_EQ(listedTitles()[selection[1] - 1], QStringLiteral("Moon River (live)"));
    EXPECT_TRUE(dialogs.messages().isEmpty());
}

// The list has one row height whether its first row holds Chinese or Latin text.
TEST_F(SongbookSearch, RowsKeepOneHeightWhateverTheFirstRowHolds)
{
    QTreeView* list = song->ctlView()->list();
    search(QStringLiteral("song"), QStringLiteral("月亮"));
    const int chinese = list->visualRect(list->model()->index(0, 0)).height();
    search(QStringLiteral("song"), QStringLiteral("River"));
    EXPECT_EQ(list->visualRect(list->model()->index(0, 0)).height(), chinese);
    EXPECT_GT(chinese, 0);
}

// The values of a type are read in the background: what the operator types meanwhile stays.
TEST_F(SongbookSearch, ValuesReadInTheBackgroundKeepWhatWasTypedMeanwhile)
{
    song->cboSearchType()->setCurrentIndex(typeRow(QStringLiteral("style")));
    song->cboSearchType()->activated(song->cboSearchType()->currentIndex());
    song->cboSearchValue()->setEditText(QStringLiteral("Po"));
    ASSERT_TRUE(waitForValues());
    EXPECT_EQ(song->cboSearchValue()->currentText(), QStringLiteral("Po"));
    QStringList styles;
    for (int i = 0; i < song->cboSearchValue()->count(); ++i)
        styles << song->cboSearchValue()->itemText(i);
    EXPECT_EQ(styles, (QStringList{QStringLiteral("Ballad"), QStringLiteral("Pop")}));
    // Choosing again before the values came drops the first read.
    song->cboSearchType()->setCurrentIndex(typeRow(QStringLiteral("language")));
    song->cboSearchType()->activated(song->cboSearchType()->currentIndex());
    song->cboSearchType()->setCurrentIndex(typeRow(QStringLiteral("singer")));
    song->cboSearchType()->activated(song->cboSearchType()->currentIndex());
    ASSERT_TRUE(waitForValues());
    EXPECT_TRUE(song->cboSearchValue()->findText(QStringLiteral("Tina")) >= 0);
    EXPECT_EQ(song->cboSearchValue()->findText(QStringLiteral("English")), -1);
    EXPECT_TRUE(dialogs.messages().isEmpty());
}

TEST_F(SongbookSearch, RefreshRunsTheCurrentSearchAndRefreshDataRepeatsTheLastQuery)
{
    search(QStringLiteral("song"), QStringLiteral("River"));
    addSong(QStringLiteral("River Flows"), QStringLiteral("Yiruma"));
    addSong(QStringLiteral("Other"), QStringLiteral("Yiruma"));
    song->cboSearchValue()->setEditText(QStringLiteral("Other"));  // typed, not yet searched
    ASSERT_TRUE(song->RefreshData());
    ASSERT_TRUE(waitForList());
    EXPECT_EQ(listedTitles().size(), 3) << listedTitles().join(u',').toStdString();
    song->ExecuteCommand(QStringLiteral("REFRESH"));
    ASSERT_TRUE(waitForList());
    EXPECT_EQ(listedTitles(), QStringList{QStringLiteral("Other")});
    EXPECT_EQ(frame->pane(QStringLiteral("total")), QStringLiteral("1 song(s)"));
}

}  // namespace
