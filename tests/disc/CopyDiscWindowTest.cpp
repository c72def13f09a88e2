#include "DiscImages.h"
#include "libraries/DiscCopy.h"
#include "libraries/frmCopyDisc.h"
#include "shell/services/FilePaths.h"
#include "songdb/SongStatements.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QApplication>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <gtest/gtest.h>

namespace td::test {
namespace {

const QString kDrive = QStringLiteral("/media/cdrom0");

QByteArray contentOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// A song database with one library, a drive, and the window; the songbook's AddFiles is recorded.
class CopyDiscWindow : public ::testing::Test {
protected:
    void SetUp() override
    {
        EnsureQtApp();
        if (!CanMakeImages())
            GTEST_SKIP() << "xorriso is not installed";
        ASSERT_TRUE(dir.openSongDatabase());
        QDir().mkpath(library);
        SongExecute(QStringLiteral("insert into library (root_path) values ('") + library +
                    QStringLiteral("')"));
        frmCopyDisc::SetAddFiles([this](const TextArray& files) {
            added += files.mid(1);
            return UBound(files);
        });
    }
    void TearDown() override { frmCopyDisc::SetAddFiles({}); }

    // A Video CD in the drive: its files in a folder, its sectors in an image made of them.
    void insertVideoCd(const QList<Track>& tracks)
    {
        const QString image = MakeDiscImage(dir.file(QStringLiteral("disc")), tracks,
                                            QStringLiteral("KARAOKE"), dir.file(QStringLiteral("disc.iso")));
        ASSERT_FALSE(image.isEmpty());
        drives.insert(kDrive, dir.file(QStringLiteral("disc")), image);
        QString error;
        ASSERT_TRUE(DiscIdentityOf(kDrive, identity, error));
        discDir = DiscDirectoryOf(library, identity);
    }
    void insertThreeTracks()
    {
        insertVideoCd({{QStringLiteral("MPEGAV/AVSEQ01.DAT"), "one"},
                       {QStringLiteral("MPEGAV/AVSEQ02.DAT"), "two"},
                       {QStringLiteral("MPEGAV/AVSEQ03.DAT"), "three"}});
    }
    void open() { window = std::make_unique<frmCopyDisc>(); }

    // Clicks Start and waits until the copy loop, if one starts, has ended.
    void start()
    {
        bool ended = false;
        QObject::connect(window.get(), &frmCopyDisc::CopyEnded, [&] { ended = true; });
        window->cmdCopy()->click();
        QDeadlineTimer deadline(20000);
        while (window->copying() && !ended && !deadline.hasExpired())
            QApplication::processEvents(QEventLoop::AllEvents, 20);
        ASSERT_FALSE(window->copying()) << "the copy never ended";
    }
    QStringList filesInDiscDir() const
    {
        return QDir(discDir).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QStringList tracksInDiscDir(std::initializer_list<int> numbers) const
    {
        QStringList out;
        for (int n : numbers)
            out << discDir + QStringLiteral("/AVSEQ0%1.DAT").arg(n);
        return out;
    }

    TempAppDir dir;
    ScriptedDialogs dialogs;
    FakeDiscDrives drives;
    QString library = dir.file(QStringLiteral("Songs"));
    QString identity, discDir;
    QStringList added;
    std::unique_ptr<frmCopyDisc> window;
};

TEST_F(CopyDiscWindow, NoDriveLeavesTheListEmptyAndStartAsksForOne)
{
    open();
    EXPECT_EQ(window->cboCDROM()->count(), 0);
    EXPECT_EQ(window->cboLibrary()->currentText(), library);
    window->cmdCopy()->click();
    EXPECT_EQ(dialogs.messages(),
              QStringList{QStringLiteral("Please select a cdrom with the disc inside !")});
}

TEST_F(CopyDiscWindow, ALibraryMustBeChosenAndReachable)
{
    insertThreeTracks();
    SongExecute(QStringLiteral("delete * from library"));
    open();
    window->cmdCopy()->click();
    SongExecute(QStringLiteral("insert into library (root_path) values ('") +
                dir.file(QStringLiteral("gone")) + QStringLiteral("')"));
    window->cboLibrary()->showPopup();  // the list is read afresh as it drops down
    window->cboLibrary()->hidePopup();
    window->cmdCopy()->click();
    EXPECT_EQ(dialogs.messages(),
              (QStringList{QStringLiteral("Please select a library to which the songs will copy !"),
                           QStringLiteral("The library path < ") + dir.file(QStringLiteral("gone")) +
                               QStringLiteral(" > you selected isn't available now!")}));
}

TEST_F(CopyDiscWindow, AnEmptyDriveAsksForADiscUntilCancel)
{
    drives.list << QStringLiteral("/dev/sr0");
    open();
    dialogs.answer(MsgAnswer::Retry);
    dialogs.answer(MsgAnswer::Cancel);
    window->cmdCopy()->click();
    ASSERT_EQ(dialogs.calls().size(), 2u);
    for (const auto& call : dialogs.calls()) {
        EXPECT_EQ(call.text, QStringLiteral("Please insert a disc into cdrom < /dev/sr0 >"));
        EXPECT_EQ(call.buttons, MsgButtons::RetryCancel);
        EXPECT_EQ(call.icon, MsgIcon::Information);
    }
}

TEST_F(CopyDiscWindow, ADataDiscWithoutMpegavAsksForAVideoCdUntilCancel)
{
    insertVideoCd({{QStringLiteral("DOCS/README.TXT"), "data"}});
    open();
    dialogs.answer(MsgAnswer::Retry);
    dialogs.answer(MsgAnswer::Retry);
    dialogs.answer(MsgAnswer::Cancel);
    window->cmdCopy()->click();
    ASSERT_EQ(dialogs.calls().size(), 3u);
    EXPECT_EQ(dialogs.calls()[0].text,
              QStringLiteral("You can only copy songs from Video CD disc currently.\n"
                             "Please insert a Video CD disc into cdrom < ") +
                  kDrive + QStringLiteral(" >"));
    EXPECT_EQ(dialogs.calls()[0].icon, MsgIcon::Question);
    EXPECT_FALSE(QFileInfo::exists(discDir));
    EXPECT_TRUE(added.isEmpty());
}

TEST_F(CopyDiscWindow, AFirstLoadCopiesEveryTrackIntoTheDiscsDirectoryAndAddsIt)
{
    insertThreeTracks();
    open();
    window->cmdCopy()->click();
    start();
    EXPECT_EQ(dialogs.messages(), (QStringList{QStringLiteral("This will copy 3 song(s) into < ") + discDir +
                                                   QStringLiteral(" >.\nDo you want to continue?"),
                                               QStringLiteral("3 song(s) copied into Song Library.")}));
    EXPECT_EQ(added, tracksInDiscDir({1, 2, 3}));
    EXPECT_EQ(contentOf(discDir + QStringLiteral("/AVSEQ03.DAT")), QByteArray("three"));
    EXPECT_EQ(window->pgbCopy()->value(), 0);
    EXPECT_TRUE(window->lblCopy()->text().isEmpty());
    EXPECT_TRUE(window->cmdCopy()->isEnabled());
    EXPECT_TRUE(window->cboCDROM()->isEnabled());
}

TEST_F(CopyDiscWindow, ALoadAnsweredNoCopiesNothing)
{
    insertThreeTracks();
    open();
    dialogs.answer(MsgAnswer::No);
    window->cmdCopy()->click();
    EXPECT_FALSE(QFileInfo::exists(discDir));
    EXPECT_TRUE(added.isEmpty());
}

TEST_F(CopyDiscWindow, AReloadWithoutDeletionFillsInWhatIsMissingAndAddsEveryTrack)
{
    insertThreeTracks();
    dir.write(QStringLiteral("Songs/") + identity + QStringLiteral("/AVSEQ01.DAT"), "edited");
    dir.write(QStringLiteral("Songs/") + identity + QStringLiteral("/OLD.DAT"), "old");
    open();
    dialogs.answer(MsgAnswer::Yes);  // reload
    dialogs.answer(MsgAnswer::No);   // keep the files
    start();
    EXPECT_EQ(
        dialogs.messages(),
        (QStringList{QStringLiteral("This disc has been loaded into ") + discDir +
                         QStringLiteral(" before.\nDo you want to reload the disc?"),
                     QStringLiteral("Do you want to delete all files in this directory before loading?"),
                     QStringLiteral("3 song(s) copied into Song Library.")}));
    EXPECT_EQ(contentOf(discDir + QStringLiteral("/AVSEQ01.DAT")), QByteArray("edited"));
    EXPECT_EQ(contentOf(discDir + QStringLiteral("/AVSEQ02.DAT")), QByteArray("two"));
    EXPECT_TRUE(QFileInfo::exists(discDir + QStringLiteral("/OLD.DAT")));
    EXPECT_EQ(added, tracksInDiscDir({1, 2, 3}));
}

TEST_F(CopyDiscWindow, AReloadWithDeletionEmptiesTheDirectoryFirst)
{
    insertThreeTracks();
    dir.write(QStringLiteral("Songs/") + identity + QStringLiteral("/AVSEQ01.DAT"), "edited");
    dir.write(QStringLiteral("Songs/") + identity + QStringLiteral("/OLD.DAT"), "old");
    open();
    dialogs.answer(MsgAnswer::Yes);
    dialogs.answer(MsgAnswer::Yes);
    start();
    EXPECT_EQ(filesInDiscDir(), (QStringList{QStringLiteral("AVSEQ01.DAT"), QStringLiteral("AVSEQ02.DAT"),
                                             QStringLiteral("AVSEQ03.DAT")}));
    EXPECT_EQ(contentOf(discDir + QStringLiteral("/AVSEQ01.DAT")), QByteArray("one"));
    EXPECT_EQ(added, tracksInDiscDir({1, 2, 3}));
}

TEST_F(CopyDiscWindow, AReloadAnsweredNoLeavesTheDirectoryAsItWas)
{
    insertThreeTracks();
    dir.write(QStringLiteral("Songs/") + identity + QStringLiteral("/AVSEQ01.DAT"), "edited");
    open();
    dialogs.answer(MsgAnswer::No);
    window->cmdCopy()->click();
    EXPECT_EQ(dialogs.calls().size(), 1u);
    EXPECT_EQ(filesInDiscDir(), QStringList{QStringLiteral("AVSEQ01.DAT")});
    EXPECT_TRUE(added.isEmpty());
}

TEST_F(CopyDiscWindow, AVideoCdWithoutTracksCopiesNoneAndSaysSo)
{
    insertVideoCd({{QStringLiteral("MPEGAV/README.TXT"), "no track"}});
    open();
    start();
    EXPECT_EQ(dialogs.messages(), (QStringList{QStringLiteral("This will copy 0 song(s) into < ") + discDir +
                                                   QStringLiteral(" >.\nDo you want to continue?"),
                                               QStringLiteral("0 song(s) copied into Song Library.")}));
    EXPECT_TRUE(QFileInfo(discDir).isDir());
}

}  // namespace
}  // namespace td::test
