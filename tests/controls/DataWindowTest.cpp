// The piece every data window is built on: its format file, its buttons, its panes and its close.
#include "SongFixture.h"
#include "controls/DataWindow.h"
#include "controls/StatusStrip.h"
#include "controls/ctlButtons.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QPushButton>
#include <gtest/gtest.h>
#include <map>

using namespace td;

namespace {

class RecordingFrame : public WindowFrame {
public:
    void setPane(StatusPane pane, const QString& text) override
    {
        panes[pane] = text;
        ++writes;
    }
    void setOwnMenu(const QString& menu) override { ownMenu = menu; }
    void popupMenu(const QString&) override {}
    void setMenuChecked(const QString&, bool) override {}
    bool menuChecked(const QString&) const override { return false; }
    void showWindow(const QString&) override {}
    void windowClosed() override { ++closed; }
    QWidget* dialogOwner() const override { return nullptr; }

    std::map<StatusPane, QString> panes;
    QString ownMenu;
    int writes = 0;
    int closed = 0;
};

const char* kFormat =
    "[ColPosition]\nCol_title=0\n[Col_title]\nCaption=Title\nWidth=1500\n"
    "[Fields]\nCount=1\n[Field1]\nLinkCol=Col_title\nClass=text\n"
    "[Buttons]\nCount=2\n[Button1]\nClass=Save\nCaption=Save\n[Button2]\nClass=refresh\nCaption=Refresh\n";

class SingerWindow : public DataWindow {
public:
    explicit SingerWindow(WindowFrame& frame) : DataWindow(frame, QStringLiteral("Singer"))
    {
        view = new ctlDataView(this);
        fields = new ctlDataFields(this);
        buttons = new ctlButtons(this);
        BindParts({view, fields, buttons, QStringLiteral(" singer(s)"), QStringLiteral("mnuSinger")});
        LoadFormats();
    }
    void ExecuteCommand(const QString& command) override { commands << command; }
    bool LoadSingers() { return LoadList(QStringLiteral("select * from singer")); }
    // The window's own stops come while its list is still loading.
    void WindowClosing() override
    {
        order << (view->Loading() ? QStringLiteral("window, list loading") : QStringLiteral("window"));
    }
    ctlDataView* view;
    ctlDataFields* fields;
    ctlButtons* buttons;
    QStringList commands;
    QStringList order;
};

class DataWindowTest : public ::testing::Test {
protected:
    bool appReady = (test::EnsureQtApp(), true);
    test::TempAppDir dir;
    QString format = dir.write(QStringLiteral("ListSinger.ini"), QByteArray(kFormat));
    RecordingFrame frame;
};

TEST_F(DataWindowTest, TheFormatFileOfItsNameReachesAllThreeControls)
{
    SingerWindow w(frame);
    EXPECT_EQ(w.FormatFile(), format);
    EXPECT_EQ(w.view->IniFile(), format);
    EXPECT_EQ(w.view->Columns().size(), 1u);
    EXPECT_EQ(w.fields->GetFieldCount(), 1);
    EXPECT_EQ(w.buttons->GetButtonCount(), 2);
    EXPECT_EQ(frame.ownMenu, QStringLiteral("mnuSinger"));

    // A button hands its class word over as it stands; the window folds it.
    w.buttons->cmdButton(1)->click();
    w.buttons->cmdButton(2)->click();
    EXPECT_EQ(w.commands, (QStringList{QStringLiteral("Save"), QStringLiteral("refresh")}));
}

TEST_F(DataWindowTest, TheListStateBecomesThePanesAndMinusOneKeepsWhatTheyShow)
{
    SingerWindow w(frame);
    const struct {
        int total, selected;
        const char* message;
        const char *expectTotal, *expectSelected;
    } cases[] = {
        {12, 0, "loaded", "12 singer(s)", "0 selected"},
        {-1, 3, "", "12 singer(s)", "3 selected"},
        {-1, -1, "item(s) saved", "12 singer(s)", "3 selected"},
        {0, -1, "item(s) deleted", "0 singer(s)", "3 selected"},
    };
    for (const auto& c : cases) {
        emit w.view->StateChanged(c.total, c.selected, QString::fromLatin1(c.message));
        EXPECT_EQ(frame.panes[StatusPane::Total], QString::fromLatin1(c.expectTotal)) << c.message;
        EXPECT_EQ(frame.panes[StatusPane::Selected], QString::fromLatin1(c.expectSelected)) << c.message;
        EXPECT_EQ(frame.panes[StatusPane::Log], QString::fromLatin1(c.message));
    }
}

TEST_F(DataWindowTest, CloseStopsTheWindowThenARunningLoadAndTellsTheFrameOnce)
{
    test::SongFixture db(5000);
    SingerWindow w(frame);
    std::shared_ptr<Recordset> rs = db.open();
    w.view->setMrsMain(rs);
    w.view->BeginLoadViewData();
    ASSERT_TRUE(w.ListLoading());
    w.close();
    EXPECT_FALSE(w.ListLoading());
    EXPECT_LT(w.view->MainItems().Count(), 5000);  // stopped where it was
    EXPECT_EQ(w.order, QStringList{QStringLiteral("window, list loading")});
    w.close();
    EXPECT_EQ(frame.closed, 1);
    EXPECT_EQ(w.order.size(), 1);
}

TEST_F(DataWindowTest, CloseWithoutALoadAndTheDefaultFrameTakesEverything)
{
    SingerWindow alone(NoFrame());
    emit alone.view->StateChanged(4, 1, QStringLiteral("loaded"));
    EXPECT_FALSE(alone.ListLoading());
    alone.close();
    EXPECT_EQ(alone.order, QStringList{QStringLiteral("window")});
}

// Without a song database the search says why, as the statement runner does, and nothing loads.
TEST_F(DataWindowTest, ALoadWithoutADatabaseReportsTheStatementAndStartsNothing)
{
    test::ScriptedDialogs dialogs;
    SingerWindow w(frame);
    EXPECT_FALSE(w.LoadSingers());
    EXPECT_FALSE(w.ListLoading());
    ASSERT_EQ(dialogs.messages().size(), 1);
    EXPECT_TRUE(dialogs.messages()[0].startsWith(QStringLiteral("SongOpenRecordset failed! Err=")));
    EXPECT_TRUE(dialogs.messages()[0].endsWith(QStringLiteral("SQL=select * from singer")));
}

}  // namespace
