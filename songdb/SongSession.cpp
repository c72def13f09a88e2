#include "songdb/SongSession.h"
#include "shell/services/AppError.h"
#include "shell/services/AppLog.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include "songdb/Schema.h"
#include "songdb/SongStatements.h"
#include <QDir>
#include <QRegularExpression>
#include <QUrl>

namespace td {

namespace {

struct Session {
    bool open = false;
    QString serverHost;
    QString databaseFile;
    std::unique_ptr<Connection> connection;
};

Session& session()
{
    static Session s;
    return s;
}

const QString kCrLf = QStringLiteral("\r\n");

QString databaseHomeFile()
{
    return AppPath() + QStringLiteral("/KtvPublic/database_home.ini");
}

// Steps 10 to 13 of the opening: the database's own Format and Version.
bool acceptFormatAndVersion()
{
    if (SongReadValue(QStringLiteral("Database"), QStringLiteral("Format"), {}) != kSongDatabaseFormat) {
        AppLogError(QStringLiteral("Invalid database format!"));
        if (MsgAsk(QStringLiteral("Invalid database format! Process anyway?"), MsgButtons::YesNo) !=
            MsgAnswer::Yes) {
            SongCloseDatabase();
            return false;
        }
    }
    const QString version = SongReadValue(QStringLiteral("Database"), QStringLiteral("Version"), {});
    if (float(NumericValue(version)) >= kSongDatabaseVersion.toFloat())
        return true;
    const QString versions = QStringLiteral("Current Version = ") + version +
                             QStringLiteral("    Expect Version = ") + kSongDatabaseVersion;
    AppLogError(QStringLiteral("Database version is out of date! ") + versions);
    if (MsgAsk(QStringLiteral("Database version is out of date! Process anyway?") + kCrLf + versions,
               MsgButtons::YesNo) == MsgAnswer::Yes)
        return true;
    SongCloseDatabase();
    return false;
}

}  // namespace

bool SongDatabaseOpen()
{
    return session().open;
}
QString SongServerHost()
{
    return session().serverHost;
}
QString SongDatabaseFile()
{
    return session().databaseFile;
}
Connection* SongConnection()
{
    return session().connection.get();
}

bool SongOpenDatabase()
{
    Session& s = session();
    s.open = false;
    s.serverHost.clear();
    s.databaseFile.clear();
    if (s.connection)
        s.connection->close();

    QString path;
    path = DatabaseHomePath(QStringLiteral("SongServer"), path, false);
    if (path.isEmpty()) {
        const QString text = QStringLiteral("Did not set song database file yet!");
        MsgError(TranslateText(text));
        AppLogError(text);
        return false;
    }
    const QString location = IsServerAddress(path) ? path : NativePath(path);
    if (!IsServerAddress(path) && FileKind(location) != u"f") {
        MsgError(TranslateText(QStringLiteral("Can not find song database file!")) + QStringLiteral(" <") +
                 path + QStringLiteral(">"));
        AppLogError(QStringLiteral("Can not find song database file! <") + path + QStringLiteral(">"));
        return false;
    }
    try {
        s.connection = OpenConnection(location);
        AppLogEvent(QStringLiteral("Open access database ok! File=") + path);
        s.open = true;
        s.serverHost = GetServerHost(path);
        s.databaseFile = path;
        return acceptFormatAndVersion();
    } catch (const std::exception& e) {
        const QString description = ErrorText(e);
        MsgError(QStringLiteral("Open song database failed! ") + ErrSuffix(e));
        AppLogError(QStringLiteral("Open song database failed! Err = ") + description);
        SongCloseDatabase();
        return false;
    }
}

bool SongCloseDatabase()
{
    Session& s = session();
    s.connection.reset();
    s.open = false;
    s.serverHost.clear();
    s.databaseFile.clear();
    return true;
}

std::unique_ptr<Connection> OpenAccessDatabase(const QString& path, const QString& password)
{
    Q_UNUSED(password);  // SQLite files carry no password; a legacy source will take it
    const QString location = NativePath(path);
    if (FileKind(location) != u"f") {
        MsgError(QStringLiteral("Can't find access database file <") + path + QStringLiteral(">!"));
        AppLogError(QStringLiteral("Can't find access database file <") + path + QStringLiteral(">"));
        return nullptr;
    }
    try {
        return OpenConnection(location);
    } catch (const std::exception& e) {
        // Closed, without a message; its first statement fails with the store's reason.
        SetSongLastError(ErrorText(e));
        return std::make_unique<Connection>(nullptr, ErrorText(e));
    }
}

QString DatabaseHomePath(const QString& dbType, QString& path, bool write)
{
    const QString file = databaseHomeFile();
    const QString app = AppPath();
    if (!write) {
        const QString value = IniRead(file, dbType, QStringLiteral("Local"), {});
        if (value.startsWith(u"./"))
            return app + value.mid(1);
        if (value.startsWith(u'\\') && !value.startsWith(u"\\\\"))
            return app + NativePath(value);
        return value;
    }
    QString stored = path;
    if (!IsServerAddress(path) && path.size() > app.size() &&
        path.left(app.size()).compare(app, Qt::CaseInsensitive) == 0 && path[app.size()] == u'/')
        stored = u'.' + path.mid(app.size());
    QDir().mkpath(ParentPath(file));
    IniWrite(file, dbType, QStringLiteral("Local"), stored);
    return stored;
}

QString GetServerHost(const QString& path)
{
    if (IsServerAddress(path))
        return QUrl(path).host();
    if (path.startsWith(u"\\\\") || path.startsWith(u"//")) {
        const QString rest = path.mid(2);
        const qsizetype end = rest.indexOf(QRegularExpression(QStringLiteral("[\\\\/]")));
        return end < 0 ? rest : rest.left(end);
    }
    const QString host = ShareHostOf(path);
    return host.isEmpty() ? ComputerName() : host;
}

}  // namespace td
