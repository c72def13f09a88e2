// The right-hand panel follows the two view settings; the splitters stop short of the edges.
#include "SongbookFixture.h"
#include "controls/Twips.h"
#include "shell/mdiMain.h"
#include "shell/services/Ini.h"
#include "songbook/PreviewPanel.h"
#include "songbook/SplitterBar.h"
#include "songbook/frmSong.h"
#include <QAction>
#include <QCoreApplication>
#include <QSlider>

using namespace td;

namespace {

class SongbookLayout : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        openSongbook();
        song->resize(1200, 800);
    }
};

TEST_F(SongbookLayout, HidingBothPanelsGivesTheListTheWholeWidthAndShowingBringsThemBack)
{
    song->lblMove()->dragged(700);
    song->ExecuteCommand(QStringLiteral("hideproperty"));
    song->ExecuteCommand(QStringLiteral("hidepreview"));
    EXPECT_EQ(AppIniRead(QStringLiteral("SongViewProperty"), {}), QStringLiteral("0"));
    EXPECT_EQ(AppIniRead(QStringLiteral("SongViewPreview"), {}), QStringLiteral("0"));
    EXPECT_FALSE(frame->menuAction(QStringLiteral("mnuSongViewPreview"))->isChecked());
    EXPECT_FALSE(song->picRight()->isVisibleTo(song));
    EXPECT_EQ(song->picView()->geometry().right(), song->width() - 1);

    song->ExecuteCommand(QStringLiteral("showpreview"));
    EXPECT_TRUE(song->picRight()->isVisibleTo(song));
    EXPECT_EQ(song->picRight()->x(), 700 + song->lblMove()->width());
    EXPECT_TRUE(song->picMoni()->isVisibleTo(song));
    EXPECT_FALSE(song->picRight2()->isVisibleTo(song));
    EXPECT_EQ(song->picMoni()->y(), 0);  // with the property panel hidden, the preview starts at the top
    EXPECT_TRUE(frame->menuAction(QStringLiteral("mnuSongViewPreview"))->isChecked());
}

// The menu entries work as the operator reads them: a checked entry hides its panel, a second click
// shows it again, and the mark follows.
TEST_F(SongbookLayout, ViewMenuEntriesHideAndShowTheirPanels)
{
    for (const char* entry : {"mnuSongViewProperty", "mnuSongViewPreview"}) {
        QAction* a = frame->menuAction(QString::fromLatin1(entry));
        ASSERT_TRUE(a->isChecked()) << entry;
        a->trigger();
        EXPECT_FALSE(a->isChecked()) << entry;
        a->trigger();
        EXPECT_TRUE(a->isChecked()) << entry;
    }
    QAction* property = frame->menuAction(QStringLiteral("mnuSongViewProperty"));
    property->trigger();
    EXPECT_FALSE(song->GetViewProperty());
    EXPECT_FALSE(song->picRight2()->isVisibleTo(song));
    property->trigger();
    EXPECT_TRUE(song->GetViewProperty());
    EXPECT_TRUE(song->picRight2()->isVisibleTo(song));
}

TEST_F(SongbookLayout, SplittersStopShortOfTheEdges)
{
    const int near = TwipsToPixels(120, song), far = TwipsToPixels(240, song);
    song->lblMove()->dragged(-50);
    EXPECT_EQ(song->lblMove()->x(), near);
    song->lblMove()->dragged(5000);
    EXPECT_EQ(song->lblMove()->x(), song->width() - far);
    song->lblMove()->dragged(600);
    song->lblMove2()->dragged(-50);
    EXPECT_EQ(song->lblMove2()->y(), near);
    song->lblMove2()->dragged(5000);
    EXPECT_EQ(song->lblMove2()->y(), song->picRight()->height() - far);
    // A resize of the window puts the splitter back at two thirds.
    song->resize(900, 700);
    EXPECT_EQ(song->lblMove()->x(), 600);
}

// Once the window has opened, the splitter over the preview stays where it is on a resize, unless the
// window has become too low to show it.
TEST_F(SongbookLayout, ThePreviewSplitterMovesOnlyWhenItLiesBeyondTheWindow)
{
    // Where the splitter goes when it is placed: above a 4:3 picture and the transport row.
    auto placement = [this] {
        const int w = song->picRight()->width();
        const int preview = (w - TwipsToPixels(120, song)) * 3 / 4 + TwipsToPixels(900, song);
        return std::max(TwipsToPixels(120, song), song->picRight()->height() - song->lblMove2()->height() - preview);
    };
    frame->resize(1200, 900);
    frame->show();
    QCoreApplication::processEvents();
    const int placed = song->lblMove2()->y();
    EXPECT_NEAR(placed, placement(), 8);  // placed while the window opened, as its panels were then
    song->resize(1200, 1000);
    EXPECT_EQ(song->lblMove2()->y(), placed);
    song->resize(1200, placed - 10);
    const int replaced = song->lblMove2()->y();
    EXPECT_EQ(replaced, placement());
    EXPECT_LT(replaced, placed);
    song->resize(1200, 800);
    EXPECT_EQ(song->lblMove2()->y(), replaced);
}

TEST_F(SongbookLayout, StoredVolumeBecomesSliderStepsOrTheMiddle)
{
    const struct {
        const char* stored;
        int steps;
    } cases[] = {{"50", 5},   {"80", 8},  {"75", 8}, {"65", 6},  {"47.5", 5}, {"0", 0},
                 {"100", 10}, {"abc", 5}, {"", 5},   {"200", 5}, {"-10", 5}};
    for (const auto& c : cases) {
        AppIniWrite(QStringLiteral("Volume"), QString::fromLatin1(c.stored));
        song->picMoni()->LoadVolume();
        EXPECT_EQ(song->picMoni()->sldVolume()->value(), c.steps) << c.stored;
    }
}

}  // namespace
