// The singer exchange with a folder of .inf and .jpg files, as the singer window's Export and Import do.
#include "singers/SingerExchange.h"
#include "songdb/Connection.h"
#include "tools/admin/AdminCommand.h"

namespace td::admin {
namespace {

int singers(QStringList args)
{
    const QString sub = args.value(0);
    if (!args.isEmpty())
        args.removeFirst();
    if (sub != u"export" && sub != u"import")
        throw Failure{sub.isEmpty() ? QStringLiteral("singers needs export or import")
                                    : QStringLiteral("unknown singers command ") + sub};
    expectArgs(args, 2, 2);
    auto db = openExisting(args[0]);
    const QString folder = args[1];
    RunToTheEndWithProgress host;
    // The closing message, on stdout, says how many went through.
    if (sub == u"export") {
        ExportSingers(*db, folder, host);
    } else if (!ImportSingers(*db, folder, host).closed) {
        throw Failure{QStringLiteral("no such folder: ") + folder};
    }
    return host.failures() == 0 ? 0 : kUsageError;
}

const CommandRegistration singersCommand("singers", "singers export FILE DIR\nsingers import FILE DIR", singers);

}  // namespace
}  // namespace td::admin
