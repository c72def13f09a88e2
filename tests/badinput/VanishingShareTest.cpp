// A library on a share that goes away while a long job reads it: unmounted as a lost network does, or
// its folder removed. The job says so for each file it can no longer read, stops when told to, and
// everything it had written to the songbook before stays.
#include "../exchange/ExchangeTestSupport.h"
#include "checks/SongbookCheck.h"
#include "exchange/LibraryImport.h"
#include "shell/services/TextStore.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "support/MountedFolder.h"
#include "support/QtPrint.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace td::test {
namespace {

constexpr int kFiles = 60;
constexpr int kVanishAt = 20;  // files done when the share goes

enum class Vanish { Unmounted, Removed };

// Takes the share away once the job reports the given progress.
class VanishingHost : public RecordingHost {
public:
    std::function<void()> vanish;
    void Processing(qint64 value) override
    {
        RecordingHost::Processing(value);
        if (value == kVanishAt && vanish)
            std::exchange(vanish, nullptr)();
    }
};

struct Case {
    Vanish how;
    MsgAnswer answer;  // to every "Stop ...?" question
};

class VanishingShare : public ::testing::TestWithParam<Case> {
protected:
    void SetUp() override
    {
        QDir().mkpath(root);
        if (GetParam().how == Vanish::Unmounted) {
            disk = std::make_unique<MountedFolder>(root, MountedFolder::Kind::SmallDisk, 4 * 1024 * 1024);
            SKIP_UNLESS_MOUNTED(*disk);
        }
        CreateSongDatabase(tmp.filePath(QStringLiteral("song.db")), QStringLiteral("English"));
        db = OpenConnection(tmp.filePath(QStringLiteral("song.db")));
        host.vanish = [this] {
            if (disk)
                disk->unmount();
            else
                QDir(root).removeRecursively();
        };
        for (int i = 0; i < kFiles; ++i)
            host.answers.push_back(GetParam().answer);
    }
    QString media(int i) const { return QStringLiteral("/Pop/%1.mpg").arg(i, 3, 10, QChar(u'0')); }

    QTemporaryDir tmp;
    QString root = tmp.filePath(QStringLiteral("share"));
    std::unique_ptr<MountedFolder> disk;
    std::unique_ptr<Connection> db;
    VanishingHost host;
};

TEST_P(VanishingShare, LibraryImportKeepsTheSongsAddedBefore)
{
    QDir().mkpath(root + QStringLiteral("/Pop"));
    for (int i = 0; i < kFiles; ++i)
        ASSERT_TRUE(
            WriteTextStore(root + media(i) + QStringLiteral(".son"),
                           QStringLiteral("\r\n[China]\r\nindex=%1\r\ntitle=Song %1\r\n").arg(2000 + i)));
    LibraryImportSettings settings;
    settings.library = root;
    settings.regions = {QStringLiteral("China")};
    settings.indexClass = QStringLiteral("import");
    settings.checkIndex = false;
    host.answers.push_front(MsgAnswer::Ok);  // the opening question

    const LibraryImportResult result = ImportLibrary(*db, settings, host);

    const bool stop = GetParam().answer == MsgAnswer::Yes;
    EXPECT_EQ(result.added, kVanishAt);
    const QStringList asked = host.asked();
    ASSERT_EQ(asked.size(), 1 + (stop ? 1 : kFiles - kVanishAt)) << qPrintable(asked.join(u'\n'));
    EXPECT_TRUE(asked[1].startsWith(
        QStringLiteral("ask An error take place while import library! Err=File not found: ")))
        << qPrintable(asked[1]);
    EXPECT_TRUE(asked[1].endsWith(QStringLiteral("Stop import?"))) << qPrintable(asked[1]);
    EXPECT_EQ(host.last(),
              QStringLiteral("info %1song(s) imported to songbook successfully!").arg(kVanishAt));
    QStringList expected;
    for (int i = 0; i < kVanishAt; ++i)
        expected << QStringLiteral("%1|Song %2|%3").arg(2000 + i).arg(2000 + i).arg(media(i));
    EXPECT_EQ(rowsOf(*db, QStringLiteral("select [index], title, media_file from song order by [index]")),
              expected);
}

// The check writes its remark on each song whose file it cannot find, as it does for any missing file;
// the songs themselves, and the remarks of the songs checked before, stay.
TEST_P(VanishingShare, SongCheckMarksOnlyTheSongsAfterTheShareWent)
{
    QDir().mkpath(root + QStringLiteral("/Pop"));
    for (int i = 0; i < kFiles; ++i) {
        QFile f(root + media(i));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        db->execute(QStringLiteral("insert into song ([index], title, library, media_file, remark) values "
                                   "(%1, 'Song %1', '%2', '%3', 'kept')")
                        .arg(2000 + i)
                        .arg(root, media(i)));
    }
    host.answers.push_front(MsgAnswer::Yes);  // the opening question
    QStringList shown;
    const CheckOutcome outcome =
        CheckSongs(*db, {tmp.path(), [&](const QString& report) { shown << report; }}, host);

    EXPECT_TRUE(outcome.ran);
    EXPECT_EQ(outcome.errors, kFiles - kVanishAt);
    EXPECT_EQ(shown, QStringList{outcome.report});
    EXPECT_EQ(rowsOf(*db, QStringLiteral("select count(*) from song")), QStringList{QString::number(kFiles)});
    EXPECT_EQ(rowsOf(*db, QStringLiteral("select count(*) from song where remark='kept' and [index]<%1")
                              .arg(2000 + kVanishAt)),
              QStringList{QString::number(kVanishAt)});
}

INSTANTIATE_TEST_SUITE_P(
    Ways, VanishingShare,
    ::testing::Values(Case{Vanish::Unmounted, MsgAnswer::Yes}, Case{Vanish::Unmounted, MsgAnswer::No},
                      Case{Vanish::Removed, MsgAnswer::Yes}, Case{Vanish::Removed, MsgAnswer::No}),
    [](const ::testing::TestParamInfo<Case>& info) {
        return std::string(info.param.how == Vanish::Unmounted ? "Unmounted" : "Removed") +
               (info.param.answer == MsgAnswer::Yes ? "AndStopped" : "AndGoneOn");
    });

}  // namespace
}  // namespace td::test
