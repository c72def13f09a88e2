#include "fuzz/FuzzSupport.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "songdb/SqliteBackend.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <sqlite3.h>

namespace td::fuzz {

QByteArray Input(const uint8_t* data, size_t size)
{
    return QByteArray(reinterpret_cast<const char*>(data), qsizetype(size));
}

QString WorkDir()
{
    // In memory where there is such a folder: every input writes files, and some of them are synced.
    static const QString base = QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm")
                                                                                    : QDir::tempPath();
    static QTemporaryDir dir(base + QStringLiteral("/tunedesk-fuzz-XXXXXX"));
    static const bool pointed = [] {
        SetAppPath(dir.path());
        IniSetAppFile(QString());
        return true;
    }();
    Q_UNUSED(pointed);
    return dir.path();
}

QString WriteFile(const QString& relative, const QByteArray& bytes)
{
    const QString path = WorkDir() + u'/' + relative;
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    Expect(f.open(QIODevice::WriteOnly | QIODevice::Truncate), "the work folder takes the input");
    Expect(f.write(bytes) == bytes.size(), "the work folder takes the whole input");
    return path;
}

void ClearFolder(const QString& relative)
{
    QDir(WorkDir() + u'/' + relative).removeRecursively();
}

Connection& SongDatabase()
{
    static std::unique_ptr<Connection> db = [] {
        const QString file = WorkDir() + QStringLiteral("/song.db");
        QFile::remove(file);
        CreateSongDatabase(file, QStringLiteral("English"));
        auto connection = OpenConnection(file);
        // Each input writes and deletes rows; waiting for the disk would be most of the time.
        sqlite3_exec(static_cast<SqliteBackend&>(connection->backend()).handle(), "PRAGMA synchronous=OFF",
                     nullptr, nullptr, nullptr);
        return connection;
    }();
    db->execute(QStringLiteral("delete * from song"));
    db->execute(QStringLiteral("delete * from singer"));
    return *db;
}

void Expect(bool kept, const char* promise)
{
    if (kept)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

MsgAnswer YesJobHost::Ask(const QString&, MsgButtons buttons, const QString&)
{
    switch (buttons) {
    case MsgButtons::OkCancel:
        return MsgAnswer::Ok;
    case MsgButtons::RetryCancel:
        return MsgAnswer::Cancel;
    default:
        return MsgAnswer::Yes;
    }
}

}  // namespace td::fuzz
