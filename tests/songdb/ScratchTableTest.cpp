#include "SongFile.h"
#include "songdb/Recordset.h"
#include "support/QtPrint.h"
#include <QElapsedTimer>
#include <gtest/gtest.h>

namespace td {
namespace {

qint64 count(Connection& db, const QString& table)
{
    return db.openRecordset(QStringLiteral("select count(*) from ") + table)->value(0, 0).toLongLong();
}

TEST(ScratchTable, EachConsoleKeepsItsOwnMediaSearchOutOfTheFile)
{
    test::SongFile file;
    auto other = file.second();
    auto rs = file.db().openRecordset(QStringLiteral("select * from media"));
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 2000; ++i) {
        rs->AddNew();
        rs->Fields(QStringLiteral("name")).setValue(QStringLiteral("%1.vob").arg(i));
        rs->Fields(QStringLiteral("Position")).setValue(QStringLiteral("/lib/Pop/%1.vob").arg(i));
        rs->Fields(QStringLiteral("Size")).setValue(1024);
        rs->Update();
    }
    // Row by row, yet no disk write per row: a library of many files is listed quickly.
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_EQ(rs->RecordCount(), 2000);
    EXPECT_EQ(count(file.db(), QStringLiteral("media")), 2000);
    EXPECT_EQ(count(*other, QStringLiteral("media")), 0);
    EXPECT_EQ(count(file.db(), QStringLiteral("main.media")), 0);

    // The declared types are those of the shared table.
    EXPECT_EQ(rs->Fields(QStringLiteral("Size")).Type(),
              file.db()
                  .openRecordset(QStringLiteral("select * from main.media"))
                  ->Fields(QStringLiteral("Size"))
                  .Type());
    file.db().execute(QStringLiteral("delete * from media"));
    EXPECT_EQ(count(file.db(), QStringLiteral("media")), 0);
}

}  // namespace
}  // namespace td
