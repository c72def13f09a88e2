// The media tab: searching a library folder, with and without "new media only", and adding found files.
#include "SongbookFixture.h"
#include "controls/ctlDataView.h"
#include "songbook/frmSong.h"
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QTabWidget>

using namespace td;

namespace {

class SongbookMedia : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        for (const char* f :
             {"lib/Known.mp3", "lib/New One.vob", "lib/notes.txt", "lib/Sub/Deep.dat", "lib/Sub/Other.avi"})
            makeFile(QString::fromLatin1(f));
        addSong(QStringLiteral("Known"));
        sql(QStringLiteral("update song set media_file='/Known.mp3', library='%1'").arg(libRoot()));
        // A song of the same file name under another library doesn't make the file known.
        addSong(QStringLiteral("Elsewhere"));
        sql(QStringLiteral(
            "update song set media_file='/Sub/Deep.dat', library='/other' where title='Elsewhere'"));
        openSongbook();
    }
    QStringList searchMedia(const QString& root, bool newOnly)
    {
        song->cboMedia()->setEditText(root);
        song->chkMedia()->setChecked(newOnly);
        song->cmdMedia()->click();
        QStringList names;
        ctlDataView* list = song->ctlMedia();
        for (int i = 1; i <= list->MainItems().Count(); ++i)
            names << list->MainItems().Text(i);
        names.sort();
        return names;
    }
};

TEST_F(SongbookMedia, NewMediaOnlyLeavesOutTheFilesOfSongsInThatLibrary)
{
    const QStringList all{QStringLiteral("Deep.dat"), QStringLiteral("Known.mp3"),
                          QStringLiteral("New One.vob"), QStringLiteral("Other.avi")};
    EXPECT_EQ(searchMedia(libRoot(), false), all);
    EXPECT_EQ(searchMedia(libRoot(), true),
              (QStringList{QStringLiteral("Deep.dat"), QStringLiteral("New One.vob"),
                           QStringLiteral("Other.avi")}));
    EXPECT_EQ(searchMedia(libRoot(), false), all);  // the scratch table starts empty each time
    EXPECT_EQ(dialogs.messages(),
              (QStringList{QStringLiteral("4 file(s) founded!"), QStringLiteral("3 file(s) founded!"),
                           QStringLiteral("4 file(s) founded!")}));
    EXPECT_EQ(value(QStringLiteral("select Size & '|' & Position from media where name='Known.mp3'")),
              QStringLiteral("5|") + libRoot() + QStringLiteral("/Known.mp3"));
}

TEST_F(SongbookMedia, OnlyARootOfTheLibraryTableIsSearched)
{
    searchMedia(libRoot(), false);
    dialogs.clear();
    for (const QString& root : {dir.path(), song->cboMedia()->itemText(0), QString()})
        searchMedia(root, false);
    EXPECT_EQ(dialogs.messages(), QStringList(3, QStringLiteral("Please select a library first.")));
    EXPECT_EQ(song->ctlMedia()->MainItems().Count(), 4);  // the last result stands
}

TEST_F(SongbookMedia, AddTakesTheChosenFilesWhenTheMediaTabIsInFront)
{
    searchMedia(libRoot(), true);
    dialogs.clear();
    ctlDataView* list = song->ctlMedia();
    list->MoveTo(1);
    list->MainItems().setSelected(2, true);  // New One.vob and Sub/Deep.dat
    song->tabRight()->setCurrentIndex(1);
    song->ExecuteCommand(QStringLiteral("add"));
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("2 media file(s) added to songbook.")});
    EXPECT_EQ(value(QStringLiteral("select count(*) from song where library='") + libRoot() + u'\''),
              QStringLiteral("3"));
    EXPECT_EQ(value(QStringLiteral("select media_file from song where title='Deep'")),
              QStringLiteral("/Sub/Deep.dat"));

    dialogs.clear();
    list->DeSelect();
    list->DeSelect();
    for (int i = 1; i <= list->MainItems().Count(); ++i)
        list->MainItems().setSelected(i, false);
    song->ExecuteCommand(QStringLiteral("add"));
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Please select media file to add")});
}

}  // namespace
