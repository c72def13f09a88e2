#pragma once
#include <QString>
#include <gtest/gtest.h>

namespace td::test {

// A PostgreSQL server of its own in a temporary folder, on a free local port, for one test
// program: started before the first test, stopped after the last. As root it runs as the
// unprivileged "postgres" user, as the server demands.
class PostgresServer : public ::testing::Environment {
public:
    static PostgresServer& instance();

    void SetUp() override;     // skips every test when no server programs are installed
    void TearDown() override;  // stops the server and removes its folder

    // The address of a new, empty database on the server (not yet holding a songbook).
    QString newDatabase();
    QString address(const QString& database) const;
    int port() const { return port_; }
    bool running() const { return running_; }

private:
    QString bin_;
    QString dir_;
    int port_ = 0;
    bool running_ = false;
    int databases_ = 0;
};

// The server programs' folder (initdb, pg_ctl), or empty text when none is installed.
QString PostgresBinDir();

}  // namespace td::test
