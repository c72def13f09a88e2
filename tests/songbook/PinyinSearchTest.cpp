// The songbook's pinyin search: its place in the search list, and the songs it lists.
#include "SongbookFixture.h"
#include "songbook/frmSong.h"
#include "songdb/SongSearch.h"
#include <QComboBox>
#include <QPushButton>

using namespace td;

namespace {

class SongbookPinyin : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        for (const char* t : {"童話", "聽海", "重來", "Moon River"})
            addSong(QString::fromUtf8(t), QStringLiteral("s"));
        addSong(QString::fromUtf8("天后"), QStringLiteral("s"), QStringLiteral("Taiwan"));  // not on offer
        openSongbook();
        const int row = song->cboSearchType()->findText(SearchTypeCaption(QStringLiteral("pinyin")));
        ASSERT_EQ(row, song->cboSearchType()->count() - 1);
        song->cboSearchType()->setCurrentIndex(row);
        song->cboSearchType()->activated(row);
    }
    QStringList search(const char* value)
    {
        song->cboSearchValue()->setEditText(QString::fromUtf8(value));
        song->cmdSearch()->click();
        EXPECT_TRUE(waitForList());
        QStringList titles = listedTitles();
        titles.sort();
        return titles;
    }
};

TEST_F(SongbookPinyin, ListsTheSongsWhoseReadingBeginsWithTheValue)
{
    EXPECT_EQ(song->cboSearchValue()->count(), 0);  // free text, no value list
    const std::pair<const char*, const char*> cases[] = {
        {"TH", "童話,聽海"}, {"tonghua", "童話"}, {"cl", "重來"}, {"ZL", "重來"},
        {"moonr", "Moon River"}, {"mr", ""}, {"x'", ""}, {"", "Moon River,童話,聽海,重來"},
    };
    for (const auto& [value, titles] : cases) {
        QStringList expected = QString::fromUtf8(titles).split(u',', Qt::SkipEmptyParts);
        expected.sort();
        EXPECT_EQ(search(value), expected) << value;
    }
    addSong(QString::fromUtf8("天空"), QStringLiteral("s"));  // another path than the window
    EXPECT_EQ(search("tk"), QStringList{QString::fromUtf8("天空")});
    EXPECT_TRUE(dialogs.messages().isEmpty());
}

}  // namespace
