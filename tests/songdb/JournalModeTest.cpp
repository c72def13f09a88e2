#include "shell/services/Ini.h"
#include "songdb/JournalMode.h"
#include "songdb/Schema.h"
#include "songdb/SqliteBackend.h"
#include "support/QtPrint.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace td {
namespace {

TEST(JournalChoice, FileSystemKindOfStatfsType)
{
    struct Case {
        quint32 magic;
        const char* mountType;
        FileSystemKind kind;
    };
    const Case cases[] = {
        {0xEF53, "", FileSystemKind::Local},      // ext4
        {0x01021994, "", FileSystemKind::Local},  // tmpfs
        {0x9123683E, "", FileSystemKind::Local},  // btrfs
        {0x6969, "", FileSystemKind::Nfs},
        {0x517B, "", FileSystemKind::Smb},
        {0xFF534D42, "", FileSystemKind::Cifs},
        {0xFE534D42, "", FileSystemKind::Smb2},
        {0x01021997, "", FileSystemKind::OtherNetwork},  // 9p
        {0x65735546, "fuse.sshfs", FileSystemKind::Sshfs},
        {0x65735546, "fuse.rclone", FileSystemKind::OtherNetwork},
        {0x65735546, "fuse", FileSystemKind::OtherNetwork},
        {0x65735546, "fuseblk", FileSystemKind::Local},  // NTFS on a local disk
        {0x65735546, "fuse.gocryptfs", FileSystemKind::Local},
    };
    for (const Case& c : cases)
        EXPECT_EQ(FileSystemKindOfMagic(c.magic, QString::fromLatin1(c.mountType)), c.kind)
            << std::hex << c.magic << ' ' << c.mountType;
}

TEST(JournalChoice, NetworkKindsAndPathsBelowTheShareMountKeepTheRollbackJournal)
{
    using K = FileSystemKind;
    const auto wal = JournalChoice::WriteAheadLog;
    const auto rollback = JournalChoice::RollbackJournal;
    struct Case {
        K kind;
        const char* path;
        const char* root;
        JournalChoice expected;
    };
    const Case cases[] = {
        {K::Local, "/srv/ktv/song.db", "/net", wal},
        {K::Nfs, "/srv/ktv/song.db", "/net", rollback},
        {K::Smb, "/srv/ktv/song.db", "/net", rollback},
        {K::Cifs, "/srv/ktv/song.db", "/net", rollback},
        {K::Smb2, "/srv/ktv/song.db", "/net", rollback},
        {K::Sshfs, "/srv/ktv/song.db", "/net", rollback},
        {K::OtherNetwork, "/srv/ktv/song.db", "/net", rollback},
        {K::Unknown, "/srv/ktv/song.db", "/net", rollback},
        // Below the mount folder of shares, whatever the file system says.
        {K::Local, "/net/Server1/KtvPublic/song.db", "/net", rollback},
        {K::Local, "/net/Server1/KtvPublic/song.db", "/net/", rollback},
        {K::Local, "/mnt/shares/Server1/KtvPublic/song.db", "/mnt/shares", rollback},
        {K::Local, "/srv/../net/Server1/song.db", "/net", rollback},
        {K::Local, "//Server1/KtvPublic/song.db", "/net", rollback},
        {K::Local, "\\\\Server1\\KtvPublic\\song.db", "/net", rollback},
        // A name that only begins like the mount folder is not below it.
        {K::Local, "/network/song.db", "/net", wal},
        {K::Local, "/net.db", "/net", wal},
        {K::Local, "/srv/ktv/song.db", "", wal},
        {K::Local, "/srv/ktv/song.db", "/", wal},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ChooseJournal(c.kind, QString::fromUtf8(c.path), QString::fromUtf8(c.root)), c.expected)
            << int(c.kind) << ' ' << c.path << " root " << c.root;
}

qint64 CountSongs(sqlite3* db)
{
    sqlite3_stmt* st = nullptr;
    qint64 n = -1;
    if (sqlite3_prepare_v2(db, "SELECT count(*) FROM song", -1, &st, nullptr) == SQLITE_OK &&
        sqlite3_step(st) == SQLITE_ROW)
        n = sqlite3_column_int64(st, 0);
    sqlite3_finalize(st);
    return n;
}

void Exec(sqlite3* db, const char* sql)
{
    ASSERT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(db) << " in " << sql;
}

// A song database in a fresh program folder; the folder's application INI holds NetworkRoot.
class JournalOnDisk : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (FileSystemKindOf(app.path()) != FileSystemKind::Local)
            GTEST_SKIP() << "the temporary folder is not on a local disk";
        CreateSongDatabase(file, QStringLiteral("English"));
    }
    // Makes the program folder the mount folder of shares, so the database counts as on a share.
    void mountShareHere() { AppIniWrite(QStringLiteral("NetworkRoot"), app.path()); }

    test::TempAppDir app;
    QString file = app.file(QStringLiteral("song.db"));
};

TEST_F(JournalOnDisk, LocalDatabaseWritesAheadWithNormalSync)
{
    SqliteBackend db(file, 5000, false, false);
    EXPECT_EQ(JournalModeOf(db.handle()), QStringLiteral("wal"));
    EXPECT_EQ(SynchronousOf(db.handle()), 1);
}

TEST_F(JournalOnDisk, DatabaseBelowNetworkRootReturnsToTheRollbackJournal)
{
    {
        SqliteBackend local(file, 5000, false, false);
    }  // leaves the file in WAL mode
    mountShareHere();
    SqliteBackend db(file, 5000, false, false);
    EXPECT_EQ(JournalModeOf(db.handle()), QStringLiteral("delete"));
    EXPECT_EQ(SynchronousOf(db.handle()), 2);
    db.execute(QStringLiteral("INSERT INTO song (title) VALUES ('Shared')"));
    EXPECT_EQ(CountSongs(db.handle()), 1);
}

// The other machines reach this console's KtvPublic folder as a share, so a database in it is shared.
TEST_F(JournalOnDisk, DatabaseInTheConsolesOwnShareKeepsTheRollbackJournal)
{
    const QString shared = app.file(QStringLiteral("KtvPublic/song.db"));
    QDir().mkpath(app.file(QStringLiteral("KtvPublic")));
    CreateSongDatabase(shared, QStringLiteral("English"));
    SqliteBackend db(shared, 5000, false, false);
    EXPECT_EQ(JournalModeOf(db.handle()), QStringLiteral("delete"));
    EXPECT_EQ(SynchronousOf(db.handle()), 2);
}

// A reader finds the file in either journal, and leaves it so.
TEST_F(JournalOnDisk, ReadOnlyOpenWorksInEitherJournal)
{
    qint64 rows = 0;
    for (bool walFile : {true, false}) {
        AppIniWrite(QStringLiteral("NetworkRoot"), walFile ? QStringLiteral("/net") : app.path());
        {
            SqliteBackend writer(file, 5000, false, false);
            writer.execute(QStringLiteral("INSERT INTO song (title) VALUES ('One')"));
            ++rows;
        }
        AppIniWrite(QStringLiteral("NetworkRoot"), walFile ? app.path() : QStringLiteral("/net"));
        SqliteBackend reader(file, 5000, true, false);
        EXPECT_EQ(JournalModeOf(reader.handle()), walFile ? QStringLiteral("wal") : QStringLiteral("delete"));
        EXPECT_EQ(CountSongs(reader.handle()), rows);
    }
}

TEST_F(JournalOnDisk, TwoConsolesSeeEachOthersCommittedRows)
{
    SqliteBackend a(file, 5000, false, false);
    SqliteBackend b(file, 5000, false, false);
    ASSERT_EQ(JournalModeOf(b.handle()), QStringLiteral("wal"));
    a.execute(QStringLiteral("INSERT INTO song (title) VALUES ('From A')"));
    EXPECT_EQ(CountSongs(b.handle()), 1);
    b.execute(QStringLiteral("INSERT INTO song (title) VALUES ('From B')"));
    EXPECT_EQ(CountSongs(a.handle()), 2);
    // A row being written is not seen, and its writer holds no reader up.
    Exec(a.handle(), "BEGIN IMMEDIATE; INSERT INTO song (title) VALUES ('Pending')");
    QElapsedTimer t;
    t.start();
    EXPECT_EQ(CountSongs(b.handle()), 2);
    EXPECT_LT(t.elapsed(), 1000);
    Exec(a.handle(), "COMMIT");
    EXPECT_EQ(CountSongs(b.handle()), 3);
}

// Another console reads the file while this one opens: the mode cannot change, the open succeeds
// with the journal the file has, at synchronous FULL.
TEST_F(JournalOnDisk, BusyFileOpensWithTheJournalItHas)
{
    struct Case {
        bool startInWal;
        bool share;
        const char* mode;
    };
    const Case cases[] = {
        {true, true, "wal"},       // a share console meets a local console's WAL file
        {false, false, "delete"},  // a local console meets a rollback file in use
    };
    for (const Case& c : cases) {
        AppIniWrite(QStringLiteral("NetworkRoot"), c.startInWal ? QStringLiteral("/net") : app.path());
        SqliteBackend other(file, 5000, false, false);
        ASSERT_EQ(JournalModeOf(other.handle()),
                  c.startInWal ? QStringLiteral("wal") : QStringLiteral("delete"));
        Exec(other.handle(), "BEGIN; SELECT count(*) FROM song");
        AppIniWrite(QStringLiteral("NetworkRoot"), c.share ? app.path() : QStringLiteral("/net"));
        SqliteBackend db(file, 100, false, false);
        EXPECT_EQ(JournalModeOf(db.handle()), QString::fromLatin1(c.mode));
        EXPECT_EQ(SynchronousOf(db.handle()), 2);
        EXPECT_EQ(CountSongs(db.handle()), 0);
        Exec(other.handle(), "COMMIT");
    }
}

}  // namespace
}  // namespace td
