#pragma once
#include <QString>
#include <QStringList>

namespace td::test {

// A PostgreSQL server of its own in a temporary folder, on a free local port, without durability:
// for the tests and benchmarks of a songbook on a server. As root the server runs as the
// unprivileged "postgres" user, as it demands. Stopped and removed with the object.
class LocalPostgres {
public:
    LocalPostgres() = default;
    LocalPostgres(const LocalPostgres&) = delete;
    LocalPostgres& operator=(const LocalPostgres&) = delete;
    ~LocalPostgres() { stop(); }

    // Makes and starts the server; answers why not, or empty text once it runs.
    QString start();
    void stop();

    bool running() const { return running_; }
    int port() const { return port_; }
    QString binDir() const { return bin_; }
    // The address of a database on the server (which need not exist yet).
    QString address(const QString& database) const;
    // The arguments that make the server's psql reach a database as the songbook's user.
    QStringList psqlArguments(const QString& database) const;

private:
    QString bin_;
    QString dir_;
    int port_ = 0;
    bool running_ = false;
};

// The server programs' folder (initdb, pg_ctl, psql), or empty text when none is installed.
QString PostgresBinDir();

}  // namespace td::test
