// Reads on a reader connection of their own: the rows become an updatable recordset of the caller's
// connection, a cancel stops a running read, and a statement begun inside another is caught.
#include "SongFile.h"
#include "songdb/BackgroundRead.h"
#include "songdb/SqliteBackend.h"
#include "support/QtApp.h"
#include "support/Timing.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace td::test {
namespace {

class BackgroundReadTest : public ::testing::Test {
protected:
    void SetUp() override { EnsureQtApp(); }
    void addMany(int doublings)
    {
        file.addSong(QStringLiteral("Seed"), QStringLiteral("Choir"));
        for (int i = 0; i < doublings; ++i)
            file.db().execute(
                QStringLiteral("insert into song (title, singer) select title, singer from song"));
    }
    SongFile file;
};

TEST_F(BackgroundReadTest, RowsBecomeARecordsetThatWritesThroughTheCallersConnection)
{
    addMany(3);
    BackgroundRead read;
    QSignalSpy finished(&read, &BackgroundRead::Finished);
    read.start(file.db(), QStringLiteral("select * from song where title='Seed'"));
    EXPECT_TRUE(read.running());
    ASSERT_TRUE(finished.wait(5000));
    EXPECT_TRUE(finished.first().first().toBool());
    std::unique_ptr<Recordset> rs = read.take();
    ASSERT_TRUE(rs);
    EXPECT_EQ(rs->RecordCount(), 8);
    rs->MoveFirst();
    rs->Fields(QStringLiteral("singer")).setValue(QStringLiteral("Solo"));
    rs->Update();
    auto check = file.db().openRecordset(QStringLiteral("select * from song where singer='Solo'"));
    EXPECT_EQ(check->RecordCount(), 1);
}

TEST_F(BackgroundReadTest, AFailedStatementFinishesWithTheStoresReason)
{
    BackgroundRead read;
    QSignalSpy finished(&read, &BackgroundRead::Finished);
    for (const char* sql : {"select * from nowhere", "selec * frm song"}) {
        read.start(file.db(), QString::fromLatin1(sql));
        ASSERT_TRUE(finished.wait(5000)) << sql;
        EXPECT_FALSE(finished.takeFirst().first().toBool()) << sql;
        EXPECT_FALSE(read.error().isEmpty()) << sql;
        EXPECT_FALSE(read.running());
    }
}

TEST_F(BackgroundReadTest, ACancelStopsTheReadAtOnceAndNothingFollows)
{
    addMany(18);  // 262,144 rows
    BackgroundRead read;
    QSignalSpy finished(&read, &BackgroundRead::Finished);
    read.start(file.db(), QStringLiteral("select * from song order by title, singer, id desc"));
    QElapsedTimer clock;
    clock.start();
    read.cancel();
    EXPECT_LT(clock.elapsed(), kPromptMs);
    EXPECT_FALSE(read.running());
    EXPECT_FALSE(finished.wait(300));
    // A new read after the cancel works as usual, and a second start replaces a running one.
    read.start(file.db(), QStringLiteral("select * from song"));
    read.start(file.db(), QStringLiteral("select * from song where id=1"));
    ASSERT_TRUE(finished.wait(5000));
    EXPECT_EQ(finished.size(), 1);
    EXPECT_EQ(read.take()->RecordCount(), 1);
}

TEST_F(BackgroundReadTest, AStatementBegunInsideAnotherIsCounted)
{
    addMany(2);
    const int before = StatementsStartedMidStatement();
    Backend& backend = file.db().backend();
    std::vector<qint64> keys;
    backend.query(QStringLiteral("select title from song"), false, &keys,
                  [&] { backend.execute(QStringLiteral("update song set chars=1")); });
    EXPECT_EQ(StatementsStartedMidStatement(), before + 1);
}

}  // namespace
}  // namespace td::test
