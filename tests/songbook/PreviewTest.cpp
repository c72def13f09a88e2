// The preview panel with a real player that sends picture and sound nowhere: what the operator sees of
// a song that plays, pauses, stops, ends, can't be played, changes channel or goes to the room player.
#include "SongbookFixture.h"
#include "shell/mdiMain.h"
#include "shell/services/Ini.h"
#include "songbook/PreviewPanel.h"
#include "songbook/frmSong.h"
#include "support/TheatreMedia.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QGroupBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QTest>

using namespace td;

namespace {

class SongbookPreview : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        const auto& media = test::TheatreMedia::Get();
        if (!media.ready())
            GTEST_SKIP() << media.error().toStdString();
        mixer.playback[QStringLiteral("Master")] = {};
        addMediaSong("Clip", media.file(QStringLiteral("clip.mpg")), "/Pop/clip.mpg");
        addMediaSong("Tones", media.file(QStringLiteral("cover.mp3")), "/Pop/tones.mp3");
        addMediaSong("Broken", media.file(QStringLiteral("words.vob")), "/Pop/text.vob");
        addMediaSong("Gone", {}, "/Pop/gone.mpg");
        openSongbook();
        panel = song->picMoni();
    }
    void addMediaSong(const char* title, const QString& source, const char* mediaFile)
    {
        const QString media = QString::fromLatin1(mediaFile);
        const QString target = libRoot() + media;
        QDir().mkpath(QFileInfo(target).path());
        if (!source.isEmpty())
            QFile::copy(source, target);
        addSong(QString::fromLatin1(title));
        sql(QStringLiteral("update song set media_file='%1', library='%2' where title='%3'")
                .arg(media, libRoot(), QString::fromLatin1(title)));
    }
    void preview(const char* title)
    {
        select({row(QString::fromLatin1(title))});
        song->PlaySong(QStringLiteral("songbook"), QStringLiteral("preview"));
    }
    QString info(const char* name) const { return panel->player()->GetInfo(QString::fromLatin1(name)); }
    bool waitFor(const std::function<bool()>& done, int ms = 5000) { return QTest::qWaitFor(done, ms); }

    PreviewPanel* panel = nullptr;
};

TEST_F(SongbookPreview, AClipPlaysInThePanelWithItsLengthOnTheBarAndTheVolumeSet)
{
    preview("Clip");
    EXPECT_TRUE(dialogs.messages().isEmpty()) << dialogs.messages().join(u'|').toStdString();
    EXPECT_EQ(info("PlayerState"), u"1");
    EXPECT_FALSE(panel->player()->isHidden());
    EXPECT_EQ(panel->player()->geometry(), panel->picMoni1()->rect());
    EXPECT_EQ(panel->fraMoni()->title(), QStringLiteral("Playing - ") + libRoot() + QStringLiteral("/Pop/clip.mpg"));
    EXPECT_EQ(panel->hsbPosi()->maximum(), info("Length").toInt());
    EXPECT_GT(panel->hsbPosi()->maximum(), 0);
    EXPECT_FALSE(panel->cmdPause()->isHidden());
    EXPECT_TRUE(panel->cmdPlay()->isHidden());
    EXPECT_TRUE(mixer.log.contains(QStringLiteral("play Master FL 32767"))) << mixer.log.join(u'|').toStdString();
    // The bar follows the player's own reports without seeking back.
    EXPECT_TRUE(waitFor([&] { return panel->hsbPosi()->value() >= 1; }));
    EXPECT_GE(info("position").toInt(), 1);
}

TEST_F(SongbookPreview, AnAudioSongLeavesTheLogoInSight)
{
    preview("Tones");
    EXPECT_EQ(info("PlayerState"), u"1");
    EXPECT_TRUE(panel->player()->isHidden());
}

TEST_F(SongbookPreview, AFileThatCannotBePlayedIsToldAndTheTransportStaysAsItWas)
{
    preview("Clip");
    preview("Broken");
    preview("Gone");
    EXPECT_EQ(dialogs.messages(),
              (QStringList{QStringLiteral("Can't play <") + libRoot() + QStringLiteral("/Pop/text.vob>!"),
                           QStringLiteral("Can't find selected song.")}));
    EXPECT_FALSE(panel->cmdPause()->isHidden());
    EXPECT_TRUE(panel->fraMoni()->title().endsWith(u"clip.mpg"));
}

// Pause pauses but stays in sight until a second click; Play resumes but stays in sight likewise.
TEST_F(SongbookPreview, PauseAndPlayShowTheStateBeforeTheirClick)
{
    preview("Clip");
    panel->cmdPause()->click();
    EXPECT_EQ(info("PlayerState"), u"2");
    EXPECT_FALSE(panel->cmdPause()->isHidden());
    panel->cmdPause()->click();
    EXPECT_EQ(info("PlayerState"), u"2");
    EXPECT_TRUE(panel->cmdPause()->isHidden());
    EXPECT_FALSE(panel->cmdPlay()->isHidden());
    panel->cmdPlay()->click();
    EXPECT_EQ(info("PlayerState"), u"1");
    EXPECT_FALSE(panel->cmdPlay()->isHidden());
}

TEST_F(SongbookPreview, StopAndTheEndOfTheFileResetThePanel)
{
    auto expectStopped = [&](const char* when) {
        EXPECT_EQ(info("PlayerState"), u"0") << when;
        EXPECT_TRUE(info("FileName").isEmpty()) << when;
        EXPECT_TRUE(panel->fraMoni()->title().isEmpty()) << when;
        EXPECT_EQ(panel->hsbPosi()->maximum(), 100) << when;
        EXPECT_EQ(panel->hsbPosi()->value(), 0) << when;
        EXPECT_TRUE(panel->player()->isHidden()) << when;
        EXPECT_FALSE(panel->cmdPlay()->isHidden()) << when;
    };
    preview("Clip");
    panel->cmdStop()->click();
    expectStopped("stop");

    preview("Clip");
    panel->hsbPosi()->setValue(panel->hsbPosi()->maximum());  // the thumb let go at the bar's end
    ASSERT_TRUE(waitFor([&] { return info("PlayerState") == u"0"; }));
    expectStopped("end of file");
}

TEST_F(SongbookPreview, PlayWhileStoppedPreviewsTheListsSelection)
{
    panel->cmdPlay()->click();
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("No song or media selected!")});
    select({row(QStringLiteral("Tones"))});
    panel->cmdPlay()->click();
    EXPECT_EQ(info("PlayerState"), u"1");
}

TEST_F(SongbookPreview, ChannelMarksAndButtonsFollowTheChannel)
{
    const struct {
        const char* channel;
        bool leftMark, rightMark;
        const char* got;
        const char* tip;
    } cases[] = {
        {"L", true, false, "L", "Channel - L"},     {"left", true, false, "L", "Channel - L"},
        {"r", false, true, "R", "Channel - R"},     {"right", false, true, "R", "Channel - R"},
        {"B", true, true, "S", "Channel - L+R"},    {"Left", true, true, "S", "Channel - L+R"},
    };
    for (const auto& c : cases) {
        panel->SetChannel(QString::fromLatin1(c.channel));
        EXPECT_EQ(!panel->lblChan(0)->isHidden(), c.leftMark) << c.channel;
        EXPECT_EQ(panel->cmdChan(0)->isHidden(), c.leftMark) << c.channel;
        EXPECT_EQ(!panel->lblChan(1)->isHidden(), c.rightMark) << c.channel;
        EXPECT_EQ(panel->cmdChan(1)->isHidden(), c.rightMark) << c.channel;
        EXPECT_EQ(panel->GetChannel(), QString::fromLatin1(c.got)) << c.channel;
        EXPECT_EQ(panel->cmdChan(1)->toolTip(), QString::fromLatin1(c.tip)) << c.channel;
    }
    // A click on a mark turns that channel off; a click on a button brings both back.
    emit panel->lblChan(0)->clicked();
    EXPECT_EQ(panel->GetChannel(), u"R");
    panel->cmdChan(0)->click();
    EXPECT_EQ(panel->GetChannel(), u"S");
    emit panel->lblChan(1)->clicked();
    EXPECT_EQ(panel->GetChannel(), u"L");
    // The channel stays chosen from one preview to the next.
    preview("Clip");
    preview("Tones");
    EXPECT_EQ(panel->GetChannel(), u"L");
}

TEST_F(SongbookPreview, ADoubleClickOnThePictureHandsTheFileToThePlayer)
{
    emit panel->picMoni1()->DblClick();
    EXPECT_TRUE(shell.played.isEmpty());
    preview("Clip");
    emit panel->player()->DblClick();
    EXPECT_EQ(info("PlayerState"), u"0");
    EXPECT_EQ(shell.commandLines,
              (QStringList{QStringLiteral("[Default]"), libRoot() + QStringLiteral("/Pop/clip.mpg=p")}));
}

TEST_F(SongbookPreview, MovingTheVolumeSetsTheMasterAndStoresIt)
{
    mixer.log.clear();
    panel->sldVolume()->setValue(7);
    EXPECT_EQ(AppIniRead(QStringLiteral("Volume"), {}), QStringLiteral("70"));
    EXPECT_TRUE(mixer.log.contains(QStringLiteral("play Master FL 45874"))) << mixer.log.join(u'|').toStdString();
}

TEST_F(SongbookPreview, ClosingTheWindowWhilePlayingStopsThePlayer)
{
    preview("Clip");
    QPointer<ctlTheatre> player = panel->player();
    frame->close();
    frame.reset();
    song = nullptr;
    EXPECT_TRUE(player.isNull());
}

}  // namespace
