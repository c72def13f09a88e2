// The options window: its checks in their order, what it writes, and its three buttons.
#include "config/frmOptions.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include "support/QtApp.h"
#include "support/QtPrint.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <gtest/gtest.h>

using namespace td;

namespace {

class Options : public ::testing::Test {
protected:
    Options()
    {
        test::EnsureQtApp();
        if (!dir.openSongDatabase())
            ADD_FAILURE() << "the test database did not open";
        dialogs.clear();
    }
    ~Options() override { SongCloseDatabase(); }

    static QString stored(const char* key)
    {
        return SongReadValue({}, QString::fromLatin1(key), QStringLiteral("<none>"));
    }
    static void type(QLineEdit* box, const QString& text)
    {
        box->selectAll();
        box->insert(text);
    }

    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
};

TEST_F(Options, LoadShowsTheStoredValuesOrTheirDefaults)
{
    SongWriteValue({}, QStringLiteral("MaxIndex"), QStringLiteral("5000"));
    frmOptions w;
    EXPECT_EQ(w.txtFileType()->text(), QStringLiteral("*.vob;*.dat;*.mp3;*.avi"));
    EXPECT_EQ(w.txtMinIndex()->text(), QStringLiteral("1000"));
    EXPECT_EQ(w.txtMaxIndex()->text(), QStringLiteral("5000"));
    EXPECT_EQ(w.tbsOpti()->count(), 1);
    EXPECT_FALSE(w.cmdApply()->isEnabled());  // filling the boxes is no change
    type(w.txtFileType(), QStringLiteral("*.mpg"));
    EXPECT_TRUE(w.cmdApply()->isEnabled());
}

TEST_F(Options, ChecksRunInOrderAndAFailedOneWritesNothing)
{
    struct Case {
        const char *min, *max, *message;  // nullptr: accepted and stored as typed
    } cases[] = {
        {"0", "0", "Min of song's index should not be zero!"},
        {"abc", "100", "Min of song's index should not be zero!"},
        {"10", "", "Max of song's index should not be zero!"},
        {"10", "x9", "Max of song's index should not be zero!"},
        {"10", "10", "Max index can't less than or equal to Min index!"},
        {"20", "10", "Max index can't less than or equal to Min index!"},
        {"-5", "10", nullptr},
        {"12abc", "100 rooms", nullptr},
        {"1.5", "2", nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.min) + " / " + c.max);
        SongExecute(QStringLiteral("delete * from config where [section]='Default'"));
        dialogs.clear();
        frmOptions w;
        type(w.txtMinIndex(), QString::fromUtf8(c.min));
        type(w.txtMaxIndex(), QString::fromUtf8(c.max));
        w.cmdApply()->click();
        if (c.message) {
            EXPECT_EQ(dialogs.messages(), QStringList{QString::fromUtf8(c.message)});
            EXPECT_EQ(dialogs.calls().front().icon, MsgIcon::Information);
            EXPECT_EQ(stored("MinIndex"), QStringLiteral("<none>"));
            EXPECT_EQ(stored("FileType"), QStringLiteral("<none>"));
            EXPECT_TRUE(w.cmdApply()->isEnabled());
        } else {
            EXPECT_TRUE(dialogs.messages().isEmpty());
            EXPECT_EQ(stored("MinIndex"), QString::fromUtf8(c.min));
            EXPECT_EQ(stored("MaxIndex"), QString::fromUtf8(c.max));
            EXPECT_EQ(stored("FileType"), QStringLiteral("*.vob;*.dat;*.mp3;*.avi"));
            EXPECT_FALSE(w.cmdApply()->isEnabled());
        }
    }
}

TEST_F(Options, FileTypeIsNeverTestedAndMayBeEmpty)
{
    frmOptions w;
    type(w.txtFileType(), QString());
    w.cmdOk()->click();
    EXPECT_TRUE(dialogs.messages().isEmpty());
    EXPECT_EQ(stored("FileType"), QString());
    EXPECT_EQ(SongReadValue(QStringLiteral("Default"), QStringLiteral("FileType"), QStringLiteral("<none>")),
              QString());
}

TEST_F(Options, OkAppliesAgainAfterApplyAndClosesEvenWhenATestFails)
{
    frmOptions w;
    w.show();
    type(w.txtMinIndex(), QStringLiteral("100"));
    w.cmdApply()->click();
    ASSERT_FALSE(w.cmdApply()->isEnabled());
    SongWriteValue({}, QStringLiteral("MinIndex"), QStringLiteral("7"));  // behind the window's back
    w.cmdOk()->click();
    EXPECT_EQ(stored("MinIndex"), QStringLiteral("100"));
    EXPECT_FALSE(w.isVisible());

    frmOptions failing;
    failing.show();
    type(failing.txtMaxIndex(), QStringLiteral("0"));
    failing.cmdOk()->click();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Max of song's index should not be zero!")});
    EXPECT_FALSE(failing.isVisible());
    EXPECT_EQ(stored("MaxIndex"), QStringLiteral("999999"));
}

}  // namespace
