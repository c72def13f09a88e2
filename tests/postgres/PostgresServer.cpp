#include "PostgresServer.h"

namespace td::test {

PostgresServer& PostgresServer::instance()
{
    static auto* server = new PostgresServer;  // gtest owns it once added as an environment
    return *server;
}

void PostgresServer::SetUp()
{
    if (PostgresBinDir().isEmpty())
        GTEST_SKIP() << "No PostgreSQL server programs (initdb, pg_ctl) are installed: "
                        "tools/install-deps.sh installs them (Debian package postgresql).";
    const QString error = server_.start();
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();
}

void PostgresServer::TearDown()
{
    server_.stop();
}

QString PostgresServer::newDatabase()
{
    return address(QStringLiteral("songs%1").arg(++databases_));
}

}  // namespace td::test
