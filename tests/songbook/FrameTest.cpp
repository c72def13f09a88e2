// The songbook meets the frame only through the frame it was made with: its menu and check marks,
// its popups, the windows its field buttons open, its panes, and its close.
#include "SongbookFixture.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/services/Ini.h"
#include "songbook/frmSong.h"
#include <QFile>
#include <QHeaderView>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>
#include <map>

using namespace td;

namespace {

class RecordingFrame : public WindowFrame {
public:
    void setPane(StatusPane pane, const QString& text) override { panes[pane] = text; }
    void setOwnMenu(const QString& menu) override { calls << QStringLiteral("menu ") + menu; }
    void popupMenu(const QString& menu) override { calls << QStringLiteral("popup ") + menu; }
    void setMenuChecked(const QString& entry, bool checked) override { checks[entry] = checked; }
    bool menuChecked(const QString& entry) const override { return checks.value(entry); }
    void showWindow(const QString& name) override { calls << QStringLiteral("show ") + name; }
    void windowClosed() override { calls << QStringLiteral("closed"); }
    QWidget* dialogOwner() const override { return nullptr; }

    std::map<StatusPane, QString> panes;
    QHash<QString, bool> checks;
    QStringList calls;
};

class SongbookFrame : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        addSong(QStringLiteral("Song 1"), QStringLiteral("Singer 1"));
        addSong(QStringLiteral("Song 2"), QStringLiteral("Singer 2"));
        addSong(QStringLiteral("Elsewhere"), {}, QStringLiteral("Japan"));
    }
    QByteArray formatFile() const
    {
        QFile f(dir.file(QStringLiteral("ListSong.ini")));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    RecordingFrame frame;
};

TEST_F(SongbookFrame, LoadCallsTheSongMenuItsOwnAndTheListWritesThePanes)
{
    AppIniWrite(QStringLiteral("SongViewPreview"), QStringLiteral("0"));
    frmSong window(frame);
    song = &window;
    EXPECT_EQ(frame.calls, QStringList{QStringLiteral("menu mnuSong")});
    EXPECT_TRUE(frame.checks.value(QStringLiteral("mnuSongViewProperty")));
    EXPECT_FALSE(frame.checks.value(QStringLiteral("mnuSongViewPreview"), true));

    window.tmrLoadData()->stop();
    ASSERT_TRUE(loadList());  // the search reads in the background; the list fills in slices
    EXPECT_EQ(frame.panes[StatusPane::Total], QStringLiteral("2 song(s)"));
    select({2});
    EXPECT_EQ(frame.panes[StatusPane::Selected], QStringLiteral("1 selected"));
    edit(QStringLiteral("singer"), QStringLiteral("Choir"));
    ASSERT_TRUE(window.SaveItem());
    EXPECT_EQ(frame.panes[StatusPane::Log], QStringLiteral("1 saved!"));

    // The command keeps the check mark in step with the stored setting.
    window.ExecuteCommand(QStringLiteral("showpreview"));
    EXPECT_TRUE(frame.checks.value(QStringLiteral("mnuSongViewPreview")));
    window.ExecuteCommand(QStringLiteral("hideproperty"));
    EXPECT_FALSE(frame.checks.value(QStringLiteral("mnuSongViewProperty"), true));
}

TEST_F(SongbookFrame, RightClicksPopUpMenusAndFieldButtonsOpenWindowsThroughTheFrame)
{
    frmSong window(frame);
    song = &window;
    window.tmrLoadData()->stop();
    ASSERT_TRUE(loadList());  // the search reads in the background; the list fills in slices
    select({1});
    frame.calls.clear();
    const struct {
        const char* what;
        std::function<void()> act;
        QStringList calls;
    } cases[] = {
        {"right button on the list",
         [&] { emit window.ctlView()->MouseUp(2, 0, 0, 0); },
         {QStringLiteral("popup mnuSong")}},
        {"left button on the list", [&] { emit window.ctlView()->MouseUp(1, 0, 0, 0); }, {}},
        {"right button on an empty media list", [&] { emit window.ctlMedia()->MouseUp(2, 0, 0, 0); }, {}},
        {"singer button",
         [&] {
             window.ctlFields()
                 ->cmdValue(window.ctlFields()->GetFieldIndex(QStringLiteral("singer")))
                 ->click();
         },
         {QStringLiteral("show frmSinger")}},
        {"library button",
         [&] {
             window.ctlFields()
                 ->cmdValue(window.ctlFields()->GetFieldIndex(QStringLiteral("library")))
                 ->click();
         },
         {QStringLiteral("show frmLibMana")}},
    };
    for (const auto& c : cases) {
        frame.calls.clear();
        c.act();
        EXPECT_EQ(frame.calls, c.calls) << c.what;
    }
}

TEST_F(SongbookFrame, TheColumnLayoutIsWrittenOnCloseAndNeverOnDestruction)
{
    const QByteArray designed = formatFile();
    {
        frmSong window;  // made on its own: a frame that does nothing
        window.ctlView()->list()->header()->resizeSection(0, 333);
    }
    EXPECT_EQ(formatFile(), designed);

    frmSong window(frame);
    window.tmrLoadData()->stop();
    window.ctlView()->list()->header()->resizeSection(0, 333);
    window.close();
    window.close();
    EXPECT_NE(formatFile(), designed);
    EXPECT_EQ(frame.calls.count(QStringLiteral("closed")), 1);
    EXPECT_EQ(window.FormatFile(), dir.file(QStringLiteral("ListSong.ini")));
}

}  // namespace
