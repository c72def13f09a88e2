// The buttons beside the editor's fields, and the length that a new title brings along.
#include "SongbookFixture.h"
#include "controls/ctlDataFields.h"
#include "songbook/frmSong.h"
#include <QPushButton>

using namespace td;

namespace {

class SongbookFieldButtons : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        addSong(QStringLiteral("Song 1"), QStringLiteral("Singer 1"), QStringLiteral("China"), 1001);
        sql(QStringLiteral("update song set order_time=7, media_file='/Old.mpg', library='/old'"));
        openSongbook();
        select({1});
    }
    QString shown(const char* name) const
    {
        ctlDataFields* f = song->ctlFields();
        return f->GetField(f->GetFieldIndex(QString::fromLatin1(name)), QStringLiteral("value")).toString();
    }
    bool changed(const char* name) const
    {
        ctlDataFields* f = song->ctlFields();
        return f->GetField(f->GetFieldIndex(QString::fromLatin1(name)), QStringLiteral("changed")).toBool();
    }
    void press(const char* name)
    {
        ctlDataFields* f = song->ctlFields();
        f->cmdValue(f->GetFieldIndex(QString::fromLatin1(name)))->click();
    }
};

TEST_F(SongbookFieldButtons, AMediaFileIsTakenOnlyFromALibrary)
{
    const QString inside = makeFile(QStringLiteral("lib/Pop/New Song.mpg"));
    const QString outside = makeFile(QStringLiteral("elsewhere/Stray.mpg"));
    const struct {
        const char* name;
        QStringList chosen;
        QString mediaFile, library, message;
    } cases[] = {
        {"cancelled", {}, QStringLiteral("/Old.mpg"), QStringLiteral("/old"), {}},
        {"outside every library",
         {outside},
         QStringLiteral("/Old.mpg"),
         QStringLiteral("/old"),
         QStringLiteral("The selected file < ") + outside +
             QStringLiteral(" > is out of all libraries, the player can't play it!")},
        {"in a library", {inside}, QStringLiteral("/Pop/New Song.mpg"), libRoot(), {}},
    };
    for (const auto& c : cases) {
        dialogs.clear();
        if (!c.chosen.isEmpty())
            dialogs.files(c.chosen);
        press("media_file");
        EXPECT_EQ(shown("media_file"), c.mediaFile) << c.name;
        EXPECT_EQ(shown("library"), c.library) << c.name;
        EXPECT_EQ(changed("media_file"), !c.chosen.isEmpty() && c.message.isEmpty()) << c.name;
        const QStringList messages = dialogs.messages();
        EXPECT_EQ(messages, c.message.isEmpty() ? QStringList{} : QStringList{c.message}) << c.name;
        if (!c.message.isEmpty()) {
            EXPECT_EQ(dialogs.calls().back().icon, MsgIcon::Critical) << c.name;
        }
    }
}

TEST_F(SongbookFieldButtons, ResetOrderCountAndTitleLengthMarkTheirFields)
{
    press("order_time");
    EXPECT_EQ(shown("order_time"), QStringLiteral("0"));
    EXPECT_TRUE(changed("order_time"));
    EXPECT_EQ(value(QStringLiteral("select order_time from song")), QStringLiteral("7"));  // until saved

    edit(QStringLiteral("title"), QStringLiteral("月亮 Moon"));
    EXPECT_EQ(shown("chars"), QStringLiteral("7"));  // spaces count
    EXPECT_TRUE(changed("chars"));
    EXPECT_TRUE(song->SaveItem());
    EXPECT_EQ(value(QStringLiteral("select order_time & '|' & chars from song")), QStringLiteral("0|7"));
}

}  // namespace
