// The song list follows the regions the songbook offers, once the region window has rewritten them.
#include "SongbookFixture.h"
#include "regions/frmAvailableRegion.h"
#include "shell/mdiMain.h"
#include "songbook/frmSong.h"
#include <QListWidget>
#include <QMdiSubWindow>
#include <QPushButton>

namespace td::test {
namespace {

class SongbookRegions : public SongbookFixture {
protected:
    SongbookRegions()
    {
        for (const char* region : {"China", "Taiwan"})
            dir.write(QStringLiteral("Region/") + QString::fromLatin1(region) + QStringLiteral("/string.txt"),
                      QByteArray("\xFF\xFE", 2));
    }
    QStringList titles() const
    {
        QStringList t = listedTitles();
        t.sort();
        return t;
    }
};

void selectOnly(QListWidget* list, const QString& region)
{
    for (int i = 0; i < list->count(); ++i)
        list->item(i)->setSelected(list->item(i)->text().startsWith(region + QStringLiteral(" (")));
}

TEST_F(SongbookRegions, ListShowsTheOfferedRegionsAndSongsOfNone)
{
    addSong(QStringLiteral("Mainland"), {}, QStringLiteral("China"));
    addSong(QStringLiteral("Island"), {}, QStringLiteral("Taiwan"));
    addSong(QStringLiteral("Nowhere"), {}, QString());
    openSongbook();
    EXPECT_EQ(titles(), (QStringList{QStringLiteral("Mainland"), QStringLiteral("Nowhere")}));

    auto* w = dynamic_cast<frmAvailableRegion*>(frame->ShowWindow(QStringLiteral("frmAvailableRegion")));
    ASSERT_NE(w, nullptr);
    // A settings window stands in its own size over the songbook, which stays maximized.
    auto* sub = qobject_cast<QMdiSubWindow*>(w->parentWidget());
    ASSERT_NE(sub, nullptr);
    EXPECT_FALSE(sub->isMaximized());
    EXPECT_TRUE(qobject_cast<QMdiSubWindow*>(song->parentWidget())->isMaximized());

    selectOnly(w->lstAll(), QStringLiteral("Taiwan"));
    w->cmdAdd()->click();
    selectOnly(w->lstAvailable(), QStringLiteral("China"));
    w->cmdDel()->click();
    dialogs.answer(MsgAnswer::Yes);
    w->cmdOk()->click();
    ASSERT_EQ(dialogs.messages().size(), 1);
    EXPECT_TRUE(dialogs.messages()[0].startsWith(QStringLiteral("Available regions changed.")));
    ASSERT_TRUE(waitForList());
    EXPECT_EQ(titles(), (QStringList{QStringLiteral("Island"), QStringLiteral("Nowhere")}));
    EXPECT_EQ(frame->child(QStringLiteral("frmAvailableRegion")), nullptr);
}

}  // namespace
}  // namespace td::test
