#include "RegionFixture.h"
#include "shell/services/TextStore.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include <QDir>

namespace td::test {

RegionFixture::RegionFixture()
{
    EnsureQtApp();
    if (!dir.openSongDatabase())
        ADD_FAILURE() << "the test database did not open";
}

RegionFixture::~RegionFixture()
{
    SongCloseDatabase();
}

void RegionFixture::install(const QString& region, const QString& lines)
{
    const QString folder = dir.file(QStringLiteral("Region/") + region);
    QDir().mkpath(folder);
    WriteTextStore(folder + QStringLiteral("/string.txt"), QStringLiteral("\r\n[Resource]\r\n") + lines);
}

void RegionFixture::sql(const QString& statement)
{
    SongConnection()->execute(statement);
}

QStringList RegionFixture::column(const QString& statement)
{
    auto rs = SongConnection()->openRecordset(statement);
    QStringList out;
    for (qsizetype i = 0; i < rs->RecordCount(); ++i)
        out << (rs->isNull(i, 0) ? QStringLiteral("<null>") : rs->text(i, 0));
    return out;
}

}  // namespace td::test
