// The songbook import and export wizards: their defaults and texts, Browse and its refusal, and a whole
// import and export through the progress window and the message boxes.
#include "exchange/SongbookExport.h"
#include "exchange/frmExportBook.h"
#include "exchange/frmImportBook.h"
#include "controls/frmProcess.h"
#include "shell/services/Ini.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include "ExchangeTestSupport.h"
#include "MdbWriter.h"
#include <QCheckBox>
#include <QDate>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <gtest/gtest.h>

using namespace td;

namespace {

class BookWizardTest : public testing::Test {
protected:
    void SetUp() override
    {
        test::EnsureQtApp();
        QDir().mkpath(dir.file(QStringLiteral("db")));
        QString db = dir.file(QStringLiteral("db/song2024.db"));
        CreateSongDatabase(db, QStringLiteral("English"));
        DatabaseHomePath(QStringLiteral("SongServer"), db, true);
        ASSERT_TRUE(SongOpenDatabase());
        CreateTemplateDatabase(dir.file(QStringLiteral("default.db")));
    }
    void TearDown() override
    {
        SongCloseDatabase();
        frmProcess::EndShown();
    }

    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
};

TEST_F(BookWizardTest, ImportWizardLoadsItsDefaults)
{
    AppIniWrite(QStringLiteral("ImportIndex"), QStringLiteral("INDEX"));
    AppIniWrite(QStringLiteral("ImportIndexFrom"), QStringLiteral("3000"));
    AppIniWrite(QStringLiteral("ImportDeleteSinger"), QStringLiteral("1"));
    frmImportBook wizard;
    EXPECT_EQ(wizard.windowTitle(), QStringLiteral("Songbook import wizard"));
    const QString source = dir.file(QStringLiteral("db/song.db"));
    EXPECT_EQ(wizard.lblFrom()->text(), source);
    EXPECT_EQ(wizard.lblTo()->text(), QStringLiteral("Destination - ") + SongDatabaseFile());
    EXPECT_EQ(wizard.GetImportClass(QStringLiteral("Index")), QStringLiteral("index"));
    EXPECT_TRUE(wizard.txtFrom()->isEnabled());
    EXPECT_EQ(wizard.GetImportClass(QStringLiteral("indexfrom")), QStringLiteral("3000"));
    EXPECT_EQ(wizard.GetImportClass(QStringLiteral("deletesong")), QStringLiteral("0"));
    EXPECT_EQ(wizard.GetImportClass(QStringLiteral("DeleteSinger")), QStringLiteral("1"));
    EXPECT_EQ(wizard.GetImportClass(QStringLiteral("other")), QString());
    EXPECT_EQ(wizard.txtRemark()->text(), QStringLiteral("Import from ") + source + QStringLiteral(" at ") +
                                              QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")));
    EXPECT_FALSE(wizard.chkGbk()->isEnabled());
    wizard.optIndex(2)->click();
    EXPECT_FALSE(wizard.txtFrom()->isEnabled());
    wizard.chkDeleteSong()->setChecked(true);
    wizard.cmdSave()->click();
    EXPECT_EQ(AppIniRead(QStringLiteral("ImportIndex"), {}), QStringLiteral("blank"));
    EXPECT_EQ(AppIniRead(QStringLiteral("ImportDeleteSong"), {}), QStringLiteral("1"));
    EXPECT_TRUE(dialogs.calls().empty());
}

TEST_F(BookWizardTest, BrowseIsRefusedWhileTheSourceShownIsTheDatabaseInUse)
{
    frmImportBook wizard;
    const QString other = dir.file(QStringLiteral("other.db"));
    dialogs.files({other});
    wizard.cmdBrowse()->click();
    EXPECT_EQ(wizard.lblFrom()->text(), other);
    // A choice of the database in use goes through; the next Browse is then refused.
    dialogs.files({SongDatabaseFile()});
    wizard.cmdBrowse()->click();
    EXPECT_EQ(wizard.lblFrom()->text(), SongDatabaseFile());
    dialogs.files({other});
    wizard.cmdBrowse()->click();
    EXPECT_EQ(wizard.lblFrom()->text(), SongDatabaseFile());
    EXPECT_EQ(dialogs.messages().last(), QStringLiteral("Can not import from current database!"));
}

TEST_F(BookWizardTest, ExportThenImportThroughTheWindows)
{
    SongConnection()->execute(QStringLiteral("insert into song ([index], title) values (1000, 'A')"));
    SongConnection()->execute(QStringLiteral("insert into singer (name) values ('S')"));
    {
        frmExportBook wizard;
        EXPECT_EQ(wizard.lblFrom()->text(), QStringLiteral("Source - ") + SongDatabaseFile());
        EXPECT_EQ(wizard.lblTo()->text(), QStringLiteral("Destination - ") + dir.file(QStringLiteral("db/song.db")));
        wizard.cmdExport()->click();
    }
    ASSERT_FALSE(dialogs.messages().isEmpty());
    EXPECT_EQ(dialogs.messages().last(), QStringLiteral("1 songs and 1 singers exported!"));

    // What was exported comes back, beside what is there: numbered from 2000 here.
    const QString backPath = dir.file(QStringLiteral("db/song.db"));
    frmImportBook wizard;
    wizard.optIndex(1)->click();
    wizard.txtFrom()->setText(QStringLiteral("2000"));
    wizard.chkDeleteSinger()->setChecked(true);
    dialogs.clear();
    wizard.cmdImport()->click();
    EXPECT_EQ(dialogs.messages(),
              (QStringList{QStringLiteral("Import songs & singers from <") + backPath + QStringLiteral("> ?"),
                           QStringLiteral("1 song(s) need to be imported, process?"),
                           QStringLiteral("1 singer(s) need to be import, process?"),
                           QStringLiteral("1 songs and 1 singers imported to songbook!")}));
    EXPECT_EQ(test::rowsOf(*SongConnection(), QStringLiteral("select [index], title from song order by id")),
              (QStringList{QStringLiteral("1000|A"), QStringLiteral("2000|A")}));
    EXPECT_EQ(test::rowsOf(*SongConnection(), QStringLiteral("select name from singer")),
              QStringList{QStringLiteral("S")});
}

TEST_F(BookWizardTest, TheGbkBoxFollowsTheAccessFileChosenAndIsObeyed)
{
    const QString title = QStringLiteral("月亮代表我的心");
    auto write = [&](int jet, int codePage) {
        const QString path = dir.file(QStringLiteral("ktv%1_%2.mdb").arg(jet).arg(codePage));
        test::JetTable song{QStringLiteral("song"),
                            {{QStringLiteral("Index"), test::JetType::Long}, {QStringLiteral("Name"), test::JetType::Text}},
                            {{1000, codePage == 1252 ? QStringLiteral("Song") : title}},
                            {},
                            0};
        EXPECT_TRUE(test::WriteJetDatabase(path, test::JetFileOptions{jet, codePage, 0, QString()}, {song}));
        return path;
    };
    struct Case {
        const char* name;
        int jet;
        int codePage;
        bool enabled;
        bool checked;
    } cases[] = {
        {"Access 97, GBK", 3, 936, true, true},
        {"Access 97, Western", 3, 1252, true, false},
        {"Access 2000", 4, 1252, false, false},
    };
    {
        frmImportBook wizard;
        for (const Case& c : cases) {
            SCOPED_TRACE(c.name);
            dialogs.files({write(c.jet, c.codePage)});
            wizard.cmdBrowse()->click();
            EXPECT_EQ(wizard.chkGbk()->isEnabled(), c.enabled);
            EXPECT_EQ(wizard.chkGbk()->isChecked(), c.checked);
        }
    }
    // The choice is obeyed whatever the file says.
    for (bool gbk : {false, true}) {
        SCOPED_TRACE(gbk);
        frmImportBook wizard;
        dialogs.files({write(3, 936)});
        wizard.cmdBrowse()->click();
        wizard.chkGbk()->setChecked(gbk);
        wizard.chkDeleteSong()->setChecked(true);
        wizard.cmdImport()->click();
        const QStringList titles = test::rowsOf(*SongConnection(), QStringLiteral("select title from song"));
        ASSERT_EQ(titles.size(), 1);
        EXPECT_EQ(titles[0] == title, gbk) << titles[0].toStdString();
    }
}

TEST_F(BookWizardTest, TheExportNeverReplacesTheDatabaseInUse)
{
    SongCloseDatabase();
    ASSERT_TRUE(dir.openSongDatabase());  // song.db itself
    SongConnection()->execute(QStringLiteral("insert into song ([index], title) values (1000, 'A')"));
    frmExportBook wizard;
    wizard.cmdExport()->click();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Can not export to current database!")});
    EXPECT_EQ(test::rowsOf(*SongConnection(), QStringLiteral("select title from song")), QStringList{QStringLiteral("A")});
}

TEST_F(BookWizardTest, WithoutADatabaseTheWizardsAskForALogin)
{
    SongCloseDatabase();
    frmImportBook importer;
    importer.cmdImport()->click();
    frmExportBook exporter;
    exporter.cmdExport()->click();
    EXPECT_EQ(dialogs.messages(), (QStringList{QStringLiteral("Please login first"), QStringLiteral("Please login first")}));
}

}  // namespace
