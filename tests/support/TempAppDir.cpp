#include "support/TempAppDir.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace td::test {

TempAppDir::TempAppDir() : oldAppPath_(AppPath())
{
    SetAppPath(dir_.path());
    IniSetAppFile(QString());
    ResetInterfaceRegion();
}

TempAppDir::~TempAppDir()
{
    SetAppPath(oldAppPath_);
    IniSetAppFile(QString());
    ResetInterfaceRegion();
}

QString TempAppDir::write(const QString& relative, const QByteArray& content) const
{
    const QString path = dir_.filePath(relative);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(content);
    return path;
}

bool TempAppDir::openSongDatabase() const
{
    QString db = file(QStringLiteral("song.db"));
    CreateSongDatabase(db, QStringLiteral("English"));
    DatabaseHomePath(QStringLiteral("SongServer"), db, true);
    return SongOpenDatabase();
}

}  // namespace td::test
