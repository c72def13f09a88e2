// The three region windows: what they list, how entries move, what their applies write.
#include "RegionFixture.h"
#include "regions/RegionStore.h"
#include "regions/frmAvailableRegion.h"
#include "regions/frmDefaultRegion.h"
#include "regions/frmGlobeRegion.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include "songdb/CatalogueLookups.h"
#include "songdb/SongStatements.h"
#include "support/QtPrint.h"
#include <QComboBox>
#include <QDir>
#include <QListWidget>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace td;
using test::RegionFixture;

namespace {

// The shown texts of a list, top to bottom.
QStringList texts(const QListWidget* list)
{
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        out << list->item(i)->text();
    return out;
}

// The regions of a list, by the name before " (".
QStringList regions(const QListWidget* list)
{
    QStringList out;
    for (const QString& t : texts(list))
        out << t.left(t.indexOf(QStringLiteral(" (")));
    return out;
}

void select(QListWidget* list, const QStringList& names)
{
    for (int i = 0; i < list->count(); ++i)
        list->item(i)->setSelected(names.contains(regions(list)[i]));
}

class RegionWindows : public RegionFixture {
protected:
    RegionWindows()
    {
        install(QStringLiteral("English"),
                QStringLiteral("English=English\r\nChinese(PRC)=Simplified Chinese\r\n"
                               "Please select a region from right list=Pick one\r\n"));
        install(QStringLiteral("Chinese(PRC)"),
                QStringLiteral("English=英文\r\nChinese(PRC)=简体中文\r\n"
                               "Default region for interface=界面默认区域\r\n"));
        install(QStringLiteral("Thai"));
        QDir().mkpath(dir.file(QStringLiteral("Region/Empty")));  // no string.txt: not installed
        sql(QStringLiteral("insert into region (name) values ('English')"));
        sql(QStringLiteral("insert into region (name) values ('Korea')"));  // offered, not installed
        dialogs.clear();
    }

    QStringList regionRows() { return column(QStringLiteral("select name from region order by rowid")); }
};

TEST_F(RegionWindows, InstalledRegionsAreTheFoldersWithATextFile)
{
    TextArray names;
    ASSERT_TRUE(GetInterfaceRegions(names));
    EXPECT_EQ(names, (QStringList{QString(), QStringLiteral("Chinese(PRC)"), QStringLiteral("English"),
                                  QStringLiteral("Thai")}));
    EXPECT_EQ(RegionEntryText(QStringLiteral("Chinese(PRC)")),
              QStringLiteral("Chinese(PRC) (Simplified Chinese)"));
    EXPECT_EQ(RegionEntryText(QString()), QString());

    QDir(dir.file(QStringLiteral("Region"))).removeRecursively();
    ASSERT_TRUE(GetInterfaceRegions(names));
    EXPECT_EQ(UBound(names), 0);
}

TEST_F(RegionWindows, AvailableWindowSplitsInstalledRegionsByTheTable)
{
    frmAvailableRegion w(frame);
    EXPECT_EQ(texts(w.lstAvailable()), QStringList{QStringLiteral("English (English)")});
    EXPECT_EQ(texts(w.lstAll()), (QStringList{QStringLiteral("Chinese(PRC) (Simplified Chinese)"),
                                              QStringLiteral("Thai (Thai)")}));
    EXPECT_FALSE(w.cmdApply()->isEnabled());
}

TEST_F(RegionWindows, MovesNeedASelectionAndTakeAllSelectedEntriesReversed)
{
    frmAvailableRegion w(frame);
    w.cmdAdd()->click();
    w.cmdDel()->click();
    EXPECT_EQ(dialogs.messages(),
              (QStringList{QStringLiteral("Pick one"),  // through the translation
                           QStringLiteral("Please select a region from left list to delete!")}));
    EXPECT_FALSE(w.cmdApply()->isEnabled());

    select(w.lstAll(), {QStringLiteral("Chinese(PRC)"), QStringLiteral("Thai")});
    w.cmdAdd()->click();
    EXPECT_EQ(regions(w.lstAvailable()), (QStringList{QStringLiteral("English"), QStringLiteral("Thai"),
                                                      QStringLiteral("Chinese(PRC)")}));
    EXPECT_TRUE(w.lstAll()->count() == 0);
    EXPECT_TRUE(w.cmdApply()->isEnabled());

    select(w.lstAvailable(), {QStringLiteral("English")});
    w.cmdDel()->click();
    EXPECT_EQ(regions(w.lstAll()), QStringList{QStringLiteral("English")});
}

TEST_F(RegionWindows, AvailableApplyWritesTheEmptyNameFirstAndAsksForTheSongbook)
{
    frame.songbookOpen = true;
    frmAvailableRegion w(frame);
    select(w.lstAll(), {QStringLiteral("Thai")});
    w.cmdAdd()->click();
    dialogs.answer(MsgAnswer::No);
    w.cmdApply()->click();
    // The offered region that is not installed goes: the table is rewritten whole.
    EXPECT_EQ(regionRows(), (QStringList{QString(), QStringLiteral("English"), QStringLiteral("Thai")}));
    ASSERT_EQ(dialogs.calls().size(), 1u);
    EXPECT_EQ(dialogs.calls()[0].buttons, MsgButtons::YesNo);
    EXPECT_EQ(dialogs.calls()[0].icon, MsgIcon::Question);
    EXPECT_TRUE(frame.commands.isEmpty());
    EXPECT_FALSE(w.cmdApply()->isEnabled());

    // Ok with nothing changed writes again and asks again; yes reloads the songbook's list.
    sql(QStringLiteral("insert into region (name) values ('Stray')"));
    dialogs.answer(MsgAnswer::Yes);
    w.cmdOk()->click();
    EXPECT_EQ(regionRows(), (QStringList{QString(), QStringLiteral("English"), QStringLiteral("Thai")}));
    EXPECT_EQ(dialogs.calls().size(), 2u);
    EXPECT_EQ(frame.commands, QStringList{QStringLiteral("frmSong refresh")});
    EXPECT_EQ(frame.closed, 1);
}

TEST_F(RegionWindows, AvailableApplyWithoutSongbookAsksNothingAndCancelWritesNothing)
{
    {
        frmAvailableRegion w(frame);
        select(w.lstAvailable(), {QStringLiteral("English")});
        w.cmdDel()->click();
        w.cmdCancel()->click();
    }
    EXPECT_EQ(regionRows(), (QStringList{QStringLiteral("English"), QStringLiteral("Korea")}));
    frmAvailableRegion w(frame);
    w.cmdOk()->click();
    EXPECT_TRUE(dialogs.calls().empty());
    EXPECT_EQ(regionRows(), (QStringList{QString(), QStringLiteral("English")}));
}

TEST_F(RegionWindows, ApplyFailuresAreShownOnceAndKeepApplyEnabled)
{
    frmAvailableRegion available(frame);
    frmGlobeRegion globe(frame);
    sql(QStringLiteral("drop table region"));
    sql(QStringLiteral("drop table config"));
    for (SettingsWindow* w : std::initializer_list<SettingsWindow*>{&available, &globe}) {
        w->cmdApply()->setEnabled(true);
        w->cmdApply()->click();
        EXPECT_TRUE(w->cmdApply()->isEnabled());
    }
    ASSERT_EQ(dialogs.calls().size(), 2u);
    EXPECT_TRUE(dialogs.messages()[0].startsWith(QStringLiteral("Changed system regions failed!  Err=")))
        << dialogs.messages()[0].toStdString();
    EXPECT_TRUE(dialogs.messages()[1].startsWith(QStringLiteral("Changed globe regions failed!  Err=")));
    EXPECT_EQ(dialogs.calls()[0].icon, MsgIcon::Critical);
}

TEST_F(RegionWindows, LocalizeOpensTheRegionsTextFileAfterAsking)
{
    frmAvailableRegion w(frame);
    w.cmdLocalize()->click();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Pick one")});
    EXPECT_TRUE(shell.edited.isEmpty());

    select(w.lstAll(), {QStringLiteral("Thai")});
    dialogs.clear();
    dialogs.answer(MsgAnswer::No);
    w.cmdLocalize()->click();
    EXPECT_EQ(dialogs.messages(),
              QStringList{QStringLiteral("Localize karaoke software for <Thai> region?")});
    EXPECT_TRUE(shell.edited.isEmpty());
    dialogs.answer(MsgAnswer::Yes);
    w.cmdLocalize()->click();
    EXPECT_EQ(shell.edited, QStringList{dir.file(QStringLiteral("Region/Thai/string.txt"))});
}

TEST_F(RegionWindows, GlobeWindowOffersTheTablesRegionsWithTheEmptyOne)
{
    sql(QStringLiteral("insert into region (name) values ('')"));
    sql(QStringLiteral(
        "insert into config ([section], [key], [value]) values ('GlobeRegion', 'Korea', '1')"));
    sql(QStringLiteral(
        "insert into config ([section], [key], [value]) values ('GlobeRegion', 'English', '0')"));
    frmGlobeRegion w(frame);
    EXPECT_EQ(texts(w.lstAvailable()), (QStringList{QString(), QStringLiteral("English (English)")}));
    EXPECT_EQ(texts(w.lstGlobe()), QStringList{QStringLiteral("Korea (Korea)")});

    w.cmdAdd()->click();
    EXPECT_EQ(dialogs.messages(),
              QStringList{QStringLiteral("Please select a region from right list to add!")});
    w.lstAvailable()->item(0)->setSelected(true);  // the songs without a region
    w.cmdAdd()->click();
    w.cmdOk()->click();
    EXPECT_EQ(column(QStringLiteral("select [key] from config where [section]='GlobeRegion' order by rowid")),
              (QStringList{QStringLiteral("Korea"), QString()}));
    EXPECT_TRUE(IsGlobeRegion(QString()));
    EXPECT_FALSE(IsGlobeRegion(QStringLiteral("English")));
    EXPECT_EQ(frame.closed, 1);
}

TEST_F(RegionWindows, GlobeSectionIsRewrittenWholeWhateverItsCase)
{
    // Another program wrote the section in lower case; the store compares it without regard to case.
    sql(QStringLiteral(
        "insert into config ([section], [key], [value]) values ('globeregion', 'English', '1')"));
    sql(QStringLiteral("insert into config ([section], [key], [value]) values ('GlobeRegion', 'Gone', '1')"));
    EXPECT_EQ(SongReadValue(QStringLiteral("GlobeRegion"), QStringLiteral("English"), {}),
              QStringLiteral("1"));
    frmGlobeRegion w(frame);
    EXPECT_EQ(regions(w.lstGlobe()), QStringList{QStringLiteral("English")});
    select(w.lstAvailable(), {QStringLiteral("Korea")});
    w.cmdAdd()->click();
    w.cmdApply()->click();
    EXPECT_EQ(column(QStringLiteral("select [section] || '/' || [key] || '=' || [value] from config "
                                    "where [section]='GlobeRegion' order by rowid")),
              (QStringList{QStringLiteral("GlobeRegion/English=1"), QStringLiteral("GlobeRegion/Korea=1")}));
    EXPECT_EQ(SongReadValue(QStringLiteral("Database"), QStringLiteral("Format"), {}),
              QStringLiteral("SongDatabase"));
    EXPECT_FALSE(w.cmdApply()->isEnabled());
}

TEST_F(RegionWindows, RegionLeavingTheTableStaysAGlobeRegion)
{
    SaveGlobeRegions({QStringLiteral("Korea")});
    frmAvailableRegion w(frame);
    w.cmdOk()->click();  // Korea is not installed, so it is not written back
    EXPECT_FALSE(IsAvailableRegion(QStringLiteral("Korea")));
    EXPECT_TRUE(IsGlobeRegion(QStringLiteral("Korea")));
    frmGlobeRegion globe(frame);
    EXPECT_EQ(texts(globe.lstGlobe()), QStringList{});
}

TEST_F(RegionWindows, DefaultWindowOffersRegionsInstalledAndOffered)
{
    sql(QStringLiteral("insert into region (name) values ('Chinese(PRC)')"));
    IniWrite(dir.file(QStringLiteral("Region.ini")), QStringLiteral("Home"), QStringLiteral("Default"),
             QStringLiteral("Chinese(PRC)"));
    frmDefaultRegion w(frame);
    QStringList offered;
    for (int i = 0; i < w.cboRegion()->count(); ++i)
        offered << w.cboRegion()->itemText(i);
    // Thai has a text file but is not offered; Korea is offered but not installed.
    EXPECT_EQ(offered, (QStringList{QStringLiteral("Chinese(PRC)"), QStringLiteral("English")}));
    EXPECT_EQ(w.cboRegion()->currentText(), QStringLiteral("Chinese(PRC)"));
    EXPECT_EQ(w.windowTitle(), QStringLiteral("界面默认区域"));
    EXPECT_FALSE(w.cmdApply()->isEnabled());
}

TEST_F(RegionWindows, DefaultApplySwitchesTheLanguageOnlyAfterAChange)
{
    sql(QStringLiteral("insert into region (name) values ('Chinese(PRC)')"));
    const QString ini = dir.file(QStringLiteral("Region.ini"));
    frmDefaultRegion w(frame);
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Default region for interface"));
    w.cmdOk()->click();  // nothing changed: nothing applied
    EXPECT_TRUE(dialogs.calls().empty());
    EXPECT_EQ(IniRead(ini, QStringLiteral("Home"), QStringLiteral("Default"), {}), QStringLiteral("English"));

    frmDefaultRegion again(frame);
    again.cboRegion()->setCurrentIndex(again.cboRegion()->findText(QStringLiteral("Chinese(PRC)")));
    ASSERT_TRUE(again.cmdApply()->isEnabled());
    again.cmdApply()->click();
    EXPECT_EQ(IniRead(ini, QStringLiteral("Home"), QStringLiteral("Default"), {}),
              QStringLiteral("Chinese(PRC)"));
    EXPECT_EQ(again.windowTitle(), QStringLiteral("界面默认区域"));
    EXPECT_EQ(
        dialogs.messages(),
        QStringList{QStringLiteral("You might restart program for new default region to take effect.")});
    EXPECT_FALSE(again.cmdApply()->isEnabled());
}

}  // namespace
