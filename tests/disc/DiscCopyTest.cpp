#include "libraries/DiscCopy.h"
#include "shell/services/ConsoleJobHost.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <QFile>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace td::test {
namespace {

// A job host that keeps what the job reports.
class RecordingHost : public ConsoleJobHost {
public:
    MsgAnswer Ask(const QString& text, MsgButtons, const QString&) override
    {
        said << text;
        return MsgAnswer::Yes;
    }
    void Inform(const QString& text, const QString&) override { said << text; }
    void Fail(const QString& text, const QString&) override { failed << text; }
    QStringList said, failed;
};

QByteArray contentOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

class DiscCopyLoop : public ::testing::Test {
protected:
    DiscCopyLoop()
    {
        QDir().mkpath(dir.file(QStringLiteral("disc/MPEGAV")));
        QDir().mkpath(target);
        for (int i = 1; i <= 3; ++i) {
            const QString name = QStringLiteral("AVSEQ0%1.DAT").arg(i);
            tracks << dir.write(QStringLiteral("disc/MPEGAV/") + name, QByteArray(70000 * i, char('0' + i)));
        }
    }

    DiscCopyReport copy()
    {
        DiscCopyEvents events;
        events.step = [this](int i, int n) { steps << QStringLiteral("%1/%2").arg(i).arg(n); };
        events.copied = [this](const QString& t) {
            copied << t;
            if (afterCopied)
                afterCopied();
        };
        return CopyDiscTracks(target, tracks, host, events);
    }
    QStringList targetNames() const { return QDir(target).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

    TempAppDir dir;
    QString target = dir.file(QStringLiteral("lib/87B78930"));
    TextArray tracks = NewTextArray();
    RecordingHost host;
    QStringList steps, copied;
    std::function<void()> afterCopied;
};

TEST_F(DiscCopyLoop, CopiesEachTrackAndHandsItToTheSongbook)
{
    const DiscCopyReport report = copy();
    EXPECT_TRUE(report.complete);
    EXPECT_EQ(report.done, 3);
    EXPECT_EQ(steps, (QStringList{QStringLiteral("1/3"), QStringLiteral("2/3"), QStringLiteral("3/3")}));
    ASSERT_EQ(copied.size(), 3);
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(copied[i - 1], target + QStringLiteral("/AVSEQ0%1.DAT").arg(i));
        EXPECT_EQ(contentOf(copied[i - 1]), contentOf(tracks[i]));
    }
    EXPECT_EQ(host.said, QStringList{QStringLiteral("3 song(s) copied into Song Library.")});
    EXPECT_TRUE(host.failed.isEmpty());
}

TEST_F(DiscCopyLoop, ATrackAlreadyThereIsKeptAndStillHandedOn)
{
    dir.write(QStringLiteral("lib/87B78930/AVSEQ02.DAT"), "kept");
    copy();
    EXPECT_EQ(contentOf(target + QStringLiteral("/AVSEQ02.DAT")), QByteArray("kept"));
    EXPECT_EQ(copied.size(), 3);
    EXPECT_EQ(contentOf(target + QStringLiteral("/AVSEQ03.DAT")), contentOf(tracks[3]));
}

TEST_F(DiscCopyLoop, ADiscEjectedMidwayKeepsTheTracksCopiedAndLeavesNoHalfFile)
{
    // The disc leaves the drive once the first track is in.
    afterCopied = [this] {
        QFile::remove(tracks[2]);
        QFile::remove(tracks[3]);
    };
    const DiscCopyReport report = copy();
    EXPECT_FALSE(report.complete);
    EXPECT_EQ(report.done, 1);
    EXPECT_EQ(copied, QStringList{target + QStringLiteral("/AVSEQ01.DAT")});
    ASSERT_EQ(host.failed.size(), 1);
    EXPECT_TRUE(host.failed[0].startsWith(QStringLiteral("Copy media files from disc to Songbook failed !")));
    EXPECT_TRUE(host.said.isEmpty());
    EXPECT_EQ(targetNames(), QStringList{QStringLiteral("AVSEQ01.DAT")});
}

TEST_F(DiscCopyLoop, AFullDiskLeavesNothingUnderTheTracksName)
{
    // The process may write no file beyond 100,000 bytes: the second track (140,000) meets a full disk.
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit small = old;
    small.rlim_cur = 100000;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const DiscCopyReport report = copy();
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, previous);

    EXPECT_EQ(report.done, 1);
    ASSERT_EQ(host.failed.size(), 1);
    EXPECT_TRUE(host.failed[0].contains(QStringLiteral(" Err="))) << host.failed[0].toStdString();
    EXPECT_EQ(targetNames(), QStringList{QStringLiteral("AVSEQ01.DAT")});
    EXPECT_EQ(copied.size(), 1);
}

TEST(DiscDirectory, IsTheLibraryAndTheIdentity)
{
    EXPECT_EQ(DiscDirectoryOf(QStringLiteral("/srv/songs"), QStringLiteral("A0B")),
              QStringLiteral("/srv/songs/A0B"));
    EXPECT_EQ(DiscDirectoryOf(QStringLiteral("/srv/songs/"), QStringLiteral("A0B")),
              QStringLiteral("/srv/songs/A0B"));
}

}  // namespace
}  // namespace td::test
