#include "support/LocalPostgres.h"
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QVersionNumber>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace td::test {

namespace {

const char* const kUser = "ktv";

int freeLocalPort()
{
    const int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof a;
    int port = 0;
    if (bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0 &&
        getsockname(s, reinterpret_cast<sockaddr*>(&a), &size) == 0)
        port = ntohs(a.sin_port);
    close(s);
    return port;
}

// Runs a server program, as the "postgres" user when this process is root; answers its output
// on failure, empty text on success.
QString runServerProgram(const QString& program, const QStringList& args)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    if (geteuid() == 0)
        p.start(QStringLiteral("runuser"),
                QStringList{QStringLiteral("-u"), QStringLiteral("postgres"), QStringLiteral("--"), program} +
                    args);
    else
        p.start(program, args);
    if (!p.waitForFinished(120000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return program + QStringLiteral(" failed: ") + QString::fromLocal8Bit(p.readAll());
    return {};
}

}  // namespace

QString PostgresBinDir()
{
    QString best;
    QVersionNumber bestVersion;
    const QDir versions(QStringLiteral("/usr/lib/postgresql"));
    for (const QString& v : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString bin = versions.filePath(v + QStringLiteral("/bin"));
        const QVersionNumber n = QVersionNumber::fromString(v);
        if (QFileInfo(bin + QStringLiteral("/initdb")).isExecutable() && n > bestVersion) {
            best = bin;
            bestVersion = n;
        }
    }
    if (best.isEmpty()) {
        const QString initdb = QStandardPaths::findExecutable(QStringLiteral("initdb"));
        if (!initdb.isEmpty())
            best = QFileInfo(initdb).path();
    }
    return best;
}

QString LocalPostgres::start()
{
    bin_ = PostgresBinDir();
    if (bin_.isEmpty())
        return QStringLiteral(
            "No PostgreSQL server programs (initdb, pg_ctl) are installed: "
            "tools/install-deps.sh installs them (Debian package postgresql).");
    QByteArray pattern = QDir::temp().filePath(QStringLiteral("td-postgres-XXXXXX")).toLocal8Bit();
    if (!mkdtemp(pattern.data()))
        return QStringLiteral("cannot make a temporary folder for the server");
    dir_ = QString::fromLocal8Bit(pattern);
    if (geteuid() == 0) {
        const passwd* pw = getpwnam("postgres");
        if (!pw)
            return QStringLiteral("running as root, the server needs the user postgres");
        if (chown(pattern.constData(), pw->pw_uid, pw->pw_gid) != 0)
            return QStringLiteral("cannot give the server's folder to the user postgres");
    }
    const QString data = dir_ + QStringLiteral("/data");
    QString error =
        runServerProgram(bin_ + QStringLiteral("/initdb"),
                         {QStringLiteral("-D"), data, QStringLiteral("-U"), QLatin1String(kUser),
                          QStringLiteral("-E"), QStringLiteral("UTF8"), QStringLiteral("--locale=C.UTF-8"),
                          QStringLiteral("-A"), QStringLiteral("trust"), QStringLiteral("--no-sync")});
    if (!error.isEmpty())
        return error;
    // Without flushes the server starts and writes many times faster; nothing here needs to survive.
    for (int attempt = 0; attempt < 5 && !running_; ++attempt) {
        port_ = freeLocalPort();
        const QString options = QStringLiteral(
                                    "-p %1 -k %2 -c listen_addresses=127.0.0.1 -c fsync=off "
                                    "-c synchronous_commit=off -c full_page_writes=off "
                                    "-c max_connections=60")
                                    .arg(port_)
                                    .arg(dir_);
        error = runServerProgram(
            bin_ + QStringLiteral("/pg_ctl"),
            {QStringLiteral("-D"), data, QStringLiteral("-o"), options, QStringLiteral("-l"),
             dir_ + QStringLiteral("/server.log"), QStringLiteral("-w"), QStringLiteral("start")});
        running_ = error.isEmpty();
    }
    return error;
}

void LocalPostgres::stop()
{
    if (running_)
        runServerProgram(bin_ + QStringLiteral("/pg_ctl"),
                         {QStringLiteral("-D"), dir_ + QStringLiteral("/data"), QStringLiteral("-m"),
                          QStringLiteral("immediate"), QStringLiteral("-w"), QStringLiteral("stop")});
    running_ = false;
    if (!dir_.isEmpty())
        QDir(dir_).removeRecursively();
    dir_.clear();
}

QString LocalPostgres::address(const QString& database) const
{
    return QStringLiteral("postgresql://%1@127.0.0.1:%2/%3")
        .arg(QLatin1String(kUser))
        .arg(port_)
        .arg(database);
}

QStringList LocalPostgres::psqlArguments(const QString& database) const
{
    return {QStringLiteral("-X"), QStringLiteral("-q"),
            QStringLiteral("-h"), QStringLiteral("127.0.0.1"),
            QStringLiteral("-p"), QString::number(port_),
            QStringLiteral("-U"), QLatin1String(kUser),
            QStringLiteral("-d"), database};
}

}  // namespace td::test
