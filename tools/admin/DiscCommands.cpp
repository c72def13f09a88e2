// The identity and tracks of a Video CD, as the disc copy window sees them.
#include "libraries/DiscIdentity.h"
#include "shell/services/FilePaths.h"
#include "tools/admin/AdminCommand.h"

namespace td::admin {
namespace {

// Prints the identity that names the disc's directory in a library, then its tracks one path a line:
// files below the mount point for a mounted disc, paths inside the disc for an image or a device that
// is not mounted.
int disc(QStringList args)
{
    expectArgs(args, 1, 1);
    const QString drive = args[0];
    if (FileKind(drive).isEmpty())
        throw Failure{QStringLiteral("no such device, image or mount point ") + drive};
    QString identity, error;
    if (!DiscIdentityOf(drive, identity, error))
        throw Failure{error};
    const QString root = DiscDrives().rootOf(drive);
    QStringList tracks;
    if (FileKind(root) == QLatin1String("p")) {
        TextArray found;
        if (!DiscTracks(root, found))
            throw Failure{QStringLiteral("no Video CD: no MPEGAV folder in ") + root};
        tracks = found.mid(1);
    } else if (!ImageTracks(drive, tracks, error)) {
        throw Failure{QStringLiteral("no Video CD: ") + error};
    }
    print(identity);
    for (const QString& track : tracks)
        print(track);
    return 0;
}

const CommandRegistration discCommand("disc", "disc DEVICE|IMAGE|MOUNTPOINT", disc);

}  // namespace
}  // namespace td::admin
