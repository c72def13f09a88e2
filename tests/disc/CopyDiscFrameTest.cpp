// The disc copy as the console reaches it: from the Tools menu, with each track becoming a song of the
// songbook window.
#include "DiscImages.h"
#include "libraries/DiscCopy.h"
#include "libraries/frmCopyDisc.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "songbook/PreviewPanel.h"
#include "songbook/frmSong.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QAction>
#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

namespace td::test {
namespace {

bool waitWhile(const std::function<bool()>& busy)
{
    QDeadlineTimer deadline(15000);
    while (busy() && !deadline.hasExpired())
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    return !busy();
}

// The copy from the Tools menu, the songbook open with its list read beforehand or not open at all.
void copyThroughTheFrame(bool songbookOpen)
{
    EnsureQtApp();
    if (!CanMakeImages())
        GTEST_SKIP() << "xorriso is not installed";
    TempAppDir dir;
    ScriptedDialogs dialogs;
    FakeDiscDrives drives;
    PreviewPanel::PlayerOutput() = {QStringLiteral("null"), QStringLiteral("null"), {}};
    for (const char* name : {"ListSong.ini", "ListMedia.ini"})
        QFile::copy(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/") + QString::fromLatin1(name),
                    dir.file(QString::fromLatin1(name)));
    ASSERT_TRUE(dir.openSongDatabase());
    const QString library = dir.file(QStringLiteral("Songs"));
    QDir().mkpath(library);
    SongExecute(QStringLiteral("insert into library (root_path) values ('") + library + QStringLiteral("')"));
    const QString image = MakeDiscImage(
        dir.file(QStringLiteral("disc")),
        {{QStringLiteral("MPEGAV/AVSEQ01.DAT"), "one"}, {QStringLiteral("MPEGAV/AVSEQ02.DAT"), "two"}},
        QStringLiteral("KARAOKE"), dir.file(QStringLiteral("disc.iso")));
    drives.insert(QStringLiteral("/media/cdrom0"), dir.file(QStringLiteral("disc")), image);
    {
        RegisterWindows();
        mdiMain frame;
        if (songbookOpen) {
            auto* song = dynamic_cast<frmSong*>(frame.ShowWindow(QStringLiteral("frmSong")));
            ASSERT_NE(song, nullptr);
            song->tmrLoadData()->stop();
            ASSERT_TRUE(song->LoadData());
            ASSERT_TRUE(waitWhile([song] { return song->ListLoading(); }));
        }

        frame.menuAction(QStringLiteral("mnuToolCopy"))->trigger();
        auto* copy = frame.findChild<frmCopyDisc*>();
        ASSERT_NE(copy, nullptr);
        dialogs.clear();
        copy->cmdCopy()->click();
        ASSERT_TRUE(waitWhile([copy] { return copy->copying(); }));
        EXPECT_EQ(dialogs.messages().value(1), QStringLiteral("2 song(s) copied into Song Library."));
        // A songbook opened by the copy takes the tracks once its list is read.
        auto* song = dynamic_cast<frmSong*>(frame.child(QStringLiteral("frmSong")));
        ASSERT_NE(song, nullptr);
        ASSERT_TRUE(waitWhile([song] { return song->ListLoading(); }));
        QApplication::processEvents();
        ASSERT_TRUE(waitWhile([&] {
            std::unique_ptr<Recordset> count;
            return SongOpenRecordset(QStringLiteral("select id from song"), count) && count->RecordCount() < 2;
        }));
        EXPECT_FALSE(dialogs.messages().join(u'|').contains(QStringLiteral("failed")))
            << dialogs.messages().join(u'|').toStdString();
        std::unique_ptr<Recordset> rs;
        ASSERT_TRUE(SongOpenRecordset(
            QStringLiteral("select media_file, library from song order by media_file"), rs));
        ASSERT_EQ(rs->RecordCount(), 2);
        QString identity, error;
        ASSERT_TRUE(DiscIdentityOf(QStringLiteral("/media/cdrom0"), identity, error));
        EXPECT_EQ(rs->text(0, 0), u'/' + identity + QStringLiteral("/AVSEQ01.DAT"));
        EXPECT_EQ(rs->text(1, 1), library);
    }
    SongCloseDatabase();
}

TEST(CopyDiscFrame, TheToolsEntryOpensTheWindowAndEachCopiedTrackBecomesASong)
{
    copyThroughTheFrame(true);
}

TEST(CopyDiscFrame, ACopyWithTheSongbookClosedOpensItAndAddsEveryTrack)
{
    copyThroughTheFrame(false);
}

}  // namespace
}  // namespace td::test
