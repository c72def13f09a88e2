// KtvPublic/database_home.ini and KtvPublic/server.ini: where the databases lie and which server is
// the default, shared with every machine of the site.
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"

namespace td::fuzz {

int FuzzKtvPublicIni(const uint8_t* data, size_t size)
{
    const QByteArray bytes = Input(data, size);
    WriteFile(QStringLiteral("KtvPublic/database_home.ini"), bytes);
    const QString servers = WriteFile(QStringLiteral("KtvPublic/server.ini"), bytes);
    const QString kinds[] = {QStringLiteral("SongServer"), QStringLiteral("RoomServer"),
                             QStringLiteral("ServiceServer")};
    for (const QString& kind : kinds) {
        QString path;
        path = DatabaseHomePath(kind, path, false);
        GetServerHost(path);
        if (!IsServerAddress(path))
            NativePath(path);
        IniRead(servers, kind, QStringLiteral("DefaultServer"), QString());
    }
    // A database chosen in the program directory is kept relative to it and reads back whole.
    QString chosen = WorkDir() + QStringLiteral("/songs/song.db");
    DatabaseHomePath(kinds[0], chosen, true);
    QString read;
    Expect(DatabaseHomePath(kinds[0], read, false) == chosen, "the chosen database reads back");
    Expect(IniWrite(servers, kinds[1], QStringLiteral("DefaultServer"), QStringLiteral("ktv-room")) &&
               IniRead(servers, kinds[1], QStringLiteral("DefaultServer"), {}) == u"ktv-room",
           "the default server reads back");
    return 0;
}

}  // namespace td::fuzz
