// The check and printing windows over a song database in a temporary program folder: the buttons run
// their jobs to the end, the report reaches the editor, the print choices travel through the
// application INI, and a preview leaves the workbook to be saved under a chosen name.
#include "checks/SongListPrint.h"
#include "checks/frmCheckBook.h"
#include "checks/frmPrint.h"
#include "shell/services/Shell.h"
#include "shell/services/TextStore.h"
#include "shell/services/Translate.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include "support/QtApp.h"
#include "support/QtPrint.h"
#include "support/ScriptedDialogs.h"
#include "support/ShippedTexts.h"
#include "support/TempAppDir.h"
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QPushButton>
#include <QSet>
#include <gtest/gtest.h>

using namespace td;

namespace {

class EditorShell : public ShellSeam {
public:
    EditorShell() { SetShell(this); }
    ~EditorShell() override { SetShell(nullptr); }
    bool open(const QString&) override { return true; }
    bool play(const QString&) override { return true; }
    bool edit(const QString& file) override
    {
        edited << file;
        return true;
    }
    QStringList edited;
};

class CheckWindowsTest : public testing::Test {
protected:
    CheckWindowsTest()
    {
        test::EnsureQtApp();
        for (const char* name : {"ListSong.ini", "PrintTemplate.ini"})
            QFile::copy(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/") + QString::fromLatin1(name),
                        dir.file(QString::fromLatin1(name)));
        if (!dir.openSongDatabase())
            ADD_FAILURE() << "the test database did not open";
    }
    ~CheckWindowsTest() override
    {
        frmPrint::SetPreview({});
        SongCloseDatabase();
    }
    void sql(const QString& statement) { SongConnection()->execute(statement); }

    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    EditorShell shell;
};

TEST_F(CheckWindowsTest, CheckLibrariesOpensItsReportInTheEditor)
{
    sql(QStringLiteral("insert into library (root_path) values ('") + dir.file(QStringLiteral("gone")) + QStringLiteral("')"));
    frmCheckBook w;
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Check songbook"));
    w.cmdLibrary()->click();
    EXPECT_EQ(shell.edited, QStringList{dir.file(QStringLiteral("CheckLibrary.log"))});
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Begin to check all libraries in system?")});
}

TEST_F(CheckWindowsTest, CheckSongsWritesTheRemarkThroughItsOwnConnection)
{
    sql(QStringLiteral("insert into song ([index], title, library, media_file) values (1001, 'x', 'nowhere', '/a.mp3')"));
    frmCheckBook w;
    w.cmdSong()->click();
    std::unique_ptr<Recordset> rs;
    ASSERT_TRUE(SongOpenRecordset(QStringLiteral("select remark from song"), rs));
    EXPECT_EQ(rs->text(0, 0), QStringLiteral("Error - media file missing"));
    EXPECT_EQ(shell.edited, QStringList{dir.file(QStringLiteral("CheckSong.log"))});
}

TEST_F(CheckWindowsTest, MediaButtonsNeedAnOpenSongbook)
{
    frmCheckBook w;
    SongCloseDatabase();
    w.cmdDeleteMedia()->click();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Please login first")});
}

TEST_F(CheckWindowsTest, PrintChoicesAreKeptAsDefaultsAndBuildTheStatement)
{
    {
        frmPrint w;
        EXPECT_TRUE(w.windowTitle().startsWith(QStringLiteral("Songbook printing wizard")));
        ASSERT_GE(w.lstSelect()->count(), 3);
        EXPECT_EQ(w.lstSelect()->item(0)->text(), QStringLiteral("Number"));
        EXPECT_EQ(w.cboField(0)->itemText(0), QString());
        EXPECT_EQ(w.cboCompare(1)->count(), 9);
        w.lstSelect()->item(0)->setSelected(true);
        w.lstSelect()->item(1)->setSelected(true);
        w.cboField(0)->setCurrentIndex(1);  // Number
        w.cboCompare(0)->setCurrentIndex(4);  // >=
        w.cboValue(0)->setCurrentText(QStringLiteral("1000"));
        w.cboField(2)->setCurrentIndex(2);  // Title
        w.cboCompare(2)->setCurrentIndex(6);  // LIKE
        w.cboValue(2)->setCurrentText(QStringLiteral("%Love%"));
        w.cboOrder(1)->setCurrentIndex(2);
        w.SaveDefaults();
    }
    frmPrint again;
    EXPECT_EQ(again.Statement(), QStringLiteral("select [index], [title] from song where [index] >= 1000 and [title] "
                                                "LIKE '%Love%' order by [title] "));
}

TEST_F(CheckWindowsTest, ChoosingAFieldOffersItsDistinctValues)
{
    for (const char* singer : {"B", "A", "B"})
        sql(QStringLiteral("insert into song (singer) values ('%1')").arg(QString::fromLatin1(singer)));
    sql(QStringLiteral("insert into song (singer) values (NULL)"));
    frmPrint w;
    w.cboField(1)->setCurrentIndex(3);  // Singer
    w.FieldClick(1);
    QStringList values;
    for (int i = 0; i < w.cboValue(1)->count(); ++i)
        values << w.cboValue(1)->itemText(i);
    EXPECT_EQ(values, (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
    w.cboField(1)->setCurrentIndex(2);  // Title: typed
    w.FieldClick(1);
    EXPECT_EQ(w.cboValue(1)->count(), 0);
}

TEST_F(CheckWindowsTest, PreviewShowsTheListAndSavesTheWorkbookUnderTheChosenName)
{
    sql(QStringLiteral("insert into song ([index], title) values (1001, '月亮代表我的心')"));
    frmPrint w;
    w.lstSelect()->item(1)->setSelected(true);
    QList<QStringList> previewed;
    frmPrint::SetPreview([&](QWidget*, const SongList& list, const QStringList&) { previewed = list.rows; });
    const QString target = dir.file(QStringLiteral("saved.xlsx"));
    dialogs.files({target});
    w.cmdPreview()->click();
    EXPECT_EQ(previewed, QList<QStringList>{{QStringLiteral("月亮代表我的心")}});
    EXPECT_TRUE(QFile::exists(dir.file(QStringLiteral("SongList.xlsx"))));
    EXPECT_TRUE(QFile::exists(target));
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("1 song(s) will be printed, continue?")});
}

// Every text the two windows show has a line in each shipped language.
TEST_F(CheckWindowsTest, EveryTextHasALineInEachShippedLanguage)
{
    EXPECT_EQ(test::MissingShippedTexts(test::TextsLookedUp([] {
                  frmCheckBook check;
                  frmPrint print;
              })),
              QStringList());
}

}  // namespace
