// The booklet window over a song database in a temporary program folder: its choices travel through the
// application INI, Preview hands the chosen region's songs in the chosen groups to the preview, Save PDF
// writes the file the operator names, and every text has a line in each shipped language.
#include "booklet/frmBooklet.h"
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
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QSpinBox>
#include <gtest/gtest.h>

using namespace td;

namespace {

class BookletWindowTest : public testing::Test {
protected:
    BookletWindowTest()
    {
        test::EnsureQtApp();
        if (!dir.openSongDatabase())
            ADD_FAILURE() << "the test database did not open";
        for (const char* statement :
             {"insert into region (name) values ('')", "insert into region (name) values ('Chinese(PRC)')",
              "insert into region (name) values ('Chinese(Taiwan)')",
              "insert into song ([index], title, singer, language, chars, region) values "
              "(1001, '童年', '罗大佑', 'Mandarin', 2, 'Chinese(PRC)')",
              "insert into song ([index], title, singer, language, chars, region) values "
              "(1002, '聽海', '張惠妹', 'Mandarin', 2, 'Chinese(Taiwan)')",
              "insert into song ([index], title, singer, language, chars, region) values "
              "(1003, 'Yesterday', 'Beatles', 'English', 9, NULL)"})
            SongConnection()->execute(QString::fromUtf8(statement));
    }
    ~BookletWindowTest() override
    {
        frmBooklet::SetPreview({});
        SongCloseDatabase();
    }
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
};

TEST_F(BookletWindowTest, ChoicesAreKeptAsDefaults)
{
    {
        frmBooklet w;
        EXPECT_TRUE(w.windowTitle().startsWith(QStringLiteral("Song booklet")));
        EXPECT_EQ(w.cboGroup()->count(), 3);
        EXPECT_EQ(w.cboRegion()->count(), 3);  // all available, then each named region
        w.cboGroup()->setCurrentIndex(1);
        w.spnColumns()->setValue(4);
        w.cboPaper()->setCurrentText(QStringLiteral("Letter"));
        w.cboRegion()->setCurrentIndex(w.cboRegion()->findText(QStringLiteral("Chinese(Taiwan)")));
        w.txtVenue()->setText(QStringLiteral(" Golden Voice "));
        w.cmdSave()->click();
    }
    frmBooklet again;
    const BookletOptions o = again.Options();
    EXPECT_EQ(o.group, BookletGroup::Length);
    EXPECT_EQ(o.columns, 4);
    EXPECT_EQ(o.paper, QStringLiteral("Letter"));
    EXPECT_EQ(o.region, QStringLiteral("Chinese(Taiwan)"));
    EXPECT_EQ(o.venue, QStringLiteral("Golden Voice"));
}

TEST_F(BookletWindowTest, PreviewShowsTheChosenRegionsSongsInTheirGroups)
{
    frmBooklet w;
    QStringList shown;
    frmBooklet::SetPreview(
        [&](QWidget*, const BookletOptions& options, const QList<BookletSection>& sections) {
            for (const BookletSection& s : sections)
                for (const BookletSong& song : s.songs)
                    shown << BookletHeading(s, options.group) + u':' + QString::number(song.index);
        });
    w.cboGroup()->setCurrentIndex(2);  // language
    w.cmdPreview()->click();
    EXPECT_EQ(shown, (QStringList{QStringLiteral("English:1003"), QStringLiteral("Mandarin:1002"),
                                  QStringLiteral("Mandarin:1001")}));  // 聽 T before 童 T by GB order
    shown.clear();
    w.cboRegion()->setCurrentIndex(w.cboRegion()->findText(QStringLiteral("Chinese(PRC)")));
    w.cboGroup()->setCurrentIndex(0);
    w.cmdPreview()->click();
    EXPECT_EQ(shown, QStringList{QString::fromUtf8("罗大佑:1001")});
}

TEST_F(BookletWindowTest, SavePdfWritesTheNamedFile)
{
    frmBooklet w;
    const QString target = dir.file(QStringLiteral("booklet"));
    dialogs.files({target});
    w.cmdPdf()->click();
    EXPECT_TRUE(QFile::exists(target + QStringLiteral(".pdf")));
    EXPECT_TRUE(dialogs.messages().isEmpty()) << dialogs.messages().join(u'\n').toStdString();
}

TEST_F(BookletWindowTest, WithoutASongbookPreviewAsksForALogin)
{
    frmBooklet w;
    SongCloseDatabase();
    w.cmdPreview()->click();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Please login first")});
}

// Every text the window and its pages show has a line in each shipped language.
TEST_F(BookletWindowTest, EveryTextHasALineInEachShippedLanguage)
{
    QSet<QString> keys = test::TextsLookedUp([] {
        frmBooklet w;
        for (BookletGroup g : {BookletGroup::Singer, BookletGroup::Length, BookletGroup::Language})
            for (int chars : {0, 1, 2})
                BookletHeading(BookletSection{{}, chars, {}}, g);
    });
    keys << TranslationKey(QStringLiteral("(continued)")) << TranslationKey(QStringLiteral("Save booklet as"))
         << TranslationKey(QStringLiteral("Print"));
    EXPECT_EQ(test::MissingShippedTexts(keys), QStringList());
}

}  // namespace
