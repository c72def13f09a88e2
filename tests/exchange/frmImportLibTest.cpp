// The library import wizard: its defaults, its region list, its classes and a whole import through
// the progress window and the message boxes.
#include "exchange/frmImportLib.h"
#include "controls/frmProcess.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"
#include "songdb/SongSession.h"
#include "songdb/RecordAccess.h"
#include "songdb/SongStatements.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QCheckBox>
#include <QDate>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <gtest/gtest.h>

using namespace td;

namespace {

class ImportWizardTest : public testing::Test {
protected:
    void SetUp() override
    {
        test::EnsureQtApp();
        for (const char* region : {"China", "Taiwan"}) {
            const QString folder = dir.file(QStringLiteral("Region/") + QString::fromLatin1(region));
            QDir().mkpath(folder);
            ASSERT_TRUE(WriteTextStore(folder + QStringLiteral("/string.txt"), QStringLiteral("\r\n[Text]\r\n")));
        }
        ASSERT_TRUE(dir.openSongDatabase());
        root = dir.file(QStringLiteral("Songs"));
        QDir().mkpath(root);
    }
    void TearDown() override
    {
        SongCloseDatabase();
        frmProcess::EndShown();
    }
    void songFile(const QString& name, const QString& text)
    {
        ASSERT_TRUE(WriteTextStore(root + u'/' + name + QStringLiteral(".son"), text));
    }
    QStringList songs()
    {
        std::unique_ptr<Recordset> rs;
        EXPECT_TRUE(SongOpenRecordset(QStringLiteral("select [index], title, region, remark from song order by id"), rs));
        QStringList out;
        for (qsizetype r = 0; rs && r < rs->RecordCount(); ++r)
            out << QStringLiteral("%1|%2|%3|%4").arg(rs->text(r, 0), rs->text(r, 1), rs->text(r, 2), rs->text(r, 3));
        return out;
    }

    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    QString root;
};

TEST_F(ImportWizardTest, LoadsTheRegionsAnyRegionAndTheDefaults)
{
    frmImportLib wizard(root);
    ASSERT_TRUE(wizard.loaded());
    EXPECT_EQ(wizard.windowTitle(), QStringLiteral("Library import wizard"));
    ASSERT_EQ(wizard.lstRegion()->count(), 3);
    EXPECT_EQ(wizard.lstRegion()->item(0)->text(), QStringLiteral("China (China)"));
    EXPECT_EQ(wizard.lstRegion()->item(2)->text(), QStringLiteral("Any Region (Any Region)"));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(wizard.lstRegion()->item(i)->isSelected());
    EXPECT_EQ(wizard.GetImportClass(QStringLiteral("INDEX")), QStringLiteral("import"));
    EXPECT_FALSE(wizard.txtFrom()->isEnabled());
    EXPECT_TRUE(wizard.chkIndex()->isChecked());
    EXPECT_EQ(wizard.lblFrom()->text(), QStringLiteral("Source - ") + root);
    EXPECT_TRUE(wizard.lblTo()->text().startsWith(QStringLiteral("Destination - ")));
    EXPECT_EQ(wizard.txtRemark()->text(), QStringLiteral("Import from %1 at %2")
                                              .arg(root, QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd"))));
    EXPECT_EQ(wizard.GetImportClass(QStringLiteral("other")), QString());
}

TEST_F(ImportWizardTest, AutoIndexEnablesItsNumberAndSaveKeepsTheChoice)
{
    {
        frmImportLib wizard(root);
        wizard.optIndex(1)->click();
        EXPECT_TRUE(wizard.txtFrom()->isEnabled());
        wizard.txtFrom()->setText(QStringLiteral("3000"));
        wizard.chkIndex()->setChecked(false);
        wizard.cmdSave()->click();
        wizard.optIndex(2)->click();
        EXPECT_FALSE(wizard.txtFrom()->isEnabled());
        EXPECT_EQ(wizard.GetImportClass(QStringLiteral("index")), QStringLiteral("blank"));
    }
    EXPECT_TRUE(dialogs.calls().empty());
    frmImportLib again(root);
    EXPECT_EQ(again.GetImportClass(QStringLiteral("index")), QStringLiteral("index"));
    EXPECT_EQ(again.GetImportClass(QStringLiteral("indexfrom")), QStringLiteral("3000"));
    EXPECT_FALSE(again.chkIndex()->isChecked());

    AppIniWrite(QStringLiteral("ImportIndex"), QStringLiteral("something"));
    frmImportLib none(root);
    EXPECT_EQ(none.GetImportClass(QStringLiteral("index")), QString());
}

TEST_F(ImportWizardTest, StartImportsTheSelectedRegionsWithTheRemarkAndCloses)
{
    songFile(QStringLiteral("1.dat"),
             QStringLiteral("\r\n[China]\r\nindex=1500\r\ntitle=A\r\nregion=China\r\n\r\n[]\r\nindex=1600\r\ntitle=B\r\n"));
    songFile(QStringLiteral("2.dat"), QStringLiteral("\r\n[Taiwan]\r\nindex=1700\r\ntitle=C\r\nregion=Taiwan\r\n"));
    frmImportLib wizard(root);
    wizard.lstRegion()->item(2)->setSelected(false);  // no "Any Region"
    wizard.txtRemark()->setText(QString(300, u'r'));
    wizard.cmdImport()->click();
    EXPECT_EQ(dialogs.messages(),
              (QStringList{QStringLiteral("2 media file(s) in selected library will be imported, process?"),
                           QStringLiteral("2song(s) imported to songbook successfully!")}));
    EXPECT_EQ(wizard.txtRemark()->text().size(), 255);
    const QString remark(255, u'r');
    EXPECT_EQ(songs(), (QStringList{QStringLiteral("1500|A|China|") + remark, QStringLiteral("1700|C|Taiwan|") + remark}));
    EXPECT_EQ(wizard.result(), QDialog::Accepted);
}

TEST_F(ImportWizardTest, WithoutASongbookItAsksToLoginFirst)
{
    songFile(QStringLiteral("1.dat"), QStringLiteral("\r\n[China]\r\nindex=1500\r\n"));
    frmImportLib wizard(root);
    SongCloseDatabase();
    wizard.cmdImport()->click();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Please login first")});
}

}  // namespace
