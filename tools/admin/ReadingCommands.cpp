// The pinyin readings of a songbook's titles, made once for a songbook that has none yet; after that
// the table keeps itself in step and each pinyin search reads only the titles that changed.
#include "songdb/Connection.h"
#include "songdb/SongReadings.h"
#include "tools/admin/AdminCommand.h"
#include <QElapsedTimer>

namespace td::admin {
namespace {

int readings(QStringList args)
{
    expectArgs(args, 1, 1);
    auto db = openExisting(args[0]);
    if (db->readOnly())
        throw Failure{QStringLiteral("cannot write readings into ") + args[0]};
    const qint64 waiting = SongReadingsWaiting(*db);
    QElapsedTimer timer;
    timer.start();
    RunToTheEndWithProgress host;
    UpdateSongReadings(*db, &host);
    print(QStringLiteral("%1 titles read in %2 s").arg(waiting).arg(double(timer.elapsed()) / 1000, 0, 'f', 1));
    return 0;
}

const CommandRegistration readingsCommand("readings", "readings FILE", readings);

}  // namespace
}  // namespace td::admin
